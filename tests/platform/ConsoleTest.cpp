// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Console.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/TemporaryFolder.h"

using namespace shr;

TEST(Console, textGoesToAFileAsUtf8WithItsLineEnds) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"out.txt");
  // Text mode: the runtime would make pairs of line feeds on Windows, before and after but not in
  // WriteText.
  std::FILE* const stream = std::fopen(path.ToUtf8().c_str(), "w");
  ASSERT_NE(nullptr, stream);
  EXPECT_FALSE(platform::IsTerminal(stream));
  EXPECT_TRUE(platform::WriteText(stream, L"a\n\x00E9\x5730\r\n"));
  EXPECT_TRUE(platform::WriteText(stream, L""));
  EXPECT_EQ(0, std::fclose(stream));
  EXPECT_EQ("a\n\xC3\xA9\xE5\x9C\xB0\r\n", test::ReadBytes(path));
}

TEST(Console, aStreamThatTakesNothingIsTold) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"in.txt");
  test::WriteBytes(path, "x");
  std::FILE* const stream = std::fopen(path.ToUtf8().c_str(), "r");
  ASSERT_NE(nullptr, stream);
  EXPECT_FALSE(platform::WriteText(stream, L"text"));
  std::fclose(stream);
}

TEST(Console, theProgramsNameIsTheFirstArgument) {
  const char* const arguments[] = {"platform_tests", nullptr};
  const std::vector<GString> found = platform::ProgramArguments(1, arguments);
  ASSERT_FALSE(found.empty());
  EXPECT_NE(GString::npos, found[0].find(L"platform_tests")) << found[0];
}
