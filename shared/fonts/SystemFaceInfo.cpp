// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Faces are sorted by name, so that the faces of a requested name are one range, found by
// bisection. What scoring needs of each face besides its name lies in one row of small keys: a
// search of thousands of faces reads those alone and compares no text.

#include "shared/fonts/SystemFaceInfo.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <map>
#include <tuple>
#include <utility>

#include "shared/diagnostics/Logger.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/files/Path.h"
#include "shared/fonts/StrokedFace.h"
#include "shared/fonts/SymbolFaceInfo.h"
#include "shared/fonts/TrueTypeFaceInfo.h"
#include "shared/platform/ForkSafeMutex.h"
#include "shared/text/StringCompare.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"SystemFaceInfo";

// Points of the parts of a request.
constexpr int CHARSET_POINTS = 400;
constexpr int NAME_POINTS = 300;
constexpr int PITCH_POINTS = 300;
constexpr int FAMILY_POINTS = 300;
constexpr int WEIGHT_POINTS = 100;
constexpr int ITALIC_POINTS = 100;
constexpr int WEIGHT_STEP_POINTS = 10;
constexpr int WEIGHT_STEP = 100;

constexpr const wchar_t* DEFAULT_TEXT_NAME = L"Arial";
constexpr const wchar_t* DEFAULT_MARKER_NAME = L"Courier New";
constexpr long REGULAR = 400;

/// A face that programs count on, and its pitch and family.
struct CommonFace {
  const wchar_t* name;
  unsigned char pitchAndFamily;
};
constexpr CommonFace COMMON_FACES[] = {
    {DEFAULT_TEXT_NAME, platform::PITCH_VARIABLE | platform::FAMILY_SWISS},
    {DEFAULT_MARKER_NAME, platform::FAMILY_MODERN},
    {L"Times New Roman", platform::PITCH_VARIABLE | platform::FAMILY_ROMAN},
};

struct RegistryTag;

/// The critical section of the registry.
std::mutex& RegistryMutex() {
  static platform::ForkSafeMutex<std::mutex, RegistryTag> mutex;
  return mutex.Get();
}

/// Returns the points for the weight; differences beyond reason count as large as an int can tell.
int PointsOfWeight(long face, long requested) {
  const long long difference =
      std::llabs(std::clamp<long long>(requested, INT_MIN, INT_MAX) - static_cast<long long>(face));
  return WEIGHT_POINTS - static_cast<int>(difference / WEIGHT_STEP * WEIGHT_STEP_POINTS);
}

/// Raises the error of a listing that the system did not complete.
void CheckStatus(const platform::FontList& list) {
  using platform::FontListStatus;
  switch (list.status) {
    case FontListStatus::Complete:
      return;
    case FontListStatus::NoDevice:
      ThrowErrorImpl(UNIT, __LINE__, L"Attempt to get a reference DC failed!");
    case FontListStatus::NoCollection:
      ThrowErrorImpl(UNIT, __LINE__, L"Can't construct InstalledFontCollection.\nError code = %d",
                     list.code);
    case FontListStatus::NoCount:
      ThrowErrorImpl(UNIT, __LINE__,
                     L"InstalledFontCollection::GetFamilyCount failed.\nError code = %d",
                     list.code);
    case FontListStatus::NoFamilies:
      ThrowErrorImpl(UNIT, __LINE__,
                     L"InstalledFontCollection::GetFamilies failed.\nError code = %d", list.code);
  }
}

void CheckTypeMask(unsigned int typeMask) {
  if (typeMask == 0 || (typeMask & ~FACE_ALL_TYPES) != 0) {
    ThrowErrorImpl(UNIT, __LINE__, INVALID_PARAMETER_TEXT);
  }
}

}  // namespace

struct CSystemFaceInfo::Query {
  std::size_t nameBegin, nameEnd;  // the faces of the requested name
  long weight;
  platform::CharsetBits charset;
  unsigned char italic, pitchAndFamily;
  int flags;
  unsigned int typeMask;
};

template <>
CSystemFaceInfo& Singleton<CSystemFaceInfo>::GetInstance() {
  static CSystemFaceInfo instance;
  return instance;
}

CSystemFaceInfo::CSystemFaceInfo() {
  Install(Collect());
}

