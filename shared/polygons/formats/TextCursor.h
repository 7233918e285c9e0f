// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A place in a text that is being read, shared by the readers of this folder. Not installed.

#pragma once

#include <cmath>
#include <cstddef>
#include <string_view>

#include "shared/diagnostics/ThrowError.h"
#include "shared/text/NumberParsing.h"

namespace shr {

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

class TextCursor {
public:
  TextCursor(std::string_view text, const wchar_t* format) : text_(text), format_(format) {}

  std::size_t Offset() const { return at_; }
  void MoveTo(std::size_t offset) { at_ = offset; }

  bool IsAtEnd() const { return at_ == text_.size(); }
  /// Returns the next byte, zero at the end.
  char Peek() const { return IsAtEnd() ? '\0' : text_[at_]; }
  /// Returns the next byte and steps behind it; zero at the end, without a step.
  char Next() { return IsAtEnd() ? '\0' : text_[at_++]; }

  void SkipSpace() {
    while (Peek() == ' ' || Peek() == '\n' || Peek() == '\r' || Peek() == '\t') ++at_;
  }
  /// Skips space, then steps behind `c` if that comes next, and returns whether it did.
  bool Take(char c) {
    SkipSpace();
    if (IsAtEnd() || text_[at_] != c) return false;
    ++at_;
    return true;
  }
  /// Steps behind `word` if that comes next, and returns whether it did.
  bool TakeWord(std::string_view word) {
    if (text_.substr(at_, word.size()) != word) return false;
    at_ += word.size();
    return true;
  }
  void Expect(char c, const wchar_t* message) {
    if (!Take(c)) Fail(message);
  }

  /// Reads a finite number.
  double Number() {
    const char* const first = text_.data() + at_;
    const RealPrefix<char> number = ParseRealPrefix(first, text_.data() + text_.size());
    if (number.status == RealStatus::None) Fail(L"A number is missing.");
    if (!std::isfinite(number.value)) Fail(L"The number is not finite.");
    at_ += static_cast<std::size_t>(number.end - first);
    return number.value;
  }

  [[noreturn]] void Fail(const wchar_t* message) const { FailAt(at_, message); }
  [[noreturn]] void FailAt(std::size_t offset, const wchar_t* message) const {
    ThrowErrorImpl(L"PolygonText", __LINE__, L"Unable to read %s text at offset %zu.\n%s", format_,
                   offset, message);
  }

private:
  std::string_view text_;
  std::size_t at_ = 0;
  const wchar_t* format_;
};

}  // namespace shr
