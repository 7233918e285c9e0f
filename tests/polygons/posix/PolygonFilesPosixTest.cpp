// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Files that fail: a full disk, a device without end, and a pipe, which has no length.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <thread>

#include "shared/files/BufferedFile.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

CBufferedFile OpenFull() {
  return CBufferedFile(L"/dev/full", L"wb", CBufferedFile::ShareAll, false);
}

TEST(PolygonFilesPosix, aFullDiskIsReported) {
  const GPolygon polygon(0, 0, 1, 1);
  const GPolygon2d polygon2d(0, 0, 1, 1);
  CBufferedFile file = OpenFull();
  EXPECT_EQ(L"Unable to write '/dev/full'.\nGPolygon::DumpToTextFile",
            test::Failure([&] { polygon.DumpToTextFile(file); }));
  CBufferedFile second = OpenFull();
  EXPECT_EQ(L"Unable to write '/dev/full'.\nGPolygon::DumpToBinaryFile",
            test::Failure([&] { polygon.DumpToBinaryFile(second); }));
  CBufferedFile third = OpenFull();
  polygon2d.DumpToTextFile(third);
  EXPECT_TRUE(
      test::HasSystemText(test::Failure([&] { third.Flush(); }), L"Unable to write '/dev/full'."));
  std::FILE* const stream = std::fopen("/dev/full", "wb");
  EXPECT_FALSE(gpc_write_polygon(stream, true, polygon.GetRecord()));
  std::fclose(stream);
}

TEST(PolygonFilesPosix, devicesAndPipesWithoutLengthAreReadAsFarAsTheyGo) {
  CBufferedFile zeros(L"/dev/zero", L"rb", CBufferedFile::ShareAll, false);
  GPolygon2d polygon2d(0, 0, 1, 1);
  polygon2d.LoadFromBinaryFile(zeros);
  EXPECT_EQ(0u, polygon2d.GetNumContours());
  GPolygon polygon;
  EXPECT_EQ(L"Unable to read '/dev/zero'.\nGPolygon::LoadFromTextFile",
            test::Failure([&] { polygon.LoadFromTextFile(zeros); }));

  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"pipe");
  ASSERT_EQ(0, mkfifo(test::ToFilesystemPath(path.String()).c_str(), 0600));
  std::jthread writer([&path] {
    const GPolygon written(0, 0, 3, 2);
    CBufferedFile file(path, L"wb", CBufferedFile::ShareAll, false);
    written.DumpToBinaryFile(file);
    const int huge[] = {1, 0x7FFFFFFF, 0};
    file.Write(huge, sizeof huge);
    file.Close();
  });
  CBufferedFile file(path, L"rb", CBufferedFile::ShareAll, false);
  polygon.LoadFromBinaryFile(file);
  EXPECT_EQ(Box2d(0, 0, 3, 2), polygon.GetBBox());
  EXPECT_NE(L"(nothing)", test::Failure([&] { polygon.LoadFromBinaryFile(file); }));
  EXPECT_TRUE(polygon.IsRectangle());
}

}  // namespace
}  // namespace shr
