// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Every kind of plot x hostile texts, no data, values without a place, equal values, ranges from
// the smallest to the largest numbers: sound XML, places inside the picture, what is left out
// counted.

#include "shared/plots/Plot.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/plots/CategoryPlots.h"
#include "shared/plots/HeatMap.h"
#include "shared/plots/PlotPalette.h"
#include "shared/plots/StatisticalPlots.h"
#include "tests/plots/XmlCheck.h"

using namespace shr;

namespace {

constexpr double NAN_VALUE = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double LARGEST = std::numeric_limits<double>::max();
constexpr double SMALLEST = std::numeric_limits<double>::denorm_min();

using Values = std::vector<double>;

/// A way to draw a sample, whose texts are all `text`.
struct Kind {
  const char* name;
  std::function<std::string(const Values&, const GString&)> draw;
};

PlotOptions OptionsOf(const GString& text, ScaleKind x = ScaleKind::Linear,
                      ScaleKind y = ScaleKind::Linear) {
  return {
      .title = text, .description = text, .xLabel = text, .yLabel = text, .xScale = x, .yScale = y};
}

Values Counted(std::size_t count) {
  Values values;
  for (std::size_t i = 0; i < count; ++i) values.push_back(static_cast<double>(i));
  return values;
}

std::string DrawSeries(const Values& values, const PlotOptions& options, const GString& text) {
  Plot plot(options);
  const Values index = Counted(values.size());
  plot.AddPoints(values, index, text);
  plot.AddLine(values, index, text);
  plot.AddSteps(index, values, text);
  plot.AddSlope(2, 1, text);
  std::vector<Vec2d> from;
  std::vector<Vec2d> to;
  for (const double value : values) {
    from.emplace_back(value, value);
    to.emplace_back(value / 2, value);
  }
  plot.AddArrows(from, to, text);
  return plot.Draw();
}

const Kind KINDS[] = {
    {"series", [](const Values& v, const GString& t) { return DrawSeries(v, OptionsOf(t), t); }},
    {"logarithmic",
     [](const Values& v, const GString& t) {
       return DrawSeries(v, OptionsOf(t, ScaleKind::Log, ScaleKind::Log), t);
     }},
    {"time",
     [](const Values& v, const GString& t) {
       return DrawSeries(v, OptionsOf(t, ScaleKind::Time, ScaleKind::Time), t);
     }},
    {"plane",
     [](const Values& v, const GString& t) {
       PlotOptions options = OptionsOf(t);
       options.unitRatio = 1;
       return DrawSeries(v, options, t);
     }},
    {"histogram", [](const Values& v, const GString& t) { return DrawHistogram(v, OptionsOf(t)); }},
    {"histogram of logarithms",
     [](const Values& v, const GString& t) {
       return DrawHistogram(v, OptionsOf(t, ScaleKind::Log));
     }},
    {"distribution",
     [](const Values& v, const GString& t) { return DrawDistribution(v, OptionsOf(t)); }},
    {"boxes",
     [](const Values& v, const GString& t) {
       const BoxSummary boxes[] = {SummarizeBox(t, v), SummarizeBox(t, {})};
       return DrawBoxPlots(boxes, {.title = t, .description = t, .xLabel = t});
     }},
    {"bars",
     [](const Values& v, const GString& t) {
       std::vector<CategoryBar> bars;
       for (const double value : v) bars.push_back({t, value});
       return DrawBarChart(bars, {.title = t, .description = t});
     }},
    {"heat map",
     [](const Values& v, const GString& t) {
       return DrawHeatMap(v, {.title = t,
                              .description = t,
                              .rows = std::vector<GString>(v.size(), t),
                              .columns = {t}});
     }},
    {"matrix",
     [](const Values& v, const GString& t) {
       const Values other(v.rbegin(), v.rend());
       const NamedSample samples[] = {{t, v}, {t, other}, {t, v}};
       return DrawScatterMatrix(samples, OptionsOf(t));
     }},
};

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

/// Expects a sound document whose numbers were all written as finite ones.
void CheckSound(const std::string& svg) {
  EXPECT_EQ("", test::FaultOfXml(svg));
  EXPECT_TRUE(Contains(svg, "role=\"img\" aria-labelledby=\"title desc\""));
  EXPECT_TRUE(Contains(svg, "prefers-color-scheme:dark"));
  for (const char* const fault : {"nan", "inf", "1000000000"}) EXPECT_FALSE(Contains(svg, fault));
}

}  // namespace

