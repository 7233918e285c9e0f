// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Scans math text, the markup of labels and titles: text with commands such as `\b`, `\fs150` or
/// `\color(red)`. docs/math-text.md has the grammar and a picture of each command. The scanner
/// tells a sink what it meets; the tree of a label is built by shared/mathtext/Context.h.
///
///     if (!ScanMathText(L"{\\i E} = mc\\up40\\fs60 2", sink)) return;   // sink.Error told where
///
/// Units: what the commands call percent is percent of the height of the text. Threads: all
/// functions may be called on any thread, one thread a sink.

#pragma once

#include <string_view>

#include "shared/Export.h"
#include "shared/color/Color4b.h"
#include "shared/text/GString.h"

namespace shr {

/// Where a line segment begins at its string.
enum class Side { Left, Right, Top, Bottom };
/// How lines are justified, and where an anchor lies across.
enum class HAlignment { Left, Center, Right };
/// Where an anchor lies along the height.
enum class VAlignment { Top, Baseline, Bottom };

/// Ranges of arguments, all inclusive; what lies outside does not parse.
inline constexpr double MATH_TEXT_MIN_SIZE = 1;           ///< `\fs`
inline constexpr double MATH_TEXT_MAX_PERCENT = 10000;    ///< `\fs`, `\ssbeg`, sizes of the others
inline constexpr unsigned MATH_TEXT_MAX_INDEX = 255;      ///< `\sp`, `\rp`
inline constexpr unsigned MATH_TEXT_MAX_CODE = 0x10FFFF;  ///< `\a`

/// What `ScanMathText` calls, in the order of the text. Texts live until the call returns.
class SHARED_API IMathTextScanner {
public:
  virtual ~IMathTextScanner();

  /// Plain characters, escapes resolved; runs are as long as they can be and never empty.
  virtual void Text(const wchar_t* text) = 0;
  /// `\a`: a character, 1 to 0x10FFFF and no surrogate.
  virtual void CharCode(unsigned code) = 0;
  /// A line break: LF, CR LF or CR.
  virtual void Newline() = 0;
  /// `\f"name"`: an empty name asks for the default face.
  virtual void Facename(const wchar_t* name) = 0;
  /// `\fs`: 1 to 10000.
  virtual void FontSize(double percent) = 0;
  virtual void Bold() = 0;           ///< `\b`
  virtual void Italic() = 0;         ///< `\i`
  virtual void Underline() = 0;      ///< `\ul`
  virtual void StrikeThrough() = 0;  ///< `\strike`
  virtual void Plain() = 0;          ///< `\plain`
  /// `\up`, and `\dn` with the sign turned: -10000 to 10000.
  virtual void VerticalOffset(double percent) = 0;
  virtual void SavePosition(unsigned index) = 0;     ///< `\sp`: 0 to 255
  virtual void RestorePosition(unsigned index) = 0;  ///< `\rp`: 0 to 255
  virtual void PushState() = 0;                      ///< `{`
  virtual void PopState() = 0;                       ///< `}`, which may lack its `{`
  /// One of the nine color words; `\green` is `Color4b::Lime`.
  virtual void PredefinedColor(Color4b color) = 0;
  /// `\rgbr`, `\rgbg`, `\rgbb`, `\rgba`: component 0 to 3 in this order, value 0 to 255.
  virtual void ColorComponent(unsigned component, unsigned value) = 0;
  /// `\color(...)`.
  virtual void Color(Color4b color) = 0;
  /// `\line(x,y,side)`: both lengths -10000 to 10000.
  virtual void Line(double x, double y, Side side) = 0;
  /// `\date`, `\time`, `\dt("picture")`: the picture, see shared/mathtext/MathTextDateTime.h.
  virtual void DateTime(const wchar_t* picture) = 0;
  /// `\ssbeg(w,h,hor,ver)`: both lengths 0 to 10000.
  virtual void BeginSubstring(double width, double height, HAlignment horizontal,
                              VAlignment vertical) = 0;
  /// `\ssend`, which may lack its `\ssbeg`.
  virtual void EndSubstring() = 0;
  /// The first construct that does not parse, with at most 40 units of the text from there on. No
  /// call follows.
  virtual void Error(const wchar_t* nearText) = 0;
};

/// Scans `text`, up to its zero, and tells `sink` what it holds. Whether `{` and `}` pair, and
/// which indexes were saved, is the sink's business. Returns false when the text breaks the
/// grammar, after `sink.Error`; what came before was told. Requires: `text` is not null. Errors: an
/// exception of the sink passes through. Cost: O(length) whatever the text is, one pass without
/// recursion, no allocation but a buffer for the longest run and those of names and colors.
SHARED_API bool ScanMathText(const wchar_t* text, IMathTextScanner& sink);

/// Returns whether `text` holds a backslash, a line feed or a tab. Text without any of them is
/// plain and stands for itself, braces included.
SHARED_API bool ContainsMathText(const wchar_t* text);

/// Returns markup that shows `text` as it is, with a backslash before each backslash and brace.
/// Law: `ScanMathText` of it calls only `Text`, which joined are `text`, and `Newline`.
SHARED_API GString EscapeMathText(const GString& text);

/// Reads the argument of `\color(...)`, with blanks around it or not: a color name of CSS Color
/// Module Level 3 in any letter case ("gray" and "grey"), except that "green" is `Color4b::Lime` as
/// in the command `\green`; "#rgb", "#rrggbb", "#rrggbbaa"; or "r,g,b" or "r,g,b,a" with numbers 0
/// to 255. Without alpha a color is opaque. Returns false, `color` unchanged, for any other text.
SHARED_API bool ReadMathTextColor(std::wstring_view text, Color4b& color);

}  // namespace shr
