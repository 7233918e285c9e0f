// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/SettingsFile.h"

#include <gtest/gtest.h>

#include "tests/common/Inputs.h"

using namespace mapreport;

TEST(SettingsFile, everyKeyIsTaken) {
  const InputFile file(
      "; made by hand\n[Files]\nMap=sub/a.txt\nPoints=/b.csv\nCities=c.csv\nRivers=d.txt\n"
      "Attributes=e.csv\n\n[MAP]\ntitle = \"  Two words \"\nWindow=-10,35,40,60\nLabels=7\n"
      "Strongest=0\n[Colors]\nRamp=#ffffff,#000000\nNone=#010203\nSea=#040506\n"
      "Rivers=#070809\n[Rivers]\nDashes=6 3\n");
  const SettingsFile read = ReadSettingsFile(file.Path());
  const GString folder = file.Path().substr(0, file.Path().size() - 5);
  EXPECT_EQ(folder + L"sub/a.txt", read.map);
  EXPECT_EQ(L"/b.csv", read.points);
  EXPECT_EQ(folder + L"c.csv", read.cities);
  EXPECT_EQ(folder + L"d.txt", read.rivers);
  EXPECT_EQ(folder + L"e.csv", read.attributes);
  const Settings& settings = read.settings;
  EXPECT_EQ(L"  Two words ", settings.title);
  EXPECT_EQ(Box2d(-10, 35, 40, 60), settings.window);
  EXPECT_EQ(7u, settings.labels);
  EXPECT_EQ(0u, settings.strongest);
  EXPECT_EQ(2u, settings.ramp->size());
  EXPECT_EQ(Color4b(1, 2, 3), settings.none);
  EXPECT_EQ(Color4b(4, 5, 6), settings.sea);
  EXPECT_EQ(Color4b(7, 8, 9), settings.river);
  EXPECT_EQ((std::vector<double>{6, 3}), settings.dashes);
}

TEST(SettingsFile, whatItDoesNotSayIsAbsent) {
  const InputFile file("[Map]\nWindow=\n[Other]\nx=y\n");
  const SettingsFile read = ReadSettingsFile(file.Path());
  EXPECT_TRUE(read.map.empty());
  EXPECT_FALSE(read.settings.window);
  EXPECT_FALSE(read.settings.HasColors());
}

TEST(SettingsFile, faultsAreNamedBySectionAndKey) {
  struct Row {
    const char* name;
    std::string bytes;
    const wchar_t* part;
  };
  const Row rows[] = {
      {"misspelled key", "[Map]\nTitle=x\nWindw=1,2,3,4\n", L"[Map] 'Windw' is no key"},
      {"key of another section", "[Rivers]\nSea=#000000\n", L"[Rivers] 'Sea' is no key"},
      {"window", "[Map]\nWindow=1,2,3\n", L"[Map] Window: '1,2,3'"},
      {"rows", "[Map]\nLabels=-1\n", L"[Map] Labels: '-1'"},
      {"color", "[Colors]\nSea=deep\n", L"[Colors] Sea: 'deep'"},
      {"one color", "[Colors]\nRamp=#000000\n", L"[Colors] Ramp"},
      {"dashes", "[Rivers]\nDashes=0\n", L"[Rivers] Dashes"},
      {"long value", "[Map]\nTitle=" + std::string(5000, 'x') + "\n", L"'Title' has too long a"},
  };
  for (const Row& row : rows) {
    const InputFile file(row.bytes);
    const GString message = MessageOf(file, [&] { ReadSettingsFile(file.Path()); });
    EXPECT_NE(GString::npos, message.find(row.part)) << row.name << ": " << message;
  }
  const InputFile file("");
  EXPECT_NE(L"", MessageOf(file, [&] { ReadSettingsFile(file.Path() + L".none"); }));
}
