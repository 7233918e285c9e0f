// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws math text to a recorder with fixed metrics and writes the calls down as short text. At the
/// height 10 a character is 5 wide, 8 reach above the baseline and 2 below, the gap of lines is 1;
/// the line below text is at -1, the one through it at 2.5, both 0.5 thick.
///
///     EXPECT_EQ("'a'0,0 'b'5,0", test::Drawn(L"a\\b b"));
///
/// A run is 'text'x,y; what follows tells what differs from plain black of height 10:
/// "*20" the height, "b" "i" bold and italic, "#rrggbb" the color, "(name)" the face, "@90" the
/// rotation. A line is [x,y>x,y], "~1" where it is not 0.5 thick.

#pragma once

#include <cmath>
#include <memory>
#include <sstream>
#include <string>

#include "shared/mathtext/Context.h"
#include "shared/mathtext/RecordingTextIF.h"

namespace shr::test {

inline constexpr double DRAWING_HEIGHT = 10;

inline void WriteNumber(std::ostream& out, double value) {
  const double rounded = std::round(value * 1e6) / 1e6;
  out << (rounded == 0 ? 0 : rounded);
}

inline void WritePoint(std::ostream& out, const Vec2d& point) {
  WriteNumber(out, point.x);
  out << ',';
  WriteNumber(out, point.y);
}

inline void WriteStyle(std::ostream& out, const MTAttributes& attributes) {
  if (attributes.height != DRAWING_HEIGHT) WriteNumber(out << '*', attributes.height);
  if (attributes.face.weight == 700) out << 'b';
  if (attributes.face.italic != 0) out << 'i';
  if (attributes.color != Color4b::Black) out << attributes.color.GetHex().ToUtf8();
  if (!attributes.face.name.empty()) out << '(' << attributes.face.name.ToUtf8() << ')';
}

inline void WriteCall(std::ostream& out, const MTDrawCall& call) {
  if (call.kind == MTDrawCall::Kind::Text) {
    WritePoint(out << '\'' << call.text.ToUtf8() << '\'', call.from);
    WriteStyle(out, call.attributes);
    if (call.rotation != 0) WriteNumber(out << '@', call.rotation);
    return;
  }
  WritePoint(out << '[', call.from);
  WritePoint(out << '>', call.to);
  out << ']';
  if (call.thickness != 0.5) WriteNumber(out << '~', call.thickness);
  if (call.attributes.color != Color4b::Black) out << call.attributes.color.GetHex().ToUtf8();
}

inline std::string Describe(const CMTRecordingTextIF& record) {
  std::ostringstream out;
  for (const MTDrawCall& call : record.GetCalls()) {
    if (out.tellp() > 0) out << ' ';
    WriteCall(out, call);
  }
  return out.str();
}

inline std::string Describe(const Box2d& box) {
  std::ostringstream out;
  WritePoint(out, box.Min());
  WritePoint(out << ' ', box.Max());
  return out.str();
}

/// Returns the elements of a text at the height of drawings; null, with the message in `error`,
/// when it does not parse.
inline std::shared_ptr<CMTMultiLineElement> Parsed(CMTTextIF& textIF, const GString& text,
                                                   GString* error = nullptr) {
  CMTContext context(textIF, DRAWING_HEIGHT);
  std::shared_ptr<CMTMultiLineElement> element;
  context.Parse(text, element);
  if (error != nullptr) *error = context.GetError();
  return element;
}

/// Returns what is drawn of a text with its beginning at `anchor`, or "error: " and the message.
inline std::string Drawn(const GString& text, const Vec2d& anchor = Vec2d::ZERO) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  GString error;
  const auto element = Parsed(record, text, &error);
  if (element == nullptr) return "error: " + error.ToUtf8();
  element->InternalDraw(record, anchor);
  return Describe(record);
}

}  // namespace shr::test
