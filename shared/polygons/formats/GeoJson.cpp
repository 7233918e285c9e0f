// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The reader goes through the text once. Members of an object may come in any order: coordinates in
// front of the type that says how to read them are skipped and read when the object ends, all
// others are read where they stand.

#include <algorithm>
#include <array>
#include <utility>

#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "shared/polygons/formats/PolygonText.h"
#include "shared/polygons/formats/PolygonTextWriter.h"
#include "shared/polygons/formats/TextCursor.h"

namespace shr {
namespace {

constexpr PolygonTextStyle STYLE = {R"({"type":"Polygon","coordinates":)",
                                    R"({"type":"MultiPolygon","coordinates":)",
                                    R"({"type":"Polygon","coordinates":[]})",
                                    "}",
                                    '[',
                                    ']',
                                    "[",
                                    ",",
                                    "]",
                                    ","};

constexpr int MAX_DEPTH = 64;
constexpr std::size_t NOWHERE = static_cast<std::size_t>(-1);
/// Stands for a character that no name of RFC 7946 contains.
constexpr char OTHER_CHARACTER = '\x7F';

enum class Kind { None, Polygon, MultiPolygon, GeometryCollection, Feature, FeatureCollection };
enum class Place { Top, Geometry, Feature };

/// The members with a meaning, but for "type"; each belongs to one kind of object or two.
enum Member : std::size_t { COORDINATES, GEOMETRIES, GEOMETRY, FEATURES, NUM_MEMBERS };
constexpr const char* MEMBER_NAMES[NUM_MEMBERS] = {"coordinates", "geometries", "geometry",
                                                   "features"};

constexpr struct {
  const char* name;
  Kind kind;
  Member member;
} KINDS[] = {
    {"Polygon", Kind::Polygon, COORDINATES},
    {"MultiPolygon", Kind::MultiPolygon, COORDINATES},
    {"GeometryCollection", Kind::GeometryCollection, GEOMETRIES},
    {"Feature", Kind::Feature, GEOMETRY},
    {"FeatureCollection", Kind::FeatureCollection, FEATURES},
};

/// Returns the value of a hexadecimal digit, or -1.
int HexDigit(char c) {
  if (IsDigit(c)) return c - '0';
  const int letter = (c | 0x20) - 'a';
  return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

/// Syntax of JSON: strings, numbers, and values to skip.
class JsonCursor : public TextCursor {
public:
  explicit JsonCursor(std::string_view text) : TextCursor(text, L"GeoJSON") {}

  std::string String() {
    Expect('"', L"A string is missing.");
    std::string value;
    for (;;) {
      const std::size_t offset = Offset();
      const char c = Next();
      if (c == '"') return value;
      if (static_cast<unsigned char>(c) < 0x20) FailAt(offset, L"The string does not end.");
      value += c == '\\' ? Escaped() : c;
    }
  }

  /// Reads the name of a member and what separates it from the value.
  std::string Name() {
    std::string name = String();
    Expect(':', L"The sign : is missing.");
    return name;
  }

  double JsonNumber() {
    SkipSpace();
    const std::size_t start = Offset();
    SkipNumber();
    const std::size_t end = Offset();
    MoveTo(start);
    const double value = Number();
    if (Offset() != end) FailAt(start, L"The number is wrong.");
    return value;
  }

  /// Skips a value of any kind and depth.
  void SkipValue() {
    std::string closing;  // the sign that ends each value that has begun
    do {
      SkipSpace();
      if (Peek() == '[' || Peek() == '{') {
        closing += Next() == '[' ? ']' : '}';
        if (!Take(closing.back())) {
          if (closing.back() == '}') Name();
          continue;
        }
        closing.pop_back();
      } else {
        SkipScalar();
      }
      SkipEnds(closing);
    } while (!closing.empty());
  }

private:
  void SkipScalar() {
    if (Peek() == '"') {
      String();
    } else if (!TakeWord("true") && !TakeWord("false") && !TakeWord("null")) {
      SkipNumber();
    }
  }

  /// Behind a value: skips the ends of values up to the beginning of the next one.
  void SkipEnds(std::string& closing) {
    while (!closing.empty()) {
      if (Take(',')) {
        if (closing.back() == '}') Name();
        return;
      }
      Expect(closing.back(), L"A comma or an end is missing.");
      closing.pop_back();
    }
  }

  char Escaped() {
    constexpr std::string_view SHORT = "\"\\/bfnrt";
    const std::size_t offset = Offset();
    const char c = Next();
    if (c != 'u') {
      if (c == '\0' || SHORT.find(c) == SHORT.npos) FailAt(offset, L"The escape is wrong.");
      return SHORT.find(c) < 3 ? c : OTHER_CHARACTER;
    }
    int code = 0;
    for (int i = 0; i < 4; ++i) {
      const int digit = HexDigit(Next());
      if (digit < 0) FailAt(offset, L"The escape is wrong.");
      code = 16 * code + digit;
    }
    return code < OTHER_CHARACTER ? static_cast<char>(code) : OTHER_CHARACTER;
  }

  void SkipDigits() {
    if (!IsDigit(Peek())) Fail(L"A value or a digit is missing.");
    while (IsDigit(Peek())) Next();
  }

  void SkipNumber() {
    if (Peek() == '-') Next();
    if (Peek() == '0') {
      Next();
    } else {
      SkipDigits();
    }
    if (Peek() == '.') {
      Next();
      SkipDigits();
    }
    if ((Peek() | 0x20) == 'e') {
      Next();
      if (Peek() == '+' || Peek() == '-') Next();
      SkipDigits();
    }
  }
};

class Reader {
public:
  explicit Reader(std::string_view text) : cursor_(text) { cursor_.TakeWord("\xEF\xBB\xBF"); }

  MultiPolygon2d Read() {
    ReadObject(Place::Top, 0);
    cursor_.SkipSpace();
    if (!cursor_.IsAtEnd()) cursor_.Fail(L"Something follows the object.");
    return std::move(polygons_);
  }

private:
  struct Object {
    std::size_t offset;
    Kind kind = Kind::None;
    Member member = NUM_MEMBERS;  // the one that belongs to the kind
    std::array<std::size_t, NUM_MEMBERS> places = {NOWHERE, NOWHERE, NOWHERE, NOWHERE};
    bool mustReadCoordinates = false;
  };

  void ReadObject(Place place, int depth) {
    cursor_.SkipSpace();
    Object object;
    object.offset = cursor_.Offset();
    if (depth > MAX_DEPTH) cursor_.Fail(L"Objects are nested too deep.");
    cursor_.Expect('{', L"An object is missing.");
    if (!cursor_.Take('}')) {
      do {
        ReadMember(object, place, depth);
      } while (cursor_.Take(','));
      cursor_.Expect('}', L"A comma or an end is missing.");
    }
    CheckMembers(object);
    if (!object.mustReadCoordinates) return;
    const std::size_t end = cursor_.Offset();
    cursor_.MoveTo(object.places[COORDINATES]);
    ReadCoordinates(object.kind);
    cursor_.MoveTo(end);
  }

  void ReadMember(Object& object, Place place, int depth) {
    const std::string name = cursor_.Name();
    cursor_.SkipSpace();
    if (name == "type") return ReadType(object, place);
    const auto member = static_cast<Member>(
        std::find(MEMBER_NAMES, MEMBER_NAMES + NUM_MEMBERS, name) - MEMBER_NAMES);
    if (member == NUM_MEMBERS) return cursor_.SkipValue();
    if (object.places[member] != NOWHERE) cursor_.Fail(L"The member is there twice.");
    object.places[member] = cursor_.Offset();
    ReadValue(object, member, depth);
  }

  void ReadValue(Object& object, Member member, int depth) {
    switch (member) {
      case COORDINATES:
        object.mustReadCoordinates = object.kind == Kind::None;
        return object.member == COORDINATES ? ReadCoordinates(object.kind) : cursor_.SkipValue();
      case GEOMETRIES:
        return ReadList([&] { ReadObject(Place::Geometry, depth + 1); });
      case FEATURES:
        return ReadList([&] { ReadObject(Place::Feature, depth + 1); });
      case GEOMETRY:
        if (!cursor_.TakeWord("null")) ReadObject(Place::Geometry, depth + 1);
        return;
      case NUM_MEMBERS:
        break;
    }
  }

  void ReadType(Object& object, Place place) {
    const std::size_t offset = cursor_.Offset();
    const std::string name = cursor_.String();
    if (object.kind != Kind::None) cursor_.FailAt(offset, L"The member is there twice.");
    for (const auto& row : KINDS) {
      if (name != row.name) continue;
      object.kind = row.kind;
      object.member = row.member;
    }
    const bool isFeature = object.kind == Kind::Feature;
    const bool isGeometry = object.member == COORDINATES || object.member == GEOMETRIES;
    const bool fits = place == Place::Top || (place == Place::Feature ? isFeature : isGeometry);
    if (object.kind == Kind::None || !fits) {
      cursor_.FailAt(offset, place == Place::Feature ? L"The type is not Feature."
                                                     : L"The type is none of polygons.");
    }
  }

  void CheckMembers(const Object& object) {
    if (object.kind == Kind::None) cursor_.FailAt(object.offset, L"The object has no type.");
    for (std::size_t member = 0; member < NUM_MEMBERS; ++member) {
      const bool isThere = object.places[member] != NOWHERE;
      if (isThere == (member == object.member)) continue;
      if (!isThere) cursor_.FailAt(object.offset, L"The object lacks the member of its type.");
      cursor_.FailAt(object.places[member], L"The member belongs to another type of object.");
    }
  }

  /// Reads an array, each element by `readElement`.
  template <class Function>
  void ReadList(Function readElement) {
    cursor_.Expect('[', L"An array is missing.");
    if (cursor_.Take(']')) return;
    do {
      readElement();
    } while (cursor_.Take(','));
    cursor_.Expect(']', L"A comma or an end is missing.");
  }

  void ReadCoordinates(Kind kind) {
    if (kind == Kind::Polygon) return ReadPolygon();
    ReadList([this] { ReadPolygon(); });
  }

  /// Reads rings; none are no polygon.
  void ReadPolygon() {
    bool isFirst = true;
    ReadList([&] {
      if (isFirst) {
        ReadRing(polygons_.emplace_back().outer());
      } else {
        ReadRing(polygons_.back().inners().emplace_back());
      }
      isFirst = false;
    });
  }

  void ReadRing(Ring2d& ring) {
    ReadList([&] { ring.push_back(ReadPosition()); });
    if (ring.empty()) cursor_.Fail(L"The ring has no points.");
  }

  Vec2d ReadPosition() {
    double numbers[2] = {};
    std::size_t count = 0;
    ReadList([&] {
      const double number = cursor_.JsonNumber();
      if (count < 2) numbers[count] = number;
      ++count;
    });
    if (count < 2) cursor_.Fail(L"The position has fewer than two numbers.");
    return Vec2d(numbers[0], numbers[1]);
  }

  JsonCursor cursor_;
  MultiPolygon2d polygons_;
};

}  // namespace

std::string ToGeoJson(const MultiPolygon2d& polygon) {
  return WritePolygons(polygon, STYLE);
}

std::string ToGeoJson(const GPolygon& polygon) {
  return ToGeoJson(FinitePolygons(polygon));
}

std::string ToGeoJson(const GPolygon2d& polygon) {
  MultiPolygon2d model;
  polygon.GetMultiPolygon(model);
  return ToGeoJson(model);
}

void ParseGeoJson(std::string_view text, MultiPolygon2d& polygon) {
  polygon = Reader(text).Read();
}

void ParseGeoJson(std::string_view text, GPolygon& polygon) {
  polygon = GPolygon(Reader(text).Read());
}

void ParseGeoJson(std::string_view text, GPolygon2d& polygon) {
  polygon = GPolygon2d(Reader(text).Read());
}

}  // namespace shr
