// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Readers of XML files into trees, as contenders. Where a library is absent its reader is none.

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace shr::bench {

/// What the trees are compared by.
struct XMLCount {
  std::size_t elements = 0;
  std::size_t attributes = 0;
  std::size_t attributeBytes = 0;  ///< Of all values, entities decoded.
  friend bool operator==(const XMLCount&, const XMLCount&) = default;
};

/// A tree that goes with the last copy of this handle.
struct XMLTree {
  std::shared_ptr<void> tree;
  std::function<XMLCount()> count;
};

struct XMLContender {
  const char* name;
  XMLTree (*read)(const std::string& path);
};

/// pugixml, expat building a tree of strings, and libxml2.
std::vector<XMLContender> XMLPeers();

}  // namespace shr::bench
