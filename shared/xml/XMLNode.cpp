// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A tree is many small things that come and go together. They are taken from one arena: names,
// values and lists beside the nodes and the counts of their handles, which are its users. First
// touches of fresh pages are what costs most in large trees, so that small is fast.

#include "shared/xml/XMLNode.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "shared/xml/XMLArena.h"

namespace shr {
namespace {

/// Attributes up to this number are kept in a sorted array.
constexpr std::size_t FEW = 16;

/// Makes room for one more at the end of an array of the arena.
template <typename T, typename Size>
void Grow(XMLArena& arena, T*& array, Size count, Size& capacity, Size first) {
  if (count < capacity) return;
  capacity = std::max(first, static_cast<Size>(capacity * 2));
  T* const larger = static_cast<T*>(arena.Take(capacity * sizeof(T), alignof(T)));
  std::uninitialized_move(array, array + count, larger);
  std::destroy(array, array + count);
  array = larger;
}

}  // namespace

XMLNode::Handle XMLNode::Make(XMLArena* arena) {
  return std::allocate_shared<XMLNode>(XMLArenaAllocator<XMLNode>(arena), Key{arena});
}

XMLNode::Handle XMLNode::Factory() {
  XMLArena* const arena = XMLArena::Make();
  // A user while the node is made, so that the arena goes where that fails.
  arena->AddUser();
  try {
    Handle node = Make(arena);
    arena->RemoveUser();
    return node;
  } catch (...) {
    arena->RemoveUser();
    throw;
  }
}

XMLNode::Handle XMLNode::Factory(std::string_view name) {
  Handle node = Factory();
  node->SetName(name);
  return node;
}

XMLNode::Handle XMLNode::Factory(const Handle& parent) {
  Handle node = Make(parent->arena_);
  node->parent_ = parent;
  parent->AddChild(node);
  return node;
}

XMLNode::~XMLNode() {
  if (childCount_ == 0) return;
  // What would be destroyed with this node hands its children over first.
  std::vector<Handle> waiting;
  const auto takeChildren = [&waiting](XMLNode& node) {
    const std::span children(node.children_, node.childCount_);
    node.childCount_ = 0;
    for (Handle& child : children) {
      // Most have neither children nor other handles, and go at once.
      if (child->childCount_ > 0) waiting.push_back(std::move(child));
    }
    std::destroy(children.begin(), children.end());
  };
  takeChildren(*this);
  while (!waiting.empty()) {
    const Handle node = std::move(waiting.back());
    waiting.pop_back();
    if (node.use_count() == 1) takeChildren(*node);
  }
}

void XMLNode::SetName(std::string_view name) {
  name_ = arena_->Keep(name);
}

void XMLNode::SetValue(std::string_view value) {
  // The new one may be part of the old one.
  const std::string_view kept = arena_->Keep(value);
  value_ = const_cast<char*>(kept.data());
  valueSize_ = valueCapacity_ = kept.size();
}

void XMLNode::AppendValue(std::string_view text) {
  if (text.empty()) return;
  if (valueCapacity_ - valueSize_ < text.size()) {
    // Exactly what is needed first, for most nodes have one piece of text.
    const std::size_t needed = valueSize_ + text.size();
    valueCapacity_ = valueSize_ == 0 ? needed : std::max(needed, 2 * valueCapacity_);
    char* const larger = static_cast<char*>(arena_->Take(valueCapacity_, 1));
    if (valueSize_ > 0) std::memcpy(larger, value_, valueSize_);
    value_ = larger;
  }
  std::memcpy(value_ + valueSize_, text.data(), text.size());
  valueSize_ += text.size();
}

XMLNode::Attribute* XMLNode::PlaceOf(std::string_view name) const {
  return std::lower_bound(few_, few_ + fewCount_, name,
                          [](const Attribute& a, std::string_view b) { return a.name < b; });
}

const std::string_view* XMLNode::Find(std::string_view name) const {
  if (many_ != nullptr) {
    const auto found = many_->find(name);
    return found == many_->end() ? nullptr : &found->second;
  }
  const Attribute* const found = PlaceOf(name);
  return found == few_ + fewCount_ || found->name != name ? nullptr : &found->value;
}

std::string_view XMLNode::GetAttribute(std::string_view name) const {
  const std::string_view* const value = Find(name);
  return value == nullptr ? std::string_view() : *value;
}

void XMLNode::SetAttribute(std::string_view name, std::string_view value) {
  const std::string_view kept = arena_->Keep(value);
  if (many_ == nullptr && fewCount_ < FEW) {
    SetFew(name, kept);
    return;
  }
  if (const std::string_view* const found = Find(name)) {
    *const_cast<std::string_view*>(found) = kept;
    return;
  }
  if (many_ == nullptr) {
    auto all = std::make_unique<AttributeMap>();
    for (const Attribute& each : std::span(few_, fewCount_)) all->emplace(each.name, each.value);
    many_ = std::move(all);
    fewCount_ = 0;
  }
  many_->emplace(arena_->Keep(name), kept);
}

void XMLNode::SetFew(std::string_view name, std::string_view kept) {
  Attribute* place = PlaceOf(name);
  if (place != few_ + fewCount_ && place->name == name) {
    place->value = kept;
    return;
  }
  const std::ptrdiff_t index = place - few_;
  Grow(*arena_, few_, fewCount_, fewCapacity_, std::uint32_t{2});
  place = few_ + index;
  std::move_backward(place, few_ + fewCount_, few_ + fewCount_ + 1);
  *place = {arena_->Keep(name), kept};
  ++fewCount_;
}

std::size_t XMLNode::GetAttributeCount() const {
  return fewCount_ + (many_ == nullptr ? 0 : many_->size());
}

std::map<std::string, std::string> XMLNode::GetAttributes() const {
  std::map<std::string, std::string> all;
  ForEachAttribute([&all](std::string_view name, std::string_view value) {
    all.emplace_hint(all.end(), name, value);
  });
  return all;
}

void XMLNode::AddChild(const Handle& child) {
  Grow(*arena_, children_, childCount_, childCapacity_, std::size_t{2});
  std::construct_at(children_ + childCount_, child);
  ++childCount_;
}

XMLNode::Handle XMLNode::FindChild(std::string_view name, std::size_t index) const {
  for (const Handle& child : GetChildren()) {
    if (child->name_ == name && index-- == 0) return child;
  }
  return nullptr;
}

void XMLNode::Done() {
  const char* const end = reinterpret_cast<const char*>(children_ + childCapacity_);
  const std::size_t spare = (childCapacity_ - childCount_) * sizeof(Handle);
  if (children_ != nullptr && arena_->GiveBack(end, spare)) childCapacity_ = childCount_;
}

}  // namespace shr
