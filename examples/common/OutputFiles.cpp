// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/common/OutputFiles.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

#include "examples/common/InputError.h"

namespace examples {

using namespace shr;

OutputFiles::OutputFiles(const GString& folder) {
  const std::filesystem::path path = folder;
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return;
  if (std::filesystem::create_directories(path, error)) newFolder_ = folder;
  if (error) {
    ThrowInputError(folder, L"The folder cannot be made: " + GString::FromUtf8(error.message()));
  }
}

OutputFiles::~OutputFiles() {
  files_.clear();
  std::error_code error;
  if (!newFolder_.empty()) std::filesystem::remove(newFolder_, error);
}

void OutputFiles::Add(const GString& path, std::string_view content) {
  files_.push_back(std::make_unique<CReplacementFile>(path));
  files_.back()->Write(content);
}

void OutputFiles::Commit() {
  for (const auto& file : files_) file->Commit();
  newFolder_.clear();
}

}  // namespace examples
