// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/georeference/Options.h"

#include <algorithm>
#include <utility>

#include "shared/mathtext/Context.h"
#include "shared/numerics/registration/ImageRegistration.h"

namespace georeference {

using namespace shr;
using examples::ArgumentParser;

namespace {

constexpr std::size_t FEWEST_CELLS = 2;
constexpr std::size_t MOST_CELLS = 200;

constexpr const char* FOOTER =
    "Methods: auto, thin-plate-spline (tps), natural-cubic-spline, marcov-spline, "
    "exponential-spline,\n"
    "rational-quadratic-spline, inverse-distance-squared (idw), quadratic-polynomial (quadratic),\n"
    "general-linear (affine), linear-conformal (conformal), mixed-scale, uniform-scale, "
    "translate,\n"
    "identity-map. auto takes the one that errs least on points that are left out. A method that\n"
    "the control points do not determine falls back to a simpler one, which the report tells.\n"
    "Exit status: 0 success, 1 an input cannot be used, 2 wrong usage.";

struct ShortName {
  const wchar_t* word;
  WarpingMethod method;
};

constexpr ShortName SHORT_NAMES[] = {
    {L"tps", WarpThinPlateSpline},           {L"idw", WarpInverseDistanceSquared},
    {L"quadratic", WarpQuadraticPolynomial}, {L"affine", WarpGeneralLinear},
    {L"conformal", WarpLinearConformal},
};

GString Word(WarpingMethod method) {
  GString word = NameOf(method);
  std::replace(word.begin(), word.end(), L' ', L'-');
  return word.MakeLower();
}

bool IsAuto(const GString& word) {
  return GString(word).MakeLower() == L"auto";
}

GString FaultOfMethod(const GString& word) {
  if (IsAuto(word) || ParseMethod(word)) return GString();
  return L"'" + word + L"' is no method; the help lists them";
}

CommandLine Fault(const GString& what) {
  CommandLine result;
  static_cast<examples::ParsedArguments&>(result) = examples::UsageError(PROGRAM, what);
  return result;
}

}  // namespace

std::optional<WarpingMethod> ParseMethod(const GString& word) {
  const GString lower = GString(word).MakeLower();
  for (int i = 0; i < WARPING_METHOD_COUNT; ++i) {
    const auto method = static_cast<WarpingMethod>(i);
    if (lower == Word(method)) return method;
  }
  for (const ShortName& name : SHORT_NAMES) {
    if (lower == name.word) return name.method;
  }
  return std::nullopt;
}

CommandLine ParseCommandLine(const std::vector<GString>& arguments) {
  CommandLine result;
  Options& options = result.options;
  GString method = L"auto";
  ArgumentParser parser("georeference",
                        "Fits a scanned image to a map by control points and reports how well.",
                        GEOREFERENCE_VERSION);
  parser.SetFooter(FOOTER);
  parser.BeginGroup("Inputs");
  parser
      .AddText("--points", options.points, "FILE",
               "Control points: a table with image_x, image_y, map_x, map_y, or a .points file")
      .Required();
  parser.AddText("--warp-points", options.warpPoints, "FILE",
                 "Points of the image to transform: a table with image_x and image_y");
  parser.AddCodePage("--codepage", options.codePage,
                     "Code page of inputs without a byte-order mark");
  parser.BeginGroup("The registration");
  parser.AddText("--method", method, "NAME", "How to map the image, or auto, the default")
      .Check(FaultOfMethod);
  parser.AddCount("--grid", options.grid, MOST_CELLS,
                  "Cells of the grid along the longer side of the image, 2 to 200");
  parser.BeginGroup("Outputs");
  parser
      .AddText("--out", options.outFolder, "DIR",
               "Folder for report.html, grid.svg and tables; made when missing")
      .Required();
  parser.AddText("--title", options.title, "TEXT", "Title of the report, math text")
      .Check(FindMathTextFault);
  parser.AddText("--x-label", options.xLabel, "TEXT", "Name of the first coordinate, math text")
      .Check(FindMathTextFault);
  parser.AddText("--y-label", options.yLabel, "TEXT", "Name of the second coordinate, math text")
      .Check(FindMathTextFault);
  parser.AddTextMode(options.textMode);
  parser.AddFlag("--quiet", options.quiet, "Write nothing but errors");
  static_cast<examples::ParsedArguments&>(result) = parser.Parse(arguments);
  if (result.action != CommandLine::Action::Run) return result;
  if (options.outFolder.empty()) return Fault(L"--out is empty");
  if (options.grid < FEWEST_CELLS) return Fault(L"--grid takes 2 cells or more");
  if (!IsAuto(method)) options.method = ParseMethod(method);
  return result;
}

}  // namespace georeference
