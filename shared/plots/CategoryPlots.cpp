// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/CategoryPlots.h"

#include <algorithm>
#include <cmath>

#include "shared/plots/NumberText.h"
#include "shared/plots/PlotCanvas.h"
#include "shared/plots/PlotMarks.h"
#include "shared/plots/TextWidth.h"

namespace shr {

namespace {

constexpr double BAR_ROW = 24;
constexpr double BOX_ROW = 40;
constexpr double X_AXIS_HEIGHT = 46;
constexpr double NOTE_HEIGHT = 16;
constexpr double WHISKER_REACH = 1.5;
constexpr double FREE_SHARE = 0.03;

double Top(const CategoryOptions& options) {
  return options.title.empty() ? MARGIN : TITLE_HEIGHT;
}

/// Returns the width that the names take, at most 40 % of the picture.
template <class Row>
double NamesWidth(std::span<const Row> rows, double width, SvgTextMode mode) {
  double widest = 0;
  for (const Row& row : rows) {
    const GString fitted = Fitted(row.name, LABEL_SIZE, width * 0.4, mode);
    widest = std::max(widest, PlotTextWidth(fitted, LABEL_SIZE, mode));
  }
  return widest;
}

bool HasBar(const CategoryBar& bar) {
  return std::isfinite(bar.value) && bar.value >= 0;
}

/// Returns the name and value of the first bars, for those who do not see.
GString DescribeBars(std::span<const CategoryBar> bars) {
  constexpr std::size_t MOST = 5;
  GString text;
  for (const CategoryBar& bar : bars.first(std::min(bars.size(), MOST))) {
    text += (text.empty() ? L" " : L", ") + PlainPlotText(bar.name) + L" " +
            SignificantText(bar.value, 6);
  }
  if (bars.empty()) return L" No data.";
  return text + (bars.size() > MOST ? L" and others." : L".");
}

GString DescribeBox(const BoxSummary& box) {
  if (box.count == 0) return L" " + PlainPlotText(box.name) + L": no data.";
  return L" " + PlainPlotText(box.name) + L": median " + SignificantText(box.median, 4) +
         L", quartiles " + SignificantText(box.lowQuartile, 4) + L" and " +
         SignificantText(box.highQuartile, 4) + L", " +
         GString(std::to_wstring(box.outliers.size())) + L" outliers.";
}

/// The axis that shows all boxes.
PlotAxis AxisOf(std::span<const BoxSummary> boxes, ScaleKind kind) {
  std::vector<double> ends;
  for (const BoxSummary& box : boxes) {
    ends.push_back(box.lowWhisker);
    ends.push_back(box.highWhisker);
    if (box.outliers.empty()) continue;
    ends.push_back(box.outliers.front());
    ends.push_back(box.outliers.back());
  }
  return PlotAxis::Around(kind, ends, FREE_SHARE);
}

void DrawBox(PlotCanvas& canvas, const PlotFrame& frame, const BoxSummary& box, double middle) {
  constexpr double HALF = 11;
  const PlotAxis& axis = frame.XAxis();
  for (const double end : {box.lowWhisker, box.lowQuartile, box.highQuartile, box.highWhisker}) {
    if (!axis.CanShow(end)) return;
  }
  const double left = frame.X(box.lowQuartile);
  const double right = frame.X(box.highQuartile);
  SvgPathBuilder whiskers;
  for (const auto& [end, quartile] :
       {std::pair(frame.X(box.lowWhisker), left), std::pair(frame.X(box.highWhisker), right)}) {
    whiskers.MoveTo(Vec2d(quartile, middle));
    whiskers.LineTo(Vec2d(end, middle));
    whiskers.MoveTo(Vec2d(end, middle - HALF / 2));
    whiskers.LineTo(Vec2d(end, middle + HALF / 2));
  }
  SvgWriter& svg = canvas.Svg();
  svg.Begin("g").Attribute("class", "s0");
  svg.Begin("path").Attribute("class", "line").Attribute("d", whiskers.Data()).End();
  svg.BeginRectangle(Box2d(left, middle - HALF, right, middle + HALF));
  svg.Attribute("class", "soft").End();
  SvgPathBuilder median;
  median.MoveTo(Vec2d(frame.X(box.median), middle - HALF));
  median.LineTo(Vec2d(frame.X(box.median), middle + HALF));
  svg.Begin("path").Attribute("class", "line s1").Attribute("d", median.Data()).End();
  svg.End();
}

}  // namespace

std::string DrawBarChart(std::span<const CategoryBar> bars, const CategoryOptions& options) {
  const double top = Top(options);
  const double height = top + BAR_ROW * std::max(2.0, static_cast<double>(bars.size())) + MARGIN;
  PlotCanvas canvas(options.width, height, options.textMode);
  canvas.Begin(options.title, (options.description + DescribeBars(bars)).Trim());
  if (bars.empty()) canvas.NoData(Box2d(0, top, canvas.Width(), height));
  double largest = 0;
  double widestNumber = 0;
  for (const CategoryBar& bar : bars) {
    if (HasBar(bar)) largest = std::max(largest, bar.value);
    const GString number = SignificantText(bar.value, 6);
    widestNumber = std::max(widestNumber, EstimateTextWidth(number, TICK_SIZE));
  }
  const double left = MARGIN + NamesWidth(bars, canvas.Width(), options.textMode) + 8;
  const double space = std::max(10.0, canvas.Width() - MARGIN - widestNumber - 8 - left);
  double y = top;
  for (const CategoryBar& bar : bars) {
    const double base = y + BAR_ROW / 2 + LABEL_SIZE * 0.36;
    canvas.Text(Vec2d(left - 8, base), "end", "",
                Fitted(bar.name, LABEL_SIZE, canvas.Width() * 0.4, options.textMode));
    const bool hasBar = HasBar(bar);
    const double length = hasBar && largest > 0 ? bar.value / largest * space : 0;
    if (hasBar) {
      canvas.Svg().BeginRectangle(Box2d(left, y + 3, left + length, y + BAR_ROW - 3));
      canvas.Svg().Attribute("class", "fill s0").End();
    }
    canvas.Text(Vec2d(left + length + 6, base), "start", "tick",
                hasBar ? SignificantText(bar.value, 6) : GString(L"\u2013"));
    y += BAR_ROW;
  }
  return canvas.Finish();
}

BoxSummary SummarizeBox(const GString& name, std::span<const double> values) {
  BoxSummary box;
  box.name = name;
  std::vector<double> sorted;
  sorted.reserve(values.size());
  std::copy_if(values.begin(), values.end(), std::back_inserter(sorted),
               [](double value) { return std::isfinite(value); });
  box.count = sorted.size();
  box.leftOut = values.size() - sorted.size();
  if (sorted.empty()) return box;
  std::sort(sorted.begin(), sorted.end());
  const std::size_t last = sorted.size() - 1;
  box.lowQuartile = sorted[last / 4];
  box.highQuartile = sorted[3 * last / 4];
  box.median = sorted[last / 2] / 2 + sorted[sorted.size() / 2] / 2;
  // An infinite reach is one that nothing lies beyond.
  const double reach = WHISKER_REACH * (box.highQuartile - box.lowQuartile);
  const auto low = std::lower_bound(sorted.begin(), sorted.end(), box.lowQuartile - reach);
  const auto high = std::upper_bound(sorted.begin(), sorted.end(), box.highQuartile + reach);
  box.lowWhisker = *low;
  box.highWhisker = *(high - 1);
  box.outliers.assign(sorted.begin(), low);
  box.outliers.insert(box.outliers.end(), high, sorted.end());
  return box;
}

std::string DrawBoxPlots(std::span<const BoxSummary> boxes, const CategoryOptions& options) {
  const double top = Top(options);
  std::size_t leftOut = 0;
  std::size_t count = 0;
  GString description = options.description;
  for (const BoxSummary& box : boxes) {
    leftOut += box.leftOut;
    count += box.count;
    description += DescribeBox(box);
  }
  const double bottom = top + BOX_ROW * std::max(1.0, static_cast<double>(boxes.size()));
  const GString note = (options.note + L" " + LeftOutNote(leftOut)).Trim();
  PlotCanvas canvas(options.width, bottom + X_AXIS_HEIGHT + (note.empty() ? 0 : NOTE_HEIGHT),
                    options.textMode);
  canvas.Begin(options.title,
               count == 0 ? (description + L" No data.").Trim() : description.Trim());
  const double left =
      MARGIN + std::max(10.0, NamesWidth(boxes, canvas.Width(), options.textMode) + 8);
  const PlotFrame frame(AxisOf(boxes, options.xScale), PlotAxis(),
                        Box2d(left, top, canvas.Width() - MARGIN - 6, bottom));
  if (count > 0) {
    frame.DrawXAxis(canvas, options.xLabel);
  } else {
    canvas.NoData(frame.Area());
  }
  double middle = top + BOX_ROW / 2;
  for (const BoxSummary& box : boxes) {
    canvas.Text(Vec2d(left - 8, middle + LABEL_SIZE * 0.36), "end", "",
                Fitted(box.name, LABEL_SIZE, canvas.Width() * 0.4, options.textMode));
    if (box.count > 0) DrawBox(canvas, frame, box, middle);
    const PlotFrame row(frame.XAxis(), PlotAxis(),
                        Box2d(left, middle - 1, frame.Area().xMax(), middle + 1));
    DrawDots(canvas, row, box.outliers, std::vector<double>(box.outliers.size(), 0.5), "s0");
    middle += BOX_ROW;
  }
  frame.DrawBorder(canvas);
  canvas.Note(note);
  return canvas.Finish();
}

}  // namespace shr
