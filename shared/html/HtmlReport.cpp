// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/html/HtmlReport.h"

#include <cstdint>
#include <initializer_list>
#include <locale>

#include "shared/files/ReplacementFile.h"

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

struct Attribute {
  std::string_view name;
  const std::string& value;
};

void WriteAttributes(std::ostream& out, std::initializer_list<Attribute> attributes) {
  for (const Attribute& attribute : attributes) {
    if (attribute.value.empty()) continue;
    WriteMarkup(WriteMarkup(WriteMarkup(out, " "), attribute.name), "=\"");
    WriteMarkup(WriteMarkup(out, attribute.value), "\"");
  }
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

}  // namespace

CoreAttrib::CoreAttrib() = default;

CoreAttrib::CoreAttrib(std::string id, std::string className, std::string style, std::string title)
    : ID(std::move(id)),
      CLASS(std::move(className)),
      STYLE(std::move(style)),
      TITLE(std::move(title)) {}

void CoreAttrib::clear() {
  *this = CoreAttrib();
}

RowAttrib::RowAttrib() = default;

RowAttrib::RowAttrib(std::string id, std::string className, std::string style, std::string title,
                     std::string align, std::string alignChar, std::string charOffset,
                     std::string vAlign)
    : CoreAttrib(std::move(id), std::move(className), std::move(style), std::move(title)),
      ALIGN(std::move(align)),
      CHAR(std::move(alignChar)),
      CHAROFF(std::move(charOffset)),
      VALIGN(std::move(vAlign)) {}

void RowAttrib::clear() {
  *this = RowAttrib();
}

ColAttrib::ColAttrib() = default;

ColAttrib::ColAttrib(std::string id, std::string className, std::string style, std::string title,
                     std::string align, std::string alignChar, std::string charOffset,
                     std::string vAlign, std::string span, std::string width)
    : RowAttrib(std::move(id), std::move(className), std::move(style), std::move(title),
                std::move(align), std::move(alignChar), std::move(charOffset), std::move(vAlign)),
      SPAN(std::move(span)),
      WIDTH(std::move(width)) {}

void ColAttrib::clear() {
  *this = ColAttrib();
}

CellAttrib::CellAttrib() = default;

CellAttrib::CellAttrib(std::string id, std::string className, std::string style, std::string title,
                       std::string align, std::string alignChar, std::string charOffset,
                       std::string vAlign, std::string rowSpan, std::string colSpan,
                       std::string headers, std::string abbr, std::string scope, std::string axis)
    : RowAttrib(std::move(id), std::move(className), std::move(style), std::move(title),
                std::move(align), std::move(alignChar), std::move(charOffset), std::move(vAlign)),
      ROWSPAN(std::move(rowSpan)),
      COLSPAN(std::move(colSpan)),
      HEADERS(std::move(headers)),
      ABBR(std::move(abbr)),
      SCOPE(std::move(scope)),
      AXIS(std::move(axis)) {}

void CellAttrib::clear() {
  *this = CellAttrib();
}

ImageAttrib::ImageAttrib() = default;

ImageAttrib::ImageAttrib(std::string id, std::string className, std::string style,
                         std::string title, std::string src, std::string alt, std::string longDesc,
                         std::string width, std::string height, std::string useMap,
                         std::string isMap)
    : CoreAttrib(std::move(id), std::move(className), std::move(style), std::move(title)),
      SRC(std::move(src)),
      ALT(std::move(alt)),
      LONGDESC(std::move(longDesc)),
      WIDTH(std::move(width)),
      HEIGHT(std::move(height)),
      USEMAP(std::move(useMap)),
      ISMAP(std::move(isMap)) {}

void ImageAttrib::clear() {
  *this = ImageAttrib();
}

TableAttrib::TableAttrib() = default;

TableAttrib::TableAttrib(std::string id, std::string className, std::string style,
                         std::string title, std::string summary, std::string width,
                         std::string border, std::string frame, std::string rules,
                         std::string cellSpacing, std::string cellPadding)
    : CoreAttrib(std::move(id), std::move(className), std::move(style), std::move(title)),
      SUMMARY(std::move(summary)),
      WIDTH(std::move(width)),
      BORDER(std::move(border)),
      FRAME(std::move(frame)),
      RULES(std::move(rules)),
      CELLSPACING(std::move(cellSpacing)),
      CELLPADDING(std::move(cellPadding)) {}

void TableAttrib::clear() {
  *this = TableAttrib();
}

std::ostream& operator<<(std::ostream& out, const CoreAttrib& attributes) {
  WriteAttributes(out, {{"ID", attributes.ID},
                        {"CLASS", attributes.CLASS},
                        {"STYLE", attributes.STYLE},
                        {"TITLE", attributes.TITLE}});
  return out;
}

std::ostream& operator<<(std::ostream& out, const RowAttrib& attributes) {
  out << static_cast<const CoreAttrib&>(attributes);
  WriteAttributes(out, {{"ALIGN", attributes.ALIGN},
                        {"CHAR", attributes.CHAR},
                        {"CHAROFF", attributes.CHAROFF},
                        {"VALIGN", attributes.VALIGN}});
  return out;
}

std::ostream& operator<<(std::ostream& out, const ColAttrib& attributes) {
  out << static_cast<const RowAttrib&>(attributes);
  WriteAttributes(out, {{"SPAN", attributes.SPAN}, {"WIDTH", attributes.WIDTH}});
  return out;
}

std::ostream& operator<<(std::ostream& out, const CellAttrib& attributes) {
  out << static_cast<const RowAttrib&>(attributes);
  WriteAttributes(out, {{"ROWSPAN", attributes.ROWSPAN},
                        {"COLSPAN", attributes.COLSPAN},
                        {"HEADERS", attributes.HEADERS},
                        {"ABBR", attributes.ABBR},
                        {"SCOPE", attributes.SCOPE},
                        {"AXIS", attributes.AXIS}});
  return out;
}

std::ostream& operator<<(std::ostream& out, const ImageAttrib& attributes) {
  out << static_cast<const CoreAttrib&>(attributes);
  WriteAttributes(out, {{"SRC", attributes.SRC},
                        {"ALT", attributes.ALT},
                        {"LONGDESC", attributes.LONGDESC},
                        {"WIDTH", attributes.WIDTH},
                        {"HEIGHT", attributes.HEIGHT},
                        {"USEMAP", attributes.USEMAP},
                        {"ISMAP", attributes.ISMAP}});
  return out;
}

std::ostream& operator<<(std::ostream& out, const TableAttrib& attributes) {
  out << static_cast<const CoreAttrib&>(attributes);
  WriteAttributes(out, {{"SUMMARY", attributes.SUMMARY},
                        {"WIDTH", attributes.WIDTH},
                        {"BORDER", attributes.BORDER},
                        {"FRAME", attributes.FRAME},
                        {"RULES", attributes.RULES},
                        {"CELLSPACING", attributes.CELLSPACING},
                        {"CELLPADDING", attributes.CELLPADDING}});
  return out;
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
}

// The stream's virtual base has no move constructor: it begins afresh, and the stream then moves
// its state.
CHtmlReport::CHtmlReport(CHtmlReport&& other) : std::ios(), std::ostringstream(std::move(other)) {
  other.str({});
}

CHtmlReport& CHtmlReport::operator=(CHtmlReport&& other) {
  if (this == &other) return *this;
  std::ostringstream::operator=(std::move(other));
  other.str({});
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
  std::string result;
  result.reserve(text.size() + text.size() / 8);
  for (const char ch : text) AppendEscaped(result, static_cast<unsigned char>(ch));
  return result;
}

}  // namespace shr
