// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Labels of a map scanned: plain names, styles, sizes, offsets, colors, escapes, line breaks. The
// characters told must be as many as the labels were made with before anything is timed.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

#include "shared/mathtext/MathTextScanner.h"

namespace {

using namespace shr;

struct Counter : IMathTextScanner {
  void Text(const wchar_t* text) override { units += std::wcslen(text); }
  void CharCode(unsigned) override { ++calls; }
  void Newline() override { ++calls; }
  void Facename(const wchar_t*) override { ++calls; }
  void FontSize(double) override { ++calls; }
  void Bold() override { ++calls; }
  void Italic() override { ++calls; }
  void Underline() override { ++calls; }
  void StrikeThrough() override { ++calls; }
  void Plain() override { ++calls; }
  void VerticalOffset(double) override { ++calls; }
  void SavePosition(unsigned) override { ++calls; }
  void RestorePosition(unsigned) override { ++calls; }
  void PushState() override { ++calls; }
  void PopState() override { ++calls; }
  void PredefinedColor(Color4b) override { ++calls; }
  void ColorComponent(unsigned, unsigned) override { ++calls; }
  void Color(Color4b) override { ++calls; }
  void Line(double, double, Side) override { ++calls; }
  void DateTime(const wchar_t*) override { ++calls; }
  void BeginSubstring(double, double, HAlignment, VAlignment) override { ++calls; }
  void EndSubstring() override { ++calls; }
  void Error(const wchar_t*) override { std::abort(); }

  std::size_t units = 0, calls = 0;
};

/// Markup and how many of its units are text.
struct Kind {
  const wchar_t* begin;
  const wchar_t* end;
};
constexpr Kind KINDS[] = {
    {L"", L""},
    {L"{\\b ", L"}"},
    {L"{\\i\\fs80 ", L"}\\up40\\fs60 "},
    {L"\\color(70,130,180)", L"\n\\fs75\\gray "},
    {L"\\f\"Arial\"\\ul ", L"\\plain\\dn20 "},
    {L"\\{", L"\\}"},
};

struct Labels {
  std::vector<std::wstring> texts;
  std::size_t units = 0, textUnits = 0;
};

Labels MakeLabels(std::size_t count) {
  std::mt19937 random(7);
  Labels labels;
  for (std::size_t i = 0; i < count; ++i) {
    const Kind& kind = KINDS[random() % std::size(KINDS)];
    std::wstring name(4 + random() % 12, L'x');
    for (wchar_t& unit : name) unit = static_cast<wchar_t>(L'a' + random() % 26);
    const std::wstring number = std::to_wstring(random() % 9000);
    labels.texts.push_back(kind.begin + name + kind.end + number);
    labels.units += labels.texts.back().size();
    labels.textUnits +=
        name.size() + number.size() + 2 * (kind.begin[0] == L'\\' && kind.begin[1] == L'{');
  }
  return labels;
}

void ScanAll(const Labels& labels, Counter& counter) {
  for (const std::wstring& text : labels.texts) ScanMathText(text.c_str(), counter);
}

void Scan(benchmark::State& state) {
  const Labels labels = MakeLabels(static_cast<std::size_t>(state.range(0)));
  Counter check;
  ScanAll(labels, check);
  if (check.units != labels.textUnits) {
    std::fprintf(stderr, "The scanner loses text\n");
    std::abort();
  }
  for (auto _ : state) {
    Counter counter;
    ScanAll(labels, counter);
    benchmark::DoNotOptimize(counter.calls);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(labels.units));
}
BENCHMARK(Scan)
    ->Name("mathtext/scan/ours")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