CSystemFaceInfo::~CSystemFaceInfo() = default;

CSystemFaceInfo::FaceList CSystemFaceInfo::Collect() {
  FaceList faces;
  CollectTrueTypeFaceInfo(faces);
  CollectSYMSetFaceInfo(faces);
  SortFaceList(faces);
  return faces;
}

void CSystemFaceInfo::CollectTrueTypeFaceInfo(FaceList& faces) {
  const platform::FontList list = platform::ListFonts();
  CheckStatus(list);
  for (const GString& file : list.unreadable) {
    g_Logger.SendVA(LogWarning, L"The font file '%s' cannot be read and is left out.", file);
  }
  faces.reserve(list.fonts.size());
  for (const platform::FontDescription& font : list.fonts) {
    faces.push_back(std::make_shared<CTrueTypeFaceInfo>(font, font.family));
  }
  const auto addFaces = [&](const GString& family, const GString& name) {
    for (const platform::FontDescription& font : list.fonts) {
      if (!StringEquivalent()(font.family, family)) continue;
      faces.push_back(std::make_shared<CTrueTypeFaceInfo>(font, name));
    }
  };
  for (const CommonFace& common : COMMON_FACES) {
    const auto isIt = [&common](const platform::FontDescription& font) {
      return StringEquivalent()(font.family, common.name);
    };
    if (list.fonts.empty() || std::any_of(list.fonts.begin(), list.fonts.end(), isIt)) continue;
    addFaces(platform::FindStandIn(common.name, common.pitchAndFamily), common.name);
  }
}

void CSystemFaceInfo::CollectSYMSetFaceInfo(FaceList& faces) {
  const std::vector<CSYMSetInfo> table = CSYMSetInfo::GetTable();
  std::map<GString, bool> readable;  // a file may hold many sets, and looking for it takes time
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto [file, isNew] = readable.try_emplace(table[i].GetFileName(), false);
    if (isNew) file->second = IsFileReadable(LocateSymbolSet(file->first));
    if (file->second) {
      faces.push_back(std::make_shared<CSYMFaceInfo>(i));
    } else {
      g_Logger.SendVA(LogWarning, L"The symbol set '%s' is left out: '%s' cannot be read.",
                      table[i].GetDisplayName(), LocateSymbolSet(file->first));
    }
  }
}

void CSystemFaceInfo::SortFaceList(FaceList& faces) {
  const auto less = [](const std::shared_ptr<CFaceInfo>& a, const std::shared_ptr<CFaceInfo>& b) {
    if (const int order = CompareNoCase(a->GetFaceName(), b->GetFaceName())) return order < 0;
    const auto key = [](const CFaceInfo& face) {
      return std::tuple(face.GetFaceType(), face.GetAttributes().weight,
                        face.GetAttributes().italic);
    };
    return key(*a) < key(*b);
  };
  std::stable_sort(faces.begin(), faces.end(), less);
}

/// Puts the faces in the place of those of before and finds the defaults.
void CSystemFaceInfo::Install(FaceList faces) {
  std::vector<Key> keys;
  keys.reserve(faces.size());
  for (const std::shared_ptr<CFaceInfo>& face : faces) keys.push_back(KeyOf(*face));
  {
    const std::lock_guard<std::mutex> lock(RegistryMutex());
    faces_.swap(faces);
    keys_.swap(keys);
    isCached_ = false;
    defaultText_ = defaultMarker_ = NO_FACE;
    // Until Arial is found, and where there are no fonts: the stroked text, else whatever is first.
    const Query stroked = MakeQuery(STROKED_TEXT_FACE, REGULAR, 0, 0, 0, 0, FACE_SYMBOL);
    defaultText_ = FindPerfect(stroked);
    if (defaultText_ == NO_FACE && !faces_.empty()) defaultText_ = 0;
    defaultMarker_ = defaultText_;
  }
  FindDefaults();
  ++generation_;
}

void CSystemFaceInfo::FindDefaults() {
  constexpr int FLAGS = MATCH_NAME | MATCH_WEIGHT;
  const int text = Match(DEFAULT_TEXT_NAME, REGULAR, 0, 0, 0, FLAGS, FACE_TRUE_TYPE);
  const int marker = Match(DEFAULT_MARKER_NAME, REGULAR, 0, 0, 0, FLAGS, FACE_TRUE_TYPE);
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  defaultText_ = text;
  defaultMarker_ = marker;
  isCached_ = false;
}

