// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/mathtext/Context.h"

#include <cmath>
#include <new>
#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/mathtext/MathTextDateTime.h"
#include "shared/mathtext/RecordingTextIF.h"
#include "shared/platform/Clock.h"
#include "shared/text/Utf.h"

namespace shr {
namespace {

constexpr const wchar_t* SOURCE = L"MTParser";
constexpr long BOLD_WEIGHT = 700;
constexpr long PLAIN_WEIGHT = 400;
/// A pen this near a tab stop, in distances of stops, stands on it.
constexpr double TAB_TOLERANCE = 1e-9;

[[noreturn]] void ThrowInvalid(int line) {
  ThrowErrorImpl(L"Context", line, INVALID_PARAMETER_TEXT);
}

[[noreturn]] void ThrowNear(const GString& construct) {
  ThrowErrorImpl(SOURCE, __LINE__, L"MathText parsing error near '%s'", construct);
}

[[noreturn]] void ThrowNearNumber(const wchar_t* command, double number) {
  GString construct;
  construct.FormatString(L"%s%g", command, number);
  ThrowNear(construct);
}

[[noreturn]] void ThrowUnbalanced() {
  ThrowErrorImpl(SOURCE, MT_UNBALANCED_BRACES, L"Unbalanced '{' and '}' directives");
}

std::tm LocalTimeNow() {
  return platform::ToLocalTime(std::time(nullptr));
}

bool IsPositive(double value) {
  return value > 0 && std::isfinite(value);
}

struct Parsed {
  std::shared_ptr<CMTMultiLineElement> element;  ///< null when the text does not parse
  GString error;
};

Parsed ParseWithoutFaces(const GString& text) {
  CMTRecordingTextIF measure{MTFixedMetrics()};
  CMTContext context(measure, 1);
  Parsed parsed;
  context.Parse(text, parsed.element);
  parsed.error = context.GetError();
  return parsed;
}

}  // namespace

CMTContext::CMTContext(CMTTextIF& textIF, double height)
    : textIF_(textIF), height_(height), clock_(LocalTimeNow) {
  if (!IsPositive(height)) ThrowInvalid(__LINE__);
}

CMTContext::~CMTContext() = default;

void CMTContext::SetOptions(std::uint16_t bits) noexcept {
  options_ = static_cast<std::uint16_t>(options_ | bits);
}

void CMTContext::ClearOptions(std::uint16_t bits) noexcept {
  options_ = static_cast<std::uint16_t>(options_ & ~bits);
}

void CMTContext::SetCharsPerTab(double count) {
  if (!IsPositive(count)) ThrowInvalid(__LINE__);
  charsPerTab_ = count;
}

void CMTContext::SetClock(std::function<std::tm()> clock) {
  clock_ = clock ? std::move(clock) : LocalTimeNow;
}

CMTContext::RETVAL CMTContext::Parse(const GString& text,
                                     std::shared_ptr<CMTMultiLineElement>& element) {
  if (text.empty()) {
    element = nullptr;
    return Fail(GString());
  }
  if (ContainsMathText(text.c_str())) return ParseMultiLine(text, element);
  error_.clear();
  const MTStateScope state(textIF_);
  BeginText();
  AddRun(text, Vec2d::ZERO);
  element = EndText();
  return MT_SUCCESS;
}

CMTContext::RETVAL CMTContext::ParseMultiLine(const GString& text,
                                              std::shared_ptr<CMTMultiLineElement>& element) {
  element = nullptr;
  error_.clear();
  const MTStateScope state(textIF_);
  try {
    BeginText();
    if (!ScanMathText(text.c_str(), *this)) ThrowNear(text.substr(0, 40));
    element = EndText();
    return MT_SUCCESS;
  } catch (const Exception& error) {
    return Fail(error.GetDescription());
  } catch (const std::bad_alloc&) {
    return Fail(OUT_OF_MEMORY_TEXT);
  }
}

CMTContext::RETVAL CMTContext::Fail(const GString& message) {
  PartialReset();
  error_ = message;
  return MT_FAILURE;
}

void CMTContext::PartialReset() {
  text_.clear();
  levels_.clear();
  braces_.clear();
  tabWidth_ = 0;
  elements_ = 0;
}

void CMTContext::BeginText() {
  PartialReset();
  if (given_ != textIF_.ShareAttributes()) {
    MTAttributes attributes = textIF_.GetAttributes();
    attributes.height = height_;
    base_ = std::make_shared<const MTAttributes>(std::move(attributes));
    given_ = textIF_.ShareAttributes();
  }
  textIF_.SetAttributes(base_);
  BeginLevel();
}

std::shared_ptr<CMTMultiLineElement> CMTContext::EndText() {
  SendText();
  if (levels_.size() > 1) ThrowNear(L"\\ssbeg");
  if (!braces_.empty()) ThrowUnbalanced();
  AppendCurrentLine();
  std::shared_ptr<CMTMultiLineElement> element = std::move(Current().element);
  PartialReset();
  return element;
}

/// Begins a text of lines in the attributes of now, to which each of its lines returns.
void CMTContext::BeginLevel() {
  CountElement();
  textIF_.PreserveState();
  Level level;
  level.element = std::make_shared<CMTMultiLineElement>(textIF_);
  level.line = std::make_shared<CMTLineElement>(textIF_);
  level.braceDepth = braces_.size();
  levels_.push_back(std::move(level));
}

void CMTContext::AppendCurrentLine() {
  Current().element->AppendLine(textIF_, std::move(Current().line));
}

void CMTContext::CountElement() {
  if (++elements_ <= MT_MAX_ELEMENTS) return;
  ThrowErrorImpl(SOURCE, __LINE__, L"Math text has more than %u parts",
                 static_cast<unsigned>(MT_MAX_ELEMENTS));
}

CMTContext::Level& CMTContext::Current() {
  if (levels_.empty()) ThrowInternalError(SHARED_MODULE, L"Context", __LINE__);
  return levels_.back();
}

template <typename Change>
void CMTContext::ChangeAttributes(Change change) {
  MTAttributes attributes = textIF_.GetAttributes();
  change(attributes);
  textIF_.SetAttributes(attributes);
}

void CMTContext::AccumulateText(std::wstring_view text) {
  for (;;) {
    const std::size_t tab = text.find(L'\t');
    text_ += text.substr(0, tab);
    if (tab == text.npos) return;
    SendTab();
    text.remove_prefix(tab + 1);
  }
}

/// Puts the pending text behind the pen.
void CMTContext::SendText() {
  if (text_.empty()) return;
  Level& level = Current();
  AddRun(std::exchange(text_, {}), level.pen);
  const auto& run = level.line->GetElement(level.line->GetCount() - 1);
  level.pen.x += run->GetExtentUsingTextIF(textIF_);
  level.runEnd = level.pen;
}

/// Moves the pen to the next stop, where the tab stands as a run that takes no room.
void CMTContext::SendTab() {
  SendText();
  if (tabWidth_ == 0) {
    const MTStateScope state(textIF_);
    textIF_.SetAttributes(base_);
    tabWidth_ = charsPerTab_ * textIF_.GetAverageCharWidth();
    if (!IsPositive(tabWidth_)) tabWidth_ = charsPerTab_ * height_ / 2;
  }
  Level& level = Current();
  level.pen.x = (std::floor(level.pen.x / tabWidth_ + TAB_TOLERANCE) + 1) * tabWidth_;
  AddRun(L"\t", level.pen);
  level.runEnd = level.pen;
}

void CMTContext::AddRun(GString text, const Vec2d& at) {
  CountElement();
  auto string = std::make_shared<CMTStringElement>(textIF_, std::move(text));
  if (string->GetText() == L"\t") string->SetExtent(0);
  Current().line->AddAssocStringElement(std::make_shared<CMTAssocStringElement>(std::move(string)),
                                        at);
}

void CMTContext::Text(const wchar_t* text) {
  AccumulateText(text);
}

void CMTContext::CharCode(unsigned code) {
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code == 0 || code > MATH_TEXT_MAX_CODE || isSurrogate) ThrowNearNumber(L"\\a", code);
  wchar_t units[UNITS_PER_CHARACTER];
  text_.append(units, CharacterToWide(static_cast<char32_t>(code), units));
}

