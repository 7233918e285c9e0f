// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Configuration files of 1k, 10k and 100k entries, 1,000 to a section. Reading asks for all entries
// one by one; the peer parses the file once and asks its tree, and the limit opens the file and
// looks at its state for each entry, without which nobody knows that it is still the same. Writing
// changes one entry; the peer writes its tree without waiting for the disk, and the limit replaces
// the file by the same bytes, which waits.

#include <benchmark/benchmark.h>

#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "shared/files/ConfigFile.h"
#include "shared/files/ReplacementFile.h"
#include "shared/platform/RawFile.h"

namespace {

using Tree = boost::property_tree::ptree;

constexpr std::int64_t SECTION_SIZE = 1000;

std::string SectionName(std::int64_t entry) {
  return "Section " + std::to_string(entry / SECTION_SIZE);
}

std::string KeyName(std::int64_t entry) {
  return "Key " + std::to_string(entry % SECTION_SIZE);
}

std::string ContentOf(std::int64_t entries) {
  std::string content;
  for (std::int64_t i = 0; i < entries; ++i) {
    if (i % SECTION_SIZE == 0) content += '[' + SectionName(i) + "]\r\n";
    content += KeyName(i) + '=' + std::to_string(i * i) + "\r\n";
  }
  return content;
}

/// A file of entries in the temporary folder, gone afterwards.
class SampleFile {
public:
  explicit SampleFile(std::int64_t entries) {
    std::ofstream(path_, std::ios::binary) << ContentOf(entries);
  }
  ~SampleFile() { std::filesystem::remove(path_); }
  SampleFile(const SampleFile&) = delete;
  SampleFile& operator=(const SampleFile&) = delete;

  std::string Path() const { return path_.string(); }
  shr::GString WidePath() const { return shr::GString(path_.wstring()); }

private:
  std::filesystem::path path_ = std::filesystem::temp_directory_path() / "shared-bench.ini";
};

/// Returns a sum over all values, by which the contenders are compared.
using Reader = std::uint64_t (*)(const SampleFile& sample, std::int64_t entries);

std::uint64_t ReadOurs(const SampleFile& sample, std::int64_t entries) {
  const shr::CConfigFile file(sample.WidePath());
  std::uint64_t sum = 0, value = 0;
  for (std::int64_t i = 0; i < entries; ++i) {
    if (!file.Read(SectionName(i), KeyName(i), value)) std::abort();
    sum += value;
  }
  return sum;
}

std::uint64_t ReadBoost(const SampleFile& sample, std::int64_t entries) {
  Tree tree;
  boost::property_tree::read_ini(sample.Path(), tree);
  std::uint64_t sum = 0;
  for (std::int64_t i = 0; i < entries; ++i) {
    sum += tree.get_child(SectionName(i)).get<std::uint64_t>(KeyName(i));
  }
  return sum;
}

std::uint64_t LookOnly(const SampleFile& sample, std::int64_t entries) {
  const shr::GString path = sample.WidePath();
  shr::platform::FileOpenOptions options;
  options.read = true;
  std::int64_t length = 0;
  for (std::int64_t i = 0; i < entries; ++i) {
    const int file = shr::platform::OpenDescriptor(path, options);
    length = shr::platform::GetDescriptorLength(file);
    shr::platform::CloseDescriptor(file);
  }
  if (length == 0) std::abort();
  return static_cast<std::uint64_t>((entries - 1) * entries * (2 * entries - 1) / 6);
}

void Read(benchmark::State& state, Reader reader) {
  const std::int64_t entries = state.range(0);
  const SampleFile sample(entries);
  const std::uint64_t expected = LookOnly(sample, entries);
  for (auto _ : state) {
    if (reader(sample, entries) != expected) std::abort();
  }
  state.SetItemsProcessed(state.iterations() * entries);
}

using Writer = void (*)(const SampleFile& sample, Tree& tree, const std::string& value);

void WriteOurs(const SampleFile& sample, Tree&, const std::string& value) {
  shr::CConfigFile(sample.WidePath()).Write(SectionName(500), KeyName(500), value.c_str());
}

void WriteBoost(const SampleFile& sample, Tree& tree, const std::string& value) {
  tree.get_child(SectionName(500)).put(KeyName(500), value);
  boost::property_tree::write_ini(sample.Path(), tree);
}

void ReplaceOnly(const SampleFile& sample, Tree& tree, const std::string& value) {
  shr::CReplacementFile file(sample.WidePath());
  file.Write(tree.data());
  file.Write(value);
  file.Commit();
}

void Write(benchmark::State& state, Writer writer) {
  const SampleFile sample(state.range(0));
  Tree tree;
  boost::property_tree::read_ini(sample.Path(), tree);
  tree.data() = writer == ReplaceOnly ? ContentOf(state.range(0)) : std::string();
  int number = 0;
  for (auto _ : state) writer(sample, tree, std::to_string(++number));
  if (writer == ReplaceOnly) return;
  Tree after;
  boost::property_tree::read_ini(sample.Path(), after);
  if (after.get_child(SectionName(500)).get<int>(KeyName(500)) != number) std::abort();
}

#define SIZES ->Arg(1000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime()

BENCHMARK_CAPTURE(Read, ours, ReadOurs)->Name("files/ini-all-entries/ours") SIZES;
BENCHMARK_CAPTURE(Read, boost, ReadBoost)->Name("files/ini-all-entries/boost") SIZES;
BENCHMARK_CAPTURE(Read, limit, LookOnly)->Name("files/ini-all-entries/_open") SIZES;
BENCHMARK_CAPTURE(Write, ours, WriteOurs)->Name("files/ini-change-one/ours") SIZES;
BENCHMARK_CAPTURE(Write, boost, WriteBoost)->Name("files/ini-change-one/boost") SIZES;
BENCHMARK_CAPTURE(Write, limit, ReplaceOnly)->Name("files/ini-change-one/_replace") SIZES;

}  // namespace
