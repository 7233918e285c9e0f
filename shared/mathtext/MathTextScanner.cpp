// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// One pass over the text. Plain units gather in a buffer until something else comes; a backslash is
// followed by one of the units that it makes plain, or by a word that is looked up in a sorted
// table, whose entry reads the arguments and tells the sink. Readers of arguments move the reading
// place only forward, so a failing construct is known by where it began.

#include "shared/mathtext/MathTextScanner.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "shared/color/ColorTable.h"
#include "shared/mathtext/MathTextDateTime.h"
#include "shared/text/NumberParsing.h"

namespace shr {
namespace {

constexpr std::size_t MAX_NEAR = 40;

/// What is left of the text.
struct Input {
  const wchar_t* at;
  const wchar_t* end;

  bool Take(wchar_t unit) {
    if (at == end || *at != unit) return false;
    ++at;
    return true;
  }
  void SkipBlanks() {
    while (at != end && (*at == L' ' || *at == L'\t')) ++at;
  }
  /// Takes `unit` with blanks around it.
  bool TakeAmongBlanks(wchar_t unit) {
    SkipBlanks();
    if (!Take(unit)) return false;
    SkipBlanks();
    return true;
  }
  /// The blank that ends a keyword or its number is no text.
  void EndWord() { Take(L' '); }
};

bool IsLetter(wchar_t unit) {
  return (unit >= L'a' && unit <= L'z') || (unit >= L'A' && unit <= L'Z');
}

bool IsDigit(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}

int HexDigitOf(wchar_t unit) {
  if (IsDigit(unit)) return unit - L'0';
  if (unit >= L'a' && unit <= L'f') return unit - L'a' + 10;
  if (unit >= L'A' && unit <= L'F') return unit - L'A' + 10;
  return -1;
}

std::wstring_view TakeLetters(Input& in) {
  const wchar_t* const first = in.at;
  while (in.at != in.end && IsLetter(*in.at)) ++in.at;
  return {first, static_cast<std::size_t>(in.at - first)};
}

/// Reads a real number in the range. Words such as "nan" are no numbers here.
bool TakeNumber(Input& in, double least, double most, double& value) {
  const wchar_t* first = in.at;
  if (first != in.end && (*first == L'-' || *first == L'+')) ++first;
  if (first == in.end || !(IsDigit(*first) || *first == L'.')) return false;  // "nan", "inf"
  const RealPrefix<wchar_t> number = ParseRealPrefix(in.at, in.end);
  if (number.status != RealStatus::Ok) return false;
  in.at = number.end;
  value = number.value;
  return value >= least && value <= most;
}

/// Reads digits of the base, any number of them.
bool TakeWhole(Input& in, unsigned base, unsigned most, unsigned& value) {
  const wchar_t* const first = in.at;
  value = 0;
  for (; in.at != in.end; ++in.at) {
    const int digit = HexDigitOf(*in.at);
    if (digit < 0 || static_cast<unsigned>(digit) >= base) break;
    if (value <= most) value = value * base + static_cast<unsigned>(digit);
  }
  return in.at != first && value <= most;
}

/// Reads text between double quotes, in which two stand for one.
bool TakeQuoted(Input& in, std::wstring& text) {
  if (!in.Take(L'"')) return false;
  for (; in.at != in.end; ++in.at) {
    if (*in.at == L'\n' || *in.at == L'\r') return false;
    if (*in.at == L'"') {
      ++in.at;
      if (in.at == in.end || *in.at != L'"') return true;
    }
    text += *in.at;
  }
  return false;
}

template <typename Value>
struct Word {
  std::wstring_view word;
  Value value;
};

template <typename Value, std::size_t N>
bool TakeWord(Input& in, const Word<Value> (&words)[N], Value& value) {
  const std::wstring_view letters = TakeLetters(in);
  for (const Word<Value>& word : words) {
    if (word.word != letters) continue;
    value = word.value;
    return true;
  }
  return false;
}

constexpr Word<Side> SIDES[] = {
    {L"left", Side::Left}, {L"right", Side::Right}, {L"top", Side::Top}, {L"bottom", Side::Bottom}};
constexpr Word<HAlignment> HORIZONTAL[] = {
    {L"left", HAlignment::Left}, {L"center", HAlignment::Center}, {L"right", HAlignment::Right}};
constexpr Word<VAlignment> VERTICAL[] = {{L"top", VAlignment::Top},
                                         {L"baseline", VAlignment::Baseline},
                                         {L"bottom", VAlignment::Bottom}};

// Commands: each reads its arguments and tells the sink, or returns false.

using Sink = IMathTextScanner;

template <void (Sink::*Tell)()>
bool Simple(Input& in, Sink& sink) {
  in.EndWord();
  (sink.*Tell)();
  return true;
}

template <const Color4b& Named>
bool Paint(Input& in, Sink& sink) {
  in.EndWord();
  sink.PredefinedColor(Named);
  return true;
}

template <unsigned Component>
bool SetComponent(Input& in, Sink& sink) {
  unsigned value = 0;
  if (!TakeWhole(in, 10, 255, value)) return false;
  in.EndWord();
  sink.ColorComponent(Component, value);
  return true;
}

template <void (Sink::*Tell)(unsigned)>
bool Position(Input& in, Sink& sink) {
  unsigned index = 0;
  if (!TakeWhole(in, 10, MATH_TEXT_MAX_INDEX, index)) return false;
  in.EndWord();
  (sink.*Tell)(index);
  return true;
}

template <int Sign>
bool Offset(Input& in, Sink& sink) {
  double percent = 0;
  if (!TakeNumber(in, -MATH_TEXT_MAX_PERCENT, MATH_TEXT_MAX_PERCENT, percent)) return false;
  in.EndWord();
  sink.VerticalOffset(Sign * percent);
  return true;
}

bool Size(Input& in, Sink& sink) {
  double percent = 0;
  if (!TakeNumber(in, MATH_TEXT_MIN_SIZE, MATH_TEXT_MAX_PERCENT, percent)) return false;
  in.EndWord();
  sink.FontSize(percent);
  return true;
}

bool Code(Input& in, Sink& sink) {
  const bool isHex =
      in.end - in.at >= 2 && in.at[0] == L'0' && (in.at[1] == L'x' || in.at[1] == L'X');
  if (isHex) in.at += 2;
  unsigned code = 0;
  if (!TakeWhole(in, isHex ? 16 : 10, MATH_TEXT_MAX_CODE, code)) return false;
  if (code == 0 || (code >= 0xD800 && code <= 0xDFFF)) return false;
  in.EndWord();
  sink.CharCode(code);
  return true;
}

bool Face(Input& in, Sink& sink) {
  std::wstring name;
  if (!TakeQuoted(in, name)) return false;
  sink.Facename(name.c_str());
  return true;
}

bool ColorOf(Input& in, Sink& sink) {
  if (!in.Take(L'(')) return false;
  const wchar_t* const close = std::find(in.at, in.end, L')');
  Color4b color;
  if (close == in.end ||
      !ReadMathTextColor({in.at, static_cast<std::size_t>(close - in.at)}, color)) {
    return false;
  }
  in.at = close + 1;
  sink.Color(color);
  return true;
}

bool Segment(Input& in, Sink& sink) {
  constexpr double MOST = MATH_TEXT_MAX_PERCENT;
  double x = 0, y = 0;
  Side side{};
  if (!in.Take(L'(')) return false;
  in.SkipBlanks();
  if (!TakeNumber(in, -MOST, MOST, x) || !in.TakeAmongBlanks(L',')) return false;
  if (!TakeNumber(in, -MOST, MOST, y) || !in.TakeAmongBlanks(L',')) return false;
  if (!TakeWord(in, SIDES, side) || !(in.SkipBlanks(), in.Take(L')'))) return false;
  sink.Line(x, y, side);
  return true;
}

bool OpenSubstring(Input& in, Sink& sink) {
  constexpr double MOST = MATH_TEXT_MAX_PERCENT;
  double width = 0, height = 0;
  HAlignment horizontal{};
  VAlignment vertical{};
  if (!in.Take(L'(')) return false;
  in.SkipBlanks();
  if (!TakeNumber(in, 0, MOST, width) || !in.TakeAmongBlanks(L',')) return false;
  if (!TakeNumber(in, 0, MOST, height) || !in.TakeAmongBlanks(L',')) return false;
  if (!TakeWord(in, HORIZONTAL, horizontal) || !in.TakeAmongBlanks(L',')) return false;
  if (!TakeWord(in, VERTICAL, vertical) || !(in.SkipBlanks(), in.Take(L')'))) return false;
  sink.BeginSubstring(width, height, horizontal, vertical);
  return true;
}

bool Now(Input& in, Sink& sink, const wchar_t* picture) {
  in.EndWord();
  sink.DateTime(picture);
  return true;
}

bool Date(Input& in, Sink& sink) {
  return Now(in, sink, MATH_TEXT_DATE);
}

bool Time(Input& in, Sink& sink) {
  return Now(in, sink, MATH_TEXT_TIME);
}

bool NowByPicture(Input& in, Sink& sink) {
  std::wstring picture;
  if (!in.Take(L'(')) return false;
  in.SkipBlanks();
  if (!TakeQuoted(in, picture)) return false;
  in.SkipBlanks();
  if (!in.Take(L')')) return false;
  sink.DateTime(picture.c_str());
  return true;
}

struct Command {
  std::wstring_view keyword;
  bool (*scan)(Input& in, Sink& sink);
};

constexpr bool operator<(const Command& a, const Command& b) {
  return a.keyword < b.keyword;
}

constexpr Command COMMANDS[] = {
    {L"a", Code},
    {L"b", Simple<&Sink::Bold>},
    {L"black", Paint<Color4b::Black>},
    {L"blue", Paint<Color4b::Blue>},
    {L"color", ColorOf},
    {L"cyan", Paint<Color4b::Cyan>},
    {L"date", Date},
    {L"dn", Offset<-1>},
    {L"dt", NowByPicture},
    {L"f", Face},
    {L"fs", Size},
    {L"gray", Paint<Color4b::Gray>},
    {L"green", Paint<Color4b::Lime>},
    {L"i", Simple<&Sink::Italic>},
    {L"line", Segment},
    {L"magenta", Paint<Color4b::Magenta>},
    {L"plain", Simple<&Sink::Plain>},
    {L"red", Paint<Color4b::Red>},
    {L"rgba", SetComponent<3>},
    {L"rgbb", SetComponent<2>},
    {L"rgbg", SetComponent<1>},
    {L"rgbr", SetComponent<0>},
    {L"rp", Position<&Sink::RestorePosition>},
    {L"sp", Position<&Sink::SavePosition>},
    {L"ssbeg", OpenSubstring},
    {L"ssend", Simple<&Sink::EndSubstring>},
    {L"strike", Simple<&Sink::StrikeThrough>},
    {L"time", Time},
    {L"ul", Simple<&Sink::Underline>},
    {L"up", Offset<1>},
    {L"white", Paint<Color4b::White>},
    {L"yellow", Paint<Color4b::Yellow>},
};
static_assert(std::is_sorted(std::begin(COMMANDS), std::end(COMMANDS)));

/// Reads what follows a backslash that escapes nothing.
bool ScanCommand(Input& in, Sink& sink) {
  const std::wstring_view keyword = TakeLetters(in);
  const auto command =
      std::lower_bound(std::begin(COMMANDS), std::end(COMMANDS), Command{keyword, nullptr});
  return command != std::end(COMMANDS) && command->keyword == keyword && command->scan(in, sink);
}

bool IsEscapable(wchar_t unit) {
  return unit == L'\\' || unit == L'{' || unit == L'}';
}

bool IsPlain(wchar_t unit) {
  return !IsEscapable(unit) && unit != L'\n' && unit != L'\r';
}

/// Scans one text; holds the run of plain units that has not been told yet.
class Scan {
public:
  Scan(std::wstring_view text, Sink& sink)
      : in_{text.data(), text.data() + text.size()}, sink_(sink) {}

