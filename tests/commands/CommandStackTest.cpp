// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: statuses of do, undo and redo and what each leaves behind; exceptions; commands that
// cannot be undone; trimming by the maximum, at Do and by the setter; order of destruction; nested
// execution; commands and destructors that change the stack they are on; merging; the clean mark
// and the notice of changes; long random runs against a model that keeps plain indices and a
// document.

#include "shared/commands/CommandStack.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <random>
#include <vector>

#include "shared/commands/SimpleCommand.h"
#include "tests/commands/ErrorOf.h"
#include "tests/commands/RecordingCommand.h"

namespace shr {
namespace {

using Handle = std::shared_ptr<RecordingCommand>;

/// A stack with a journal of what its commands did.
class CommandStackTest : public testing::Test {
protected:
  Handle Make(const std::string& name) {
    return std::make_shared<RecordingCommand>(name, &journal);
  }
  Handle Do(const std::string& name) {
    Handle command = Make(name);
    EXPECT_EQ(stack.Do(command), Success);
    return command;
  }
  /// Returns the keys of the held commands, newest first, "<" before the undo position and ">"
  /// before the redo position.
  std::string Picture() const {
    std::string picture;
    for (const auto& command : stack) {
      if (command == stack.UndoCommand()) picture += '<';
      if (command == stack.RedoCommand()) picture += '>';
      picture += command->Key().ToUtf8();
    }
    return picture;
  }