void CSystemFaceInfo::Refresh() {
  Install(Collect());
}

CSystemFaceInfo::Query CSystemFaceInfo::MakeQuery(std::wstring_view name, long weight,
                                                  unsigned char italic, unsigned char charset,
                                                  unsigned char pitchAndFamily, int flags,
                                                  unsigned int typeMask) const {
  Query query = {0,     0,       weight, platform::CharsetBit(charset), italic != 0, pitchAndFamily,
                 flags, typeMask};
  const auto begin =
      std::lower_bound(faces_.begin(), faces_.end(), name,
                       [](const std::shared_ptr<CFaceInfo>& face, std::wstring_view wanted) {
                         return CompareNoCase(face->GetFaceName(), wanted) < 0;
                       });
  auto end = begin;
  while (end != faces_.end() && StringEquivalent()((*end)->GetFaceName(), name)) ++end;
  query.nameBegin = static_cast<std::size_t>(begin - faces_.begin());
  query.nameEnd = static_cast<std::size_t>(end - faces_.begin());
  return query;
}

/// Returns the score of a face with these properties.
int CSystemFaceInfo::Score(const Query& query, const Key& key, bool hasName) {
  const auto earned = [&query](int flag, bool isEqual, int points) {
    return (query.flags & flag) == 0 || isEqual ? points : 0;
  };
  const auto differing = static_cast<unsigned int>(key.pitchAndFamily ^ query.pitchAndFamily);
  const int score = earned(MATCH_CHARSET, (key.charsets & query.charset) != 0, CHARSET_POINTS) +
                    earned(MATCH_NAME, hasName, NAME_POINTS) +
                    earned(MATCH_PITCH, (differing & platform::PITCH_VARIABLE) == 0, PITCH_POINTS) +
                    earned(MATCH_FAMILY, (differing & platform::FAMILY_MASK) == 0, FAMILY_POINTS) +
                    earned(MATCH_ITALIC, key.italic == query.italic, ITALIC_POINTS);
  const bool weightCounts = (query.flags & MATCH_WEIGHT) != 0;
  return score + (weightCounts ? PointsOfWeight(key.weight, query.weight) : WEIGHT_POINTS);
}

CSystemFaceInfo::Key CSystemFaceInfo::KeyOf(const CFaceInfo& face) {
  const FaceAttributes& a = face.GetAttributes();
  return {a.weight, a.charsets, static_cast<unsigned char>(a.italic != 0), a.pitchAndFamily,
          static_cast<unsigned char>(face.GetFaceType())};
}

int CSystemFaceInfo::CalcMatchValue(const CFaceInfo& face, std::wstring_view name, long weight,
                                    unsigned char italic, unsigned char charset,
                                    unsigned char pitchAndFamily, int flags) {
  const Query query = {0,     0, weight, platform::CharsetBit(charset), italic != 0, pitchAndFamily,
                       flags, 0};
  return Score(query, KeyOf(face), StringEquivalent()(face.GetFaceName(), name));
}

int CSystemFaceInfo::FindPerfect(const Query& query) const {
  for (std::size_t i = query.nameBegin; i < query.nameEnd; ++i) {
    if ((keys_[i].type & query.typeMask) != 0 && Score(query, keys_[i], true) == PERFECT_MATCH) {
      return static_cast<int>(i);
    }
  }
  return NO_FACE;
}

int CSystemFaceInfo::FindBest(const Query& query) const {
  const int preferred = DefaultOf(query.pitchAndFamily, query.flags);
  int best = NO_FACE;
  int bestScore = -1;
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    if ((keys_[i].type & query.typeMask) == 0) continue;
    const int score = Score(query, keys_[i], i >= query.nameBegin && i < query.nameEnd);
    const auto index = static_cast<int>(i);
    if (score > bestScore || (score == bestScore && index == preferred)) {
      bestScore = score;
      best = index;
      if (score == PERFECT_MATCH) break;
    }
  }
  return best == NO_FACE ? preferred : best;
}

