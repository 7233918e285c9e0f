// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A tree is many small things that come and go together. They are taken from one arena, and what
// lies there and has no handle is given back with it without a visit. First touches of fresh pages
// are what costs most in large trees, so that small is fast: a node is linked to its kin by plain
// pointers, and its handle with all that handles need, its family, is made when somebody asks for
// it. Handles are made from above: a node has one only if its parent has, or had while it lived.

#include "shared/xml/XMLNode.h"

#include <algorithm>
#include <bit>
#include <mutex>
#include <vector>

#include "shared/xml/XMLArena.h"
#include "shared/xml/XMLNodeBuilding.h"

namespace shr {
namespace {

/// Attributes up to this number are kept in a sorted array.
constexpr unsigned int FEW = 16;

static_assert(sizeof(XMLNode) == 80, "as the header tells");

/// Like `<`, without a call: names are short.
bool IsLess(std::string_view a, std::string_view b) {
  const std::size_t size = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < size; ++i) {
    if (a[i] != b[i]) return static_cast<unsigned char>(a[i]) < static_cast<unsigned char>(b[i]);
  }
  return a.size() < b.size();
}

}  // namespace

struct XMLNode::AttributeMap {
  using Pair = std::pair<const std::string_view, std::string_view>;

  explicit AttributeMap(XMLArena& arena) : map(XMLArenaAllocator<Pair, false>(&arena)) {}

  std::map<std::string_view, std::string_view, std::less<>, XMLArenaAllocator<Pair, false>> map;
};

// Families.

struct XMLNode::Family : std::enable_shared_from_this<Family> {
  Family(XMLArena& itsArena, const std::shared_ptr<Family>& itsParent)
      : arena(itsArena), parent(itsParent) {}
  ~Family();
  Family(const Family&) = delete;
  Family& operator=(const Family&) = delete;

  XMLArena& arena;
  std::weak_ptr<Family> parent;
  Handle* children = nullptr;
  std::size_t count = 0;
  std::size_t capacity = 0;
  std::atomic<const XMLNode*> lastChild = nullptr;  ///< The last one that has its handle.
};

XMLNode::Family::~Family() {
  if (count == 0) return;
  // Who goes together with a node that is being released hands its children over to that.
  thread_local std::vector<std::span<Handle>>* waiting = nullptr;
  if (waiting != nullptr) {
    waiting->emplace_back(children, count);
    return;
  }
  std::vector<std::span<Handle>> mine = {{children, count}};
  waiting = &mine;
  while (!mine.empty()) {
    const std::span<Handle> next = mine.back();
    mine.pop_back();
    std::destroy(next.begin(), next.end());
  }
  waiting = nullptr;
}

XMLNode::Handle XMLNode::MakeHandle(XMLArena& arena, XMLNode& node,
                                    const std::shared_ptr<Family>& parent) {
  auto family =
      std::allocate_shared<Family>(XMLArenaAllocator<Family, true>(&arena), arena, parent);
  node.family_.store(family.get(), std::memory_order_release);
  return Handle(std::move(family), &node);
}

void XMLNode::MakeChildrenHandles(Family& family) const {
  const std::scoped_lock lock(family.arena.GetMutex());
  const XMLNode* const last = family.lastChild.load(std::memory_order_relaxed);
  if (last == lastChild_) return;
  XMLNode* const first = (last == nullptr ? lastChild_ : last)->next_;
  std::size_t count = family.count + 1;
  for (const XMLNode* child = first; child != lastChild_; child = child->next_) ++count;
  if (count > family.capacity) {
    // Exactly what is needed first, for most nodes get no more children.
    const std::size_t capacity = std::max(count, 2 * family.capacity);
    auto* const larger =
        static_cast<Handle*>(family.arena.Take(capacity * sizeof(Handle), alignof(Handle)));
    std::uninitialized_move_n(family.children, family.count, larger);
    std::destroy_n(family.children, family.count);
    family.children = larger;
    family.capacity = capacity;
  }
  const std::shared_ptr<Family> self = family.shared_from_this();
  for (XMLNode* child = first; family.count < count; child = child->next_) {
    std::construct_at(family.children + family.count, MakeHandle(family.arena, *child, self));
    ++family.count;
    family.lastChild.store(child, std::memory_order_release);
  }
}

