// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The file forms of `GPolygon2d`. Readers take memory for what they have read, never for what a
// count announces; where the file has a length, a count that cannot be true fails at once.

#include <charconv>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/GPolygon2dModel.h"
#include "shared/polygons/formats/PolygonFileIo.h"
#include "shared/text/NumberParsing.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"GPolygon2d";
constexpr int SIGNIFICANT_DIGITS = 16;

[[noreturn]] void ThrowUnreadable(const CBufferedFile& file, int line, const wchar_t* operation) {
  ThrowErrorImpl(UNIT, line, L"Unable to read '%s'.\n%s", NameOf(file).c_str(), operation);
}

/// Reads a count of items of at least `size` bytes each.
bool ReadCount(ByteSource& source, std::uint64_t size, std::uint64_t& count) {
  return source.Read(&count, sizeof count) && source.CanHold(count, size);
}

bool ReadRing(ByteSource& source, std::vector<Vec2d>& points) {
  std::uint64_t count = 0;
  return ReadCount(source, sizeof(Vec2d), count) && source.ReadPoints(count, points);
}

bool ReadPolygons(ByteSource& source, GPolygon2dModel& model) {
  constexpr std::uint64_t RING_SIZE = sizeof(std::uint64_t);
  std::uint64_t polygons = 0;
  if (!ReadCount(source, 2 * RING_SIZE, polygons)) return false;
  for (; polygons > 0; --polygons) {
    if (!ReadRing(source, model.points)) return false;
    model.EndOuterRing();
    std::uint64_t inners = 0;
    if (!ReadCount(source, RING_SIZE, inners)) return false;
    for (; inners > 0; --inners) {
      if (!ReadRing(source, model.points)) return false;
      model.EndInnerRing();
    }
  }
  return true;
}

std::string_view Trimmed(std::string_view text) {
  constexpr const char* SPACE = " \t\r\v\f";
  const std::size_t first = text.find_first_not_of(SPACE);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(SPACE) - first + 1);
}

/// A number too large for a double is an infinity: rounding to the digits of a file can make it
/// one.
bool ParseNumber(std::string_view text, double& value) {
  const char* const end = text.data() + text.size();
  const RealPrefix<char> number = ParseRealPrefix(text.data(), end);
  value = number.value;
  return number.status != RealStatus::None && number.end == end;
}

/// The lines of a text that are neither comments nor blank.
class LineReader {
public:
  explicit LineReader(CBufferedFile& file) : file_(file) {}

  bool ReadCount(unsigned int& count) {
    if (!Advance()) return false;
    const char* const end = content_.data() + content_.size();
    const auto [last, error] = std::from_chars(content_.data(), end, count);
    return error == std::errc() && last == end;
  }

  bool ReadPoint(Vec2d& point) {
    if (!Advance()) return false;
    const std::size_t comma = content_.find(',');
    return comma != content_.npos && ParseNumber(Trimmed(content_.substr(0, comma)), point.x) &&
           ParseNumber(Trimmed(content_.substr(comma + 1)), point.y);
  }

private:
  bool Advance() {
    do {
      line_.clear();
      if (!file_.ReadString(line_)) return false;
      content_ = Trimmed(line_);
    } while (content_.empty() || line_.front() == ';');
    return true;
  }

  CBufferedFile& file_;
  std::string line_;
  std::string_view content_;
};

bool ReadRing(LineReader& reader, std::vector<Vec2d>& points) {
  unsigned int count = 0;
  if (!reader.ReadCount(count)) return false;
  for (; count > 0; --count) {
    if (!reader.ReadPoint(points.emplace_back())) return false;
  }
  return true;
}

bool ReadPolygons(LineReader reader, GPolygon2dModel& model) {
  unsigned int polygons = 0;
  if (!reader.ReadCount(polygons)) return false;
  for (; polygons > 0; --polygons) {
    if (!ReadRing(reader, model.points)) return false;
    model.EndOuterRing();
    unsigned int inners = 0;
    if (!reader.ReadCount(inners)) return false;
    for (; inners > 0; --inners) {
      if (!ReadRing(reader, model.points)) return false;
      model.EndInnerRing();
    }
  }
  return true;
}

void WriteCount(ByteSink& sink, std::uint64_t count) {
  sink.Write(&count, sizeof count);
}

void AppendNumber(std::string& text, double value) {
  char buffer[32];
  text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value,
                                    std::chars_format::general, SIGNIFICANT_DIGITS)
                          .ptr);
}

/// Writes a comment, a line that begins with ";", and the count it names.
void WriteCountLines(ByteSink& sink, const std::string& comment, std::size_t count) {
  sink.Write(";" + comment + "\n" + std::to_string(count) + "\n");
}

void WritePointLines(ByteSink& sink, std::span<const Vec2d> ring) {
  std::string line;
  for (const Vec2d& point : ring) {
    line.clear();
    AppendNumber(line, point.x);
    line += ", ";
    AppendNumber(line, point.y);
    line += '\n';
    sink.Write(line);
  }
}

}  // namespace

void GPolygon2d::LoadFromBinaryFile(CBufferedFile& file) {
  BufferedSource source(file);
  source.Measure();
  GPolygon2dModel model;
  if (!ReadPolygons(source, model)) {
    ThrowUnreadable(file, __LINE__, L"GPolygon2d::LoadFromBinaryFile");
  }
  *this = GPolygon2d(std::move(model));
}

void GPolygon2d::LoadFromTextFile(CBufferedFile& file) {
  GPolygon2dModel model;
  if (!ReadPolygons(LineReader(file), model)) {
    ThrowUnreadable(file, __LINE__, L"GPolygon2d::LoadFromTextFile");
  }
  *this = GPolygon2d(std::move(model));
}

void GPolygon2d::DumpToBinaryFile(CBufferedFile& file) const {
  const GPolygon2dModel& model = Model();
  BufferedSink sink(file);
  WriteCount(sink, model.polygons.size());
  for (std::size_t i = 0; i < model.polygons.size(); ++i) {
    const std::size_t outer = model.FirstRing(i);
    const std::size_t end = model.polygons[i].endRing;
    for (std::size_t ring = outer; ring < end; ++ring) {
      WriteCount(sink, model.Ring(ring).size());
      sink.Write(model.Ring(ring).data(), model.Ring(ring).size_bytes());
      if (ring == outer) WriteCount(sink, end - outer - 1);
    }
  }
  sink.Finish();
}

void GPolygon2d::DumpToTextFile(CBufferedFile& file) const {
  const GPolygon2dModel& model = Model();
  BufferedSink sink(file);
  WriteCountLines(sink, "MultiPolygon.size()", model.polygons.size());
  for (std::size_t i = 0; i < model.polygons.size(); ++i) {
    const std::size_t outer = model.FirstRing(i);
    const std::size_t end = model.polygons[i].endRing;
    const std::string polygon = "Polygon[" + std::to_string(i) + "].";
    WriteCountLines(sink, polygon + "outer().size()", model.Ring(outer).size());
    WritePointLines(sink, model.Ring(outer));
    WriteCountLines(sink, polygon + "inners().size()", end - outer - 1);
    for (std::size_t j = 0; outer + 1 + j < end; ++j) {
      const std::span<const Vec2d> ring = model.Ring(outer + 1 + j);
      WriteCountLines(sink, polygon + "inners[" + std::to_string(j) + "].size()", ring.size());
      WritePointLines(sink, ring);
    }
  }
  sink.Finish();
}

}  // namespace shr
