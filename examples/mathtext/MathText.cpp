// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Draws a label of math text as an SVG picture, or a gallery of all commands.
//
//     mathtext "{\b Oslo} \fs70 59.9\a176 N" --svg oslo.svg --text outlines
//     mathtext --gallery gallery

#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "examples/common/CommandLine.h"
#include "examples/common/Program.h"
#include "examples/mathtext/Gallery.h"
#include "examples/mathtext/LabelPicture.h"
#include "shared/files/ReplacementFile.h"
#include "shared/platform/Console.h"
#include "shared/plots/TimeText.h"

namespace {

using namespace shr;
using mathtext::LabelStyle;

constexpr const wchar_t* PROGRAM = L"mathtext";
constexpr double MOST_HEIGHT = 10000;

struct Settings {
  GString markup, svg, gallery, pictures;
  GString height, face, color, background, rotation, alignment, now;
  SvgTextMode textMode = SvgTextMode::Text;
};

std::optional<double> ReadHeight(const GString& text) {
  double height = 0;
  if (!text.ToDouble(height) || !(height >= 1 && height <= MOST_HEIGHT)) return std::nullopt;
  return height;
}

std::optional<double> ReadAngle(const GString& text) {
  double degrees = 0;
  if (!text.ToDouble(degrees) || !(degrees >= -360 && degrees <= 360)) return std::nullopt;
  return degrees;
}

std::optional<Color4b> ReadColor(const GString& text) {
  Color4b color(0, 0, 0, ALPHA_MIN);
  if (text == L"none" || ReadMathTextColor(text, color)) return color;
  return std::nullopt;
}

std::optional<HAlignment> ReadAlignment(const GString& text) {
  if (text == L"left") return HAlignment::Left;
  if (text == L"center") return HAlignment::Center;
  if (text == L"right") return HAlignment::Right;
  return std::nullopt;
}

/// Returns a moment of UTC as a calendar has it.
std::tm CalendarOf(double seconds) {
  const auto moment = static_cast<std::time_t>(seconds);
  return *std::gmtime(&moment);
}

LabelStyle StyleOf(const Settings& settings) {
  LabelStyle style;
  style.mode = settings.textMode;
  style.face = settings.face;
  style.height = ReadHeight(settings.height).value_or(style.height);
  style.color = ReadColor(settings.color).value_or(style.color);
  style.background = ReadColor(settings.background).value_or(style.background);
  style.rotation = ReadAngle(settings.rotation).value_or(style.rotation);
  style.alignment = ReadAlignment(settings.alignment).value_or(style.alignment);
  if (const std::optional<double> now = ParseTime(settings.now)) {
    style.clock = [now] { return CalendarOf(*now); };
  }
  return style;
}

void AddStyle(examples::ArgumentParser& parser, Settings& settings) {
  parser.BeginGroup("Style");
  parser.AddTextMode(settings.textMode);
  parser.AddText("--height", settings.height, "N", "Height of the text in pixels, 1 to 10000 (24)")
      .MustParse(ReadHeight, L"is no height from 1 to 10000");
  parser.AddText("--face", settings.face, "NAME", "Face to begin with");
  parser.AddText("--color", settings.color, "C", "Color to begin with, as in \\color()")
      .MustParse(ReadColor, L"is no color");
  parser.AddText("--background", settings.background, "C", "Color behind it (white), or none")
      .MustParse(ReadColor, L"is no color");
  parser.AddText("--rotate", settings.rotation, "DEG", "Turn, counter-clockwise, -360 to 360")
      .MustParse(ReadAngle, L"is no angle from -360 to 360");
  parser.AddText("--align", settings.alignment, "SIDE", "Justify lines: left, center, right")
      .MustParse(ReadAlignment, L"is not left, center or right");
  parser.AddText("--now", settings.now, "TIME", "What \\date and \\time show: 2026-03-05T14:30")
      .MustParse(ParseTime, L"is no time");
}

examples::ParsedArguments Parse(const std::vector<GString>& arguments, Settings& settings) {
  examples::ArgumentParser parser(
      "mathtext", "Draws a label of math text, or a gallery of all commands, as SVG.",
      MATHTEXT_VERSION);
  parser.AddText("label", settings.markup, "TEXT", "The label (docs/math-text.md has its markup)");
  parser.AddText("--svg", settings.svg, "FILE", "The picture to write");
  parser.AddText("--gallery", settings.gallery, "DIR", "Folder for the gallery")
      .Excludes({"--svg"});
  parser.AddText("--pictures", settings.pictures, "DIR", "Folder for outlines of all commands")
      .Excludes({"--svg", "--gallery"});
  AddStyle(parser, settings);
  examples::ParsedArguments parsed = parser.Parse(arguments);
  if (parsed.action != examples::ParsedArguments::Action::Run) return parsed;
  const bool drawsAll = !settings.gallery.empty() || !settings.pictures.empty();
  if (settings.svg.empty() && !drawsAll) {
    return examples::UsageError(PROGRAM, L"one of --svg, --gallery and --pictures is needed");
  }
  if (settings.markup.empty() != drawsAll) {
    return examples::UsageError(PROGRAM,
                                drawsAll ? L"a label goes with --svg" : L"a label is needed");
  }
  return parsed;
}

void Draw(const Settings& settings) {
  const LabelStyle style = StyleOf(settings);
  if (!settings.gallery.empty()) return mathtext::WriteGallery(settings.gallery, style);
  if (!settings.pictures.empty()) return mathtext::WriteCommandPictures(settings.pictures, style);
  const std::string picture = mathtext::DrawLabelPicture(settings.markup, style);
  CReplacementFile file(settings.svg);
  file.Write(picture);
  file.Commit();
}

examples::ExitStatus Run(const std::vector<GString>& arguments) {
  Settings settings;
  const examples::ParsedArguments parsed = Parse(arguments, settings);
  return examples::RunParsed(PROGRAM, parsed, [&settings] {
    Draw(settings);
    return examples::ExitStatus::Success;
  });
}

}  // namespace

int main(int argc, char* argv[]) {
  const std::vector<GString> arguments = platform::ProgramArguments(argc, argv);
  return static_cast<int>(examples::RunProgram(PROGRAM, [&] { return Run(arguments); }));
}
