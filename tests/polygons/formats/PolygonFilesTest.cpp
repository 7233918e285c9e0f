// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The four file forms: {fixed bytes, round trips, every truncation, every flipped bit, counts that
// announce more than there is, several polygons in one file}, in memory and on disk.

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <random>

#include "shared/files/BufferedFile.h"
#include "shared/platform/TextMode.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "tests/polygons/PolygonTestSupport.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using test::Points;

const MultiPolygon2d PARCELS = {
    {{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {0, 0}}, {{{1, 1}, {2, 1}, {2, 2}, {1, 1}}}},
    {{{-123456.789, -2.5e10}, {-123456.789, 0.1}, {0.1, 1e-7}, {-123456.789, -2.5e10}}, {}}};

/// A form with its class hidden: polygons go in as a model and come out as the bytes of the form.
struct Form {
  const char* name;
  const char* golden;
  const wchar_t* loadName;
  bool isText;
  std::string (*dump)(const MultiPolygon2d& polygons);
  std::string (*reload)(const std::string& bytes);  ///< loads and dumps again
  void (*dumpTo)(CBufferedFile& file);
  std::size_t (*loadFrom)(CBufferedFile& file);  ///< returns the number of points
};

template <class Polygon, void (Polygon::*DUMP)(CBufferedFile&) const>
std::string Dumped(const Polygon& polygon) {
  CBufferedFile file;
  file.Open();
  (polygon.*DUMP)(file);
  return std::string(reinterpret_cast<const char*>(file.GetBuffer()),
                     static_cast<std::size_t>(file.GetLength()));
}

template <class Polygon, void (Polygon::*DUMP)(CBufferedFile&) const,
          void (Polygon::*LOAD)(CBufferedFile&)>
Form MakeForm(const char* name, const char* golden, const wchar_t* loadName, bool isText) {
  Form form = {name, golden, loadName, isText, nullptr, nullptr, nullptr, nullptr};
  form.dump = [](const MultiPolygon2d& polygons) {
    return Dumped<Polygon, DUMP>(Polygon(polygons));
  };
  form.reload = [](const std::string& bytes) {
    std::string copy = bytes;
    CBufferedFile file;
    file.Open(copy.data(), static_cast<std::uint32_t>(copy.size()));
    Polygon polygon(0, 0, 1, 1);
    (polygon.*LOAD)(file);
    return Dumped<Polygon, DUMP>(polygon);
  };
  form.dumpTo = [](CBufferedFile& file) { (Polygon(PARCELS).*DUMP)(file); };
  form.loadFrom = [](CBufferedFile& file) {
    Polygon polygon(0, 0, 1, 1);
    (polygon.*LOAD)(file);
    return polygon.GetTotalVertexCount();
  };
  return form;
}

const Form FORMS[] = {
    MakeForm<GPolygon2d, &GPolygon2d::DumpToBinaryFile, &GPolygon2d::LoadFromBinaryFile>(
        "GPolygon2d binary", "parcels-gpolygon2d.bin", L"GPolygon2d::LoadFromBinaryFile", false),
    MakeForm<GPolygon2d, &GPolygon2d::DumpToTextFile, &GPolygon2d::LoadFromTextFile>(
        "GPolygon2d text", "parcels-gpolygon2d.txt", L"GPolygon2d::LoadFromTextFile", true),
    MakeForm<GPolygon, &GPolygon::DumpToBinaryFile, &GPolygon::LoadFromBinaryFile>(
        "GPolygon binary", "parcels-gpolygon.bin", L"GPolygon::LoadFromBinaryFile", false),
    MakeForm<GPolygon, &GPolygon::DumpToTextFile, &GPolygon::LoadFromTextFile>(
        "GPolygon text", "parcels-gpolygon.txt", L"GPolygon::LoadFromTextFile", true),
};

