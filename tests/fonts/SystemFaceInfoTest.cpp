// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every row of the scoring table, selected and not; what matching promises, against a plain
// search that follows the same rules, for random requests; defaults; the cache; type masks; errors;
// Refresh while other threads match.

#include "shared/fonts/SystemFaceInfo.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "shared/diagnostics/Exception.h"
#include "shared/fonts/StrokedFace.h"
#include "shared/fonts/TrueTypeFaceInfo.h"
#include "shared/text/StringCompare.h"
#include "tests/fonts/MadeFace.h"

namespace shr {
namespace {

constexpr int ALL =
    MATCH_NAME | MATCH_WEIGHT | MATCH_ITALIC | MATCH_CHARSET | MATCH_PITCH | MATCH_FAMILY;
constexpr unsigned char RUSSIAN = 204;

CSystemFaceInfo& Faces() {
  return CSystemFaceInfo::Instance();
}

TEST(SystemFaceInfo, everyPropertyEarnsItsPoints) {
  FaceAttributes attributes;
  attributes.weight = 400;
  attributes.italic = 1;
  attributes.pitchAndFamily = platform::PITCH_VARIABLE | platform::FAMILY_SWISS;
  attributes.charsets = platform::CharsetBit(0) | platform::CharsetBit(RUSSIAN);
  const test::MadeFace face(L"Made Face", attributes);
  struct Row {
    const char* name;
    const wchar_t* faceName;
    long weight;
    unsigned char italic, charset, pitchAndFamily;
    int flag;  // the property in question
    int points;
  };
  const Row rows[] = {
      {"all equal", L"Made Face", 400, 1, 0, 0x21, ALL, 1500},
      {"case does not matter", L"mADE fACE", 400, 1, 0, 0x21, ALL, 1500},
      {"another character set that it serves", L"Made Face", 400, 1, RUSSIAN, 0x21, ALL, 1500},
      {"whichever character set", L"Made Face", 400, 1, 1, 0x21, ALL, 1500},
      {"character set", L"Made Face", 400, 1, 161, 0x21, MATCH_CHARSET, 1100},
      {"unknown character set", L"Made Face", 400, 1, 99, 0x21, MATCH_CHARSET, 1100},
      {"name", L"Made Fac", 400, 1, 0, 0x21, MATCH_NAME, 1200},
      {"longer name", L"Made Face ", 400, 1, 0, 0x21, MATCH_NAME, 1200},
      {"pitch", L"Made Face", 400, 1, 0, 0x20, MATCH_PITCH, 1200},
      {"other low bits do not count", L"Made Face", 400, 1, 0, 0x2F, MATCH_PITCH, 1500},
      {"family", L"Made Face", 400, 1, 0, 0x11, MATCH_FAMILY, 1200},
      {"weight, less than a step", L"Made Face", 499, 1, 0, 0x21, MATCH_WEIGHT, 1500},
      {"weight, a step", L"Made Face", 500, 1, 0, 0x21, MATCH_WEIGHT, 1490},
      {"weight, lighter", L"Made Face", 100, 1, 0, 0x21, MATCH_WEIGHT, 1470},
      {"weight, heavier", L"Made Face", 900, 1, 0, 0x21, MATCH_WEIGHT, 1450},
      {"weight, absurd", L"Made Face", 20400, 1, 0, 0x21, MATCH_WEIGHT, -500},
      {"italic", L"Made Face", 400, 0, 0, 0x21, MATCH_ITALIC, 1400},
      {"any italic", L"Made Face", 400, 255, 0, 0x21, MATCH_ITALIC, 1500},
      {"nothing equal", L"x", 500, 0, 161, 0x10, ALL, 90},
  };
  for (const Row& row : rows) {
    const auto value = [&](int flags) {
      return CSystemFaceInfo::CalcMatchValue(face, row.faceName, row.weight, row.italic,
                                             row.charset, row.pitchAndFamily, flags);
    };
    EXPECT_EQ(row.points, value(ALL)) << row.name;
    EXPECT_EQ(row.points, value(row.flag)) << row.name;
    EXPECT_EQ(row.flag == ALL ? value(0) : 1500, value(ALL & ~row.flag)) << row.name;
    EXPECT_EQ(1500, value(0)) << row.name;
  }
  for (const long extreme : {std::numeric_limits<long>::min(), std::numeric_limits<long>::max()}) {
    EXPECT_LT(CSystemFaceInfo::CalcMatchValue(face, L"x", extreme, 0, 0, 0, ALL), 0);
  }
}

TEST(SystemFaceInfo, facesAreSortedByName) {
  ASSERT_GT(Faces().GetFaceCount(), 2);
  for (int i = 1; i < Faces().GetFaceCount(); ++i) {
    EXPECT_FALSE(FaceNameLess(*Faces().GetFaceInfo(i), *Faces().GetFaceInfo(i - 1))) << i;
  }
}

TEST(SystemFaceInfo, theUsualFacesAreAlwaysThere) {
  for (const wchar_t* const name : {L"arial", L"ARIAL", L"Courier New", L"times new roman"}) {
    const int index = Faces().Match(name, 400, 0, 0, 0, MATCH_NAME | MATCH_WEIGHT, FACE_TRUE_TYPE);
    const std::shared_ptr<CFaceInfo> face = Faces().GetFaceInfo(index);
    EXPECT_TRUE(StringEquivalent()(name, face->GetFaceName())) << face->GetFaceName().ToUtf8();
    EXPECT_EQ(400, face->GetAttributes().weight);
    EXPECT_EQ(index, Faces().CheckForPerfectMatch(name, 400, 0, 0, 0, MATCH_NAME | MATCH_WEIGHT,
                                                  FACE_TRUE_TYPE));
  }
  const auto nameOf = [](int index) { return Faces().GetFaceInfo(index)->GetFaceName(); };
  EXPECT_EQ(L"Arial", nameOf(Faces().GetDefaultTextFace()));
  EXPECT_EQ(L"Courier New", nameOf(Faces().GetDefaultMarkerFace()));
  const std::shared_ptr<CFaceInfo> courier = Faces().GetFaceInfo(Faces().GetDefaultMarkerFace());
  EXPECT_EQ(courier->CalcEmExtent(L"iii"), courier->CalcEmExtent(L"MMM")) << "not of fixed pitch";
}

TEST(SystemFaceInfo, anEmptyNameGivesTheDefaults) {
  struct Row {
    const char* name;
    unsigned char pitchAndFamily;
    int flags;
    bool isMarker;
  };
  const Row rows[] = {
      {"pitch does not count", 0, MATCH_NAME, false},
      {"fixed", 0, MATCH_PITCH, true},
      {"fixed of a family", platform::FAMILY_MODERN, ALL, true},
      {"variable", platform::PITCH_VARIABLE, MATCH_PITCH, false},
      {"fixed, does not count", 0, ALL & ~MATCH_PITCH, false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.isMarker ? Faces().GetDefaultMarkerFace() : Faces().GetDefaultTextFace(),
              Faces().Match(L"", 400, 0, 0, row.pitchAndFamily, row.flags, FACE_ALL_TYPES))
        << row.name;
  }
}

/// The rules of matching without any haste.
int PlainMatch(std::wstring_view name, long weight, unsigned char italic, unsigned char charset,
               unsigned char pitch, int flags, unsigned int typeMask) {
  const bool isMarker = (flags & MATCH_PITCH) != 0 && (pitch & 1) == 0;
  const int preferred = isMarker ? Faces().GetDefaultMarkerFace() : Faces().GetDefaultTextFace();
  if (name.empty()) return preferred;
  const auto value = [&](int i) {
    return CSystemFaceInfo::CalcMatchValue(*Faces().GetFaceInfo(i), name, weight, italic, charset,
                                           pitch, flags);
  };
  const auto isOfType = [&](int i) {
    return (Faces().GetFaceInfo(i)->GetFaceType() & typeMask) != 0;
  };
  const int count = Faces().GetFaceCount();
  for (int i = 0; i < count; ++i) {
    const bool hasName = StringEquivalent()(Faces().GetFaceInfo(i)->GetFaceName(), name);
    if (hasName && isOfType(i) && value(i) == PERFECT_MATCH) return i;
  }
  int best = NO_FACE, bestValue = -1;
  for (int i = 0; i < count; ++i) {
    if (!isOfType(i)) continue;
    if (value(i) > bestValue || (value(i) == bestValue && i == preferred)) {
      best = i;
      bestValue = value(i);
      if (bestValue == PERFECT_MATCH) break;
    }
  }
  return best == NO_FACE ? preferred : best;
}

TEST(SystemFaceInfo, matchingIsWhatAPlainSearchFinds) {
  std::mt19937 random(2026);
  const auto draw = [&random](auto... values) {
    const std::common_type_t<decltype(values)...> all[] = {values...};
    return all[random() % sizeof...(values)];
  };
  for (int i = 0; i < 3000; ++i) {
    const auto face = Faces().GetFaceInfo(
        static_cast<int>(random() % static_cast<unsigned>(Faces().GetFaceCount())));
    const GString& own = face->GetFaceName();
    const GString name =
        draw(GString(L"Not installed"), GString(L"aaa"), own, own.ToLower(), GString());
    const long weight = draw(100L, 400L, 400L, 700L, 1000L, 100000L);
    const auto italic = static_cast<unsigned char>(random() % 2);
    const auto charset = static_cast<unsigned char>(draw(0, 0, 1, 2, 128, 204, 255, 7));
    const auto pitch = static_cast<unsigned char>(random());
    const int flags = static_cast<int>(random() % 64);
    const unsigned int mask = draw(1u, 2u, 3u, 3u, 0u, 4u);
    const int repeats = 1 + static_cast<int>(random() % 2);  // the second is from the cache
    for (int k = 0; k < repeats; ++k) {
      ASSERT_EQ(PlainMatch(name, weight, italic, charset, pitch, flags, mask),
                Faces().Match(name, weight, italic, charset, pitch, flags, mask))
          << i << " flags " << flags << " mask " << mask;
    }
  }
}

TEST(SystemFaceInfo, aFaceThatIsNotInstalledTiesForTheDefault) {
  const int flags = MATCH_NAME | MATCH_WEIGHT;
  EXPECT_EQ(Faces().GetDefaultTextFace(),
            Faces().Match(L"No Such Face", 400, 0, 0, 0, flags, FACE_TRUE_TYPE));
  EXPECT_EQ(Faces().GetDefaultMarkerFace(),
            Faces().Match(L"No Such Face", 400, 0, 0, platform::FAMILY_MODERN,
                          flags | MATCH_PITCH | MATCH_ITALIC, FACE_TRUE_TYPE));
}

TEST(SystemFaceInfo, theCacheAnswersForEveryArgument) {
  // Each differs from the first in one argument, so that a cache that left it out would be wrong.
  // Machines differ in what they have, so a plain search tells what is right.
  const auto expectMatch = [](const wchar_t* name, long weight, int italic, int charset, int pitch,
                              int flags, unsigned mask) {
    const auto byte = [](int value) { return static_cast<unsigned char>(value); };
    Faces().Match(L"Arial", 400, 0, 0, 0x21, ALL & ~MATCH_CHARSET, FACE_TRUE_TYPE);
    EXPECT_EQ(PlainMatch(name, weight, byte(italic), byte(charset), byte(pitch), flags, mask),
              Faces().Match(name, weight, byte(italic), byte(charset), byte(pitch), flags, mask));
  };
  constexpr int FLAGS = ALL & ~MATCH_CHARSET;
  expectMatch(L"Arial", 400, 0, 0, 0x21, FLAGS, FACE_TRUE_TYPE);
  expectMatch(L"DejaVu Sans", 400, 0, 0, 0x21, FLAGS, FACE_TRUE_TYPE);
  expectMatch(L"Arial", 700, 0, 0, 0x21, FLAGS, FACE_TRUE_TYPE);
  expectMatch(L"Arial", 400, 1, 0, 0x21, FLAGS, FACE_TRUE_TYPE);
  expectMatch(L"Arial", 400, 0, RUSSIAN, 0x21, FLAGS, FACE_TRUE_TYPE);
  expectMatch(L"Arial", 400, 0, 0, 0x31, FLAGS, FACE_TRUE_TYPE);
  expectMatch(L"Arial", 400, 0, 0, 0x21, ALL, FACE_TRUE_TYPE);
  expectMatch(L"ARIAL", 400, 0, 0, 0x21, FLAGS, FACE_TRUE_TYPE);
  expectMatch(L"Arial", 400, 0, 0, 0x21, FLAGS, FACE_SYMBOL);
}

TEST(SystemFaceInfo, badMasksAndIndicesAreRefused) {
  const auto isInvalid = [](auto call) {
    try {
      call();
      return false;
    } catch (const Exception& error) {
      return error.GetDescription() == L"Invalid parameter passed to subroutine or function";
    }
  };
  for (const unsigned int mask : {0u, 4u, 7u, 0x80000000u}) {
    EXPECT_TRUE(isInvalid([mask] { Faces().SetFontMatcherFaceTypeFlags(mask); })) << mask;
    EXPECT_TRUE(isInvalid([mask] { Faces().SetMarkerMatcherFaceTypeFlags(mask); })) << mask;
  }
  Faces().SetMarkerMatcherFaceTypeFlags(FACE_SYMBOL);
  EXPECT_EQ(FACE_SYMBOL, Faces().GetMarkerMatcherFaceTypeFlags());
  EXPECT_EQ(FACE_ALL_TYPES, Faces().GetFontMatcherFaceTypeFlags());
  Faces().SetMarkerMatcherFaceTypeFlags(FACE_ALL_TYPES);
  for (const int index : {-1, Faces().GetFaceCount(), 1 << 30}) {
    EXPECT_TRUE(isInvalid([index] { Faces().GetFaceInfo(index); })) << index;
  }
}

TEST(SystemFaceInfo, theSymbolSetsAreFacesOfTheirOwnType) {
  for (const wchar_t* const name : {STROKED_TEXT_FACE, MARKER_FACE}) {
    const int index = Faces().Match(name, 400, 0, 0, 0, MATCH_NAME, FACE_ALL_TYPES);
    const std::shared_ptr<CFaceInfo> face = Faces().GetFaceInfo(index);
    EXPECT_EQ(name, face->GetFaceName());
    EXPECT_EQ(FACE_SYMBOL, face->GetFaceType());
    EXPECT_GT(face->CalcEmExtent(L"!"), 0);
  }
}

TEST(SystemFaceInfo, refreshKeepsFacesThatCallersHold) {
  const std::shared_ptr<CFaceInfo> held = Faces().GetFaceInfo(Faces().GetDefaultTextFace());
  const double before = held->CalcEmExtent(L"Depth, m");
  std::thread matching([] {
    for (int i = 0; i < 2000; ++i) {
      Faces().Match(i % 2 == 0 ? L"Arial" : L"Courier", 400, 0, 0, 0, ALL, FACE_ALL_TYPES);
    }
  });
  const int count = Faces().GetFaceCount();
  Faces().Refresh();
  matching.join();
  EXPECT_EQ(count, Faces().GetFaceCount());
  EXPECT_EQ(before, held->CalcEmExtent(L"Depth, m"));
  EXPECT_EQ(before, Faces().GetFaceInfo(Faces().GetDefaultTextFace())->CalcEmExtent(L"Depth, m"));
}

}  // namespace
}  // namespace shr
