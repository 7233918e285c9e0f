// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Each edge adds, to the pixels it passes, the signed area that lies to the right of it, and to the
// pixel behind them what is missing to its full height. Summed up along a row that is the winding
// number times the covered area: exact wherever contours do not cross inside a pixel, without
// samples and without sorting.

#include "shared/mathtext/GlyphCoverage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

constexpr int MOST_PIECES = 64;
/// A curve of n lines is off by an eighth of its second difference / n^2.
constexpr double TOLERANCE = 0.02;

bool IsFinite(const GlyphOutline& outline) {
  return std::all_of(outline.points.begin(), outline.points.end(), [](const OutlinePoint& point) {
    return std::isfinite(point.x) && std::isfinite(point.y);
  });
}

/// Calls a function for each line of an outline, curves cut into lines.
template <typename Visit>
class LineReader {
public:
  LineReader(const GlyphOutline& outline, Visit visit) : outline_(outline), visit_(visit) {}

  void Read(bool closes) {
    static constexpr std::size_t POINTS[] = {1, 1, 2, 3, 0};
    std::size_t at = 0;
    for (const OutlineVerb verb : outline_.verbs) {
      const std::size_t count = POINTS[static_cast<int>(verb)];
      if (outline_.points.size() - at < count) break;
      const auto point = [&](std::size_t i) {
        return Vec2d(outline_.points[at + i].x, outline_.points[at + i].y);
      };
      switch (verb) {
        case OutlineVerb::Move:
          if (closes) LineTo(first_);
          first_ = last_ = point(0);
          break;
        case OutlineVerb::Line:
          LineTo(point(0));
          break;
        case OutlineVerb::Quadratic: {
          const Vec2d control = point(0), end = point(1);
          CurveTo(last_.Lerp(control, 2.0 / 3), end.Lerp(control, 2.0 / 3), end);
          break;
        }
        case OutlineVerb::Cubic:
          CurveTo(point(0), point(1), point(2));
          break;
        case OutlineVerb::Close:
          LineTo(first_);
          break;
      }
      at += count;
    }
    if (closes) LineTo(first_);
  }

private:
  void LineTo(const Vec2d& to) {
    visit_(last_, to);
    last_ = to;
  }

  void CurveTo(const Vec2d& first, const Vec2d& second, const Vec2d& end) {
    const Vec2d begin = last_;
    const double bend = 6 * std::max((begin - first * 2.0 + second).Length(),
                                     (first - second * 2.0 + end).Length());
    const double pieces = std::ceil(std::sqrt(bend / (8 * TOLERANCE)));
    const int count = pieces >= 1 && pieces < MOST_PIECES ? static_cast<int>(pieces)
                      : pieces >= MOST_PIECES             ? MOST_PIECES
                                                          : 1;
    for (int i = 1; i < count; ++i) {
      const double t = static_cast<double>(i) / count;
      const Vec2d a = begin.Lerp(first, t), b = first.Lerp(second, t), c = second.Lerp(end, t);
      LineTo(a.Lerp(b, t).Lerp(b.Lerp(c, t), t));
    }
    LineTo(end);
  }

  const GlyphOutline& outline_;
  Visit visit_;
  Vec2d first_, last_;
};

template <typename Visit>
void ReadLines(const GlyphOutline& outline, bool closes, Visit visit) {
  if (IsFinite(outline)) LineReader<Visit>(outline, visit).Read(closes);
}

double DistanceToSegment(const Vec2d& point, const Vec2d& from, const Vec2d& to) {
  const Vec2d along = to - from;
  const double square = along.x * along.x + along.y * along.y;
  const Vec2d arm = point - from;
  const double t = square == 0 ? 0 : (arm.x * along.x + arm.y * along.y) / square;
  return (arm - along * std::clamp(t, 0.0, 1.0)).Length();
}

}  // namespace

GlyphCoverage::GlyphCoverage(int left, int top, int width, int height)
    : left_(left), top_(top), width_(width), height_(height) {
  if (width < 1 || height < 1) ThrowErrorImpl(L"GlyphCoverage", __LINE__, INVALID_PARAMETER_TEXT);
  areas_.resize((static_cast<std::size_t>(width) + 1) * static_cast<std::size_t>(height));
}

GlyphCoverage::~GlyphCoverage() = default;

