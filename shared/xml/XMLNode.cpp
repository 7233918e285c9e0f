// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/xml/XMLNode.h"

#include <algorithm>

namespace shr {
namespace {

/// Attributes up to this number are kept in a sorted vector.
constexpr std::size_t FEW = 16;

}  // namespace

XMLNode::Handle XMLNode::Factory() {
  return std::make_shared<XMLNode>(Key());
}

XMLNode::Handle XMLNode::Factory(std::string_view name) {
  Handle node = Factory();
  node->name_ = name;
  return node;
}

XMLNode::Handle XMLNode::Factory(const Handle& parent) {
  Handle node = Factory();
  node->parent_ = parent;
  parent->children_.push_back(node);
  return node;
}

XMLNode::~XMLNode() {
  // What would be destroyed with this node hands its children over first.
  std::vector<Handle> waiting = std::move(children_);
  while (!waiting.empty()) {
    const Handle node = std::move(waiting.back());
    waiting.pop_back();
    if (node.use_count() > 1 || node->children_.empty()) continue;
    std::vector<Handle> children = std::move(node->children_);
    std::move(children.begin(), children.end(), std::back_inserter(waiting));
  }
}

std::vector<XMLNode::Attribute>::const_iterator XMLNode::PlaceOf(std::string_view name) const {
  return std::lower_bound(few_.begin(), few_.end(), name,
                          [](const Attribute& a, std::string_view b) { return a.first < b; });
}

const std::string* XMLNode::FindAttribute(std::string_view name) const {
  if (many_ != nullptr) {
    const auto found = many_->find(name);
    return found == many_->end() ? nullptr : &found->second;
  }
  const auto found = PlaceOf(name);
  return found == few_.end() || found->first != name ? nullptr : &found->second;
}

std::string_view XMLNode::GetAttribute(std::string_view name) const {
  const std::string* const value = FindAttribute(name);
  return value == nullptr ? std::string_view() : std::string_view(*value);
}

void XMLNode::SetAttribute(std::string_view name, std::string value) {
  if (many_ != nullptr) {
    many_->insert_or_assign(std::string(name), std::move(value));
    return;
  }
  const auto place = few_.begin() + (PlaceOf(name) - few_.cbegin());
  if (place != few_.end() && place->first == name) {
    place->second = std::move(value);
    return;
  }
  if (few_.size() < FEW) {
    few_.emplace(place, name, std::move(value));
    return;
  }
  auto all = std::make_unique<AttributeMap>(few_.begin(), few_.end());
  all->emplace(name, std::move(value));
  many_ = std::move(all);
  few_.clear();
}

std::size_t XMLNode::GetAttributeCount() const {
  return few_.size() + (many_ == nullptr ? 0 : many_->size());
}

std::map<std::string, std::string> XMLNode::GetAttributes() const {
  std::map<std::string, std::string> all;
  ForEachAttribute([&all](const std::string& name, const std::string& value) {
    all.emplace_hint(all.end(), name, value);
  });
  return all;
}

XMLNode::Handle XMLNode::FindChild(std::string_view name, std::size_t index) const {
  for (const Handle& child : children_) {
    if (child->name_ == name && index-- == 0) return child;
  }
  return nullptr;
}

void XMLNode::Done() {
  children_.shrink_to_fit();
  value_.shrink_to_fit();
}

}  // namespace shr
