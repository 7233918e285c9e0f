// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Tracks.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "examples/common/InputError.h"
#include "examples/mapreport/XmlDocument.h"
#include "shared/text/StringUtility.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr double FULL_CIRCLE = 360;
constexpr double HALF_CIRCLE = 180;

bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  return text;
}

/// Takes the first word off `text`; empty at its end.
std::string_view TakeWord(std::string_view& text) {
  text = Trim(text);
  const auto end = std::find_if(text.begin(), text.end(), IsSpace);
  const std::string_view word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(word.size());
  return word;
}

/// What readers of both kinds of files do.
class TrackReader {
public:
  TrackReader(const XmlDocument& document, TrackContent& content)
      : document_(document), content_(content) {}

protected:
  GString TextOfChild(const XMLNode& node, std::string_view name) const {
    const XMLNode* const child = FindChild(node, name);
    return child == nullptr ? GString() : document_.Text(*child);
  }

  double Number(const XMLNode& node, std::string_view text, const wchar_t* what) const {
    text = Trim(text);
    if (text.empty()) document_.Fail(node, GString(L"The ") + what + L" is missing.");
    double value = 0;
    if (StringToDouble(text, value) && std::isfinite(value)) return value;
    document_.Fail(node, GString(L"The ") + what + L" " + Shown(text) + L" is no number.");
  }

  double Degrees(const XMLNode& node, std::string_view text, const wchar_t* what,
                 double limit) const {
    const double value = Number(node, text, what);
    if (std::abs(value) <= limit) return value;
    document_.Fail(node,
                   GString(L"The ") + what + L" " + Shown(Trim(text)) + L" is not on the globe.");
  }

  Vec2d Place(const XMLNode& node, std::string_view longitude, std::string_view latitude) const {
    const double x = Degrees(node, longitude, L"longitude", HALF_CIRCLE);
    return Vec2d(x, Degrees(node, latitude, L"latitude", 90));
  }

  static GString Shown(std::string_view text) { return Quoted(GString::FromUtf8(text)); }

  /// Adds an elevation to the range of a track.
  static void AddElevation(double elevation, Track& track) {
    track.lowest = std::min(track.lowest.value_or(elevation), elevation);
    track.highest = std::max(track.highest.value_or(elevation), elevation);
  }

  static void AddTime(const GString& time, Track& track) {
    if (time.empty()) return;
    if (track.begin.empty()) track.begin = time;
    track.end = time;
  }

  /// Counts the points behind those that are counted as a segment.
  static void EndSegment(Track& track) {
    std::size_t counted = 0;
    for (const unsigned int count : track.lines.counts) counted += count;
    const std::size_t count = track.lines.points.size() - counted;
    if (count > 0) track.lines.counts.push_back(static_cast<unsigned int>(count));
  }

  void AddTrack(Track track) {
    if (track.lines.counts.empty()) return;
    content_.points += track.lines.points.size();
    content_.tracks.push_back(std::move(track));
  }

  const XmlDocument& document_;
  TrackContent& content_;
};

class GpxReader : public TrackReader {
public:
  using TrackReader::TrackReader;

  void Read(const XMLNode& gpx) {
    for (const XMLNode::Handle& child : gpx.GetChildren()) {
      const std::string_view name = LocalName(*child);
      if (name == "wpt") ReadWaypoint(*child);
      if (name == "rte") ReadRoute(*child);
      if (name == "trk") ReadTrack(*child);
    }
  }

private:
  Vec2d PlaceOf(const XMLNode& point) const {
    return Place(point, point.GetAttribute("lon"), point.GetAttribute("lat"));
  }

  std::optional<double> Elevation(const XMLNode& point) const {
    const XMLNode* const child = FindChild(point, "ele");
    if (child == nullptr) return std::nullopt;
    return Number(*child, child->GetValue(), L"elevation");
  }

  void ReadWaypoint(const XMLNode& node) {
    Waypoint waypoint;
    waypoint.position = PlaceOf(node);
    waypoint.name = TextOfChild(node, "name");
    waypoint.elevation = Elevation(node);
    waypoint.time = TextOfChild(node, "time");
    waypoint.symbol = TextOfChild(node, "sym");
    content_.waypoints.push_back(std::move(waypoint));
  }

  void ReadPoints(const XMLNode& segment, std::string_view pointName, Track& track) const {
    for (const XMLNode::Handle& child : segment.GetChildren()) {
      if (LocalName(*child) != pointName) continue;
      track.lines.points.push_back(PlaceOf(*child));
      if (const auto elevation = Elevation(*child)) AddElevation(*elevation, track);
      AddTime(TextOfChild(*child, "time"), track);
    }
    EndSegment(track);
  }