  RecordingCommand::Journal journal;
  CommandStack stack{100};
};

TEST_F(CommandStackTest, newWorkReplacesWhatWasUndone) {
  Do("X");
  Do("Y");
  stack.Undo();
  EXPECT_EQ(Picture(), ">Y<X");
  EXPECT_EQ(stack.RedoLabel(), L"Y");
  Do("Z");
  EXPECT_EQ(Picture(), "<ZX");
  EXPECT_FALSE(stack.Redoable());
  stack.Undo();
  stack.Undo();
  EXPECT_EQ(Picture(), "Z>X");
  EXPECT_FALSE(stack.Undoable());
  EXPECT_EQ(stack.UndoLabel(), L"");
  EXPECT_EQ(journal, (RecordingCommand::Journal{"do X", "do Y", "undo Y", "do Z", "destroyed Y",
                                                "undo Z", "undo X"}));
}

TEST_F(CommandStackTest, onlyASuccessfulDoIsRecorded) {
  Do("X");
  Do("Y");
  stack.Undo();
  for (const StatusCode status : {Failure, Cancelled}) {
    const Handle command = Make("Z");
    command->status = status;
    EXPECT_EQ(stack.Do(command), status);
    EXPECT_EQ(Picture(), ">Y<X");
  }
  EXPECT_EQ(ErrorOf([&] { stack.Do(nullptr); }), "CommandStack:60:Cannot execute invalid command.");
}

TEST_F(CommandStackTest, onlyACancelledUndoOrRedoKeepsThePositions) {
  for (const StatusCode status : {Failure, Success, Cancelled}) {
    stack.Clear();
    Do("X");
    const Handle y = Do("Y");
    y->status = status;
    EXPECT_EQ(stack.Undo(), status);
    EXPECT_EQ(Picture(), status == Cancelled ? "<YX" : ">Y<X");
    y->status = Success;
    if (status == Cancelled) stack.Undo();
    y->status = status;
    EXPECT_EQ(stack.Redo(), status);
    EXPECT_EQ(Picture(), status == Cancelled ? ">Y<X" : "<YX");
  }
}

TEST_F(CommandStackTest, aCommandThatThrowsLeavesTheStackAsItWas) {
  Do("X");
  const Handle y = Do("Y");
  y->throws = true;
  EXPECT_EQ(ErrorOf([&] { stack.Undo(); }), "undo");
  EXPECT_EQ(Picture(), "<YX");
  y->throws = false;
  stack.Undo();
  y->throws = true;
  EXPECT_EQ(ErrorOf([&] { stack.Redo(); }), "redo");
  const Handle z = Make("Z");
  z->throws = true;
  EXPECT_EQ(ErrorOf([&] { stack.Do(z); }), "do");
  EXPECT_EQ(Picture(), ">Y<X");
}

TEST_F(CommandStackTest, aCommandThatCannotBeUndoneBlocksTheOlderOnes) {
  Do("X");
  const Handle y = Make("Y");
  y->UndoRedoEnabled(false);
  stack.Do(y);
  EXPECT_EQ(Picture(), "<YX");
  EXPECT_FALSE(stack.Undoable());
  EXPECT_EQ(stack.UndoLabel(), L"");
  EXPECT_EQ(ErrorOf([&] { stack.Undo(); }), "CommandStack:236:Cannot undo invalid command.");
  EXPECT_EQ(ErrorOf([&] { stack.Redo(); }), "CommandStack:138:Cannot redo invalid command.");
  y->UndoRedoEnabled(true);
  stack.Undo();
  y->redoable = false;
  EXPECT_FALSE(stack.Redoable());
  EXPECT_EQ(stack.RedoLabel(), L"");
}

TEST_F(CommandStackTest, doKeepsTheNewestOfMoreThanTheMaximum) {
  stack.MaximumSize(2);
  for (const char* name : {"A", "B", "C", "D"}) Do(name);
  EXPECT_EQ(Picture(), "<DC");
  stack.Undo();
  stack.Undo();
  EXPECT_FALSE(stack.Undoable());
  CommandStack none(0);
  EXPECT_EQ(none.Do(Make("E")), Success);
  EXPECT_TRUE(none.empty());
  EXPECT_FALSE(none.Undoable());
}

TEST_F(CommandStackTest, aSmallerMaximumEndsUndoUntilTheNextDo) {
  for (const char* name : {"A", "B", "C", "D"}) Do(name);
  stack.Undo();
  stack.MaximumSize(4);
  EXPECT_EQ(Picture(), ">D<CBA");
  stack.MaximumSize(2);
  EXPECT_EQ(stack.MaximumSize(), 2u);
  EXPECT_EQ(Picture(), "DC");
  EXPECT_FALSE(stack.Undoable());
  EXPECT_FALSE(stack.Redoable());
  EXPECT_EQ(stack.UndoCommand(), nullptr);
  Do("E");
  EXPECT_EQ(Picture(), "<E");
}

TEST_F(CommandStackTest, commandsMayExecuteFurtherCommands) {
  class Nesting : public RecordingCommand {
  public:
    Nesting(CommandStack& stack, Handle inner)
        : RecordingCommand("N"), stack_(stack), inner_(std::move(inner)) {}

  private:
    StatusCode DoImpl() override { return stack_.Do(inner_); }
    CommandStack& stack_;
    Handle inner_;
  };
  Do("X");
  stack.Undo();
  EXPECT_EQ(stack.Do(std::make_shared<Nesting>(stack, Make("I"))), Success);
  EXPECT_EQ(Picture(), "<NI");
}

/// A command that does something else beside being done, undone and redone.
class Meddling : public SimpleCommand {
public:
  using Action = std::function<void()>;
  explicit Meddling(Action undo, Action redo = {}, Action end = {})
      : SimpleCommand(L"M"), undo_(undo), redo_(redo), end_(end) {}
  ~Meddling() override {
    if (end_) end_();
  }

private:
  StatusCode DoImpl() override { return Success; }
  StatusCode UndoImpl() override {
    if (undo_) undo_();
    return Success;
  }
  StatusCode RedoImpl() override {
    if (redo_) redo_();
    return Success;
  }
  Action undo_, redo_, end_;
};

TEST_F(CommandStackTest, aCommandMayChangeTheStackWhileItIsUndoneOrRedone) {
  const struct {
    const char* name;
    std::function<void(CommandStack&)> change;
    const char* pictureBehind;
  } rows[] = {
      {"clear", [](CommandStack& own) { own.Clear(); }, ""},
      {"keep none", [](CommandStack& own) { own.MaximumSize(0); }, ""},
      {"keep one", [](CommandStack& own) { own.MaximumSize(1); }, "M"},
      {"do another", [this](CommandStack& own) { own.Do(Make("N")); }, "<N"},
  };
  for (const auto& row : rows) {
    for (const bool isRedo : {false, true}) {
      CommandStack own(100);
      const auto change = [&] { row.change(own); };
      own.Do(Make("X"));
      own.Do(std::make_shared<Meddling>(isRedo ? nullptr : Meddling::Action(change), change));
      EXPECT_EQ(Success, own.Undo()) << row.name;
      EXPECT_EQ(Success, isRedo ? own.Redo() : Success) << row.name;
      std::string picture;
      for (const auto& command : own) {
        ASSERT_NE(nullptr, command) << row.name;
        if (command == own.UndoCommand()) picture += '<';
        picture += command->Key().ToUtf8();
      }
      EXPECT_EQ(0u, picture.find(row.pictureBehind)) << row.name << isRedo << picture;
      EXPECT_EQ(*row.pictureBehind == '\0', picture.empty()) << row.name << isRedo;
      own.Do(Make("Y"));
      EXPECT_EQ(own.MaximumSize() > 0, own.Undoable()) << row.name;
    }
  }
  stack.Do(std::make_shared<Meddling>([this] { stack.Undo(); }));
  EXPECT_EQ(ErrorOf([&] { stack.Undo(); }), "CommandStack:236:Cannot undo invalid command.");
  EXPECT_TRUE(stack.Undoable());
}

TEST_F(CommandStackTest, destructorsSeeAWholeStackAndMayChangeIt) {
  int ended = 0;
  const auto look = [&] {
    ++ended;
    std::size_t seen = 0;
    for (const auto& command : stack) {
      EXPECT_NE(nullptr, command);
      ++seen;
    }
    EXPECT_EQ(stack.size(), seen);
    stack.UndoLabel();
    stack.RedoLabel();
  };
  const auto fill = [&](int count) {
    for (int i = 0; i < count; ++i) stack.Do(std::make_shared<Meddling>(nullptr, nullptr, look));
  };
  stack.MaximumSize(8);
  fill(13);
  EXPECT_EQ(5, ended);
  stack.Clear();
  EXPECT_EQ(13, ended);
  fill(5);
  for (int i = 0; i < 3; ++i) stack.Undo();
  fill(1);
  EXPECT_EQ(16, ended);
  stack.MaximumSize(1);
  EXPECT_EQ(18, ended);
  stack.MaximumSize(8);
  Do("A");
  stack.Do(std::make_shared<Meddling>(nullptr, nullptr, [&] { stack.Clear(); }));
  stack.Undo();
  Do("B");
  EXPECT_EQ("<B", Picture());
}

/// A command that takes over others of its kind.
class Typing : public SimpleCommand {
public:
  Typing(std::string& text, std::string letters)
      : SimpleCommand(L"Type"), text_(text), letters_(std::move(letters)) {}

private:
  StatusCode DoImpl() override {
    text_ += letters_;
    return Success;
  }
  StatusCode UndoImpl() override {
    text_.resize(text_.size() - letters_.size());
    return Success;
  }
  bool MergeImpl(const Command& newer) override {
    const auto* const typing = dynamic_cast<const Typing*>(&newer);
    if (typing == nullptr || typing->letters_ == " ") return false;
    letters_ += typing->letters_;
    return true;
  }
  std::string& text_;
  std::string letters_;
};

TEST_F(CommandStackTest, commandsThatMergeAreOneButNeverAcrossTheCleanMark) {
  std::string text;
  const auto type = [&](const char* letters) {
    for (const char* letter = letters; *letter != '\0'; ++letter) {
      stack.Do(std::make_shared<Typing>(text, std::string(1, *letter)));
    }
  };
  type("an old");
  EXPECT_EQ(2u, stack.size());
  stack.SetClean();
  type("er");
  EXPECT_EQ(3u, stack.size());
  type(" map");
  stack.Undo();
  EXPECT_EQ("an older", text);
  stack.Undo();
  EXPECT_EQ("an old", text);
  EXPECT_TRUE(stack.IsClean());
  stack.Redo();
  EXPECT_EQ("an older", text);
  type("s");  // drops what was undone
  EXPECT_EQ(3u, stack.size());
  EXPECT_FALSE(stack.Redoable());
  stack.Undo();
  EXPECT_EQ("an old", text);
}

TEST_F(CommandStackTest, theCleanMarkFollowsTheDocumentAndChangesAreNoticed) {
  std::string seen;
  stack.OnChange([&] { seen += stack.IsClean() ? 'c' : 'd'; });
  EXPECT_TRUE(stack.IsClean());
  Do("A");
  stack.SetClean();
  stack.SetClean();
  Do("B");
  stack.Undo();
  EXPECT_EQ("dcdc", seen);
  stack.Undo();
  Do("C");  // the way back to A is gone
  EXPECT_FALSE(stack.IsClean());
  stack.Undo();
  EXPECT_FALSE(stack.IsClean());
  EXPECT_EQ("dcdcddd", seen);
  stack.SetClean();
  stack.ResetClean();
  EXPECT_FALSE(stack.IsClean());
  stack.SetClean();
  stack.Clear();
  EXPECT_TRUE(stack.IsClean());
  stack.Clear();
  EXPECT_EQ("dcdcdddcdcc", seen);
  const Handle failing = Make("F");
  failing->status = Failure;
  stack.Do(failing);
  stack.OnChange(nullptr);
  Do("G");
  EXPECT_EQ("dcdcdddcdcc", seen);
}

/// The stack by indices into a vector, newest first; NONE is the end.
class Model {
public:
  static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

