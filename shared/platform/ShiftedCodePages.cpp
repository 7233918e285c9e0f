// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The sets of pairs are cut from the double-byte pages of Windows, so that a character has the same
// meaning in all of them: JIS X 0208 with the rows of NEC from 932 by the arithmetic that Shift-JIS
// is defined by, JIS X 0212 from 20932, GB 2312 from 936 and KS X 1001 from 20949. Each is kept as
// a table of pairs with both high bits set.

#include "shared/platform/ShiftedCodePages.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <mutex>
#include <span>

#include "shared/platform/CodePageTable.h"

namespace shr::platform {
namespace {

constexpr char ESCAPE = '\x1B';
constexpr char SHIFT_OUT = '\x0E';
constexpr char SHIFT_IN = '\x0F';
constexpr unsigned HIGH_BITS = 0x8080;

constexpr char16_t FIRST_KANA = 0xFF61;
constexpr char16_t LAST_KANA = 0xFF9F;
/// What the half-width katakana from the first to the last are in full width.
constexpr std::u16string_view FULL_WIDTH_KANA =
    u"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホ"
    u"マミムメモヤユヨ"
    u"ラリルレロワン゛゜";
static_assert(FULL_WIDTH_KANA.size() == LAST_KANA - FIRST_KANA + 1u);

enum class Set { Ascii, Roman, Kana, Jis0208, Jis0212, Gb2312, KsX1001 };

constexpr bool IsPairSet(Set set) {
  return set >= Set::Jis0208;
}

// Pages.

enum class Syntax { Iso2022, Hz };

struct Page {
  std::uint32_t number;
  Syntax syntax;
  /// What SO shifts to in reading.
  Set shiftedOut;
  /// Whether that set is written by SO and SI.
  bool writesShifts;
  /// What stands at the head of a text that has shifts.
  std::string_view header;
  /// The sets that are written, the first that has a character.
  std::span<const Set> sets;
};

constexpr Set MAIL_SETS[] = {Set::Jis0208, Set::Roman};
constexpr Set JAPANESE_SETS[] = {Set::Jis0208, Set::Roman,  Set::Kana,
                                 Set::Jis0212, Set::Gb2312, Set::KsX1001};
constexpr Set KOREAN_SETS[] = {Set::KsX1001};
constexpr Set CHINESE_SETS[] = {Set::Gb2312};

constexpr Page PAGES[] = {
    {50220, Syntax::Iso2022, Set::Kana, false, "", MAIL_SETS},
    {50221, Syntax::Iso2022, Set::Kana, false, "", JAPANESE_SETS},
    {50222, Syntax::Iso2022, Set::Kana, true, "", JAPANESE_SETS},
    {50225, Syntax::Iso2022, Set::KsX1001, true, "\x1B$)C", KOREAN_SETS},
    {52936, Syntax::Hz, Set::Ascii, false, "", CHINESE_SETS},
};

const Page* FindPage(std::uint32_t number) noexcept {
  const auto* found = std::find_if(std::begin(PAGES), std::end(PAGES),
                                   [number](const Page& page) { return page.number == number; });
  return found == std::end(PAGES) ? nullptr : found;
}

struct Designation {
  std::string_view code;
  Set set;
};

/// What may follow an escape. The first row of a set is the one that is written.
constexpr Designation DESIGNATIONS[] = {
    {"(B", Set::Ascii},   {"(J", Set::Roman},    {"(I", Set::Kana},     {"$B", Set::Jis0208},
    {"$@", Set::Jis0208}, {"$(B", Set::Jis0208}, {"$(D", Set::Jis0212}, {"$A", Set::Gb2312},
    {"$(A", Set::Gb2312}, {"$(C", Set::KsX1001},
};
/// These may follow an escape and change nothing: Korean is announced, and a revision of JIS.
constexpr std::string_view ANNOUNCEMENTS[] = {"$)C", "&@"};

// Sets.

/// A set is what a page has for some pairs; `to` turns a pair of the set, both high bits set, into
/// one of the page.
struct Source {
  std::uint32_t page;
  unsigned lastLead;
  unsigned (*to)(unsigned pair);
};

unsigned ToShiftJis(unsigned pair) {
  const unsigned row = (pair >> 8 & 0x7F) - 0x21;
  const unsigned column = (pair & 0x7F) - 0x21;
  const unsigned lead = (row < 0x3E ? 0x81 : 0xC1) + row / 2;
  const unsigned trail = row % 2 != 0 ? 0x9F + column : 0x40 + column + (column >= 0x3F ? 1 : 0);
  return lead << 8 | trail;
}

unsigned ToSecondSetOf20932(unsigned pair) {
  return pair & 0xFF7F;
}

unsigned ToItself(unsigned pair) {
  return pair;
}

Source SourceOf(Set set) {
  switch (set) {
    case Set::Jis0208:
      return {932, 0xFE, ToShiftJis};
    case Set::Jis0212:
      return {20932, 0xF4, ToSecondSetOf20932};
    case Set::Gb2312:
      return {936, 0xF7, ToItself};
    default:
      return {20949, 0xFE, ToItself};
  }
}

constexpr char16_t MIDDLE_DOT = 0x30FB;

/// Returns true for what a pair of a page of Windows without a character decodes to.
bool IsNothing(char16_t unit, unsigned pagePair) {
  const bool isPrivate = unit >= 0xE000 && unit <= 0xF8FF;
  return unit == u'?' || isPrivate || (unit == MIDDLE_DOT && pagePair != 0x8145);
}

/// Characters of JIS X 0208 that its standard and Windows name by different code points; the second
/// is that of Windows.
constexpr char16_t OTHER_NAMES[][2] = {
    {0x2014, 0x2015}, {0x2016, 0x2225}, {0x2212, 0xFF0D}, {0x301C, 0xFF5E}};

/// Adds the best-fit pairs of the page, found by what they decode to, and the other names.
void AddFits(const Source& source, const PairConverter& converter, CodePageTable& table) {
  std::u16string lacking;
  for (unsigned unit = 0x80; unit < 0xFFFE; ++unit) {
    const auto ch = static_cast<char16_t>(unit);
    if ((unit < 0xD800 || unit > 0xF8FF) && !table.HasEncoding(ch)) lacking += ch;
  }
  const auto add = [&table](char16_t unit, char16_t fit) {
    if (table.HasEncoding(fit)) table.SetEncoding(unit, table.Encoding(fit));
  };
  for (const char16_t unit : lacking) {
    const unsigned pair = converter.encode(source.page, unit);
    if (pair > 0xFF) add(unit, converter.decode(source.page, pair >> 8, pair & 0xFF));
  }
  if (source.page != 932) return;
  for (const auto& [unit, fit] : OTHER_NAMES) add(unit, fit);
}

std::unique_ptr<const CodePageTable> BuildSet(Set set, const PairConverter& converter) {
  const Source source = SourceOf(set);
  auto table = std::make_unique<CodePageTable>(CodePageTable::StandIns{u'?', '?'});
  for (unsigned lead = 0xA1; lead <= source.lastLead; ++lead) {
    table->SetLead(static_cast<unsigned char>(lead));
    for (unsigned trail = 0xA1; trail <= 0xFE; ++trail) {
      const unsigned pair = source.to(lead << 8 | trail);
      const char16_t unit = converter.decode(source.page, pair >> 8, pair & 0xFF);
      if (IsNothing(unit, pair)) continue;
      const auto key = static_cast<std::uint16_t>(lead << 8 | trail);
      table->SetPair(key, unit);
      if (!table->HasEncoding(unit)) table->SetEncoding(unit, key);
    }
  }
  AddFits(source, converter, *table);
  return table;
}

const CodePageTable& PairsOf(Set set, const PairConverter& converter) {
  struct Slot {
    std::once_flag once;
    std::unique_ptr<const CodePageTable> table;
  };
  static std::array<Slot, 7>& slots = *new std::array<Slot, 7>;
  Slot& slot = slots[static_cast<std::size_t>(set)];
  std::call_once(slot.once, [&] { slot.table = BuildSet(set, converter); });
  return *slot.table;
}

// Reading.

constexpr bool IsGraphic(unsigned char byte) {
  return byte >= 0x21 && byte <= 0x7E;
}

class Reader {
public:
  Reader(const Page& page, std::string_view bytes, std::wstring& wide,
         const PairConverter& converter)
      : page_(page), rest_(bytes), wide_(wide), converter_(converter) {}

