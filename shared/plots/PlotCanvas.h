// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What all plots begin and end with: the SVG document with its text alternative, its style for
/// light and dark, its title, and lines of text. For the library's own use.
///
/// Colors come from classes of the style sheet, so that they follow the reader's choice: "s0" to
/// "s7" set the color of a series, "fill" and "line" draw with it. Threads: one thread an object.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"
#include "shared/plots/PlotAxis.h"
#include "shared/plots/PlotText.h"
#include "shared/plots/SvgTextIF.h"
#include "shared/plots/SvgWriter.h"
#include "shared/text/GString.h"

namespace shr {

/// Space for the title, type sizes, and the free edge of every picture.
inline constexpr double TITLE_HEIGHT = 40;
inline constexpr double TITLE_SIZE = 16;
inline constexpr double LABEL_SIZE = 12;
inline constexpr double TICK_SIZE = 11;
inline constexpr double MARGIN = 12;

/// A picture under construction.
class PlotCanvas {
public:
  PlotCanvas(double width, double height, SvgTextMode textMode);

  double Width() const { return width_; }
  double Height() const { return height_; }
  SvgTextMode TextMode() const { return textMode_; }
  SvgWriter& Svg() { return svg_; }

  /// Starts the document and writes the title. `description` is read to those who do not see.
  void Begin(const GString& title, const GString& description);
  /// Writes text; `anchor` is "start", "middle" or "end", the class one of the style sheet's: its
  /// size and weight are known here, too.
  void Text(const Vec2d& at, const char* anchor, const char* cssClass, const GString& text);
  /// Writes text of `LABEL_SIZE` turned by an angle in degrees counter-clockwise.
  void TurnedText(const Vec2d& at, const char* anchor, int degrees, const GString& text);
  /// Writes text of `TICK_SIZE` in a color that does not follow the reader's choice.
  void ColoredText(const Vec2d& middle, const char* color, const GString& text);
  /// Writes what a plot without data shows.
  void NoData(const Box2d& area);
  /// Writes a note into the lower left corner; nothing when it is empty.
  void Note(const GString& text);
  /// Ends the document and returns it.
  std::string Finish();

private:
  struct Style;

  static Style StyleOf(std::string_view cssClass);
  void DrawByFaces(const Vec2d& at, std::string_view anchor, const Style& style, int degrees,
                   const GString& text);

  double width_;
  double height_;
  SvgTextMode textMode_;
  SvgWriter svg_;
  CMTSvgTextIF textIF_;
  bool hasInkStyle_ = false;
};

/// Two axes and the rectangle between them.
class PlotFrame {
public:
  PlotFrame(const PlotAxis& x, const PlotAxis& y, const Box2d& area) : x_(x), y_(y), area_(area) {}

  const PlotAxis& XAxis() const { return x_; }
  const PlotAxis& YAxis() const { return y_; }
  const Box2d& Area() const { return area_; }
  bool CanShow(double x, double y) const { return x_.CanShow(x) && y_.CanShow(y); }
  double X(double value) const { return area_.xMin() + x_.Share(value) * area_.xRange(); }
  double Y(double value) const { return area_.yMax() - y_.Share(value) * area_.yRange(); }
  Vec2d At(double x, double y) const { return Vec2d(X(x), Y(y)); }

  /// Draw grid lines, tick labels and the name of an axis.
  void DrawXAxis(PlotCanvas& canvas, const GString& name) const;
  void DrawYAxis(PlotCanvas& canvas, const GString& name) const;
  /// Draws the rectangle.
  void DrawBorder(PlotCanvas& canvas) const;

private:
  PlotAxis x_;
  PlotAxis y_;
  Box2d area_;
};

/// Returns about how many labels fit on an axis so long.
std::size_t MostXTicks(const PlotAxis& axis, double length);
std::size_t MostYTicks(double length);

/// Returns the width of the widest label.
double WidestLabel(const TickSet& set);

/// Returns "3 values are left out: ..." or nothing.
GString LeftOutNote(std::size_t count);

/// Returns the class that sets the color of a series: "s0".
std::string SeriesClass(std::size_t index);

}  // namespace shr
