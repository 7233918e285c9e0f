// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The numbers, the owners and the ends of the objects in a stream; for shared/archive/ only.
/// Threads: one thread an object.

#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "shared/archive/TypedObject.h"

namespace shr::ArchivePrivate {

class ManagedLoadStorage;

/// Who destroys a loaded object.
enum class Owner : std::uint8_t {
  Nobody,   ///< loaded by plain pointers: the program, or `DiscardLoaded`
  Handles,  ///< shared handles, the storage's own among them
  Archive,  ///< the archive, until the handle that loads it takes it over
  Program,  ///< a handle that is its one owner
};

struct LoadedObject {
  static constexpr std::uint32_t NONE = 0xFFFFFFFF;

  CTypedObject* object;
  Owner owner = Owner::Nobody;
  bool isLoading = true;
  std::uint32_t kept = 0;  ///< handles to it that loaded objects keep
};

/// Sees the objects that end, on any thread, during its life.
class DeathWatch {
public:
  DeathWatch();
  ~DeathWatch();
  DeathWatch(const DeathWatch&) = delete;
  DeathWatch& operator=(const DeathWatch&) = delete;

  /// Tells how many objects have been loaded: later ones may stand where one has ended.
  void SetLoaded(std::uint32_t count) noexcept { loaded_.store(count, std::memory_order_relaxed); }
  /// Returns whether the object that was loaded as number `index`, from 0, has ended.
  bool HasSeen(const CTypedObject* object, std::uint32_t index);
  /// Called by the destructor of every object.
  static void Note(const CTypedObject* object) noexcept;

private:
  struct Death {
    const CTypedObject* object;
    std::uint32_t loaded;  ///< how many objects had been loaded then
  };
  std::atomic<std::uint32_t> loaded_ = 0;
  std::vector<Death> unsorted_;  ///< cheap to note; entered below when someone asks
  std::unordered_map<const CTypedObject*, std::uint32_t> seen_;  ///< the last one at each address
};

/// Leads from objects to their numbers and back. Null always has number 0.
class ObjectTable {
public:
  void Reset() noexcept {
    numbers_.clear();
    sparse_.clear();
    loaded_.clear();
    kept_.clear();
    notes_.clear();
    dense_ = 0;
    current_ = LoadedObject::NONE;
    mayHaveCycles_ = false;
    watch_.reset();
  }

  struct Number {
    std::uint32_t value;
    bool isNew;
  };

  /// Returns the number of an object to be stored; a new object gets the next one, from 1 on.
  Number NumberOf(const CTypedObject* object) {
    if (object == nullptr) return {0, false};
    const auto next = static_cast<std::uint32_t>(numbers_.size() + 1);
    const auto [found, isNew] = numbers_.try_emplace(object, next);
    return {found->second, isNew};
  }

  /// Returns the index of the loaded object of a number other than 0, or NONE.
  std::uint32_t IndexOf(std::uint32_t number) const {
    if (number <= dense_) return number - 1;
    const auto found = sparse_.find(number);
    return found == sparse_.end() ? LoadedObject::NONE : found->second;
  }

  /// Enters a new object under its number and returns its index.
  std::uint32_t Add(std::uint32_t number, CTypedObject* object) {
    const auto index = static_cast<std::uint32_t>(loaded_.size());
    const bool isNext = number == index + 1 && dense_ == index;
    loaded_.push_back({object});
    if (isNext) {
      ++dense_;
    } else {
      sparse_.emplace(number, index);
    }
    return index;
  }

  /// Makes room for one more object, so that none is lost for want of memory to enter it.
  void Reserve() {
    if (loaded_.size() == loaded_.capacity()) loaded_.reserve(loaded_.size() * 2 + 8);
  }

  /// Watches over the objects: the program may destroy those that nobody owns before the archive
  /// does.
  void Watch() {
    if (watch_ == nullptr) watch_ = std::make_unique<DeathWatch>();
    watch_->SetLoaded(static_cast<std::uint32_t>(loaded_.size()));
  }
  bool HasEnded(std::uint32_t index) {
    return watch_ != nullptr && watch_->HasSeen(loaded_[index].object, index);
  }

