// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the order of doing, undoing and redoing; a command in the middle that throws, fails or is
// cancelled, in each direction; commands that cannot be undone; commands added when done already.

#include "shared/commands/CompoundCommand.h"

#include <gtest/gtest.h>

#include "shared/commands/CommandStack.h"
#include "tests/commands/ErrorOf.h"
#include "tests/commands/RecordingCommand.h"

namespace shr {
namespace {

using Journal = RecordingCommand::Journal;
using Handle = std::shared_ptr<RecordingCommand>;

struct Compound {
  Compound() {
    for (const char* name : {"a", "b", "c"}) {
      parts.push_back(std::make_shared<RecordingCommand>(name, &journal));
      whole.Add(parts.back());
    }
  }
  /// Returns what has been done since the last call.
  Journal Take() {
    Journal taken;
    taken.swap(journal);
    return taken;
  }

  Journal journal;
  std::vector<Handle> parts;
  CompoundCommand whole{L"Tidy", L"Tidy the map"};
};

TEST(CompoundCommand, isDoneInOrderAndUndoneInTheOppositeOne) {
  Compound compound;
  EXPECT_EQ(L"Tidy", compound.whole.Key());
  EXPECT_EQ(L"Tidy the map", compound.whole.Label());
  EXPECT_EQ(Success, compound.whole.Do());
  EXPECT_EQ(Success, compound.whole.Undo());
  EXPECT_EQ(Success, compound.whole.Redo());
  EXPECT_EQ(
      (Journal{"do a", "do b", "do c", "undo c", "undo b", "undo a", "redo a", "redo b", "redo c"}),
      compound.Take());
  EXPECT_NE("nothing", ErrorOf([&] { compound.whole.Add(nullptr); }));
}

TEST(CompoundCommand, isAllOrNothing) {
  for (const char* const how : {"throws", "cancelled", "failed"}) {
    const std::string name(how);
    Compound compound;
    RecordingCommand& middle = *compound.parts[1];
    const auto set = [&](bool isBad) {
      middle.throws = isBad && name == "throws";
      middle.status = !isBad || middle.throws ? Success : name == "failed" ? Failure : Cancelled;
    };
    const StatusCode expected = name == "failed" ? Failure : Cancelled;
    set(true);
    if (middle.throws) {
      EXPECT_EQ("do", ErrorOf([&] { compound.whole.Do(); }));
    } else {
      EXPECT_EQ(expected, compound.whole.Do());
    }
    EXPECT_EQ((Journal{"do a", "do b", "undo a"}), compound.Take()) << name;
    set(false);
    EXPECT_EQ(Success, compound.whole.Do());
    compound.Take();
    set(true);
    if (name == "failed") {  // which stops nothing here
      EXPECT_EQ(Failure, compound.whole.Undo());
      EXPECT_EQ((Journal{"undo c", "undo b", "undo a"}), compound.Take());
      EXPECT_EQ(Failure, compound.whole.Redo());
      continue;
    }
    ErrorOf([&] { EXPECT_EQ(expected, compound.whole.Undo()); });
    EXPECT_EQ((Journal{"undo c", "undo b", "redo c"}), compound.Take()) << name;
    set(false);
    EXPECT_EQ(Success, compound.whole.Undo());
    compound.Take();
    set(true);
    ErrorOf([&] { EXPECT_EQ(expected, compound.whole.Redo()); });
    EXPECT_EQ((Journal{"redo a", "redo b", "undo a"}), compound.Take()) << name;
  }
}

TEST(CompoundCommand, canBeUndoneWhenAllItsCommandsCan) {
  Compound compound;
  CommandStack stack(5);
  compound.whole.Do();
  EXPECT_TRUE(compound.whole.UndoRedoable());
  compound.parts[2]->redoable = false;
  EXPECT_FALSE(compound.whole.UndoRedoable());
}

TEST(CompoundCommand, takesCommandsThatAreDoneAlready) {
  Journal journal;
  CommandStack stack(5);
  const auto whole = std::make_shared<CompoundCommand>(L"Drag");
  for (const char* name : {"a", "b"}) {
    const auto part = std::make_shared<RecordingCommand>(name, &journal);
    part->Do();
    whole->AddDone(part);
  }
  stack.Do(whole);
  stack.Undo();
  stack.Redo();
  EXPECT_EQ((Journal{"do a", "do b", "undo b", "undo a", "redo a", "redo b"}), journal);
  EXPECT_EQ(1u, stack.size());
  stack.Clear();
}

}  // namespace
}  // namespace shr
