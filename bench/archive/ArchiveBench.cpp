// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Records of a number, three doubles and a short string, stored and loaded one field at a time, to
// and from memory and a file in the page cache; a block of doubles in memory; the byte sum alone.
// The peer is cereal's binary archive on the standard's streams. Ours adds up all bytes and has a
// sync check behind every hundredth record, which the peer has not. The limit of the block is
// copying it and adding up the copy. Before anything is timed, what each contender stored is loaded
// by it again and compared with the source.

#include <benchmark/benchmark.h>

#include <cereal/archives/binary.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include "shared/archive/ArchiveTemplates.h"
#include "shared/archive/ByteSum.h"
#include "shared/text/GString.h"

namespace {

using shr::Archive;

struct Record {
  int number = 0;
  double place[3] = {};
  std::string name;

  bool operator==(const Record&) const = default;

  void Serialize(Archive& archive) {
    archive.Transfer(number);
    for (double& value : place) archive.Transfer(value);
    archive.Transfer(name);
  }

  template <class Peer>
  void serialize(Peer& peer) {
    peer(number, place[0], place[1], place[2], name);
  }
};

constexpr std::size_t RECORDS_A_CHECK = 100;

std::vector<Record> MakeRecords(std::size_t count) {
  std::vector<Record> records(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double x = static_cast<double>(i);
    records[i] = {static_cast<int>(i), {x / 3, x * x, -x}, "P" + std::to_string(i * 7919 % 100003)};
  }
  return records;
}

std::filesystem::path BenchFile() {
  return std::filesystem::temp_directory_path() / "shared-bench-archive.bin";
}

void Require(bool isEqual) {
  if (isEqual) return;
  std::fprintf(stderr, "a contender loaded something else than was stored\n");
  std::abort();
}

// A contender stores records to memory or a file and loads them; `bytes` is what memory holds.

struct Ours {
  static void Fields(Archive& archive, std::vector<Record>& records) {
    std::size_t count = 0;
    for (Record& record : records) {
      record.Serialize(archive);
      if (++count % RECORDS_A_CHECK == 0) archive.SyncCheck();
    }
  }
  static std::size_t Store(std::vector<Record>& records) {
    Archive archive;
    archive.OpenMem();
    Fields(archive, records);
    benchmark::DoNotOptimize(archive.GetBuffer());
    return static_cast<std::size_t>(archive.GetSize());
  }
  static std::string Stored(std::vector<Record>& records) {
    Archive archive;
    archive.OpenMem();
    Fields(archive, records);
    const auto size = static_cast<std::size_t>(archive.GetSize());
    return {reinterpret_cast<const char*>(archive.GetBuffer()), size};
  }
  static void Load(const std::string& bytes, std::vector<Record>& records) {
    Archive archive;
    archive.OpenMem(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    Fields(archive, records);
  }
  static void StoreFile(std::vector<Record>& records) {
    Archive archive(BenchFile().wstring(), Archive::Store);
    Fields(archive, records);
    archive.Close();
  }
  static void LoadFile(std::vector<Record>& records) {
    Archive archive(BenchFile().wstring(), Archive::Load);
    Fields(archive, records);
  }
};

/// A stream buffer on bytes that are already there, so that the peer need not copy them.
class BytesBuffer : public std::streambuf {
public:
  explicit BytesBuffer(const std::string& bytes) {
    char* const first = const_cast<char*>(bytes.data());
    setg(first, first, first + bytes.size());
  }
};

struct Cereal {
  template <class Peer>
  static void Fields(Peer& peer, std::vector<Record>& records) {
    for (Record& record : records) peer(record);
  }
  static std::string Stored(std::vector<Record>& records) {
    std::ostringstream out;
    cereal::BinaryOutputArchive peer(out);
    Fields(peer, records);
    return std::move(out).str();
  }
  static std::size_t Store(std::vector<Record>& records) { return Stored(records).size(); }
  static void Load(const std::string& bytes, std::vector<Record>& records) {
    BytesBuffer buffer(bytes);
    std::istream in(&buffer);
    cereal::BinaryInputArchive peer(in);
    Fields(peer, records);
  }
  static void StoreFile(std::vector<Record>& records) {
    std::ofstream out(BenchFile(), std::ios::binary);
    cereal::BinaryOutputArchive peer(out);
    Fields(peer, records);
    out.close();
    Require(out.good());
  }
  static void LoadFile(std::vector<Record>& records) {
    std::ifstream in(BenchFile(), std::ios::binary);
    cereal::BinaryInputArchive peer(in);
    Fields(peer, records);
  }
};

enum class Work { StoreMemory, LoadMemory, StoreFile, LoadFile };

template <class Contender, Work WORK>
void RunRecords(benchmark::State& state) {
  std::vector<Record> records = MakeRecords(static_cast<std::size_t>(state.range(0)));
  std::vector<Record> loaded(records.size());
  const std::string bytes = Contender::Stored(records);
  Contender::Load(bytes, loaded);
  Require(loaded == records);
  loaded.assign(records.size(), {});
  Contender::StoreFile(records);
  Contender::LoadFile(loaded);
  Require(loaded == records);
  for (auto _ : state) {
    if constexpr (WORK == Work::StoreMemory) benchmark::DoNotOptimize(Contender::Store(records));
    if constexpr (WORK == Work::LoadMemory) Contender::Load(bytes, loaded);
    if constexpr (WORK == Work::StoreFile) Contender::StoreFile(records);
    if constexpr (WORK == Work::LoadFile) Contender::LoadFile(loaded);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  std::filesystem::remove(BenchFile());
}

void Register(const char* work, const char* contender, void (*run)(benchmark::State&)) {
  const std::string name = std::string("archive/") + work + "/" + contender;
  benchmark::RegisterBenchmark(name.c_str(), run)->Arg(10000)->Arg(100000)->Arg(1000000);
}

// A block of doubles in memory.

std::vector<double> MakeDoubles(std::int64_t count) {
  std::vector<double> values(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = 1.0 / static_cast<double>(i + 1);
  return values;
}

void SetBytes(benchmark::State& state, std::int64_t bytesEach) {
  state.SetBytesProcessed(state.iterations() * state.range(0) * bytesEach);
}

void StoreBlockOurs(benchmark::State& state) {
  std::vector<double> values = MakeDoubles(state.range(0));
  for (auto _ : state) {
    Archive archive;
    archive.OpenMem();
    Transfer(archive, values);
    archive.SyncCheck();
    benchmark::DoNotOptimize(archive.GetBuffer());
  }
  SetBytes(state, 8);
}

void StoreBlockCereal(benchmark::State& state) {
  std::vector<double> values = MakeDoubles(state.range(0));
  for (auto _ : state) {
    std::ostringstream out;
    cereal::BinaryOutputArchive peer(out);
    peer(values);
    benchmark::DoNotOptimize(std::move(out).str().data());
  }
  SetBytes(state, 8);
}

void StoreBlockLimit(benchmark::State& state) {
  const std::vector<double> values = MakeDoubles(state.range(0));
  const std::size_t size = values.size() * sizeof(double);
  for (auto _ : state) {
    const std::unique_ptr<void, decltype(&std::free)> copy(std::malloc(size), &std::free);
    std::memcpy(copy.get(), values.data(), size);
    benchmark::DoNotOptimize(shr::ByteSum(copy.get(), size));
  }
  SetBytes(state, 8);
}

void LoadBlockOurs(benchmark::State& state) {
  std::vector<double> values = MakeDoubles(state.range(0));
  std::vector<double> loaded(values.size());
  Archive storing;
  storing.OpenMem();
  Transfer(storing, values);
  storing.SyncCheck();
  const unsigned char* const bytes = storing.GetBuffer();
  const std::uint64_t size = storing.GetSize();
  for (auto _ : state) {
    Archive archive;
    archive.OpenMem(bytes, size);
    Transfer(archive, loaded);
    archive.SyncCheck();
    benchmark::ClobberMemory();
  }
  Require(loaded == values);
  SetBytes(state, 8);
}

void LoadBlockCereal(benchmark::State& state) {
  std::vector<double> values = MakeDoubles(state.range(0));
  std::vector<double> loaded(values.size());
  std::ostringstream out;
  cereal::BinaryOutputArchive storing(out);
  storing(values);
  const std::string bytes = out.str();
  for (auto _ : state) {
    BytesBuffer buffer(bytes);
    std::istream in(&buffer);
    cereal::BinaryInputArchive peer(in);
    peer(loaded);
    benchmark::ClobberMemory();
  }
  Require(loaded == values);
  SetBytes(state, 8);
}

void LoadBlockLimit(benchmark::State& state) {
  const std::vector<double> values = MakeDoubles(state.range(0));
  std::vector<double> loaded(values.size());
  const std::size_t size = values.size() * sizeof(double);
  for (auto _ : state) {
    std::memcpy(loaded.data(), values.data(), size);
    benchmark::DoNotOptimize(shr::ByteSum(loaded.data(), size));
  }
  SetBytes(state, 8);
}

// The byte sum alone.

template <std::uint16_t (*SUM)(const void*, std::size_t)>
void RunSum(benchmark::State& state) {
  std::vector<unsigned char> bytes(static_cast<std::size_t>(state.range(0)));
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i * 37);
  Require(SUM(bytes.data(), bytes.size()) == shr::PortableByteSum(bytes.data(), bytes.size()));
  for (auto _ : state) benchmark::DoNotOptimize(SUM(bytes.data(), bytes.size()));
  SetBytes(state, 1);
}

std::uint16_t Accumulate(const void* bytes, std::size_t size) {
  const unsigned char* const first = static_cast<const unsigned char*>(bytes);
  return static_cast<std::uint16_t>(std::accumulate(first, first + size, 0u));
}

BENCHMARK(RunSum<shr::ByteSum>)
    ->Name("archive/byte-sum/ours")
    ->RangeMultiplier(10)
    ->Range(10000, 10000000);
BENCHMARK(RunSum<shr::PortableByteSum>)
    ->Name("archive/byte-sum/_portable")
    ->RangeMultiplier(10)
    ->Range(10000, 10000000);
BENCHMARK(RunSum<Accumulate>)
    ->Name("archive/byte-sum/accumulate")
    ->RangeMultiplier(10)
    ->Range(10000, 10000000);

const bool IS_REGISTERED = [] {
  Register("records-to-memory", "ours", &RunRecords<Ours, Work::StoreMemory>);
  Register("records-to-memory", "cereal", &RunRecords<Cereal, Work::StoreMemory>);
  Register("records-from-memory", "ours", &RunRecords<Ours, Work::LoadMemory>);
  Register("records-from-memory", "cereal", &RunRecords<Cereal, Work::LoadMemory>);
  Register("records-to-file", "ours", &RunRecords<Ours, Work::StoreFile>);
  Register("records-to-file", "cereal", &RunRecords<Cereal, Work::StoreFile>);
  Register("records-from-file", "ours", &RunRecords<Ours, Work::LoadFile>);
  Register("records-from-file", "cereal", &RunRecords<Cereal, Work::LoadFile>);
  Register("block-to-memory", "ours", &StoreBlockOurs);
  Register("block-to-memory", "cereal", &StoreBlockCereal);
  Register("block-to-memory", "_memcpy-and-sum", &StoreBlockLimit);
  Register("block-from-memory", "ours", &LoadBlockOurs);
  Register("block-from-memory", "cereal", &LoadBlockCereal);
  Register("block-from-memory", "_memcpy-and-sum", &LoadBlockLimit);
  return true;
}();

}  // namespace
