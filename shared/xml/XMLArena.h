// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The memory of a tree of `XMLNode`, for the sources of shared/xml only: taken in large blocks,
/// given back when the last user is gone.
///
///     XMLArena* const arena = XMLArena::Make(nullptr);  // has no users yet
///     arena->AddUser();
///     auto* const places = static_cast<int*>(arena->Take(5 * sizeof(int), alignof(int)));
///     std::string_view name = arena->Keep("name");
///     arena->RemoveUser();                            // the last one: all memory goes
///
/// Records and text lie in blocks of their own, so that what grows at the end of either does so in
/// place while the other is taken from, and text needs no padding.
///
/// Threads: users come and go on any thread; memory is taken by one at a time. Kept blocks are
/// taken and given on any thread.

#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

namespace shr {

/// Blocks of trees that are gone, kept for the next tree: first touches of the pages of fresh ones
/// take longer than scanning into them.
class XMLBlocks {
public:
  struct Block {
    std::unique_ptr<char[]> memory;
    std::size_t size;
  };
  static constexpr std::size_t FIRST_SIZE = 512;
  static constexpr std::size_t LARGEST_SIZE = 16 * 1024 * 1024;

  static Block Make(std::size_t size) {
    return {std::make_unique_for_overwrite<char[]>(size), size};
  }

  /// Returns a block of this size. Requires: it is a power of two times `FIRST_SIZE`.
  Block Take(std::size_t size) {
    {
      const std::scoped_lock lock(mutex_);
      std::vector<Block>& kept = kept_[ClassOf(size)];
      if (!kept.empty()) {
        Block block = std::move(kept.back());
        kept.pop_back();
        keptBytes_ -= size;
        return block;
      }
    }
    return Make(size);
  }

  /// Keeps of the blocks what the limit allows; those of an odd size would hardly be asked for.
  void Give(std::vector<Block>& blocks) noexcept try {
    const std::scoped_lock lock(mutex_);
    for (Block& block : blocks) {
      const std::size_t size = block.size;
      const bool isUsual = std::has_single_bit(size) && size >= FIRST_SIZE && size <= LARGEST_SIZE;
      if (!isUsual || size > limit_ - keptBytes_) continue;
      kept_[ClassOf(size)].push_back(std::move(block));
      keptBytes_ += size;
    }
  } catch (const std::bad_alloc&) {
    // Then no more are kept.
  }

  /// Gives back what is kept, and keeps up to `limit` bytes from now on.
  void Limit(std::size_t limit) {
    const std::scoped_lock lock(mutex_);
    kept_ = {};
    keptBytes_ = 0;
    limit_ = limit;
  }

private:
  static constexpr std::size_t ClassOf(std::size_t size) {
    return static_cast<std::size_t>(std::bit_width(size / FIRST_SIZE) - 1);
  }

  std::mutex mutex_;
  std::array<std::vector<Block>, std::bit_width(LARGEST_SIZE / FIRST_SIZE)> kept_;
  std::size_t keptBytes_ = 0;
  std::size_t limit_ = 0;
};

class XMLArena {
public:
  /// Blocks come from `source` and go back there, where there is one.
  static XMLArena* Make(std::shared_ptr<XMLBlocks> source) {
    return new XMLArena(std::move(source));
  }

