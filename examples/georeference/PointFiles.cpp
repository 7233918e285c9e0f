// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/georeference/PointFiles.h"

#include <string>

#include "examples/common/InputError.h"
#include "examples/common/TableReader.h"
#include "examples/common/TextFormat.h"

namespace georeference {

using namespace shr;
using examples::TableReader;

namespace {

/// Larger coordinates are slips of a decimal point, and their squares are no numbers.
constexpr double LARGEST_COORDINATE = 1e100;

TableReader Open(const GString& path, std::optional<std::uint32_t> codePage) {
  return TableReader(path, examples::DetectTextFormat(path, codePage), L'\0',
                     TableReader::Comments::AreSkipped);
}

std::size_t FindId(const TableReader& table) {
  return table.FindColumn({L"id", L"name", L"label", L"gcp", L"point", L"fid"});
}

/// The columns of the image, the first of which may be plain "x" and "y" in a table of nothing
/// else.
struct ImageColumns {
  explicit ImageColumns(const TableReader& table)
      : x(table.Column({L"image_x", L"imagex", L"sourcex", L"source_x", L"pixelx", L"pixel_x",
                        L"pixel", L"px", L"column", L"col", L"from_x", L"u", L"x"})),
        y(table.Column({L"image_y", L"imagey", L"sourcey", L"source_y", L"pixely", L"pixel_y",
                        L"line", L"py", L"row", L"from_y", L"v", L"y"})) {}

  RPoint Read(const TableReader& table) const {
    return RPoint(table.Number(x, -LARGEST_COORDINATE, LARGEST_COORDINATE),
                  table.Number(y, -LARGEST_COORDINATE, LARGEST_COORDINATE));
  }

  std::size_t x;
  std::size_t y;
};

GString IdOf(const TableReader& table, std::size_t column) {
  const GString& id = table.Field(column);
  return id.empty() ? GString(std::to_wstring(table.RowCount())) : id;
}

/// An empty field and a column that is not there enable.
bool IsEnabled(const TableReader& table, std::size_t column) {
  const GString word = GString(table.Field(column)).MakeLower();
  for (const wchar_t* yes : {L"", L"1", L"true", L"yes", L"y", L"on"}) {
    if (word == yes) return true;
  }
  for (const wchar_t* no : {L"0", L"false", L"no", L"n", L"off"}) {
    if (word == no) return false;
  }
  table.Fail(examples::Quoted(table.Field(column)) +
             L" does not tell whether the point is enabled.");
}

GString CrsOf(const TableReader& table) {
  constexpr std::wstring_view MARK = L"CRS:";
  for (const GString& comment : table.SkippedComments()) {
    GString text = GString(comment).Trim();
    if (std::wstring_view(text).starts_with(MARK)) return GString(text.substr(MARK.size())).Trim();
  }
  return GString();
}

}  // namespace

ControlPoints ReadControlPoints(const GString& path, std::optional<std::uint32_t> codePage) {
  TableReader table = Open(path, codePage);
  const std::size_t id = FindId(table);
  const std::size_t mapX =
      table.Column({L"map_x", L"mapx", L"lon", L"longitude", L"lng", L"easting", L"east",
                    L"target_x", L"targetx", L"to_x", L"world_x", L"x_map"});
  const std::size_t mapY =
      table.Column({L"map_y", L"mapy", L"lat", L"latitude", L"northing", L"north", L"target_y",
                    L"targety", L"to_y", L"world_y", L"y_map"});
  const ImageColumns image(table);
  const std::size_t enable = table.FindColumn({L"enable", L"enabled", L"active"});
  ControlPoints points;
  points.crs = CrsOf(table);
  while (table.NextRow()) {
    const RPoint source = image.Read(table);
    const RPoint target(table.Number(mapX, -LARGEST_COORDINATE, LARGEST_COORDINATE),
                        table.Number(mapY, -LARGEST_COORDINATE, LARGEST_COORDINATE));
    if (!IsEnabled(table, enable)) {
      ++points.disabled;
      continue;
    }
    points.ids.push_back(IdOf(table, id));
    points.image.push_back(source);
    points.map.push_back(target);
  }
  if (table.RowCount() == 0) examples::ThrowInputError(path, L"There are no control points.");
  if (points.ids.empty()) examples::ThrowInputError(path, L"All control points are disabled.");
  return points;
}

ImagePoints ReadImagePoints(const GString& path, std::optional<std::uint32_t> codePage) {
  TableReader table = Open(path, codePage);
  const std::size_t id = FindId(table);
  const ImageColumns image(table);
  ImagePoints points;
  while (table.NextRow()) {
    points.points.push_back(image.Read(table));
    points.ids.push_back(IdOf(table, id));
  }
  if (points.ids.empty()) examples::ThrowInputError(path, L"There are no points.");
  return points;
}

}  // namespace georeference
