// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mathtext/Gallery.h"

#include <string>

#include "examples/common/HtmlPage.h"
#include "examples/common/OutputFiles.h"
#include "examples/mathtext/Samples.h"
#include "shared/html/HtmlReport.h"

namespace mathtext {

namespace {

using examples::OutputFiles;

constexpr const char* GALLERY_STYLE =
    "CODE    {white-space:pre-wrap; overflow-wrap:anywhere;}\n"
    ".sample {border-bottom:solid #dddddd thin; padding:0.8em 0;}\n"
    ".sample P {margin:0 0 0.4em 0;}\n"
    ".pair   {display:flex; flex-wrap:wrap; gap:0.8em; align-items:flex-start;}\n"
    ".pair .picture {margin:0; border:solid #dddddd thin;}\n"
    "@media screen and (max-width:700px) {.pair .picture IMG {max-width:100%;}}\n"
    "@media (prefers-color-scheme:dark) {.sample, .pair .picture {border-color:#33383f;}}";

std::string Draw(const Sample& sample, LabelStyle style, SvgTextMode mode) {
  style.mode = mode;
  if (sample.isOnGray) style.background = Color4b(0xD8, 0xDC, 0xE0);
  return DrawLabelPicture(sample.markup, style);
}

/// Writes both pictures of a sample beside the page, and shows them.
void WriteSample(CHtmlReport& report, OutputFiles& files, const GString& folder,
                 const Sample& sample, const LabelStyle& style) {
  report << "<DIV CLASS=\"sample\">\n";
  report << Paragraph(GString(sample.explanation));
  report << "<P><CODE>" << HtmlEscape(std::wstring_view(sample.markup)) << "</CODE></P>\n";
  report << "<DIV CLASS=\"pair\">\n";
  for (const SvgTextMode mode : {SvgTextMode::Text, SvgTextMode::Outlines}) {
    const bool isText = mode == SvgTextMode::Text;
    const GString name = GString(sample.name) + (isText ? L"-text.svg" : L"-outlines.svg");
    const std::string svg = Draw(sample, style, mode);
    files.Add(folder + L"/" + name, svg);
    const GString what = isText ? L"Drawn as text: " : L"Drawn as outlines: ";
    examples::WritePicture(report, name, what + sample.explanation, svg);
  }
  report << "</DIV>\n</DIV>\n";
}

}  // namespace

void WriteGallery(const GString& folder, const LabelStyle& style) {
  OutputFiles files(folder);
  CHtmlReport report;
  const char* const title = "Math text";
  report << Preamble(title, std::string(examples::PAGE_STYLE) + "\n" + GALLERY_STYLE);
  report << Heading(1, title);
  report << Paragraph(
      "Each label is drawn twice: as text, by the faces of this browser, and as "
      "outlines, which look the same everywhere.");
  report << Heading(2, "Commands");
  for (const Sample& sample : CommandSamples()) WriteSample(report, files, folder, sample, style);
  report << Heading(2, "Scripts");
  for (const Sample& sample : ScriptSamples()) WriteSample(report, files, folder, sample, style);
  files.Add(folder + L"/gallery.html", examples::FinishPage(report));
  files.Commit();
}

void WriteCommandPictures(const GString& folder, const LabelStyle& style) {
  OutputFiles files(folder);
  for (const Sample& sample : CommandSamples()) {
    files.Add(folder + L"/" + GString(sample.name) + L".svg",
              Draw(sample, style, SvgTextMode::Outlines));
  }
  files.Commit();
}

}  // namespace mathtext
