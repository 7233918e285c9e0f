// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// What needs no face loads no library of fonts: simple text, faults of markup, layout with fixed
// metrics; measuring by faces does. In a process of its own, since other tests load them.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "tests/mathtext/MathTextDrawing.h"

namespace shr {
namespace {

bool IsLoaded(const std::string& library) {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    if (line.find(library) != std::string::npos) return true;
  }
  return false;
}

[[noreturn]] void UseMathTextWithoutFaces() {
  const bool isRight = MathTextToSimpleText(L"{\\b a}\n\\fs200 b") == L"a\nb" &&
                       FindMathTextFault(L"{\\b") == L"Unbalanced '{' and '}' directives" &&
                       test::Drawn(L"{\\b a}b") == "'a'0,0b 'b'5,0";
  bool isClean = true;
  for (const char* const library : {"libfreetype", "libfontconfig", "libharfbuzz", "libfribidi"}) {
    isClean = isClean && !IsLoaded(library);
  }
  CMTFaceTextIF measure;
  const bool isFoundThen = measure.GetTextExtent(L"a") > 0 && IsLoaded("libfreetype");
  std::exit(isRight && isClean && isFoundThen ? 0 : 1);
}

TEST(MathTextWithoutFaces, loadsNoLibraryOfFonts) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(UseMathTextWithoutFaces(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace shr
