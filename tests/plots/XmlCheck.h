// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Says what is wrong with an XML document, as far as pictures use XML.
///
///     EXPECT_EQ("", test::FaultOfXml(svg));

#pragma once

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "shared/text/Utf.h"

namespace shr::test {

/// Reads a document of elements, attributes, text and the five named entities. Every unit must be a
/// character that XML 1.0 allows, in UTF-8.
class XmlCheck {
public:
  explicit XmlCheck(std::string_view document) : text_(document) {}

  std::string Run() {
    for (const char ch : text_) {
      if (static_cast<unsigned char>(ch) < 0x20 && ch != '\n' && ch != '\t' && ch != '\r') {
        return "control character";
      }
    }
    std::wstring wide(text_.size() + 1, L'\0');
    wide.resize(Utf8ToWide(text_, wide.data()));
    std::string back(wide.size() * UTF8_BYTES_PER_UNIT, '\0');
    back.resize(WideToUtf8(wide, back.data()));
    if (back != text_) return "not UTF-8";
    while (at_ < text_.size()) {
      const std::string fault = text_[at_] == '<' ? Tag() : Characters();
      if (!fault.empty()) return fault + " at " + std::to_string(at_);
    }
    if (!open_.empty()) return "open element " + open_.back();
    return roots_ == 1 ? "" : "not one root";
  }

private:
  std::string Characters() {
    const std::size_t end = std::min(text_.find('<', at_), text_.size());
    const std::string content(text_.substr(at_, end - at_));
    at_ = end;
    if (open_.empty() && content.find_first_not_of(" \n") != std::string::npos) return "stray text";
    return Content(content);
  }

  static std::string Content(std::string_view content) {
    for (std::size_t at = content.find('&'); at != content.npos; at = content.find('&', at + 1)) {
      bool isEntity = false;
      for (const std::string_view name : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"}) {
        isEntity = isEntity || content.substr(at).starts_with(name);
      }
      if (!isEntity) return "bare ampersand";
    }
    return content.find("]]>") != content.npos ? "]]>" : "";
  }

  static std::size_t NameEnd(std::string_view text, std::size_t from) {
    const auto isName = [](char ch) {
      return std::isalpha(static_cast<unsigned char>(ch)) || ch == '-' || ch == ':';
    };
    while (from < text.size() && isName(text[from])) ++from;
    return from;
  }

  std::string Tag() {
    const std::size_t end = text_.find('>', at_);
    if (end == std::string_view::npos) return "open tag";
    const std::string tag(text_.substr(at_ + 1, end - at_ - 1));
    at_ = end + 1;
    if (tag[0] == '/') {
      if (open_.empty() || open_.back() != tag.substr(1)) return "wrong end " + tag;
      open_.pop_back();
      return "";
    }
    std::size_t at = NameEnd(tag, 0);
    if (open_.empty()) ++roots_;
    const bool isEmpty = tag.back() == '/';
    if (!isEmpty) open_.push_back(tag.substr(0, at));
    const std::size_t last = tag.size() - (isEmpty ? 1 : 0);
    while (at < last) {
      const std::size_t name = tag.find_first_not_of(' ', at);
      const std::size_t equals = NameEnd(tag, name);
      const std::size_t close = tag.find('"', equals + 2);
      const bool isAttribute =
          name > at && equals > name && close != tag.npos && tag.compare(equals, 2, "=\"") == 0;
      if (!isAttribute) return "wrong tag " + tag.substr(0, 80);
      const std::string_view value = std::string_view(tag).substr(equals + 2, close - equals - 2);
      if (value.find('<') != value.npos || !Content(value).empty()) return "wrong value";
      at = close + 1;
    }
    return at == last ? "" : "wrong tag " + tag.substr(0, 80);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t roots_ = 0;
  std::vector<std::string> open_;
};

/// Returns nothing for a sound document.
inline std::string FaultOfXml(std::string_view document) {
  return XmlCheck(document).Run();
}

}  // namespace shr::test
