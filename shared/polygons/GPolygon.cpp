// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/GPolygon.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <type_traits>
#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/polygons/FlatContours.h"
#include "shared/polygons/FlatOutput.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "shared/polygons/clipper/ContourNesting.h"
#include "shared/polygons/clipper/GpcHolder.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"GPolygon";
constexpr std::size_t MAX_COUNT = std::numeric_limits<int>::max();

[[noreturn]] void ThrowOutOfMemory(int line) {
  ThrowErrorImpl(UNIT, line, OUT_OF_MEMORY_TEXT);
}

/// Returns memory for `count` values; null for none.
template <class T>
T* Allocate(std::size_t count, const wchar_t* label) {
  if (count > MAX_COUNT) ThrowOutOfMemory(__LINE__);
  try {
    return static_cast<T*>(GpcAlloc(count * sizeof(T), UNIT, __LINE__, label));
  } catch (const Exception&) {
    ThrowOutOfMemory(__LINE__);
  }
}

/// Moves the arrays of a record to larger ones.
void Enlarge(GpcPolygon& record, std::size_t capacity) {
  GpcPolygonHolder larger;
  larger.record.holeFlags = Allocate<int>(capacity, L"hole flag array creation");
  larger.record.contours = Allocate<GpcContour>(capacity, L"contour list creation");
  std::copy_n(record.holeFlags, record.contourCount, larger.record.holeFlags);
  std::copy_n(record.contours, record.contourCount, larger.record.contours);
  larger.record.contourCount = std::exchange(record.contourCount, 0);
  std::swap(record, larger.record);
}

/// Returns the contour without the points at its end that repeat the first. Several are rare, but
/// if one of them stayed, a copy of the contour would lose it.
std::span<const Vec2d> Opened(std::span<const Vec2d> contour) {
  while (contour.size() > 1 && contour.front() == contour.back()) {
    contour = contour.first(contour.size() - 1);
  }
  return contour;
}

/// Returns a count of a record as a size; a negative one is a fault of the caller.
std::size_t CheckedCount(int count) {
  if (count < 0) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  return static_cast<std::size_t>(count);
}

std::size_t EmittedContourSize(const GpcContour& contour, bool closed) {
  const auto size = static_cast<std::size_t>(contour.vertexCount);
  return closed && size > 2 ? size + 1 : size;
}

std::size_t CountEmitted(const GpcPolygon& record, bool closed) {
  std::size_t total = 0;
  for (const GpcContour& contour : ContoursOf(record)) total += EmittedContourSize(contour, closed);
  return total;
}

template <class Point>
std::size_t StoreContours(const GpcPolygon& record, Point* points, unsigned int* counts,
                          bool closed) {
  if (points == nullptr) return CountEmitted(record, closed);
  Point* end = points;
  for (const GpcContour& contour : ContoursOf(record)) {
    const std::size_t size = EmittedContourSize(contour, closed);
    const std::span<const Vec2d> vertices = VerticesOf(contour);
    end = CopyPoints(vertices, end);
    if (size > vertices.size()) AssignPoint(*end++, vertices.front());
    if (counts != nullptr) *counts++ = static_cast<unsigned int>(size);
  }
  return static_cast<std::size_t>(end - points);
}

template <class Point>
std::size_t StoreContours(const GpcPolygon& record, std::vector<Point>& points,
                          std::vector<unsigned int>& counts, bool closed) {
  points.resize(CountEmitted(record, closed));
  counts.resize(ContoursOf(record).size());
  Point none;
  return StoreContours(record, points.empty() ? &none : points.data(), counts.data(), closed);
}

template <class Point>
std::size_t StoreJoined(const GpcPolygon& record, Point* points) {
  RingJoiner<Point> joiner(points);
  std::vector<Vec2d> closed;
  for (const GpcContour& contour : ContoursOf(record)) {
    const std::span<const Vec2d> vertices = VerticesOf(contour);
    closed.assign(vertices.begin(), vertices.end());
    if (closed.size() > 2) closed.push_back(closed.front());
    joiner.Add(closed);
  }
  return joiner.Size();
}

