// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: alignment and rotation about the anchor; what is kept of measuring and when it is
// forgotten; copies; who may be part of whom. And laws over random texts: a copy measures and draws
// alike, all lengths grow with the height, what is drawn lies in the internal box, rotation turns
// every point, the interface is left as it was.

#include "shared/mathtext/Element.h"

#include <gtest/gtest.h>

#include <random>

#include "shared/diagnostics/ThrowError.h"
#include "shared/mathtext/MultiLineElement.h"
#include "tests/mathtext/MathTextDrawing.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::Describe;
using test::Parsed;

/// Makes texts of pieces that parse wherever they stand.
GString RandomText(std::mt19937& random) {
  static const wchar_t* const PIECES[] = {L"a",
                                          L"Oslo ",
                                          L"\\b ",
                                          L"\\i ",
                                          L"\\ul ",
                                          L"\\strike ",
                                          L"\\plain ",
                                          L"\\fs50 ",
                                          L"\\fs200 ",
                                          L"\\up30 ",
                                          L"\\dn40 ",
                                          L"\\sp1 ",
                                          L"\\sp1 \\up20 x\\rp1 ",
                                          L"\\red ",
                                          L"\\line(80,-30,left)",
                                          L"\\line(-50,120,right)",
                                          L"\\line(100,0,top)",
                                          L"\\line(0,-60,bottom)",
                                          L"\t",
                                          L"{",
                                          L"}",
                                          L"\n",
                                          L"\\ssbeg(0,0,right,baseline)",
                                          L"\\ssbeg(500,200,center,top)",
                                          L"\\ssbeg(100,0,left,bottom)",
                                          L"\\ssend "};
  std::vector<wchar_t> open;
  GString text(L"\\plain ");
  const auto close = [&] {
    text += open.back() == L'{' ? L"}" : L"\\ssend ";
    open.pop_back();
  };
  for (int count = static_cast<int>(random() % 40); count > 0; --count) {
    const GString piece = PIECES[random() % std::size(PIECES)];
    const bool isEnd = piece == L"}" || piece == L"\\ssend ";
    if (isEnd && open.empty()) continue;
    if (isEnd) {
      close();
      continue;
    }
    if (piece == L"\n") {
      // A break may stand in sub-strings and not in braces, wherever those were opened.
      if (std::find(open.begin(), open.end(), L'{') != open.end()) continue;
    }
    if (piece == L"{") open.push_back(L'{');
    if (piece.starts_with(L"\\ssbeg")) open.push_back(L's');
    text += piece;
  }
  while (!open.empty()) close();
  return text;
}

template <typename Check>
void ForRandomTexts(Check check) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    std::mt19937 random(seed);
    const GString text = RandomText(random);
    CMTRecordingTextIF record{MTFixedMetrics()};
    GString error;
    const auto element = Parsed(record, text, &error);
    ASSERT_NE(nullptr, element) << error << " in " << text;
    check(record, *element, text);
    if (testing::Test::HasFailure()) FAIL() << "seed " << seed << ": " << text;
  }
}

void ExpectNear(const Vec2d& expected, const Vec2d& actual) {
  EXPECT_NEAR(expected.x, actual.x, 1e-9 * (1 + std::abs(expected.x)));
  EXPECT_NEAR(expected.y, actual.y, 1e-9 * (1 + std::abs(expected.y)));
}

TEST(MathTextElement, copiesMeasureAndDrawAlike) {
  ForRandomTexts([](CMTRecordingTextIF& record, CMTElement& element, const GString&) {
    const auto before = element.Clone();
    const Box2d box = element.GetInternalBBox(record);
    element.InternalDraw(record, Vec2d(3, 4));
    const std::string drawn = Describe(record);
    for (const auto& copy : {before, element.Clone()}) {
      record.Clear();
      copy->InternalDraw(record, Vec2d(3, 4));
      EXPECT_EQ(drawn, Describe(record));
      EXPECT_EQ(box, copy->GetInternalBBox(record));
      EXPECT_EQ(element.GetExtentUsingTextIF(record), copy->GetExtentUsingTextIF(record));
      EXPECT_EQ(element.GetGenericBBox(record), copy->GetGenericBBox(record));
      EXPECT_EQ(element.GetSimpleText(), copy->GetSimpleText());
      EXPECT_EQ(element.empty(), copy->empty());
    }
  });
}

