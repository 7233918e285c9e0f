// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/SvgRivers.h"

#include <optional>
#include <span>
#include <vector>

#include "shared/polygons/lines/GDashLineGenerator.h"

namespace mapreport {

using namespace shr;

namespace {

class RiverPainter {
public:
  RiverPainter(const Model& model, const Projection& projection)
      : projection_(projection), isDashed_(!model.view.dashes.empty()), dashes_(model.view.dashes) {
    for (const River& river : model.rivers) {
      std::size_t first = 0;
      for (const unsigned int count : river.visible.counts) {
        DrawPiece(std::span(river.visible.points).subspan(first, count));
        first += count;
      }
    }
  }

  const SvgPathBuilder& Path() const { return path_; }

private:
  void DrawPiece(std::span<const Vec2d> piece) {
    page_.clear();
    for (const Vec2d& point : piece) page_.push_back(projection_.ToPage(point));
    if (isDashed_) {
      DrawDashes();
    } else {
      path_.MoveTo(page_.front());
      for (const Vec2d& point : std::span(page_).subspan(1)) path_.LineTo(point);
    }
  }

  void DrawDashes() {
    std::optional<Vec2d> last;
    dashes_.Decompose(std::span<const Vec2d>(page_), [&](const Vec2d& begin, const Vec2d& end) {
      if (last != begin) path_.MoveTo(begin);
      path_.LineTo(end);
      last = end;
    });
  }

  const Projection& projection_;
  bool isDashed_;
  GDashLineGenerator dashes_;
  SvgPathBuilder path_;
  std::vector<Vec2d> page_;
};

}  // namespace

void DrawRivers(SvgWriter& svg, const Model& model, const Projection& projection) {
  const RiverPainter painter(model, projection);
  if (painter.Path().IsEmpty()) return;
  svg.Begin("path").Attribute("class", "river").Attribute("stroke", HexColor(model.palette.river));
  svg.Attribute("d", painter.Path().Data()).End();
}

}  // namespace mapreport
