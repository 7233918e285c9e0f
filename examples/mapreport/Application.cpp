// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Application.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <system_error>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Format.h"
#include "examples/mapreport/InputError.h"
#include "examples/mapreport/MapFile.h"
#include "examples/mapreport/PointTables.h"
#include "examples/mapreport/Progress.h"
#include "examples/mapreport/ReportPage.h"
#include "examples/mapreport/SvgMap.h"
#include "shared/diagnostics/Exception.h"
#include "shared/files/Path.h"
#include "shared/files/ReplacementFile.h"
#include "shared/platform/Console.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr std::uint32_t UTF8_PAGE = 65001;
constexpr std::size_t STEPS = 7;
constexpr const wchar_t* MAP_NAME = L"map.svg";
constexpr const wchar_t* PAGE_NAME = L"report.html";

Source MakeSource(const wchar_t* layer, const GString& path, const TextFormat& format,
                  const GString& content) {
  return {layer, FileNameOf(path), format.Describe(), content, FindCredit(path)};
}

void ReadCountries(const TextInput& input, Model& model) {
  const TextFormat format = DetectTextFormat(input.path, input.codePage);
  MapContent content = ReadMapFile(input.path, format);
  model.sources.push_back(
      MakeSource(L"Countries", input.path, format,
                 FormatCount(content.countries.size(), L"country", L"countries") + L", " +
                     FormatCount(content.rings, L"ring", L"rings") + L" (" +
                     FormatCount(content.holes, L"hole", L"holes") + L"), " +
                     FormatCount(content.points, L"point", L"points")));
  model.countries = std::move(content.countries);
}

void ReadEventLayer(const TextInput& input, Model& model) {
  const TextFormat format = DetectTextFormat(input.path, input.codePage);
  model.events = ReadEvents(input.path, format);
  model.sources.push_back(MakeSource(L"Events", input.path, format,
                                     FormatCount(model.events.size(), L"event", L"events")));
}

void ReadCityLayer(const TextInput& input, Model& model) {
  const TextFormat format = DetectTextFormat(input.path, input.codePage);
  model.cities = ReadCities(input.path, format);
  model.sources.push_back(MakeSource(L"Cities", input.path, format,
                                     FormatCount(model.cities.size(), L"city", L"cities")));
}

/// The standard's own conversion of wide text depends on the locale; UTF-8 is a path everywhere.
std::filesystem::path ToFilesystemPath(const GString& path) {
  const std::string utf8 = path.ToNarrow(UTF8_PAGE);
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

/// A folder for the outputs. One that had to be made is removed again unless `Keep` is called.
class OutputFolder {
public:
  explicit OutputFolder(const GString& folder) : path_(ToFilesystemPath(folder)) {
    std::error_code error;
    if (std::filesystem::is_directory(path_, error)) return;
    isNew_ = std::filesystem::create_directories(path_, error);
    if (error) {
      GString reason;
      reason.FromNarrow(error.message(), UTF8_PAGE);
      ThrowInputError(folder, L"The folder cannot be made: " + reason);
    }
  }
  ~OutputFolder() {
    std::error_code error;
    if (isNew_) std::filesystem::remove(path_, error);
  }
  OutputFolder(const OutputFolder&) = delete;
  OutputFolder& operator=(const OutputFolder&) = delete;

  void Keep() { isNew_ = false; }

private:
  std::filesystem::path path_;
  bool isNew_ = false;
};

/// Puts a message of several lines, or with characters that move the cursor, on one line.
GString OneLine(const GString& message) {
  GString line;
  for (const wchar_t unit : message) {
    const bool isControl = unit < 0x20 || unit == 0x7F;
    if (!isControl) {
      line += unit;
    } else if (!line.empty() && line[line.size() - 1] != L' ') {
      line += L' ';
    }
  }
  return line.TrimRight();
}

void Complain(const GString& message) {
  platform::WriteText(stderr, L"mapreport: " + OneLine(message) + L"\n");
}

void Run(const Options& options) {
  Progress progress(STEPS, options.quiet);
  Model model = ReadModel(options, progress);
  const Outputs outputs = MakeOutputs(model, options, progress);
  progress.Step(L"Writing");
  const GString report = WriteOutputs(outputs, options.outFolder);
  progress.Finish();
  if (!options.quiet) platform::WriteText(stdout, report + L"\n");
}

}  // namespace

Model ReadModel(const Options& options, Progress& progress) {
  Model model;
  progress.Step(L"Reading countries");
  ReadCountries(options.map, model);
  progress.Step(L"Reading events");
  ReadEventLayer(options.points, model);
  progress.Step(L"Reading cities");
  ReadCityLayer(options.cities, model);
  return model;
}

Outputs MakeOutputs(Model& model, const Options& options, Progress& progress) {
  progress.Step(L"Clipping");
  ClipToWindow(model, options.window);
  progress.Step(L"Counting");
  CountEvents(model);
  ColorByCount(model);
  progress.Step(L"Drawing");
  const MapPicture picture = DrawMap(model, {options.title, options.labels});
  return {picture.svg, MakePage(model, picture, {options.title, MAP_NAME, options.strongest})};
}

GString WriteOutputs(const Outputs& outputs, const GString& folder) {
  OutputFolder made(folder);
  const GString report = CPath(folder).Join(PAGE_NAME);
  CReplacementFile map(CPath(folder).Join(MAP_NAME));
  CReplacementFile page(report);
  map.Write(outputs.map);
  page.Write(outputs.page);
  map.Commit();
  made.Keep();
  page.Commit();
  return report;
}

ExitStatus RunProgram(const std::vector<GString>& arguments) {
  try {
    const CommandLine commandLine = ParseCommandLine(arguments);
    switch (commandLine.action) {
      case CommandLine::Action::ShowText:
        platform::WriteText(stdout, commandLine.text);
        return ExitStatus::Success;
      case CommandLine::Action::UsageError:
        Complain(commandLine.text);
        return ExitStatus::Usage;
      case CommandLine::Action::Run:
        Run(commandLine.options);
        return ExitStatus::Success;
    }
  } catch (const Exception& error) {
    Complain(error.GetDescription());
  } catch (const std::bad_alloc&) {
    Complain(L"Out of memory");
  } catch (const std::exception& error) {
    Complain(GString(error.what()));
  }
  return ExitStatus::BadInput;
}

}  // namespace mapreport