int CSystemFaceInfo::DefaultOf(unsigned char pitchAndFamily, int flags) const {
  const bool isFixed = (pitchAndFamily & platform::PITCH_VARIABLE) == 0;
  return (flags & MATCH_PITCH) != 0 && isFixed ? defaultMarker_ : defaultText_;
}

bool CSystemFaceInfo::MatchCachedTypeface(const Request& request, std::wstring_view name) const {
  return isCached_ && cached_.weight == request.weight && cached_.italic == request.italic &&
         cached_.charset == request.charset && cached_.pitchAndFamily == request.pitchAndFamily &&
         cached_.flags == request.flags && cached_.typeMask == request.typeMask &&
         StringEquivalent()(cached_.name, name);
}

void CSystemFaceInfo::CacheTypeface(const Request& request, std::wstring_view name, int index) {
  isCached_ = false;
  cached_ = request;
  cached_.name = name;
  cachedIndex_ = index;
  isCached_ = true;
}

int CSystemFaceInfo::Match(std::wstring_view name, long weight, unsigned char italic,
                           unsigned char charset, unsigned char pitchAndFamily, int flags,
                           unsigned int typeMask) {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  return MatchLocked(name, {GString(), weight, italic, charset, pitchAndFamily, flags, typeMask});
}

std::shared_ptr<CFaceInfo> CSystemFaceInfo::MatchFace(std::wstring_view name, long weight,
                                                      unsigned char italic, unsigned char charset,
                                                      unsigned char pitchAndFamily, int flags,
                                                      unsigned int typeMask) {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  const int index =
      MatchLocked(name, {GString(), weight, italic, charset, pitchAndFamily, flags, typeMask});
  return index == NO_FACE ? nullptr : faces_[static_cast<std::size_t>(index)];
}

/// Matches a request, whose name is `name`. Under the lock.
int CSystemFaceInfo::MatchLocked(std::wstring_view name, const Request& request) {
  if (name.empty()) return DefaultOf(request.pitchAndFamily, request.flags);
  if (MatchCachedTypeface(request, name)) return cachedIndex_;
  const Query query = MakeQuery(name, request.weight, request.italic, request.charset,
                                request.pitchAndFamily, request.flags, request.typeMask);
  int index = FindPerfect(query);
  if (index == NO_FACE) index = FindBest(query);
  CacheTypeface(request, name, index);
  return index;
}

int CSystemFaceInfo::CheckForPerfectMatch(std::wstring_view name, long weight, unsigned char italic,
                                          unsigned char charset, unsigned char pitchAndFamily,
                                          int flags, unsigned int typeMask) const {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  return FindPerfect(MakeQuery(name, weight, italic, charset, pitchAndFamily, flags, typeMask));
}

std::shared_ptr<CFaceInfo> CSystemFaceInfo::GetFaceInfo(int index) const {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  if (index < 0 || static_cast<std::size_t>(index) >= faces_.size()) {
    ThrowErrorImpl(UNIT, __LINE__, INVALID_PARAMETER_TEXT);
  }
  return faces_[static_cast<std::size_t>(index)];
}

std::vector<std::shared_ptr<CFaceInfo>> CSystemFaceInfo::GetFaces() const {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  return faces_;
}

int CSystemFaceInfo::GetFaceCount() const {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  return static_cast<int>(faces_.size());
}

int CSystemFaceInfo::GetDefaultTextFace() const {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  return defaultText_;
}

int CSystemFaceInfo::GetDefaultMarkerFace() const {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  return defaultMarker_;
}

void CSystemFaceInfo::SetFontMatcherFaceTypeFlags(unsigned int typeMask) {
  CheckTypeMask(typeMask);
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  fontTypes_ = typeMask;
}

unsigned int CSystemFaceInfo::GetFontMatcherFaceTypeFlags() const {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  return fontTypes_;
}

void CSystemFaceInfo::SetMarkerMatcherFaceTypeFlags(unsigned int typeMask) {
  CheckTypeMask(typeMask);
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  markerTypes_ = typeMask;
}

unsigned int CSystemFaceInfo::GetMarkerMatcherFaceTypeFlags() const {
  const std::lock_guard<std::mutex> lock(RegistryMutex());
  return markerTypes_;
}

}  // namespace shr
