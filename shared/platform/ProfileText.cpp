// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The idea. The bytes of the file are kept and cut into lines; only the parts of a line that are
// compared or handed out are decoded. A change replaces a range of the bytes, so everything else
// stays as somebody wrote it: comments, blank lines, indentation, line ends, and bytes that mean
// nothing in the encoding.
//
// The rules of a line were observed at the private-profile functions of Windows (under Wine):
// - It ends at a carriage return or a line feed; blanks are the ASCII ones.
// - "[" first makes a header, when there is a "]"; the name ends at the last one.
// - ";" first makes a comment.
// - The first "=" ends the name of an entry. A line without one is a name without a value.
// - A zero unit ends a name or a value, the rest up to the "=" or the line's end is passed over.
// - One pair of equal quotation marks around a value is taken off when it is read.

#include "shared/platform/ProfileText.h"

#include <algorithm>
#include <utility>

#include "shared/platform/CodePages.h"
#include "shared/platform/LibraryCodePages.h"
#include "shared/platform/NameCase.h"

namespace shr::platform {
namespace {

constexpr std::uint32_t ANSI_PAGE = 0;
constexpr std::wstring_view BLANKS = L" \t\v\f";

struct Mark {
  std::string_view bytes;
  ProfileEncoding encoding;
  std::uint32_t page;
};

constexpr Mark MARKS[] = {
    {"", ProfileEncoding::Ansi, ANSI_PAGE},
    {"\xEF\xBB\xBF", ProfileEncoding::Utf8, UTF8_PAGE},
    {"\xFF\xFE", ProfileEncoding::Utf16LittleEndian, UTF16_LITTLE_ENDIAN_PAGE},
    {"\xFE\xFF", ProfileEncoding::Utf16BigEndian, UTF16_BIG_ENDIAN_PAGE}};

const Mark& MarkOf(ProfileEncoding encoding) {
  return *std::find_if(std::begin(MARKS), std::end(MARKS),
                       [encoding](const Mark& mark) { return mark.encoding == encoding; });
}

const Mark& FindMark(std::string_view bytes) {
  const auto found =
      std::find_if(std::begin(MARKS) + 1, std::end(MARKS),
                   [bytes](const Mark& mark) { return bytes.starts_with(mark.bytes); });
  return found == std::end(MARKS) ? MARKS[0] : *found;
}

bool IsLineEnd(char32_t unit) {
  return unit == U'\n' || unit == U'\r';
}

std::wstring_view Trim(std::wstring_view text) {
  const std::size_t first = text.find_first_not_of(BLANKS);
  if (first == std::wstring_view::npos) return text.substr(text.size());
  return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

/// Returns what stands before the first zero unit.
std::wstring_view Terminated(std::wstring_view text) {
  return text.substr(0, text.find(L'\0'));
}

std::wstring_view Unquoted(std::wstring_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == L'"' || value.front() == L'\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

bool EqualNames(std::wstring_view a, std::wstring_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](wchar_t left, wchar_t right) {
    return left == right || UpperCaseOfName(left) == UpperCaseOfName(right);
  });
}

bool IsAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

void AppendDecoded(ProfileEncoding encoding, std::string_view bytes, std::wstring& text) {
  const bool utf16 =
      encoding == ProfileEncoding::Utf16LittleEndian || encoding == ProfileEncoding::Utf16BigEndian;
  if (!utf16 && IsAscii(bytes)) {
    text.append(bytes.begin(), bytes.end());
  } else {
    AppendWide(MarkOf(encoding).page, bytes, text);
  }
}

}  // namespace

std::size_t ProfileText::NameHash::operator()(std::wstring_view name) const noexcept {
  // FNV-1a: G. Fowler, L. C. Noll, K.-P. Vo, D. Eastlake, "The FNV Non-Cryptographic Hash
  // Algorithm", with 64 bits, over folded units instead of bytes.
  constexpr std::uint64_t PRIME = 0x100000001B3;
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const wchar_t unit : name) {
    hash = (hash ^ static_cast<std::uint64_t>(UpperCaseOfName(unit))) * PRIME;
  }
  return static_cast<std::size_t>(hash ^ hash >> 32);
}

