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

#include <atomic>
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
class XMLBlocks;

/// A node: name, attributes, the text directly inside it, children in document order, parent.
///
/// All text is the bytes of the file. Nodes live in shared handles; a node holds its children and
/// knows its parent weakly, so that a tree goes when the last handle to its root goes. That takes
/// no recursion: any depth is released in O(nodes). The memory of all nodes of a tree is one: it
/// is given back when the last handle to any of them is gone, and what a change replaces stays
/// until then. Views of names, values and children are good until that node changes.
///
/// Memory: 80 bytes a node, 32 an attribute, and the texts. Handles are made where they are asked
/// for, by `GetChildren` and `FindChild` all of a node's children: they take another 112 bytes a
/// child. A walk by `ForEachChild` takes none.
class SHARED_API XMLNode {
public:
  using Handle = std::shared_ptr<XMLNode>;

  /// Return a new node: a root without name or parent, a node with a name, and a node with the
  /// given parent, which gets it as its last child.
  static Handle Factory();
  static Handle Factory(std::string_view name);
  static Handle Factory(const Handle& parent);

  virtual ~XMLNode();
  XMLNode(const XMLNode&) = delete;
  XMLNode& operator=(const XMLNode&) = delete;

  /// Element name or target of a processing instruction; empty for a root.
  std::string_view GetName() const { return {name_, static_cast<std::size_t>(nameSize_)}; }
  void SetName(std::string_view name);

  /// All character data directly inside, concatenated as written: white space, line ends and
  /// entities are kept.
  std::string_view GetValue() const { return {value_, static_cast<std::size_t>(valueSize_)}; }
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

  /// Returns the handles of all children. Cost: O(children) the first time and after new ones.
  std::span<const Handle> GetChildren() const;
  /// Calls `visit(child)` with a reference to every child, which is good as long as this node is.
  /// Cost: less than half of that of `GetChildren` the first time.
  template <typename Visit>
  void ForEachChild(const Visit& visit) const;
  /// Returns the child with the given number, from 0, among those that have exactly this name, or
  /// an empty handle. Cost: O(children).
  Handle FindChild(std::string_view name, std::size_t index) const;
  /// Returns the parent; empty for a root, and when the parent is gone.
  Handle GetParent() const;

  /// Finishes a node: the list of its children takes no more memory than they need, when it is
  /// the last thing that took memory. For whoever builds a tree; the scanner does not call it.
  void Done();

private:
  friend class XMLScanner;
  /// What a handle shares: it is destroyed when the node's last handle goes.
  struct Family;
  struct Attribute {
    std::string_view name;
    std::string_view value;
  };
  struct AttributeMap;

  XMLNode() = default;
  static Handle MakeRoot(std::shared_ptr<XMLBlocks> blocks);
  /// Makes the last child of `parent`, or a root, without a handle.
  static XMLNode* Make(XMLArena& arena, XMLNode* parent);
  /// Makes the handle of a node that has none.
  static Handle MakeHandle(XMLArena& arena, XMLNode& node, const std::shared_ptr<Family>& parent);
  void MakeChildrenHandles(Family& family) const;
  /// Makes handles from above down to this node where it has none.
  Family& GetFamily() const;
  XMLArena& GetArena() const;
  bool HasHandle() const { return family_.load(std::memory_order_relaxed) != nullptr; }
  Handle GetHandle() const;

  // The same as the public ones, for those who know the arena.
  void SetName(XMLArena& arena, std::string_view name);
  void AppendValue(XMLArena& arena, std::string_view text);
  void SetKeptAttribute(XMLArena& arena, std::string_view name, std::string_view kept);

  // Views by reference: the Windows convention passes copies by way of memory.
  void AppendMore(XMLArena& arena, const std::string_view& text);
  const std::string_view* Find(std::string_view name) const;
  Attribute* PlaceOf(std::string_view name) const;
  void SetFew(XMLArena& arena, const std::string_view& name, const std::string_view& kept);
  void SetMany(XMLArena& arena, std::string_view name, std::string_view kept);
  void VisitMany(void (*visit)(void*, std::string_view, std::string_view), void* data) const;

  /// Marks in the place of a capacity that a map took over.
  static constexpr unsigned int MANY = 255;
  /// All bits of a number of bytes: more than any machine addresses.
  static constexpr std::uint64_t SIZE_BITS = (std::uint64_t{1} << 48) - 1;

  const char* name_ = nullptr;
  std::uint64_t nameSize_ : 48 = 0;
  std::uint64_t fewCount_ : 8 = 0;  ///< Attributes in the array.
  std::uint64_t fewCapacity_ : 8 = 0;
  /// Few are sorted by name; a map takes over when there are many, so that no order is slow.
  union {
    Attribute* few_ = nullptr;
    AttributeMap* many_;
  };
  char* value_ = nullptr;
  std::uint64_t valueSize_ : 48 = 0;
  /// Whether the memory of the value is the next power of two, else what it needs.
  std::uint64_t hasValueGrown_ : 8 = 0;
  XMLNode* lastChild_ = nullptr;  ///< Its `next_` is the first child.
  XMLNode* next_ = nullptr;
  XMLNode* parent_ = nullptr;  ///< May be gone where this node has a handle.
  mutable std::atomic<Family*> family_ = nullptr;
};

// Implementation details follow.

template <typename Visit>
void XMLNode::ForEachAttribute(const Visit& visit) const {
  if (fewCapacity_ == MANY) {
    const auto call = [](void* data, std::string_view name, std::string_view value) {
      (*static_cast<const Visit*>(data))(name, value);
    };
    VisitMany(call, const_cast<Visit*>(&visit));
    return;
  }
  const std::size_t count = fewCount_;
  for (const Attribute& each : std::span(few_, count)) visit(each.name, each.value);
}

template <typename Visit>
void XMLNode::ForEachChild(const Visit& visit) const {
  if (lastChild_ == nullptr) return;
  const XMLNode* child = lastChild_;
  do {
    child = child->next_;
    visit(*child);
  } while (child != lastChild_);
}

}  // namespace shr
