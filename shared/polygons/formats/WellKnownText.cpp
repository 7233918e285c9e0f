// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <utility>

#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "shared/polygons/formats/PolygonText.h"
#include "shared/polygons/formats/PolygonTextWriter.h"
#include "shared/polygons/formats/TextCursor.h"

namespace shr {
namespace {

constexpr PolygonTextStyle STYLE = {
    "POLYGON ", "MULTIPOLYGON ", "POLYGON EMPTY", "", '(', ')', "", " ", "", ", "};

/// How many numbers a point may have.
struct Dimensions {
  int fewest = 2;
  int most = 4;
};

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

class Reader {
public:
  explicit Reader(std::string_view text) : cursor_(text, L"WKT") {}

  MultiPolygon2d Read() {
    std::size_t offset = 0;
    std::string word = Word(offset);
    if (word == "SRID") {
      SkipReference();
      word = Word(offset);
    }
    const bool isMany = word.starts_with("MULTI");
    const std::string_view kind = std::string_view(word).substr(isMany ? 5 : 0);
    if (!kind.starts_with("POLYGON")) {
      cursor_.FailAt(offset, L"The text is no POLYGON or MULTIPOLYGON.");
    }
    MultiPolygon2d polygons;
    if (ReadDimensions(kind.substr(7), offset)) {
      if (isMany) {
        ReadPolygons(polygons);
      } else {
        ReadPolygon(polygons);
      }
    }
    cursor_.SkipSpace();
    if (!cursor_.IsAtEnd()) cursor_.Fail(L"Something follows the polygon.");
    return polygons;
  }

private:
  /// Returns the letters that come next in capitals, and where they begin.
  std::string Word(std::size_t& offset) {
    cursor_.SkipSpace();
    offset = cursor_.Offset();
    std::string word;
    while (IsLetter(cursor_.Peek())) word += static_cast<char>(cursor_.Next() & ~0x20);
    return word;
  }

  /// Skips the number of a reference system.
  void SkipReference() {
    cursor_.Expect('=', L"The sign = is missing.");
    if (!IsDigit(cursor_.Peek())) cursor_.Fail(L"A number is missing.");
    while (IsDigit(cursor_.Peek())) cursor_.Next();
    cursor_.Expect(';', L"The sign ; is missing.");
  }

  /// Reads what stands between the kind and the first parenthesis; `suffix` is what was written
  /// together with the kind. Returns false when it says that nothing follows.
  bool ReadDimensions(std::string_view suffix, std::size_t offset) {
    std::string word(suffix);
    if (word.empty()) word = Word(offset);
    if (word == "Z" || word == "M") dimensions_ = {3, 3};
    if (word == "ZM") dimensions_ = {4, 4};
    if (dimensions_.fewest > 2) word = Word(offset);
    if (!word.empty() && word != "EMPTY") {
      cursor_.FailAt(offset, L"The word is neither Z, M, ZM nor EMPTY.");
    }
    return word.empty();
  }

  void ReadPolygons(MultiPolygon2d& polygons) {
    Open();
    do {
      std::size_t offset = 0;
      const std::string word = Word(offset);
      if (!word.empty() && word != "EMPTY") cursor_.FailAt(offset, L"The word is not EMPTY.");
      if (word.empty()) ReadPolygon(polygons);
    } while (cursor_.Take(','));
    Close();
  }

  void ReadPolygon(MultiPolygon2d& polygons) {
    Open();
    Polygon2d& polygon = polygons.emplace_back();
    ReadRing(polygon.outer());
    while (cursor_.Take(',')) ReadRing(polygon.inners().emplace_back());
    Close();
  }

  void ReadRing(Ring2d& ring) {
    Open();
    do {
      ring.push_back(ReadPoint());
    } while (cursor_.Take(','));
    Close();
  }

  Vec2d ReadPoint() {
    CheckClosed();
    double numbers[4] = {cursor_.Number(), 0.0, 0.0, 0.0};
    int count = 1;
    for (; count < dimensions_.most && !IsEndOfPoint(); ++count) {
      const std::size_t before = cursor_.Offset();
      CheckClosed();
      if (cursor_.Offset() == before) cursor_.Fail(L"A space is missing between two numbers.");
      numbers[count] = cursor_.Number();
    }
    if (count < dimensions_.fewest) cursor_.Fail(L"A number is missing.");
    return Vec2d(numbers[0], numbers[1]);
  }

  /// Looks behind the spaces without a step.
  bool IsEndOfPoint() const {
    TextCursor ahead = cursor_;
    ahead.SkipSpace();
    return ahead.Peek() == ',' || ahead.Peek() == ')';
  }

  void Open() {
    if (depth_ > 0) CheckClosed();
    cursor_.Expect('(', L"The sign ( is missing.");
    ++depth_;
  }
  void Close() {
    CheckClosed();
    cursor_.Expect(')', L"The sign , or ) is missing.");
    --depth_;
  }
  /// Goes to what comes next within parentheses.
  void CheckClosed() {
    cursor_.SkipSpace();
    if (cursor_.IsAtEnd()) cursor_.Fail(L"The text ends, but a parenthesis is not closed.");
  }

  TextCursor cursor_;
  Dimensions dimensions_;
  int depth_ = 0;  ///< open parentheses
};

}  // namespace

std::string ToWkt(const MultiPolygon2d& polygon) {
  return WritePolygons(polygon, STYLE);
}

std::string ToWkt(const GPolygon& polygon) {
  return ToWkt(FinitePolygons(polygon));
}

std::string ToWkt(const GPolygon2d& polygon) {
  MultiPolygon2d model;
  polygon.GetMultiPolygon(model);
  return ToWkt(model);
}

void ParseWkt(std::string_view text, MultiPolygon2d& polygon) {
  polygon = Reader(text).Read();
}

void ParseWkt(std::string_view text, GPolygon& polygon) {
  polygon = GPolygon(Reader(text).Read());
}

void ParseWkt(std::string_view text, GPolygon2d& polygon) {
  polygon = GPolygon2d(Reader(text).Read());
}

}  // namespace shr
