// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: attributes and their stack; rotation by quarters and others; fixed metrics; metrics of
// faces beside those of the faces themselves, and of the stroked face, which is everywhere.

#include "shared/mathtext/TextIF.h"

#include <gtest/gtest.h>

#include <limits>

#include "shared/diagnostics/ThrowError.h"
#include "shared/fonts/SystemFaceInfo.h"
#include "tests/mathtext/MathTextDrawing.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

TEST(MathTextIF, keepsAStackOfAttributes) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  MTAttributes attributes;
  attributes.height = 20;
  record.PreserveState();
  record.SetAttributes(attributes);
  record.PreserveState();
  attributes.height = 30;
  record.SetAttributes(attributes);
  {
    const MTStateScope scope(record);
    record.PreserveState();
    record.SetAttributes(MTAttributes());
  }
  EXPECT_EQ(30, record.GetAttributes().height);
  EXPECT_EQ(2u, record.GetStateDepth());
  record.RestoreState();
  EXPECT_EQ(20, record.GetAttributes().height);
  record.RestoreState();
  EXPECT_EQ(12, record.GetAttributes().height);
  EXPECT_EQ(L"[TextIF]", test::Failure([&] { record.RestoreState(); }));
  for (const double height : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
    attributes.height = height;
    EXPECT_EQ(INVALID_PARAMETER_TEXT, test::Failure([&] { record.SetAttributes(attributes); }));
  }
  EXPECT_EQ(INVALID_PARAMETER_TEXT,
            test::Failure([&] { record.SetAttributes(std::shared_ptr<const MTAttributes>()); }));
  EXPECT_EQ(12, record.GetAttributes().height);
}

TEST(MathTextIF, turnsPointsAboutTheAnchor) {
  CMTFaceTextIF measure;
  measure.SetAnchor(Vec2d(1, 1));
  const struct {
    double degrees;
    Vec2d turned;  // of (3, 2)
  } rows[] = {{0, {3, 2}},    {90, {0, 3}},  {180, {-1, 0}},  {270, {2, -1}},
              {-90, {2, -1}}, {360, {3, 2}}, {-450, {2, -1}}, {36000000090, {0, 3}}};
  for (const auto& row : rows) {
    measure.SetRotation(row.degrees);
    EXPECT_EQ(row.turned, measure.Turn(Vec2d(3, 2))) << row.degrees;
    EXPECT_EQ(row.degrees, measure.GetRotation());
  }
  measure.SetRotation(30);
  EXPECT_NEAR(1 + std::sqrt(3.0) - 0.5, measure.Turn(Vec2d(3, 2)).x, 1e-12);
  EXPECT_EQ(INVALID_PARAMETER_TEXT, test::Failure([&] { measure.SetRotation(std::nan("")); }));
}

TEST(MathTextIF, fixedMetricsTakeEveryCharacterAlike) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  EXPECT_EQ(18, record.GetTextExtent(L"abc"));
  EXPECT_EQ(6, record.GetTextExtent(GString::FromUtf8("\xF0\x9F\x8C\x8D")));
  EXPECT_EQ(0, record.GetTextExtent(L"\t\n"));
  EXPECT_EQ(6, record.GetAverageCharWidth());
  EXPECT_EQ("6,-2.4 18,9.6", test::Describe(record.GetTextBounds(L" ab  ")));
  EXPECT_TRUE(record.GetTextBounds(L"  ").IsDegenerate());
}

TEST(MathTextIF, facesMeasureTimesTheHeight) {
  for (const wchar_t* const name : {L"", L"Arial", L"Stroke"}) {
    CMTFaceTextIF measure;
    MTAttributes attributes;
    attributes.face.name = name;
    attributes.height = 40;
    measure.SetAttributes(attributes);
    const GString text = L"Depth \u00B5m";
    EXPECT_DOUBLE_EQ(40 * MeasureText(text, attributes.face), measure.GetTextExtent(text));
    EXPECT_GT(measure.GetTextExtent(text), 40);
    EXPECT_TRUE(measure.GetTextBounds(L" ").IsDegenerate());
    EXPECT_EQ(MeasureTextBounds(text, attributes.face) * 40.0, measure.GetTextBounds(text));
    const TextLayout layout = LayoutText(L"x", attributes.face);
    const CFaceInfo& face = *layout.runs.at(0).face;
    const MTLineMetrics metrics = measure.GetLineMetrics();
    EXPECT_DOUBLE_EQ(40 * face.GetOTM().ascent, metrics.ascent);
    EXPECT_DOUBLE_EQ(40 * face.GetOTM().descent, metrics.descent);
    EXPECT_DOUBLE_EQ(40 * face.CalcEmUnderscoreLine(L"x").begin.y, metrics.underlinePosition);
    EXPECT_DOUBLE_EQ(40 * face.CalcEmStrikeoutLine(L"x").thickness, metrics.strikeoutThickness);
    EXPECT_DOUBLE_EQ(40 * face.GetOTM().averageWidth, measure.GetAverageCharWidth());
  }
}

TEST(MathTextIF, remembersTextsAsTheyAreMeasured) {
  const char* const texts[] = {
      "Oslo", "", "\xE4\xB8\x8A\xE6\xB5\xB7",
      "\xD8\xA7\xD9\x84\xD9\x82\xD8\xA7\xD9\x87\xD8\xB1\xD8\xA9 Cairo",
      "\xE0\xA4\xB9\xE0\xA4\xBF\xE0\xA4\xA8\xE0\xA5\x8D\xE0\xA4\xA6\xE0\xA5\x80"};
  CMTFaceTextIF measure;
  for (int round = 0; round < 3; ++round) {
    for (const wchar_t* const name : {L"Arial", L"Times New Roman"}) {
      MTAttributes attributes;
      attributes.face.name = name;
      measure.SetAttributes(attributes);
      for (const char* const utf8 : texts) {
        GString text = GString::FromUtf8(utf8);
        EXPECT_DOUBLE_EQ(12 * MeasureText(text, attributes.face), measure.GetTextExtent(text));
        for (int i = 0; i < 30; ++i) text += text.substr(0, 4);
        EXPECT_DOUBLE_EQ(12 * MeasureText(text, attributes.face), measure.GetTextExtent(text));
      }
    }
    CSystemFaceInfo::Instance().Refresh();
  }
}

TEST(MathTextIF, remembersMoreFacesThanOne) {
  CMTFaceTextIF measure;
  const auto ascent = [&](long weight, double height) {
    MTAttributes attributes;
    attributes.face.weight = weight;
    attributes.height = height;
    measure.SetAttributes(attributes);
    return measure.GetLineMetrics().ascent;
  };
  std::vector<double> first;
  for (long weight = 100; weight <= 1000; weight += 50) first.push_back(ascent(weight, 10));
  for (std::size_t i = 0; i < first.size(); ++i) {
    EXPECT_DOUBLE_EQ(2 * first[i], ascent(100 + 50 * static_cast<long>(i), 20));
  }
}

}  // namespace
}  // namespace shr