TEST(XmlCheck, findsFaults) {
  for (const char* const bad :
       {"", "<a>", "<a/><b/>", "<a></b>", "<a>&</a>", "<a>&x;</a>", "<a x=1/>", "<a x=\"<\"/>",
        "<a x=\"1\"y/>", "<a>]]></a>", "<a>\x01</a>", "<a>\xFF</a>", "text<a/>", "</a>"}) {
    EXPECT_NE("", test::FaultOfXml(bad)) << bad;
  }
  EXPECT_EQ("", test::FaultOfXml("<a x=\"1\" b-c=\"&lt;\">\n<b/>&amp;</a>\n"));
}

TEST(Plots, areSoundWhateverTheirTextsHold) {
  const GString texts[] = {
      L"",
      L"]]></title><script>alert(\"1\")</script>&amp;&#0;--><!--",
      GString(std::wstring(L"\0\x1\x8\x1F\x7F\xFFFE\xFFFF", 7)),
      GString(std::wstring(5000, L'W')),
      GString(std::wstring(3, static_cast<wchar_t>(0xD800))),
      L"\x5730\x9707 \x0633\x0644\x0627\x0645 e\x0301\n\t",
      L"{\\b x \\ssbeg(0,0,left,top)y",
      L"\\b\\color(red)\\fs10000 " + GString(std::wstring(400, L'M')),
  };
  for (const Kind& kind : KINDS) {
    for (const GString& text : texts) {
      SCOPED_TRACE(std::string(kind.name) + ": " + text.substr(0, 40).ToUtf8());
      CheckSound(kind.draw({1, 2, 3, NAN_VALUE}, text));
      CheckSound(kind.draw({}, text));
    }
  }
}

TEST(Plots, textsAreMathText) {
  const Kind& kind = KINDS[0];
  const std::string marked = kind.draw({1, 2, 3}, L"{\\f\"Shared Stroke\"a}\\a66 {\\b c}\nd");
  EXPECT_NE(std::string::npos, marked.find("<title id=\"title\">aBc d</title>"));
  EXPECT_NE(std::string::npos, marked.find("font-weight=\"700\""));
  EXPECT_NE(std::string::npos, marked.find("<use "));
  // What does not parse, and braces in text without markup, stand for themselves.
  for (const wchar_t* const text : {L"\\bogus", L"{a}"}) {
    const std::string plain = kind.draw({1, 2, 3}, text);
    EXPECT_NE(std::string::npos, plain.find(">" + GString(text).ToUtf8() + "</text>")) << text;
  }
}

TEST(Plots, outlinesHoldNoText) {
  const Values values{1, 2, 3};
  PlotOptions options = OptionsOf(L"Title");
  options.textMode = SvgTextMode::Outlines;
  const NamedSample sample{L"Name", values};
  const BoxSummary box = SummarizeBox(L"Name", values);
  const CategoryBar bar{L"Name", 2};
  const std::string plots[] = {
      DrawHistogram(values, options), DrawScatterMatrix(std::span(&sample, 1), options),
      DrawHeatMap(std::span(values).first(1), {.title = L"Title",
                                               .rows = {L"Name"},
                                               .columns = {L"Name"},
                                               .textMode = SvgTextMode::Outlines}),
      DrawBoxPlots(std::span(&box, 1), {.title = L"Title", .textMode = SvgTextMode::Outlines}),
      DrawBarChart(std::span(&bar, 1), {.title = L"Title", .textMode = SvgTextMode::Outlines})};
  for (const std::string& plot : plots) {
    CheckSound(plot);
    EXPECT_EQ(std::string::npos, plot.find("<text")) << plot.substr(0, 200);
    EXPECT_NE(std::string::npos, plot.find("aria-label=\"Title\""));
  }
}

