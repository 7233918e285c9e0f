// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CSystemFaceInfo`, the faces of the process: the installed outline fonts and the symbol sets,
/// and which of them serves a request best.
///
///     CSystemFaceInfo& faces = CSystemFaceInfo::Instance();
///     const int index = faces.Match(L"Arial", 700, 0, 0, 0, MATCH_NAME | MATCH_WEIGHT,
///                                   faces.GetFontMatcherFaceTypeFlags());
///     const std::shared_ptr<CFaceInfo> face = faces.GetFaceInfo(index);
///
/// Arial, Courier New and Times New Roman are always among the faces: where they are not installed
/// the family that the system takes for them stands in under their name (docs/platforms.md). On a
/// machine without any font the stroked text face serves.
///
/// The first use lists the fonts, so it takes some milliseconds (on Linux longer after fonts were
/// installed, whose files are then opened once); programs that never ask for a face pay nothing.
/// Threads: all functions may be called on any thread; one critical section guards them.

#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "shared/Export.h"
#include "shared/Singleton.h"
#include "shared/fonts/FaceInfo.h"
#include "shared/text/GString.h"

namespace shr {

/// What of a request counts, bits of the flags of `Match`.
inline constexpr int MATCH_NAME = 1;
inline constexpr int MATCH_WEIGHT = 2;
inline constexpr int MATCH_ITALIC = 4;
inline constexpr int MATCH_CHARSET = 8;
inline constexpr int MATCH_PITCH = 16;
inline constexpr int MATCH_FAMILY = 32;

/// The score of a face that has all that is asked.
inline constexpr int PERFECT_MATCH = 1500;

/// Returned instead of the index of a face.
inline constexpr int NO_FACE = -1;

/// The registry of faces.
class SHARED_API CSystemFaceInfo : public Singleton<CSystemFaceInfo> {
public:
  /// Returns the index of the face that serves the request best. Arguments: weight 100 to 1000,
  /// italic 0 or not, charset as in shared/platform/Fonts.h, `pitchAndFamily` with bit 1 set for a
  /// variable pitch, `flags` of MATCH_NAME and its kin, `typeMask` of the kinds of faces to
  /// consider.
  ///
  /// An empty name gives the default: the marker face when the pitch counts and is fixed, the text
  /// face otherwise. A face of that name with the perfect score is found by bisection. Otherwise
  /// the highest score wins, of equal ones the default and then the first by name. A request for
  /// which there is no candidate gives the default. `NO_FACE` only when there are no faces at all.
  ///
  /// Cost: equal to the request before: one comparison. Otherwise O(log n) for a perfect match,
  /// O(n) for the rest.
  int Match(std::wstring_view name, long weight, unsigned char italic, unsigned char charset,
            unsigned char pitchAndFamily, int flags, unsigned int typeMask);

  /// Returns the face that `Match` finds, null where that is `NO_FACE`; no `Refresh` comes between.
  std::shared_ptr<CFaceInfo> MatchFace(std::wstring_view name, long weight, unsigned char italic,
                                       unsigned char charset, unsigned char pitchAndFamily,
                                       int flags, unsigned int typeMask);

  /// Returns the index of the first face of that name, of a type in the mask, that scores
  /// `PERFECT_MATCH`; -1 when there is none.
  int CheckForPerfectMatch(std::wstring_view name, long weight, unsigned char italic,
                           unsigned char charset, unsigned char pitchAndFamily, int flags,
                           unsigned int typeMask) const;

  /// Returns how well a face serves a request: a character set served 400, the name (ignoring
  /// case), the pitch and the family 300 each, the weight 100 less 10 for each whole 100 that it
  /// differs, the slant 100. What is not selected in `flags` earns its points always.
  static int CalcMatchValue(const CFaceInfo& face, std::wstring_view name, long weight,
                            unsigned char italic, unsigned char charset,
                            unsigned char pitchAndFamily, int flags);

