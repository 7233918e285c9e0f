// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors
//
// Runs a fuzz target once on the empty input and on every file named on the command line or below a
// folder named there. It keeps the targets and their seeds alive in builds without libFuzzer; a
// failed check aborts.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

void Run(const std::vector<char>& input) {
  // An array of exactly this size lets the address sanitizer see a read past the end.
  const auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(input.size());
  std::transform(input.begin(), input.end(), bytes.get(),
                 [](char c) { return static_cast<std::uint8_t>(c); });
  LLVMFuzzerTestOneInput(bytes.get(), input.size());
}

void RunFile(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) {
    throw fs::filesystem_error("cannot be read", path, std::error_code());
  }
  Run(std::vector<char>(std::istreambuf_iterator<char>(stream), {}));
}

std::vector<fs::path> FilesOf(const fs::path& root) {
  std::vector<fs::path> files;
  if (!fs::is_directory(root)) {
    files.push_back(root);
    return files;
  }
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (entry.is_regular_file()) {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Run({});
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
      for (const fs::path& file : FilesOf(argv[i])) {
        // Named before the run: the last line before an abort is the guilty file.
        std::printf("%s\n", file.filename().string().c_str());
        std::fflush(stdout);
        RunFile(file);
        ++count;
      }
    }
    if (argc > 1 && count == 0) {
      std::fprintf(stderr, "No input files found.\n");
      return 1;
    }
    std::printf("%zu files and the empty input\n", count);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