TEST(Plots, areSoundWhateverTheirValuesAre) {
  const std::pair<const char*, Values> rows[] = {
      {"one", {5}},
      {"equal", {7, 7, 7}},
      {"zeros", {0, 0}},
      {"neighbours", {1, std::nextafter(1, 2)}},
      {"the whole range", {-LARGEST, LARGEST}},
      {"the largest", {LARGEST, LARGEST, LARGEST / 2}},
      {"equal and the largest", {LARGEST, LARGEST}},
      {"equal and the smallest", {-SMALLEST, -SMALLEST}},
      {"the smallest", {SMALLEST, 2 * SMALLEST, 3 * SMALLEST}},
      {"all sizes", {1e-300, 1e-200, 1e-100, 1, 1e100, 1e200, 1e300}},
      {"no numbers", {NAN_VALUE, INFINITE, -INFINITE}},
      {"some", {NAN_VALUE, 1, INFINITE, 2, -INFINITE, 3}},
      {"negative", {-5, -4, -1}},
      {"an outlier", {1, 2, 3, 1e18}},
  };
  for (const Kind& kind : KINDS) {
    for (const auto& [name, values] : rows) {
      SCOPED_TRACE(std::string(kind.name) + ": " + name);
      CheckSound(kind.draw(values, L"x"));
    }
  }
}

TEST(Plots, sayThatThereAreNoData) {
  for (const Kind& kind : KINDS) EXPECT_TRUE(Contains(kind.draw({}, L"x"), "No data")) << kind.name;
}

TEST(Plots, countWhatTheyLeaveOut) {
  const Values values{1, NAN_VALUE, 10, INFINITE, -1};
  EXPECT_TRUE(Contains(DrawHistogram(values, OptionsOf(L"x")), ">2 values are left out"));
  EXPECT_TRUE(Contains(DrawDistribution(values, OptionsOf(L"x", ScaleKind::Log)),
                       ">3 values are left out"));
  const BoxSummary box = SummarizeBox(L"x", values);
  EXPECT_EQ(2u, box.leftOut);
  EXPECT_TRUE(
      Contains(DrawBoxPlots(std::span(&box, 1), {.title = L"x"}), ">2 values are left out"));
  Plot plot(OptionsOf(L"x"));
  plot.AddPoints(values, values);
  EXPECT_TRUE(Contains(plot.Draw(), ">2 values are left out"));
  EXPECT_FALSE(Contains(DrawHistogram(Values{1, 2}, OptionsOf(L"x")), "left out"));
}

TEST(Plots, manyPointsAreDrawnOncePerPixelAndLongLinesThinned) {
  std::mt19937 random(5);
  std::normal_distribution<double> normal;
  Values x;
  Values y;
  for (int i = 0; i < 200000; ++i) {
    x.push_back(i);
    y.push_back(normal(random));
  }
  Plot line(OptionsOf(L"x"));
  line.AddLine(x, y);
  EXPECT_LT(line.Draw().size(), 60000u);
  Plot dots(OptionsOf(L"x"));
  dots.AddPoints(Values(200000, 3.0), y);
  EXPECT_LT(dots.Draw().size(), 20000u);
}

TEST(Plots, legendsNameSeriesWhenThereAreTwo) {
  const Values values{1, 2};
  Plot plot(OptionsOf(L"x"));
  plot.AddLine(values, values, L"first name");
  EXPECT_FALSE(Contains(plot.Draw(), "first name"));
  plot.AddPoints(values, values, L"second name");
  EXPECT_TRUE(Contains(plot.Draw(), "first name"));
  EXPECT_TRUE(Contains(plot.Draw(), "second name"));
  EXPECT_THROW(plot.AddLine(values, Values{1}), Exception);
  EXPECT_THROW(plot.AddBars(values, values), Exception);
  EXPECT_THROW(DrawHeatMap(values, {.rows = {L"x"}, .columns = {L"y"}}), Exception);
}

