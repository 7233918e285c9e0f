// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// `CSystemFaceInfo::Match` among 500 to 50,000 faces: requests that no face serves perfectly, so
// that every face is scored (cold), the same request again (cached), and requests of installed
// names (perfect). Beside it the same rules without haste: each face asked for its score. On Linux
// fontconfig chooses among as many patterns. The faces are symbol sets, which need no fonts and are
// made alike on both targets; before anything is timed, our answers and the plain ones must agree.
// And the extent of text in a face whose glyphs were all met.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "bench/fonts/MatchBench.h"
#include "shared/fonts/StrokedFace.h"
#include "shared/fonts/SystemFaceInfo.h"
#include "shared/text/StringCompare.h"

namespace {

using namespace shr;

constexpr int FLAGS = 63;

/// A request: the same style of one name or the other, so that the cache never knows it.
struct Asked {
  const wchar_t* name;
  unsigned char pitchAndFamily;
};
constexpr Asked NOWHERE[] = {{L"No such family", 0x21}, {L"Nor this one", 0x31}};

int MatchOurs(const GString& name, unsigned char pitchAndFamily) {
  return CSystemFaceInfo::Instance().Match(name, 400, 0, 204, pitchAndFamily, FLAGS, FACE_SYMBOL);
}

int MatchPlainly(const std::vector<std::shared_ptr<CFaceInfo>>& faces, const GString& name,
                 unsigned char pitchAndFamily) {
  int best = NO_FACE, bestValue = -1;
  for (std::size_t i = 0; i < faces.size(); ++i) {
    if ((faces[i]->GetFaceType() & FACE_SYMBOL) == 0) continue;
    const int value =
        CSystemFaceInfo::CalcMatchValue(*faces[i], name, 400, 0, 204, pitchAndFamily, FLAGS);
    if (value > bestValue) {
      best = static_cast<int>(i);
      bestValue = value;
      if (value == PERFECT_MATCH) break;
    }
  }
  return best;
}

std::vector<std::shared_ptr<CFaceInfo>> AllFaces() {
  std::vector<std::shared_ptr<CFaceInfo>> faces;
  for (int i = 0; i < CSystemFaceInfo::Instance().GetFaceCount(); ++i) {
    faces.push_back(CSystemFaceInfo::Instance().GetFaceInfo(i));
  }
  return faces;
}

/// Makes the registry hold that many faces besides those of the machine, and compares answers.
void Prepare(std::size_t count) {
  static std::size_t prepared = 0;
  if (prepared == count) return;
  prepared = count;
  std::vector<CSYMSetInfo> table;
  for (std::size_t i = 0; i < count; ++i) {
    const GString name = GString::FromUtf8(bench::FamilyName(i / bench::STYLES));
    const auto pitch = static_cast<unsigned char>(0x10 * (i % 5) + i % 2);
    table.emplace_back(name, L"Markers.sym", static_cast<unsigned char>(i % 3 * 102), pitch);
  }
  CSYMSetInfo::SetTable(table);
  CSystemFaceInfo::Instance().Refresh();
  const auto faces = AllFaces();
  for (const Asked& asked : NOWHERE) {
    for (const wchar_t* const name : {asked.name, L"family 07919", L"FAMILY 15838"}) {
      if (MatchOurs(name, asked.pitchAndFamily) !=
          MatchPlainly(faces, name, asked.pitchAndFamily)) {
        std::fprintf(stderr, "The two ways to match disagree.\n");
        std::abort();
      }
    }
  }
}

void ColdOurs(benchmark::State& state) {
  Prepare(static_cast<std::size_t>(state.range(0)));
  std::size_t i = 0;
  for (auto _ : state) {
    const Asked& asked = NOWHERE[i++ % 2];
    benchmark::DoNotOptimize(CSystemFaceInfo::Instance().Match(
        asked.name, 400, 0, 204, asked.pitchAndFamily, FLAGS, FACE_SYMBOL));
  }
}

void ColdPlain(benchmark::State& state) {
  Prepare(static_cast<std::size_t>(state.range(0)));
  const auto faces = AllFaces();
  const GString names[] = {NOWHERE[0].name, NOWHERE[1].name};
  std::size_t i = 0;
  for (auto _ : state) {
    const std::size_t which = i++ % 2;
    benchmark::DoNotOptimize(MatchPlainly(faces, names[which], NOWHERE[which].pitchAndFamily));
  }
}

void CachedOurs(benchmark::State& state) {
  Prepare(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(CSystemFaceInfo::Instance().Match(L"No such family", 400, 0, 204, 0x21,
                                                               FLAGS, FACE_SYMBOL));
  }
}

void PerfectOurs(benchmark::State& state) {
  Prepare(static_cast<std::size_t>(state.range(0)));
  const GString names[] = {L"Family 07919", L"Family 15838"};
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        CSystemFaceInfo::Instance().Match(names[i++ % 2], 400, 0, 0, 0, MATCH_NAME, FACE_SYMBOL));
  }
}

void ExtentOurs(benchmark::State& state) {
  const std::wstring line(static_cast<std::size_t>(state.range(0)), L'e');
  CSystemFaceInfo& faces = CSystemFaceInfo::Instance();
  const std::shared_ptr<CFaceInfo> face = faces.GetFaceInfo(faces.GetDefaultTextFace());
  face->CalcEmExtent(line);
  for (auto _ : state) benchmark::DoNotOptimize(face->CalcEmExtent(line));
}

BENCHMARK(ColdOurs)->Name("fonts/match_cold/ours")->Arg(500)->Arg(5000)->Arg(50000);
BENCHMARK(ColdPlain)->Name("fonts/match_cold/plain")->Arg(500)->Arg(5000)->Arg(50000);
BENCHMARK(CachedOurs)->Name("fonts/match_cached/ours")->Arg(500)->Arg(5000)->Arg(50000);
BENCHMARK(PerfectOurs)->Name("fonts/match_perfect/ours")->Arg(500)->Arg(5000)->Arg(50000);
BENCHMARK(ExtentOurs)->Name("fonts/extent/ours")->Arg(10)->Arg(100)->Arg(1000);

}  // namespace