void CMTContext::Newline() {
  SendText();
  Level& level = Current();
  if (!braces_.empty()) ThrowUnbalanced();
  const bool isSingleLine = (options_ & MT_SINGLE_LINE) != 0;
  if (!isSingleLine) {
    CountElement();
    AppendCurrentLine();
  }
  textIF_.RestoreState();
  textIF_.PreserveState();
  level.positions.clear();
  level.pen.y = 0;
  if (isSingleLine) {
    AccumulateText(L" ");
    return;
  }
  level.line = std::make_shared<CMTLineElement>(textIF_);
  level.pen = level.runEnd = Vec2d::ZERO;
}

void CMTContext::Facename(const wchar_t* name) {
  SendText();
  if ((options_ & MT_IGNORE_FACES) != 0) return;
  ChangeAttributes([name](MTAttributes& attributes) { attributes.face.name = name; });
}

void CMTContext::FontSize(double percent) {
  SendText();
  const double height = textIF_.GetAttributes().height * percent / 100;
  const bool isInRange = height >= MT_MIN_SCALE * height_ && height <= MT_MAX_SCALE * height_;
  if (!isInRange) ThrowNearNumber(L"\\fs", percent);
  ChangeAttributes([height](MTAttributes& attributes) { attributes.height = height; });
}

void CMTContext::Bold() {
  SendText();
  ChangeAttributes([](MTAttributes& attributes) { attributes.face.weight = BOLD_WEIGHT; });
}

void CMTContext::Italic() {
  SendText();
  ChangeAttributes([](MTAttributes& attributes) { attributes.face.italic = 1; });
}

void CMTContext::Underline() {
  SendText();
  ChangeAttributes([](MTAttributes& attributes) { attributes.underline = true; });
}