void GlyphCoverage::Fill(const GlyphOutline& outline) {
  ReadLines(outline, true, [this](const Vec2d& from, const Vec2d& to) { AddEdge(from, to); });
}

void GlyphCoverage::Stroke(const GlyphOutline& outline, double width) {
  strokes_.resize(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
  ReadLines(outline, false,
            [this, width](const Vec2d& from, const Vec2d& to) { AddCapsule(from, to, width / 2); });
}

/// Cuts an edge into the rows that it passes.
void GlyphCoverage::AddEdge(const Vec2d& from, const Vec2d& to) {
  const Vec2d corner(left_, top_);
  const Vec2d low = (from.y < to.y ? from : to) - corner;
  const Vec2d high = (from.y < to.y ? to : from) - corner;
  const double direction = from.y < to.y ? 1 : -1;
  const double begin = std::max(low.y, 0.0);
  const double end = std::min<double>(high.y, height_);
  if (!(begin < end)) return;
  const auto xAt = [&](double y) {
    const double t = (y - low.y) / (high.y - low.y);
    return std::clamp(low.x + (high.x - low.x) * t, 0.0, static_cast<double>(width_));
  };
  double y = begin, x = xAt(begin);
  for (int row = static_cast<int>(begin); row < height_ && y < end; ++row) {
    const double nextY = std::min<double>(end, row + 1);
    const double nextX = xAt(nextY);
    float* const areas =
        areas_.data() + static_cast<std::size_t>(row) * (static_cast<std::size_t>(width_) + 1);
    AddRowEdge(areas, x, nextX, direction * (nextY - y));
    y = nextY;
    x = nextX;
  }
}

/// Adds the part of an edge within a row, `height` high and negative when it runs upwards.
void GlyphCoverage::AddRowEdge(float* row, double x0, double x1, double height) {
  const double begin = std::min(x0, x1), end = std::max(x0, x1);
  const int first = std::min(static_cast<int>(begin), width_ - 1);
  const int last = std::min(static_cast<int>(end), width_ - 1);
  double added = 0;  // of the height, to the pixels so far
  for (int i = first; i <= last; ++i) {
    const double from = std::max<double>(begin, i), to = std::min<double>(end, i + 1);
    const double passed = end > begin ? height * (to - from) / (end - begin) : height;
    // In this pixel the part lies left of its right side by this much on the average.
    const double area = passed * (i + 1 - (from + to) / 2);
    row[i] += static_cast<float>(added + area);
    added = passed - area;
  }
  row[last + 1] += static_cast<float>(added);
}

/// Adds a line with round ends; at its edge a pixel is covered by how far its middle is inside.
void GlyphCoverage::AddCapsule(const Vec2d& from, const Vec2d& to, double radius) {
  const double reach = radius + 1;
  const auto bound = [](double value, int most) {
    return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(most)));
  };
  const int firstX = bound(std::min(from.x, to.x) - reach - left_, width_);
  const int lastX = bound(std::max(from.x, to.x) + reach - left_ + 1, width_);
  const int firstY = bound(std::min(from.y, to.y) - reach - top_, height_);
  const int lastY = bound(std::max(from.y, to.y) + reach - top_ + 1, height_);
  for (int y = firstY; y < lastY; ++y) {
    float* const row =
        strokes_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    for (int x = firstX; x < lastX; ++x) {
      const Vec2d middle(left_ + x + 0.5, top_ + y + 0.5);
      const double inside = radius + 0.5 - DistanceToSegment(middle, from, to);
      const double most = std::min(1.0, 2 * radius);
      row[x] = std::max(row[x], static_cast<float>(std::clamp(inside, 0.0, most)));
    }
  }
}

std::vector<unsigned char> GlyphCoverage::Get() const {
  std::vector<unsigned char> pixels;
  pixels.reserve(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
  const float* area = areas_.data();
  for (int y = 0; y < height_; ++y, ++area) {
    float winding = 0;
    for (int x = 0; x < width_; ++x) {
      winding += *area++;
      float covered = std::min(std::abs(winding), 1.0f);
      if (!strokes_.empty()) covered = std::max(covered, strokes_[pixels.size()]);
      pixels.push_back(static_cast<unsigned char>(covered * 255 + 0.5f));
    }
  }
  return pixels;
}

}  // namespace shr
