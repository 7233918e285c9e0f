// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the columns by all kinds of names, separators and encodings; rows put aside; the real
// files of the examples.

#include "examples/georeference/PointFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace georeference {
namespace {

class PointFiles : public testing::Test {
protected:
  GString Write(const std::string& content) {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / "georeference-points-test.csv";
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }
};

TEST_F(PointFiles, columnsAreKnownByManyNames) {
  const char* const files[] = {
      "id,image_x,image_y,map_x,map_y\nA,1,2,3,4\n",
      "\xEF\xBB\xBFmap_y;MAP_X;Image_Y;image_x;ID\r\n4;3;2;1;A\r\n",
      "name\tpixel\tline\tlon\tlat\nA\t1\t2\t3\t4",
      "label,column,row,easting,northing,height\nA,1,2,3,4,99\n\n",
      "x,y,longitude,latitude,gcp\n1,2,3,4,\"A\"\n",
      "#CRS: X\n#more\nmapX,mapY,sourceX,sourceY,enable,name\n3,4,1,2,1,A\n9,9,9,9,0,B\n",
  };
  for (const char* file : files) {
    const ControlPoints points = ReadControlPoints(Write(file), std::nullopt);
    ASSERT_EQ(points.ids.size(), 1u) << file;
    EXPECT_EQ(points.ids[0], L"A") << file;
    EXPECT_EQ(points.image[0], RPoint(1, 2)) << file;
    EXPECT_EQ(points.map[0], RPoint(3, 4)) << file;
  }
}

TEST_F(PointFiles, realFilesAreReadWhole) {
  const GString folder = GString::FromUtf8(SHARED_EXAMPLE_DATA_DIR "/control-points-");
  const struct {
    const wchar_t* name;
    std::size_t count;
  } rows[] = {{L"europe.points", 5},     {L"europe-laea.points", 5}, {L"svalbard.csv", 42},
              {L"lynn-sheet-a.csv", 23}, {L"lynn-sheet-b.csv", 21},  {L"world-metres.csv", 12}};
  for (const auto& row : rows) {
    EXPECT_EQ(ReadControlPoints(folder + row.name, std::nullopt).ids.size(), row.count);
    EXPECT_EQ(ReadImagePoints(folder + row.name, std::nullopt).points.size(), row.count);
  }
  const ControlPoints points = ReadControlPoints(folder + L"europe-laea.points", std::nullopt);
  EXPECT_EQ(points.crs.substr(0, 6), L"PROJCS");
  EXPECT_EQ(points.ids[4], L"5");
}

}  // namespace
}  // namespace georeference