TEST(MathTextElement, lengthsGrowWithTheHeight) {
  ForRandomTexts([](CMTRecordingTextIF& record, CMTElement& element, const GString& text) {
    CMTContext context(record, 4 * test::DRAWING_HEIGHT);
    std::shared_ptr<CMTMultiLineElement> larger;
    ASSERT_EQ(CMTContext::MT_SUCCESS, context.Parse(text, larger));
    const Box2d box = element.GetInternalBBox(record) * 4.0;
    ExpectNear(box.Min(), larger->GetInternalBBox(record).Min());
    ExpectNear(box.Max(), larger->GetInternalBBox(record).Max());
    EXPECT_DOUBLE_EQ(4 * element.GetExtentUsingTextIF(record),
                     larger->GetExtentUsingTextIF(record));
  });
}

/// Returns the box of what a call draws, as faces have their lines.
Box2d BoxOf(const MTDrawCall& call) {
  Box2d box(call.from, call.from);
  box.ExtendBy(call.to);
  const double height = call.attributes.height;
  const MTFixedMetrics metrics;
  if (call.kind == MTDrawCall::Kind::Line) {
    box.Inflate(0, call.thickness / 2);
  } else {
    box.yMin() -= metrics.line.descent * height;
    box.yMax() += metrics.line.ascent * height;
  }
  return box;
}

TEST(MathTextElement, drawsWithinItsInternalBox) {
  ForRandomTexts([](CMTRecordingTextIF& record, CMTElement& element, const GString&) {
    Box2d box = element.GetInternalBBox(record);
    EXPECT_TRUE(box.Contains(element.GetGenericBBox(record)));
    EXPECT_LE(element.GetExtentUsingTextIF(record), box.xMax());
    box.Inflate(1e-9, 1e-9);
    element.InternalDraw(record, Vec2d::ZERO);
    for (const MTDrawCall& call : record.GetCalls()) {
      EXPECT_TRUE(box.Contains(BoxOf(call))) << Describe(box) << " and " << Describe(BoxOf(call));
    }
  });
}

TEST(MathTextElement, rotationTurnsEveryPointAboutTheAnchor) {
  ForRandomTexts([](CMTRecordingTextIF& record, CMTElement& element, const GString&) {
    const Vec2d anchor(30, -7);
    element.SetAlignment(HAlignment::Center, VAlignment::Top);
    element.DrawUsingTextIF(record, anchor);
    const std::vector<MTDrawCall> level = record.GetCalls();
    const Box2d box = element.GetInternalBBox(record);
    record.Clear();
    record.SetRotation(30);
    record.SetAnchor(Vec2d(1, 2));
    element.DrawUsingTextIF(record, anchor);
    ASSERT_EQ(level.size(), record.GetCalls().size());
    for (std::size_t i = 0; i < level.size(); ++i) {
      const auto turned = [&](const Vec2d& point) {
        const Vec2d arm = point - anchor;
        const double cosine = std::sqrt(0.75), sine = 0.5;
        return anchor + Vec2d(cosine * arm.x - sine * arm.y, sine * arm.x + cosine * arm.y);
      };
      const MTDrawCall& call = record.GetCalls()[i];
      ExpectNear(turned(level[i].from), call.from);
      ExpectNear(turned(level[i].to), call.to);
      EXPECT_EQ(call.kind == MTDrawCall::Kind::Text ? 30 : 0, call.rotation);
    }
    EXPECT_EQ(box, element.GetInternalBBox(record));
    EXPECT_EQ(Vec2d(1, 2), record.GetAnchor());
  });
}

