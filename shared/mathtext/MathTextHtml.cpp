// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/mathtext/MathTextHtml.h"

#include <cmath>
#include <ctime>
#include <vector>

#include "shared/html/HtmlReport.h"
#include "shared/mathtext/Context.h"
#include "shared/mathtext/MathTextDateTime.h"
#include "shared/platform/Clock.h"

namespace shr {
namespace {

/// Appends a property of a style whose value has at most three decimals.
void AppendLength(std::string& style, const char* property, double value, const char* unit) {
  const long long thousandths = std::llround(std::abs(value) * 1000);
  std::string fraction = std::to_string(1000 + thousandths % 1000).substr(1);
  while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
  style += std::string(property) + ":" + (value < 0 ? "-" : "");
  style += std::to_string(thousandths / 1000) + (fraction.empty() ? "" : "." + fraction);
  style += std::string(unit) + ";";
}

/// Returns a string of CSS between apostrophes, as an attribute may hold it.
std::string CssString(const GString& text) {
  std::wstring quoted = L"'";
  for (const wchar_t unit : text) {
    if (unit == L'\'' || unit == L'\\') quoted += L'\\';
    quoted += unit;
  }
  return HtmlEscape(quoted + L"'");
}

std::string CssColor(const Color4b& color) {
  std::string text = "rgb(" + std::to_string(color.red) + "," + std::to_string(color.green) + "," +
                     std::to_string(color.blue) + ")";
  if (color.alpha == ALPHA_MAX) return "color:" + text + ";";
  text = "color:rgba" + text.substr(3, text.size() - 4) + ",";
  const long long percent = std::llround(color.alpha * 100 / 255.0);
  return text + std::to_string(percent / 100) + "." +
         std::to_string(100 + percent % 100).substr(1) + ");";
}

/// Writes each run of text with the style of the moment.
class HtmlSink final : public IMathTextScanner {
public:
  std::string Take() { return std::move(html_); }

  void Text(const wchar_t* text) override { Write(text); }
  void CharCode(unsigned code) override { html_ += Styled("&#" + std::to_string(code) + ";"); }
  void Newline() override {
    html_ += "<BR>";
    // No brace is open at a line break, so what was kept last is the beginning of a sub-string.
    state_ = states_.empty() ? State() : states_.back();
  }
  void Facename(const wchar_t* name) override { state_.face = name; }
  void FontSize(double percent) override { state_.size *= percent / 100; }
  void Bold() override { state_.isBold = true; }
  void Italic() override { state_.isItalic = true; }
  void Underline() override { state_.isUnderlined = true; }
  void StrikeThrough() override { state_.isStruck = true; }
  void Plain() override {
    state_.isBold = state_.isItalic = state_.isUnderlined = state_.isStruck = false;
  }
  void VerticalOffset(double percent) override { state_.rise += state_.size * percent / 100; }
  void SavePosition(unsigned) override {}
  void RestorePosition(unsigned) override {}
  void PushState() override { states_.push_back(state_); }
  void PopState() override {
    state_ = states_.back();
    states_.pop_back();
  }
  void PredefinedColor(Color4b color) override { Color(color); }
  void ColorComponent(unsigned component, unsigned value) override {
    static_cast<unsigned char*>(state_.color)[component] = static_cast<unsigned char>(value);
  }
  void Color(Color4b color) override { state_.color = color; }
  void Line(double, double, Side) override {}
  void DateTime(const wchar_t* picture) override {
    Write(FormatMathTextDateTime(picture, platform::ToLocalTime(std::time(nullptr))));
  }
  void BeginSubstring(double, double, HAlignment, VAlignment) override { PushState(); }
  void EndSubstring() override { PopState(); }
  void Error(const wchar_t*) override {}

private:
  struct State {
    bool isBold = false, isItalic = false, isUnderlined = false, isStruck = false;
    GString face;
    Color4b color;
    double size = 1;  // in sizes of the text around
    double rise = 0;
  };

  std::string Style() const {
    std::string style;
    if (state_.isBold) style += "font-weight:bold;";
    if (state_.isItalic) style += "font-style:italic;";
    if (state_.isUnderlined || state_.isStruck) {
      style += std::string("text-decoration:") + (state_.isUnderlined ? "underline" : "") +
               (state_.isUnderlined && state_.isStruck ? " " : "") +
               (state_.isStruck ? "line-through" : "") + ";";
    }
    if (!state_.face.empty()) style += "font-family:" + CssString(state_.face) + ";";
    if (state_.color != Color4b()) style += CssColor(state_.color);
    if (state_.size != 1) AppendLength(style, "font-size", state_.size, "em");
    if (state_.rise != 0) {
      // Lines stay as far apart as without it.
      AppendLength(style, "vertical-align", state_.rise / state_.size, "em");
      style += "line-height:0;";
    }
    return style;
  }

  std::string Styled(const std::string& markup) const {
    const std::string style = Style();
    return style.empty() ? markup : "<SPAN STYLE=\"" + style + "\">" + markup + "</SPAN>";
  }

  void Write(std::wstring_view text) { html_ += Styled(HtmlEscape(text)); }

  std::string html_;
  State state_;
  std::vector<State> states_;
};

}  // namespace

std::string MathTextToHtml(const GString& text) {
  if (!ContainsMathText(text.c_str()) || !FindMathTextFault(text).empty()) {
    return HtmlEscape(std::wstring_view(text));
  }
  HtmlSink sink;
  ScanMathText(text.c_str(), sink);
  return sink.Take();
}

}  // namespace shr
