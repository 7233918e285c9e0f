// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <algorithm>
#include <cmath>

#include "shared/diagnostics/ThrowError.h"
#include "shared/plots/NumberText.h"
#include "shared/plots/PlotCanvas.h"
#include "shared/plots/PlotMarks.h"
#include "shared/plots/StatisticalPlots.h"

namespace shr {

namespace {

constexpr double LEFT_SPACE = 64;
constexpr double BOTTOM_SPACE = 46;
constexpr double GAP = 8;
constexpr double FREE_SHARE = 0.05;
constexpr double SMALLEST_PANEL = 60;
constexpr std::size_t MOST_DOTS = 4000;

std::vector<double> EveryNth(std::span<const double> values, std::size_t stride) {
  std::vector<double> chosen;
  for (std::size_t i = 0; i < values.size(); i += stride) chosen.push_back(values[i]);
  return chosen;
}

class MatrixDrawing {
public:
  MatrixDrawing(std::span<const NamedSample> samples, const PlotOptions& options)
      : samples_(samples),
        options_(options),
        panel_(std::max(SMALLEST_PANEL, (options.width - LEFT_SPACE - MARGIN) / Count() - GAP)),
        canvas_(LEFT_SPACE + MARGIN + Count() * (panel_ + GAP),
                TITLE_HEIGHT + BOTTOM_SPACE + Count() * (panel_ + GAP), options.textMode) {
    for (const NamedSample& sample : samples) {
      axes_.push_back(PlotAxis::Around(ScaleKind::Linear, sample.values, FREE_SHARE));
    }
  }

  std::string Run() {
    canvas_.Begin(options_.title, Describe());
    if (!HasData()) {
      canvas_.NoData(Box2d(0, 0, canvas_.Width(), canvas_.Height()));
      return canvas_.Finish();
    }
    for (std::size_t row = 0; row < samples_.size(); ++row) {
      for (std::size_t column = 0; column < samples_.size(); ++column) DrawPanel(row, column);
    }
    return canvas_.Finish();
  }

private:
  double Count() const { return std::max(1.0, static_cast<double>(samples_.size())); }

  bool HasData() const {
    return std::any_of(samples_.begin(), samples_.end(), [](const NamedSample& sample) {
      return std::any_of(sample.values.begin(), sample.values.end(),
                         [](double value) { return std::isfinite(value); });
    });
  }

  GString Describe() const {
    if (!HasData()) return (options_.description + L" No data.").Trim();
    GString text = options_.description;
    for (std::size_t row = 0; row < samples_.size(); ++row) {
      for (std::size_t column = 0; column < row; ++column) {
        const LineFit fit = FitLine(samples_[column].values, samples_[row].values);
        text += L" " + PlainPlotText(samples_[column].name) + L" and " +
                PlainPlotText(samples_[row].name) + L": correlation " +
                SignificantText(fit.correlation, 2) + L".";
      }
    }
    return text.Trim();
  }

  Box2d PanelBox(std::size_t row, std::size_t column) const {
    const double x = LEFT_SPACE + static_cast<double>(column) * (panel_ + GAP);
    const double y = TITLE_HEIGHT + static_cast<double>(row) * (panel_ + GAP);
    return Box2d(x, y, x + panel_, y + panel_);
  }

  void DrawPanel(std::size_t row, std::size_t column) {
    const Box2d box = PanelBox(row, column);
    const PlotFrame frame(axes_[column], axes_[row], box);
    const bool isBottom = row + 1 == samples_.size();
    if (isBottom) {
      frame.DrawXAxis(canvas_, samples_[column].name);
    }
    if (column == 0) frame.DrawYAxis(canvas_, samples_[row].name);
    if (row == column) {
      DrawBars(box, row);
    } else if (row > column) {
      DrawScatter(frame, row, column);
    } else {
      DrawCorrelation(box, row, column);
    }
    frame.DrawBorder(canvas_);
  }

  void DrawBars(const Box2d& box, std::size_t index) {
    constexpr double HEADROOM = 1.12;
    const Bins bins = MakeBins(samples_[index].values);
    if (bins.counts.empty()) return;
    const double most = *std::max_element(bins.counts.begin(), bins.counts.end());
    const PlotFrame frame(axes_[index], PlotAxis(ScaleKind::Linear, 0, most * HEADROOM), box);
    canvas_.Svg().Begin("g").Attribute("class", "fill s0");
    for (std::size_t i = 0; i < bins.counts.size(); ++i) {
      // The first and last bin may reach beyond the axis of the scatter plots.
      const double left = std::clamp(frame.X(bins.edges[i]), box.xMin(), box.xMax());
      const double right = std::clamp(frame.X(bins.edges[i + 1]), box.xMin(), box.xMax());
      if (bins.counts[i] == 0 || right <= left) continue;
      canvas_.Svg().BeginRectangle(Box2d(left, frame.Y(bins.counts[i]), right, box.yMax())).End();
    }
    canvas_.Svg().End();
  }

  void DrawScatter(const PlotFrame& frame, std::size_t row, std::size_t column) {
    const std::span<const double> x = samples_[column].values;
    const std::span<const double> y = samples_[row].values;
    const std::size_t stride = (x.size() + MOST_DOTS - 1) / MOST_DOTS;
    if (stride > 1) {
      DrawDots(canvas_, frame, EveryNth(x, stride), EveryNth(y, stride), "s0");
    } else {
      DrawDots(canvas_, frame, x, y, "s0");
    }
    const LineFit fit = FitLine(x, y);
    if (std::isfinite(fit.slope)) DrawSlope(canvas_, frame, fit.slope, fit.intercept, "s1");
  }

  void DrawCorrelation(const Box2d& box, std::size_t row, std::size_t column) {
    const LineFit fit = FitLine(samples_[column].values, samples_[row].values);
    const Vec2d middle((box.xMin() + box.xMax()) / 2, (box.yMin() + box.yMax()) / 2 + 5);
    canvas_.Text(middle, "middle", "strong", L"r = " + SignificantText(fit.correlation, 2));
  }

  std::span<const NamedSample> samples_;
  const PlotOptions& options_;
  double panel_;
  PlotCanvas canvas_;
  std::vector<PlotAxis> axes_;
};

}  // namespace

std::string DrawScatterMatrix(std::span<const NamedSample> samples, const PlotOptions& options) {
  for (const NamedSample& sample : samples) {
    if (sample.values.size() != samples.front().values.size()) {
      ThrowInternalError(SHARED_MODULE, L"StatisticalPlots", __LINE__);
    }
  }
  return MatrixDrawing(samples, options).Run();
}

}  // namespace shr