bool ProfileText::NameEqual::operator()(std::wstring_view a, std::wstring_view b) const noexcept {
  return EqualNames(a, b);
}

ProfileText::ProfileText(std::string bytes) : bytes_(std::move(bytes)) {
  const Mark& mark = FindMark(bytes_);
  encoding_ = mark.encoding;
  content_ = mark.bytes.size();
  limit_ = bytes_.size() - (bytes_.size() - content_) % UnitSize();
  SplitLines();
  DecodeLines();
}

std::size_t ProfileText::UnitSize() const {
  return encoding_ == ProfileEncoding::Ansi || encoding_ == ProfileEncoding::Utf8 ? 1 : 2;
}

/// Returns the byte or the UTF-16 unit at a byte position.
char32_t ProfileText::UnitAt(std::size_t pos) const {
  const auto byte = [this](std::size_t at) {
    return static_cast<char32_t>(static_cast<unsigned char>(bytes_[at]));
  };
  if (UnitSize() == 1) return byte(pos);
  const bool little = encoding_ == ProfileEncoding::Utf16LittleEndian;
  return little ? byte(pos) | byte(pos + 1) << 8 : byte(pos) << 8 | byte(pos + 1);
}

/// Line ends are never part of a longer character in any page that a system may have as its own.
void ProfileText::SplitLines() {
  const std::size_t unit = UnitSize();
  for (std::size_t pos = content_; pos < limit_;) {
    Line line;
    line.begin = pos;
    while (pos < limit_ && !IsLineEnd(UnitAt(pos))) pos += unit;
    line.end = pos;
    if (pos < limit_) {
      const bool pair = UnitAt(pos) == U'\r' && pos + unit < limit_ && UnitAt(pos + unit) == U'\n';
      pos += pair ? 2 * unit : unit;
    }
    line.next = pos;
    lines_.push_back(line);
  }
}

void ProfileText::DecodeLines() {
  std::vector<std::size_t> begins;
  begins.reserve(lines_.size() + 1);
  text_.reserve(bytes_.size() / UnitSize());
  for (const Line& line : lines_) {
    begins.push_back(text_.size());
    AppendDecoded(encoding_, std::string_view(bytes_).substr(line.begin, line.end - line.begin),
                  text_);
  }
  begins.push_back(text_.size());
  AddSection(std::wstring_view(), 0);
  // Only now, when the text does not move any more, can views of it be kept.
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    ParseLine(std::wstring_view(text_).substr(begins[i], begins[i + 1] - begins[i]), lines_[i]);
    if (lines_[i].kind != LineKind::Header) continue;
    sections_.back().last = i;
    AddSection(lines_[i].name, i + 1);
  }
  sections_.back().last = lines_.size();
}

void ProfileText::AddSection(std::wstring_view name, std::size_t first) {
  sectionIndex_.try_emplace(name, sections_.size());
  Section& section = sections_.emplace_back();
  section.name = name;
  section.first = first;
}

void ProfileText::ParseLine(std::wstring_view text, Line& line) {
  text = Trim(text);
  if (text.empty()) return;
  const std::size_t bracket = text.rfind(L']');
  if (text.front() == L'[' && bracket != std::wstring_view::npos) {
    line.kind = LineKind::Header;
    line.name = Terminated(Trim(text.substr(1, bracket - 1)));
    return;
  }
  if (text.front() == L';') {
    line.kind = LineKind::Comment;
    return;
  }
  const std::size_t equals = text.find(L'=');
  line.kind = equals == std::wstring_view::npos ? LineKind::Bare : LineKind::Entry;
  line.name = Terminated(Trim(text.substr(0, equals)));
  if (line.kind == LineKind::Entry) line.value = Terminated(Trim(text.substr(equals + 1)));
}

const ProfileText::Section* ProfileText::FindSection(std::wstring_view name) const {
  const auto found = sectionIndex_.find(Trim(name));
  return found == sectionIndex_.end() ? nullptr : &sections_[found->second];
}

