// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: options of elements by each overload, empty keys, defaults; parents; the life of a
// modeless element from each of its states, also when creating it does not succeed.

#include <gtest/gtest.h>

#include <boost/any.hpp>

#include <string>

#include "shared/commands/ModalElement.h"
#include "shared/commands/ModelessElement.h"

namespace shr {
namespace {

class Dialog : public ModalElement {
public:
  GString key, text;
  boost::any value, parent;

private:
  StatusCode ExecuteImpl() override { return Success; }
  boost::any OptionImpl(const GString& name) const override {
    return name == L"title" ? boost::any(text) : boost::any();
  }
  bool OptionImpl(const GString& name, const boost::any& any) override {
    key = name;
    value = any;
    return true;
  }
  bool OptionImpl(const GString& name, const GString& newText) override {
    key = name;
    text = newText;
    return true;
  }
  void ParentImpl(const boost::any& any) override { parent = any; }
};

TEST(BaseElement, optionsArriveInLowerCase) {
  Dialog dialog;
  EXPECT_TRUE(dialog.Option(L"Title", L"Map"));
  EXPECT_EQ(dialog.key, L"title");
  EXPECT_EQ(boost::any_cast<GString>(dialog.Option(L"TITLE")), L"Map");
  EXPECT_TRUE(dialog.Option(GString(L"Title"), GString(L"Layer")));
  EXPECT_EQ(dialog.text, L"Layer");
  EXPECT_TRUE(dialog.Option(L"Width", boost::any(3)));
  EXPECT_EQ(dialog.key, L"width");
  EXPECT_EQ(boost::any_cast<int>(dialog.value), 3);
  dialog.Parent(boost::any(17L));
  EXPECT_EQ(boost::any_cast<long>(dialog.parent), 17L);
}

TEST(BaseElement, emptyKeysGoNowhere) {
  Dialog dialog;
  EXPECT_FALSE(dialog.Option(L"", L"Map"));
  EXPECT_FALSE(dialog.Option(GString(), boost::any(3)));
  EXPECT_TRUE(dialog.Option(GString()).empty());
  EXPECT_TRUE(dialog.key.empty());
}

/// Notes its calls; creating it works only when `creatable`.
class Window : public ModelessElement {
public:
  explicit Window(bool creatable = true) : creatable_(creatable) {}
  std::string calls;

private:
  bool IsCreatedImpl() const override { return created_; }
  void CreateImpl() override {
    calls += 'C';
    created_ = creatable_;
  }
  StatusCode DestroyImpl() override {
    calls += 'D';
    created_ = false;
    return Failure;
  }
  void HideImpl() override { calls += 'H'; }
  void ShowImpl() override { calls += 'S'; }

  bool creatable_;
  bool created_ = false;
};

TEST(ModelessElement, showsAndHidesOnlyWhileCreated) {
  Window window;
  window.Show();
  window.Hide();
  EXPECT_EQ(window.Destroy(), Cancelled);
  EXPECT_EQ(window.calls, "");
  window.Create(false);
  window.Create(true);
  window.Hide();
  EXPECT_EQ(window.calls, "CSH");
  EXPECT_EQ(window.Destroy(), Failure);
  window.Show();
  EXPECT_EQ(window.calls, "CSHD");
}

TEST(ModelessElement, isNotShownWhenCreatingFails) {
  Window window(false);
  window.Create(true);
  EXPECT_EQ(window.calls, "C");
}

TEST(ModelessElement, takesNoOptionsByDefault) {
  Window window;
  EXPECT_FALSE(window.Option(L"Title", L"Map"));
  EXPECT_FALSE(window.Option(L"Title", boost::any(1)));
  EXPECT_TRUE(window.Option(L"Title").empty());
  window.Parent(boost::any(1));
}

}  // namespace
}  // namespace shr
