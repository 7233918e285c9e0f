// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Draws a sheet of all glyphs of a symbol set, or of an installed face, as an SVG picture: each
// with its character and name.
//
//     symbols --set Symbols/Markers.sym --svg markers.svg
//     symbols --face Arial --svg arial.svg

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "examples/common/CommandLine.h"
#include "examples/common/Program.h"
#include "shared/files/Path.h"
#include "shared/files/ReplacementFile.h"
#include "shared/fonts/StrokedFace.h"
#include "shared/fonts/SystemFaceInfo.h"
#include "shared/platform/Console.h"
#include "shared/plots/GlyphPath.h"
#include "shared/plots/SvgWriter.h"

namespace {

using namespace shr;

constexpr const wchar_t* PROGRAM = L"symbols";
constexpr double CELL_WIDTH = 104, CELL_HEIGHT = 86;  // pixels
constexpr double EM = 46;
constexpr double BASELINE = 54;  // below the top of a cell
constexpr double MARGIN = 16, TITLE = 40;
constexpr char32_t LAST_SHOWN = 0x24F;  // of installed faces

struct Settings {
  GString set, face, svg;
  std::size_t columns = 10;
};

/// What a cell shows.
struct Cell {
  char32_t code;
  GString name;
  double advance;
  GlyphVectors vectors;
};

struct Sheet {
  GString title;
  std::vector<Cell> cells;
};

Sheet SheetOfSet(const GString& set) {
  // A name alone is that of a set that comes with the library.
  const GString path = IsFileReadable(set) ? set : LocateSymbolSet(set);
  const CStrokedFace face = CStrokedFace::FromFile(path);
  Sheet sheet = {face.GetFaceName(), {}};
  for (const CStrokedFace::Glyph& glyph : face.GetGlyphs()) {
    sheet.cells.push_back({glyph.code, glyph.name, glyph.metrics.advance, glyph.vectors});
  }
  return sheet;
}

Sheet SheetOfFace(const GString& name) {
  CSystemFaceInfo& faces = CSystemFaceInfo::Instance();
  const int index =
      faces.Match(name, 400, 0, 0, 0, MATCH_NAME | MATCH_WEIGHT | MATCH_ITALIC, FACE_ALL_TYPES);
  const std::shared_ptr<CFaceInfo> face = faces.GetFaceInfo(index);
  Sheet sheet = {face->GetFaceName(), {}};
  for (char32_t code = U'!'; code <= LAST_SHOWN; ++code) {
    if (!face->HasGlyph(code)) continue;
    sheet.cells.push_back(
        {code, GString(), face->GetGlyphMetrics(code).advance, face->GetGlyphVectors(code)});
  }
  return sheet;
}

std::string PathData(const GlyphOutline& outline, double x, double y) {
  std::string data;
  AppendGlyphPath(data, outline, x, y, EM);
  return data;
}

void DrawCell(SvgWriter& svg, const Cell& cell, double x, double y) {
  const double left = x + (CELL_WIDTH - cell.advance * EM) / 2;
  if (!cell.vectors.fill.verbs.empty()) {
    svg.Begin("path").Attribute("d", PathData(cell.vectors.fill, left, y + BASELINE)).End();
  }
  if (!cell.vectors.stroke.verbs.empty()) {
    svg.Begin("path").Attribute("d", PathData(cell.vectors.stroke, left, y + BASELINE));
    svg.Attribute("class", "pen").Attribute("stroke-width", cell.vectors.penWidth * EM).End();
  }
  GString code;
  code.FormatString(L"U+%04X", static_cast<unsigned int>(cell.code));
  const auto write = [&svg, x](double at, const GString& text, const char* kind) {
    svg.Begin("text").Attribute("x", x + CELL_WIDTH / 2).Attribute("y", at);
    svg.Attribute("class", kind).Text(text).End();
  };
  write(y + CELL_HEIGHT - 10, cell.name.substr(0, 24), "name");
  write(y + CELL_HEIGHT - 1, code, "code");
}

std::string Draw(const Sheet& sheet, std::size_t columns) {
  const std::size_t rows = (sheet.cells.size() + columns - 1) / columns;
  const double width = 2 * MARGIN + CELL_WIDTH * static_cast<double>(columns);
  const double height = 2 * MARGIN + TITLE + CELL_HEIGHT * static_cast<double>(rows);
  SvgWriter svg;
  svg.Begin("svg").Attribute("xmlns", "http://www.w3.org/2000/svg");
  svg.Attribute("width", width).Attribute("height", height);
  svg.Begin("title").Text(sheet.title).End();
  svg.Begin("style").Raw(
      ".pen{fill:none;stroke:#1d2733;stroke-linecap:round;stroke-linejoin:round}path{fill:#1d2733}"
      "text{text-anchor:middle;font-family:sans-serif;fill:#5a6675}.name{font-size:8px}"
      ".code{font-size:7px;fill:#98a2ae}.title{font-size:20px;text-anchor:start;fill:#1d2733}");
  svg.End();
  svg.BeginRectangle(Box2d(0, 0, width, height)).Attribute("fill", "#fff").End();
  svg.Begin("text").Attribute("x", MARGIN).Attribute("y", MARGIN + 16).Attribute("class", "title");
  svg.Text(sheet.title).End();
  for (std::size_t i = 0; i < sheet.cells.size(); ++i) {
    DrawCell(svg, sheet.cells[i], MARGIN + CELL_WIDTH * static_cast<double>(i % columns),
             MARGIN + TITLE + CELL_HEIGHT * static_cast<double>(i / columns));
  }
  svg.End();
  return svg.Take();
}

examples::ExitStatus WriteSheet(const Settings& settings) {
  const Sheet sheet = settings.face.empty() ? SheetOfSet(settings.set) : SheetOfFace(settings.face);
  const std::string picture = Draw(sheet, settings.columns);
  CReplacementFile file(settings.svg);
  file.Write(picture);
  file.Commit();
  return examples::ExitStatus::Success;
}

examples::ParsedArguments Parse(const std::vector<GString>& arguments, Settings& settings) {
  examples::ArgumentParser parser(
      "symbols", "Draws a sheet of the glyphs of a symbol set or of an installed face.",
      SYMBOLS_VERSION);
  parser.AddText("--set", settings.set, "FILE", "Symbol set: a file, or the name of a shipped one");
  parser.AddText("--face", settings.face, "NAME", "Installed face, instead of a set")
      .Excludes({"--set"});
  parser.AddText("--svg", settings.svg, "FILE", "The picture to write").Required();
  parser.AddCount("--columns", settings.columns, 100, "Glyphs in a row");
  examples::ParsedArguments parsed = parser.Parse(arguments);
  const bool runs = parsed.action == examples::ParsedArguments::Action::Run;
  if (runs && settings.set.empty() && settings.face.empty()) {
    return examples::UsageError(PROGRAM, L"one of --set and --face is needed");
  }
  if (runs && settings.columns == 0) {
    return examples::UsageError(PROGRAM, L"--columns must not be 0");
  }
  return parsed;
}

examples::ExitStatus Run(const std::vector<GString>& arguments) {
  Settings settings;
  const examples::ParsedArguments parsed = Parse(arguments, settings);
  return examples::RunParsed(PROGRAM, parsed, [&settings] { return WriteSheet(settings); });
}

}  // namespace

int main(int argc, char* argv[]) {
  const std::vector<GString> arguments = platform::ProgramArguments(argc, argv);
  return static_cast<int>(examples::RunProgram(PROGRAM, [&] { return Run(arguments); }));
}
