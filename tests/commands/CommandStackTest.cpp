// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: statuses of do, undo and redo and what each leaves behind; exceptions; commands that
// cannot be undone; trimming by the maximum, at Do and by the setter; order of destruction; nested
// execution; long random runs against a model that keeps plain indices.

#include "shared/commands/CommandStack.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <random>
#include <vector>

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
      picture += command->Key().ToNarrow(65001);
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
  for (int step = 0; step < 20000; ++step) {
    const unsigned action = random() % 16;
    if (action < 6) {
      stack.Do(std::make_shared<RecordingCommand>(std::to_string(step)));
      model.Do(step);
    } else if (action < 11 && stack.Undoable()) {
      stack.Undo();
      model.Undo();
    } else if (action < 15 && stack.Redoable()) {
      stack.Redo();
      model.Redo();
    } else if (random() % 8 == 0) {
      const std::size_t maximum = random() % 12;
      stack.MaximumSize(maximum);
      model.SetMaximum(maximum);
    }
    std::vector<int> held;
    for (const auto& command : stack) held.push_back(IdOf(command));
    ASSERT_EQ(held, model.names) << "seed " << SEED << ", step " << step;
    ASSERT_EQ(IdOf(stack.UndoCommand()), model.At(model.undo)) << "step " << step;
    ASSERT_EQ(IdOf(stack.RedoCommand()), model.At(model.redo)) << "step " << step;
  }
}

}  // namespace
}  // namespace shr
