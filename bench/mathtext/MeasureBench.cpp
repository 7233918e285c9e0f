// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Warm labels of a map parsed and measured: from the text of a label to its box. Names are real and
// in many scripts, so that some are shaped and fall back on other faces; what was shaped once is
// remembered. Our labels must come out with their name and a box before anything is timed; the peer
// must find a Latin sample as wide.

#include "bench/mathtext/MeasureBench.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "shared/mathtext/Context.h"
#include "shared/mathtext/FaceTextIF.h"

namespace bench {
namespace {

using namespace shr;

struct Markup {
  const char* mathText;
  const char* pango;
};
/// The name stands for "@".
constexpr Markup KINDS[] = {
    {"@", "@"},
    {"@", "@"},
    {"{\\b @}", "<b>@</b>"},
    {"@\n{\\i\\fs75 1984}", "@\n<i><span size=\"75%\">1984</span></i>"},
    {"@\\up40\\fs60 2", "@<span rise=\"4915\" size=\"60%\">2</span>"},
};

std::string Filled(const char* markup, const std::string& name) {
  std::string text = markup;
  return text.replace(text.find('@'), 1, name);
}

std::vector<std::string> ReadNames() {
  std::ifstream file(SHARED_EXAMPLE_DATA_DIR "/cities-utf8.csv");
  std::vector<std::string> names;
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) {
    const std::string name = line.substr(0, line.find(','));
    if (name.find_first_of("\"&<\\{}") == std::string::npos) names.push_back(name);
  }
  if (names.size() < 1000) {
    std::fprintf(stderr, "The cities cannot be read\n");
    std::abort();
  }
  return names;
}

std::vector<GString> MakeTexts(std::size_t count) {
  std::vector<GString> texts;
  for (const Label& label : MakeLabels(count)) texts.push_back(GString::FromUtf8(label.mathText));
  return texts;
}

/// Returns the sum of the widths, which keeps the work from being left out.
double MeasureAll(const std::vector<GString>& texts, CMTTextIF& measure) {
  CMTContext context(measure, LABEL_HEIGHT);
  double sum = 0;
  std::shared_ptr<CMTMultiLineElement> element;
  for (const GString& text : texts) {
    if (context.Parse(text, element) != CMTContext::MT_SUCCESS) std::abort();
    sum += element->GetInternalBBox(measure).xRange();
  }
  return sum;
}

void CheckLabels() {
  CMTFaceTextIF measure;
  CMTContext context(measure, LABEL_HEIGHT);
  for (const Label& label : MakeLabels(1000)) {
    std::shared_ptr<CMTMultiLineElement> element;
    context.Parse(GString::FromUtf8(label.mathText), element);
    const bool isRight = element != nullptr && element->GetInternalBBox(measure).HasArea() &&
                         element->GetSimpleText().starts_with(GString::FromUtf8(label.name));
    if (isRight) continue;
    std::fprintf(stderr, "A label is measured wrong: %s\n", label.mathText.c_str());
    std::abort();
  }
}

MTAttributes LabelAttributes() {
  MTAttributes attributes;
  attributes.face.name = L"Arial";
  attributes.height = LABEL_HEIGHT;
  return attributes;
}

void MeasureOurs(benchmark::State& state) {
  CheckLabels();
  const std::vector<GString> texts = MakeTexts(static_cast<std::size_t>(state.range(0)));
  CMTFaceTextIF measure;
  measure.SetAttributes(LabelAttributes());
  MeasureAll(texts, measure);
  for (auto _ : state) benchmark::DoNotOptimize(MeasureAll(texts, measure));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(MeasureOurs)
    ->Name("mathtext/measure/ours")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);

}  // namespace

std::vector<Label> MakeLabels(std::size_t count) {
  const std::vector<std::string> names = ReadNames();
  std::vector<Label> labels;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string& name = names[i % names.size()];
    const Markup& kind = KINDS[i % std::size(KINDS)];
    labels.push_back({name, Filled(kind.mathText, name), Filled(kind.pango, name)});
  }
  return labels;
}

double SampleWidth() {
  TextFace face;
  face.name = L"Arial";
  return MeasureText(GString::FromUtf8(SAMPLE), face) * LABEL_HEIGHT;
}

}  // namespace bench
