// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CMTContext` makes a tree of elements of math text, and `MathTextToSimpleText` takes its markup
/// away. docs/math-text.md has the markup; shared/mathtext/MathTextScanner.h scans it.
///
///     CMTContext context(output, 12);                    // an output, the height of the text
///     std::shared_ptr<CMTMultiLineElement> label;
///     if (context.Parse(L"x\\up40\\fs60 2", label) == CMTContext::MT_SUCCESS) {
///       label->DrawUsingTextIF(output, Vec2d(10, 20));
///     } else {
///       Tell(context.GetError());   // "MathText parsing error near '...'"
///     }
///
/// Threads: one thread a context and its text interface.

#pragma once

#include <cstdint>
#include <ctime>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "shared/Export.h"
#include "shared/mathtext/MathTextScanner.h"
#include "shared/mathtext/MultiLineElement.h"
#include "shared/mathtext/TextIF.h"
#include "shared/text/GString.h"

namespace shr {

/// Bits of the options of a context.
inline constexpr std::uint16_t MT_IGNORE_COLORS = 1;  ///< one color throughout: halos, print
inline constexpr std::uint16_t MT_IGNORE_FACES = 2;   ///< one face throughout
inline constexpr std::uint16_t MT_SINGLE_LINE = 4;    ///< line breaks become blanks

/// Limits of a text; beyond them it does not parse.
inline constexpr std::size_t MT_MAX_OPEN_BRACES = 1000;
inline constexpr std::size_t MT_MAX_NESTED_SUBSTRINGS = 100;
inline constexpr std::size_t MT_MAX_ELEMENTS = 250000;  ///< runs and lines
/// The height that `\fs` arrives at, in heights of the text.
inline constexpr double MT_MIN_SCALE = 1e-3;
inline constexpr double MT_MAX_SCALE = 1e5;

/// Code of the error of braces that do not pair, the line of its `Exception`.
inline constexpr int MT_UNBALANCED_BRACES = 1354;

/// The state of a text that is being parsed, and the options of parsing.
///
/// A pen starts at the beginning of the line on the baseline; each run of text is placed where it
/// stands and moves it to the right. `\up` and `\dn` move it up and down until the line or the
/// brace ends, `\sp` and `\rp` keep and restore both of its coordinates, for the line. Tabs move it
/// on to the next stop; stops stand every `GetCharsPerTab()` average character widths of the
/// attributes that the whole text begins with. Every line begins with the attributes that the
/// interface had.
///
/// Runs follow each other from left to right. Within a run its text is ordered and shaped as its
/// script wants it, so a change of style inside text from right to left begins a run to its right.
///
/// A sub-string is a text of its own: its lines begin with the attributes in force at `\ssbeg`, its
/// pen, offset and saved positions are its own, and behind `\ssend` attributes are those of before.
/// Braces pair within it.
class SHARED_API CMTContext : public IMathTextScanner {
public:
  enum RETVAL { MT_FAILURE, MT_SUCCESS };

  /// Measures with `textIF`; the em of the text is `height` user units high. Lifetime: as the
  /// interface at most. Errors: a height that is not a positive number is an invalid parameter.
  CMTContext(CMTTextIF& textIF, double height);
  ~CMTContext() override;
  CMTContext(const CMTContext&) = delete;
  CMTContext& operator=(const CMTContext&) = delete;

  /// Makes the elements of `text`: the attributes of the interface at the height of the context are
  /// what it begins with, those for the alignment are the alignment of the element. Afterwards the
  /// interface is as before. Plain text (`ContainsMathText`) becomes one line of one string.
  ///
  /// Errors: `MT_FAILURE`, no element, and the message in `GetError`: for the empty text none; of
  /// markup that does not parse "MathText parsing error near '%s'"; of braces that do not pair at a
  /// line break, at the end of a sub-string or of the text "Unbalanced '{' and '}' directives"; of
  /// limits exceeded a sentence that names them; and what the interface raises.
  /// Cost: O(length) and what measuring costs.
  RETVAL Parse(const GString& text, std::shared_ptr<CMTMultiLineElement>& element);

