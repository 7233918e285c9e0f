// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Takes the place of ICU on a target that lacks it: there is no such peer.

#include "bench/text/CodePagePeerIcu.h"

namespace shr::bench {

std::size_t IcuAndWidening(std::string_view, wchar_t*) {
  return 0;
}

std::size_t IcuAndUtf32(std::string_view, wchar_t*) {
  return 0;
}

IcuPage::IcuPage(const char*) : converter_(nullptr) {}

IcuPage::~IcuPage() = default;

std::size_t IcuPage::Convert(std::string_view, std::u16string&) {
  return 0;
}

}  // namespace shr::bench