/// Returns the contour closed and turned as `turn` says.
Ring2d MakeRing(const GpcContour& contour, int turn) {
  const std::span<const Vec2d> vertices = VerticesOf(contour);
  Ring2d ring;
  ring.reserve(vertices.size() + 1);
  ring.assign(vertices.begin(), vertices.end());
  ring.push_back(vertices.front());
  if (TurnOf(vertices) != turn) std::reverse(ring.begin(), ring.end());
  return ring;
}

}  // namespace

GPolygon::GPolygon() noexcept = default;

GPolygon::GPolygon(std::span<const Vec2d> points) : GPolygon() {
  AppendAll(1, [&] { Append(points, 0); });
}

GPolygon::GPolygon(const Vec2d* points, std::size_t count)
    : GPolygon(CheckedSpan(points, count, UNIT)) {}

GPolygon::GPolygon(const POINT* points, std::size_t count)
    : GPolygon(ToVec2d(CheckedSpan(points, count, UNIT))) {}

GPolygon::GPolygon(const Vec2d* points, const unsigned int* counts, std::size_t numContours)
    : GPolygon() {
  AddContours(points, counts, numContours);
}

GPolygon::GPolygon(const POINT* points, const unsigned int* counts, std::size_t numContours)
    : GPolygon() {
  const std::span<const unsigned int> sizes = CheckedSpan(counts, numContours, UNIT);
  AddContours(ToVec2d(CheckedSpan(points, SumOfCounts(sizes), UNIT)), sizes);
}

GPolygon::GPolygon(std::span<const Vec2d> points, std::span<const unsigned int> counts)
    : GPolygon() {
  AddContours(points, counts);
}

GPolygon::GPolygon(double xMin, double yMin, double xMax, double yMax) : GPolygon() {
  const Vec2d corners[] = {{xMin, yMax}, {xMax, yMax}, {xMax, yMin}, {xMin, yMin}};
  AppendAll(1, [&] { Append(corners, 0); });
}

GPolygon::GPolygon(const Box2d& box) : GPolygon(box.xMin(), box.yMin(), box.xMax(), box.yMax()) {}

GPolygon::GPolygon(const RECT& rectangle)
    : GPolygon(static_cast<double>(std::min(rectangle.left, rectangle.right)),
               static_cast<double>(std::min(rectangle.top, rectangle.bottom)),
               static_cast<double>(std::max(rectangle.left, rectangle.right)),
               static_cast<double>(std::max(rectangle.top, rectangle.bottom))) {}

GPolygon::GPolygon(const tagGCONTOURLIST& contours) : GPolygon() {
  AppendList(contours);
}

GPolygon::GPolygon(const MultiPolygon2d& polygons) : GPolygon() {
  AppendAll(0, [&] {
    for (const Polygon2d& polygon : polygons) {
      Append(polygon.outer(), 0);
      for (const Ring2d& inner : polygon.inners()) Append(inner, 1);
    }
  });
}

GPolygon::GPolygon(const GPolygon2d& polygons) : GPolygon() {
  MultiPolygon2d model;
  polygons.GetMultiPolygon(model);
  *this = GPolygon(model);
}

GPolygon::GPolygon(const GPolygon& other) : GPolygon() {
  AddContours(other);
}

GPolygon& GPolygon::operator=(const GPolygon& other) {
  if (this == &other) return *this;
  return *this = GPolygon(other);
}

GPolygon::GPolygon(GPolygon&& other) noexcept
    : record_(std::exchange(other.record_, {})),
      capacity_(std::exchange(other.capacity_, 0)),
      box_(std::exchange(other.box_, {})) {}