  bool Run() {
    while (in_.at != in_.end) {
      const wchar_t* const plain = std::find_if_not(in_.at, in_.end, IsPlain);
      run_.append(in_.at, plain);
      in_.at = plain;
      if (plain != in_.end && !ScanSpecial()) return Fail(plain);
    }
    TellRun();
    return true;
  }

private:
  bool ScanSpecial() {
    const wchar_t unit = *in_.at++;
    if (unit == L'\\' && in_.at != in_.end && IsEscapable(*in_.at)) {
      run_ += *in_.at++;
      return true;
    }
    TellRun();
    if (unit == L'\\') return ScanCommand(in_, sink_);
    if (unit == L'\r') in_.Take(L'\n');
    unit == L'{' ? sink_.PushState() : unit == L'}' ? sink_.PopState() : sink_.Newline();
    return true;
  }

  void TellRun() {
    if (run_.empty()) return;
    sink_.Text(run_.c_str());
    run_.clear();
  }

  bool Fail(const wchar_t* first) {
    std::wstring_view rest(first, static_cast<std::size_t>(in_.end - first));
    if (rest.size() > MAX_NEAR) {
      const bool isInPair =
          (static_cast<std::uint32_t>(rest[MAX_NEAR - 1]) & 0xFFFFFC00u) == 0xD800;
      rest = rest.substr(0, MAX_NEAR - isInPair);
    }
    sink_.Error(std::wstring(rest).c_str());
    return false;
  }