  void Do(int id) {
    names.erase(names.begin(),
                undo == NONE ? names.end() : names.begin() + static_cast<std::ptrdiff_t>(undo));
    names.insert(names.begin(), id);
    if (names.size() > maximum) names.resize(maximum);
    undo = names.empty() ? NONE : 0;
    redo = NONE;
  }
  void Undo() {
    redo = undo;
    undo = undo + 1 < names.size() ? undo + 1 : NONE;
  }
  void Redo() {
    undo = redo;
    redo = undo == 0 ? NONE : undo - 1;
  }
  void SetMaximum(std::size_t size) {
    maximum = size;
    if (names.size() <= maximum) return;
    names.resize(maximum);
    undo = redo = NONE;
  }
  int At(std::size_t position) const { return position == NONE ? -1 : names[position]; }

  std::vector<int> names;
  std::size_t maximum = 8;
  std::size_t undo = NONE;
  std::size_t redo = NONE;
};

int IdOf(const std::shared_ptr<const Command>& command) {
  int id = -1;
  if (command) command->Key().ToInt(id);
  return id;
}

TEST(CommandStack, agreesWithAModelOfPlainIndices) {
  constexpr unsigned SEED = 20260101;
  std::mt19937 random(SEED);
  CommandStack stack(8);
  Model model;
  // The document is the commands that are done; those that a smaller maximum dropped are in it,
  // too.
  std::vector<int> document, saved;
  for (int step = 0; step < 20000; ++step) {
    const unsigned action = random() % 16;
    if (action < 6) {
      stack.Do(std::make_shared<RecordingCommand>(std::to_string(step)));
      model.Do(step);
      document.push_back(step);
    } else if (action < 11 && stack.Undoable()) {
      stack.Undo();
      model.Undo();
      document.pop_back();
    } else if (action < 15 && stack.Redoable()) {
      stack.Redo();
      document.push_back(model.At(model.redo));
      model.Redo();
    } else if (random() % 8 == 0) {
      const std::size_t maximum = random() % 12;
      stack.MaximumSize(maximum);
      model.SetMaximum(maximum);
    } else if (action == 15 && random() % 4 == 0) {
      stack.SetClean();
      saved = document;
    }
    ASSERT_EQ(stack.IsClean(), document == saved) << "step " << step;
    std::vector<int> held;
    for (const auto& command : stack) held.push_back(IdOf(command));
    ASSERT_EQ(held, model.names) << "seed " << SEED << ", step " << step;
    ASSERT_EQ(IdOf(stack.UndoCommand()), model.At(model.undo)) << "step " << step;
    ASSERT_EQ(IdOf(stack.RedoCommand()), model.At(model.redo)) << "step " << step;
  }
}

}  // namespace
}  // namespace shr
