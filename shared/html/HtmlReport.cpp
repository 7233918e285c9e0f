// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/html/HtmlReport.h"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <locale>

#include "shared/files/ReplacementFile.h"
#include "shared/platform/CodePages.h"
#include "shared/text/CodePage.h"
#include "shared/text/WideTextWriter.h"

namespace shr {
namespace {

constexpr char32_t REPLACEMENT_CHARACTER = 0xFFFD;

constexpr std::string_view HEAD_BEFORE_TITLE =
    "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\" "
    "\"http://www.w3.org/TR/html4/loose.dtd\">\n"
    "<HTML>\n"
    "<HEAD>\n"
    "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=iso-8859-1\">\n"
    "<META HTTP-EQUIV=\"Content-Style-Type\" CONTENT=\"text/css\">\n"
    "<TITLE>";

constexpr std::string_view HEAD_AFTER_TITLE =
    "</TITLE>\n"
    "<STYLE TYPE=\"text/css\">\n"
    "BODY    {font-family:Arial, sans-serif;}\n"
    "CAPTION {font-size:larger; font-weight:bold}\n"
    "TD      {padding-left:1ex; padding-right:1ex;}\n"
    "TH      {padding-left:1ex; padding-right:1ex; border-bottom:solid black thin; "
    "font-weight:bold; "
    "text-align:left; background-color:lightgrey;}\n";

constexpr std::string_view HEAD_END =
    "</STYLE>\n"
    "</HEAD>\n"
    "<BODY>\n";

constexpr std::string_view DOCUMENT_END = "</BODY>\n</HTML>";

/// An attribute of a group: its name and the member that holds its value.
template <class Group>
struct Attribute {
  std::string_view name;
  std::string Group::*value;
};

template <class Group, std::size_t COUNT>
using Attributes = std::array<Attribute<Group>, COUNT>;

/// Returns the attributes of `base`, as those of a group derived from its own, and then `added`.
template <class Base, std::size_t BASE_COUNT, class Group, std::size_t COUNT>
constexpr auto Extend(const Attributes<Base, BASE_COUNT>& base,
                      const Attribute<Group> (&added)[COUNT]) {
  Attributes<Group, BASE_COUNT + COUNT> all{};
  for (std::size_t i = 0; i < BASE_COUNT; ++i) all[i] = {base[i].name, base[i].value};
  for (std::size_t i = 0; i < COUNT; ++i) all[BASE_COUNT + i] = added[i];
  return all;
}

/// The attributes of each group, in the order of output and of the arguments of its constructor.
template <class Group>
constexpr auto ATTRIBUTES = nullptr;

template <>
constexpr auto ATTRIBUTES<CoreAttrib> =
    std::to_array<Attribute<CoreAttrib>>({{"ID", &CoreAttrib::ID},
                                          {"CLASS", &CoreAttrib::CLASS},
                                          {"STYLE", &CoreAttrib::STYLE},
                                          {"TITLE", &CoreAttrib::TITLE}});

template <>
constexpr auto ATTRIBUTES<RowAttrib> =
    Extend<CoreAttrib, 4, RowAttrib>(ATTRIBUTES<CoreAttrib>, {{"ALIGN", &RowAttrib::ALIGN},
                                                              {"CHAR", &RowAttrib::CHAR},
                                                              {"CHAROFF", &RowAttrib::CHAROFF},
                                                              {"VALIGN", &RowAttrib::VALIGN}});

template <>
constexpr auto ATTRIBUTES<ColAttrib> = Extend<RowAttrib, 8, ColAttrib>(
    ATTRIBUTES<RowAttrib>, {{"SPAN", &ColAttrib::SPAN}, {"WIDTH", &ColAttrib::WIDTH}});

template <>
constexpr auto ATTRIBUTES<CellAttrib> =
    Extend<RowAttrib, 8, CellAttrib>(ATTRIBUTES<RowAttrib>, {{"ROWSPAN", &CellAttrib::ROWSPAN},
                                                             {"COLSPAN", &CellAttrib::COLSPAN},
                                                             {"HEADERS", &CellAttrib::HEADERS},
                                                             {"ABBR", &CellAttrib::ABBR},
                                                             {"SCOPE", &CellAttrib::SCOPE},
                                                             {"AXIS", &CellAttrib::AXIS}});

template <>
constexpr auto ATTRIBUTES<ImageAttrib> = Extend<CoreAttrib, 4, ImageAttrib>(
    ATTRIBUTES<CoreAttrib>, {{"SRC", &ImageAttrib::SRC},
                             {"ALT", &ImageAttrib::ALT},
                             {"LONGDESC", &ImageAttrib::LONGDESC},
                             {"WIDTH", &ImageAttrib::WIDTH},
                             {"HEIGHT", &ImageAttrib::HEIGHT},
                             {"USEMAP", &ImageAttrib::USEMAP},
                             {"ISMAP", &ImageAttrib::ISMAP}});

template <>
constexpr auto ATTRIBUTES<TableAttrib> = Extend<CoreAttrib, 4, TableAttrib>(
    ATTRIBUTES<CoreAttrib>, {{"SUMMARY", &TableAttrib::SUMMARY},
                             {"WIDTH", &TableAttrib::WIDTH},
                             {"BORDER", &TableAttrib::BORDER},
                             {"FRAME", &TableAttrib::FRAME},
                             {"RULES", &TableAttrib::RULES},
                             {"CELLSPACING", &TableAttrib::CELLSPACING},
                             {"CELLPADDING", &TableAttrib::CELLPADDING}});

/// Moves the values into the attributes of a group, in their order.
template <class Group>
void Take(Group& group, std::initializer_list<std::string*> values) {
  auto value = values.begin();
  for (const auto& attribute : ATTRIBUTES<Group>) group.*attribute.value = std::move(**value++);
}

template <class Group>
std::ostream& WriteAttributes(std::ostream& out, const Group& group) {
  for (const auto& attribute : ATTRIBUTES<Group>) {
    const std::string& value = group.*attribute.value;
    if (value.empty()) continue;
    WriteMarkup(WriteMarkup(WriteMarkup(out, " "), attribute.name), "=\"");
    WriteMarkup(WriteMarkup(out, value), "\"");
  }
  return out;
}

constexpr bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

constexpr bool IsRepresentable(char32_t character) {
  if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
  if (character < 0xA0) return character < 0x7F;
  return character <= 0x10FFFF && !IsHighSurrogate(character) && !IsLowSurrogate(character);
}

void AppendEscaped(std::string& out, char32_t character) {
  switch (character) {
    case '&':
      out += "&amp;";
      return;
    case '<':
      out += "&lt;";
      return;
    case '>':
      out += "&gt;";
      return;
    case '"':
      out += "&quot;";
      return;
    case '\'':
      out += "&#39;";
      return;
    default:
      break;
  }
  if (!IsRepresentable(character)) character = REPLACEMENT_CHARACTER;
  if (character < 0x80) {
    out += static_cast<char>(character);
    return;
  }
  out += "&#";
  out += std::to_string(static_cast<std::uint32_t>(character));
  out += ';';
}

constexpr WideTextWriter ESCAPING_WRITER = {
    [](std::ostream& out, std::wstring_view text) { WriteMarkup(out, HtmlEscape(text)); }};

}  // namespace

CoreAttrib::CoreAttrib(std::string id, std::string className, std::string style,
                       std::string title) {
  Take(*this, {&id, &className, &style, &title});
}

void CoreAttrib::clear() {
  *this = CoreAttrib();
}

std::ostream& operator<<(std::ostream& out, const CoreAttrib& attributes) {
  return WriteAttributes(out, attributes);
}

RowAttrib::RowAttrib(std::string id, std::string className, std::string style, std::string title,
                     std::string align, std::string alignChar, std::string charOffset,
                     std::string vAlign) {
  Take(*this, {&id, &className, &style, &title, &align, &alignChar, &charOffset, &vAlign});
}

void RowAttrib::clear() {
  *this = RowAttrib();
}

std::ostream& operator<<(std::ostream& out, const RowAttrib& attributes) {
  return WriteAttributes(out, attributes);
}

ColAttrib::ColAttrib(std::string id, std::string className, std::string style, std::string title,
                     std::string align, std::string alignChar, std::string charOffset,
                     std::string vAlign, std::string span, std::string width) {
  Take(*this,
       {&id, &className, &style, &title, &align, &alignChar, &charOffset, &vAlign, &span, &width});
}

void ColAttrib::clear() {
  *this = ColAttrib();
}

std::ostream& operator<<(std::ostream& out, const ColAttrib& attributes) {
  return WriteAttributes(out, attributes);
}

CellAttrib::CellAttrib(std::string id, std::string className, std::string style, std::string title,
                       std::string align, std::string alignChar, std::string charOffset,
                       std::string vAlign, std::string rowSpan, std::string colSpan,
                       std::string headers, std::string abbr, std::string scope, std::string axis) {
  Take(*this, {&id, &className, &style, &title, &align, &alignChar, &charOffset, &vAlign, &rowSpan,
               &colSpan, &headers, &abbr, &scope, &axis});
}

void CellAttrib::clear() {
  *this = CellAttrib();
}

std::ostream& operator<<(std::ostream& out, const CellAttrib& attributes) {
  return WriteAttributes(out, attributes);
}

ImageAttrib::ImageAttrib(std::string id, std::string className, std::string style,
                         std::string title, std::string src, std::string alt, std::string longDesc,
                         std::string width, std::string height, std::string useMap,
                         std::string isMap) {
  Take(*this,
       {&id, &className, &style, &title, &src, &alt, &longDesc, &width, &height, &useMap, &isMap});
}

void ImageAttrib::clear() {
  *this = ImageAttrib();
}

std::ostream& operator<<(std::ostream& out, const ImageAttrib& attributes) {
  return WriteAttributes(out, attributes);
}

TableAttrib::TableAttrib(std::string id, std::string className, std::string style,
                         std::string title, std::string summary, std::string width,
                         std::string border, std::string frame, std::string rules,
                         std::string cellSpacing, std::string cellPadding) {
  Take(*this, {&id, &className, &style, &title, &summary, &width, &border, &frame, &rules,
               &cellSpacing, &cellPadding});
}

void TableAttrib::clear() {
  *this = TableAttrib();
}

std::ostream& operator<<(std::ostream& out, const TableAttrib& attributes) {
  return WriteAttributes(out, attributes);
}

std::ostream& operator<<(std::ostream& out, const Preamble& element) {
  WriteMarkup(out, HEAD_BEFORE_TITLE);
  WriteMarkup(out, element.title.empty() ? std::string_view("Report") : element.title);
  WriteMarkup(out, HEAD_AFTER_TITLE);
  if (!element.style.empty()) WriteMarkup(WriteMarkup(out, element.style), "\n");
  return WriteMarkup(out, HEAD_END);
}

std::ostream& operator<<(std::ostream& out, const Heading& element) {
  const std::string tag = "H" + std::to_string(element.level);
  WriteMarkup(WriteMarkup(out, "<"), tag) << element.attributes;
  WriteMarkup(WriteMarkup(WriteMarkup(out, ">"), element.text), "</");
  return WriteMarkup(WriteMarkup(out, tag), ">\n");
}

std::ostream& operator<<(std::ostream& out, const Anchor& element) {
  WriteMarkup(WriteMarkup(WriteMarkup(out, "<A HREF=\""), element.reference), "\"")
      << element.attributes;
  return WriteMarkup(WriteMarkup(WriteMarkup(out, ">"), element.text), "</A>\n");
}

std::ostream& operator<<(std::ostream& out, const VSpace& element) {
  for (int i = 0; i < element.count; ++i) WriteMarkup(out, "<BR>");
  return WriteMarkup(out, "\n");
}

CHtmlReport::CHtmlReport() {
  imbue(std::locale::classic());
  SetWideTextWriter(*this, &ESCAPING_WRITER);
}

// The stream's virtual base has no move constructor: it begins afresh, and the stream then moves
// its state, the writer of wide text with it.
CHtmlReport::CHtmlReport(CHtmlReport&& other) : std::ios(), std::ostringstream(std::move(other)) {
  other.str({});
  SetWideTextWriter(other, &ESCAPING_WRITER);
}

CHtmlReport& CHtmlReport::operator=(CHtmlReport&& other) {
  if (this == &other) return *this;
  std::ostringstream::operator=(std::move(other));
  other.str({});
  SetWideTextWriter(other, &ESCAPING_WRITER);
  return *this;
}

std::string CHtmlReport::GetReport() const {
  return str().append(DOCUMENT_END);
}

void CHtmlReport::WriteToFile(const GString& path) const {
  CReplacementFile file(path);
  file.Write(GetReport());
  file.Write("\n");
  file.Commit();
}

std::string HtmlEscape(std::wstring_view text) {
  std::string result;
  result.reserve(text.size() + text.size() / 8);
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t character = static_cast<char32_t>(text[i]);
    if (IsHighSurrogate(character) && i + 1 < text.size() &&
        IsLowSurrogate(static_cast<char32_t>(text[i + 1]))) {
      const char32_t low = static_cast<char32_t>(text[++i]);
      character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
    }
    AppendEscaped(result, character);
  }
  return result;
}

std::string HtmlEscape(std::string_view text) {
  std::wstring wide;
  platform::AppendWide(CODE_PAGE_ANSI, text, wide);
  return HtmlEscape(wide);
}

}  // namespace shr
