// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/georeference/Application.h"

#include <memory>

#include "examples/common/OutputFiles.h"
#include "examples/common/Progress.h"
#include "examples/georeference/Fit.h"
#include "examples/georeference/GridPlot.h"
#include "examples/georeference/Options.h"
#include "examples/georeference/PointFiles.h"
#include "examples/georeference/ReportPage.h"
#include "examples/georeference/Tables.h"
#include "shared/files/Path.h"
#include "shared/mathtext/MathTextScanner.h"

namespace georeference {

using namespace shr;

namespace {

constexpr const wchar_t* PAGE_NAME = L"report.html";

/// Everything is read and computed before the first file is written.
ExitStatus Run(const Options& options) {
  const std::unique_ptr<examples::IProgress> progress = examples::MakeProgress(options.quiet);
  const ControlPoints points = ReadControlPoints(options.points, options.codePage);
  ImagePoints more;
  const bool hasMore = !options.warpPoints.empty();
  if (hasMore) more = ReadImagePoints(options.warpPoints, options.codePage);
  const Georeference fit = Fit(points, options.method, *progress);
  const GridPicture picture = DrawGrid(points, fit, options);
  const GString source = CPath(options.points).GetFileName();
  const PageFacts facts{
      options.title.empty() ? EscapeMathText(L"Georeference of " + source) : options.title, source,
      more.ids.size()};

  examples::OutputFiles files(options.outFolder);
  const CPath folder(options.outFolder);
  const GString report = folder.Join(PAGE_NAME);
  files.Add(folder.Join(GRID_NAME), picture.svg);
  files.Add(folder.Join(RESIDUALS_NAME), MakeResidualTable(points, fit));
  files.Add(folder.Join(COEFFICIENTS_NAME), MakeCoefficientTable(points, fit));
  if (hasMore) files.Add(folder.Join(POINTS_NAME), MakePointTable(more, fit));
  files.Add(report, MakePage(points, fit, picture, facts));
  files.Commit();
  return options.quiet ? ExitStatus::Success : examples::Show(PROGRAM, report + L"\n");
}

ExitStatus RunArguments(const std::vector<GString>& arguments) {
  const CommandLine commandLine = ParseCommandLine(arguments);
  return examples::RunParsed(PROGRAM, commandLine, [&] { return Run(commandLine.options); });
}

}  // namespace

ExitStatus RunProgram(const std::vector<GString>& arguments) {
  return examples::RunProgram(PROGRAM, [&] { return RunArguments(arguments); });
}

}  // namespace georeference
