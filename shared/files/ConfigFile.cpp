// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/ConfigFile.h"

#include <charconv>
#include <string>
#include <string_view>

#include "shared/diagnostics/ThrowError.h"
#include "shared/files/Path.h"
#include "shared/platform/Profile.h"
#include "shared/platform/RawFile.h"
#include "shared/text/CodePageConversion.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"ConfigFile";
constexpr std::size_t VALUE_UNITS = 1024;
constexpr std::size_t SECTION_UNITS = 8192;
constexpr std::uint32_t ANSI_PAGE = 0;

bool ParseUnsigned(const GString& text, std::uint64_t& value) {
  value = 0;
  std::string digits;
  for (const wchar_t unit : text.String()) digits += unit < 0x80 ? static_cast<char>(unit) : '?';
  const std::size_t sign = digits.starts_with('+') ? 1 : 0;
  std::uint64_t number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data() + sign, end, number);
  if (error != std::errc() || stop != end) return false;
  value = number;
  return true;
}

/// Returns a name or value without the blanks around it, which systems keep or drop when they
/// write. It ends at its first zero unit.
GString Trimmed(const GString& name) {
  constexpr std::wstring_view BLANKS = L" \t\v\f";
  const std::wstring_view text = name.c_str();
  const std::size_t first = text.find_first_not_of(BLANKS);
  if (first == std::wstring_view::npos) return GString();
  return GString(std::wstring(text.substr(first, text.find_last_not_of(BLANKS) - first + 1)));
}

}  // namespace

CConfigFile::CConfigFile(const GString& fileName) {
  if (fileName.empty()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  path_ = CPath(fileName).GetFullPath();
  if (path_.empty()) {
    ThrowErrorImpl(UNIT, __LINE__, L"Unable to open '%s'.\n%s", fileName.c_str(),
                   INVALID_PARAMETER_TEXT);
  }
}

bool CConfigFile::Read(const GString& section, const GString& key, GString& value) const {
  wchar_t buffer[VALUE_UNITS];
  const std::size_t length =
      platform::ReadProfileValue(path_, Trimmed(section), Trimmed(key), buffer);
  // A value that fills the buffer may have been cut.
  if (length >= VALUE_UNITS - 1) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  value = GString(std::wstring(buffer, length));
  return length > 0;
}

bool CConfigFile::Read(const GString& section, const GString& key, int& value) const {
  GString text;
  value = 0;
  return Read(section, key, text) && text.ToInt(value);
}

bool CConfigFile::Read(const GString& section, const GString& key, std::uint64_t& value) const {
  GString text;
  value = 0;
  return Read(section, key, text) && ParseUnsigned(text, value);
}

bool CConfigFile::Read(const GString& section, const GString& key, double& value) const {
  GString text;
  value = 0;
  return Read(section, key, text) && text.ToDouble(value);
}

void CConfigFile::Write(const GString& section, const GString& key, const GString& value) const {
  Write(section, key, value.c_str());
}

void CConfigFile::Write(const GString& section, const GString& key, const char* value) const {
  const AtoW text(value, ANSI_PAGE);
  Write(section, key, static_cast<const wchar_t*>(text));
}

void CConfigFile::Write(const GString& section, const GString& key, const wchar_t* value) const {
  const GString trimmed = value == nullptr ? GString() : Trimmed(value);
  Require(platform::SetProfileValue(path_, Trimmed(section), Trimmed(key),
                                    value == nullptr ? nullptr : trimmed.c_str()));
}

void CConfigFile::Write(const GString& section, const GString& key, int value) const {
  Write(section, key, std::to_wstring(value).c_str());
}

void CConfigFile::Write(const GString& section, const GString& key, std::uint64_t value) const {
  Write(section, key, std::to_wstring(value).c_str());
}

void CConfigFile::Write(const GString& section, const GString& key, double value) const {
  GString text;
  text.FormatString(L"%.14g", value);
  Write(section, key, text);
}

void CConfigFile::RemoveEntry(const GString& section, const GString& key) const {
  Require(platform::SetProfileValue(path_, Trimmed(section), Trimmed(key), nullptr));
}

void CConfigFile::RemoveSection(const GString& section) const {
  Require(platform::SetProfileSection(path_, Trimmed(section), nullptr));
}

bool CConfigFile::ReadSection(const GString& section, std::vector<GString>& entries) const {
  const GString name = Trimmed(section);
  std::wstring buffer(SECTION_UNITS, L'\0');
  std::size_t length = platform::ReadProfileSection(path_, name, buffer);
  while (length >= buffer.size() - 2) {
    buffer.resize(2 * buffer.size());
    length = platform::ReadProfileSection(path_, name, buffer);
  }
  for (std::size_t pos = 0; pos < length;) {
    const std::wstring line(buffer.c_str() + pos);
    pos += line.size() + 1;
    entries.emplace_back(line);
  }
  return true;
}

void CConfigFile::WriteSection(const GString& section, const std::vector<GString>& entries) const {
  std::wstring lines;
  for (const GString& entry : entries) lines.append(entry.c_str()).append(1, L'\0');
  lines.append(1, L'\0');
  Require(platform::SetProfileSection(path_, Trimmed(section), lines.c_str()));
}

void CConfigFile::Require(bool written) const {
  if (written) return;
  const GString reason = platform::LastErrorText();
  ThrowErrorImpl(UNIT, __LINE__, L"Unable to write '%s'.\n%s", path_.c_str(), reason.c_str());
}

}  // namespace shr
