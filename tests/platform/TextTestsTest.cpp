// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The answers of the system (asked on Windows, by rule elsewhere) on samples of each kind, and the
// rule against the system on random buffers. The rule is the one of Wine; the sample rows are what
// both targets must give.

#include "shared/platform/TextTests.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "shared/platform/TextTestRule.h"

namespace shr::platform {
namespace {

constexpr std::uint32_t ALL_TESTS = 0xFFFF;

/// Each unit as two bytes, low one first.
std::string LittleEndian(std::u16string_view units) {
  std::string bytes;
  for (const char16_t unit : units) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

std::string BigEndian(std::u16string_view units) {
  std::string bytes = LittleEndian(units);
  for (std::size_t i = 0; i < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
  return bytes;
}

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes.push_back(static_cast<char>(byte));
  return bytes;
}

struct Sample {
  const char* name;
  std::string bytes;
  std::uint32_t fired;
};

const std::u16string LINE = u"The quick brown fox jumps over the lazy dog.";

const Sample SAMPLES[] = {
    {"empty", "", 0},
    {"one letter", "a", 0},
    {"one zero", std::string(1, '\0'), 0},
    {"two letters", "ab", 0},
    {"short ASCII", "this app can break", 0},
    {"short ASCII of known fame", "Bush hid the facts", 0},
    {"odd ASCII", "abcde", 0x0200},
    {"line ends only", "\r\n\r\n", 0},
    {"code page 1251", "\xCC\xEE\xF1\xEA\xE2\xE0\xCC\xEE", 0},
    {"UTF-8 Chinese", "\xE4\xB8\x8A\xE6\xB5\xB7", 0},
    {"UTF-8 mark, odd", "\xEF\xBB\xBFhello wo", 0x0200},
    {"LE ASCII", LittleEndian(LINE), 0x1006},
    {"LE ASCII with mark", LittleEndian(u"\xFEFF" + LINE), 0x100E},
    {"LE without controls", LittleEndian(u"ab"), 0x1002},
    {"LE single unit", LittleEndian(u"a"), 0},
    {"LE and a byte", LittleEndian(LINE) + "x", 0x1206},
    {"LE Chinese", LittleEndian(u"\x4E00\x4E8C\x4E09\x56DB"), 0x1000},
    {"LE Cyrillic", LittleEndian(u"\x043C\x0438\x0440 \x043C\x0438\x0440"), 0x1004},
    {"LE accents", LittleEndian(u"\xE9t\xE9 \xE0"), 0x1006},
    {"LE ideographic space", LittleEndian(u"\x3000\x3000"), 0x1004},
    {"BE ASCII", BigEndian(LINE), 0x1040},
    {"BE ASCII with mark", BigEndian(u"\xFEFF" + LINE), 0x10C0},
    {"BE without controls", BigEndian(u"ab"), 0x1000},
    {"LE mark only", "\xFF\xFE", 0x0008},
    {"BE mark only", "\xFE\xFF", 0x0080},
    {"LE mark and a byte", "\xFF\xFE\x61", 0x0208},
    {"zeros", std::string(8, '\0'), 0x1046},
    {"FF", std::string(8, '\xFF'), 0},
    {"zero at an even place", std::string("abcd\0fgh", 8), 0x1000},
    {"zero at the end only", std::string("abcdefg\0", 8), 0},
    {"every byte", AllBytes(), 0x1000},
};

TEST(TextTests, samplesFireTheirTests) {
  for (const Sample& sample : SAMPLES) {
    EXPECT_EQ(TestText(sample.bytes, ALL_TESTS), sample.fired) << sample.name;
    EXPECT_EQ(ApplyTextTestRule(sample.bytes, ALL_TESTS), sample.fired) << sample.name;
  }
}

TEST(TextTests, testsAskedOneByOneFireAsTogether) {
  for (const Sample& sample : SAMPLES) {
    for (std::uint32_t test = 1; test <= TEXT_TEST_NULL_BYTES; test <<= 1) {
      EXPECT_EQ(TestText(sample.bytes, test), sample.fired & test) << sample.name << ' ' << test;
    }
  }
}

TEST(TextTests, ruleGivesWhatTheSystemGivesOnRandomBuffers) {
  constexpr unsigned SEED = 20261121;
  SCOPED_TRACE(SEED);
  std::mt19937 random(SEED);
  // Bytes that decide about a test come up far more often than by chance.
  const std::string telling = std::string("\0\t\n\r 0a\xFE\xFF\x30", 10) + '\0';
  for (int round = 0; round < 20000; ++round) {
    std::string bytes(random() % (round % 50 == 0 ? 1100 : 40), 'x');
    for (char& byte : bytes) {
      byte = random() % 3 != 0 ? telling[random() % telling.size()] : static_cast<char>(random());
    }
    const std::uint32_t tests = random() % 2 != 0 ? ALL_TESTS : random() & ALL_TESTS;
    ASSERT_EQ(TestText(bytes, tests), ApplyTextTestRule(bytes, tests)) << round;
  }
}

}  // namespace
}  // namespace shr::platform
