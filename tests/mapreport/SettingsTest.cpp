// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Settings.h"

#include <gtest/gtest.h>

#include "shared/commands/RegParamList.h"
#include "shared/platform/WindowsTypes.h"
#include "tests/support/RegistrySandbox.h"

using namespace mapreport;

TEST(Settings, windowsAreReadAndWrapped) {
  struct Row {
    const wchar_t* text;
    std::optional<Box2d> expected;
  };
  const Row rows[] = {
      {L"-10,35,40,60", Box2d(-10, 35, 40, 60)},
      {L" -10.5 , 35 , 40 , 60 ", Box2d(-10.5, 35, 40, 60)},
      {L"160,-50,-70,60", Box2d(160, -50, 290, 60)},
      {L"160,-50,290,60", Box2d(160, -50, 290, 60)},
      {L"180,0,-170,10", Box2d(-180, 0, -170, 10)},
      {L"-180,-90,180,90", Box2d(-180, -90, 180, 90)},
      {L"", std::nullopt},
      {L"1,2,3", std::nullopt},
      {L"1,2,3,4,5", std::nullopt},
      {L"1,2,3,4,", std::nullopt},
      {L"1,,3,4", std::nullopt},
      {L"a,2,3,4", std::nullopt},
      {L"nan,2,3,4", std::nullopt},
      {L"0,10,20,10", std::nullopt},
      {L"0,20,20,10", std::nullopt},
      {L"0,-91,20,10", std::nullopt},
      {L"-190,0,20,10", std::nullopt},
      {L"-100,0,350,10", std::nullopt},
  };
  for (const Row& row : rows) EXPECT_EQ(row.expected, ParseWindow(row.text)) << GString(row.text);
}

TEST(Settings, whatIsWrongIsNamed) {
  EXPECT_TRUE(FaultOfWindow(L"1,2,3,4").empty());
  EXPECT_EQ(0u, FaultOfWindow(L"0,20,20,10").find(L"has its south above its north"));
  EXPECT_EQ(0u, FaultOfWindow(L"0,20,20").find(L"is no window"));
  EXPECT_TRUE(FaultOfColors(L"red,blue").empty());
  EXPECT_EQ(0u, FaultOfColors(L"red,nosuch").find(L"'nosuch' is no color"));
  EXPECT_EQ(0u, FaultOfColors(L"red").find(L"'red' is one color"));
}

TEST(Settings, aWindowReadsBackFromItsText) {
  for (const Box2d& window : {Box2d(-180, -90, 180, 90), Box2d(160, -50.1, 290, 1.0 / 3)}) {
    EXPECT_EQ(window, ParseWindow(WindowText(window))) << WindowText(window);
  }
}

TEST(Settings, colorsAndDashesAreRead) {
  const std::vector<Color4b> redToBlue = {Color4b(255, 0, 0), Color4b(0, 10, 255)};
  EXPECT_EQ(redToBlue, ParseColors(L" #FF0000, #000aff "));
  EXPECT_EQ(redToBlue, ParseColors(ColorsText(redToBlue)));
  EXPECT_EQ((std::vector<Color4b>{Color4b::LightGoldenrodYellow, Color4b(1, 2, 3)}),
            ParseColors(L"light goldenrod YELLOW , #010203"));
  for (const wchar_t* const text :
       {L"", L"#ff0000", L"#ff0000,", L"#ff000g,#000000", L"red-ish,#fff"}) {
    EXPECT_FALSE(ParseColors(text)) << GString(text);
  }
  EXPECT_EQ((std::vector<double>{6, 2.5}), ParseDashes(L"6, 2.5"));
  EXPECT_EQ((std::vector<double>{6, 2.5, 1}), ParseDashes(L"6 2.5,1"));
  EXPECT_EQ(std::vector<double>(), ParseDashes(L" Solid"));
  for (const wchar_t* const text : {L"", L"0", L"0,0", L"-1,5", L"nan", L"5,inf", L"5;2"}) {
    EXPECT_FALSE(ParseDashes(text)) << GString(text);
  }
}

TEST(Settings, earlierPlacesWin) {
  Settings settings;
  settings.labels = 5;
  Settings later;
  later.labels = 6;
  later.title = L"later";
  settings.Complete(later);
  EXPECT_EQ(5u, settings.labels);
  EXPECT_EQ(L"later", settings.title);
  View view;
  settings.Apply(view);
  EXPECT_EQ(5u, view.labels);
  EXPECT_EQ(20u, view.strongest);
}

TEST(Settings, theLastWindowAndColorsComeBack) {
  const shr::test::RegistrySandbox sandbox;
  EXPECT_FALSE(ReadLast(sandbox.Key()).window);
  const Box2d window(120, -50, 240, 60);
  Remember(sandbox.Key(), window, DefaultPalette().ramp);
  EXPECT_EQ(window, ReadLast(sandbox.Key()).window);
  EXPECT_EQ(DefaultPalette().ramp, ReadLast(sandbox.Key()).ramp);
  shr::CRegParamList(HKEY_CURRENT_USER, sandbox.Key()).Set(L"Window", L"1,2", true);
  EXPECT_FALSE(ReadLast(sandbox.Key()).window) << "what cannot be read is absent";
}
