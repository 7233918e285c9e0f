// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Reads the input as a file of the registry store and, under a right header, as the part behind it.
// What is accepted must come back the same from the bytes that are written for it.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "shared/platform/posix/RegistryStore.h"

namespace {

using shr::platform::RegistryStore;

void Check(bool condition) {
  if (!condition) std::abort();
}

void CheckRoundTrip(const RegistryStore& store, std::uint64_t serial) {
  const std::string written = store.Write(serial);
  RegistryStore again;
  std::uint64_t serialAgain = 0;
  RegistryStore::Fault fault;
  Check(again.Read(written, serialAgain, fault) == RegistryStore::ReadResult::Ok);
  Check(serialAgain == serial);
  Check(again.Write(serial) == written);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  RegistryStore store;
  RegistryStore::Fault fileFault, fault;
  std::uint64_t serial = 0;
  if (store.Read(bytes, serial, fileFault) == RegistryStore::ReadResult::Ok) {
    CheckRoundTrip(store, serial);
  }
  if (store.ReadBody(bytes, fault) == RegistryStore::ReadResult::Ok) {
    Check(fault.line == 0);
    CheckRoundTrip(store, size);
    store.CreateKey(u"Software\\Demo");
    Check(store.HasKey(u"SOFTWARE\\demo"));
  } else {
    Check(fault.line > 0 && !store.HasKey(u"Software"));
  }
  return 0;
}
