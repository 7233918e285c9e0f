// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CHtmlReport` builds a self-contained HTML 4.01 document as narrow text declared as ISO-8859-1.
///
/// Small element objects are streamed into the report, each writing one line of markup. Narrow text
/// is markup, written exactly as given; what in it may hold "<", "&", a quote or a byte above ASCII
/// goes through `HtmlEscape` first. Wide text (`GString`, `std::wstring` and their kin) is text,
/// escaped by the elements and by the report itself.
///
///     CHtmlReport report;
///     report << Preamble("Events") << Heading(1, "Events &amp; places") << TableBeg() << TRBeg();
///     report << TD(placeName) << TDBeg() << region << TDEnd() << TREnd() << TableEnd();
///     report.WriteToFile(L"report.html");
///
/// Threads: one thread a report; elements and attribute groups are plain values.

#pragma once

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "shared/Export.h"
#include "shared/text/GString.h"
#include "shared/text/TextConcepts.h"

namespace shr {

/// Returns `text` as ASCII markup: "&", "<", ">" and the quotes as references, every character
/// above ASCII as a decimal character reference (a surrogate pair is one character). Characters
/// that HTML cannot hold (controls other than tab and line ends, unpaired surrogates) become the
/// replacement character U+FFFD. Cost: O(length).
SHARED_API std::string HtmlEscape(std::wstring_view text);

/// The same for narrow text, read in the active ANSI code page like all narrow text of the library.
SHARED_API std::string HtmlEscape(std::string_view text);

// Attribute groups. The members bear the names of the attributes. An empty value means that the
// attribute is absent; streaming a group writes every present one as a blank, its name, "=" and the
// value in double quotes.

/// Attributes of every element.
struct SHARED_API CoreAttrib {
  CoreAttrib() = default;
  CoreAttrib(std::string id, std::string className, std::string style, std::string title);
  /// Makes every attribute absent.
  void clear();

  std::string ID;
  std::string CLASS;
  std::string STYLE;
  std::string TITLE;
};

/// Attributes of table rows and row groups.
struct SHARED_API RowAttrib : CoreAttrib {
  RowAttrib() = default;
  RowAttrib(std::string id, std::string className, std::string style, std::string title,
            std::string align, std::string alignChar, std::string charOffset, std::string vAlign);
  void clear();

  std::string ALIGN;
  std::string CHAR;
  std::string CHAROFF;
  std::string VALIGN;
};

/// Attributes of table columns and column groups.
struct SHARED_API ColAttrib : RowAttrib {
  ColAttrib() = default;
  ColAttrib(std::string id, std::string className, std::string style, std::string title,
            std::string align, std::string alignChar, std::string charOffset, std::string vAlign,
            std::string span, std::string width);
  void clear();

  std::string SPAN;
  std::string WIDTH;
};

/// Attributes of table cells.
struct SHARED_API CellAttrib : RowAttrib {
  CellAttrib() = default;
  CellAttrib(std::string id, std::string className, std::string style, std::string title,
             std::string align, std::string alignChar, std::string charOffset, std::string vAlign,
             std::string rowSpan, std::string colSpan, std::string headers, std::string abbr,
             std::string scope, std::string axis);
  void clear();

  std::string ROWSPAN;
  std::string COLSPAN;
  std::string HEADERS;
  std::string ABBR;
  std::string SCOPE;
  std::string AXIS;
};

/// Attributes of images. HTML demands SRC and ALT.
struct SHARED_API ImageAttrib : CoreAttrib {
  ImageAttrib() = default;
  ImageAttrib(std::string id, std::string className, std::string style, std::string title,
              std::string src, std::string alt, std::string longDesc, std::string width,
              std::string height, std::string useMap, std::string isMap);
  void clear();

  std::string SRC;
  std::string ALT;
  std::string LONGDESC;
  std::string WIDTH;
  std::string HEIGHT;
  std::string USEMAP;
  std::string ISMAP;
};

/// Attributes of tables.
struct SHARED_API TableAttrib : CoreAttrib {
  TableAttrib() = default;
  TableAttrib(std::string id, std::string className, std::string style, std::string title,
              std::string summary, std::string width, std::string border, std::string frame,
              std::string rules, std::string cellSpacing, std::string cellPadding);
  void clear();