void CMTContext::StrikeThrough() {
  SendText();
  ChangeAttributes([](MTAttributes& attributes) { attributes.strikeThrough = true; });
}

void CMTContext::Plain() {
  SendText();
  ChangeAttributes([](MTAttributes& attributes) {
    attributes.face.weight = PLAIN_WEIGHT;
    attributes.face.italic = 0;
    attributes.underline = attributes.strikeThrough = false;
  });
}

/// Returns a length in percent of the current height. Errors: one beyond the largest height.
double CMTContext::LengthOf(double percent, const wchar_t* command) const {
  const double length = textIF_.GetAttributes().height * percent / 100;
  if (!(std::abs(length) <= MT_MAX_SCALE * height_)) ThrowNearNumber(command, percent);
  return length;
}

void CMTContext::VerticalOffset(double percent) {
  SendText();
  double& y = Current().pen.y;
  const double moved = y + LengthOf(percent, L"\\up");
  if (std::abs(moved) > MT_MAX_SCALE * height_) ThrowNearNumber(L"\\up", percent);
  y = moved;
}

void CMTContext::SavePosition(unsigned index) {
  SendText();
  Current().positions[index] = Current().pen;
}

void CMTContext::RestorePosition(unsigned index) {
  SendText();
  const auto found = Current().positions.find(index);
  if (found == Current().positions.end()) ThrowNearNumber(L"\\rp", index);
  Current().pen = found->second;
}

void CMTContext::PushState() {
  SendText();
  if (braces_.size() >= MT_MAX_OPEN_BRACES) {
    ThrowErrorImpl(SOURCE, __LINE__, L"Math text has more than %u open braces",
                   static_cast<unsigned>(MT_MAX_OPEN_BRACES));
  }
  braces_.push_back(Current().pen.y);
  textIF_.PreserveState();
}

void CMTContext::PopState() {
  SendText();
  if (braces_.size() <= Current().braceDepth) ThrowUnbalanced();
  Current().pen.y = braces_.back();
  braces_.pop_back();
  textIF_.RestoreState();
}

void CMTContext::PredefinedColor(Color4b color) {
  Color(color);
}

void CMTContext::ColorComponent(unsigned component, unsigned value) {
  if (component > 3 || value > 255) ThrowInvalid(__LINE__);
  Color4b color = textIF_.GetAttributes().color;
  static_cast<unsigned char*>(color)[component] = static_cast<unsigned char>(value);
  Color(color);
}

void CMTContext::Color(Color4b color) {
  SendText();
  if ((options_ & MT_IGNORE_COLORS) != 0) return;
  ChangeAttributes([color](MTAttributes& attributes) { attributes.color = color; });
}

void CMTContext::Line(double x, double y, Side side) {
  SendText();
  const Vec2d vector(LengthOf(x, L"\\line("), LengthOf(y, L"\\line("));
  CountElement();
  Level& level = Current();
  if (level.line->empty() || level.runEnd != level.pen) {
    AddRun(GString(), level.pen);
    level.runEnd = level.pen;
  }
  level.line->AssociateLineSegment(side, vector, textIF_.ShareAttributes());
}

void CMTContext::DateTime(const wchar_t* picture) {
  AccumulateText(FormatMathTextDateTime(picture, clock_()));
}

void CMTContext::BeginSubstring(double width, double height, HAlignment horizontal,
                                VAlignment vertical) {
  SendText();
  if (levels_.size() > MT_MAX_NESTED_SUBSTRINGS) {
    ThrowErrorImpl(SOURCE, __LINE__, L"Math text has more than %u sub-strings inside each other",
                   static_cast<unsigned>(MT_MAX_NESTED_SUBSTRINGS));
  }
  const double fieldWidth = LengthOf(width, L"\\ssbeg(");
  const double fieldHeight = LengthOf(height, L"\\ssbeg(");
  if (fieldWidth < 0 || fieldHeight < 0) ThrowNear(L"\\ssbeg(");
  BeginLevel();
  Current().element->SetAlignment(horizontal, vertical);
  Current().element->SetField(fieldWidth, fieldHeight);
}

void CMTContext::EndSubstring() {
  SendText();
  if (levels_.size() < 2) ThrowNear(L"\\ssend");
  if (braces_.size() != Current().braceDepth) ThrowUnbalanced();
  AppendCurrentLine();
  std::shared_ptr<CMTMultiLineElement> element = std::move(Current().element);
  levels_.pop_back();
  textIF_.RestoreState();
  Level& level = Current();
  level.pen.x += level.line->AssociateMLElement(textIF_, std::move(element), level.pen);
}

void CMTContext::Error(const wchar_t* nearText) {
  ThrowNear(nearText);
}

GString MathTextToSimpleText(const GString& text) {
  if (!ContainsMathText(text.c_str())) return text;
  const Parsed parsed = ParseWithoutFaces(text);
  return parsed.element != nullptr ? parsed.element->GetSimpleText() : L"*** Math Text Error ***";
}

GString FindMathTextFault(const GString& text) {
  return ContainsMathText(text.c_str()) ? ParseWithoutFaces(text).error : GString();
}

}  // namespace shr
