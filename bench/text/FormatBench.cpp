// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Formatting a whole number, a decimal and a word into a wide string that is used again, as a
// loop over a table does. The peers are the formatter of the C runtime into a buffer and {fmt} on
// wide text. The argument is the number of texts. All contenders must write the same texts before
// they are timed.

#include <benchmark/benchmark.h>

#define FMT_HEADER_ONLY
#include <fmt/xchar.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "shared/text/GString.h"

namespace {

struct Line {
  int number;
  double value;
  const wchar_t* word;
};

const std::vector<Line>& Lines(std::size_t count) {
  static std::vector<Line> lines;
  static constexpr const wchar_t* WORDS[] = {L"layer", L"Reykjavik", L"contour line", L"x"};
  std::mt19937_64 random(20265);
  std::uniform_real_distribution<double> value(-1e4, 1e4);
  lines.clear();
  for (std::size_t i = 0; i < count; ++i) {
    lines.push_back({static_cast<int>(random() % 2'000'000) - 1'000'000, value(random),
                     WORDS[random() % std::size(WORDS)]});
  }
  return lines;
}

struct All {
  static constexpr const wchar_t* FORMAT = L"%d %.6f %s";
  static void Ours(shr::GString& text, const Line& line) {
    text.FormatString(FORMAT, line.number, line.value, line.word);
  }
  static void Runtime(wchar_t* buffer, std::size_t size, const Line& line) {
    std::swprintf(buffer, size, L"%d %.6f %ls", line.number, line.value, line.word);
  }
  static void Fmt(std::wstring& text, const Line& line) {
    fmt::format_to(std::back_inserter(text), L"{} {:.6f} {}", line.number, line.value, line.word);
  }
};

struct Integer {
  static void Ours(shr::GString& text, const Line& line) { text.FormatString(L"%d", line.number); }
  static void Runtime(wchar_t* buffer, std::size_t size, const Line& line) {
    std::swprintf(buffer, size, L"%d", line.number);
  }
  static void Fmt(std::wstring& text, const Line& line) {
    fmt::format_to(std::back_inserter(text), L"{}", line.number);
  }
};

struct Fixed {
  static void Ours(shr::GString& text, const Line& line) { text.FormatString(L"%.6f", line.value); }
  static void Runtime(wchar_t* buffer, std::size_t size, const Line& line) {
    std::swprintf(buffer, size, L"%.6f", line.value);
  }
  static void Fmt(std::wstring& text, const Line& line) {
    fmt::format_to(std::back_inserter(text), L"{:.6f}", line.value);
  }
};

/// "%g" writes six significant digits.
struct General {
  static void Ours(shr::GString& text, const Line& line) { text.FormatString(L"%g", line.value); }
  static void Runtime(wchar_t* buffer, std::size_t size, const Line& line) {
    std::swprintf(buffer, size, L"%g", line.value);
  }
  static void Fmt(std::wstring& text, const Line& line) {
    fmt::format_to(std::back_inserter(text), L"{:g}", line.value);
  }
};

struct Word {
  static void Ours(shr::GString& text, const Line& line) { text.FormatString(L"%s", line.word); }
  static void Runtime(wchar_t* buffer, std::size_t size, const Line& line) {
    std::swprintf(buffer, size, L"%ls", line.word);
  }
  static void Fmt(std::wstring& text, const Line& line) {
    fmt::format_to(std::back_inserter(text), L"{}", line.word);
  }
};

template <typename Format>
class Ours {
public:
  const wchar_t* Write(const Line& line) {
    Format::Ours(text_, line);
    return text_.c_str();
  }

private:
  shr::GString text_;
};

template <typename Format>
class Runtime {
public:
  const wchar_t* Write(const Line& line) {
    Format::Runtime(buffer_, std::size(buffer_), line);
    return buffer_;
  }

private:
  wchar_t buffer_[200];
};

template <typename Format>
class Fmt {
public:
  const wchar_t* Write(const Line& line) {
    text_.clear();
    Format::Fmt(text_, line);
    return text_.c_str();
  }

private:
  std::wstring text_;
};

template <typename Format>
void CheckContenders(const std::vector<Line>& lines) {
  Ours<Format> ours;
  Runtime<Format> runtime;
  Fmt<Format> fmt;
  for (const Line& line : lines) {
    const std::wstring text = ours.Write(line);
    if (text != runtime.Write(line) || text != fmt.Write(line)) {
      std::fprintf(stderr, "contenders differ on %d and %.17g\n", line.number, line.value);
      std::abort();
    }
  }
}

template <typename Format, template <typename> typename Contender>
void Run(benchmark::State& state) {
  const std::vector<Line>& lines = Lines(static_cast<std::size_t>(state.range(0)));
  CheckContenders<Format>(lines);
  Contender<Format> contender;
  for (auto _ : state) {
    for (const Line& line : lines) benchmark::DoNotOptimize(contender.Write(line));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Format>
void Register(const std::string& row) {
  const auto add = [](const std::string& name, void (*run)(benchmark::State&)) {
    benchmark::RegisterBenchmark(name.c_str(), run)
        ->Arg(2'000)
        ->Arg(20'000)
        ->Arg(200'000)
        ->Unit(benchmark::kMillisecond);
  };
  add(row + "/ours", Run<Format, Ours>);
  add(row + "/swprintf", Run<Format, Runtime>);
  add(row + "/fmt", Run<Format, Fmt>);
}

[[maybe_unused]] const bool REGISTERED = [] {
  Register<All>("text/format-all");
  Register<Integer>("text/format-d");
  Register<Fixed>("text/format-f");
  Register<General>("text/format-g");
  Register<Word>("text/format-s");
  return true;
}();

}  // namespace
