// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Writes SVG text: elements, attributes, numbers of one decimal, escaped UTF-8 text.
///
///     SvgWriter svg;
///     svg.Begin("g").Attribute("class", "frame");
///     svg.Begin("rect").Attribute("x", 3.25).Attribute("width", 10).End();   // x="3.3"
///     svg.End();

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "examples/mapreport/Model.h"

namespace mapreport {

/// Returns `value` in tenths, halves away from zero. All of the page is laid out in them.
long long Tenths(double value);

/// Appends tenths as a decimal number: "12.3", "-0.4", "7".
void AppendTenths(std::string& text, long long tenths);

/// Returns "#rrggbb".
std::string HexColor(const Color4b& color);

/// Returns `text` in UTF-8 with the markup characters escaped. Characters that XML cannot hold
/// become U+FFFD.
std::string XmlEscape(const GString& text);

class SvgWriter {
public:
  /// Starts an element inside the current one.
  SvgWriter& Begin(std::string_view name);
  /// Starts a rectangle.
  SvgWriter& BeginRectangle(const Box2d& box);
  SvgWriter& Attribute(std::string_view name, std::string_view value);
  SvgWriter& Attribute(std::string_view name, double value);
  /// Ends the innermost element.
  SvgWriter& End();
  /// Writes the content of the innermost element.
  SvgWriter& Text(const GString& text);
  /// Writes markup as it is.
  SvgWriter& Raw(std::string_view markup);

  /// Returns the document when all elements have ended.
  std::string Take() { return std::move(out_); }

private:
  void CloseStartTag();

  std::string out_;
  std::vector<std::string> open_;
  bool inStartTag_ = false;
  bool hasText_ = false;
};

/// Builds the data of a path from page coordinates. Points that fall on the one before are left
/// out.
class PathBuilder {
public:
  void MoveTo(const Vec2d& point);
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

}  // namespace mapreport
