// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Scans the input from memory, once as it is done mostly and once step by step, to the same tree or
// the same error; then the tree, written as a file with all its text, must be read as the same
// tree.

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

/// Reads every construct by its operation and asks for the current node at every end of a tag.
class StepwiseScanner : public shr::XMLScanner {
protected:
  void CloseBracket() override {
    if (GetCurrent() == nullptr) std::abort();
    shr::XMLScanner::CloseBracket();
  }
};

struct Outcome {
  std::string tree;
  std::wstring error;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

Outcome Scanned(shr::XMLScanner& scanner, const std::string& text) {
  try {
    return {Written(*scanner.ScanText(text, L"input")), L""};
  } catch (const shr::Exception& error) {
    if (error.GetSrcFile() != L"XMLScanner") std::abort();
    return {"", std::to_wstring(error.GetSrcLine()) + error.GetDescription().c_str()};
  }
}

/// A tag that begins with these is no element when it is written.
bool HasOtherMarkup(const std::string& text) {
  return text.find("<!") != std::string::npos || text.find("<?") != std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(data, data + size);
  shr::XMLScanner scanner;
  StepwiseScanner stepwise;
  const Outcome outcome = Scanned(scanner, text);
  if (Scanned(stepwise, text) != outcome) std::abort();
  if (!outcome.error.empty() || HasOtherMarkup(outcome.tree)) return 0;
  if (Scanned(scanner, outcome.tree) != outcome) std::abort();
  return 0;
}
