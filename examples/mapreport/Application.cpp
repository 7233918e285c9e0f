// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Application.h"

#include <memory>

#include "examples/common/OutputFiles.h"
#include "examples/mapreport/Areas.h"
#include "examples/mapreport/MapArchive.h"
#include "examples/mapreport/MapCommands.h"
#include "examples/mapreport/MapEditor.h"
#include "examples/mapreport/MapGeoJson.h"
#include "examples/mapreport/ReportPage.h"
#include "examples/mapreport/RunLog.h"
#include "examples/mapreport/SvgMap.h"
#include "examples/mapreport/SvgOverview.h"
#include "examples/mapreport/TableFiles.h"
#include "shared/files/Path.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr const wchar_t* PROGRAM = L"mapreport";
constexpr const wchar_t* MAP_NAME = L"map.svg";
constexpr const wchar_t* PAGE_NAME = L"report.html";
const Box2d WORLD(-180, -90, 180, 90);

/// A new map goes through all steps, a saved one through those that the options name.
void RunSteps(MapEditor& editor, Model& model, const Options& options, IProgress& progress) {
  const Settings& settings = options.settings;
  const bool isNew = options.load.empty();
  const bool isClipped = isNew || settings.window || settings.clip;
  if (isNew || settings.window) {
    const Box2d window = settings.window.value_or(WORLD);
    editor.Do(std::make_shared<ClipToWindowCommand>(model, progress, window));
  }
  if (settings.clip) {
    const Area area = FindArea(model, *settings.clip);
    editor.Do(std::make_shared<ClipToAreaCommand>(model, progress, area));
  }
  if (isClipped) {
    editor.Do(std::make_shared<CountEventsCommand>(model, progress));
  }
  if (isClipped || settings.HasColors()) {
    Palette palette = isNew ? DefaultPalette() : model.palette;
    settings.Apply(palette);
    editor.Do(std::make_shared<ColorByCountCommand>(model, progress, palette));
  }
  if (settings.continent) {
    editor.Do(std::make_shared<UniteContinentCommand>(model, progress, *settings.continent));
  }
}

ExitStatus Run(const Options& options) {
  const RunLog log(options.log, options.remoteLog);
  const std::unique_ptr<IProgress> progress = MakeProgress(options.quiet);
  Model model = MakeModel(options, *progress);
  const GString report = WriteOutputs(MakeOutputs(model, options, *progress), options);
  if (options.remember) Remember(SETTINGS_KEY, model.window, model.palette.ramp);
  return options.quiet ? ExitStatus::Success : Show(PROGRAM, report + L"\n");
}

ExitStatus RunArguments(const std::vector<GString>& arguments) {
  const CommandLine commandLine = ParseCommandLine(arguments);
  return RunParsed(
      PROGRAM, commandLine, [&] { return Run(commandLine.options); }, LogFailure);
}

}  // namespace

Model MakeModel(const Options& options, IProgress& progress) {
  Model model = options.load.empty() ? ReadModel(options.inputs, progress) : LoadMap(options.load);
  options.settings.Apply(model.view);
  MapEditor editor(model, progress);
  RunSteps(editor, model, options, progress);
  editor.TakeBackAndRedo(options.undo);
  return model;
}

Outputs MakeOutputs(Model& model, const Options& options, IProgress& progress) {
  const Operation operation(progress, L"Drawing", 0);
  const MapPicture picture = DrawMap(model);
  Outputs outputs{picture.svg, MakePage(model, picture, MAP_NAME, options.csv)};
  outputs.overview = DrawOverview(model);
  if (options.csv) outputs.tables = MakeTableFiles(model, picture);
  if (!options.save.empty()) outputs.saved = StoreMap(model);
  if (!options.geojson.empty()) outputs.geojson = MakeGeoJson(model);
  return outputs;
}

GString WriteOutputs(const Outputs& outputs, const Options& options) {
  OutputFiles files(options.outFolder);
  const CPath folder(options.outFolder);
  const GString report = folder.Join(PAGE_NAME);
  files.Add(folder.Join(MAP_NAME), outputs.map);
  files.Add(folder.Join(OVERVIEW_NAME), outputs.overview);
  if (!options.save.empty()) files.Add(options.save, outputs.saved);
  if (!options.geojson.empty()) files.Add(options.geojson, outputs.geojson);
  for (const auto& [name, content] : outputs.tables) files.Add(folder.Join(name), content);
  files.Add(report, outputs.page);
  files.Commit();
  return report;
}

ExitStatus RunProgram(const std::vector<GString>& arguments) {
  return examples::RunProgram(
      PROGRAM, [&] { return RunArguments(arguments); }, LogFailure);
}

}  // namespace mapreport
