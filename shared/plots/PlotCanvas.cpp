// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/PlotCanvas.h"

#include <algorithm>

#include "shared/plots/PlotPalette.h"
#include "shared/plots/TextWidth.h"

namespace shr {

namespace {

constexpr double TICK_LENGTH = 4;
constexpr long STRONG = 600;

constexpr const char* STYLE =
    "\n.plot{font:12px system-ui,'Segoe UI',Roboto,Helvetica,Arial,sans-serif;fill:#222}\n"
    ".paper{fill:#fff}.title{font-size:16px;font-weight:600}\n"
    ".tick{font-size:11px;fill:#444}.note{font-size:11px;fill:#555}.strong{font-weight:600}\n"
    ".grid{stroke:#e2e2e2;fill:none}.axis{stroke:#767676;fill:none}.marks{fill:#767676}\n"
    ".line{stroke:currentColor;fill:none;stroke-width:1.8;stroke-linejoin:round}\n"
    ".dots{stroke:currentColor;fill:none;stroke-linecap:round;stroke-opacity:.75}\n"
    ".fill{fill:currentColor;stroke:#fff;stroke-width:.5}\n"
    ".soft{fill:currentColor;fill-opacity:.3;stroke:currentColor;stroke-width:1.2}\n";
constexpr const char* DARK_STYLE =
    "@media (prefers-color-scheme:dark){\n"
    ".plot{fill:#e8e8e8}.paper{fill:#15181c}.tick{fill:#c4c4c4}.note{fill:#b4b4b4}\n"
    ".grid{stroke:#33383f}.axis{stroke:#8f959c}.marks{fill:#8f959c}.fill{stroke:#15181c}\n";

/// What text that is drawn by faces takes its color from.
constexpr const char* INK_STYLE =
    "\n.plot{color:#222}.tick{color:#444}.note{color:#555}\n"
    "@media (prefers-color-scheme:dark){\n"
    ".plot{color:#e8e8e8}.tick{color:#c4c4c4}.note{color:#b4b4b4}}\n";

HAlignment AlignmentOf(std::string_view anchor) {
  if (anchor == "middle") return HAlignment::Center;
  return anchor == "end" ? HAlignment::Right : HAlignment::Left;
}

std::string SeriesStyle(bool onDark) {
  std::string text;
  for (std::size_t i = 0; i < SERIES_COLORS; ++i) {
    text += "." + SeriesClass(i) + "{color:" + HexColor(SeriesColor(i, onDark)) + "}";
  }
  return text + "\n";
}

void DrawPath(SvgWriter& svg, const char* cssClass, const SvgPathBuilder& path) {
  if (path.IsEmpty()) return;
  svg.Begin("path").Attribute("class", cssClass).Attribute("d", path.Data()).End();
}

/// Returns the name of an axis with what its labels share.
GString AxisName(const GString& name, const TickSet& set) {
  if (set.context.empty()) return name;
  return name.empty() ? set.context : name + L" (" + set.context + L")";
}

}  // namespace

struct PlotCanvas::Style {
  const char* attribute;  // of the element around it, and its value
  std::string_view value;
  double size = LABEL_SIZE;
  long weight = 400;
};

PlotCanvas::PlotCanvas(double width, double height, SvgTextMode textMode)
    : width_(width), height_(height), textMode_(textMode), textIF_(svg_, textMode) {
  textIF_.SetInheritsStyle(true);
}

void PlotCanvas::Begin(const GString& title, const GString& description) {
  std::string box = "0 0 ";
  AppendSvgTenths(box, SvgTenths(width_));
  box += ' ';
  AppendSvgTenths(box, SvgTenths(height_));
  svg_.Begin("svg").Attribute("xmlns", "http://www.w3.org/2000/svg");
  svg_.Attribute("width", width_).Attribute("height", height_).Attribute("viewBox", box);
  svg_.Attribute("role", "img").Attribute("aria-labelledby", "title desc");
  svg_.Attribute("class", "plot");
  svg_.Begin("title").Attribute("id", "title").Text(PlainPlotText(title)).End();
  svg_.Begin("desc").Attribute("id", "desc").Text(description).End();
  svg_.Begin("style").Raw(STYLE + SeriesStyle(false) + DARK_STYLE + SeriesStyle(true) + "}\n");
  svg_.End();
  svg_.BeginRectangle(Box2d(0, 0, width_, height_)).Attribute("class", "paper").End();
  if (title.empty()) return;
  const double space = width_ - 2 * MARGIN;
  Text(Vec2d(MARGIN, MARGIN + TITLE_SIZE), "start", "title",
       Fitted(title, TITLE_SIZE, space, textMode_));
}

PlotCanvas::Style PlotCanvas::StyleOf(std::string_view cssClass) {
  if (cssClass == "title") return {"class", cssClass, TITLE_SIZE, STRONG};
  if (cssClass == "strong") return {"class", cssClass, LABEL_SIZE, STRONG};
  if (cssClass == "tick" || cssClass == "note") return {"class", cssClass, TICK_SIZE};
  return {"class", cssClass};
}

void PlotCanvas::Text(const Vec2d& at, const char* anchor, const char* cssClass,
                      const GString& text) {
  if (NeedsFaces(text, textMode_)) return DrawByFaces(at, anchor, StyleOf(cssClass), 0, text);
  svg_.Begin("text").Attribute("x", at.x).Attribute("y", at.y);
  if (std::string_view(anchor) != "start") svg_.Attribute("text-anchor", anchor);
  if (*cssClass != '\0') svg_.Attribute("class", cssClass);
  svg_.Text(text).End();
}

void PlotCanvas::TurnedText(const Vec2d& at, const char* anchor, int degrees, const GString& text) {
  if (NeedsFaces(text, textMode_)) return DrawByFaces(at, anchor, StyleOf(""), degrees, text);
  std::string transform = "translate(";
  AppendSvgTenths(transform, SvgTenths(at.x));
  transform += ' ';
  AppendSvgTenths(transform, SvgTenths(at.y));
  transform += ") rotate(" + std::to_string(-degrees) + ")";
  svg_.Begin("text").Attribute("transform", transform);
  if (std::string_view(anchor) != "start") svg_.Attribute("text-anchor", anchor);
  svg_.Text(text).End();
}

void PlotCanvas::ColoredText(const Vec2d& middle, const char* color, const GString& text) {
  const std::string style = std::string("font-size:11px;fill:") + color;
  if (NeedsFaces(text, textMode_)) {
    return DrawByFaces(middle, "middle", {"style", style, TICK_SIZE}, 0, text);
  }
  svg_.Begin("text").Attribute("x", middle.x).Attribute("y", middle.y);
  svg_.Attribute("text-anchor", "middle").Attribute("style", style).Text(text).End();
}

void PlotCanvas::DrawByFaces(const Vec2d& at, std::string_view anchor, const Style& style,
                             int degrees, const GString& text) {
  if (text.empty()) return;
  if (!hasInkStyle_) svg_.Begin("style").Raw(INK_STYLE).End();
  hasInkStyle_ = true;
  MTAttributes attributes;
  attributes.face.weight = style.weight;
  attributes.hAlignment = AlignmentOf(anchor);
  textIF_.SetAttributes(attributes);
  textIF_.SetRotation(degrees);
  const std::shared_ptr<CMTMultiLineElement> label = ParsePlotText(textIF_, text, style.size);
  svg_.Begin("g");
  if (!style.value.empty()) svg_.Attribute(style.attribute, style.value);
  textIF_.DrawLabel(*label, CMTSvgTextIF::FromPicture(at.x, at.y));
  svg_.End();
}

void PlotCanvas::NoData(const Box2d& area) {
  const Vec2d middle((area.xMin() + area.xMax()) / 2, (area.yMin() + area.yMax()) / 2);
  Text(middle, "middle", "note", L"No data");
}

void PlotCanvas::Note(const GString& text) {
  if (text.empty()) return;
  Text(Vec2d(MARGIN, height_ - 8), "start", "note",
       Fitted(text, TICK_SIZE, width_ - 2 * MARGIN, textMode_));
}

std::string PlotCanvas::Finish() {
  svg_.End();
  return svg_.Take();
}

void PlotFrame::DrawXAxis(PlotCanvas& canvas, const GString& name) const {
  const TickSet set = x_.Ticks(MostXTicks(x_, area_.xRange()));
  SvgPathBuilder grid;
  SvgPathBuilder marks;
  for (const Tick& tick : set.ticks) {
    const double x = X(tick.value);
    SvgPathBuilder& path = tick.label.empty() ? marks : grid;
    path.MoveTo(Vec2d(x, area_.yMax() + (tick.label.empty() ? TICK_LENGTH / 2 : TICK_LENGTH)));
    path.LineTo(Vec2d(x, tick.label.empty() ? area_.yMax() : area_.yMin()));
  }
  DrawPath(canvas.Svg(), "grid", grid);
  DrawPath(canvas.Svg(), "axis", marks);
  const double y = area_.yMax() + TICK_LENGTH + TICK_SIZE;
  for (const Tick& tick : set.ticks) {
    if (tick.label.empty()) continue;
    // A label at the end of the axis stays inside the picture.
    const double farthest = canvas.Width() - EstimateTextWidth(tick.label, TICK_SIZE) / 2 - 2;
    canvas.Text(Vec2d(std::min(X(tick.value), farthest), y), "middle", "tick", tick.label);
  }
  const GString text = AxisName(name, set);
  canvas.Text(Vec2d((area_.xMin() + area_.xMax()) / 2, y + 18), "middle", "",
              Fitted(text, LABEL_SIZE, area_.xRange(), canvas.TextMode()));
}

void PlotFrame::DrawYAxis(PlotCanvas& canvas, const GString& name) const {
  const TickSet set = y_.Ticks(MostYTicks(area_.yRange()));
  SvgPathBuilder grid;
  SvgPathBuilder marks;
  for (const Tick& tick : set.ticks) {
    const double y = Y(tick.value);
    SvgPathBuilder& path = tick.label.empty() ? marks : grid;
    path.MoveTo(Vec2d(area_.xMin() - (tick.label.empty() ? TICK_LENGTH / 2 : TICK_LENGTH), y));
    path.LineTo(Vec2d(tick.label.empty() ? area_.xMin() : area_.xMax(), y));
  }
  DrawPath(canvas.Svg(), "grid", grid);
  DrawPath(canvas.Svg(), "axis", marks);
  const double x = area_.xMin() - TICK_LENGTH - 3;
  for (const Tick& tick : set.ticks) {
    if (!tick.label.empty()) {
      canvas.Text(Vec2d(x, Y(tick.value) + TICK_SIZE * 0.36), "end", "tick", tick.label);
    }
  }
  const GString text = AxisName(name, set);
  const double middle = (area_.yMin() + area_.yMax()) / 2;
  canvas.TurnedText(Vec2d(x - WidestLabel(set) - 8, middle), "middle", 90,
                    Fitted(text, LABEL_SIZE, area_.yRange() + 2 * MARGIN, canvas.TextMode()));
}

void PlotFrame::DrawBorder(PlotCanvas& canvas) const {
  canvas.Svg().BeginRectangle(area_).Attribute("class", "axis").End();
}

std::size_t MostXTicks(const PlotAxis& axis, double length) {
  // Labels of times and of long numbers are as wide as they are.
  constexpr double GAP = 18;
  auto most = static_cast<std::size_t>(std::max(4.0, length / 60));
  while (most > 2) {
    const TickSet set = axis.Ticks(most);
    const auto labels = static_cast<double>(std::count_if(
        set.ticks.begin(), set.ticks.end(), [](const Tick& tick) { return !tick.label.empty(); }));
    if (labels * (WidestLabel(set) + GAP) <= length + GAP) break;
    --most;
  }
  return most;
}

std::size_t MostYTicks(double length) {
  return static_cast<std::size_t>(std::max(4.0, length / 40));
}

double WidestLabel(const TickSet& set) {
  double widest = 0;
  for (const Tick& tick : set.ticks) {
    widest = std::max(widest, EstimateTextWidth(tick.label, TICK_SIZE));
  }
  return widest;
}

GString LeftOutNote(std::size_t count) {
  if (count == 0) return GString();
  return GString(std::to_wstring(count)) +
         (count == 1 ? L" value is left out: it has" : L" values are left out: they have") +
         L" no place on the axes.";
}

std::string SeriesClass(std::size_t index) {
  return "s" + std::to_string(index % SERIES_COLORS);
}

}  // namespace shr