  void Run() {
    while (!rest_.empty()) {
      const bool isControl = page_.syntax == Syntax::Hz ? ReadTilde() : ReadShift();
      if (!isControl) ReadCharacter();
    }
  }

private:
  void Put(char16_t unit) { wide_ += static_cast<wchar_t>(unit); }

  bool Skip(std::string_view head) {
    if (!rest_.starts_with(head)) return false;
    rest_.remove_prefix(head.size());
    return true;
  }

  /// Reads an escape sequence or a shift; returns false when there is none.
  bool ReadShift() {
    const char byte = rest_[0];
    if (byte != ESCAPE && byte != SHIFT_OUT && byte != SHIFT_IN) return false;
    rest_.remove_prefix(1);
    if (byte != ESCAPE) {
      isShiftedOut_ = byte == SHIFT_OUT;
      return true;
    }
    for (const Designation& row : DESIGNATIONS) {
      if (!Skip(row.code)) continue;
      set_ = row.set;
      return true;
    }
    const auto skip = [this](std::string_view code) { return Skip(code); };
    if (!std::any_of(std::begin(ANNOUNCEMENTS), std::end(ANNOUNCEMENTS), skip)) Put(u'?');
    return true;
  }

  /// Reads what a tilde stands for; returns false when it is none or only a tilde.
  bool ReadTilde() {
    if (Skip("~}")) {
      set_ = Set::Ascii;
      return true;
    }
    if (set_ != Set::Ascii) return false;
    if (Skip("~{")) {
      set_ = Set::Gb2312;
      return true;
    }
    if (Skip("~~")) {
      Put(u'~');
      return true;
    }
    return Skip("~\n") || Skip("~\r\n");
  }

