// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: sizes and other integers of 64 bits must say so.

#include "shared/archive/ArchiveTemplates.h"

namespace {

// [pair]
void aSizeIsNotStoredIn32Bits(shr::Archive& archive, std::size_t& size) {
#ifdef MUST_NOT_COMPILE  // use Transfer64 for 8 bytes
  archive(size);
#else
  archive.Transfer64(size);
#endif
}
// [end]

void sizesInContainersAreNotStoredIn32Bits(shr::Archive& archive, std::vector<std::size_t>& sizes) {
#ifdef MUST_NOT_COMPILE  // use Transfer64|no matching function
  archive(sizes);
#else
  Transfer64(archive, sizes);
#endif
}

}  // namespace
