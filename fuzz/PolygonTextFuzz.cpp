// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors
//
// Arbitrary bytes as well-known text and as GeoJSON. Reading must end in polygons or in an error of
// the library. What was read must come back from either format as it was, and can be grouped as
// contours.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/formats/PolygonText.h"

using Parser = void (*)(std::string_view text, shr::GPolygon2d& polygon);

static bool Read(Parser parse, std::string_view text, shr::GPolygon2d& polygon) {
  try {
    parse(text, polygon);
  } catch (const shr::Exception&) {
    return false;
  }
  return true;
}

static void Check(Parser parse, std::string_view text) {
  shr::GPolygon2d polygon;
  if (!Read(parse, text, polygon)) return;
  const std::string written = shr::ToWkt(polygon);
  shr::GPolygon2d fromWkt;
  shr::GPolygon2d fromGeoJson;
  shr::ParseWkt(written, fromWkt);
  shr::ParseGeoJson(shr::ToGeoJson(polygon), fromGeoJson);
  if (shr::ToWkt(fromWkt) != written || shr::ToWkt(fromGeoJson) != written) std::abort();
  // Contours that cross may be grouped in any way, but must be grouped.
  shr::GPolygon contours;
  shr::ParseWkt(shr::ToWkt(shr::GPolygon(polygon)), contours);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  Check(&shr::ParseWkt, text);
  Check(&shr::ParseGeoJson, text);
  return 0;
}