  void ReadCharacter() {
    const auto byte = static_cast<unsigned char>(rest_[0]);
    const Set set = isShiftedOut_ ? page_.shiftedOut : set_;
    if (IsPairSet(set) && IsGraphic(byte)) return ReadPair(set);
    rest_.remove_prefix(1);
    if (byte == '\n') {
      set_ = Set::Ascii;
      isShiftedOut_ = false;
    }
    Put(SingleOf(set, byte));
  }

  char16_t SingleOf(Set set, unsigned char byte) const {
    const unsigned kana = byte & 0x7Fu;
    const bool isKana = kana >= 0x21 && kana <= 0x5F;
    if (byte >= 0x80) {
      const bool isJapanese = page_.shiftedOut == Set::Kana;
      return static_cast<char16_t>(isJapanese && isKana ? FIRST_KANA + kana - 0x21 : u'?');
    }
    if (set == Set::Kana && IsGraphic(byte)) {
      return static_cast<char16_t>(isKana ? FIRST_KANA + kana - 0x21 : u'?');
    }
    if (set == Set::Roman && byte == '\\') return 0xA5;
    if (set == Set::Roman && byte == '~') return 0x203E;
    return byte;
  }

  void ReadPair(Set set) {
    const bool isPair = rest_.size() > 1 && IsGraphic(static_cast<unsigned char>(rest_[1]));
    const char pair[] = {static_cast<char>(rest_[0] | 0x80),
                         isPair ? static_cast<char>(rest_[1] | 0x80) : '\0'};
    rest_.remove_prefix(isPair ? 2 : 1);
    wchar_t units[2] = {L'?'};
    if (isPair) PairsOf(set, converter_).Decode(std::string_view(pair, 2), Input::Complete, units);
    wide_ += units[0];
  }

  const Page& page_;
  std::string_view rest_;
  std::wstring& wide_;
  const PairConverter& converter_;
  Set set_ = Set::Ascii;
  bool isShiftedOut_ = false;
};

// Writing.

/// A character in a set: a byte, or a pair without high bits.
struct Place {
  Set set;
  unsigned key;
};

class Writer {
public:
  Writer(const Page& page, std::string& narrow, const PairConverter& converter)
      : page_(page), narrow_(narrow), begin_(narrow.size()), converter_(converter) {}

