// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/GlyphPath.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <span>

namespace shr {

namespace {

constexpr double FARTHEST = 1e9;

/// A verb of outlines as SVG writes it: absolute for moves, relative to the last point otherwise.
struct Command {
  char letter;
  std::size_t points;
};
constexpr Command COMMANDS[] = {{'M', 1}, {'l', 1}, {'q', 2}, {'c', 3}, {'z', 0}};

long long Hundredths(double value) {
  if (std::isnan(value)) return 0;
  return std::llround(std::clamp(value, -FARTHEST, FARTHEST) * 100);
}

struct Place {
  long long x = 0;
  long long y = 0;
};

class PathWriter {
public:
  PathWriter(std::string& data, double x, double y, double scale)
      : data_(data), x_(x), y_(y), scale_(scale) {}

  void Write(const Command& command, std::span<const OutlinePoint> points) {
    // A letter holds for what follows it, too, but what follows a move would be a line.
    const bool isMove = command.letter == 'M';
    if (command.letter != lastLetter_ || isMove || points.empty()) {
      data_ += command.letter;
      isAfterNumber_ = false;
    }
    lastLetter_ = command.letter;
    const Place from = isMove ? Place() : last_;
    for (const OutlinePoint& point : points) {
      last_ = {Hundredths(x_ + point.x * scale_), Hundredths(y_ - point.y * scale_)};
      WriteNumber(last_.x - from.x);
      WriteNumber(last_.y - from.y);
    }
    if (isMove) start_ = last_;
    if (command.letter == 'z') last_ = start_;
  }

private:
  void WriteNumber(long long hundredths) {
    if (hundredths < 0) {
      data_ += '-';
    } else if (isAfterNumber_) {
      data_ += ' ';
    }
    isAfterNumber_ = true;
    const long long magnitude = std::llabs(hundredths);
    const long long fraction = magnitude % 100;
    if (magnitude >= 100 || fraction == 0) data_ += std::to_string(magnitude / 100);
    if (fraction == 0) return;
    data_ += '.';
    data_ += static_cast<char>('0' + fraction / 10);
    if (fraction % 10 != 0) data_ += static_cast<char>('0' + fraction % 10);
  }

  std::string& data_;
  double x_, y_, scale_;
  Place last_;   ///< where the pen is
  Place start_;  ///< of the contour
  char lastLetter_ = '\0';
  bool isAfterNumber_ = false;
};

}  // namespace

void AppendGlyphPath(std::string& data, const GlyphOutline& outline, double x, double y,
                     double scale) {
  PathWriter writer(data, x, y, scale);
  std::span<const OutlinePoint> points(outline.points);
  for (const OutlineVerb verb : outline.verbs) {
    const Command& command = COMMANDS[static_cast<std::size_t>(verb)];
    if (points.size() < command.points) return;
    writer.Write(command, points.first(command.points));
    points = points.subspan(command.points);
  }
}

}  // namespace shr