const ProfileText::Line* ProfileText::FindEntry(const Section& section,
                                                std::wstring_view key) const {
  key = Trim(key);
  for (std::size_t i = section.first; i < section.last; ++i) {
    if (lines_[i].IsNamed() && EqualNames(lines_[i].name, key)) return &lines_[i];
  }
  return nullptr;
}

std::wstring_view ProfileText::FindValue(std::wstring_view section, std::wstring_view key) {
  const auto place = sectionIndex_.find(Trim(section));
  if (place == sectionIndex_.end()) return std::wstring_view();
  Section& found = sections_[place->second];
  if (!std::exchange(found.indexed, true)) {
    for (std::size_t i = found.first; i < found.last; ++i) {
      if (lines_[i].IsNamed()) found.entries.try_emplace(lines_[i].name, &lines_[i]);
    }
  }
  const auto entry = found.entries.find(Trim(key));
  return entry == found.entries.end() ? std::wstring_view() : Unquoted(entry->second->value);
}

void ProfileText::VisitLines(std::wstring_view section,
                             const std::function<void(std::wstring_view line)>& visit) const {
  const Section* const found = FindSection(section);
  if (found == nullptr) return;
  std::wstring entry;
  for (std::size_t i = found->first; i < found->last; ++i) {
    const Line& line = lines_[i];
    if (!line.IsNamed()) continue;
    entry = line.name;
    if (line.kind == LineKind::Entry) (entry += L'=') += line.value;
    if (!entry.empty()) visit(entry);
  }
}

bool ProfileText::CanHold(std::wstring_view text) const {
  if (encoding_ != ProfileEncoding::Ansi) return true;
  std::wstring again;
  AppendWide(ANSI_PAGE, Encode(text), again);
  return again == text;
}

std::optional<std::string> ProfileText::AsUtf16() const {
  const std::string_view content = std::string_view(bytes_).substr(content_);
  std::wstring text;
  AppendWide(MarkOf(encoding_).page, content, text);
  if (Encode(text) != content) return std::nullopt;
  const Mark& mark = MarkOf(ProfileEncoding::Utf16LittleEndian);
  std::string bytes(mark.bytes);
  AppendNarrow(mark.page, text, bytes);
  return bytes;
}

std::optional<std::string> ProfileText::WithValue(std::wstring_view section, std::wstring_view key,
                                                  std::wstring_view value) const {
  value = Trim(value);
  const Section* const found = FindSection(section);
  std::wstring line(Trim(key));
  (line += L'=') += value;
  if (found == nullptr) return WithNewSection(section, EncodeLine(line));
  const Line* const entry = FindEntry(*found, key);
  if (entry == nullptr) {
    const std::size_t pos = FilledEnd(*found);
    return Replaced(pos, pos, LineEndBefore(pos) + EncodeLine(line));
  }
  if (entry->kind == LineKind::Entry && entry->value == value) return std::nullopt;
  const bool ended = entry->next > entry->end;
  return Replaced(entry->begin, entry->end,
                  RawName(*entry) + Encode(L"=") + Encode(value) + (ended ? "" : LineEnd()));
}

std::optional<std::string> ProfileText::WithoutEntry(std::wstring_view section,
                                                     std::wstring_view key) const {
  const Section* const found = FindSection(section);
  const Line* const entry = found == nullptr ? nullptr : FindEntry(*found, key);
  return entry == nullptr ? std::nullopt : Replaced(entry->begin, entry->next, "");
}

std::optional<std::string> ProfileText::WithoutSection(std::wstring_view section) const {
  const Section* const found = FindSection(section);
  if (found == nullptr) return std::nullopt;
  const std::size_t begin = found->first == 0 ? content_ : lines_[found->first - 1].begin;
  const std::size_t end = found->last == 0 ? content_ : lines_[found->last - 1].next;
  return Replaced(begin, end, "");
}

