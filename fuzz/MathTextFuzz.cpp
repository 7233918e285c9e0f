// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Scans the input as markup: an error is told once, last, and quotes the text; runs are joined as
// far as they go. Escaped, the same input must scan back to itself.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "shared/mathtext/MathTextScanner.h"

namespace {

struct Sink : shr::IMathTextScanner {
  void Require(bool holds) {
    if (!holds) std::abort();
  }
  void Call(bool isRun = false) {
    Require(!failed && !(isRun && wasRun));
    wasRun = isRun;
    commands += !isRun;
  }
  void Text(const wchar_t* run) override {
    Call(true);
    Require(*run != L'\0');
    text += run;
  }
  void Newline() override {
    Call();
    ++breaks;
    text += L'\n';
  }
  void CharCode(unsigned code) override {
    Call();
    Require(code > 0 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF));
  }
  void Percent(double value) {
    Call();
    Require(value >= -10000 && value <= 10000);
  }
  void Index(unsigned value) {
    Call();
    Require(value <= 255);
  }
  void Facename(const wchar_t*) override { Call(); }
  void FontSize(double percent) override { Percent(percent); }
  void Bold() override { Call(); }
  void Italic() override { Call(); }
  void Underline() override { Call(); }
  void StrikeThrough() override { Call(); }
  void Plain() override { Call(); }
  void VerticalOffset(double percent) override { Percent(percent); }
  void SavePosition(unsigned index) override { Index(index); }
  void RestorePosition(unsigned index) override { Index(index); }
  void PushState() override { Call(); }
  void PopState() override { Call(); }
  void PredefinedColor(shr::Color4b) override { Call(); }
  void ColorComponent(unsigned component, unsigned value) override {
    Index(component * 64 + value % 64);
  }
  void Color(shr::Color4b) override { Call(); }
  void Line(double x, double y, shr::Side) override { Percent(x), Percent(y); }
  void DateTime(const wchar_t*) override { Call(); }
  void BeginSubstring(double w, double h, shr::HAlignment, shr::VAlignment) override {
    Percent(w), Percent(h);
  }
  void EndSubstring() override { Call(); }
  void Error(const wchar_t* nearText) override {
    Call();
    failed = true;
    Require(*nearText == L'\\' && std::wstring(nearText).size() <= 40);
    error = nearText;
  }

  bool failed = false, wasRun = false;
  std::size_t commands = 0, breaks = 0;
  std::wstring text, error;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::wstring text;
  for (size_t i = 0; i < size; ++i) {
    // Ordinary bytes stand for themselves, a high one and its neighbour for any unit.
    const bool isWide = data[i] >= 0x80 && i + 1 < size;
    const int unit = isWide ? data[i] << 8 | data[i + 1] : data[i];
    i += isWide;
    if (unit != 0) text += static_cast<wchar_t>(unit);
  }
  Sink sink;
  if (shr::ScanMathText(text.c_str(), sink) == sink.failed) std::abort();
  if (sink.failed && text.find(sink.error) == std::wstring::npos) std::abort();

  Sink plain;
  if (!shr::ScanMathText(shr::EscapeMathText(text).c_str(), plain)) std::abort();
  if (plain.commands != plain.breaks) std::abort();
  for (size_t at = 0; (at = text.find(L'\r', at)) != std::wstring::npos;) {
    text.replace(at, text[at + 1] == L'\n' ? 2 : 1, L"\n");
  }
  if (plain.text != text) std::abort();
  return 0;
}
