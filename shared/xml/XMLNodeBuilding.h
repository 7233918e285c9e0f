// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What is done for every element of a file when a tree of `XMLNode` is built, for the sources of
/// shared/xml only: bodies of private members that become part of their callers.
///
/// Threads: as those of `XMLNode`.

#pragma once

#include <cstring>
#include <new>

#include "shared/xml/XMLArena.h"
#include "shared/xml/XMLNode.h"

namespace shr {

inline XMLNode* XMLNode::Make(XMLArena& arena, XMLNode* parent) {
  auto* const node = new (arena.Take(sizeof(XMLNode), alignof(XMLNode))) XMLNode;
  if (parent == nullptr) return node;
  XMLNode* const last = parent->lastChild_;
  node->parent_ = parent;
  node->next_ = last == nullptr ? node : last->next_;
  (last == nullptr ? node : last)->next_ = node;
  parent->lastChild_ = node;
  return node;
}

inline void XMLNode::SetName(XMLArena& arena, std::string_view name) {
  const std::string_view kept = arena.Keep(name);
  name_ = kept.data();
  nameSize_ = kept.size() & SIZE_BITS;
}

inline void XMLNode::AppendValue(XMLArena& arena, std::string_view text) {
  if (valueSize_ > 0) {
    AppendMore(arena, text);
    return;
  }
  // Exactly what is needed first, for most nodes have one piece of text.
  value_ = const_cast<char*>(arena.Keep(text).data());
  valueSize_ = text.size() & SIZE_BITS;
  hasValueGrown_ = 0;
}

inline void XMLNode::SetKeptAttribute(XMLArena& arena, std::string_view name,
                                      std::string_view kept) {
  if (fewCapacity_ == MANY) {
    SetMany(arena, name, kept);
  } else {
    SetFew(arena, name, kept);
  }
}

}  // namespace shr