  /// Returns a face. Errors: an index that is none is an invalid parameter.
  std::shared_ptr<CFaceInfo> GetFaceInfo(int index) const;

  /// Returns all faces in their order.
  std::vector<std::shared_ptr<CFaceInfo>> GetFaces() const;

  /// Returns the number of faces; they are sorted by name, ignoring case.
  int GetFaceCount() const;

  /// Return the faces that serve when nothing better is known.
  int GetDefaultTextFace() const;
  int GetDefaultMarkerFace() const;

  /// The kinds of faces that text and markers take, to be given to `Match`: at first all. Errors:
  /// "Invalid parameter passed to subroutine or function" for a mask of no kind or of unknown ones.
  void SetFontMatcherFaceTypeFlags(unsigned int typeMask);
  unsigned int GetFontMatcherFaceTypeFlags() const;
  void SetMarkerMatcherFaceTypeFlags(unsigned int typeMask);
  unsigned int GetMarkerMatcherFaceTypeFlags() const;

  /// Collects the faces anew: fonts and symbol sets that came or went since. Indices of before are
  /// void; faces that callers hold stay usable. Errors: as the first use; the faces are then those
  /// of before.
  void Refresh();

  /// Returns a number that every `Refresh` changes, for what remembers faces.
  unsigned int GetGeneration() const noexcept { return generation_.load(); }

private:
  friend class Singleton<CSystemFaceInfo>;

  /// A request as the cache keeps it.
  struct Request {
    GString name;
    long weight = 0;
    unsigned char italic = 0, charset = 0, pitchAndFamily = 0;
    int flags = 0;
    unsigned int typeMask = 0;
  };
  /// What scoring reads of a face, all faces in one row.
  struct Key {
    long weight;
    platform::CharsetBits charsets;
    unsigned char italic, pitchAndFamily, type;
  };
  /// A request with all that is the same for every face worked out.
  struct Query;
  using FaceList = std::vector<std::shared_ptr<CFaceInfo>>;

  /// Errors, source "SystemFaceInfo": "Attempt to get a reference DC failed!", "Can't construct
  /// InstalledFontCollection.\nError code = %d", "InstalledFontCollection::GetFamilyCount
  /// failed.\nError code = %d" and "InstalledFontCollection::GetFamilies failed.\nError code = %d",
  /// all on Windows alone.
  CSystemFaceInfo();
  ~CSystemFaceInfo();

  static FaceList Collect();
  static void CollectTrueTypeFaceInfo(FaceList& faces);
  static void CollectSYMSetFaceInfo(FaceList& faces);
  static void SortFaceList(FaceList& faces);
  void Install(FaceList faces);
  void FindDefaults();

  Query MakeQuery(std::wstring_view name, long weight, unsigned char italic, unsigned char charset,
                  unsigned char pitchAndFamily, int flags, unsigned int typeMask) const;
  static Key KeyOf(const CFaceInfo& face);
  static int Score(const Query& query, const Key& key, bool hasName);
  int MatchLocked(std::wstring_view name, const Request& request);
  int FindPerfect(const Query& query) const;
  int FindBest(const Query& query) const;
  int DefaultOf(unsigned char pitchAndFamily, int flags) const;
  bool MatchCachedTypeface(const Request& request, std::wstring_view name) const;
  void CacheTypeface(const Request& request, std::wstring_view name, int index);

  FaceList faces_;
  std::vector<Key> keys_;
  int defaultText_ = NO_FACE;
  int defaultMarker_ = NO_FACE;
  unsigned int fontTypes_ = FACE_ALL_TYPES;
  unsigned int markerTypes_ = FACE_ALL_TYPES;
  Request cached_;
  int cachedIndex_ = NO_FACE;
  bool isCached_ = false;
  std::atomic<unsigned int> generation_{0};
};

template <>
SHARED_API CSystemFaceInfo& Singleton<CSystemFaceInfo>::GetInstance();

}  // namespace shr
