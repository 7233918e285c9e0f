// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/PrintfArguments.h"

namespace shr {
namespace {

using Kinds = std::initializer_list<FormatKind>;

/// Goes through the conversions of a format in step with its arguments. What is malformed is left
/// to the formatter, which refuses it.
template <typename Char>
class FormatCheck {
public:
  FormatCheck(const Char* format, FormatKind plainText, Kinds arguments)
      : next_(format),
        plainText_(plainText),
        argument_(arguments.begin()),
        lastArgument_(arguments.end()) {}

  bool Run() {
    while (*next_ != Char()) {
      if (*next_++ != '%') continue;
      if (*next_ == '%') {
        ++next_;
      } else if (!Conversion()) {
        return false;
      }
    }
    return true;
  }

private:
  bool Conversion() {
    for (; IsOneOf("-+ #0123456789.*"); ++next_) {
      if (*next_ == '*' && !Take(FormatKind::Plain)) return false;
    }
    const FormatKind length = Length();
    if (*next_ == Char()) return true;
    const bool isSmall = *next_ == 's';
    if (!isSmall && *next_ != 'S') {
      ++next_;
      return Take(FormatKind::Plain);
    }
    ++next_;
    if (length != FormatKind::Plain) return TakeText(length);
    return TakeText(isSmall ? plainText_ : OtherWidth(plainText_));
  }

  /// Steps over the length and returns the width of text that it asks for, `Plain` for none.
  FormatKind Length() {
    const Char first = *next_;
    std::size_t count = 0;
    for (; IsOneOf("hlwjztLI2346") && (count > 0 || !IsOneOf("2346")); ++next_) ++count;
    if (first == 'h') return FormatKind::NarrowText;
    return count == 1 && (first == 'l' || first == 'w') ? FormatKind::WideText : FormatKind::Plain;
  }

  bool IsOneOf(std::string_view units) const {
    for (const char unit : units) {
      if (*next_ == static_cast<Char>(unit)) return true;
    }
    return false;
  }

  static FormatKind OtherWidth(FormatKind text) {
    return text == FormatKind::WideText ? FormatKind::NarrowText : FormatKind::WideText;
  }

  bool Take(FormatKind wanted) { return argument_ != lastArgument_ && *argument_++ == wanted; }

  /// A pointer may stand for a text of either width.
  bool TakeText(FormatKind wanted) {
    if (argument_ == lastArgument_) return false;
    const FormatKind kind = *argument_++;
    return kind == wanted || kind == FormatKind::Plain;
  }

  const Char* next_;
  FormatKind plainText_;
  Kinds::const_iterator argument_;
  Kinds::const_iterator lastArgument_;
};

}  // namespace

bool FormatTakes(const wchar_t* format, FormatKind plainText, Kinds arguments) {
  return FormatCheck<wchar_t>(format, plainText, arguments).Run();
}

bool FormatTakes(const char* format, FormatKind plainText, Kinds arguments) {
  return FormatCheck<char>(format, plainText, arguments).Run();
}

}  // namespace shr
