// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Scans the input from memory; then the tree, written as a file with all its text, must be read as
// the same tree.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/xml/XMLScanner.h"

namespace {

using shr::XMLNode;

/// Writes the elements of a tree one after the other, without recursion; values come first.
std::string Written(const XMLNode& root) {
  std::string text(root.GetValue());
  std::vector<std::pair<const XMLNode*, std::size_t>> open = {{&root, 0}};
  while (!open.empty()) {
    auto& [node, next] = open.back();
    if (next == node->GetChildren().size()) {
      if (open.size() > 1) text.append("</").append(node->GetName()) += '>';
      open.pop_back();
      continue;
    }
    const XMLNode* const child = node->GetChildren()[next++].get();
    text.append("<").append(child->GetName());
    child->ForEachAttribute([&text](std::string_view name, std::string_view value) {
      text.append(" ").append(name).append("=\"");
      for (const char c : value) text += c == '"' ? std::string("&quot;") : std::string(1, c);
      text += '"';
    });
    text += '>';
    text += child->GetValue();
    open.emplace_back(child, 0);
  }
  return text;
}

/// A tag that begins with these is no element when it is written.
bool HasOtherMarkup(const std::string& text) {
  return text.find("<!") != std::string::npos || text.find("<?") != std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(data, data + size);
  shr::XMLScanner scanner;
  try {
    const XMLNode::Handle root = scanner.ScanText(text, L"input");
    const std::string written = Written(*root);
    if (HasOtherMarkup(written)) return 0;
    const XMLNode::Handle again = scanner.ScanText(written, L"written");
    if (Written(*again) != written) std::abort();
  } catch (const shr::Exception& error) {
    if (error.GetSrcFile() != L"XMLScanner") std::abort();
  }
  return 0;
}