  void ReadRoute(const XMLNode& node) {
    Track route;
    route.kind = Track::Kind::Route;
    route.name = TextOfChild(node, "name");
    ReadPoints(node, "rtept", route);
    AddTrack(std::move(route));
  }

  void ReadTrack(const XMLNode& node) {
    Track track;
    track.name = TextOfChild(node, "name");
    for (const XMLNode::Handle& child : node.GetChildren()) {
      if (LocalName(*child) == "trkseg") ReadPoints(*child, "trkpt", track);
    }
    AddTrack(std::move(track));
  }
};

class KmlReader : public TrackReader {
public:
  using TrackReader::TrackReader;

  void Read(const XMLNode& kml) {
    Walk(kml, {"Document", "Folder"}, [this](const XMLNode& node) {
      if (LocalName(node) == "Placemark") ReadPlacemark(node);
    });
  }

private:
  /// Calls `visit` with the descendants of `root` in document order, into the children of those
  /// alone that have one of the names. They may nest at any depth.
  template <class Visit>
  static void Walk(const XMLNode& root, std::initializer_list<std::string_view> containers,
                   const Visit& visit) {
    std::vector<std::pair<const XMLNode*, std::size_t>> open = {{&root, 0}};
    while (!open.empty()) {
      auto& [node, next] = open.back();
      if (next == node->GetChildren().size()) {
        open.pop_back();
        continue;
      }
      const XMLNode* const child = node->GetChildren()[next++].get();
      const auto name = LocalName(*child);
      if (std::find(containers.begin(), containers.end(), name) != containers.end()) {
        open.emplace_back(child, 0);
      } else {
        visit(*child);
      }
    }
  }

  /// Lines and outlines of one placemark are one track each, whatever collections they are in.
  void ReadPlacemark(const XMLNode& placemark) {
    Track lines, outlines;
    outlines.kind = Track::Kind::Outline;
    lines.name = outlines.name = TextOfChild(placemark, "name");
    Walk(placemark,
         {"MultiGeometry", "MultiTrack", "Polygon", "outerBoundaryIs", "innerBoundaryIs"},
         [&](const XMLNode& node) {
           const std::string_view name = LocalName(node);
           if (name == "Point") ReadPoint(node, lines.name);
           if (name == "LineString") ReadCoordinates(node, lines);
           if (name == "LinearRing") ReadCoordinates(node, outlines);
           if (name == "Track") ReadTrack(node, lines);
         });
    AddTrack(std::move(lines));
    AddTrack(std::move(outlines));
  }

  const XMLNode& Coordinates(const XMLNode& geometry) const {
    const XMLNode* const child = FindChild(geometry, "coordinates");
    if (child == nullptr) document_.Fail(geometry, L"The coordinates are missing.");
    if (Trim(child->GetValue()).empty()) document_.Fail(*child, L"The coordinates are empty.");
    return *child;
  }

  /// Reads numbers between commas: longitude, latitude and perhaps an elevation.
  Vec2d ReadTuple(const XMLNode& node, std::string_view tuple,
                  std::optional<double>& elevation) const {
    std::string_view parts[3];
    std::size_t count = 0;
    for (std::string_view rest = tuple;; ++count) {
      if (count == 3)
        document_.Fail(node, Shown(tuple) + L" is no place: longitude, comma, latitude.");
      const std::size_t comma = rest.find(',');
      parts[count] = rest.substr(0, comma);
      if (comma == std::string_view::npos) break;
      rest.remove_prefix(comma + 1);
    }
    elevation.reset();
    if (!parts[2].empty()) elevation = Number(node, parts[2], L"elevation");
    return Place(node, parts[0], parts[1]);
  }

  void ReadPoint(const XMLNode& node, const GString& name) {
    const XMLNode& coordinates = Coordinates(node);
    std::string_view text = coordinates.GetValue();
    Waypoint waypoint;
    waypoint.name = name;
    waypoint.position = ReadTuple(coordinates, TakeWord(text), waypoint.elevation);
    if (!Trim(text).empty()) {
      document_.Fail(coordinates, L"A point has one place, without blanks in it.");
    }
    content_.waypoints.push_back(std::move(waypoint));
  }

  void ReadCoordinates(const XMLNode& node, Track& track) const {
    const XMLNode& coordinates = Coordinates(node);
    std::string_view text = coordinates.GetValue();
    std::optional<double> elevation;
    for (std::string_view word = TakeWord(text); !word.empty(); word = TakeWord(text)) {
      track.lines.points.push_back(ReadTuple(coordinates, word, elevation));
      if (elevation) AddElevation(*elevation, track);
    }
    EndSegment(track);
  }