  std::string SUMMARY;
  std::string WIDTH;
  std::string BORDER;
  std::string FRAME;
  std::string RULES;
  std::string CELLSPACING;
  std::string CELLPADDING;
};

SHARED_API std::ostream& operator<<(std::ostream& out, const CoreAttrib& attributes);
SHARED_API std::ostream& operator<<(std::ostream& out, const RowAttrib& attributes);
SHARED_API std::ostream& operator<<(std::ostream& out, const ColAttrib& attributes);
SHARED_API std::ostream& operator<<(std::ostream& out, const CellAttrib& attributes);
SHARED_API std::ostream& operator<<(std::ostream& out, const ImageAttrib& attributes);
SHARED_API std::ostream& operator<<(std::ostream& out, const TableAttrib& attributes);

// Elements of one fixed shape. Streaming one writes it and ends the line; the stream's width, fill
// and number settings are neither used nor changed.

/// The name of a tag as a template argument.
template <std::size_t SIZE>
struct TagName {
  char text[SIZE]{};

  consteval TagName(const char (&literal)[SIZE]) { std::copy_n(literal, SIZE, text); }
  constexpr std::string_view View() const { return std::string_view(text, SIZE - 1); }
};

/// "<NAME", the attributes and ">".
template <TagName NAME, class Attributes>
struct StartTag {
  explicit StartTag(Attributes elementAttributes = {}) : attributes(std::move(elementAttributes)) {}

  Attributes attributes;
};

/// "</NAME>".
template <TagName NAME>
struct EndTag {};

/// A start tag, the text and the end tag on one line.
template <TagName NAME, class Attributes>
struct TextElement {
  explicit TextElement(std::string elementText, Attributes elementAttributes = {})
      : text(std::move(elementText)), attributes(std::move(elementAttributes)) {}
  /// Escapes the text.
  template <WideText Text>
  explicit TextElement(const Text& elementText, Attributes elementAttributes = {})
      : TextElement(HtmlEscape(std::wstring_view(elementText)), std::move(elementAttributes)) {}

  std::string text;
  Attributes attributes;
};

// Blocks, images and rules.
using Paragraph = TextElement<"P", CoreAttrib>;
using Note = TextElement<"SPAN", CoreAttrib>;
using Img = StartTag<"IMG", ImageAttrib>;
using HRule = StartTag<"HR", CoreAttrib>;

// Tables: caption, column groups, row groups, rows and cells. A cell is either one of the text
// elements or anything between its begin and end tags.
using TableBeg = StartTag<"TABLE", TableAttrib>;
using TableEnd = EndTag<"TABLE">;
using Caption = TextElement<"CAPTION", CoreAttrib>;
using CaptionBeg = StartTag<"CAPTION", CoreAttrib>;
using CaptionEnd = EndTag<"CAPTION">;
using ColGroupBeg = StartTag<"COLGROUP", ColAttrib>;
using ColGroupEnd = EndTag<"COLGROUP">;
using Col = StartTag<"COL", ColAttrib>;
using THeadBeg = StartTag<"THEAD", RowAttrib>;
using THeadEnd = EndTag<"THEAD">;
using TBodyBeg = StartTag<"TBODY", RowAttrib>;
using TBodyEnd = EndTag<"TBODY">;
using TFootBeg = StartTag<"TFOOT", RowAttrib>;
using TFootEnd = EndTag<"TFOOT">;
using TRBeg = StartTag<"TR", RowAttrib>;
using TREnd = EndTag<"TR">;
using TH = TextElement<"TH", CellAttrib>;
using THBeg = StartTag<"TH", CellAttrib>;
using THEnd = EndTag<"TH">;
using TD = TextElement<"TD", CellAttrib>;
using TDBeg = StartTag<"TD", CellAttrib>;
using TDEnd = EndTag<"TD">;

// Lists: unordered, ordered and of definitions.
using ULBeg = StartTag<"UL", CoreAttrib>;
using ULEnd = EndTag<"UL">;
using OLBeg = StartTag<"OL", CoreAttrib>;
using OLEnd = EndTag<"OL">;
using LI = TextElement<"LI", CoreAttrib>;
using LIBeg = StartTag<"LI", CoreAttrib>;
using LIEnd = EndTag<"LI">;
using DLBeg = StartTag<"DL", CoreAttrib>;
using DLEnd = EndTag<"DL">;
using DT = TextElement<"DT", CoreAttrib>;
using DTBeg = StartTag<"DT", CoreAttrib>;
using DTEnd = EndTag<"DT">;
using DD = TextElement<"DD", CoreAttrib>;
using DDBeg = StartTag<"DD", CoreAttrib>;
using DDEnd = EndTag<"DD">;

// Elements of their own shape.

/// The document head: type, character set, title ("Report" when empty), the style sheet of the
/// library with `style` added to it, and the begin of the body.
struct Preamble {
  explicit Preamble(std::string documentTitle = {}, std::string extraStyle = {})
      : title(std::move(documentTitle)), style(std::move(extraStyle)) {}
  /// Escapes the title.
  template <WideText Text>
  explicit Preamble(const Text& documentTitle, std::string extraStyle = {})
      : Preamble(HtmlEscape(std::wstring_view(documentTitle)), std::move(extraStyle)) {}