TEST(Bins, holdEveryValueOnceBetweenRoundEdges) {
  std::mt19937 random(11);
  std::lognormal_distribution<double> skewed(0, 2);
  for (const std::size_t count : {1u, 2u, 10u, 1000u, 50000u}) {
    Values values;
    for (std::size_t i = 0; i < count; ++i) values.push_back(skewed(random));
    for (const ScaleKind scale : {ScaleKind::Linear, ScaleKind::Log, ScaleKind::Time}) {
      const Bins bins = MakeBins(values, scale);
      ASSERT_EQ(bins.edges.size(), bins.counts.size() + 1);
      EXPECT_LE(bins.counts.size(), 101u);
      EXPECT_TRUE(std::is_sorted(bins.edges.begin(), bins.edges.end()));
      double total = 0;
      for (std::size_t i = 0; i < bins.counts.size(); ++i) {
        total += bins.counts[i];
        // By another route: the values one by one.
        const auto inside = std::count_if(values.begin(), values.end(), [&](double value) {
          const bool isLast = i + 1 == bins.counts.size();
          return value >= bins.edges[i] && (value < bins.edges[i + 1] || isLast);
        });
        EXPECT_EQ(static_cast<double>(inside), bins.counts[i]);
      }
      EXPECT_EQ(static_cast<double>(count), total);
    }
  }
  EXPECT_EQ((Values{0, 1, 2, 3}), MakeBins(Values{0, 1, 1, 2, 2, 3}).edges);
  EXPECT_TRUE(MakeBins(Values{NAN_VALUE}).counts.empty());
}

TEST(BoxSummary, hasQuartilesWhiskersAndOutliers) {
  const BoxSummary box = SummarizeBox(L"x", Values{30, 1, 2, 3, 4, 5, 6, 7, 8, -20});
  EXPECT_EQ(2, box.lowQuartile);
  EXPECT_EQ(4.5, box.median);
  EXPECT_EQ(6, box.highQuartile);
  EXPECT_EQ(1, box.lowWhisker);
  EXPECT_EQ(8, box.highWhisker);
  EXPECT_EQ((Values{-20, 30}), box.outliers);
  EXPECT_EQ(3, SummarizeBox(L"x", Values{3}).median);
  EXPECT_TRUE(std::isnan(SummarizeBox(L"x", {}).median));
}

TEST(LineFit, findsLinesAndSaysWhereThereIsNone) {
  const Values x{1, 2, 3, 4, NAN_VALUE, 9};
  const Values y{3, 5, 7, 9, 1, INFINITE};
  const LineFit fit = FitLine(x, y);
  EXPECT_EQ(4u, fit.count);
  EXPECT_EQ(2, fit.slope);
  EXPECT_EQ(1, fit.intercept);
  EXPECT_NEAR(1, fit.correlation, 1e-15);
  EXPECT_TRUE(std::isnan(FitLine(Values{2, 2}, Values{1, 3}).slope));
  EXPECT_EQ(0, FitLine(Values{1, 2}, Values{3, 3}).slope);
  EXPECT_TRUE(std::isnan(FitLine(Values{1, 2}, Values{3, 3}).correlation));
  EXPECT_TRUE(std::isnan(FitLine(Values{1}, Values{3}).slope));
}

TEST(PlotPalette, colorsCanBeToldApart) {
  for (std::size_t i = 0; i < SERIES_COLORS; ++i) {
    EXPECT_EQ(SeriesColor(i), SeriesColor(i + SERIES_COLORS));
    for (std::size_t j = 0; j < i; ++j) {
      EXPECT_NE(SeriesColor(i), SeriesColor(j));
      EXPECT_NE(SeriesColor(i, true), SeriesColor(j, true));
    }
  }
  double last = -1;
  for (double share = 0; share <= 1; share += 1.0 / 64) {
    EXPECT_GT(SequentialColor(share).Intensity(), last) << share;
    last = SequentialColor(share).Intensity();
  }
  EXPECT_EQ(SequentialColor(0), SequentialColor(-5));
  EXPECT_EQ(DivergingColor(1), DivergingColor(INFINITE));
  EXPECT_EQ(SequentialColor(NAN_VALUE), DivergingColor(NAN_VALUE));
  EXPECT_FALSE(WantsDarkText(SequentialColor(0)));
  EXPECT_TRUE(WantsDarkText(SequentialColor(1)));
}
