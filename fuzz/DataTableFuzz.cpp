// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors
//
// Arbitrary bytes as the table of a data report. The first byte chooses separator, decimal commas,
// page and size of the sample. Broken rows that are passed over and broken rows that end the
// reading must be the same ones, each cell is counted once, and a report can be made of the rest.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>

#include "examples/common/Progress.h"
#include "examples/datareport/ReportPage.h"
#include "shared/diagnostics/Exception.h"

using namespace datareport;

static std::optional<DataTable> Read(const Options& options, examples::IProgress& progress) {
  try {
    return ReadTable(options, progress);
  } catch (const shr::Exception&) {
    return std::nullopt;
  }
}

static void CheckCounts(const DataTable& table, const Options& options) {
  if (table.sample.rows != std::min<std::uint64_t>(table.rows, options.sample)) std::abort();
  for (const ColumnProfile& column : table.columns) {
    const std::uint64_t known = column.Numbers().Count() + column.Times().Count();
    if (known + column.Missing() > table.rows || column.Odd() > table.rows) std::abort();
  }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto path = std::filesystem::temp_directory_path() /
                           ("shared-fuzz-" + std::to_string(std::random_device()()));
  constexpr std::size_t MOST_BYTES = 1 << 16;
  if (size == 0 || size > MOST_BYTES) return 0;
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data) + 1, static_cast<std::streamsize>(size - 1));
  Options options;
  options.input = path.wstring();
  options.separator = L"\0,;\t"[data[0] & 3];
  options.decimalComma = (data[0] & 4) != 0 && options.separator != L',';
  options.sample = (data[0] & 8) != 0 ? 3 : 1000;
  if ((data[0] & 16) != 0) options.codePage = 932;
  const auto progress = examples::MakeProgress(true);
  const std::optional<DataTable> strict = Read(options, *progress);
  options.skipBroken = true;
  const std::optional<DataTable> lenient = Read(options, *progress);
  std::filesystem::remove(path);
  if (strict && !lenient) std::abort();
  if (!lenient) return 0;
  if (strict.has_value() != (lenient->broken == 0)) std::abort();
  CheckCounts(*lenient, options);
  const ReportFiles files = MakeReport(*lenient, options, *progress);
  if (files.empty() || files.back().first != PAGE_NAME) std::abort();
  return 0;
}
