// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/OutputFiles.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

#include "examples/mapreport/InputError.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr std::uint32_t UTF8_PAGE = 65001;

/// The standard's own conversion of wide text depends on the locale; UTF-8 is a path everywhere.
std::filesystem::path ToFilesystemPath(const GString& path) {
  const std::string utf8 = path.ToNarrow(UTF8_PAGE);
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

}  // namespace

OutputFiles::OutputFiles(const GString& folder) {
  const std::filesystem::path path = ToFilesystemPath(folder);
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return;
  if (std::filesystem::create_directories(path, error)) newFolder_ = folder;
  if (error) {
    GString reason;
    reason.FromNarrow(error.message(), UTF8_PAGE);
    ThrowInputError(folder, L"The folder cannot be made: " + reason);
  }
}

OutputFiles::~OutputFiles() {
  files_.clear();
  std::error_code error;
  if (!newFolder_.empty()) std::filesystem::remove(ToFilesystemPath(newFolder_), error);
}

void OutputFiles::Add(const GString& path, std::string_view content) {
  files_.push_back(std::make_unique<CReplacementFile>(path));
  files_.back()->Write(content);
}

void OutputFiles::Commit() {
  for (const auto& file : files_) file->Commit();
  newFolder_.clear();
}

}  // namespace mapreport