  std::string title;
  std::string style;
};

/// A heading of level 1 to 6; the level is written as it is.
struct Heading {
  Heading(int headingLevel, std::string headingText, CoreAttrib headingAttributes = {})
      : level(headingLevel),
        text(std::move(headingText)),
        attributes(std::move(headingAttributes)) {}

  /// Escapes the text.
  template <WideText Text>
  Heading(int headingLevel, const Text& headingText, CoreAttrib headingAttributes = {})
      : Heading(headingLevel, HtmlEscape(std::wstring_view(headingText)),
                std::move(headingAttributes)) {}

  int level;
  std::string text;
  CoreAttrib attributes;
};

/// A link to `reference`.
struct Anchor {
  Anchor(std::string linkReference, std::string linkText, CoreAttrib linkAttributes = {})
      : reference(std::move(linkReference)),
        text(std::move(linkText)),
        attributes(std::move(linkAttributes)) {}

  /// Escape what is wide. A reference is not percent-encoded.
  template <WideText Text>
  Anchor(std::string linkReference, const Text& linkText, CoreAttrib linkAttributes = {})
      : Anchor(std::move(linkReference), HtmlEscape(std::wstring_view(linkText)),
               std::move(linkAttributes)) {}
  template <WideText Reference>
  Anchor(const Reference& linkReference, std::string linkText, CoreAttrib linkAttributes = {})
      : Anchor(HtmlEscape(std::wstring_view(linkReference)), std::move(linkText),
               std::move(linkAttributes)) {}
  template <WideText Reference, WideText Text>
  Anchor(const Reference& linkReference, const Text& linkText, CoreAttrib linkAttributes = {})
      : Anchor(HtmlEscape(std::wstring_view(linkReference)),
               HtmlEscape(std::wstring_view(linkText)), std::move(linkAttributes)) {}

  std::string reference;
  std::string text;
  CoreAttrib attributes;
};

/// `count` line breaks; an empty line when it is not positive.
struct VSpace {
  explicit VSpace(int breakCount) : count(breakCount) {}

  int count;
};

SHARED_API std::ostream& operator<<(std::ostream& out, const Preamble& element);
SHARED_API std::ostream& operator<<(std::ostream& out, const Heading& element);
SHARED_API std::ostream& operator<<(std::ostream& out, const Anchor& element);
SHARED_API std::ostream& operator<<(std::ostream& out, const VSpace& element);

/// A report under construction: an output stream that keeps its text. Numbers streamed into it are
/// written in the classic locale whatever the program's locale is, `GString` is escaped, also
/// where the report is passed as a `std::ostream`.
class SHARED_API CHtmlReport : public std::ostringstream {
public:
  CHtmlReport();
  /// The source is an empty report afterwards.
  CHtmlReport(CHtmlReport&& other);
  CHtmlReport& operator=(CHtmlReport&& other);

  /// Returns the text streamed so far, followed by the end of the body and of the document. The
  /// report itself stays as it is and may grow further.
  std::string GetReport() const;

  /// Writes the document and a line end to the file, replacing an existing one in one step. The
  /// bytes are the same on every platform: lines end with a single line feed. Errors: those of
  /// `CReplacementFile`; an existing file is then as it was.
  void WriteToFile(const GString& path) const;
};

// Implementation details follow.

/// Writes text past the stream's formatting.
inline std::ostream& WriteMarkup(std::ostream& out, std::string_view text) {
  return out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

template <TagName NAME, class Attributes>
std::ostream& operator<<(std::ostream& out, const StartTag<NAME, Attributes>& element) {
  WriteMarkup(WriteMarkup(out, "<"), NAME.View()) << element.attributes;
  return WriteMarkup(out, ">\n");
}

template <TagName NAME>
std::ostream& operator<<(std::ostream& out, const EndTag<NAME>&) {
  return WriteMarkup(WriteMarkup(WriteMarkup(out, "</"), NAME.View()), ">\n");
}

template <TagName NAME, class Attributes>
std::ostream& operator<<(std::ostream& out, const TextElement<NAME, Attributes>& element) {
  WriteMarkup(WriteMarkup(out, "<"), NAME.View()) << element.attributes;
  WriteMarkup(WriteMarkup(WriteMarkup(out, ">"), element.text), "</");
  return WriteMarkup(WriteMarkup(out, NAME.View()), ">\n");
}

}  // namespace shr
