// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `FaceSet`, the face that a request gets and those that it falls back on, remembered for each
/// character, and the measures of shaped texts.
///
///     const std::shared_ptr<FaceSet> faces = FaceSet::Get(request);
///     const std::shared_ptr<CFaceInfo>& face = faces->Find(text.substr(0, ClusterLength(text)));
///
/// A cluster (shared/fonts/TextCharacters.h) is shown by the first face that has all of its
/// characters: the requested one, then the installed outline faces in the order in which the system
/// falls back on them (shared/platform/FontFallback.h), then the stroked text face; when there is
/// none, by the first that has its first character; when there is none either, by the requested
/// face.
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "shared/fonts/FaceInfo.h"
#include "shared/fonts/TextLayout.h"
#include "shared/geometry/Box2.h"

namespace shr {

class FaceSet {
public:
  /// Returns the set of a request; equal requests share one until the faces are collected anew.
  static std::shared_ptr<FaceSet> Get(const TextFace& request);

  explicit FaceSet(const TextFace& request);
  ~FaceSet();

  /// Returns the face that the request itself gets.
  const std::shared_ptr<CFaceInfo>& GetPrimary() const noexcept { return primary_; }

  /// Returns the face for a cluster. Cost: a look-up for a single character that was met before.
  /// Lifetime: as the set.
  const std::shared_ptr<CFaceInfo>& Find(std::wstring_view cluster);

  /// What is remembered of a text that had to be shaped.
  struct Measure {
    double advance = 0;
    Box2d ink;
  };
  /// Returns false, `measure` unchanged, for a text that is not remembered.
  bool Recall(std::wstring_view text, Measure& measure);
  /// Remembers a text; long ones are not kept, and all go when there are many.
  void Remember(std::wstring_view text, const Measure& measure);

private:
  /// Lets maps of texts be searched without making a key.
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::wstring_view text) const {
      return std::hash<std::wstring_view>()(text);
    }
  };
  template <typename Value>
  using TextMap = std::unordered_map<std::wstring, Value, TextHash, std::equal_to<>>;

  using FaceNumber = std::uint16_t;
  struct Page;

  const std::shared_ptr<CFaceInfo>& FaceOf(FaceNumber number) const {
    return number == 0 ? primary_ : others_[number - 1u];
  }
  Page& PageOf(char32_t character);
  FaceNumber FindCharacter(char32_t character);
  FaceNumber FindCluster(std::wstring_view cluster, char32_t base);
  FaceNumber Search(std::wstring_view cluster);
  void CollectOthers();

  const TextFace request_;
  const std::shared_ptr<CFaceInfo> primary_;  // number 0
  std::mutex mutex_;
  std::vector<std::shared_ptr<CFaceInfo>> others_;  // from number 1 on, as they are asked
  bool hasOthers_ = false;                          // they are collected when first needed
  std::unordered_map<char32_t, std::unique_ptr<Page>> pages_;
  char32_t lastNumber_ = 0;  // of the page used last, so that runs of one script look it up once
  Page* lastPage_ = nullptr;
  TextMap<FaceNumber> clusters_;
  TextMap<Measure> measures_;
};

}  // namespace shr
