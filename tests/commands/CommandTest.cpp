// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: options by text and by any value (each switch, any letter case, values that are not
// booleans, foreign keys, empty keys, every overload); enumeration and its way back; undo and redo
// of disabled commands; equivalence; copies share the memento; command descriptions.

#include "shared/commands/Command.h"

#include <gtest/gtest.h>

#include <boost/any.hpp>

#include "shared/commands/CommandOptions.h"
#include "tests/commands/ErrorOf.h"
#include "tests/commands/RecordingCommand.h"

namespace shr {
namespace {

std::string SwitchesOf(const Command& command) {
  std::string switches;
  if (command.GuiEnabled()) switches += 'G';
  if (command.ProgressEnabled()) switches += 'P';
  if (command.UndoRedoEnabled()) switches += 'U';
  return switches;
}

TEST(Command, textOptionsSetTheSwitches) {
  struct Row {
    const char* name;
    const wchar_t* key;
    const wchar_t* value;
    bool taken;
    const char* switches;
  };
  const Row rows[] = {
      {"gui off", L"GuiEnabled", L"False", true, "PU"},
      {"progress off, lower case", L"progressenabled", L"0", true, "GU"},
      {"undo off, upper case", L"UNDOREDOENABLED", L"f", true, "GP"},
      {"set again", L"UndoRedoEnabled", L"T", true, "GPU"},
      {"not a boolean", L"UndoRedoEnabled", L"off", false, "GPU"},
      {"blank before the value", L"GuiEnabled", L" false", false, "GPU"},
      {"empty value", L"GuiEnabled", L"", false, "GPU"},
      {"empty key", L"", L"false", false, "GPU"},
  };
  for (const Row& row : rows) {
    RecordingCommand command("C");
    EXPECT_EQ(command.Option(row.key, row.value), row.taken) << row.name;
    EXPECT_EQ(SwitchesOf(command), row.switches) << row.name;
    EXPECT_TRUE(command.textKey.empty()) << row.name;
  }
}

TEST(Command, everyOverloadOfOptionReachesTheDerivedClassInLowerCase) {
  RecordingCommand command("C");
  const GString key(L"Key\x00C9"), value(L"Some Value");
  const GString expectedKey(L"key\x00C9");
  const auto expectTaken = [&](bool taken) {
    EXPECT_TRUE(taken);
    EXPECT_EQ(command.textKey, expectedKey);
    EXPECT_EQ(command.textValue, value);
    command.textKey = command.textValue = L"";
  };
  expectTaken(command.Option(key, value));
  expectTaken(command.Option(key.c_str(), value));
  expectTaken(command.Option(key, value.c_str()));
  expectTaken(command.Option(key.c_str(), value.c_str()));
  EXPECT_TRUE(command.Option(key, boost::any(7)));
  EXPECT_EQ(command.anyKey, expectedKey);
  EXPECT_TRUE(command.Option(L"Depth", boost::any(2.5)));
  EXPECT_EQ(command.anyKey, L"depth");
  EXPECT_EQ(boost::any_cast<double>(command.anyValue), 2.5);
}

TEST(Command, anyOptionsSetTheSwitchesFromBooleansOnly) {
  RecordingCommand command("C");
  EXPECT_TRUE(command.Option(L"GuiEnabled", boost::any(false)));
  EXPECT_EQ(SwitchesOf(command), "PU");
  EXPECT_FALSE(command.Option(L"GuiEnabled", boost::any(1)));
  EXPECT_FALSE(command.Option(L"GuiEnabled", boost::any(GString(L"true"))));
  EXPECT_FALSE(command.Option(L"GuiEnabled", boost::any()));
  EXPECT_FALSE(command.Option(GString(), boost::any(true)));
  EXPECT_EQ(SwitchesOf(command), "PU");
  EXPECT_TRUE(command.anyKey.empty());
}

TEST(Command, enumeratedOptionsRebuildTheCommand) {
  const RecordingCommand fresh("C");
  CommandOptionList options = {{L"before", L"kept"}};
  fresh.EnumerateOptions(options);
  EXPECT_EQ(options, (CommandOptionList{{L"before", L"kept"},
                                        {L"GuiEnabled", L"True"},
                                        {L"ProgressEnabled", L"True"},
                                        {L"UndoRedoEnabled", L"True"}}));
  for (unsigned switches = 0; switches < 8; ++switches) {
    RecordingCommand command("C");
    command.GuiEnabled(switches & 1);
    command.ProgressEnabled(switches & 2);
    command.UndoRedoEnabled(switches & 4);
    command.Option(L"extra", L"value");
    CommandOptions description(command.Key());
    command.EnumerateOptions(description.Options());
    RecordingCommand rebuilt("C");
    for (const auto& [name, value] : description) EXPECT_TRUE(rebuilt.Option(name, value));
    EXPECT_EQ(SwitchesOf(rebuilt), SwitchesOf(command));
    EXPECT_EQ(rebuilt.textValue, L"value");
  }
}

TEST(Command, undoAndRedoNeedBothTheSwitchAndTheExecution) {
  for (const bool enabled : {false, true}) {
    for (const bool supported : {false, true}) {
      RecordingCommand::Journal journal;
      RecordingCommand command("C", &journal);
      command.UndoRedoEnabled(enabled);
      command.redoable = supported;
      const bool allowed = enabled && supported;
      EXPECT_EQ(command.UndoRedoable(), allowed);
      EXPECT_EQ(ErrorOf([&] { command.Undo(); }),
                allowed ? "nothing" : "Command:364:Cannot undo disabled command.");
      EXPECT_EQ(ErrorOf([&] { command.Redo(); }),
                allowed ? "nothing" : "Command:344:Cannot redo disabled command.");
      EXPECT_EQ(journal.size(), allowed ? 2u : 0u);
    }
  }
}

TEST(Command, isEquivalentByKeyAndLabelOrByItsOwnTest) {
  RecordingCommand a("C"), b("C"), other("D");
  EXPECT_TRUE(a.Equivalent(b));
  b.label = L"Another label";
  EXPECT_FALSE(a.Equivalent(b));
  EXPECT_FALSE(a.Equivalent(other));
  a.equivalent = true;
  EXPECT_TRUE(a.Equivalent(other));
  EXPECT_FALSE(other.Equivalent(a));
}

TEST(Command, copiesShareTheMementoAndKeepTheSwitches) {
  RecordingCommand command("C");
  command.Memento(std::make_shared<Memento>());
  command.GuiEnabled(false);
  const RecordingCommand copy(command);
  EXPECT_EQ(copy.Memento(), command.Memento());
  EXPECT_EQ(SwitchesOf(copy), "PU");
}

TEST(CommandOptions, needAKeyAndKeepTheOrder) {
  EXPECT_EQ(ErrorOf([] { CommandOptions description{GString()}; }),
            "CommandOptions:24:Command key must be non-empty.");
  CommandOptions description(L"Move");
  description.Add(L"b", L"1");
  description.Add(L"a", L"2");
  description.Add(L"b", L"3");
  CommandOptions copy = description;
  description.clear();
  EXPECT_TRUE(description.empty());
  EXPECT_EQ(description.Key(), L"Move");
  ASSERT_EQ(copy.size(), 3u);
  EXPECT_EQ(copy.begin()->second, L"1");
  EXPECT_EQ(copy.rbegin()->second, L"3");
}

}  // namespace
}  // namespace shr
