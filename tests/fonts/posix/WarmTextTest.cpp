// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: text that was met before is measured without taking memory. The program's own operator new
// counts, which the library uses, too.

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "shared/fonts/TextLayout.h"

namespace {

thread_local std::size_t blocksTaken = 0;

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  ++blocksTaken;
  return std::malloc(size != 0 ? size : 1);
}
void* operator new(std::size_t size) {
  if (void* const block = operator new(size, std::nothrow)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  std::free(block);
}

namespace shr {
namespace {

TEST(WarmText, isMeasuredWithoutTakingMemory) {
  TextFace face;
  face.name = L"DejaVu Sans";
  struct Row {
    const char* name;
    const char* text;
  };
  const Row rows[] = {
      {"Latin", "San Francisco de Macorís, Santo Domingo"},
      {"Greek and Cyrillic", "Αθήνα, Нижний Новгород"},
      {"falls back", "東京 (Tokyo), 서울, 🌋"},
      {"shaped", "القاهرة"},
      {"shaped in another face", "दिल्ली"},
      {"a mark", "e\u0301"},
      {"missing everywhere", "\U0003FFF0"},
      {"controls", "a\tb\n"},
  };
  for (const Row& row : rows) {
    const GString text = GString::FromUtf8(row.text);
    const double advance = MeasureText(text, face);
    const Box2d ink = MeasureTextBounds(text, face);
    const std::size_t before = blocksTaken;
    const bool isEqual = MeasureText(text, face) == advance && MeasureTextBounds(text, face) == ink;
    EXPECT_EQ(before, blocksTaken) << row.name;
    EXPECT_TRUE(isEqual) << row.name;
  }
  const std::size_t before = blocksTaken;
  EXPECT_FALSE(LayoutText(L"abc", face).runs.empty());
  EXPECT_LT(before, blocksTaken) << "nothing is counted";
}

}  // namespace
}  // namespace shr