std::optional<std::string> ProfileText::WithSection(
    std::wstring_view section, const std::vector<std::wstring_view>& lines) const {
  std::string content;
  for (const std::wstring_view line : lines) {
    const std::size_t equals = line.find(L'=');
    if (equals == std::wstring_view::npos) continue;
    std::wstring entry(Trim(line.substr(0, equals)));
    (entry += L'=') += Trim(line.substr(equals + 1));
    content += EncodeLine(entry);
  }
  const Section* const found = FindSection(section);
  if (found == nullptr && content.empty()) return std::nullopt;
  if (found == nullptr) return WithNewSection(section, content);
  std::string changed;
  std::size_t copied = 0;
  for (const Section& replaced : sections_) {
    if (!EqualNames(replaced.name, found->name)) continue;
    const std::size_t begin = ContentBegin(replaced);
    changed.append(bytes_, copied, begin - copied);
    if (&replaced == found && !content.empty()) changed += LineEndBefore(begin) + content;
    copied = FilledEnd(replaced);
  }
  changed.append(bytes_, copied);
  return Finished(std::move(changed));
}

/// Returns where the lines of a section begin.
std::size_t ProfileText::ContentBegin(const Section& section) const {
  return section.first == 0 ? content_ : lines_[section.first - 1].next;
}

/// Returns where the lines of a section end that are not blank.
std::size_t ProfileText::FilledEnd(const Section& section) const {
  std::size_t last = section.last;
  while (last > section.first && lines_[last - 1].kind == LineKind::Blank) --last;
  return last > section.first ? lines_[last - 1].next : ContentBegin(section);
}

/// Returns the line end of the first line, by which new lines end too.
std::string ProfileText::LineEnd() const {
  if (lines_.empty() || lines_[0].next == lines_[0].end) return Encode(L"\r\n");
  return bytes_.substr(lines_[0].end, lines_[0].next - lines_[0].end);
}

/// Returns the line end that is missing before a line inserted at `pos`.
std::string ProfileText::LineEndBefore(std::size_t pos) const {
  const bool missing = pos == limit_ && !lines_.empty() && lines_.back().next == lines_.back().end;
  return missing ? LineEnd() : std::string();
}

/// Returns the bytes of the name as they are in the line, without the blanks around it.
std::string ProfileText::RawName(const Line& line) const {
  const auto isBlank = [this](std::size_t pos) {
    const char32_t unit = UnitAt(pos);
    return unit < 0x80 && BLANKS.find(static_cast<wchar_t>(unit)) != std::wstring_view::npos;
  };
  const std::size_t unit = UnitSize();
  std::size_t begin = line.begin;
  std::size_t end = begin;
  while (end < line.end && UnitAt(end) != U'=') end += unit;
  while (begin < end && isBlank(begin)) begin += unit;
  while (end > begin && isBlank(end - unit)) end -= unit;
  return bytes_.substr(begin, end - begin);
}

std::string ProfileText::Encode(std::wstring_view text) const {
  std::string bytes;
  AppendNarrow(MarkOf(encoding_).page, text, bytes);
  return bytes;
}

std::string ProfileText::EncodeLine(std::wstring_view text) const {
  return Encode(text) + LineEnd();
}

std::optional<std::string> ProfileText::Replaced(std::size_t begin, std::size_t end,
                                                 const std::string& inserted) const {
  std::string changed;
  changed.reserve(bytes_.size() + inserted.size());
  changed.append(bytes_, 0, begin).append(inserted).append(bytes_, end);
  return Finished(std::move(changed));
}

/// Keeps a line that has come to the front from being taken for a mark.
std::optional<std::string> ProfileText::Finished(std::string changed) const {
  if (FindMark(changed).encoding != encoding_) changed.insert(content_, LineEnd());
  if (changed == bytes_) return std::nullopt;
  return changed;
}

std::optional<std::string> ProfileText::WithNewSection(std::wstring_view name,
                                                       const std::string& content) const {
  std::wstring header(1, L'[');
  header.append(Trim(name)).append(1, L']');
  return Replaced(limit_, limit_, LineEndBefore(limit_) + EncodeLine(header) + content);
}

}  // namespace shr::platform
