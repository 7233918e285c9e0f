// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/SvgWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "shared/diagnostics/ThrowError.h"

namespace shr {

namespace {

constexpr double FARTHEST = 1e9;

/// XML 1.0, production 2 (Char), for single units; surrogates are the encoder's business.
bool IsXmlUnit(wchar_t unit) {
  if (unit < 0x20) return unit == L'\t' || unit == L'\n' || unit == L'\r';
  return unit != 0xFFFE && unit != 0xFFFF;
}

const wchar_t* Escape(wchar_t unit) {
  switch (unit) {
    case L'&':
      return L"&amp;";
    case L'<':
      return L"&lt;";
    case L'>':
      return L"&gt;";
    case L'"':
      return L"&quot;";
    default:
      return nullptr;
  }
}

}  // namespace

long long SvgTenths(double value) {
  if (std::isnan(value)) return 0;
  return std::llround(std::clamp(value, -FARTHEST, FARTHEST) * 10);
}

void AppendSvgTenths(std::string& text, long long tenths) {
  if (tenths < 0) text += '-';
  const long long magnitude = tenths < 0 ? -tenths : tenths;
  text += std::to_string(magnitude / 10);
  if (magnitude % 10 == 0) return;
  text += '.';
  text += static_cast<char>('0' + magnitude % 10);
}

std::string HexColor(const Color4b& color) {
  constexpr char DIGITS[] = "0123456789abcdef";
  const std::uint32_t rgba = color.GetRGBA();
  std::string text = "#";
  for (int shift = 28; shift >= 8; shift -= 4) text += DIGITS[(rgba >> shift) & 15];
  return text;
}

std::string SvgEscape(std::wstring_view text) {
  GString escaped;
  for (const wchar_t unit : text) {
    if (const wchar_t* const replacement = Escape(unit)) {
      escaped += replacement;
    } else {
      escaped += IsXmlUnit(unit) ? unit : L'\xFFFD';
    }
  }
  return escaped.ToUtf8();
}

SvgWriter& SvgWriter::Begin(std::string_view name) {
  CloseStartTag();
  if (!out_.empty() && out_.back() != '\n') out_ += '\n';
  out_ += '<';
  out_ += name;
  open_.emplace_back(name);
  inStartTag_ = true;
  hasText_ = false;
  return *this;
}

SvgWriter& SvgWriter::BeginRectangle(const Box2d& box) {
  Begin("rect").Attribute("x", box.xMin()).Attribute("y", box.yMin());
  return Attribute("width", box.xRange()).Attribute("height", box.yRange());
}

SvgWriter& SvgWriter::Attribute(std::string_view name, std::string_view value) {
  out_ += ' ';
  out_ += name;
  out_ += "=\"";
  out_ += value;
  out_ += '"';
  return *this;
}

SvgWriter& SvgWriter::Attribute(std::string_view name, double value) {
  std::string text;
  AppendSvgTenths(text, SvgTenths(value));
  return Attribute(name, text);
}

SvgWriter& SvgWriter::TextAttribute(std::string_view name, std::wstring_view value) {
  return Attribute(name, SvgEscape(value));
}

SvgWriter& SvgWriter::End() {
  if (open_.empty()) ThrowInternalError(SHARED_MODULE, L"SvgWriter", __LINE__);
  if (inStartTag_) {
    out_ += "/>";
  } else {
    if (!hasText_) out_ += '\n';
    out_ += "</" + open_.back() + ">";
  }
  inStartTag_ = false;
  hasText_ = false;
  open_.pop_back();
  if (open_.empty()) out_ += '\n';
  return *this;
}

SvgWriter& SvgWriter::Text(std::wstring_view text) {
  return Raw(SvgEscape(text));
}

SvgWriter& SvgWriter::Raw(std::string_view markup) {
  CloseStartTag();
  out_ += markup;
  hasText_ = true;
  return *this;
}

void SvgWriter::CloseStartTag() {
  if (inStartTag_) out_ += '>';
  inStartTag_ = false;
}

void SvgPathBuilder::MoveTo(const Vec2d& point) {
  x_ = SvgTenths(point.x);
  y_ = SvgTenths(point.y);
  data_ += 'M';
  AppendSvgTenths(data_, x_);
  data_ += ' ';
  AppendSvgTenths(data_, y_);
  inLine_ = false;
}

void SvgPathBuilder::LineTo(const Vec2d& point) {
  const long long dx = SvgTenths(point.x) - x_;
  const long long dy = SvgTenths(point.y) - y_;
  if (dx == 0 && dy == 0) return;
  data_ += inLine_ ? (dx < 0 ? "" : " ") : "l";
  AppendSvgTenths(data_, dx);
  if (dy >= 0) data_ += ' ';
  AppendSvgTenths(data_, dy);
  x_ += dx;
  y_ += dy;
  inLine_ = true;
}

void SvgPathBuilder::Close() {
  data_ += 'z';
  inLine_ = false;
}

}  // namespace shr