XMLNode::Family& XMLNode::GetFamily() const {
  if (Family* const family = family_.load(std::memory_order_acquire)) return *family;
  std::vector<const XMLNode*> above;
  do {
    above.push_back(above.empty() ? parent_ : above.back()->parent_);
  } while (above.back()->family_.load(std::memory_order_acquire) == nullptr);
  for (; !above.empty(); above.pop_back()) above.back()->GetChildren();
  return *family_.load(std::memory_order_acquire);
}

XMLArena& XMLNode::GetArena() const {
  return GetFamily().arena;
}

XMLNode::Handle XMLNode::GetHandle() const {
  return Handle(GetFamily().shared_from_this(), const_cast<XMLNode*>(this));
}

// Nodes.

XMLNode::Handle XMLNode::MakeRoot(std::shared_ptr<XMLBlocks> blocks) {
  XMLArena* const arena = XMLArena::Make(std::move(blocks));
  // A user while the node is made, so that the arena goes where that fails.
  arena->AddUser();
  const std::unique_ptr<XMLArena, void (*)(XMLArena*)> user(
      arena, [](XMLArena* its) { its->RemoveUser(); });
  return MakeHandle(*arena, *Make(*arena, nullptr), nullptr);
}

XMLNode::Handle XMLNode::Factory() {
  return MakeRoot(nullptr);
}

XMLNode::Handle XMLNode::Factory(std::string_view name) {
  Handle node = Factory();
  node->SetName(name);
  return node;
}

XMLNode::Handle XMLNode::Factory(const Handle& parent) {
  Make(parent->GetArena(), parent.get());
  return parent->GetChildren().back();
}

XMLNode::~XMLNode() = default;

// Name and value.

void XMLNode::SetName(std::string_view name) {
  SetName(GetArena(), name);
}

void XMLNode::SetValue(std::string_view value) {
  // The new one may be part of the old one.
  const std::string_view kept = GetArena().Keep(value);
  valueSize_ = 0;
  hasValueGrown_ = 0;
  value_ = const_cast<char*>(kept.data());
  valueSize_ = kept.size() & SIZE_BITS;
}

void XMLNode::AppendValue(std::string_view text) {
  AppendValue(GetArena(), text);
}

void XMLNode::AppendMore(XMLArena& arena, const std::string_view& text) {
  if (text.empty()) return;
  const std::size_t size = valueSize_;
  const std::size_t needed = size + text.size();
  const bool hasRoom =
      hasValueGrown_ ? needed <= std::bit_ceil(size) : arena.ExtendText(value_ + size, text.size());
  if (!hasRoom) {
    char* const larger = arena.TakeText(std::bit_ceil(needed));
    XMLArena::Copy({value_, size}, larger);
    value_ = larger;
    hasValueGrown_ = 1;
  }
  XMLArena::Copy(text, value_ + size);
  valueSize_ = needed & SIZE_BITS;
}

// Attributes.

XMLNode::Attribute* XMLNode::PlaceOf(std::string_view name) const {
  return std::lower_bound(few_, few_ + fewCount_, name,
                          [](const Attribute& a, std::string_view b) { return IsLess(a.name, b); });
}

const std::string_view* XMLNode::Find(std::string_view name) const {
  if (fewCapacity_ == MANY) {
    const auto found = many_->map.find(name);
    return found == many_->map.end() ? nullptr : &found->second;
  }
  const Attribute* const found = PlaceOf(name);
  return found == few_ + fewCount_ || found->name != name ? nullptr : &found->value;
}

std::string_view XMLNode::GetAttribute(std::string_view name) const {
  const std::string_view* const value = Find(name);
  return value == nullptr ? std::string_view() : *value;
}

