// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Arbitrary bytes as a GPX or KML file; the first chooses whether a code page is named. What is
// read lies on the globe, its segments hold all its points, and no step of its pieces is longer
// than half the way round. What is not is told in words of the reader or the scanner.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "examples/mapreport/Tracks.h"
#include "shared/diagnostics/Exception.h"

using namespace mapreport;

static void CheckPlace(const Vec2d& place) {
  if (!(std::abs(place.x) <= 180 && std::abs(place.y) <= 90)) std::abort();
}

static void CheckLines(const Contours& lines) {
  std::size_t first = 0;
  for (const unsigned int count : lines.counts) {
    if (count == 0 || count > lines.points.size() - first) std::abort();
    first += count;
  }
  if (first != lines.points.size()) std::abort();
  for (const Vec2d& place : lines.points) CheckPlace(place);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::optional<std::uint32_t> pages[] = {std::nullopt, 1252, 932, 65001};
  const std::string bytes(data + 1, data + size);
  try {
    const TrackContent content = ReadTracks(bytes, L"input", pages[data[0] & 3]);
    for (const Waypoint& waypoint : content.waypoints) CheckPlace(waypoint.position);
    for (const Track& track : content.tracks) {
      CheckLines(track.lines);
      if (!(TrackLength(track.lines) >= 0)) std::abort();
      const Contours pieces = SplitAtAntimeridian(track.lines);
      CheckLines(pieces);
      const Vec2d* point = pieces.points.data();
      for (const unsigned int count : pieces.counts) {
        for (unsigned int i = 1; i < count; ++i) {
          if (std::abs(point[i].x - point[i - 1].x) > 180) std::abort();
        }
        point += count;
      }
    }
  } catch (const shr::Exception& error) {
    const GString& from = error.GetSrcFile();
    if (from != L"InputError" && from != L"XMLScanner") std::abort();
  }
  return 0;
}
