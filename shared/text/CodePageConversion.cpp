// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/CodePageConversion.h"

#include <algorithm>
#include <cstdarg>
#include <string_view>

#include "shared/platform/CodePages.h"
#include "shared/text/StringUtility.h"

namespace shr {
namespace {

template <typename Char>
std::unique_ptr<Char[]> Terminated(std::basic_string_view<Char> text) {
  std::unique_ptr<Char[]> copy(new Char[text.size() + 1]);
  std::copy(text.begin(), text.end(), copy.get());
  copy[text.size()] = Char();
  return copy;
}

std::unique_ptr<wchar_t[]> Widen(const char* text, std::uint32_t codePage) {
  if (text == nullptr) return nullptr;
  std::wstring wide;
  platform::AppendWide(codePage, text, wide);
  return Terminated<wchar_t>(wide);
}

std::string Narrow(std::wstring_view text, std::uint32_t codePage) {
  std::string narrow;
  platform::AppendNarrow(codePage, text, narrow);
  return narrow;
}

std::unique_ptr<wchar_t[]> FormatAndWiden(const char* format, va_list arguments) {
  std::string text;
  if (!FormatStringVA(text, format, arguments)) text.clear();
  return Widen(text.c_str(), CODE_PAGE_ANSI);
}

}  // namespace

bool SetDefaultCodePage(std::uint32_t codePage) {
  return platform::SetActiveCodePage(codePage);
}

std::uint32_t GetDefaultCodePage() {
  return platform::ActualCodePage(CODE_PAGE_ANSI);
}

AtoW::AtoW(const char* text, std::uint32_t codePage) : text_(Widen(text, codePage)) {}

AtoW::AtoW(const std::string& text, std::uint32_t codePage) : AtoW(text.c_str(), codePage) {}

WtoA::WtoA(const wchar_t* text, std::uint32_t codePage) {
  if (text != nullptr) text_ = Terminated<char>(Narrow(text, codePage));
}

WtoA::WtoA(std::wstring_view text, std::uint32_t codePage)
    : text_(Terminated<char>(Narrow(text, codePage))) {}

const char* AtoWV::Checked(const char* format, std::initializer_list<FormatKind> arguments) {
  if (format == nullptr || FormatTakes(format, FormatKind::NarrowText, arguments)) return format;
  return "%";
}

AtoWV::AtoWV(const char* format, ...) {
  if (format == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  text_ = FormatAndWiden(format, arguments);
  va_end(arguments);
}

WtoAArray::WtoAArray() : bytes_(1, '\0') {}

void WtoAArray::SetArray(const wchar_t* text) {
  const std::string narrow = text == nullptr ? std::string() : Narrow(text, CODE_PAGE_ANSI);
  bytes_.assign(narrow.c_str(), narrow.c_str() + narrow.size() + 1);
}

}  // namespace shr