void XMLNode::SetAttribute(std::string_view name, std::string_view value) {
  XMLArena& arena = GetArena();
  SetKeptAttribute(arena, name, arena.Keep(value));
}

void XMLNode::SetFew(XMLArena& arena, const std::string_view& name, const std::string_view& kept) {
  const unsigned int count = fewCount_;
  Attribute* place = few_ + count;
  if (count > 0 && !IsLess(place[-1].name, name)) {
    place = PlaceOf(name);
    if (place->name == name) {
      place->value = kept;
      return;
    }
  }
  if (count == FEW) {
    SetMany(arena, name, kept);
    return;
  }
  if (count == fewCapacity_) {
    // The attributes of an element come one after the other, so that there mostly is room behind.
    if (count > 0 && arena.ExtendRecords(few_ + count, sizeof(Attribute))) {
      fewCapacity_ = (count + 1) & 255;
    } else {
      const unsigned int capacity = std::clamp(2 * count, 1u, FEW);
      auto* const larger =
          static_cast<Attribute*>(arena.Take(capacity * sizeof(Attribute), alignof(Attribute)));
      std::uninitialized_copy_n(few_, count, larger);
      place = larger + (place - few_);
      few_ = larger;
      fewCapacity_ = capacity & 255;
    }
  }
  const Attribute attribute{arena.Keep(name), kept};
  for (Attribute* each = few_ + count; each != place; --each) *each = each[-1];
  std::construct_at(place, attribute);
  fewCount_ = (count + 1) & 255;
}

void XMLNode::SetMany(XMLArena& arena, std::string_view name, std::string_view kept) {
  if (fewCapacity_ != MANY) {
    auto* const all =
        new (arena.Take(sizeof(AttributeMap), alignof(AttributeMap))) AttributeMap(arena);
    for (const Attribute& each : std::span(few_, FEW)) all->map.emplace(each.name, each.value);
    many_ = all;
    fewCount_ = 0;
    fewCapacity_ = MANY;
  }
  const auto found = many_->map.find(name);
  if (found != many_->map.end()) {
    found->second = kept;
  } else {
    many_->map.emplace(arena.Keep(name), kept);
  }
}

std::size_t XMLNode::GetAttributeCount() const {
  return fewCapacity_ == MANY ? many_->map.size() : fewCount_;
}

std::map<std::string, std::string> XMLNode::GetAttributes() const {
  std::map<std::string, std::string> all;
  ForEachAttribute([&all](std::string_view name, std::string_view value) {
    all.emplace_hint(all.end(), name, value);
  });
  return all;
}

void XMLNode::VisitMany(void (*visit)(void*, std::string_view, std::string_view),
                        void* data) const {
  for (const auto& [name, value] : many_->map) visit(data, name, value);
}

// Kin.

std::span<const XMLNode::Handle> XMLNode::GetChildren() const {
  if (lastChild_ == nullptr) return {};
  Family& family = GetFamily();
  if (family.lastChild.load(std::memory_order_acquire) != lastChild_) MakeChildrenHandles(family);
  return {family.children, family.count};
}

XMLNode::Handle XMLNode::FindChild(std::string_view name, std::size_t index) const {
  if (lastChild_ == nullptr) return nullptr;
  std::size_t position = 0;
  const XMLNode* child = lastChild_;
  do {
    child = child->next_;
    if (child->GetName() == name && index-- == 0) return GetChildren()[position];
    ++position;
  } while (child != lastChild_);
  return nullptr;
}

XMLNode::Handle XMLNode::GetParent() const {
  std::shared_ptr<Family> parent = GetFamily().parent.lock();
  return parent == nullptr ? nullptr : Handle(std::move(parent), parent_);
}

void XMLNode::Done() {
  Family& family = GetFamily();
  const Handle* const end = family.children + family.capacity;
  const std::size_t spare = (family.capacity - family.count) * sizeof(Handle);
  if (spare > 0 && family.arena.GiveRecordsBack(end, spare)) family.capacity = family.count;
}

}  // namespace shr
