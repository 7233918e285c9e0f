// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors
//
// Arbitrary bytes as an archive of a small document: text, containers, references and checks.
// Loading must end in a document or in an error of the library. What was loaded must store and load
// to the same bytes once more.

#include <cstdlib>
#include <string>

#include "shared/color/Color4b.h"
#include "shared/diagnostics/Exception.h"
#include "shared/text/GString.h"
#include "tests/archive/ArchiveModel.h"
#include "tests/archive/ArchiveTestSupport.h"

namespace {

struct Document {
  char title[16] = "";
  std::wstring name;
  std::vector<double> depths;
  std::map<int, std::string> texts;
  shr::Color4b color;
  shr::test::Node* first = nullptr;
  std::vector<std::shared_ptr<shr::CTypedObject>> objects;

  void Serialize(shr::Archive& archive) {
    archive.Transfer(title, sizeof title);
    archive.Transfer(name);
    Transfer(archive, depths);
    Transfer(archive, texts);
    archive.Transfer(color);
    Transfer(archive, first);
    Transfer(archive, objects);
  }
};

/// Loads a document, stores it again and returns what was stored; empty after an error.
std::string LoadAndStore(std::string_view bytes) {
  Document document;
  std::string stored;
  shr::Archive archive;
  archive.OpenMem(shr::test::Bytes(bytes), bytes.size());
  try {
    document.Serialize(archive);
    stored = shr::test::Stored([&](shr::Archive& again) { document.Serialize(again); });
  } catch (const shr::Exception&) {
  }
  archive.DiscardLoaded();
  return stored;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string stored = LoadAndStore({reinterpret_cast<const char*>(data), size});
  if (!stored.empty() && LoadAndStore(stored) != stored) std::abort();
  return 0;
}