  void Put(char32_t ch) {
    if (ch > 0xFFFF) {
      PutPlace({Set::Ascii, '?'});
      if (ch <= 0x10FFFF) PutPlace({Set::Ascii, '?'});
      return;
    }
    PutPlace(PlaceOf(static_cast<char16_t>(ch)));
  }

  void Close() { TurnTo(Set::Ascii); }

private:
  Place PlaceOf(char16_t unit) const {
    const bool isShift = unit == ESCAPE || unit == SHIFT_OUT || unit == SHIFT_IN;
    const bool isIso = page_.syntax == Syntax::Iso2022;
    if (unit < 0x80) return {Set::Ascii, isIso && isShift ? u'?' : unit};
    for (const Set set : page_.sets) {
      if (IsPairSet(set)) {
        const char16_t asWritten = set == Set::Jis0208 && !WritesKana() ? FullWidth(unit) : unit;
        const CodePageTable& pairs = PairsOf(set, converter_);
        if (pairs.HasEncoding(asWritten)) return {set, pairs.Encoding(asWritten) & ~HIGH_BITS};
      } else if (set == Set::Kana && unit >= FIRST_KANA && unit <= LAST_KANA) {
        return {set, unit - FIRST_KANA + 0x21u};
      } else if (set == Set::Roman && (unit == 0xA5 || unit == 0x203E)) {
        return {set, unit == 0xA5 ? unsigned{'\\'} : unsigned{'~'}};
      }
    }
    return {Set::Ascii, '?'};
  }

  bool WritesKana() const {
    return std::find(page_.sets.begin(), page_.sets.end(), Set::Kana) != page_.sets.end();
  }

  static char16_t FullWidth(char16_t unit) {
    const bool isHalf = unit >= FIRST_KANA && unit <= LAST_KANA;
    return isHalf ? FULL_WIDTH_KANA[unit - FIRST_KANA] : unit;
  }

  void PutPlace(const Place& place) {
    TurnTo(place.set);
    if (IsPairSet(place.set)) narrow_ += static_cast<char>(place.key >> 8);
    narrow_ += static_cast<char>(place.key & 0xFF);
    const bool isTilde = page_.syntax == Syntax::Hz && place.set == Set::Ascii && place.key == '~';
    if (isTilde) narrow_ += '~';
  }

  void TurnTo(Set set) {
    const bool goesOut = page_.writesShifts && set == page_.shiftedOut;
    if (goesOut != isShiftedOut_) {
      narrow_ += goesOut ? SHIFT_OUT : SHIFT_IN;
      isShiftedOut_ = goesOut;
      if (goesOut && !hasHeader_) narrow_.insert(begin_, page_.header);
      hasHeader_ = true;
    }
    if (goesOut || set == set_) return;
    set_ = set;
    if (page_.syntax == Syntax::Hz) {
      narrow_ += set == Set::Ascii ? "~}" : "~{";
      return;
    }
    const auto* row = std::find_if(std::begin(DESIGNATIONS), std::end(DESIGNATIONS),
                                   [set](const Designation& code) { return code.set == set; });
    narrow_ += ESCAPE;
    narrow_ += row->code;
  }

  const Page& page_;
  std::string& narrow_;
  std::size_t begin_;
  const PairConverter& converter_;
  Set set_ = Set::Ascii;
  bool isShiftedOut_ = false;
  bool hasHeader_ = false;
};

}  // namespace

bool IsShiftedPage(std::uint32_t codePage) noexcept {
  return FindPage(codePage) != nullptr;
}

void AppendWideFromShifted(std::uint32_t codePage, std::string_view bytes, std::wstring& wide,
                           const PairConverter& converter) {
  Reader(*FindPage(codePage), bytes, wide, converter).Run();
}

void AppendNarrowToShifted(std::uint32_t codePage, std::wstring_view text, std::string& narrow,
                           const PairConverter& converter) {
  Writer writer(*FindPage(codePage), narrow, converter);
  for (const wchar_t unit : text) {
    const auto ch = static_cast<char32_t>(unit);
    writer.Put(sizeof(wchar_t) == 2 ? ch & 0xFFFF : ch);
  }
  writer.Close();
}

}  // namespace shr::platform