TEST(MathTextElement, leavesTheInterfaceAsItWas) {
  ForRandomTexts([](CMTRecordingTextIF& record, CMTElement& element, const GString&) {
    const auto before = record.ShareAttributes();
    element.GetInternalBBox(record);
    element.InternalDraw(record, Vec2d::ZERO);
    element.DrawUsingTextIF(record, Vec2d::ZERO);
    EXPECT_EQ(before, record.ShareAttributes());
    EXPECT_EQ(0u, record.GetStateDepth());
    EXPECT_EQ(0, record.GetRotation());
  });
}

TEST(MathTextElement, liesAboutItsAnchorByItsAlignment) {
  // The box is 10 wide and reaches from -13 to 8: two lines.
  const struct {
    HAlignment horizontal;
    VAlignment vertical;
    const char* drawn;
  } rows[] = {
      {HAlignment::Left, VAlignment::Baseline, "'ab'100,50 'c'100,39"},
      {HAlignment::Center, VAlignment::Baseline, "'ab'95,50 'c'97.5,39"},
      {HAlignment::Right, VAlignment::Baseline, "'ab'90,50 'c'95,39"},
      {HAlignment::Left, VAlignment::Top, "'ab'100,42 'c'100,31"},
      {HAlignment::Right, VAlignment::Bottom, "'ab'90,63 'c'95,52"},
  };
  CMTRecordingTextIF record{MTFixedMetrics()};
  for (const auto& row : rows) {
    MTAttributes attributes;
    attributes.hAlignment = row.horizontal;
    attributes.vAlignment = row.vertical;
    record.SetAttributes(attributes);
    record.Clear();
    Parsed(record, L"ab\nc")->DrawUsingTextIF(record, Vec2d(100, 50));
    EXPECT_EQ(row.drawn, Describe(record));
  }
  record.Clear();
  record.SetAttributes(MTAttributes());
  record.SetRotation(90);
  Parsed(record, L"\\ul ab\\line(0,-100,right)")->DrawUsingTextIF(record, Vec2d(1, 2));
  EXPECT_EQ("'ab'1,2@90 [2,2>2,12] [1,12>11,12]", Describe(record));
}

TEST(MathTextElement, segmentsAreInTheInternalBoxOnly) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  const auto element = Parsed(record, L"ab\\line(-50,200,left)");
  EXPECT_EQ("0,-2 10,8", Describe(element->GetGenericBBox(record)));
  EXPECT_EQ("-5.25,-2 10,20.25", Describe(element->GetInternalBBox(record)));
  element->DrawUsingTextIF(record, Vec2d::ZERO);
  EXPECT_EQ("'ab'5.25,0 [5.25,0>0.25,20]", Describe(record));
}

TEST(MathTextElement, emptyLinesAreAsHighAsTheirAttributes) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  const CMTLineElement line(record);
  EXPECT_EQ("0,-2.4 0,9.6", Describe(line.CalcEmptyLineInternalBBox(record)));
  CMTMultiLineElement none(record);
  EXPECT_TRUE(none.GetInternalBBox(record).IsDegenerate());
  none.DrawUsingTextIF(record, Vec2d::ZERO);
  EXPECT_EQ("", Describe(record));
}

