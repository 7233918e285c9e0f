// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A country's ring whose edge runs along a side of the window or along the antimeridian is a cut,
// not a border: it is filled, and only the rest of it is stroked.

#include "examples/mapreport/SvgCountries.h"

#include <algorithm>
#include <cmath>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Format.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr double CUT_TOLERANCE = 1e-7;
constexpr double SMALLEST_ISLAND = 1;

/// One ring of a country in window coordinates.
struct Ring {
  const Vec2d* points;
  std::size_t count;

  const Vec2d& Next(std::size_t i) const { return points[i + 1 < count ? i + 1 : 0]; }
};

class CountryPainter {
public:
  CountryPainter(SvgWriter& svg, const Projection& projection)
      : svg_(svg), projection_(projection) {}

  void Draw(const Country& country) {
    whole_ = SvgPathBuilder();
    cut_ = SvgPathBuilder();
    borders_ = SvgPathBuilder();
    Split(country);
    if (whole_.IsEmpty() && cut_.IsEmpty()) return;
    svg_.Begin("g").Attribute("fill", HexColor(country.fill));
    svg_.Begin("title").Text(Caption(country)).End();
    DrawPath(whole_, "country", "");
    DrawPath(cut_, "", HexColor(country.fill));
    DrawPath(borders_, "country", "");
    svg_.End();
  }

  void DrawGround(const Contours& contours) {
    whole_ = SvgPathBuilder();
    const Vec2d* points = contours.points.data();
    for (const unsigned int count : contours.counts) {
      AddRing(Ring{points, count}, false, whole_);
      points += count;
    }
    DrawPath(whole_, "ground", "");
  }

  void DrawOutline(const Contours& contours, const char* cssClass) {
    borders_ = SvgPathBuilder();
    const Vec2d* points = contours.points.data();
    for (const unsigned int count : contours.counts) {
      AddBorders(Ring{points, count});
      points += count;
    }
    DrawPath(borders_, cssClass, "");
  }

private:
  void Split(const Country& country) {
    const Contours& contours = country.visible;
    // A hole belongs into the same path as what it is cut from.
    const bool isCut = AnyCut(contours);
    const std::size_t largest = LargestRing(contours);
    const Vec2d* points = contours.points.data();
    for (std::size_t i = 0; i < contours.counts.size(); ++i) {
      const Ring ring{points, contours.counts[i]};
      points += ring.count;
      AddRing(ring, i == largest, isCut ? cut_ : whole_);
      if (isCut) AddBorders(ring);
    }
  }

  bool IsCut(const Vec2d& a, const Vec2d& b) const {
    const Box2d& window = projection_.Window();
    for (const double x : {window.xMin(), window.xMax(), -180.0, 180.0}) {
      if (std::abs(a.x - x) < CUT_TOLERANCE && std::abs(b.x - x) < CUT_TOLERANCE) return true;
    }
    for (const double y : {window.yMin(), window.yMax(), -90.0, 90.0}) {
      if (std::abs(a.y - y) < CUT_TOLERANCE && std::abs(b.y - y) < CUT_TOLERANCE) return true;
    }
    return false;
  }

  bool AnyCut(const Contours& contours) const {
    const Vec2d* points = contours.points.data();
    for (const unsigned int count : contours.counts) {
      const Ring ring{points, count};
      for (std::size_t i = 0; i < count; ++i) {
        if (IsCut(ring.points[i], ring.Next(i))) return true;
      }
      points += count;
    }
    return false;
  }

  static Box2d Bounds(const Ring& ring) {
    Box2d box;
    for (std::size_t i = 0; i < ring.count; ++i) box.ExtendBy(ring.points[i]);
    return box;
  }

  static std::size_t LargestRing(const Contours& contours) {
    std::size_t largest = NONE;
    double size = -1;
    const Vec2d* points = contours.points.data();
    for (std::size_t i = 0; i < contours.counts.size(); ++i) {
      const Box2d box = Bounds(Ring{points, contours.counts[i]});
      if (box.xRange() + box.yRange() > size) largest = i;
      size = std::max(size, box.xRange() + box.yRange());
      points += contours.counts[i];
    }
    return largest;
  }

  /// The smallest states would vanish; the largest island of each keeps a visible size.
  void AddRing(const Ring& ring, bool isLargest, SvgPathBuilder& path) const {
    const Box2d box = Bounds(ring);
    const Vec2d low = projection_.ToPage(Vec2d(box.xMin(), box.yMax()));
    const Vec2d high = projection_.ToPage(Vec2d(box.xMax(), box.yMin()));
    if (std::max(high.x - low.x, high.y - low.y) < SMALLEST_ISLAND) {
      if (isLargest) AddDot(Vec2d((low.x + high.x) / 2, (low.y + high.y) / 2), path);
      return;
    }
    path.MoveTo(projection_.ToPage(ring.points[0]));
    for (std::size_t i = 1; i < ring.count; ++i) path.LineTo(projection_.ToPage(ring.points[i]));
    path.Close();
  }

  static void AddDot(const Vec2d& center, SvgPathBuilder& path) {
    constexpr double HALF = SMALLEST_ISLAND / 2;
    path.MoveTo(Vec2d(center.x - HALF, center.y - HALF));
    path.LineTo(Vec2d(center.x + HALF, center.y - HALF));
    path.LineTo(Vec2d(center.x + HALF, center.y + HALF));
    path.LineTo(Vec2d(center.x - HALF, center.y + HALF));
    path.Close();
  }

  void AddBorders(const Ring& ring) {
    bool drawing = false;
    for (std::size_t i = 0; i < ring.count; ++i) {
      const bool isBorder = !IsCut(ring.points[i], ring.Next(i));
      if (isBorder && !drawing) borders_.MoveTo(projection_.ToPage(ring.points[i]));
      if (isBorder) borders_.LineTo(projection_.ToPage(ring.Next(i)));
      drawing = isBorder;
    }
  }

  void DrawPath(const SvgPathBuilder& path, const char* cssClass, const std::string& stroke) {
    if (path.IsEmpty()) return;
    svg_.Begin("path");
    if (*cssClass != '\0') svg_.Attribute("class", cssClass);
    if (!stroke.empty()) svg_.Attribute("stroke", stroke).Attribute("stroke-width", 0.4);
    if (&path == &borders_) svg_.Attribute("fill", "none");
    svg_.Attribute("fill-rule", "evenodd").Attribute("d", path.Data()).End();
  }

  static GString Caption(const Country& country) {
    return country.name + L": " + FormatCount(country.eventCount, L"event", L"events");
  }

  SvgWriter& svg_;
  const Projection& projection_;
  SvgPathBuilder whole_;
  SvgPathBuilder cut_;
  SvgPathBuilder borders_;
};

}  // namespace

void DrawGround(SvgWriter& svg, const Model& model, const Projection& projection) {
  if (model.clip.IsEmpty()) return;
  CountryPainter painter(svg, projection);
  for (const Country& country : model.countries) {
    painter.DrawGround(ClipCountry(country, model.window));
  }
}

void DrawCountries(SvgWriter& svg, const Model& model, const Projection& projection) {
  CountryPainter painter(svg, projection);
  for (const Country& country : model.countries) painter.Draw(country);
}

void DrawAreas(SvgWriter& svg, const Model& model, const Projection& projection) {
  CountryPainter painter(svg, projection);
  painter.DrawOutline(model.clip.rings, "clip");
  painter.DrawOutline(model.continent.rings, "continent");
}

}  // namespace mapreport
