// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors
//
// Arbitrary bytes as a polygon file; the first byte chooses one of the four forms. Loading must end
// in a polygon or in an error of the library. What was loaded must dump and load to the same bytes
// once more.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "shared/diagnostics/Exception.h"
#include "shared/files/BufferedFile.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"

using namespace shr;

/// Loads a polygon, dumps it into `dumped` and returns true; false after an error.
template <class Polygon>
static bool Reload(std::string bytes, void (Polygon::*load)(CBufferedFile&),
                   void (Polygon::*dump)(CBufferedFile&) const, std::string& dumped) {
  CBufferedFile source;
  source.Open(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  CBufferedFile target;
  target.Open();
  try {
    Polygon polygon;
    (polygon.*load)(source);
    (polygon.*dump)(target);
  } catch (const Exception&) {
    return false;
  }
  dumped.assign(reinterpret_cast<const char*>(target.GetBuffer()),
                static_cast<std::size_t>(target.GetLength()));
  return true;
}

template <class Polygon>
static void Check(const std::string& bytes, void (Polygon::*load)(CBufferedFile&),
                  void (Polygon::*dump)(CBufferedFile&) const) {
  std::string first;
  std::string second;
  if (!Reload(bytes, load, dump, first)) return;
  if (!Reload(first, load, dump, second) || second != first) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const bool isText = (data[0] & 1) != 0;
  if ((data[0] & 2) != 0) {
    Check(bytes, isText ? &GPolygon::LoadFromTextFile : &GPolygon::LoadFromBinaryFile,
          isText ? &GPolygon::DumpToTextFile : &GPolygon::DumpToBinaryFile);
  } else {
    Check(bytes, isText ? &GPolygon2d::LoadFromTextFile : &GPolygon2d::LoadFromBinaryFile,
          isText ? &GPolygon2d::DumpToTextFile : &GPolygon2d::DumpToBinaryFile);
  }
  return 0;
}
