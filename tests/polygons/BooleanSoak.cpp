// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Usage: boolean_soak [CASES [FAMILY [SEED]]]
// Sends CASES pairs of polygons of each family (default 1000), or of the one named, through the
// four operations of the clipper from the given seed on (default 0). Checks the areas, the
// misplaced area, crossings and nesting of each result by the exact oracle, prints each wrong one
// with its seed and, at the end, the number of results, of wrong ones, and a hash of the bits of
// all results, which is the same on every machine. "all" stands for every family. Exit status: 0
// when all are right, 1 otherwise, 2 for an unknown family.

#include <bit>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "shared/diagnostics/Exception.h"
#include "tests/polygons/BooleanCases.h"
#include "tests/polygons/GpcTestSupport.h"

namespace {

using namespace shr::test;

/// A hash of numbers in a row (G. Fowler, L. C. Noll and K. Vo, "FNV hash", the 64-bit variant 1a,
/// eight bytes at a time).
class Hash {
public:
  void Add(std::uint64_t value) { value_ = (value_ ^ value) * 0x100000001B3u; }
  void Add(const BooleanResult& result) {
    for (std::size_t i = 0; i < result.contours.size(); ++i) {
      Add(static_cast<std::uint64_t>(result.holeFlags[i]) + 2 * result.contours[i].size());
      for (const shr::Vec2d& point : result.contours[i]) {
        Add(std::bit_cast<std::uint64_t>(point.x + 0.0));  // -0 is 0
        Add(std::bit_cast<std::uint64_t>(point.y + 0.0));
      }
    }
  }
  std::uint64_t Value() const { return value_; }

private:
  std::uint64_t value_ = 0xCBF29CE484222325u;
};

struct Tally {
  unsigned long long results = 0;
  unsigned long long wrong = 0;
  Hash hash;
};

std::string FaultOf(const BooleanJudge& judge, Operation operation, const BooleanCase& pair,
                    Hash& hash) {
  try {
    const BooleanResult result = OperateByGpc(operation, pair.subject, pair.clip);
    hash.Add(result);
    return judge.Judge(operation, result).fault;
  } catch (const shr::Exception&) {
    return "an exception";
  }
}

void Run(const CaseFamily& family, std::uint64_t seed, Tally& tally) {
  std::mt19937_64 random(seed);
  const BooleanCase pair = family.make(random);
  const BooleanJudge judge(EvenOdd(pair.subject), EvenOdd(pair.clip));
  for (const Operation operation : OPERATIONS) {
    const std::string fault = FaultOf(judge, operation, pair, tally.hash);
    ++tally.results;
    if (fault.empty()) continue;
    ++tally.wrong;
    std::printf("%s, seed %llu, %s: %s\n", family.name, static_cast<unsigned long long>(seed),
                NameOf(operation), fault.c_str());
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::uint64_t cases = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000;
  const char* const wanted = argc > 2 ? argv[2] : "all";
  const std::uint64_t first = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 0;
  Tally all;
  for (const CaseFamily& family : BooleanCaseFamilies()) {
    if (std::strcmp(wanted, "all") != 0 && std::strcmp(wanted, family.name) != 0) continue;
    Tally tally;
    for (std::uint64_t seed = first; seed < first + cases; ++seed) Run(family, seed, tally);
    std::printf("%-20s seeds %llu to %llu: %llu results, %llu wrong, hash %016llx\n", family.name,
                static_cast<unsigned long long>(first),
                static_cast<unsigned long long>(first + cases), tally.results, tally.wrong,
                static_cast<unsigned long long>(tally.hash.Value()));
    std::fflush(stdout);
    all.results += tally.results;
    all.wrong += tally.wrong;
    all.hash.Add(tally.hash.Value());
  }
  std::printf("%llu results, %llu wrong, hash %016llx\n", all.results, all.wrong,
              static_cast<unsigned long long>(all.hash.Value()));
  if (all.results == 0) return 2;
  return all.wrong == 0 ? 0 : 1;
}