GPolygon& GPolygon::operator=(GPolygon&& other) noexcept {
  GPolygon taken(std::move(other));
  std::swap(record_, taken.record_);
  std::swap(capacity_, taken.capacity_);
  std::swap(box_, taken.box_);
  return *this;
}

GPolygon::~GPolygon() {
  gpc_free_polygon(record_);
}

void GPolygon::ConstructFromFloats(const FloatContourList& contours) {
  GPolygon result;
  result.AppendList(contours);
  *this = std::move(result);
}

void GPolygon::MakeEmpty() noexcept {
  *this = GPolygon();
}

/// Makes room for further contours. Growth by powers of two keeps repeated calls cheap.
void GPolygon::Reserve(std::size_t contours) {
  const std::size_t needed = static_cast<std::size_t>(record_.contourCount) + contours;
  if (needed <= static_cast<std::size_t>(capacity_)) return;
  const std::size_t capacity = needed > MAX_COUNT / 2 ? needed : std::bit_ceil(needed);
  Enlarge(record_, capacity);
  capacity_ = static_cast<int>(capacity);
}

void GPolygon::Append(std::span<const Vec2d> contour, int holeFlag) {
  const std::span<const Vec2d> vertices = Opened(contour);
  Reserve(1);
  auto* const copy = Allocate<Vec2d>(vertices.size(), L"vertex creation");
  std::copy(vertices.begin(), vertices.end(), copy);
  record_.holeFlags[record_.contourCount] = holeFlag;
  record_.contours[record_.contourCount] = {static_cast<int>(vertices.size()), copy};
  ++record_.contourCount;
  for (const Vec2d& vertex : vertices) box_.ExtendBy(vertex);
}

void GPolygon::TruncateTo(int contours) noexcept {
  while (record_.contourCount > contours) {
    GpcFree(record_.contours[--record_.contourCount].vertices);
  }
}

/// Calls `append`, which appends contours; when it throws, they are taken back.
template <class Function>
void GPolygon::AppendAll(std::size_t contours, Function append) {
  const int before = record_.contourCount;
  const Box2d box = box_;
  try {
    if (contours > 0) Reserve(contours);
    append();
  } catch (...) {
    TruncateTo(before);
    box_ = box;
    if (before == 0) MakeEmpty();
    throw;
  }
}

/// Takes over a record in place of the own one and leaves it empty.
void GPolygon::Take(GpcPolygon& record) noexcept {
  MakeEmpty();
  record_ = std::exchange(record, {});
  capacity_ = record_.contourCount;
  for (const GpcContour& contour : ContoursOf(record_)) {
    for (const Vec2d& vertex : VerticesOf(contour)) box_.ExtendBy(vertex);
  }
}

/// Takes over a record whose contours may be closed.
void GPolygon::TakeOpened(GpcPolygon& record) noexcept {
  for (int i = 0; i < record.contourCount; ++i) {
    record.contours[i].vertexCount =
        static_cast<int>(Opened(VerticesOf(record.contours[i])).size());
  }
  Take(record);
}

/// Appends the contours of a list, whose vertices have any precision.
template <class List>
void GPolygon::AppendList(const List& list) {
  const std::span contours = CheckedSpan(list.contours, CheckedCount(list.contourCount), UNIT);
  AppendAll(contours.size(), [&] {
    std::vector<Vec2d> points;
    for (std::size_t i = 0; i < contours.size(); ++i) {
      const std::span vertices = CheckedSpan<std::remove_cvref_t<decltype(*contours[i].vertices)>>(
          contours[i].vertices, CheckedCount(contours[i].vertexCount), UNIT);
      points.assign(vertices.begin(), vertices.end());
      Append(points, list.holeFlags != nullptr ? list.holeFlags[i] : 0);
    }
  });
}

void GPolygon::AddContours(const Vec2d* points, const unsigned int* counts,
                           std::size_t numContours) {
  AppendAll(numContours, [&] {
    ForEachContour(points, counts, numContours, UNIT,
                   [&](std::span<const Vec2d> contour) { Append(contour, 0); });
  });
}