  Input in_;
  Sink& sink_;
  std::wstring run_;
};

/// Names as CSS writes them, in lower case without blanks.
std::map<std::wstring, Color4b> ColorNames() {
  std::map<std::wstring, Color4b> colors;
  for (const CColorTableEntry& entry : BuiltInColorTable()) {
    std::wstring name = entry.Name().ToLower().String();
    std::erase(name, L' ');
    colors.emplace(std::move(name), Color4b(entry.Color(), ALPHA_MAX));
  }
  colors[L"green"] = Color4b::Lime;  // as the command of that name has it
  return colors;
}

bool FindColorName(std::wstring name, Color4b& color) {
  static const std::map<std::wstring, Color4b> COLORS = ColorNames();
  const std::size_t grey = name.find(L"grey");
  if (grey != std::wstring::npos) name[grey + 2] = L'a';
  const auto found = COLORS.find(name);
  if (found == COLORS.end()) return false;
  color = found->second;
  return true;
}

bool ReadHexColor(std::wstring_view text, Color4b& color) {
  std::wstring digits(text);
  if (text.size() == 4) digits = {L'#', text[1], text[1], text[2], text[2], text[3], text[3]};
  Color4b read;
  if (!read.SetHex(digits)) return false;
  color = read;
  return true;
}

bool ReadChannels(std::wstring_view text, Color4b& color) {
  Input in{text.data(), text.data() + text.size()};
  unsigned char channels[] = {0, 0, 0, ALPHA_MAX};
  std::size_t count = 0;
  do {
    unsigned value = 0;
    if (count == 4 || !TakeWhole(in, 10, 255, value)) return false;
    channels[count++] = static_cast<unsigned char>(value);
  } while (in.TakeAmongBlanks(L','));
  if (count < 3 || in.at != in.end) return false;
  color = Color4b(channels);
  return true;
}

std::wstring_view Trimmed(std::wstring_view text) {
  constexpr const wchar_t* BLANKS = L" \t";
  const std::size_t first = text.find_first_not_of(BLANKS);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(BLANKS) + 1 - first);
}

}  // namespace

IMathTextScanner::~IMathTextScanner() = default;

bool ScanMathText(const wchar_t* text, IMathTextScanner& sink) {
  return Scan(text, sink).Run();
}

bool ContainsMathText(const wchar_t* text) {
  return std::wstring_view(text).find_first_of(L"\\\n\t") != std::wstring_view::npos;
}

GString EscapeMathText(const GString& text) {
  std::wstring escaped;
  escaped.reserve(text.size());
  for (const wchar_t unit : text) {
    if (IsEscapable(unit)) escaped += L'\\';
    escaped += unit;
  }
  return escaped;
}

bool ReadMathTextColor(std::wstring_view text, Color4b& color) {
  text = Trimmed(text);
  if (text.empty()) return false;
  if (text.front() == L'#') return ReadHexColor(text, color);
  if (IsDigit(text.front())) return ReadChannels(text, color);
  return FindColorName(GString(text).ToLower().String(), color);
}

}  // namespace shr
