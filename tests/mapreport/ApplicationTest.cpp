// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Application.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "examples/mapreport/Progress.h"
#include "tests/mapreport/Inputs.h"

using namespace mapreport;
using namespace shr::test;

namespace {

Options ExampleOptions() {
  const GString folder(SHARED_EXAMPLE_DATA_DIR "/");
  Options options;
  options.map.path = folder + L"countries-110m.txt";
  options.points.path = folder + L"earthquakes.csv";
  options.cities.path = folder + L"cities-utf16le.csv";
  return options;
}

}  // namespace

TEST(Application, countsAgreeWithEachOtherOnRealData) {
  const Options options = ExampleOptions();
  Progress progress(7, true);
  Model model = ReadModel(options, progress);
  MakeOutputs(model, options, progress);
  EXPECT_EQ(1679u, model.events.size());
  EXPECT_EQ(3554u, model.cities.size());
  EXPECT_EQ(L"\x4E0A\x6D77", model.cities.front().name);
  EXPECT_EQ(L"UTF-16LE with mark", model.sources[2].encoding);
  // Once by the events' countries, once by the countries' own counts.
  std::map<std::size_t, std::size_t> counts;
  for (const Event& event : model.events) {
    if (event.country != NONE) ++counts[event.country];
  }
  for (std::size_t i = 0; i < model.countries.size(); ++i) {
    EXPECT_EQ(counts[i], model.countries[i].eventCount) << model.countries[i].name;
  }
  // The feed names the state: most events of the week lie in the United States.
  const auto most = std::max_element(
      model.countries.begin(), model.countries.end(),
      [](const Country& a, const Country& b) { return a.eventCount < b.eventCount; });
  EXPECT_EQ(L"United States", most->name);
}

TEST(Application, theEncodingOfTheCitiesDoesNotShowOnTheMap) {
  Options options = ExampleOptions();
  options.window = Box2d(-10, 34, 40, 60);
  Progress progress(14, true);
  Model utf16 = ReadModel(options, progress);
  options.cities.path = GString(SHARED_EXAMPLE_DATA_DIR "/cities-utf8.csv");
  Model utf8 = ReadModel(options, progress);
  EXPECT_EQ(MakeOutputs(utf16, options, progress).map, MakeOutputs(utf8, options, progress).map);
}

TEST(Application, outputsReplaceOldOnesTogether) {
  const TemporaryFolder folder;
  const GString out = folder.Path(L"\x5730\x56F3/new");
  EXPECT_NO_THROW(WriteOutputs({"map 1", "page 1"}, out));
  EXPECT_NO_THROW(WriteOutputs({"map 2", "page 2"}, out));
  EXPECT_EQ("map 2", ReadBytes(out + L"/map.svg"));
  EXPECT_EQ("page 2", ReadBytes(out + L"/report.html"));
}

TEST(Application, aFailureLeavesTheFolderAsItWas) {
  const TemporaryFolder folder;
  WriteBytes(folder.Path(L"map.svg"), "old map");
  std::filesystem::create_directory(ToFilesystemPath(folder.Path(L"report.html")));
  EXPECT_THROW(WriteOutputs({"map", "page"}, folder.Path()), shr::Exception);
  EXPECT_EQ("old map", ReadBytes(folder.Path(L"map.svg")));
  EXPECT_EQ(2u, folder.Names().size());
  WriteBytes(folder.Path(L"file"), "");
  EXPECT_THROW(WriteOutputs({"map", "page"}, folder.Path(L"file")), shr::Exception);
  EXPECT_THROW(WriteOutputs({"map", "page"}, folder.Path(L"file/below")), shr::Exception);
}
