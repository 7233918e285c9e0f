// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/GString.h"

#include <cstdio>
#include <ostream>

#include "shared/platform/CodePages.h"
#include "shared/text/StringUtility.h"
#include "shared/text/Utf.h"
#include "shared/text/WideTextWriter.h"

namespace shr {
namespace {

std::wstring Widen(std::string_view text, std::uint32_t codePage) {
  std::wstring wide;
  platform::AppendWide(codePage, text, wide);
  return wide;
}

std::wstring WidenUtf8(std::string_view text) {
  std::wstring wide(text.size(), L'\0');
  wide.resize(Utf8ToWide(text, wide.data()));
  return wide;
}

/// Where streams keep their `WideTextWriter`.
int WriterIndex() {
  static const int index = std::ios_base::xalloc();
  return index;
}

std::string_view BytesOf(std::u8string_view text) {
  return {reinterpret_cast<const char*>(text.data()), text.size()};
}

}  // namespace

const GString::size_type GString::npos = std::wstring::npos;

GString::GString(const char* text) : text_(Widen(text, CODE_PAGE_ANSI)) {}

GString::GString(const std::string& text) : text_(Widen(text, CODE_PAGE_ANSI)) {}

GString::GString(const char8_t* text) : text_(WidenUtf8(BytesOf(text))) {}

GString::GString(const std::u8string& text) : text_(WidenUtf8(BytesOf(text))) {}

GString::GString(std::u8string_view text) : text_(WidenUtf8(BytesOf(text))) {}

GString& GString::operator=(const std::wstring& text) {
  text_ = text;
  return *this;
}

GString& GString::operator=(std::wstring&& text) noexcept {
  text_ = std::move(text);
  return *this;
}

GString& GString::operator=(const wchar_t* text) {
  text_ = text;
  return *this;
}

GString& GString::operator=(std::wstring_view text) {
  text_ = text;
  return *this;
}

GString& GString::operator=(wchar_t ch) {
  text_ = ch;
  return *this;
}

GString& GString::operator=(char ch) {
  text_ = Widen(std::string_view(&ch, 1), CODE_PAGE_ANSI);
  return *this;
}

GString& GString::operator+=(const GString& text) {
  text_ += text.text_;
  return *this;
}

GString& GString::operator+=(const wchar_t* text) {
  text_ += text;
  return *this;
}

GString& GString::operator+=(wchar_t ch) {
  text_ += ch;
  return *this;
}

GString& GString::operator+=(char ch) {
  text_ += Widen(std::string_view(&ch, 1), CODE_PAGE_ANSI);
  return *this;
}

GString& GString::append(const wchar_t* text) {
  text_.append(text);
  return *this;
}

GString& GString::append(const wchar_t* text, size_type count) {
  text_.append(text, count);
  return *this;
}

GString& GString::append(size_type count, wchar_t ch) {
  text_.append(count, ch);
  return *this;
}

GString& GString::append(std::wstring_view text) {
  text_.append(text);
  return *this;
}

GString& GString::assign(const wchar_t* text, size_type count) {
  text_.assign(text, count);
  return *this;
}

GString& GString::assign(size_type count, wchar_t ch) {
  text_.assign(count, ch);
  return *this;
}

GString& GString::assign(std::wstring_view text) {
  text_.assign(text);
  return *this;
}

void GString::FromNarrow(const char* text, std::uint32_t codePage) {
  text_ = Widen(text, codePage);
}

void GString::FromNarrow(std::string_view text, std::uint32_t codePage) {
  text_ = Widen(text, codePage);
}

std::string GString::ToNarrow(std::uint32_t codePage) const {
  std::string narrow;
  platform::AppendNarrow(codePage, text_, narrow);
  return narrow;
}

GString GString::FromUtf8(std::string_view text) {
  return GString(WidenUtf8(text));
}

std::string GString::ToUtf8() const {
  std::string utf8(text_.size() * UTF8_BYTES_PER_UNIT, '\0');
  utf8.resize(WideToUtf8(text_, utf8.data()));
  return utf8;
}

void GString::FromWide(const wchar_t* text, std::uint32_t /*codePage*/) {
  text_ = text;
}

const std::wstring& GString::ToWide(std::uint32_t /*codePage*/) const& {
  return text_;
}

std::wstring GString::ToWide(std::uint32_t /*codePage*/) && {
  return std::move(text_);
}

std::string GString::WtoAForDiagnostics() const {
  std::string narrow;
  narrow.reserve(text_.size());
  for (const wchar_t ch : text_) {
    const auto unit = static_cast<std::uint32_t>(ch);
    if (unit < 128) {
      narrow += static_cast<char>(unit);
    } else {
      char escape[16];
      std::snprintf(escape, sizeof escape, "\\U+%04X", static_cast<unsigned int>(unit));
      narrow += escape;
    }
  }
  return narrow;
}

GString& GString::erase(size_type pos, size_type count) {
  text_.erase(pos, count);
  return *this;
}

GString& GString::insert(size_type pos, std::wstring_view text) {
  text_.insert(pos, text);
  return *this;
}

GString& GString::insert(size_type pos, size_type count, wchar_t ch) {
  text_.insert(pos, count, ch);
  return *this;
}

GString& GString::replace(size_type pos, size_type count, std::wstring_view text) {
  text_.replace(pos, count, text);
  return *this;
}

GString& GString::replace(size_type pos, size_type count, size_type newCount, wchar_t ch) {
  text_.replace(pos, count, newCount, ch);
  return *this;
}

GString& GString::replace(const_iterator first, const_iterator last, std::wstring_view text) {
  text_.replace(first, last, text);
  return *this;
}

GString::size_type GString::find(const GString& text, size_type pos) const noexcept {
  return text_.find(text.text_, pos);
}

GString::size_type GString::rfind(std::wstring_view text, size_type pos) const noexcept {
  return text_.rfind(text, pos);
}

GString::size_type GString::rfind(wchar_t ch, size_type pos) const noexcept {
  return text_.rfind(ch, pos);
}

GString::size_type GString::find_first_of(std::wstring_view units, size_type pos) const noexcept {
  return text_.find_first_of(units, pos);
}

GString::size_type GString::find_first_of(wchar_t ch, size_type pos) const noexcept {
  return text_.find_first_of(ch, pos);
}

GString::size_type GString::find_first_not_of(std::wstring_view units,
                                              size_type pos) const noexcept {
  return text_.find_first_not_of(units, pos);
}

GString::size_type GString::find_first_not_of(wchar_t ch, size_type pos) const noexcept {
  return text_.find_first_not_of(ch, pos);
}

GString::size_type GString::find_last_of(std::wstring_view units, size_type pos) const noexcept {
  return text_.find_last_of(units, pos);
}

GString::size_type GString::find_last_of(wchar_t ch, size_type pos) const noexcept {
  return text_.find_last_of(ch, pos);
}

GString::size_type GString::find_last_not_of(std::wstring_view units,
                                             size_type pos) const noexcept {
  return text_.find_last_not_of(units, pos);
}

GString::size_type GString::find_last_not_of(wchar_t ch, size_type pos) const noexcept {
  return text_.find_last_not_of(ch, pos);
}

bool GString::contains(std::wstring_view text) const noexcept {
  return text_.find(text) != text_.npos;
}

int GString::compare(size_type pos, size_type count, std::wstring_view text) const {
  return text_.compare(pos, count, text);
}

GString GString::substr(size_type pos, size_type count) const {
  return GString(text_.substr(pos, count));
}

GString& GString::MakeLower() {
  shr::MakeLower(text_);
  return *this;
}

GString& GString::MakeUpper() {
  shr::MakeUpper(text_);
  return *this;
}

GString GString::ToLower() const {
  return GString(shr::ToLower(text_));
}

GString GString::ToUpper() const {
  return GString(shr::ToUpper(text_));
}

GString& GString::TrimLeft() {
  shr::TrimLeft(text_);
  return *this;
}

GString& GString::TrimRight() {
  shr::TrimRight(text_);
  return *this;
}

GString& GString::Trim() {
  shr::Trim(text_);
  return *this;
}

bool GString::FormatString(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const bool done = shr::FormatStringVA(text_, format, arguments);
  va_end(arguments);
  return done;
}

bool GString::FormatString(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const bool done = FormatStringVA(format, arguments);
  va_end(arguments);
  return done;
}

bool GString::FormatStringVA(const wchar_t* format, va_list arguments) {
  return shr::FormatStringVA(text_, format, arguments);
}

bool GString::FormatStringVA(const char* format, va_list arguments) {
  return shr::FormatStringVA(text_, Widen(format, CODE_PAGE_ANSI).c_str(), arguments);
}

bool GString::AppendFormatString(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const bool done = shr::AppendFormatStringVA(text_, format, arguments);
  va_end(arguments);
  return done;
}

bool GString::AppendFormatString(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const bool done =
      shr::AppendFormatStringVA(text_, Widen(format, CODE_PAGE_ANSI).c_str(), arguments);
  va_end(arguments);
  return done;
}

bool GString::WildCmp(const GString& pattern, bool caseSensitive) const {
  return shr::WildCmp(pattern.text_, text_, caseSensitive);
}

GString GString::ParseToken(size_type& pos, wchar_t delimiter) const {
  return GString(shr::ParseToken(text_, pos, delimiter));
}

bool GString::ToBool(bool& value) const {
  return StringToBool(text_, value);
}

bool GString::ToInt(int& value) const {
  return StringToInt(text_, value);
}

bool GString::ToInt64(std::int64_t& value) const {
  return StringToInt64(text_, value);
}

bool GString::ToUnsignedInt(unsigned int& value) const {
  return StringToUnsigned(text_, value);
}

bool GString::ToDouble(double& value) const {
  return StringToDouble(text_, value);
}

std::wostream& operator<<(std::wostream& out, const GString& text) {
  return out << text.String();
}

void SetWideTextWriter(std::ios_base& stream, const WideTextWriter* writer) {
  stream.pword(WriterIndex()) = const_cast<WideTextWriter*>(writer);
}

std::ostream& operator<<(std::ostream& out, const GString& text) {
  const auto* writer = static_cast<const WideTextWriter*>(out.pword(WriterIndex()));
  if (writer != nullptr) {
    writer->write(out, text);
    return out;
  }
  const std::string utf8 = text.ToUtf8();
  return out.write(utf8.data(), static_cast<std::streamsize>(utf8.size()));
}

}  // namespace shr
