// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Stores a sample of everything that an archive takes, or loads one and compares it with what this
// target means by it: archive_exchange store|load FILE. exchange.py lets two targets exchange
// files.

#include <cmath>
#include <iostream>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "tests/archive/ArchiveModel.h"
#include "tests/archive/SurveyFormat.h"

namespace {

using namespace shr;

/// Everything that is transferred; equal samples mean the same on every target.
struct Sample {
  bool truth = true;
  char letter = '\x80';
  short small = -32768;
  unsigned short bigSmall = 65535;
  int number = -2147483647 - 1;
  unsigned bigNumber = 4294967295u;
  long wide = -2147483647L - 1;
  unsigned long bigWide = 4294967295ul;
  float real = 1.0f / 3;
  std::vector<double> reals = {-0.0, 0.1, 5e-324, std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::max()};
  std::string narrow = "caf\xE9\r\n\x1A";
  std::wstring text = L"Br\u00FCcke \U0001F309 \uFFFD\r\n\x1A";
  GString longText = GString(70'000, L'\u4E2D');
  std::vector<GString> texts = {L"", L"a", L"\u0416"};
  std::map<int, std::string> numbered = {{-1, "minus"}, {7, "seven"}};
  Color4b color = Color4b(1, 2, 3, 4);
  std::shared_ptr<test::CSurvey> survey = std::make_shared<test::CSurvey>();
  std::vector<std::shared_ptr<CTypedObject>> graph;

  Sample() {
    survey->name = L"\u00DCberblick";
    survey->points = {Vec2f(1.0f, -2.5f), Vec2f(0.0f, 1e10f)};
    auto node = std::make_shared<test::Node>(5);
    auto leaf = std::make_shared<test::Leaf>();
    leaf->text = "leaf";
    node->next = leaf.get();
    node->shared = {leaf, survey, leaf};
    graph = {node, leaf, nullptr, node};
  }

  void Transfer(Archive& archive) {
    archive.Transfer(truth);
    archive.Transfer(letter);
    archive.Transfer(small);
    archive.Transfer(bigSmall);
    archive.Transfer(number);
    archive.Transfer(bigNumber);
    archive.Transfer(wide);
    archive.Transfer(bigWide);
    archive.Transfer(real);
    shr::Transfer(archive, reals);
    archive.SyncCheck();
    archive.Transfer(narrow);
    archive.Transfer(text);
    archive.Transfer(longText);
    shr::Transfer(archive, texts);
    shr::Transfer(archive, numbered);
    archive.Transfer(color);
    test::TransferSurvey(archive, survey);
    shr::Transfer(archive, graph);
    archive.SyncCheck();
  }

  bool HasTheValuesOf(const Sample& other) const {
    return truth == other.truth && letter == other.letter && small == other.small &&
           bigSmall == other.bigSmall && number == other.number && bigNumber == other.bigNumber &&
           wide == other.wide && bigWide == other.bigWide && real == other.real &&
           reals == other.reals && std::signbit(reals[0]) && narrow == other.narrow &&
           text == other.text && longText == other.longText && texts == other.texts &&
           numbered == other.numbered && color == other.color &&
           survey->name == other.survey->name && survey->points == other.survey->points;
  }

  /// Returns whether the graph has the shape that the constructor gives it.
  bool HasItsGraph() const {
    if (graph.size() != 4 || graph[2] != nullptr || graph[3] != graph[0]) return false;
    const auto* const node = dynamic_cast<const test::Node*>(graph[0].get());
    const auto* const leaf = dynamic_cast<const test::Leaf*>(graph[1].get());
    return node != nullptr && leaf != nullptr && leaf->text == "leaf" && node->value == 5 &&
           node->next == leaf && node->shared.size() == 3 && node->shared[0].get() == leaf &&
           node->shared[1] == survey && node->shared[2].get() == leaf;
  }
};

void Clear(Sample& sample) {
  sample.truth = false;
  sample.letter = 0;
  sample.small = 0;
  sample.number = 0;
  sample.wide = 0;
  sample.bigSmall = 0;
  sample.bigNumber = 0;
  sample.bigWide = 0;
  sample.real = 0;
  sample.narrow.clear();
  sample.text.clear();
  sample.longText.clear();
  sample.survey.reset();
  sample.color = Color4b(0, 0, 0, 0);
}

int Run(std::string_view action, const GString& path) {
  Archive archive(path, action == "store" ? Archive::Store : Archive::Load);
  archive.SetVersion(test::SURVEY_VERSION);
  Sample sample;
  if (action == "load") Clear(sample);
  sample.Transfer(archive);
  archive.Close();
  if (sample.HasTheValuesOf(Sample()) && sample.HasItsGraph()) return 0;
  std::cerr << "the values are not those that were stored\n";
  return 1;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  try {
    return Run(arguments[1], GString(arguments[2]));
  } catch (const Exception& error) {
    std::cerr << error.GetDescription().ToUtf8() << '\n';
    return 1;
  }
}
