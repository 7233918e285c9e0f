// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The file forms of the clipper's record. Readers take memory for what they have read, never for
// what a count announces.
//
// A text number has at least fifteen decimals and as many as it takes to read back as the same
// double. The C library's functions are not used for numbers: they follow the locale.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <new>
#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/Gpc.h"
#include "shared/polygons/clipper/GpcHolder.h"
#include "shared/polygons/formats/PolygonFileIo.h"
#include "shared/text/NumberParsing.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"Gpc";
constexpr int MIN_DECIMALS = 15;
constexpr std::size_t NUMBER_SIZE = 2048;
constexpr std::size_t VERTEX_SIZE = sizeof(Vec2d);

/// Contours while they are read.
class RecordBuilder {
public:
  RecordBuilder() = default;
  ~RecordBuilder() {
    for (const GpcContour& contour : contours_) GpcFree(contour.vertices);
  }
  RecordBuilder(const RecordBuilder&) = delete;
  RecordBuilder& operator=(const RecordBuilder&) = delete;

  void Add(const std::vector<Vec2d>& vertices, int holeFlag) {
    holeFlags_.push_back(holeFlag);
    GpcContour& contour = contours_.emplace_back();
    contour.vertices = NewArray<Vec2d>(vertices.size(), __LINE__, L"vertex creation");
    contour.vertexCount = static_cast<int>(vertices.size());
    std::copy(vertices.begin(), vertices.end(), contour.vertices);
  }

  GpcPolygon Finish() {
    GpcPolygonHolder result;
    const std::size_t count = contours_.size();
    result.record.holeFlags = NewArray<int>(count, __LINE__, L"hole flag array creation");
    result.record.contours = NewArray<GpcContour>(count, __LINE__, L"contour creation");
    std::copy(holeFlags_.begin(), holeFlags_.end(), result.record.holeFlags);
    std::copy(contours_.begin(), contours_.end(), result.record.contours);
    result.record.contourCount = static_cast<int>(count);
    contours_.clear();
    return std::exchange(result.record, {});
  }

private:
  template <class T>
  static T* NewArray(std::size_t count, int line, const wchar_t* label) {
    return static_cast<T*>(GpcAlloc(count * sizeof(T), UNIT, line, label));
  }

  std::vector<int> holeFlags_;
  std::vector<GpcContour> contours_;
};

bool IsHoleFlag(int flag) {
  return flag == 0 || flag == 1;
}

/// Reads words of a text as numbers.
class TextReader {
public:
  explicit TextReader(ByteSource& source) : source_(source) {}

  /// Reads a whole number that is not negative.
  bool ReadCount(int& value) {
    if (!source_.ReadWord(word_)) return false;
    const char* const end = word_.data() + word_.size();
    const auto [last, error] = std::from_chars(word_.data(), end, value);
    return error == std::errc() && last == end && value >= 0;
  }

  /// A number too large for a double is an infinity: rounding to the digits of a file can make it
  /// one.
  bool ReadNumber(double& value) {
    if (!source_.ReadWord(word_)) return false;
    const char* const end = word_.data() + word_.size();
    const RealPrefix<char> number = ParseRealPrefix<char>(word_.data(), end);
    value = number.value;
    return number.status != RealStatus::None && number.end == end;
  }

private:
  ByteSource& source_;
  std::string word_;
};

bool ReadTextContours(TextReader reader, bool holeFlags, RecordBuilder& builder) {
  int contours = 0;
  if (!reader.ReadCount(contours)) return false;
  std::vector<Vec2d> vertices;
  for (; contours > 0; --contours) {
    int count = 0;
    int holeFlag = 0;
    if (!reader.ReadCount(count)) return false;
    if (holeFlags && (!reader.ReadCount(holeFlag) || !IsHoleFlag(holeFlag))) return false;
    vertices.clear();
    for (; count > 0; --count) {
      Vec2d& vertex = vertices.emplace_back();
      if (!reader.ReadNumber(vertex.x) || !reader.ReadNumber(vertex.y)) return false;
    }
    builder.Add(vertices, holeFlag);
  }
  return true;
}

bool ReadBinaryContours(ByteSource& source, bool holeFlags, RecordBuilder& builder) {
  const std::size_t headSize = holeFlags ? 2 * sizeof(int) : sizeof(int);
  const auto readCount = [&source](int& count, std::size_t size) {
    return source.Read(&count, sizeof count) && count >= 0 &&
           source.CanHold(static_cast<std::uint64_t>(count), size);
  };
  int contours = 0;
  if (!readCount(contours, headSize)) return false;
  std::vector<Vec2d> vertices;
  for (; contours > 0; --contours) {
    int count = 0;
    int holeFlag = 0;
    if (!readCount(count, VERTEX_SIZE)) return false;
    if (holeFlags && (!source.Read(&holeFlag, sizeof holeFlag) || !IsHoleFlag(holeFlag))) {
      return false;
    }
    vertices.clear();
    if (!source.ReadPoints(static_cast<std::uint64_t>(count), vertices)) return false;
    builder.Add(vertices, holeFlag);
  }
  return true;
}

