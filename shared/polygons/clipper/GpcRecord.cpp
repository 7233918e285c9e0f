// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <atomic>
#include <cstdlib>
#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/Gpc.h"
#include "shared/polygons/clipper/GpcHolder.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"Gpc";
constexpr const wchar_t* CLIPPER_MODULE = L"GPC Library";

std::atomic<GpcMemorySource> memorySource = nullptr;

template <class T>
T* NewArray(int count, int line, const wchar_t* label) {
  const std::size_t bytes = static_cast<std::size_t>(count) * sizeof(T);
  return static_cast<T*>(GpcAlloc(bytes, UNIT, line, label));
}

template <class T>
void CopyArray(const T* source, int count, T* target) {
  for (int i = 0; i < count; ++i) target[i] = source[i];
}

void FreeContours(GpcContour* contours, int count) {
  for (int i = 0; i < count; ++i) GpcFree(contours[i].vertices);
  GpcFree(contours);
}

}  // namespace

void* GpcAlloc(std::size_t size, const wchar_t* unit, int line, const wchar_t* label) {
  if (size == 0) return nullptr;
  const GpcMemorySource source = memorySource.load(std::memory_order_relaxed);
  void* const memory = source != nullptr ? source(size) : std::malloc(size);
  if (memory != nullptr) return memory;
  throw Exception(GString(CLIPPER_MODULE), GString(unit), line,
                  GString(L"GPCAlloc failure: ") + label);
}

void GpcFree(void* memory) {
  std::free(memory);
}

GpcMemorySource GpcSetMemorySource(GpcMemorySource source) {
  return memorySource.exchange(source);
}

void gpc_add_contour(GpcPolygon& polygon, const GpcContour& contour, int holeFlag) {
  const int count = polygon.contourCount;
  GpcPolygonHolder larger;  // owns what has been allocated until it takes the place of the old one
  larger.record.holeFlags = NewArray<int>(count + 1, __LINE__, L"hole flag array creation");
  larger.record.contours = NewArray<GpcContour>(count + 1, __LINE__, L"contour list creation");
  auto* const vertices = NewArray<Vec2d>(contour.vertexCount, __LINE__, L"contour creation");
  CopyArray(contour.vertices, contour.vertexCount, vertices);
  larger.record.contours[count] = {contour.vertexCount, vertices};
  larger.record.holeFlags[count] = holeFlag;
  for (int i = 0; i < count; ++i) {
    larger.record.contours[i] = polygon.contours[i];
    larger.record.holeFlags[i] = polygon.holeFlags != nullptr ? polygon.holeFlags[i] : 0;
  }
  larger.record.contourCount = count + 1;
  polygon.contourCount = 0;  // its contours have moved
  std::swap(polygon, larger.record);
}

void gpc_free_polygon(GpcPolygon& polygon) {
  FreeContours(polygon.contours, polygon.contourCount);
  GpcFree(polygon.holeFlags);
  polygon = GpcPolygon{};
}

void gpc_free_tristrip(GpcTristrip& tristrip) {
  FreeContours(tristrip.strips, tristrip.stripCount);
  tristrip = GpcTristrip{};
}

}  // namespace shr