TEST(PolygonFiles, bytesAreThoseOfTheSavedFiles) {
  for (const Form& form : FORMS) {
    const std::string path = std::string(SHARED_TEST_DATA_DIR "/polygons/") + form.golden;
    const std::string bytes =
        test::ReadBytes(test::FromFilesystemPath(std::filesystem::path(path)));
    EXPECT_EQ(bytes, form.dump(PARCELS)) << form.name;
    EXPECT_EQ(bytes, form.reload(bytes)) << form.name;
  }
}

TEST(PolygonFiles, squaresAreStoredClosedByOneClassAndOpenByTheOther) {
  const std::string closed = Dumped<GPolygon2d, &GPolygon2d::DumpToBinaryFile>({0, 0, 1, 1});
  const std::string open = Dumped<GPolygon, &GPolygon::DumpToBinaryFile>({0, 0, 1, 1});
  EXPECT_EQ(8u + 8u + 5u * 16u + 8u, closed.size());
  EXPECT_EQ(5, closed[8]);
  EXPECT_EQ(4u + 8u + 4u * 16u, open.size());
  EXPECT_EQ(4, open[4]);
  EXPECT_EQ(std::string(8, '\0'), FORMS[0].dump({}));
}

TEST(PolygonFiles, everyCoordinateComesBack) {
  std::mt19937_64 random(8);
  std::uniform_int_distribution<int> exponent(-1000, 1000);
  std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
  Ring2d ring;
  for (int i = 0; i < 500; ++i) {
    ring.push_back({std::ldexp(mantissa(random), exponent(random)),
                    std::ldexp(mantissa(random), exponent(random))});
  }
  ring.push_back({1e308, -DBL_MIN});
  ring.push_back({DBL_TRUE_MIN, -0.0});
  ring.push_back({INFINITY, -INFINITY});
  ring.push_back(ring.front());
  const MultiPolygon2d polygons = {{ring, {}}};
  for (const Form& form : FORMS) {
    const std::string bytes = form.dump(polygons);
    EXPECT_EQ(bytes, form.reload(bytes)) << form.name;
  }
  const GPolygon source(polygons);
  std::string bytes = Dumped<GPolygon, &GPolygon::DumpToTextFile>(source);
  CBufferedFile file;
  file.Open(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  GPolygon loaded;
  loaded.LoadFromTextFile(file);
  EXPECT_EQ(0, std::memcmp(source.GetContour(0).data(), loaded.GetContour(0).data(),
                           source.GetContour(0).size_bytes()));
}

TEST(PolygonFiles, everyTruncationIsAnErrorThatNamesTheOperation) {
  for (const Form& form : FORMS) {
    const std::string bytes = form.dump(PARCELS);
    const GString head = GString(L"Unable to read 'memory file'.\n") + form.loadName;
    // A text may lose the line end, and the last digits, of its last number.
    const std::size_t end = form.isText ? bytes.rfind(' ') + 2 : bytes.size();
    for (std::size_t size = 0; size < end; ++size) {
      const GString text = test::Failure([&] { form.reload(bytes.substr(0, size)); });
      const bool isShort = text == L"Unexpected end of file reading 'memory file'.";
      EXPECT_TRUE(text == head || isShort) << form.name << ' ' << size;
    }
  }
}

TEST(PolygonFiles, flippedBitsAreSafe) {
  for (const Form& form : FORMS) {
    const std::string bytes = form.dump(PARCELS);
    // In steps of 3, which reach every bit of some bytes.
    for (std::size_t bit = 0; bit < 8 * bytes.size(); bit += 3) {
      std::string flipped = bytes;
      flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
      std::string again;
      const GString text = test::Failure([&] { again = form.reload(flipped); });
      if (text != L"(nothing)") continue;
      EXPECT_EQ(again, form.reload(again)) << form.name << ' ' << bit;
    }
  }
}

TEST(PolygonFiles, countsAreNotBelieved) {
  std::string huge(8, '\xFF');
  EXPECT_NE(L"(nothing)", test::Failure([&] { FORMS[0].reload(huge); }));
  huge = std::string("\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x10", 16) + std::string(64, '\0');
  EXPECT_NE(L"(nothing)", test::Failure([&] { FORMS[0].reload(huge); }));
  huge = std::string("\1\0\0\0\xFF\xFF\xFF\x7F\0\0\0\0", 12) + std::string(64, '\0');
  EXPECT_NE(L"(nothing)", test::Failure([&] { FORMS[2].reload(huge); }));
  huge = std::string("\xFF\xFF\xFF\xFF", 4);
  EXPECT_NE(L"(nothing)", test::Failure([&] { FORMS[2].reload(huge); }));
  EXPECT_NE(L"(nothing)", test::Failure([&] { FORMS[1].reload("4294967295\n4294967295\n1, 1"); }));
  EXPECT_NE(L"(nothing)", test::Failure([&] { FORMS[3].reload("2147483647 2147483647 0 1 1"); }));
}

TEST(PolygonFiles, textsAreReadWithOtherSpacesAndRefusedWhenWrong) {
  struct Row {
    const char* text;
    int form;
    bool isGood;
  };
  const Row rows[] = {
      {"1 3 1 0 0 1 0\t1\n\n1", 3, true},
      {"1\r\n3\r\n0\r\n0 0\r\n1 0\r\n1 1\r\n", 3, true},
      {"1 3 2 0 0 1 0 1 1", 3, false},
      {"1 3 0 0 0 1 0 1 x", 3, false},
      {"1 3 0 0 0 1 0 1 1,5", 3, false},
      {"-1", 3, false},
      {"1\n3\n0,0\n1 ,\t0\n1,1\n0", 1, true},
      {"; a\n\n 1 \n3\n0,0\n;b\n1,0\n1,1\n0\n", 1, true},
      {"1\r\n3\r\n0, 0\r\n1, 0\r\n1, 1\r\n0\r\n", 1, true},
      {"1\n3\n0 0\n1 0\n1 1\n0\n", 1, false},
      {"1\n3\n0,0\n1,0\n1,1 2\n0\n", 1, false},
      {"1\n3.0\n0,0\n1,0\n1,1\n0\n", 1, false},
      {"1\n3\n0,0\n1,0\n1,1.797693134862316e+308\n0\n", 1, true},
  };
  for (const Row& row : rows) {
    const GString text = test::Failure([&] { FORMS[row.form].reload(row.text); });
    EXPECT_EQ(row.isGood, text == L"(nothing)") << row.text;
  }
}

TEST(PolygonFiles, ringsOfOneClassAreLoadedAsTheyAre) {
  // An open ring that runs counter-clockwise.
  const std::string text = "1\n4\n0,0\n1,0\n1,1\n0,1\n0\n";
  EXPECT_EQ(FORMS[1].reload(text), FORMS[1].reload(FORMS[1].reload(text)));
  EXPECT_NE(std::string::npos, FORMS[1].reload(text).find("\n4\n0, 0\n1, 0\n1, 1\n0, 1\n"));
}

TEST(PolygonFiles, severalPolygonsShareAFileOnDisk) {
  const test::TemporaryFolder folder;
  for (const Form& form : FORMS) {
    const GString path = folder.Path(L"polygons");
    {
      CBufferedFile file(path, form.isText ? L"wt" : L"wb", CBufferedFile::ShareNone, false);
      form.dumpTo(file);
      form.dumpTo(file);
      file.Close();
    }
    CBufferedFile file(path, form.isText ? L"rt" : L"rb", CBufferedFile::ShareRead, false);
    const std::size_t points = form.loadFrom(file);
    EXPECT_EQ(points, form.loadFrom(file)) << form.name;
    const GString text = test::Failure([&] { form.loadFrom(file); });
    EXPECT_NE(std::wstring::npos, text.String().find(path.String())) << form.name;
    file.Close();
  }
}

}  // namespace
}  // namespace shr
