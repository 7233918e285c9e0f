// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The memory of a tree of `XMLNode`, for shared/xml/XMLNode.cpp only: taken in large blocks, given
/// back when the last node is gone.
///
///     XMLArena* const arena = XMLArena::Make();       // has no users yet
///     arena->AddUser();
///     char* const text = static_cast<char*>(arena->Take(5, 1));
///     arena->RemoveUser();                            // the last one: all memory goes
///
/// Threads: users come and go on any thread; memory is taken by one at a time.

#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace shr {

class XMLArena {
public:
  static XMLArena* Make() { return new XMLArena; }

  void AddUser() noexcept { users_.fetch_add(1, std::memory_order_relaxed); }
  void RemoveUser() noexcept {
    if (users_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }

  /// Returns memory for `size` bytes. Requires: `alignment` is a power of two up to 16.
  void* Take(std::size_t size, std::size_t alignment) {
    const std::size_t padding = -reinterpret_cast<std::uintptr_t>(next_) & (alignment - 1);
    if (padding + size > static_cast<std::size_t>(end_ - next_)) return TakeFromNewBlock(size);
    char* const taken = next_ + padding;
    next_ = taken + size;
    return taken;
  }

  /// Returns a copy of a text.
  std::string_view Keep(std::string_view text) {
    if (text.empty()) return {};
    char* const copy = static_cast<char*>(Take(text.size(), 1));
    std::memcpy(copy, text.data(), text.size());
    return {copy, text.size()};
  }

  /// Takes back the last `size` bytes before `end`; returns false where others were taken since.
  bool GiveBack(const char* end, std::size_t size) noexcept {
    if (end != next_) return false;
    next_ -= size;
    return true;
  }

private:
  static constexpr std::size_t FIRST_BLOCK = 512;
  static constexpr std::size_t LARGEST_BLOCK = 1024 * 1024;

  XMLArena() = default;
  ~XMLArena() = default;

  void* TakeFromNewBlock(std::size_t size) {
    // What is large by itself gets a block of its own, and the one in use stays.
    if (size > blockSize_ / 4) {
      blocks_.push_back(std::make_unique_for_overwrite<char[]>(size));
      return blocks_.back().get();
    }
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(blockSize_));
    next_ = blocks_.back().get();
    end_ = next_ + blockSize_;
    blockSize_ = std::min(blockSize_ * 2, LARGEST_BLOCK);
    char* const taken = next_;
    next_ += size;
    return taken;
  }

  std::atomic<std::size_t> users_ = 0;
  char* next_ = nullptr;
  char* end_ = nullptr;
  std::size_t blockSize_ = FIRST_BLOCK;
  std::vector<std::unique_ptr<char[]>> blocks_;
};

/// Allocates what a handle needs beside its node; each allocation is a user of the arena.
template <typename T>
class XMLArenaAllocator {
public:
  using value_type = T;

  explicit XMLArenaAllocator(XMLArena* arena) noexcept : arena_(arena) {}
  template <typename U>
  XMLArenaAllocator(const XMLArenaAllocator<U>& other) noexcept : arena_(other.GetArena()) {}

  T* allocate(std::size_t count) {
    T* const memory = static_cast<T*>(arena_->Take(count * sizeof(T), alignof(T)));
    arena_->AddUser();
    return memory;
  }
  void deallocate(T*, std::size_t) noexcept { arena_->RemoveUser(); }

  XMLArena* GetArena() const noexcept { return arena_; }
  friend bool operator==(const XMLArenaAllocator& a, const XMLArenaAllocator& b) noexcept {
    return a.arena_ == b.arena_;
  }

private:
  XMLArena* arena_;
};

}  // namespace shr