  void AddUser() noexcept { users_.fetch_add(1, std::memory_order_relaxed); }
  void RemoveUser() noexcept {
    if (users_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }

  /// Returns memory for records. Requires: `alignment` is a power of two up to 16.
  void* Take(std::size_t size, std::size_t alignment) {
    const std::size_t padding = -reinterpret_cast<std::uintptr_t>(records_.next) & (alignment - 1);
    if (padding + size > records_.Left()) return TakeFromNewBlock(records_, size);
    char* const taken = records_.next + padding;
    records_.next = taken + size;
    return taken;
  }
  /// Adds `size` bytes behind `end`, the end of the records that were taken last; returns false
  /// where others were taken since, or there is no room.
  bool ExtendRecords(const void* end, std::size_t size) noexcept {
    return records_.Extend(end, size);
  }
  /// Takes back the last `size` bytes before `end`; returns false where others were taken since.
  bool GiveRecordsBack(const void* end, std::size_t size) noexcept {
    return records_.GiveBack(end, size);
  }

  /// Returns memory for text.
  char* TakeText(std::size_t size) {
    if (size > text_.Left()) return TakeFromNewBlock(text_, size);
    char* const taken = text_.next;
    text_.next += size;
    return taken;
  }
  /// Like `ExtendRecords`.
  bool ExtendText(const char* end, std::size_t size) noexcept { return text_.Extend(end, size); }
  /// Like `GiveRecordsBack`.
  bool GiveTextBack(const char* end, std::size_t size) noexcept {
    return text_.GiveBack(end, size);
  }
  /// Returns a copy of a text.
  std::string_view Keep(std::string_view text) {
    if (text.empty()) return {};
    char* const copy = TakeText(text.size());
    Copy(text, copy);
    return {copy, text.size()};
  }
  /// Copies text that mostly is short: a call would take longer. Requires: not empty.
  static void Copy(std::string_view text, char* to) noexcept {
    const std::size_t size = text.size();
    if (size > 64) {
      std::memcpy(to, text.data(), size);
    } else if (size >= 16) {
      for (std::size_t i = 0; i + 16 < size; i += 16) std::memcpy(to + i, text.data() + i, 16);
      std::memcpy(to + size - 16, text.data() + size - 16, 16);
    } else if (size >= 8) {
      CopyEnds<8>(text, to);
    } else if (size >= 4) {
      CopyEnds<4>(text, to);
    } else {
      to[0] = text[0];
      to[size / 2] = text[size / 2];
      to[size - 1] = text[size - 1];
    }
  }

  /// Held by those who take memory in calls that may run together.
  std::mutex& GetMutex() noexcept { return mutex_; }

private:
  struct Region {
    std::size_t Left() const noexcept { return static_cast<std::size_t>(end - next); }
    bool Extend(const void* at, std::size_t size) noexcept {
      if (at != next || size > Left()) return false;
      next += size;
      return true;
    }

    bool GiveBack(const void* at, std::size_t size) noexcept {
      if (at != next) return false;
      next -= size;
      return true;
    }

    char* next = nullptr;
    char* end = nullptr;
    std::size_t blockSize = XMLBlocks::FIRST_SIZE;
  };

  /// Copies the first and the last bytes, which may overlap.
  template <std::size_t SIZE>
  static void CopyEnds(std::string_view text, char* to) noexcept {
    char first[SIZE], last[SIZE];
    std::memcpy(first, text.data(), SIZE);
    std::memcpy(last, text.data() + text.size() - SIZE, SIZE);
    std::memcpy(to, first, SIZE);
    std::memcpy(to + text.size() - SIZE, last, SIZE);
  }

  explicit XMLArena(std::shared_ptr<XMLBlocks> source) : source_(std::move(source)) {}
  ~XMLArena() {
    if (source_ != nullptr) source_->Give(blocks_);
  }

  char* TakeFromNewBlock(Region& region, std::size_t size) {
    // What is large by itself gets a block of its own, and the one in use stays.
    if (size > region.blockSize / 4) {
      blocks_.push_back(XMLBlocks::Make(size));
      return blocks_.back().memory.get();
    }
    const std::size_t blockSize = region.blockSize;
    blocks_.push_back(source_ == nullptr ? XMLBlocks::Make(blockSize) : source_->Take(blockSize));
    char* const taken = blocks_.back().memory.get();
    region.next = taken + size;
    region.end = taken + blockSize;
    region.blockSize = std::min(blockSize * 2, XMLBlocks::LARGEST_SIZE);
    return taken;
  }

  std::atomic<std::size_t> users_ = 0;
  Region records_;
  Region text_;
  std::mutex mutex_;
  std::shared_ptr<XMLBlocks> source_;
  std::vector<XMLBlocks::Block> blocks_;
};

/// Allocates from an arena. What is released one by one is a user of it; what goes with it is none.
template <typename T, bool IsUser>
class XMLArenaAllocator {
public:
  using value_type = T;
  template <typename U>
  struct rebind {
    using other = XMLArenaAllocator<U, IsUser>;
  };

  explicit XMLArenaAllocator(XMLArena* arena) noexcept : arena_(arena) {}
  template <typename U>
  XMLArenaAllocator(const XMLArenaAllocator<U, IsUser>& other) noexcept
      : arena_(other.GetArena()) {}

  T* allocate(std::size_t count) {
    T* const memory = static_cast<T*>(arena_->Take(count * sizeof(T), alignof(T)));
    if constexpr (IsUser) arena_->AddUser();
    return memory;
  }
  void deallocate(T*, std::size_t) noexcept {
    if constexpr (IsUser) arena_->RemoveUser();
  }

  XMLArena* GetArena() const noexcept { return arena_; }
  friend bool operator==(const XMLArenaAllocator& a, const XMLArenaAllocator& b) noexcept {
    return a.arena_ == b.arena_;
  }

private:
  XMLArena* arena_;
};

}  // namespace shr