  LoadedObject& At(std::uint32_t index) { return loaded_[index]; }
  std::vector<LoadedObject>& Loaded() { return loaded_; }
  const std::vector<LoadedObject>& Loaded() const { return loaded_; }

  /// An object that is being loaded, for as long as it is.
  class Loading {
  public:
    Loading(ObjectTable& objects, ManagedLoadStorage& storage, std::uint32_t index)
        : objects_(objects),
          storage_(storage),
          outer_(std::exchange(objects.current_, index)),
          firstNote_(objects.notes_.size()) {}
    ~Loading();
    Loading(const Loading&) = delete;
    Loading& operator=(const Loading&) = delete;

  private:
    ObjectTable& objects_;
    ManagedLoadStorage& storage_;
    std::uint32_t outer_;
    std::size_t firstNote_;
  };

  /// Notes that the object that is being loaded is about to get a shared handle to `index`, which
  /// has `useCount` handles.
  void NoteHandle(std::uint32_t index, long useCount) {
    if (current_ == LoadedObject::NONE) return;
    notes_.push_back({index, useCount - static_cast<long>(loaded_[index].kept)});
    if (loaded_[index].isLoading) mayHaveCycles_ = true;
  }
  /// False when the handles noted surely form no cycle: each cycle leads back to an object that was
  /// being loaded.
  bool MayHaveCycles() const noexcept { return mayHaveCycles_; }
  using Edge = std::pair<std::uint32_t, std::uint32_t>;  ///< the holder, and what it holds
  /// Returns the handles that objects kept when they had been loaded.
  const std::vector<Edge>& KeptHandles() const { return kept_; }

private:
  std::unordered_map<const CTypedObject*, std::uint32_t> numbers_;
  std::vector<LoadedObject> loaded_;
  std::size_t dense_ = 0;  ///< how many of the first objects have the numbers 1, 2, 3, ...
  /// The indices of objects with other numbers, which only damaged or foreign streams have.
  std::unordered_map<std::uint32_t, std::uint32_t> sparse_;
  struct Note {
    std::uint32_t index;
    long others;  ///< handles to it before, without those that objects are known to keep
  };
  std::vector<Note> notes_;  ///< of the objects that are being loaded, innermost last
  std::vector<Edge> kept_;
  std::uint32_t current_ = LoadedObject::NONE;
  bool mayHaveCycles_ = false;
  std::unique_ptr<DeathWatch> watch_;
};

/// Loaded objects that hold handles to each other, as far as the archive saw these handles. A
/// damaged file can make cycles of them that no program means to break; they are found when nobody
/// else holds them.
class HandleGraph {
public:
  /// Takes note of the objects of a table that handles own. To be called while these hold them.
  explicit HandleGraph(const ObjectTable& objects, ManagedLoadStorage& storage);
  HandleGraph(HandleGraph&&) = default;
  HandleGraph& operator=(HandleGraph&&) = default;

  /// Destroys the objects that only hold each other, and returns whether any are left.
  bool Collect();
  bool IsOfThisThread() const noexcept { return thread_ == std::this_thread::get_id(); }

private:
  struct Member {
    std::weak_ptr<CTypedObject> handle;
    LoadedDeleter* deleter;
  };
  /// Returns which living objects are held, directly or through others, from elsewhere.
  std::vector<bool> FindHeld(const std::vector<bool>& isAlive) const;

  /// Returns which of the objects given are on cycles of these, or between two cycles.
  std::vector<bool> FindCyclic(std::vector<bool> isCandidate) const;

  std::vector<Member> members_;
  std::vector<ObjectTable::Edge> handles_;  ///< between members
  std::thread::id thread_ = std::this_thread::get_id();
};

/// Collects what this thread's archives left because the program still held it, and keeps `graph`,
/// if any, for later when it still does.
void CollectLater(HandleGraph* graph);

}  // namespace shr::ArchivePrivate
