// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Saved maps: the round trip, and what becomes of files that are damaged by accident or on purpose.

#include "examples/mapreport/MapArchive.h"

#include <gtest/gtest.h>

#include <cmath>

#include "examples/mapreport/Analysis.h"
#include "tests/mapreport/SmallModel.h"
#include "tests/support/Failures.h"

using namespace mapreport;

namespace {

/// A model in which every field has a value of its own.
Model FullModel() {
  Model model = SmallModel();
  SilentProgress silent;
  ClipToWindow(model, Box2d(-5, -5, 15, 15), silent);
  CountEvents(model, silent);
  ColorByCount(model, DefaultPalette());
  model.events[0].depth.reset();
  model.rivers.push_back({L"R\x00ED", {Vec2d(0, 1), Vec2d(2, 3)}, {}});
  model.rivers[0].visible = {{Vec2d(0, 1), Vec2d(1, 2)}, {2}};
  model.clip = {L"clip", {{Vec2d(0, 0), Vec2d(0, 9), Vec2d(9, 9)}, {3}}};
  model.continent = {L"continent", {{Vec2d(0, 0), Vec2d(0, 8), Vec2d(8, 8)}, {3}}};
  model.view = {L"", 7, 8, {6, 2.5}, TextMode::Outlines, L"Arial"};
  Track track{
      L"Stra\x00DF"
      L"e",
      Track::Kind::Route,
      {{Vec2d(1, 1), Vec2d(2, 3)}, {2}},
      L"t0",
      L"t1",
      -3,
      8.5,
      {}};
  track.visible = track.lines;
  model.tracks.push_back(track);
  model.waypoints.push_back({L"Gipfel", Vec2d(3, 4), 812.5, L"t2", L"Summit", true});
  model.history.push_back({L"Done", L"\x6771", L"all", L"0123abcd"});
  return model;
}

GString LoadFailure(const std::string& bytes) {
  return shr::test::Failure([&] { LoadMap(bytes, L"saved.map"); });
}

bool Holds(const GString& text, const wchar_t* part) {
  return text.find(part) != GString::npos;
}

}  // namespace

TEST(MapArchive, aLoadedMapIsTheSavedOne) {
  Model model = FullModel();
  const std::string bytes = StoreMap(model);
  const InputFile file(bytes);
  Model loaded = LoadMap(file.Path());
  EXPECT_EQ(bytes, StoreMap(loaded));
  EXPECT_EQ(L"", loaded.view.title);
  EXPECT_EQ(model.countries[0].land.GetTotalVertexCount(),
            loaded.countries[0].land.GetTotalVertexCount());
  EXPECT_EQ(1u, loaded.countries[0].holes.GetNumContours());
  EXPECT_EQ(Fingerprint(model), Fingerprint(loaded));
  loaded.history.clear();
  EXPECT_EQ(Fingerprint(model), Fingerprint(loaded));
  loaded = LoadMap(bytes, L"saved.map");
  EXPECT_EQ(bytes, StoreMap(loaded));
  loaded.countries[0].eventCount = 0;
  EXPECT_NE(Fingerprint(model), Fingerprint(loaded));
}

TEST(MapArchive, mapsOfVersionOneAreRead) {
  Model loaded = LoadMap(GString(SHARED_TEST_DATA_DIR) + L"/mapreport/version-1.map");
  ASSERT_EQ(2u, loaded.countries.size());
  EXPECT_EQ(L"A<B", loaded.countries[0].name);
  EXPECT_EQ(1u, loaded.countries[0].eventCount);
  ASSERT_EQ(1u, loaded.rivers.size());
  EXPECT_EQ(1u, loaded.rivers[0].visible.counts.size());
  EXPECT_EQ(L"\x6771\x4EAC", loaded.cities[0].name);
  EXPECT_TRUE(loaded.tracks.empty());
  EXPECT_EQ(5u, loaded.history.size());
}

TEST(MapArchive, everyShorterFileAndEveryChangedByteIsAnError) {
  Model model = FullModel();
  const std::string bytes = StoreMap(model);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_NE(L"(nothing)", LoadFailure(bytes.substr(0, length))) << length;
  }
  std::string changed = bytes;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    changed[i] = static_cast<char>(bytes[i] ^ (1 << (i % 8)));
    const GString failure = LoadFailure(changed);
    EXPECT_NE(L"(nothing)", failure) << i;
    EXPECT_FALSE(failure.empty()) << i;
    changed[i] = bytes[i];
  }
}

TEST(MapArchive, filesOfOtherKindsAreTold) {
  Model model = SmallModel();
  std::string bytes = StoreMap(model);
  EXPECT_TRUE(Holds(LoadFailure("a,b\n1,2\n3,4\n"), L"This is no saved map."));
  bytes[4] = 3;
  EXPECT_TRUE(Holds(LoadFailure(bytes), L"another version of the program (3)"));
  EXPECT_TRUE(Holds(shr::test::Failure([] { LoadMap(L"no-such.map"); }), L"no-such.map"));
}

TEST(MapArchive, contentThatNoMapHoldsIsRefused) {
  struct Row {
    const char* name;
    void (*spoil)(Model&);
    const wchar_t* fault;
  };
  const Row rows[] = {
      {"window", [](Model& m) { m.window = Box2d(0, 0, 0, 10); }, L"window"},
      {"country of an event", [](Model& m) { m.events[0].country = 2; }, L"event"},
      {"place", [](Model& m) { m.events[0].position.x = 1e9; }, L"event"},
      {"visible outside", [](Model& m) { m.cities[0].position.x = 40; }, L"city"},
      {"magnitude", [](Model& m) { m.events[0].magnitude = INFINITY; }, L"event"},
      {"largest event", [](Model& m) { m.countries[1].largestEvent = 1; }, L"country"},
      {"no magnitude", [](Model& m) { m.events[0].magnitude.reset(); }, L"country"},
      {"rings", [](Model& m) { m.countries[1].rings.counts[0] = 3; }, L"country"},
      {"outer rings", [](Model& m) { m.countries[1].outerRings = 2; }, L"country"},
      {"not a number", [](Model& m) { m.countries[0].visible.points[0].y = NAN; }, L"country"},
      {"counts", [](Model& m) { m.countries[1].eventCount = 1; }, L"counts"},
      {"river", [](Model& m) { m.rivers[0].visible.counts[0] = 3; }, L"river"},
      {"track", [](Model& m) { m.tracks[0].lines.counts[0] = 3; }, L"track"},
      {"kind", [](Model& m) { m.tracks[0].kind = static_cast<Track::Kind>(3); }, L"track"},
      {"waypoint", [](Model& m) { m.waypoints[0].position.x = 40; }, L"waypoint"},
      {"elevation", [](Model& m) { m.waypoints[0].elevation = NAN; }, L"waypoint"},
      {"text", [](Model& m) { m.view.text = static_cast<TextMode>(3); }, L"mode"},
      {"clip", [](Model& m) { m.clip.rings.counts.clear(); }, L"area"},
      {"ramp", [](Model& m) { m.palette.ramp.resize(1); }, L"colors"},
      {"dashes",
       [](Model& m) {
         m.view.dashes = {0, 0};
       },
       L"dashes"},
  };
  for (const Row& row : rows) {
    Model model = FullModel();
    row.spoil(model);
    const GString failure = LoadFailure(StoreMap(model));
    EXPECT_TRUE(Holds(failure, L"The saved map is damaged")) << row.name << ": " << failure;
    EXPECT_TRUE(Holds(failure, row.fault)) << row.name << ": " << failure;
  }
}
