// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// XML files as maps need them: whatever their encoding, with errors that name the line of an
/// element. GPX and KML are read from them (Tracks.h).
///
///     const XmlDocument document(ReadBytes(path), path, std::nullopt);
///     const XMLNode* const gpx = FindChild(document.Root(), "gpx");
///     if (gpx == nullptr) document.Fail(document.Root(), L"This is no GPX.");
///
/// The library's scanner (shared/xml/XMLScanner.h) does the work. Beyond it: sections of character
/// data are text, values may stand in single quotes, a file that ends inside an element is an
/// error, and text is decoded. Nothing recurses, so that elements may nest at any depth.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "examples/common/TextFormat.h"
#include "shared/text/GString.h"
#include "shared/xml/XMLNode.h"

namespace mapreport {

using namespace examples;
using shr::GString;
using shr::XMLNode;

/// A file in memory as a tree.
class XmlDocument {
public:
  /// Reads `bytes`; errors name them `name`. A byte-order mark decides the encoding, or zero bytes
  /// that show UTF-16, or `codePage` where it is given, or the declaration; without any it is
  /// UTF-8. Errors: what `XMLScanner` raises, and `ThrowInputError` when the file is empty or
  /// names an encoding that is not known.
  XmlDocument(std::string bytes, const GString& name, std::optional<std::uint32_t> codePage);

  /// Returns what the document's element is a child of. Lifetime: as the document.
  const XMLNode& Root() const { return *root_; }
  const TextFormat& Format() const { return format_; }

  /// Returns the text directly inside an element: entities are decoded, white space around it is
  /// cut off and runs of it inside are one blank. Errors: `Fail` where the bytes are no UTF-8.
  GString Text(const XMLNode& node) const;

  /// Rejects an element: `ThrowInputError` with the line of its start tag, of the root with
  /// the first. Cost: a second scan.
  [[noreturn]] void Fail(const XMLNode& node, const GString& what) const;

private:
  GString name_;
  TextFormat format_;
  std::string text_;  ///< UTF-8
  XMLNode::Handle root_;
};

/// Returns the bytes of a file. Errors: the library's exception when it cannot be read.
std::string ReadBytes(const GString& path);

/// Returns the name of an element without the prefix of its name space.
std::string_view LocalName(const XMLNode& node);

/// Returns the first child with that local name, or null.
const XMLNode* FindChild(const XMLNode& node, std::string_view localName);

}  // namespace mapreport
