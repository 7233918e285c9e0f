// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Options.h"

#include <gtest/gtest.h>

using namespace mapreport;

namespace {

CommandLine Parse(std::initializer_list<const wchar_t*> arguments) {
  std::vector<GString> all{L"mapreport"};
  for (const wchar_t* argument : arguments) all.emplace_back(argument);
  return ParseCommandLine(all);
}

}  // namespace

TEST(Options, areTakenFromTheCommandLine) {
  const CommandLine line = Parse(
      {L"--map", L"m\x00E4p.txt", L"--points=\x5730\x9707.csv", L"--cities", L"c.csv", L"--out",
       L"o", L"--window", L"-10,35,40,60", L"--codepage", L"932", L"--cities-codepage", L"1251",
       L"--title", L"\x0395\x03BB", L"--labels", L"7", L"--quiet"});
  ASSERT_EQ(CommandLine::Action::Run, line.action) << line.text;
  EXPECT_EQ(L"m\x00E4p.txt", line.options.inputs.map.path);
  EXPECT_EQ(L"\x5730\x9707.csv", line.options.inputs.points.path);
  EXPECT_EQ(932u, line.options.inputs.map.codePage);
  EXPECT_EQ(1251u, line.options.inputs.cities.codePage);
  EXPECT_EQ(Box2d(-10, 35, 40, 60), line.options.settings.window);
  EXPECT_EQ(L"\x0395\x03BB", line.options.settings.title);
  EXPECT_EQ(7u, line.options.settings.labels);
  EXPECT_TRUE(line.options.quiet);
}

TEST(Options, wrongUsageIsOneLine) {
  struct Row {
    const char* name;
    std::initializer_list<const wchar_t*> arguments;
    const wchar_t* part;
  };
  const Row rows[] = {
      {"nothing", {}, L"--out"},
      {"unknown option", {L"--out", L"o", L"--sea", L"blue"}, L"--sea"},
      {"stray text", {L"--out", L"o", L"countries.txt"}, L"countries.txt"},
      {"no value", {L"--out"}, L"--out"},
      {"window", {L"--out", L"o", L"--window", L"1,2,3"}, L"1,2,3"},
      {"page", {L"--out", L"o", L"--codepage", L"77777"}, L"77777"},
      {"labels", {L"--out", L"o", L"--labels", L"-1"}, L"--labels"},
      {"colors", {L"--out", L"o", L"--colors", L"#12345,#000000"}, L"#12345"},
      {"undo", {L"--out", L"o", L"--undo", L"two"}, L"--undo"},
      {"collector", {L"--out", L"o", L"--remote-log", L"localhost"}, L"localhost"},
      {"loaded and read", {L"--out", L"o", L"--load", L"a", L"--map", L"b"}, L"--load"},
      {"loaded and last", {L"--out", L"o", L"--load", L"a", L"--last"}, L"--load"},
  };
  for (const Row& row : rows) {
    const CommandLine line = Parse(row.arguments);
    EXPECT_EQ(CommandLine::Action::UsageError, line.action) << row.name;
    EXPECT_NE(GString::npos, line.text.find(row.part)) << row.name << ": " << line.text;
    EXPECT_EQ(GString::npos, line.text.find(L'\n')) << row.name << ": " << line.text;
  }
}
