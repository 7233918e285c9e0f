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
///     std::string_view id = root->FindChild("trk", 0)->GetAttribute("id");    // "7"
///
/// Threads: const calls on a tree may run together; a change needs the tree alone.

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "shared/Export.h"

namespace shr {

class XMLArena;

/// A node: name, attributes, the text directly inside it, children in document order, parent.
///
/// All text is the bytes of the file. Nodes live in shared handles; a node holds its children and
/// knows its parent weakly, so that a tree goes when the last handle to its root goes. That takes
/// no recursion: any depth is released in O(nodes). The memory of all nodes of a tree is one: it
/// is given back when the last of them is gone, and what a change replaces stays until then. Views
/// of names, values and children are good until that node changes.
class SHARED_API XMLNode {
  struct Key {
    XMLArena* arena;
  };

public:
  using Handle = std::shared_ptr<XMLNode>;

  /// Return a new node: a root without name or parent, a node with a name, and a node with the
  /// given parent, which gets it as its last child.
  static Handle Factory();
  static Handle Factory(std::string_view name);
  static Handle Factory(const Handle& parent);

  /// For the functions above only.
  explicit XMLNode(Key key) : arena_(key.arena) {}
  virtual ~XMLNode();
  XMLNode(const XMLNode&) = delete;
  XMLNode& operator=(const XMLNode&) = delete;

  /// Element name or target of a processing instruction; empty for a root.
  std::string_view GetName() const { return name_; }
  void SetName(std::string_view name);

  /// All character data directly inside, concatenated as written: white space, line ends and
  /// entities are kept.
  std::string_view GetValue() const { return {value_, valueSize_}; }
  void SetValue(std::string_view value);
  void AppendValue(std::string_view text);

  /// Returns whether there is an attribute of that name. Cost: O(log n).
  bool HasAttribute(std::string_view name) const { return Find(name) != nullptr; }
  /// Returns the value of an attribute, empty when there is none. Cost: O(log n).
  std::string_view GetAttribute(std::string_view name) const;
  /// Sets an attribute; one of the same name is replaced.
  void SetAttribute(std::string_view name, std::string_view value);
  std::size_t GetAttributeCount() const;
  /// Returns a copy of all attributes.
  std::map<std::string, std::string> GetAttributes() const;
  /// Calls `visit(name, value)` for every attribute in the order of the names' bytes.
  template <typename Visit>
  void ForEachAttribute(const Visit& visit) const;

  std::span<const Handle> GetChildren() const { return {children_, childCount_}; }
  /// Returns the child with the given number, from 0, among those that have exactly this name, or
  /// an empty handle. Cost: O(children).
  Handle FindChild(std::string_view name, std::size_t index) const;
  /// Returns the parent; empty for a root, and when the parent is gone.
  Handle GetParent() const { return parent_.lock(); }

  /// Finishes a node: the list of its children takes no more memory than they need, when it is
  /// the last thing that took memory. For whoever builds a tree; the scanner does not call it.
  void Done();

private:
  struct Attribute {
    std::string_view name;
    std::string_view value;
  };
  using AttributeMap = std::map<std::string_view, std::string_view>;

  static Handle Make(XMLArena* arena);
  const std::string_view* Find(std::string_view name) const;
  Attribute* PlaceOf(std::string_view name) const;
  void SetFew(std::string_view name, std::string_view kept);
  void AddChild(const Handle& child);

  XMLArena* arena_;
  std::string_view name_;
  char* value_ = nullptr;
  std::size_t valueSize_ = 0;
  std::size_t valueCapacity_ = 0;
  Handle* children_ = nullptr;
  std::size_t childCount_ = 0;
  std::size_t childCapacity_ = 0;
  std::weak_ptr<XMLNode> parent_;
  /// Sorted by name; the map takes over when there are many, so that no order of them is slow.
  Attribute* few_ = nullptr;
  std::uint32_t fewCount_ = 0;
  std::uint32_t fewCapacity_ = 0;
  std::unique_ptr<AttributeMap> many_;
};

// Implementation details follow.

template <typename Visit>
void XMLNode::ForEachAttribute(const Visit& visit) const {
  for (const Attribute& each : std::span(few_, fewCount_)) visit(each.name, each.value);
  if (many_ == nullptr) return;
  for (const auto& [name, value] : *many_) visit(name, value);
}

}  // namespace shr