TEST(MathTextElement, changesReachAllThatHoldTheElement) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  const auto element = Parsed(record, L"a\\ssbeg(0,0,left,baseline)b\\ssend\n");
  const auto run = element->GetLine(0)->GetElement(1);
  const auto string = run->GetMLElement()->GetLine(0)->GetElement(0)->GetStringElement();
  const struct {
    const char* name;
    std::function<void()> change;
    const char* box;
  } rows[] = {
      {"nothing", [] {}, "0,-13 10,8"},
      {"text", [&] { string->SetText(L"bcd"); }, "0,-13 20,8"},
      {"segment", [&] { run->AssociateLineSegment(Side::Left, Vec2d(-10, 0)); }, "-5.25,-13 20,8"},
      {"attributes",
       [&] {
         MTAttributes attributes = string->GetAttributes();
         attributes.height = 20;
         record.SetAttributes(attributes);
         string->GetAttributes(record);
         record.SetAttributes(MTAttributes());
       },
       "-5.25,-15 35,16"},
      {"field", [&] { run->GetMLElement()->SetField(50, 0); }, "-5.25,-15 55,16"},
      {"no sub-string", [&] { run->clear(); }, "0,-13 5,8"},
      {"a line more",
       [&] { element->AppendLine(record, std::make_shared<CMTLineElement>(record)); },
       "0,-26.2 5,8"},
      {"no line", [&] { element->GetLine(0)->clear(); }, "0,-26.2 0,8"},
  };
  for (const auto& row : rows) {
    row.change();
    EXPECT_EQ(row.box, Describe(element->GetInternalBBox(record))) << row.name;
    EXPECT_TRUE(element->IsGBBoxValid() && element->IsExtentValid()) << row.name;
  }
  element->clear();
  EXPECT_FALSE(element->IsGBBoxValid() || element->IsExtentValid());
  EXPECT_TRUE(element->empty());
}

TEST(MathTextElement, keepsWhatItIsTold) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  CMTStringElement string(record, L"abc");
  EXPECT_FALSE(string.IsExtentValid());
  string.SetExtent(7);
  string.SetGBBox(Box2d(0, -1, 7, 1));
  EXPECT_EQ(7, string.GetExtentUsingTextIF(record));
  EXPECT_EQ(Box2d(0, -1, 7, 1), string.GetGenericBBox(record));
  string.InvalidateTextMetrics();
  EXPECT_EQ(18, string.GetExtentUsingTextIF(record));
  EXPECT_EQ(12, string.GetHeight());
}

TEST(MathTextElement, isPartOfOneOtherAtMost) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  const auto string = std::make_shared<CMTStringElement>(record, L"a");
  const auto run = std::make_shared<CMTAssocStringElement>(string);
  const auto text = std::make_shared<CMTMultiLineElement>(record);
  const auto line = std::make_shared<CMTLineElement>(record);
  line->AddAssocStringElement(run, Vec2d::ZERO);
  text->AppendLine(record, line);
  const std::function<void()> refused[] = {
      [&] { CMTAssocStringElement{string}; },
      [&] { CMTAssocStringElement{std::shared_ptr<CMTStringElement>()}; },
      [&] { CMTLineElement(record).AddAssocStringElement(run, Vec2d::ZERO); },
      [&] { CMTLineElement(record).AddAssocStringElement(nullptr, Vec2d::ZERO); },
      [&] { CMTLineElement(record).AssociateMLElement(record, nullptr, Vec2d::ZERO); },
      [&] { CMTLineElement(record).AssociateLineSegment(Side::Left, Vec2d::ONE); },
      [&] { CMTMultiLineElement(record).AppendLine(record, line); },
      [&] { CMTMultiLineElement(record).AppendLine(record, nullptr); },
      [&] { run->AssociateMLElement(text, Vec2d::ZERO); },
      [&] { run->AssociateMLElement(nullptr, Vec2d::ZERO); },
      [&] { text->SetField(-1, 0); },
      [&] { text->SetField(0, HUGE_VAL); },
  };
  for (const auto& action : refused) EXPECT_EQ(INVALID_PARAMETER_TEXT, test::Failure(action));
  EXPECT_EQ(L"a", text->GetSimpleText());
  text->clear();
  CMTMultiLineElement(record).AppendLine(record, line);
  CMTMultiLineElement(record).AppendLine(record, line);  // the one of before is gone
}

}  // namespace
}  // namespace shr
