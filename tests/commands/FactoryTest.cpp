// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: registration (empty key, null creator, taken key, keys that differ in letter case in each
// registry); look-up and construction; the default product;
// values that mean "none"; the single instance.

#include "shared/commands/Factory.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "shared/Singleton.h"
#include "shared/commands/CommandFactory.h"
#include "shared/commands/ModalElement.h"
#include "shared/commands/ModelessElement.h"
#include "shared/commands/ProgressFactory.h"
#include "shared/text/Flyweight.h"
#include "tests/commands/ErrorOf.h"
#include "tests/commands/RecordingCommand.h"

namespace shr {
namespace {

constexpr const char* BAD_KEY = "Invalid factory key requested.";
constexpr const char* BAD_INITIALIZATION = "Invalid factory initialization.";

class RecordingFactory : public CommandFactory {
public:
  explicit RecordingFactory(const GString& key) : RecordingFactory(key, this) {}
  RecordingFactory(const GString& key, CommandFactory* creator)
      : CommandFactory(key, creator), name_(key.ToUtf8()) {}

private:
  std::unique_ptr<Command> ConstructImpl() const override {
    return std::make_unique<RecordingCommand>(name_);
  }
  std::string name_;
};

RecordingFactory moveFactory(L"Move");

TEST(CommandFactory, findsCreatorsInAnyLetterCase) {
  EXPECT_TRUE(CommandFactory::CanConstruct(L"move"));
  EXPECT_FALSE(CommandFactory::CanConstruct(L"Mov"));
  EXPECT_EQ(CommandFactory::Construct(L"MOVE")->Key(), L"Move");
}

TEST(CommandFactory, refusesBadKeysAndRegistrations) {
  const std::size_t before = CommandFactory::size();
  EXPECT_EQ(ErrorOf([] { CommandFactory::CanConstruct(GString()); }), BAD_KEY);
  EXPECT_EQ(ErrorOf([] { CommandFactory::Construct(GString()); }), BAD_KEY);
  EXPECT_EQ(ErrorOf([] { CommandFactory::Construct(L"Missing"); }), BAD_KEY);
  EXPECT_EQ(ErrorOf([] { RecordingFactory factory{GString()}; }), BAD_INITIALIZATION);
  EXPECT_EQ(ErrorOf([] { RecordingFactory factory(L"Null", nullptr); }), BAD_INITIALIZATION);
  EXPECT_EQ(ErrorOf([] { RecordingFactory factory(L"mOVE"); }), BAD_INITIALIZATION);
  EXPECT_EQ(CommandFactory::size(), before);
}

class Dialog : public ModalElement {
  StatusCode ExecuteImpl() override { return Cancelled; }
};

class DialogFactory : public ModalElementFactory {
public:
  explicit DialogFactory(const GString& key) : ModalElementFactory(key, this) {}

private:
  std::unique_ptr<ModalElement> ConstructImpl() const override {
    return std::make_unique<Dialog>();
  }
};

DialogFactory settingsFactory(L"Settings");
DialogFactory otherSettingsFactory(L"settings");

TEST(ModalElementFactory, tellsLetterCaseApart) {
  EXPECT_EQ(ModalElementFactory::size(), 2u);
  EXPECT_EQ(ModalElementFactory::Construct(L"Settings")->Execute(), Cancelled);
  EXPECT_FALSE(ModalElementFactory::CanConstruct(L"SETTINGS"));
  EXPECT_EQ(ErrorOf([] { ModalElementFactory::Construct(L"SETTINGS"); }), BAD_KEY);
  EXPECT_EQ(ErrorOf([] { DialogFactory factory(L"Settings"); }), BAD_INITIALIZATION);
  EXPECT_EQ(ModelessElementFactory::size(), 0u);
}

class NamedProgress : public IProgress {
public:
  explicit NamedProgress(GString name) : name_(std::move(name)) {}
  const GString& Name() const { return name_; }

private:
  void Begin(const GString&, std::uint64_t) override {}
  void Advance(std::uint64_t) override {}
  bool IsCancelled() const override { return false; }
  void End() override {}
  GString name_;
};

class NamedProgressFactory : public ProgressFactory {
public:
  explicit NamedProgressFactory(const GString& key) : ProgressFactory(key, this), name_(key) {}

private:
  std::unique_ptr<IProgress> ConstructImpl() const override {
    return std::make_unique<NamedProgress>(name_);
  }
  GString name_;
};

GString NameOf(const std::unique_ptr<IProgress>& progress) {
  return dynamic_cast<NamedProgress&>(*progress).Name();
}

TEST(ProgressFactory, makesTheFirstRegisteredByDefault) {
  EXPECT_EQ(ErrorOf([] { ProgressFactory::Construct(); }),
            "Invalid default factory constructor requested.");
  EXPECT_EQ(ErrorOf([] { NamedProgressFactory factory{GString()}; }), BAD_INITIALIZATION);
  EXPECT_EQ(ErrorOf([] { ProgressFactory::Construct(); }),
            "Invalid default factory constructor requested.");
  static NamedProgressFactory console(L"Console");
  static NamedProgressFactory bar(L"Bar");
  EXPECT_EQ(NameOf(ProgressFactory::Construct()), L"Console");
  EXPECT_EQ(NameOf(ProgressFactory::Construct(L"Bar")), L"Bar");
  EXPECT_FALSE(ProgressFactory::CanConstruct(L"bar"));
}

TEST(Flyweight, neverHoldsTheValueThatMeansNone) {
  Flyweight<GString, int, StringLess> numbers(-1);
  numbers.Set(L"Layer", 0);
  numbers.Set(L"LAYER", 2);
  EXPECT_EQ(ErrorOf([&] { numbers.Set(L"layer", -1); }), "Invalid flyweight argument.");
  EXPECT_EQ(numbers.size(), 1u);
  EXPECT_EQ(numbers.Get(L"layer"), 2);
  EXPECT_EQ(numbers.Get(L"Map"), -1);
  EXPECT_FALSE(numbers.Has(L"Map"));
}

class Palette : public Singleton<Palette> {
public:
  static int attempts;

private:
  friend class Singleton<Palette>;
  Palette() {
    if (++attempts == 1) throw std::runtime_error("first attempt");
  }
};
int Palette::attempts = 0;

TEST(Singleton, isMadeOnceByTheFirstCallThatSucceeds) {
  EXPECT_EQ(ErrorOf([] { Palette::Instance(); }), "first attempt");
  Palette& palette = Palette::Instance();
  EXPECT_EQ(&palette, &Singleton<Palette>::GetInstance());
  EXPECT_EQ(Palette::attempts, 2);
}

}  // namespace
}  // namespace shr