/// Returns how many decimals it takes to tell a finite value from its neighbours.
int DecimalsOf(double value) {
  char buffer[64];
  const char* const end =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific).ptr;
  const char* const exponentSign = std::find(buffer, const_cast<char*>(end), 'e');
  int exponent = 0;
  std::from_chars(exponentSign + (exponentSign[1] == '+' ? 2 : 1), end, exponent);
  const auto digits = std::count_if(static_cast<const char*>(buffer), exponentSign,
                                    [](char c) { return c >= '0' && c <= '9'; });
  return static_cast<int>(digits) - 1 - exponent;
}

/// Appends a number with a space in the place of a plus sign.
void AppendNumber(std::string& text, double value) {
  char buffer[NUMBER_SIZE];
  const int decimals =
      std::isfinite(value) ? std::max(MIN_DECIMALS, DecimalsOf(value)) : MIN_DECIMALS;
  if (!std::signbit(value)) text += ' ';
  text.append(
      buffer,
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals).ptr);
}

void AppendCount(std::string& text, int count) {
  text += std::to_string(count);
  text += '\n';
}

int HoleFlagOf(const GpcPolygon& polygon, int contour) {
  return polygon.holeFlags != nullptr && polygon.holeFlags[contour] != 0 ? 1 : 0;
}

/// Reads through a stream; memory that fails is a failure to read.
template <class Function>
bool ReadStream(std::FILE* file, Function read) {
  if (file == nullptr) return false;
  StreamSource source(file);
  try {
    return read(source);
  } catch (const Exception&) {
    return false;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

bool FinishStream(std::FILE* file, ByteSink& sink) {
  return sink.Finish() && std::fflush(file) == 0;
}

}  // namespace

bool ReadGpcText(ByteSource& source, bool holeFlags, GpcPolygon& polygon) {
  RecordBuilder builder;
  if (!ReadTextContours(TextReader(source), holeFlags, builder)) return false;
  polygon = builder.Finish();
  return true;
}

bool ReadGpcBinary(ByteSource& source, bool holeFlags, GpcPolygon& polygon) {
  source.Measure();
  RecordBuilder builder;
  if (!ReadBinaryContours(source, holeFlags, builder)) return false;
  polygon = builder.Finish();
  return true;
}

void WriteGpcText(ByteSink& sink, bool holeFlags, const GpcPolygon& polygon) {
  std::string text;
  AppendCount(text, polygon.contourCount);
  for (int i = 0; i < polygon.contourCount; ++i) {
    AppendCount(text, polygon.contours[i].vertexCount);
    if (holeFlags) AppendCount(text, HoleFlagOf(polygon, i));
    for (const Vec2d& vertex : VerticesOf(polygon.contours[i])) {
      AppendNumber(text, vertex.x);
      text += ' ';
      AppendNumber(text, vertex.y);
      text += '\n';
      sink.Write(text);
      text.clear();
    }
  }
  sink.Write(text);
}

void WriteGpcBinary(ByteSink& sink, bool holeFlags, const GpcPolygon& polygon) {
  sink.Write(&polygon.contourCount, sizeof(int));
  for (int i = 0; i < polygon.contourCount; ++i) {
    const GpcContour& contour = polygon.contours[i];
    const int holeFlag = HoleFlagOf(polygon, i);
    sink.Write(&contour.vertexCount, sizeof(int));
    if (holeFlags) sink.Write(&holeFlag, sizeof holeFlag);
    sink.Write(contour.vertices, VerticesOf(contour).size_bytes());
  }
}

bool gpc_read_polygon(std::FILE* file, bool holeFlags, GpcPolygon& polygon) {
  return ReadStream(file,
                    [&](ByteSource& source) { return ReadGpcText(source, holeFlags, polygon); });
}

bool gpc_read_polygon_binary(std::FILE* file, bool holeFlags, GpcPolygon& polygon) {
  return ReadStream(file,
                    [&](ByteSource& source) { return ReadGpcBinary(source, holeFlags, polygon); });
}

bool gpc_write_polygon(std::FILE* file, bool holeFlags, const GpcPolygon& polygon) {
  if (file == nullptr) return false;
  StreamSink sink(file);
  WriteGpcText(sink, holeFlags, polygon);
  return FinishStream(file, sink);
}

bool gpc_write_polygon_binary(std::FILE* file, bool holeFlags, const GpcPolygon& polygon) {
  if (file == nullptr) return false;
  StreamSink sink(file);
  WriteGpcBinary(sink, holeFlags, polygon);
  return FinishStream(file, sink);
}

}  // namespace shr
