// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What a user may choose about a map, and the places where the choices come from: the command
/// line, the last run, a settings file.
///
///     Settings settings = fromCommandLine;
///     settings.Complete(ReadLast(SETTINGS_KEY));
///     settings.Complete(ReadSettingsFile(L"map.ini").settings);

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "examples/mapreport/Model.h"

namespace mapreport {

/// The choices; what is absent was not made.
struct Settings {
  std::optional<GString> title;
  std::optional<Box2d> window;
  std::optional<std::size_t> labels;
  std::optional<std::size_t> strongest;
  std::optional<std::vector<Color4b>> ramp;
  std::optional<Color4b> none;
  std::optional<Color4b> sea;
  std::optional<Color4b> river;
  std::optional<std::vector<double>> dashes;
  std::optional<TextMode> text;
  std::optional<GString> face;
  std::optional<GString> clip;       ///< what `FindArea` takes
  std::optional<GString> continent;  ///< whose countries are united

  /// Takes over what is absent here and present in `other`.
  void Complete(const Settings& other);

  /// Change what is chosen and leave the rest.
  void Apply(View& view) const;
  void Apply(Palette& palette) const;
  /// Returns true when any color is chosen.
  bool HasColors() const { return ramp || none || sea || river; }
};

/// Where the choices of the last run are kept, below HKEY_CURRENT_USER.
inline constexpr const wchar_t* SETTINGS_KEY = L"Software\\Shared\\mapreport";

/// Returns the window and the colors that were remembered; what was never remembered, or is not
/// readable, is absent.
Settings ReadLast(const GString& key);
/// Remembers a window and colors. Errors: the library's exception.
void Remember(const GString& key, const Box2d& window, const std::vector<Color4b>& ramp);

/// Reads "W,S,E,N" in degrees. Returns nothing when it is no window: not four numbers, off the
/// globe, or without area. An east side that is not east of the west side lies beyond the
/// antimeridian.
std::optional<Box2d> ParseWindow(const GString& text);
/// Returns what is wrong with the text of a window, as the end of a sentence; empty when nothing
/// is.
GString FaultOfWindow(const GString& text);
/// Returns the text that `ParseWindow` reads as this window.
GString WindowText(const Box2d& window);
/// Returns true for the windows that `ParseWindow` returns.
bool IsWindow(const Box2d& window);

/// Reads two or more colors between commas.
std::optional<std::vector<Color4b>> ParseColors(const GString& text);
/// Returns a sentence that names what is no color in a list; empty when all are.
GString FaultOfColors(const GString& text);
/// Returns "#rrggbb,#rrggbb".
GString ColorsText(const std::vector<Color4b>& colors);
/// Reads "#rrggbb" or the name of a color of `shr::CColorTable`, in any letter case.
std::optional<Color4b> ParseColor(const GString& text);

/// Reads "text", "outlines" or "portable".
std::optional<TextMode> ParseTextMode(const GString& text);

/// Reads lengths between commas or blanks, drawn and left out in turn; "solid" is a line without
/// gaps.
std::optional<std::vector<double>> ParseDashes(const GString& text);
/// Returns true for the patterns that `ParseDashes` returns.
bool IsDashPattern(const std::vector<double>& dashes);

}  // namespace mapreport