void GPolygon::AddContours(std::span<const Vec2d> points, std::span<const unsigned int> counts) {
  CheckCounts(points, counts, UNIT);
  AddContours(points.data(), counts.data(), counts.size());
}

void GPolygon::AddContours(const GPolygon& other) {
  const int count = other.record_.contourCount;
  AppendAll(static_cast<std::size_t>(count), [&] {
    for (int i = 0; i < count; ++i) {
      Append(VerticesOf(other.record_.contours[i]), other.record_.holeFlags[i]);
    }
  });
}

std::size_t GPolygon::GetNumContours() const noexcept {
  return static_cast<std::size_t>(record_.contourCount);
}

std::span<const Vec2d> GPolygon::GetContour(std::size_t index) const {
  if (index >= GetNumContours()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  return VerticesOf(record_.contours[index]);
}

std::size_t GPolygon::GetContourVertexCount(std::size_t index) const {
  return GetContour(index).size();
}

bool GPolygon::IsHole(std::size_t index) const {
  if (index >= GetNumContours()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  return record_.holeFlags[index] != 0;
}

std::size_t GPolygon::GetTotalVertexCount() const noexcept {
  return CountEmitted(record_, false);
}

Box2d GPolygon::GetBBox() const noexcept {
  return box_;
}

const GpcPolygon& GPolygon::GetRecord() const noexcept {
  return record_;
}

bool GPolygon::IsRectangle(Box2d* bounds) const {
  if (record_.contourCount != 1 || record_.contours[0].vertexCount != 4) return false;
  const Vec2d* const p = record_.contours[0].vertices;
  if (p[1].y != p[0].y || p[3].y != p[2].y || p[2].x != p[1].x || p[3].x != p[0].x) return false;
  if (bounds != nullptr) *bounds = Box2d(p[3], p[1]);
  return true;
}

void GPolygon::GetMultiPolygon(MultiPolygon2d& polygons) const {
  MultiPolygon2d result;
  for (const ContourGroup& group : GroupContours(ContoursOf(record_))) {
    Polygon2d& polygon = result.emplace_back();
    polygon.outer() = MakeRing(record_.contours[group.outer], -1);
    for (const std::size_t hole : group.holes) {
      polygon.inners().push_back(MakeRing(record_.contours[hole], 1));
    }
  }
  polygons = std::move(result);
}

std::size_t GPolygon::GetPolyPolygon(Vec2d* points, unsigned int* counts, bool closed) const {
  return StoreContours(record_, points, counts, closed);
}

std::size_t GPolygon::GetPolyPolygon(POINT* points, unsigned int* counts, bool closed) const {
  return StoreContours(record_, points, counts, closed);
}

std::size_t GPolygon::GetPolyPolygon(std::vector<Vec2d>& points, std::vector<unsigned int>& counts,
                                     bool closed) const {
  return StoreContours(record_, points, counts, closed);
}

std::size_t GPolygon::GetPolyPolygon(std::vector<POINT>& points, std::vector<unsigned int>& counts,
                                     bool closed) const {
  return StoreContours(record_, points, counts, closed);
}

std::size_t GPolygon::GetPolygon(Vec2d* points) const {
  return StoreJoined(record_, points);
}

std::size_t GPolygon::GetPolygon(POINT* points) const {
  return StoreJoined(record_, points);
}

std::size_t GPolygon::GetPolygon(std::vector<Vec2d>& points) const {
  points.resize(StoreJoined<Vec2d>(record_, nullptr));
  return points.empty() ? 0 : StoreJoined(record_, points.data());
}

std::size_t GPolygon::GetLegacyMultiPolygonAsSinglePolygon(Vec2d* points) const {
  return StoreJoined(record_, points);
}

std::size_t GPolygon::GetLegacyMultiPolygonAsSinglePolygon(POINT* points) const {
  return StoreJoined(record_, points);
}

}  // namespace shr
