// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Files of 0.5, 5 and 50 MB to trees, by one scanner and by a new one for each, the trees released,
// and all of it with a walk between: records with attributes, entities, comments and mixed content.
// All contenders read the same file; numbers of elements and attributes and the bytes of their
// values are compared before anything is timed.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "bench/xml/XMLContender.h"
#include "shared/xml/XMLScanner.h"

namespace {

using shr::XMLNode;
using shr::bench::XMLContender;
using shr::bench::XMLCount;
using shr::bench::XMLTree;

std::string MakeRecord(std::size_t number, std::mt19937& random) {
  const auto draw = [&random](unsigned int count) { return std::to_string(random() % count); };
  std::string text = "  <record id=\"" + std::to_string(number) + "\" kind=\"k" + draw(20) +
                     "\" title=\"a &quot;quoted&quot; title " + draw(1000) + "\">\n";
  text += "    <name>Station " + draw(100000) + " &amp; surroundings</name>\n";
  text += "    <position lat=\"" + draw(90) + "." + draw(1000000) + "\" lon=\"" + draw(180) + "." +
          draw(1000000) + "\"/>\n";
  if (number % 10 == 0) text += "    <!-- checked by hand, number " + draw(1000) + " -->\n";
  text += "    <note>Some text with <b>bold</b> and <i>slanted</i> words, " + draw(10000) +
          " of them.</note>\n";
  return text + "    <value unit=\"m\">" + draw(10000) + "." + draw(1000) +
         "</value>\n  </record>\n";
}

/// A file of about this many bytes, which goes with the program.
class Sample {
public:
  explicit Sample(std::size_t size)
      : path_(std::filesystem::temp_directory_path() /
              ("shared-bench-" + std::to_string(std::random_device()()) + ".xml")) {
    std::mt19937 random(11);
    std::ofstream file(path_, std::ios::binary);
    file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<records>\n";
    std::size_t written = 0;
    for (std::size_t i = 0; written < size; ++i) {
      const std::string record = MakeRecord(i, random);
      file << record;
      written += record.size();
    }
    file << "</records>\n";
  }
  ~Sample() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  const std::string Path() const { return path_.string(); }

private:
  std::filesystem::path path_;
};

constexpr std::string_view OURS = "ours";

/// The environment may ask for one other size, of which peak memory can then be seen.
std::vector<std::int64_t> Sizes() {
  const char* const asked = std::getenv("XML_BENCH_BYTES");
  if (asked != nullptr) return {std::atoll(asked)};
  return {500000, 5000000, 50000000};
}

const Sample& SampleOf(std::size_t size) {
  static std::map<std::size_t, Sample> samples;
  return samples.try_emplace(size, size).first->second;
}

void Count(const XMLNode& node, XMLCount& count) {
  for (const XMLNode::Handle& child : node.GetChildren()) {
    if (child->GetName() == "xml") continue;
    ++count.elements;
    child->ForEachAttribute([&count](std::string_view, std::string_view value) {
      ++count.attributes;
      count.attributeBytes += value.size();
    });
    Count(*child, count);
  }
}

XMLTree ReadBy(shr::XMLScanner& scanner, const std::string& path) {
  const XMLNode::Handle root = scanner.ScanFile(std::filesystem::path(path).wstring());
  return {root, [root] {
            XMLCount count;
            Count(*root, count);
            return count;
          }};
}

/// One scanner reads file after file, in memory that it keeps.
XMLTree ReadByOurs(const std::string& path) {
  static shr::XMLScanner scanner;
  return ReadBy(scanner, path);
}

XMLTree ReadByNewScanner(const std::string& path) {
  shr::XMLScanner scanner;
  return ReadBy(scanner, path);
}

void RequireSameTree(const std::string& path, const XMLContender& contender) {
  if (contender.name == OURS) return;
  if (ReadByOurs(path).count() == contender.read(path).count()) return;
  std::fprintf(stderr, "%s reads another tree\n", contender.name);
  std::abort();
}

void Scan(benchmark::State& state, const XMLContender& contender) {
  const std::string path = SampleOf(static_cast<std::size_t>(state.range(0))).Path();
  RequireSameTree(path, contender);
  for (auto _ : state) {
    XMLTree tree = contender.read(path);
    benchmark::DoNotOptimize(tree.tree.get());
    state.PauseTiming();
    tree = {};
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

/// So many rounds, because rounds until a time is over would never end: this takes next to none.
constexpr int RELEASES = 20;

void Release(benchmark::State& state, const XMLContender& contender) {
  const std::string path = SampleOf(static_cast<std::size_t>(state.range(0))).Path();
  for (auto _ : state) {
    state.PauseTiming();
    XMLTree tree = contender.read(path);
    state.ResumeTiming();
    tree = {};
  }
}

/// From the file to the numbers that the tree is compared by, through handles to all nodes, until
/// everything is gone.
void ScanWalkRelease(benchmark::State& state, const XMLContender& contender) {
  const std::string path = SampleOf(static_cast<std::size_t>(state.range(0))).Path();
  for (auto _ : state) {
    XMLCount count = contender.read(path).count();
    benchmark::DoNotOptimize(count);
  }
}

[[maybe_unused]] const bool REGISTERED = [] {
  const std::vector<XMLContender> peers = shr::bench::XMLPeers();
  const auto add = [](const std::string& row, const XMLContender& contender,
                      void (*run)(benchmark::State&, const XMLContender&)) {
    auto* const added = benchmark::RegisterBenchmark(
        ("xml/" + row + "/" + contender.name).c_str(),
        [contender, run](benchmark::State& state) { run(state, contender); });
    for (const std::int64_t size : Sizes()) added->Arg(size);
    return added->Unit(benchmark::kMillisecond);
  };
  const auto addAll = [&](const std::string& row, const XMLContender& ours, auto run) {
    add(row, ours, run);
    for (const XMLContender& peer : peers) add(row, peer, run);
  };
  addAll("scan", {OURS.data(), ReadByOurs}, Scan);
  addAll("scan-once", {OURS.data(), ReadByNewScanner}, Scan);
  // Too little for the clock of a target without peers.
  if (!peers.empty()) add("release", {OURS.data(), ReadByOurs}, Release)->Iterations(RELEASES);
  for (const XMLContender& peer : peers) add("release", peer, Release)->Iterations(RELEASES);
  addAll("scan-walk-release", {OURS.data(), ReadByOurs}, ScanWalkRelease);
  return true;
}();

}  // namespace