  /// As `Parse` of markup, whatever the text is; of the empty text an empty line.
  RETVAL ParseMultiLine(const GString& text, std::shared_ptr<CMTMultiLineElement>& element);

  /// Returns the message of the last failure, empty after success.
  const GString& GetError() const noexcept { return error_; }

  void SetOptions(std::uint16_t bits) noexcept;
  void ClearOptions(std::uint16_t bits) noexcept;
  std::uint16_t GetOptions() const noexcept { return options_; }

  /// At first 8. Errors: what is not a positive number is an invalid parameter.
  void SetCharsPerTab(double count);
  double GetCharsPerTab() const noexcept { return charsPerTab_; }

  /// Sets what `\date`, `\time` and `\dt` write; at first, and for an empty function, the local
  /// time of the machine.
  void SetClock(std::function<std::tm()> clock);

  double GetHeight() const noexcept { return height_; }

  // What the scanner calls while `Parse` works. Errors: those of `Parse`, as `Exception` of source
  // "MTParser"; outside of `Parse` an internal error.

  void Text(const wchar_t* text) override;
  void CharCode(unsigned code) override;
  void Newline() override;
  void Facename(const wchar_t* name) override;
  void FontSize(double percent) override;
  void Bold() override;
  void Italic() override;
  void Underline() override;
  void StrikeThrough() override;
  void Plain() override;
  void VerticalOffset(double percent) override;
  void SavePosition(unsigned index) override;
  void RestorePosition(unsigned index) override;
  void PushState() override;
  void PopState() override;
  void PredefinedColor(Color4b color) override;
  void ColorComponent(unsigned component, unsigned value) override;
  void Color(Color4b color) override;
  void Line(double x, double y, Side side) override;
  void DateTime(const wchar_t* picture) override;
  void BeginSubstring(double width, double height, HAlignment horizontal,
                      VAlignment vertical) override;
  void EndSubstring() override;
  void Error(const wchar_t* nearText) override;

private:
  /// A text of lines that is being made: the whole one or a sub-string.
  struct Level {
    std::shared_ptr<CMTMultiLineElement> element;
    std::shared_ptr<CMTLineElement> line;
    std::size_t braceDepth = 0;  ///< open where it begins
    Vec2d pen;
    Vec2d runEnd;  ///< where the last run of the line ends
    std::map<unsigned, Vec2d> positions;
  };

  RETVAL Fail(const GString& message);
  void BeginText();
  std::shared_ptr<CMTMultiLineElement> EndText();
  void BeginLevel();
  void AppendCurrentLine();
  void PartialReset();
  void AccumulateText(std::wstring_view text);
  void SendText();
  void SendTab();
  void AddRun(GString text, const Vec2d& at);
  void CountElement();
  double LengthOf(double percent, const wchar_t* command) const;
  template <typename Change>
  void ChangeAttributes(Change change);
  Level& Current();

  CMTTextIF& textIF_;
  double height_;
  std::uint16_t options_ = 0;
  double charsPerTab_ = 8;
  std::function<std::tm()> clock_;
  GString error_;

  std::wstring text_;  // pending
  std::vector<Level> levels_;
  std::vector<double> braces_;                 // offsets of the baseline at each
  double tabWidth_ = 0;                        // 0: not known yet
  std::shared_ptr<const MTAttributes> given_;  // by the interface to the last text
  std::shared_ptr<const MTAttributes> base_;   // those at the height of the context
  std::size_t elements_ = 0;
};

/// Returns the text without markup, lines separated by line feeds; plain text as it is. No face is
/// looked up. Degenerate: "*** Math Text Error ***" for markup that does not parse.
SHARED_API GString MathTextToSimpleText(const GString& text);

/// Returns what is wrong with the markup of `text`, as `CMTContext::GetError` tells it, and nothing
/// when it parses or is plain. For checks before work begins. No face is looked up.
SHARED_API GString FindMathTextFault(const GString& text);

}  // namespace shr
