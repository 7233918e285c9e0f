// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Log lines handed to the system one by one: 2k, 20k and 200k lines of 60 characters into a file,
// beside the same bytes by fputs with fflush, and one write call a line as the limit. What a
// filtered line costs stands in a row of its own, beside an empty loop over the same condition.
// Before anything is timed, the files of all contenders are compared.

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "shared/diagnostics/Logger.h"
#include "shared/platform/RawFile.h"
#include "shared/text/Utf.h"

namespace {

const std::wstring LINE = L"reading 'countries.txt': record 12345 has 678 points, closed";

std::filesystem::path FilePath() {
  return std::filesystem::temp_directory_path() / "shared-logger-bench.log";
}

shr::GString LibraryPath() {
  return shr::GString(FilePath().wstring());
}

std::string Encode(const std::wstring& text) {
  std::string bytes(text.size() * sizeof(wchar_t), '\0');
  bytes.resize(shr::WideToUtf16(text, shr::ByteOrder::LittleEndian, bytes.data()));
  return bytes;
}

const std::string FILE_HEAD = "\xFF\xFE" + Encode(L"\n");
const std::string LINE_BYTES = Encode(LINE + L"\n");

void LogLines(std::int64_t count) {
  shr::CLogger logger(LibraryPath());
  for (std::int64_t i = 0; i < count; ++i) logger.Send(shr::LogInfo, LINE);
}

void StreamLines(std::int64_t count) {
  std::FILE* file = std::fopen(FilePath().string().c_str(), "wb");
  std::fwrite(FILE_HEAD.data(), 1, FILE_HEAD.size(), file);
  for (std::int64_t i = 0; i < count; ++i) {
    std::fwrite(LINE_BYTES.data(), 1, LINE_BYTES.size(), file);
    std::fflush(file);
  }
  std::fclose(file);
}

void WriteLines(std::int64_t count) {
  shr::platform::FileOpenOptions options;
  options.write = options.create = options.truncate = true;
  const int file = shr::platform::OpenDescriptor(LibraryPath(), options);
  shr::platform::WriteDescriptor(file, FILE_HEAD.data(), FILE_HEAD.size());
  for (std::int64_t i = 0; i < count; ++i) {
    shr::platform::WriteDescriptor(file, LINE_BYTES.data(), LINE_BYTES.size());
  }
  shr::platform::CloseDescriptor(file);
}

using Contender = void (*)(std::int64_t count);

std::string FileOf(Contender contender) {
  contender(100);
  std::ifstream file(FilePath(), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void CheckContenders() {
  const std::string expected = FileOf(StreamLines);
  if (FileOf(LogLines) != expected || FileOf(WriteLines) != expected) {
    std::fprintf(stderr, "the contenders write different files\n");
    std::abort();
  }
}

void Run(benchmark::State& state, Contender contender) {
  CheckContenders();
  for (auto _ : state) contender(state.range(0));
  state.SetItemsProcessed(state.iterations() * state.range(0));
  std::filesystem::remove(FilePath());
}

void FilteredLines(benchmark::State& state) {
  shr::CLogger logger(L"", shr::LogError);
  for (auto _ : state) {
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      logger.SendVA(shr::LogTrace, L"%d %s", static_cast<int>(i), LINE.c_str());
    }
  }
  if (!logger.GetBuffer().empty()) std::abort();
}

void FilteredCondition(benchmark::State& state) {
  std::atomic<int> mask = shr::LogError;
  for (auto _ : state) {
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      if ((mask.load(std::memory_order_relaxed) & shr::LogTrace) != 0) std::abort();
    }
  }
}

#define LINE_COUNTS ->Arg(2000)->Arg(20000)->Arg(200000)->Unit(benchmark::kMillisecond)

BENCHMARK_CAPTURE(Run, ours, LogLines)->Name("diagnostics/flushed-lines/ours") LINE_COUNTS;
BENCHMARK_CAPTURE(Run, peer, StreamLines)->Name("diagnostics/flushed-lines/stdio") LINE_COUNTS;
BENCHMARK_CAPTURE(Run, limit, WriteLines)->Name("diagnostics/flushed-lines/_write") LINE_COUNTS;
BENCHMARK(FilteredLines)->Name("diagnostics/filtered-lines/ours") LINE_COUNTS;
BENCHMARK(FilteredCondition)->Name("diagnostics/filtered-lines/condition") LINE_COUNTS;

}  // namespace
