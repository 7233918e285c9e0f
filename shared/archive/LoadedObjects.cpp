// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The end of what an archive loaded.
//
// Handles are counted, so objects that hold each other never end by themselves. Programs whose
// objects do so break these cycles; but a damaged file can make a cycle that no program expects,
// where a reference leads to an object that is still being loaded. So the archive finds out which
// loaded objects keep handles to which. A handle that an object loads may be gone before the object
// is complete, or copied elsewhere: what an object keeps is by how much the count of handles grew
// while it was loaded, without what objects within it keep, and no more than it loaded.
//
// After a load that failed, an object with more handles than complete objects keep is held by the
// program, and so is all that it leads to. Cycles that are not held are deleted object by object,
// with the deleters of their handles disarmed. Without a handle to an object that was being loaded
// there is no cycle, and nothing of this happens.
//
// What the program still holds then, it may let go later without breaking the cycle. So such graphs
// are kept, by references that hold nothing, and looked at again whenever an archive of the same
// thread fails or ends.

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "shared/archive/Archive.h"
#include "shared/archive/ArchiveObjects.h"

namespace shr {
namespace ArchivePrivate {
namespace {

std::atomic<int> watchCount = 0;

struct Watches {
  std::mutex mutex;
  std::vector<DeathWatch*> all;
};

/// Never destroyed, since objects may end after the library's own static ones.
Watches& GetWatches() {
  static Watches& watches = *new Watches;
  return watches;
}

}  // namespace

// The storage of handles.

struct ManagedLoadStorage::Handles {
  std::unordered_map<CTypedObject*, std::shared_ptr<CTypedObject>> byAddress;
  std::unordered_map<CTypedObject*, Sharer> sharers;
};

ManagedLoadStorage::ManagedLoadStorage() : handles_(std::make_unique<Handles>()) {}

ManagedLoadStorage::~ManagedLoadStorage() = default;

void ManagedLoadStorage::Expect(CTypedObject* object, Sharer sharer) {
  handles_->sharers.insert_or_assign(object, sharer);
}

std::shared_ptr<CTypedObject> ManagedLoadStorage::UnmanagedToManaged(CTypedObject* object) {
  if (object == nullptr) return nullptr;
  const auto [found, isNew] = handles_->byAddress.try_emplace(object);
  std::shared_ptr<CTypedObject>& handle = found->second;
  if (handle != nullptr) return handle;
  const auto sharer = handles_->sharers.find(object);
  if (sharer != handles_->sharers.end()) handle = sharer->second(object);
  if (handle == nullptr) handle = std::shared_ptr<CTypedObject>(object, LoadedDeleter());
  return handle;
}

long ManagedLoadStorage::UseCount(CTypedObject* object) const {
  const auto found = handles_->byAddress.find(object);
  return found != handles_->byAddress.end() ? found->second.use_count() : 0;
}

void ManagedLoadStorage::Reset() noexcept {
  // Destructors that run now may ask for handles again; they find an empty storage.
  std::unordered_map<CTypedObject*, std::shared_ptr<CTypedObject>> released;
  released.swap(handles_->byAddress);
  handles_->sharers.clear();
}

// Objects that end.

DeathWatch::DeathWatch() {
  Watches& watches = GetWatches();
  const std::lock_guard lock(watches.mutex);
  watches.all.push_back(this);
  ++watchCount;
}

DeathWatch::~DeathWatch() {
  Watches& watches = GetWatches();
  const std::lock_guard lock(watches.mutex);
  std::erase(watches.all, this);
  --watchCount;
}

bool DeathWatch::HasSeen(const CTypedObject* object, std::uint32_t index) {
  const std::lock_guard lock(GetWatches().mutex);
  for (const Death& death : unsorted_) seen_.insert_or_assign(death.object, death.loaded);
  unsorted_.clear();
  const auto found = seen_.find(object);
  return found != seen_.end() && found->second > index;
}

void DeathWatch::Note(const CTypedObject* object) noexcept {
  if (watchCount.load(std::memory_order_relaxed) == 0) return;
  Watches& watches = GetWatches();
  const std::lock_guard lock(watches.mutex);
  for (DeathWatch* const watch : watches.all) {
    try {
      watch->unsorted_.push_back({object, watch->loaded_.load(std::memory_order_relaxed)});
    } catch (...) {  // no memory: the object may be destroyed twice, which nothing can help
    }
  }
}

// Cycles of handles.

ObjectTable::Loading::~Loading() {
  std::vector<Note>& notes = objects_.notes_;
  const std::uint32_t holder = std::exchange(objects_.current_, outer_);
  const auto first = notes.begin() + static_cast<std::ptrdiff_t>(firstNote_);
  try {
    std::stable_sort(first, notes.end(),
                     [](const Note& a, const Note& b) { return a.index < b.index; });
    for (auto note = first; note != notes.end();) {
      LoadedObject& held = objects_.loaded_[note->index];
      const long others = note->others;  // as the first handle came
      long loaded = 0;
      for (const auto index = note->index; note != notes.end() && note->index == index; ++note) {
        ++loaded;
      }
      const long grown = storage_.UseCount(held.object) - static_cast<long>(held.kept) - others;
      for (long i = std::min(grown, loaded); i > 0; --i) {
        objects_.kept_.emplace_back(holder,
                                    static_cast<std::uint32_t>(&held - objects_.loaded_.data()));
        ++held.kept;
      }
    }
  } catch (...) {  // no memory: handles that are not known to be kept count as the program's
  }
  notes.erase(notes.begin() + static_cast<std::ptrdiff_t>(firstNote_), notes.end());
}

HandleGraph::HandleGraph(const ObjectTable& objects, ManagedLoadStorage& storage) {
  std::vector<std::uint32_t> memberOf(objects.Loaded().size(), LoadedObject::NONE);
  for (std::size_t i = 0; i < objects.Loaded().size(); ++i) {
    const LoadedObject& loaded = objects.Loaded()[i];
    if (loaded.owner != Owner::Handles) continue;
    const auto handle = storage.UnmanagedToManaged(loaded.object);
    LoadedDeleter* const deleter = std::get_deleter<LoadedDeleter>(handle);
    if (deleter == nullptr) continue;
    memberOf[i] = static_cast<std::uint32_t>(members_.size());
    members_.push_back({handle, deleter});
  }
  for (const auto& [from, to] : objects.KeptHandles()) {
    if (memberOf[from] == LoadedObject::NONE || memberOf[to] == LoadedObject::NONE) continue;
    handles_.emplace_back(memberOf[from], memberOf[to]);
  }
}

std::vector<bool> HandleGraph::FindHeld(const std::vector<bool>& isAlive) const {
  std::vector<long> outside(members_.size());
  std::vector<std::vector<std::uint32_t>> leadsTo(members_.size());
  for (std::size_t i = 0; i < members_.size(); ++i) outside[i] = members_[i].handle.use_count();
  for (const auto& [from, to] : handles_) {
    if (!isAlive[from] || !isAlive[to]) continue;
    --outside[to];
    leadsTo[from].push_back(to);
  }
  std::vector<bool> isHeld(members_.size());
  std::vector<std::uint32_t> open;
  const auto hold = [&](std::uint32_t member) {
    if (isHeld[member]) return;
    isHeld[member] = true;
    open.push_back(member);
  };
  for (std::uint32_t i = 0; i < members_.size(); ++i) {
    if (isAlive[i] && outside[i] > 0) hold(i);
  }
  while (!open.empty()) {
    const std::uint32_t member = open.back();
    open.pop_back();
    for (const std::uint32_t next : leadsTo[member]) hold(next);
  }
  return isHeld;
}

std::vector<bool> HandleGraph::FindCyclic(std::vector<bool> isCandidate) const {
  // Those that lead to none of the others go, and so on.
  std::vector<std::uint32_t> outgoing(members_.size());
  std::vector<std::vector<std::uint32_t>> cameFrom(members_.size());
  for (const auto& [from, to] : handles_) {
    if (!isCandidate[from] || !isCandidate[to]) continue;
    ++outgoing[from];
    cameFrom[to].push_back(from);
  }
  std::vector<std::uint32_t> open;
  for (std::uint32_t i = 0; i < members_.size(); ++i) {
    if (isCandidate[i] && outgoing[i] == 0) open.push_back(i);
  }
  while (!open.empty()) {
    const std::uint32_t member = open.back();
    open.pop_back();
    isCandidate[member] = false;
    for (const std::uint32_t from : cameFrom[member]) {
      if (--outgoing[from] == 0) open.push_back(from);
    }
  }
  return isCandidate;
}

bool HandleGraph::Collect() {
  std::vector<bool> isAlive(members_.size());
  bool isAnyAlive = false;
  for (std::size_t i = 0; i < members_.size(); ++i) {
    isAlive[i] = !members_[i].handle.expired();
    isAnyAlive |= isAlive[i];
  }
  if (!isAnyAlive) return false;
  const std::vector<bool> isHeld = FindHeld(isAlive);
  std::vector<bool> isUnheld(members_.size());
  for (std::size_t i = 0; i < members_.size(); ++i) isUnheld[i] = isAlive[i] && !isHeld[i];
  const std::vector<bool> isCyclic = FindCyclic(std::move(isUnheld));
  std::vector<std::shared_ptr<CTypedObject>> cyclic;
  for (std::size_t i = 0; i < members_.size(); ++i) {
    if (isCyclic[i]) cyclic.push_back(members_[i].handle.lock());
  }
  for (std::size_t i = 0; i < members_.size(); ++i) {
    if (isCyclic[i]) members_[i].deleter->isArmed = false;
  }
  for (const auto& handle : cyclic) delete handle.get();
  for (std::size_t i = 0; i < members_.size(); ++i) {
    if (isHeld[i]) return true;
  }
  return false;
}

void CollectLater(HandleGraph* graph) {
  static std::mutex mutex;
  static std::vector<HandleGraph>& kept = *new std::vector<HandleGraph>;
  static std::atomic<std::size_t> count = 0;
  if (graph == nullptr && count.load(std::memory_order_relaxed) == 0) return;
  // Destructors may come back here, so the lock is not held while they run.
  std::vector<HandleGraph> own;
  {
    const std::lock_guard lock(mutex);
    for (std::size_t i = kept.size(); i-- > 0;) {
      if (!kept[i].IsOfThisThread()) continue;
      own.push_back(std::move(kept[i]));
      kept.erase(kept.begin() + static_cast<std::ptrdiff_t>(i));
    }
  }
  std::erase_if(own, [](HandleGraph& older) { return !older.Collect(); });
  if (graph != nullptr) own.push_back(std::move(*graph));
  const std::lock_guard lock(mutex);
  for (HandleGraph& left : own) kept.push_back(std::move(left));
  count.store(kept.size(), std::memory_order_relaxed);
}

}  // namespace ArchivePrivate

using ArchivePrivate::DeathWatch;
using ArchivePrivate::HandleGraph;
using ArchivePrivate::LoadedObject;
using ArchivePrivate::Owner;

std::vector<CTypedObject*> Archive::GetLoadedObjects() const {
  std::vector<CTypedObject*> objects;
  objects.reserve(objects_->Loaded().size());
  for (const LoadedObject& loaded : objects_->Loaded()) objects.push_back(loaded.object);
  return objects;
}

void Archive::DiscardLoaded() noexcept {
  ReleaseLoaded(true, true);
}

void Archive::ReleaseLoaded(bool isDiscarded, bool isFailed) noexcept {
  // Taken out first: destructors that run now may use the archive.
  ArchivePrivate::ObjectTable objects;
  std::swap(objects, *objects_);
  try {
    for (LoadedObject& loaded : objects.Loaded()) {
      // Classes may have asked the storage for handles themselves.
      if (loaded.owner == Owner::Nobody && managed_->UseCount(loaded.object) > 0) {
        loaded.owner = Owner::Handles;
      }
    }
    std::optional<HandleGraph> graph;
    if (isFailed && objects.MayHaveCycles()) graph.emplace(objects, *managed_);
    managed_->Reset();
    for (std::uint32_t i = 0; i < objects.Loaded().size(); ++i) {
      const LoadedObject& loaded = objects.Loaded()[i];
      const bool isUnowned =
          loaded.owner == Owner::Archive || (isDiscarded && loaded.owner == Owner::Nobody);
      if (isUnowned && !objects.HasEnded(i)) delete loaded.object;
    }
    const bool isAnyLeft = graph && graph->Collect();
    ArchivePrivate::CollectLater(isAnyLeft ? &*graph : nullptr);
  } catch (...) {  // no memory to find out more
    managed_->Reset();
  }
}

}  // namespace shr
