// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Application.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "examples/common/Progress.h"
#include "shared/commands/ProgressFactory.h"
#include "tests/common/Inputs.h"

using namespace mapreport;
using namespace shr::test;

namespace {

Options ExampleOptions() {
  const GString folder(SHARED_EXAMPLE_DATA_DIR "/");
  Options options;
  options.inputs.map.path = folder + L"countries-110m.txt";
  options.inputs.points.path = folder + L"earthquakes.csv";
  options.inputs.cities.path = folder + L"cities-utf16le.csv";
  return options;
}

}  // namespace

TEST(Application, countsAgreeWithEachOtherOnRealData) {
  const Options options = ExampleOptions();
  SilentProgress silent;
  const Model model = MakeModel(options, silent);
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
  options.settings.window = Box2d(-10, 34, 40, 60);
  SilentProgress silent;
  Model utf16 = MakeModel(options, silent);
  options.inputs.cities.path = GString(SHARED_EXAMPLE_DATA_DIR "/cities-utf8.csv");
  Model utf8 = MakeModel(options, silent);
  EXPECT_EQ(MakeOutputs(utf16, options, silent).map, MakeOutputs(utf8, options, silent).map);
}

TEST(Progress, anOperationIsShownFromBeginToEnd) {
  struct Listener : IProgress {
    void Begin(const GString& label, std::uint64_t total) override {
      lines = {ProgressLine(label, 0, total)};
      all = total;
    }
    void Advance(std::uint64_t done) override {
      lines.push_back(ProgressLine(L"Counting", done, all));
    }
    bool IsCancelled() const override { return false; }
    void End() override { lines.emplace_back(L"end"); }
    std::vector<GString> lines;
    std::uint64_t all = 0;
  } listener;
  try {
    Operation operation(listener, L"Counting", 3);
    EXPECT_TRUE(operation.Step());
    EXPECT_TRUE(operation.Step());
    throw 1;
  } catch (int) {
  }
  const std::vector<GString> expected = {L"Counting 0 %", L"Counting 33 %", L"Counting 66 %",
                                         L"end"};
  EXPECT_EQ(expected, listener.lines);
  EXPECT_EQ(L"Drawing", ProgressLine(L"Drawing", 7, 0));
  EXPECT_TRUE(shr::ProgressFactory::CanConstruct(L"Console"));
  EXPECT_FALSE(MakeProgress(true)->IsCancelled());
}

TEST(Application, outputsReplaceOldOnesTogether) {
  const TemporaryFolder folder;
  Options options;
  options.outFolder = folder.Path(L"\x5730\x56F3/new");
  options.save = folder.Path(L"saved.map");
  EXPECT_NO_THROW(WriteOutputs({"map 1", "page 1", "saved 1"}, options));
  EXPECT_NO_THROW(WriteOutputs({"map 2", "page 2", "saved 2"}, options));
  EXPECT_EQ("map 2", ReadBytes(options.outFolder + L"/map.svg"));
  EXPECT_EQ("page 2", ReadBytes(options.outFolder + L"/report.html"));
  EXPECT_EQ("saved 2", ReadBytes(options.save));
}

TEST(Application, aFailureLeavesTheFilesAsTheyWere) {
  const TemporaryFolder folder;
  WriteBytes(folder.Path(L"map.svg"), "old map");
  WriteBytes(folder.Path(L"saved.map"), "old saved");
  std::filesystem::create_directory(ToFilesystemPath(folder.Path(L"report.html")));
  Options options;
  options.outFolder = folder.Path();
  options.save = folder.Path(L"saved.map");
  EXPECT_THROW(WriteOutputs({"map", "page", "saved"}, options), shr::Exception);
  EXPECT_EQ("old map", ReadBytes(folder.Path(L"map.svg")));
  EXPECT_EQ("old saved", ReadBytes(folder.Path(L"saved.map")));
  EXPECT_EQ(3u, folder.Names().size());
  options.outFolder = folder.Path(L"new");
  options.save = folder.Path(L"missing/saved.map");
  EXPECT_THROW(WriteOutputs({"map", "page", "saved"}, options), shr::Exception);
  EXPECT_FALSE(Exists(options.outFolder));
  for (const wchar_t* const bad : {L"map.svg", L"map.svg/below"}) {
    options.outFolder = folder.Path(bad);
    EXPECT_THROW(WriteOutputs({"map", "page", "saved"}, options), shr::Exception);
  }
}
