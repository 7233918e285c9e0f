// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `XMLNode`, an element or a processing instruction in the tree that `XMLScanner` reads
/// (shared/xml/XMLScanner.h).
///
///     std::shared_ptr<XMLNode> root = XMLNode::Factory();
///     std::shared_ptr<XMLNode> track = XMLNode::Factory(root);
///     track->SetName("trk");
///     track->SetAttribute("id", "7");
///     const std::string* id = root->FindChild("trk", 0)->FindAttribute("id");    // "7"
///
/// Threads: const calls on a tree may run together; a change needs the tree alone.

#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shared/Export.h"

namespace shr {

/// A node: name, attributes, the text directly inside it, children in document order, parent.
///
/// All text is the bytes of the file. Nodes live in shared handles; a node holds its children and
/// knows its parent weakly, so that a tree goes when the last handle to its root goes. That takes
/// no recursion: any depth is released in O(nodes).
class SHARED_API XMLNode {
  struct Key {};

public:
  using Handle = std::shared_ptr<XMLNode>;

  /// Return a new node: a root without name or parent, a node with a name, and a node with the
  /// given parent, which gets it as its last child.
  static Handle Factory();
  static Handle Factory(std::string_view name);
  static Handle Factory(const Handle& parent);

  /// For the functions above only.
  explicit XMLNode(Key) {}
  virtual ~XMLNode();
  XMLNode(const XMLNode&) = delete;
  XMLNode& operator=(const XMLNode&) = delete;

  /// Element name or target of a processing instruction; empty for a root.
  const std::string& GetName() const { return name_; }
  void SetName(std::string name) { name_ = std::move(name); }

  /// All character data directly inside, concatenated as written: white space, line ends and
  /// entities are kept.
  const std::string& GetValue() const { return value_; }
  void SetValue(std::string value) { value_ = std::move(value); }
  void AppendValue(std::string_view text) { value_ += text; }

  /// Returns the value of an attribute, or null when there is none of that name. Lifetime: until
  /// an attribute is set. Cost: O(log n).
  const std::string* FindAttribute(std::string_view name) const;
  /// Returns the value of an attribute, empty when there is none.
  std::string_view GetAttribute(std::string_view name) const;
  /// Sets an attribute; one of the same name is replaced.
  void SetAttribute(std::string_view name, std::string value);
  std::size_t GetAttributeCount() const;
  /// Returns a copy of all attributes.
  std::map<std::string, std::string> GetAttributes() const;
  /// Calls `visit(name, value)` for every attribute in the order of the names' bytes.
  template <typename Visit>
  void ForEachAttribute(const Visit& visit) const;

  const std::vector<Handle>& GetChildren() const { return children_; }
  /// Returns the child with the given number, from 0, among those that have exactly this name, or
  /// an empty handle. Cost: O(children).
  Handle FindChild(std::string_view name, std::size_t index) const;
  /// Returns the parent; empty for a root, and when the parent is gone.
  Handle GetParent() const { return parent_.lock(); }

  /// Gives back the memory that the list of children and the value hold in reserve. For whoever
  /// keeps a tree for long; the scanner does not call it.
  void Done();

private:
  using Attribute = std::pair<std::string, std::string>;
  using AttributeMap = std::map<std::string, std::string, std::less<>>;

  std::vector<Attribute>::const_iterator PlaceOf(std::string_view name) const;

  std::string name_;
  std::string value_;
  std::vector<Handle> children_;
  std::weak_ptr<XMLNode> parent_;
  /// Sorted by name; the map takes over when there are many, so that no order of them is slow.
  std::vector<Attribute> few_;
  std::unique_ptr<AttributeMap> many_;
};

// Implementation details follow.

template <typename Visit>
void XMLNode::ForEachAttribute(const Visit& visit) const {
  for (const auto& [name, value] : few_) visit(name, value);
  if (many_ == nullptr) return;
  for (const auto& [name, value] : *many_) visit(name, value);
}

}  // namespace shr
