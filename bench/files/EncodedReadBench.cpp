// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Reading a table line by line: lines of 54 bytes in UTF-8 with one two-byte character each, at 2,
// 20 and 200 MB, page cache warm. The peers are the standard library's narrow lines, which convert
// nothing, and its wide lines. Every form of the table has the same number of bytes, so that times
// compare directly. Before anything is timed, each contender's count of lines and sum over all
// characters must be those of the generated text.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <locale>
#include <map>
#include <string>

#include "shared/files/EncodedBufferedFile.h"

namespace {

using shr::CEncodedBufferedFile;
using shr::TextEncoding;

constexpr std::size_t MEGABYTE = 1000 * 1000;
/// 53 bytes in UTF-8 without the line feed, 52 characters.
constexpr std::size_t LINE_CHARACTERS = 52;

/// What a reader saw of a file.
struct Seen {
  std::size_t lines = 0;
  std::size_t units = 0;
  unsigned long first = 0;  ///< sum over the first character of each line
  bool operator==(const Seen&) const = default;
};

enum class Form { Utf8, Page1252, Utf16LE, Utf16BE };

std::string Line(std::size_t number) {
  char text[80];
  std::snprintf(text, sizeof text, "%09zu,%07.3f,%08.4f,Saint-\xE9tienne town,%08zu",
                number % 1000000000, static_cast<double>(number % 360000) / 1000.0,
                static_cast<double>(number % 1800000) / 10000.0, number * 7919 % 100000000);
  return std::string(text).substr(0, LINE_CHARACTERS);
}

void AppendUnit(unsigned char byte, Form form, std::string& out) {
  const char unit = static_cast<char>(byte);
  if (form == Form::Page1252) {
    out += unit;
  } else if (form == Form::Utf8) {
    if (byte < 0x80) out += unit;
    if (byte >= 0x80)
      out += {static_cast<char>(0xC0 | byte >> 6), static_cast<char>(0x80 | (byte & 0x3F))};
  } else if (form == Form::Utf16LE) {
    out += {unit, '\0'};
  } else {
    out += {'\0', unit};
  }
}

/// A file of the table that lives as long as the program.
class TableFile {
public:
  TableFile(Form form, std::size_t size)
      : path_(std::filesystem::temp_directory_path() /
              ("shared-bench-" + std::to_string(static_cast<int>(form)) + "-" +
               std::to_string(size) + ".csv")) {
    std::ofstream out(path_, std::ios::binary);
    std::string bytes;
    if (form == Form::Utf16LE) bytes = "\xFF\xFE";
    if (form == Form::Utf16BE) bytes = "\xFE\xFF";
    for (std::size_t written = 0; written < size; written += bytes.size(), bytes.clear()) {
      const std::string line = Line(expected_.lines);
      for (const char ch : line) AppendUnit(static_cast<unsigned char>(ch), form, bytes);
      AppendUnit('\n', form, bytes);
      out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
      ++expected_.lines;
      expected_.units += line.size();
      expected_.first += static_cast<unsigned char>(line.front());
    }
  }
  ~TableFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  TableFile(const TableFile&) = delete;
  TableFile& operator=(const TableFile&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  const Seen& Expected() const { return expected_; }

private:
  std::filesystem::path path_;
  Seen expected_;
};

const TableFile& Table(Form form, std::size_t megabytes) {
  static std::map<std::pair<Form, std::size_t>, TableFile> tables;
  return tables.try_emplace({form, megabytes}, form, megabytes * MEGABYTE).first->second;
}

template <typename String>
void Count(const String& line, Seen& seen) {
  ++seen.lines;
  seen.units += line.size();
  if (!line.empty()) seen.first += static_cast<unsigned long>(line.front());
}

Seen ReadOurs(const std::filesystem::path& path, TextEncoding encoding) {
  Seen seen;
  CEncodedBufferedFile file(path.wstring(), L"rt", CEncodedBufferedFile::ShareRead, encoding, 1252,
                            true, false);
  for (std::wstring line; file.ReadString(line); line.clear()) Count(line, seen);
  return seen;
}

Seen ReadNarrow(const std::filesystem::path& path) {
  Seen seen;
  std::ifstream in(path, std::ios::binary);
  for (std::string line; std::getline(in, line);) Count(line, seen);
  return seen;
}

Seen ReadWide(const std::filesystem::path& path) {
  Seen seen;
  std::wifstream in;
  in.imbue(std::locale("C.UTF-8"));
  in.open(path, std::ios::binary);
  for (std::wstring line; std::getline(in, line);) Count(line, seen);
  return seen;
}

template <typename Reader>
void Run(benchmark::State& state, Form form, Reader read, bool isNarrow = false) {
  const TableFile& table = Table(form, static_cast<std::size_t>(state.range(0)));
  Seen expected = table.Expected();
  if (isNarrow && form == Form::Utf8) expected.units += expected.lines;
  if (!(read(table.Path()) == expected)) {
    std::fprintf(stderr, "a contender read something else than was written\n");
    std::abort();
  }
  for (auto _ : state) benchmark::DoNotOptimize(read(table.Path()));
  state.SetBytesProcessed(state.iterations() * state.range(0) *
                          static_cast<std::int64_t>(MEGABYTE));
}

template <TextEncoding ENCODING>
Seen Ours(const std::filesystem::path& path) {
  return ReadOurs(path, ENCODING);
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(2)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond)->MinTime(0.2);
}

BENCHMARK_CAPTURE(Run, utf8, Form::Utf8, Ours<shr::EncodingUTF8>)
    ->Name("files/lines-utf8/ours")
    ->Apply(Sizes);
BENCHMARK_CAPTURE(Run, utf8Narrow, Form::Utf8, ReadNarrow, true)
    ->Name("files/lines-utf8/std::getline")
    ->Apply(Sizes);
BENCHMARK_CAPTURE(Run, utf8Wide, Form::Utf8, ReadWide)
    ->Name("files/lines-utf8/std::getline wide")
    ->Apply(Sizes);
BENCHMARK_CAPTURE(Run, page, Form::Page1252, Ours<shr::EncodingANSI>)
    ->Name("files/lines-1252/ours")
    ->Apply(Sizes);
BENCHMARK_CAPTURE(Run, pageNarrow, Form::Page1252, ReadNarrow, true)
    ->Name("files/lines-1252/std::getline")
    ->Apply(Sizes);
// The narrow peer reads as many bytes of the narrow table.
BENCHMARK_CAPTURE(Run, utf16le, Form::Utf16LE, Ours<shr::EncodingUTF16LE>)
    ->Name("files/lines-utf16le/ours")
    ->Apply(Sizes);
BENCHMARK_CAPTURE(Run, utf16leNarrow, Form::Utf8, ReadNarrow, true)
    ->Name("files/lines-utf16le/std::getline")
    ->Apply(Sizes);
BENCHMARK_CAPTURE(Run, utf16be, Form::Utf16BE, Ours<shr::EncodingUTF16BE>)
    ->Name("files/lines-utf16be/ours")
    ->Apply(Sizes);
BENCHMARK_CAPTURE(Run, utf16beNarrow, Form::Utf8, ReadNarrow, true)
    ->Name("files/lines-utf16be/std::getline")
    ->Apply(Sizes);

}  // namespace
