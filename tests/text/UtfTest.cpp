// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Grid: ASCII, two-, three- and four-byte sequences and every kind of bad byte x head, middle and
// tail of the blocks that the decoder works in x short text and text large enough to be written
// past the caches. The judge is a decoder that reads one byte at a time.

#include "shared/text/Utf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

using shr::ByteOrder;
using namespace std::string_view_literals;

std::wstring FromUtf8(std::string_view bytes) {
  std::wstring wide(bytes.size(), L'\0');
  wide.resize(shr::Utf8ToWide(bytes, wide.data()));
  return wide;
}

std::string ToUtf8(std::wstring_view text) {
  std::string bytes(text.size() * shr::UTF8_BYTES_PER_UNIT, '\0');
  bytes.resize(shr::WideToUtf8(text, bytes.data()));
  return bytes;
}

std::wstring FromUtf16(std::string_view bytes, ByteOrder order) {
  std::wstring wide((bytes.size() + 1) / 2, L'\0');
  wide.resize(shr::Utf16ToWide(bytes, order, wide.data()));
  return wide;
}

std::string ToUtf16(std::wstring_view text, ByteOrder order) {
  std::string bytes(text.size() * sizeof(wchar_t), '\0');
  bytes.resize(shr::WideToUtf16(text, order, bytes.data()));
  return bytes;
}

void Put(std::wstring& wide, char32_t ch) {
  if (sizeof(wchar_t) == 2 && ch > 0xFFFF) {
    wide += static_cast<wchar_t>(0xD800 + ((ch - 0x10000) >> 10));
    ch = 0xDC00 + ((ch - 0x10000) & 0x3FF);
  }
  wide += static_cast<wchar_t>(ch);
}

/// Decodes by remembering which values the sequence begun may still reach: it is broken off where
/// the range of values that any continuation gives holds no character that needs this length.
std::wstring DecodeSlowly(std::string_view bytes) {
  struct Kind {
    unsigned firstMin, firstMax;
    int length;
    char32_t least;
  };
  constexpr Kind kinds[] = {
      {0xC0, 0xDF, 2, 0x80}, {0xE0, 0xEF, 3, 0x800}, {0xF0, 0xF7, 4, 0x10000}};
  const auto mayHold = [](char32_t low, char32_t high, char32_t least) {
    if (high < least || low > 0x10FFFF) return false;
    return !(low >= 0xD800 && high <= 0xDFFF);
  };
  std::wstring wide;
  for (std::size_t i = 0; i < bytes.size();) {
    const unsigned first = static_cast<unsigned char>(bytes[i]);
    const auto* kind = std::find_if(std::begin(kinds), std::end(kinds), [first](const Kind& row) {
      return first >= row.firstMin && first <= row.firstMax;
    });
    if (first < 0x80 || kind == std::end(kinds)) {
      Put(wide, first < 0x80 ? first : 0xFFFD);
      ++i;
      continue;
    }
    char32_t value = first - kind->firstMin;
    int read = 1;
    const auto fits = [&](char32_t head, int missing) {
      return mayHold(head << 6 * missing, ((head + 1) << 6 * missing) - 1, kind->least);
    };
    bool isGood = fits(value, kind->length - 1);
    std::size_t next = i + 1;
    while (isGood && read < kind->length) {
      isGood = next < bytes.size() && (bytes[next] & 0xC0) == 0x80 &&
               fits(value << 6 | (static_cast<unsigned char>(bytes[next]) & 0x3Fu),
                    kind->length - read - 1);
      if (!isGood) break;
      value = value << 6 | (static_cast<unsigned char>(bytes[next]) & 0x3Fu);
      ++next;
      ++read;
    }
    Put(wide, isGood ? value : 0xFFFD);
    i = next;
  }
  return wide;
}

struct Utf8Case {
  const char* name;
  std::string_view bytes;
  std::wstring wide;
};

