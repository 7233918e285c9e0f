// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Writes SVG text: elements, attributes, numbers of one decimal, escaped UTF-8 text, path data.
/// Every picture of the library and of its examples is written by it. Plots of data are drawn by
/// shared/plots/Plot.h.
///
///     SvgWriter svg;
///     svg.Begin("g").Attribute("class", "frame");
///     svg.Begin("rect").Attribute("x", 3.25).Attribute("width", 10).End();   // x="3.3"
///     svg.Begin("text").Text(L"a < b").End();
///     svg.End();
///
/// Units: lengths and places are user units of the picture (CSS pixels at its natural size), x to
/// the right and y downwards. They are rounded to tenths, so that the bytes depend on no machine.
/// Threads: one thread an object.

#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shared/Export.h"
#include "shared/color/Color4b.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"
#include "shared/text/GString.h"

namespace shr {

/// Returns `value` in tenths, halves away from zero. Degenerate: what is no number is 0, what lies
/// outside +-1e9 is drawn there.
SHARED_API long long SvgTenths(double value);

/// Appends tenths as a decimal number: "12.3", "-0.4", "7".
SHARED_API void AppendSvgTenths(std::string& text, long long tenths);

/// Returns "#rrggbb". Alpha is left out.
SHARED_API std::string HexColor(const Color4b& color);

/// Returns `text` in UTF-8 with the markup characters escaped. Characters that XML cannot hold
/// become U+FFFD.
SHARED_API std::string SvgEscape(std::wstring_view text);

/// An SVG document under construction. Requires: each `Begin` has its `End`, attributes follow
/// `Begin` at once; `End` without an open element is an internal error.
class SHARED_API SvgWriter {
public:
  /// Starts an element inside the current one.
  SvgWriter& Begin(std::string_view name);
  /// Starts a rectangle.
  SvgWriter& BeginRectangle(const Box2d& box);
  /// Writes an attribute whose value is UTF-8 without markup characters: names, numbers, colors.
  SvgWriter& Attribute(std::string_view name, std::string_view value);
  /// Writes a length or place in tenths.
  SvgWriter& Attribute(std::string_view name, double value);
  /// Writes an attribute whose value is any text.
  SvgWriter& TextAttribute(std::string_view name, std::wstring_view value);
  /// Ends the innermost element.
  SvgWriter& End();
  /// Writes the content of the innermost element.
  SvgWriter& Text(std::wstring_view text);
  /// Writes markup as it is.
  SvgWriter& Raw(std::string_view markup);

  /// Returns the document when all elements have ended; the writer is empty afterwards.
  std::string Take() { return std::move(out_); }

private:
  void CloseStartTag();

  std::string out_;
  std::vector<std::string> open_;
  bool inStartTag_ = false;
  bool hasText_ = false;
};

/// Builds the data of a path from places. Points that fall on the one before are left out.
class SHARED_API SvgPathBuilder {
public:
  void MoveTo(const Vec2d& point);
  /// Requires: `MoveTo` came first.
  void LineTo(const Vec2d& point);
  void Close();

  bool IsEmpty() const { return data_.empty(); }
  const std::string& Data() const { return data_; }

private:
  std::string data_;
  long long x_ = 0;
  long long y_ = 0;
  bool inLine_ = false;
};

}  // namespace shr
