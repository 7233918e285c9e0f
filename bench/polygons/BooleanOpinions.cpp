// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Usage: boolean_opinions [CASES [FAMILY [SEED [FOLDER]]]]
// Sends CASES pairs of polygons of each family (default 1000), or of the one named, through the
// clipper, GPolygon2d, Boost.Geometry and GEOS, judges all results by the exact oracle and prints
// for each family, contender and operation the number of errors and wrong results, the worst
// relative error of the area of those that are right, and the first fault. "all" stands for every
// family. SEED is that of the first case. Into FOLDER the first wrong case of ours of each family
// and operation is written.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>

#include "bench/polygons/BooleanContender.h"
#include "shared/diagnostics/Exception.h"
#include "shared/polygons/GPolygon2d.h"
#include "tests/polygons/BooleanCases.h"
#include "tests/polygons/GPolygon2dTestSupport.h"

namespace {

using namespace shr::bench;
using namespace shr::test;

struct Tally {
  std::size_t cases = 0, errors = 0, wrong = 0;
  double worst = 0.0;
  std::string firstFault;
};

struct Case {
  std::uint64_t seed;
  BooleanCase pair;
};

class Table {
public:
  Table(const char* family, const char* folder) : family_(family), folder_(folder) {}

  void Count(const char* contender, Operation operation, const Case& current,
             const BooleanJudge& judge, const BooleanResult* result) {
    Tally& tally = tallies_[{contender, operation}];
    ++tally.cases;
    if (result == nullptr) {
      ++tally.errors;
      return;
    }
    const Form form = std::strcmp(contender, "ours") == 0 ? Form::Clean : Form::Any;
    const ResultReport report = judge.Judge(operation, *result, form);
    if (report.fault.empty()) {
      tally.worst = std::max(tally.worst, report.areaError);
    } else if (tally.wrong++ == 0) {
      tally.firstFault = "seed " + std::to_string(current.seed) + ": " + report.fault;
      if (folder_ != nullptr && std::strcmp(contender, "ours") == 0) {
        Save(operation, current, tally.firstFault);
      }
    }
  }

  void Print() const {
    for (const auto& [key, tally] : tallies_) {
      std::printf("%-20s %-10s %-12s %7zu %7zu %7zu %10.2e  %s\n", family_, key.first.c_str(),
                  NameOf(key.second), tally.cases, tally.errors, tally.wrong, tally.worst,
                  tally.firstFault.c_str());
    }
    std::fflush(stdout);
  }

private:
  void Save(Operation operation, const Case& current, const std::string& fault) const {
    std::ofstream out(std::string(folder_) + "/" + family_ + "-" + NameOf(operation) + ".txt");
    out << fault << "\nsubject " << ToText(current.pair.subject) << "\nclip "
        << ToText(current.pair.clip) << '\n';
  }

  const char* family_;
  const char* folder_;
  std::map<std::pair<std::string, Operation>, Tally> tallies_;
};

/// Runs all operations of a contender on operands in its form.
void RunContender(const char* name, BooleanContender& contender, const BooleanWork& work,
                  const Case& current, const BooleanJudge& judge, Table& table) {
  contender.Prepare(work);
  for (const Operation operation : OPERATIONS) {
    bool works = false;
    try {
      works = contender.Operate(operation);
    } catch (const shr::Exception&) {
      // Counted as an error.
    }
    const BooleanResult result = works ? contender.Result() : BooleanResult();
    table.Count(name, operation, current, judge, works ? &result : nullptr);
  }
}

/// `GPolygon2d` takes each contour for a polygon of its own.
void RunGPolygon2d(const Case& current, Table& table) {
  const BooleanJudge judge(PolygonsOf(current.pair.subject), PolygonsOf(current.pair.clip));
  for (const Operation operation : OPERATIONS) {
    const BooleanResult result =
        OperateByGPolygon2d(operation, current.pair.subject, current.pair.clip);
    table.Count("GPolygon2d", operation, current, judge, &result);
  }
}

void RunCase(const CaseFamily& family, std::uint64_t seed, Table& table) {
  std::mt19937_64 random(seed);
  const Case current = {seed, family.make(random)};
  const BooleanJudge judge(EvenOdd(current.pair.subject), EvenOdd(current.pair.clip));
  RunContender("ours", *MakeOurContender(), {{current.pair.subject}, {current.pair.clip}}, current,
               judge, table);
  RunGPolygon2d(current, table);
  const BooleanWork valid = {ValidPolygons(current.pair.subject), ValidPolygons(current.pair.clip)};
  RunContender("boost", *MakeBoostContender(), valid, current, judge, table);
  RunContender("geos", *MakeGeosContender(), valid, current, judge, table);
}

}  // namespace

int main(int argc, char** argv) {
  const std::uint64_t cases = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000;
  const char* only = argc > 2 ? argv[2] : "all";
  const std::uint64_t first = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 0;
  std::printf("%-20s %-10s %-12s %7s %7s %7s %10s\n", "family", "by", "operation", "cases",
              "errors", "wrong", "worst");
  for (const CaseFamily& family : BooleanCaseFamilies()) {
    if (std::strcmp(only, "all") != 0 && std::strcmp(only, family.name) != 0) continue;
    Table table(family.name, argc > 4 ? argv[4] : nullptr);
    for (std::uint64_t seed = first; seed < first + cases; ++seed) RunCase(family, seed, table);
    table.Print();
  }
}