TEST(Utf8Decoding, replacesEveryMaximalPartOfABadSequence) {
  const Utf8Case cases[] = {
      {"empty", "", L""},
      {"embedded zeros", "a\0b\0"sv, std::wstring(L"a\0b\0", 4)},
      {"first and last of each length", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF",
       L"\x7F\x80\x7FF\x800\xFFFF"},
      {"supplementary", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\U00010000\U0010FFFF"},
      {"mark is kept", "\xEF\xBB\xBFz", L"\xFEFFz"},
      {"lone trail bytes", "\x80z\xBF", L"\xFFFDz\xFFFD"},
      {"lead before ASCII", "a\xE9z", L"a\xFFFDz"},
      {"two of four bytes before ASCII", "\xF0\x9Fz", L"\xFFFDz"},
      {"three of four bytes at the end", "\xF0\x9F\x98", L"\xFFFD"},
      {"overlong", "\xC0\x80\xE0\x80\x80", L"\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD"},
      {"encoded surrogate", "\xED\xA0\x80", L"\xFFFD\xFFFD\xFFFD"},
      {"above the last code point", "\xF4\x90\x80\x80\xF5", L"\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD"},
      {"bytes that never occur", "\xFE\xFF\xF8", L"\xFFFD\xFFFD\xFFFD"},
  };
  for (const Utf8Case& row : cases) {
    EXPECT_EQ(FromUtf8(row.bytes), row.wide) << row.name;
    EXPECT_EQ(DecodeSlowly(row.bytes), row.wide) << row.name << " (judge)";
  }
}

/// Text of whole sequences, some of them cut or with a byte changed.
std::string RandomUtf8(std::mt19937& random, std::size_t size) {
  constexpr char32_t limits[] = {0x80, 0x80, 0x800, 0x10000, 0x110000};
  std::string bytes;
  while (bytes.size() < size) {
    const auto ch = static_cast<char32_t>(random() % limits[random() % 5]);
    const std::size_t run = 1 + random() % 6;
    for (std::size_t i = 0; i < run; ++i) {
      std::wstring wide;
      Put(wide, ch ^ (i & 3));
      bytes += ToUtf8(wide);
    }
    if (random() % 4 == 0) bytes.pop_back();
    if (random() % 8 == 0) bytes += static_cast<char>(random() % 256);
  }
  return bytes;
}

TEST(Utf8Decoding, agreesWithAByteWiseDecoderAtEveryOffsetOfABlock) {
  const unsigned seed = 20261;
  std::mt19937 random(seed);
  for (int round = 0; round < 2000; ++round) {
    const std::string body = RandomUtf8(random, random() % 60);
    const std::string bytes = std::string(random() % 18, 'x') + body;
    const std::string exact(bytes.data(), bytes.size());  // the sanitizer sees its end
    ASSERT_EQ(FromUtf8(exact), DecodeSlowly(bytes)) << "seed " << seed << ", round " << round;
  }
}

/// Words of one script, an ASCII character behind each.
std::string ScriptText(std::mt19937& random, std::size_t script, std::size_t size) {
  struct Script {
    char32_t first;
    unsigned characters;
    unsigned longestWord;
  };
  constexpr Script scripts[] = {{0x20, 0x5F, 30},   {0xA0, 0x160, 3},     {0x400, 0x100, 9},
                                {0xE00, 0x60, 20},  {0x4E00, 0x5000, 80}, {0xAC00, 0x2BA4, 5},
                                {0x1F600, 0x40, 2}, {0x750, 0x100, 12}};
  std::string bytes;
  while (bytes.size() < size) {
    const Script& row = scripts[script];
    std::wstring word;
    for (auto left = 1 + random() % row.longestWord; left > 0; --left) {
      Put(word, row.first + static_cast<char32_t>(random() % row.characters));
    }
    bytes += ToUtf8(word);
    bytes += random() % 8 == 0 ? '\n' : static_cast<char>('a' + random() % 26);
  }
  return bytes;
}

TEST(Utf8Decoding, agreesWithAByteWiseDecoderOnTextOfEveryScript) {
  const unsigned seed = 20262;
  std::mt19937 random(seed);
  for (int round = 0; round < 4000; ++round) {
    std::string bytes = ScriptText(random, random() % 8, random() % 300);
    bytes += ScriptText(random, random() % 8, 160 + random() % 500);
    for (auto damage = random() % 4; damage > 1; --damage) {
      const std::size_t at = random() % bytes.size();
      if (random() % 2 == 0) {
        bytes[at] = static_cast<char>(random() % 256);
      } else {
        bytes.erase(at, 1 + random() % 3);
      }
    }
    const std::string exact(bytes.data(), bytes.size());
    ASSERT_EQ(FromUtf8(exact), DecodeSlowly(bytes)) << "seed " << seed << ", round " << round;
  }
}

TEST(Utf8Decoding, findsEveryKindOfDamageAtEveryPlaceOfABlock) {
  const std::string_view damages[] = {"\x80",
                                      "\xC3",
                                      "\xC1\x80",
                                      "\xE0\x80\x80",
                                      "\xE0\x9F\xBF",
                                      "\xED\xA0\x80",
                                      "\xED\xBF\xBF",
                                      "\xE4\xB8",
                                      "\xE4",
                                      "\xF0\x8F\xBF\xBF",
                                      "\xF4\x90\x80\x80",
                                      "\xF5",
                                      "\xFF",
                                      "\xF0\x9F\x98",
                                      "\xE4\xB8\xAD\xAD",
                                      "\xE0\xA0\x80",
                                      "\xED\x9F\xBF",
                                      "\xEF\xBF\xBF",
                                      "\xF0\x9F\x98\x80",
                                      "\xC2\x80",
                                      "\xDF\xBF"};
  for (const std::string_view filling : {"x", "\xC3\xA9", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80"}) {
    for (const std::string_view damage : damages) {
      for (std::size_t before = 0; before < 70; ++before) {
        std::string bytes(before % 3, 'a');
        for (std::size_t i = 0; i < before; ++i) bytes += filling;
        bytes += damage;
        for (std::size_t i = 0; i < 200; ++i) bytes += filling;
        ASSERT_EQ(FromUtf8(bytes), DecodeSlowly(bytes)) << before << ' ' << filling;
      }
    }
  }
}

TEST(Utf8Decoding, isTheSameForTextLargerThanTheCaches) {
  const std::string line = "The quick brown fox jumps over the lazy dog. 0123456789\n";
  const std::string others = "\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80";
  std::string bytes;
  std::wstring expected;
  while (bytes.size() < (std::size_t{9} << 20)) {
    bytes += line;
    expected.append(line.begin(), line.end());
    if (bytes.size() % 4097 >= line.size()) continue;
    bytes += others;
    expected += DecodeSlowly(others);
  }
  for (const std::size_t shift : {0u, 1u}) {
    std::wstring wide(bytes.size() + shift, L'?');
    wide.resize(shift + shr::Utf8ToWide(bytes, wide.data() + shift));
    EXPECT_TRUE(std::wstring_view(wide).substr(shift) == std::wstring_view(expected))
        << "output shifted by " << shift;
  }
}

TEST(Utf8Decoding, inPiecesGivesTheTextOfTheWhole) {
  std::mt19937 random(7);
  for (int round = 0; round < 500; ++round) {
    const std::string bytes = RandomUtf8(random, 40);
    const std::size_t cut = random() % (bytes.size() + 1);
    const std::size_t head = shr::Utf8CompleteLength(std::string_view(bytes).substr(0, cut));
    ASSERT_LE(head, cut);
    ASSERT_LE(cut - head, 3u);
    ASSERT_EQ(FromUtf8(bytes.substr(0, head)) + FromUtf8(bytes.substr(head)), FromUtf8(bytes))
        << "round " << round << ", cut at " << cut;
  }
}

TEST(Utf8Encoding, roundTripsEveryCodePointAndReplacesTheRest) {
  for (char32_t ch = 0; ch <= 0x10FFFF; ch += ch < 0x3000 ? 1 : 97) {
    if (ch >= 0xD800 && ch <= 0xDFFF) continue;
    std::wstring wide;
    Put(wide, ch);
    ASSERT_EQ(FromUtf8(ToUtf8(wide)), wide) << std::hex << static_cast<unsigned>(ch);
  }
  const std::wstring loneHigh = {L'a', wchar_t(0xD800), L'z'};
  const std::wstring loneLow = {wchar_t(0xDC00), wchar_t(0xD800)};
  EXPECT_EQ(ToUtf8(loneHigh), "a\xEF\xBF\xBDz");
  EXPECT_EQ(ToUtf8(loneLow), "\xEF\xBF\xBD\xEF\xBF\xBD");
  const std::wstring pair = {wchar_t(0xD83D), wchar_t(0xDE00)};
  EXPECT_EQ(ToUtf8(pair), "\xF0\x9F\x98\x80");
  if (sizeof(wchar_t) == 4) {
    EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
  }
}

TEST(Utf16, keepsUnpairedSurrogatesInBothDirections) {
  struct Case {
    const char* name;
    std::string_view littleEndian;
    bool isReversible;
  };
  const Case cases[] = {
      {"letters", "a\0\xE9\0\x2D\x4E"sv, true},
      {"pair", "\x3D\xD8\x00\xDE"sv, true},
      {"high half alone", "a\0\x3D\xD8z\0"sv, true},
      {"low half alone", "\x00\xDEz\0"sv, true},
      {"halves exchanged", "\x00\xDE\x3D\xD8"sv, true},
      {"two high halves and a low one", "\x3D\xD8\x3D\xD8\x00\xDE"sv, true},
      {"high half at the end", "a\0\x3D\xD8"sv, true},
      {"odd last byte", "a\0z"sv, false},
  };
  for (const Case& row : cases) {
    std::string bigEndian(row.littleEndian);
    for (std::size_t i = 0; i + 1 < bigEndian.size(); i += 2)
      std::swap(bigEndian[i], bigEndian[i + 1]);
    const std::wstring wide = FromUtf16(row.littleEndian, ByteOrder::LittleEndian);
    EXPECT_EQ(FromUtf16(bigEndian, ByteOrder::BigEndian), wide) << row.name;
    if (row.isReversible) {
      EXPECT_EQ(ToUtf16(wide, ByteOrder::LittleEndian), row.littleEndian) << row.name;
      EXPECT_EQ(ToUtf16(wide, ByteOrder::BigEndian), bigEndian) << row.name;
    } else {
      EXPECT_EQ(wide, L"a\xFFFD") << row.name;
    }
  }
}

TEST(Utf16, joinsPairsOnlyWhereAUnitIsACodePoint) {
  const std::wstring wide = FromUtf16("\x3D\xD8\x00\xDE"sv, ByteOrder::LittleEndian);
  EXPECT_EQ(wide, L"\U0001F600");
  EXPECT_EQ(wide.size(), sizeof(wchar_t) == 2 ? 2u : 1u);
}

TEST(Utf16, blocksGiveTheBytesOfTheirUnits) {
  for (std::size_t length = 0; length < 40; ++length) {
    for (std::size_t place = 0; place <= length; ++place) {
      std::wstring wide;
      for (std::size_t i = 0; i < length; ++i) {
        Put(wide, i == place ? 0x1F600 : static_cast<char32_t>(0x4E00 + 0x101 * i));
      }
      for (const ByteOrder order : {ByteOrder::LittleEndian, ByteOrder::BigEndian}) {
        std::string expected;
        for (const wchar_t unit : wide) expected += ToUtf16(std::wstring(1, unit), order);
        EXPECT_EQ(ToUtf16(wide, order), expected) << length << ' ' << place;
      }
    }
  }
}

TEST(Utf16, completeLengthLeavesHalfUnitsAndFirstHalvesOfPairs) {
  const std::pair<std::string_view, std::size_t> cases[] = {
      {""sv, 0},
      {"a"sv, 0},
      {"a\0"sv, 2},
      {"a\0b"sv, 2},
      {"\x3D\xD8"sv, 0},
      {"a\0\x3D\xD8"sv, 2},
      {"a\0\x3D\xD8\x00"sv, 2},
      {"\x00\xDE"sv, 2},
      {"\x3D\xD8\x00\xDE"sv, 4},
  };
  for (const auto& [bytes, length] : cases) {
    EXPECT_EQ(shr::Utf16CompleteLength(bytes, ByteOrder::LittleEndian), length);
  }
  EXPECT_EQ(shr::Utf16CompleteLength("\xD8\x3D"sv, ByteOrder::BigEndian), 0u);
}

}  // namespace