  /// Times and places stand in lists of their own; a track without places is none.
  void ReadTrack(const XMLNode& node, Track& track) const {
    for (const XMLNode::Handle& child : node.GetChildren()) {
      const std::string_view name = LocalName(*child);
      if (name == "when") AddTime(document_.Text(*child), track);
      if (name != "coord") continue;
      std::string_view text = child->GetValue();
      const std::string_view longitude = TakeWord(text);
      const std::string_view latitude = TakeWord(text);
      const std::string_view elevation = Trim(text);
      track.lines.points.push_back(Place(*child, longitude, latitude));
      if (!elevation.empty()) AddElevation(Number(*child, elevation, L"elevation"), track);
    }
    EndSegment(track);
  }
};

double Radians(double degrees) {
  constexpr double PI = 3.14159265358979323846;
  return degrees * (PI / HALF_CIRCLE);
}

/// The haversine of the central angle: exact for near points, too (R. W. Sinnott, "Virtues of the
/// Haversine", Sky and Telescope 68, 1984).
double Distance(const Vec2d& a, const Vec2d& b) {
  constexpr double MEAN_RADIUS = 6371.0088;  // IUGG: (2a + b) / 3 of WGS 84
  const double x = std::sin(Radians(b.x - a.x) / 2);
  const double y = std::sin(Radians(b.y - a.y) / 2);
  const double h = y * y + std::cos(Radians(a.y)) * std::cos(Radians(b.y)) * x * x;
  return 2 * MEAN_RADIUS * std::asin(std::sqrt(std::min(1.0, h)));
}

/// Appends a line to pieces of lines.
class PieceWriter {
public:
  explicit PieceWriter(Contours& pieces) : pieces_(pieces) {}

  void Add(const Vec2d& point) {
    pieces_.points.push_back(point);
    ++count_;
  }
  void End() {
    if (count_ > 0) pieces_.counts.push_back(count_);
    count_ = 0;
  }

private:
  Contours& pieces_;
  unsigned int count_ = 0;
};

void SplitStep(const Vec2d& from, const Vec2d& to, PieceWriter& pieces) {
  const double step = to.x - from.x;
  if (std::abs(step) <= HALF_CIRCLE) return;
  const double side = step > 0 ? -HALF_CIRCLE : HALF_CIRCLE;
  const double width = std::abs(step) - FULL_CIRCLE;  // of the way round the back, negative
  const double t = width == 0 ? 0 : std::abs(side - from.x) / -width;
  const double y = from.y + std::min(t, 1.0) * (to.y - from.y);
  pieces.Add(Vec2d(side, y));
  pieces.End();
  pieces.Add(Vec2d(-side, y));
}

}  // namespace

TrackContent ReadTracks(const GString& path, std::optional<std::uint32_t> codePage) {
  return ReadTracks(ReadBytes(path), path, codePage);
}

TrackContent ReadTracks(std::string bytes, const GString& name,
                        std::optional<std::uint32_t> codePage) {
  const XmlDocument document(std::move(bytes), name, codePage);
  TrackContent content;
  content.format = document.Format();
  const XMLNode& root = document.Root();
  if (const XMLNode* const gpx = FindChild(root, "gpx")) {
    GpxReader(document, content).Read(*gpx);
  } else if (const XMLNode* const kml = FindChild(root, "kml")) {
    KmlReader(document, content).Read(*kml);
  } else {
    document.Fail(root, L"This is neither GPX nor KML.");
  }
  if (content.tracks.empty() && content.waypoints.empty()) {
    document.Fail(root, L"The file holds no track, no route and no waypoint.");
  }
  return content;
}

const wchar_t* TrackKindName(Track::Kind kind) {
  static constexpr const wchar_t* NAMES[] = {L"Track", L"Route", L"Outline"};
  return NAMES[static_cast<std::size_t>(kind)];
}

double TrackLength(const Contours& lines) {
  double length = 0;
  const Vec2d* point = lines.points.data();
  for (const unsigned int count : lines.counts) {
    for (unsigned int i = 1; i < count; ++i) length += Distance(point[i - 1], point[i]);
    point += count;
  }
  return length;
}

Contours SplitAtAntimeridian(const Contours& lines) {
  Contours pieces;
  PieceWriter writer(pieces);
  const Vec2d* point = lines.points.data();
  for (const unsigned int count : lines.counts) {
    for (unsigned int i = 0; i < count; ++i) {
      if (i > 0) SplitStep(point[i - 1], point[i], writer);
      writer.Add(point[i]);
    }
    writer.End();
    point += count;
  }
  return pieces;
}

}  // namespace mapreport
