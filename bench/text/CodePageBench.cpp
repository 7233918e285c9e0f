// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Narrow text to wide text. UTF-8 is decoded into a buffer: ASCII, Latin letters of which one in
// eight takes two bytes, and Chinese characters in lines. The peer is ICU: u_strFromUTF8 and
// u_strToUTF32, for ASCII u_strFromUTF8 and a widening loop. The code pages go through the
// library's appending call, ICU's through ucnv_toUChars, which stops at UTF-16 and so writes half
// the bytes. All contenders must give the same text before they are timed. The limit copies as many
// bytes as the wide text has.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "bench/text/CodePagePeerIcu.h"
#include "shared/platform/CodePages.h"
#include "shared/text/Utf.h"

namespace {

using shr::bench::IcuAndUtf32;
using shr::bench::IcuAndWidening;
using shr::bench::IcuPage;

using Decoder = std::size_t (*)(std::string_view bytes, wchar_t* out);

enum class Script { Ascii, Latin, Chinese };

std::string MakeUtf8(Script script, std::size_t size) {
  std::mt19937 random(20263);
  std::wstring text;
  std::string bytes;
  while (bytes.size() < size) {
    text.clear();
    for (int i = 0; i < 1000; ++i) {
      const auto draw = static_cast<std::uint32_t>(random());
      std::uint32_t ch = 'a' + draw / 100 % 26;
      if (script == Script::Latin && draw % 100 < 12) ch = 0xC0 + draw / 100 % 64;
      if (script == Script::Chinese) ch = i % 20 == 19 ? '\n' : 0x4E00 + draw % 0x5000;
      text += static_cast<wchar_t>(ch);
    }
    shr::platform::AppendNarrow(65001, text, bytes);
  }
  bytes.resize(shr::Utf8CompleteLength(std::string_view(bytes).substr(0, size)));
  return bytes;
}

/// Text of random characters that the page has, one in ten a letter; in a page of single bytes one
/// in ten is not ASCII.
std::string MakePageText(std::uint32_t page, std::size_t size) {
  std::mt19937 random(20264);
  std::string bytes;
  while (bytes.size() + 1 < size) {
    const bool isRare = random() % 10 == 0;
    const auto letter = static_cast<char>('a' + random() % 26);
    if (page == 1252) {
      bytes += isRare ? static_cast<char>(0xC0 + random() % 64) : letter;
      continue;
    }
    const char pair[] = {static_cast<char>(0x81 + random() % 0x7E),
                         static_cast<char>(0x40 + random() % 0xBF)};
    std::wstring unit;
    shr::platform::AppendWide(page, std::string_view(pair, 2), unit);
    const bool isCharacter =
        unit.size() == 1 && unit[0] >= 0x80 && unit[0] < 0xE000 && unit[0] != 0x30FB;
    if (isRare) {
      bytes += letter;
    } else if (isCharacter) {
      bytes.append(pair, 2);
    }
  }
  return bytes;
}

template <typename Make, typename Key>
const std::string& Cached(Make make, Key key, std::size_t size) {
  static std::map<std::pair<Key, std::size_t>, std::string> texts;
  std::string& text = texts[{key, size}];
  if (text.empty()) text = make(key, size);
  return text;
}

void RequireEqual(const std::wstring& a, const std::wstring& b) {
  if (a == b) return;
  std::fprintf(stderr, "the contenders give different text\n");
  std::abort();
}

void RunDecoder(benchmark::State& state, Decoder decode, Script script) {
  const std::string& bytes = Cached(MakeUtf8, script, static_cast<std::size_t>(state.range(0)));
  std::vector<wchar_t> out(bytes.size());
  std::vector<wchar_t> check(bytes.size());
  const std::size_t length = decode(bytes, out.data());
  RequireEqual(std::wstring(out.data(), length),
               std::wstring(check.data(), shr::Utf8ToWide(bytes, check.data())));
  check = std::vector<wchar_t>();
  for (auto _ : state) benchmark::DoNotOptimize(decode(bytes, out.data()));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

void RunCopy(benchmark::State& state, Script script) {
  const std::string& bytes = Cached(MakeUtf8, script, static_cast<std::size_t>(state.range(0)));
  std::vector<wchar_t> wide(bytes.size());
  wide.resize(shr::Utf8ToWide(bytes, wide.data()));
  std::vector<wchar_t> out(wide.size());
  for (auto _ : state) {
    std::memcpy(out.data(), wide.data(), wide.size() * sizeof(wchar_t));
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

struct Page {
  std::uint32_t number;
  const char* converter;
};

void RunPage(benchmark::State& state, Page page) {
  const std::string& bytes =
      Cached(MakePageText, page.number, static_cast<std::size_t>(state.range(0)));
  std::wstring wide;
  shr::platform::AppendWide(page.number, bytes,
                            wide);  // its memory is touched before the clock runs
  for (auto _ : state) {
    wide.clear();
    shr::platform::AppendWide(page.number, bytes, wide);
    benchmark::DoNotOptimize(wide.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

void RunIcuPage(benchmark::State& state, Page page) {
  const std::string& bytes =
      Cached(MakePageText, page.number, static_cast<std::size_t>(state.range(0)));
  IcuPage icu(page.converter);
  std::u16string units(bytes.size() + 1, u'\0');
  const std::size_t length = icu.Convert(bytes, units);
  std::wstring wide;
  shr::platform::AppendWide(page.number, bytes, wide);
  RequireEqual(std::wstring(units.begin(), units.begin() + static_cast<std::ptrdiff_t>(length)),
               wide);
  wide = std::wstring();
  for (auto _ : state) benchmark::DoNotOptimize(icu.Convert(bytes, units));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

void Sizes(benchmark::internal::Benchmark* row) {
  row->Arg(1'000'000)->Arg(10'000'000)->Arg(50'000'000)->Unit(benchmark::kMillisecond);
}

#define UTF8_ROWS(work, script, peer)                                 \
  BENCHMARK_CAPTURE(RunDecoder, work##_ours, shr::Utf8ToWide, script) \
      ->Name("text/" #work "/ours")                                   \
      ->Apply(Sizes);                                                 \
  BENCHMARK_CAPTURE(RunDecoder, work##_icu, peer, script)             \
      ->Name("text/" #work "/icu")                                    \
      ->Apply(Sizes);                                                 \
  BENCHMARK_CAPTURE(RunCopy, work##_copy, script)->Name("text/" #work "/_memcpy")->Apply(Sizes)

UTF8_ROWS(utf8_ascii, Script::Ascii, IcuAndWidening);
UTF8_ROWS(utf8_latin, Script::Latin, IcuAndUtf32);
UTF8_ROWS(utf8_chinese, Script::Chinese, IcuAndUtf32);

#define PAGE_ROWS(number, converter)                                   \
  BENCHMARK_CAPTURE(RunPage, number##_ours, Page{number, converter})   \
      ->Name("text/page_" #number "/ours")                             \
      ->Apply(Sizes);                                                  \
  BENCHMARK_CAPTURE(RunIcuPage, number##_icu, Page{number, converter}) \
      ->Name("text/page_" #number "/icu")                              \
      ->Apply(Sizes)

PAGE_ROWS(1252, "ibm-5348_P100-1997");
PAGE_ROWS(932, "ibm-943_P15A-2003");
PAGE_ROWS(936, "windows-936-2000");
PAGE_ROWS(949, "windows-949-2000");
PAGE_ROWS(950, "windows-950-2000");

}  // namespace
