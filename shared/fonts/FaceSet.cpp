// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/fonts/FaceSet.h"

#include <algorithm>
#include <utility>

#include "shared/fonts/StrokedFace.h"
#include "shared/fonts/SystemFaceInfo.h"
#include "shared/fonts/TextCharacters.h"
#include "shared/fonts/TrueTypeFaceInfo.h"
#include "shared/platform/FontFallback.h"
#include "shared/platform/ForkSafeMutex.h"
#include "shared/text/Utf.h"

namespace shr {
namespace {

constexpr int PAGE_SHIFT = 8;
constexpr char32_t PAGE_SIZE = 1 << PAGE_SHIFT;
constexpr std::uint16_t UNKNOWN_FACE = 0xFFFF;

/// Beyond them what is remembered is forgotten and learnt again.
constexpr std::size_t MOST_SETS = 256;
constexpr std::size_t MOST_CLUSTERS = 4096;
constexpr std::size_t MOST_TEXTS = 16384;
constexpr std::size_t LONGEST_TEXT = 64;

/// As many as have numbers besides the requested one and the stroked one.
constexpr std::size_t MOST_OTHERS = UNKNOWN_FACE - 2;

/// Stands where the system has no face at all, not even a symbol set.
class EmptyFace final : public CFaceInfo {
public:
  EmptyFace() : CFaceInfo(GString(), FaceAttributes()) {}
  unsigned int GetFaceType() const override { return FACE_SYMBOL; }

protected:
  bool FetchOTM(OutlineTextMetrics&) const override { return false; }
  bool FetchGlyphMetrics(char32_t, GlyphMetrics&) const override { return false; }
  bool FetchDefaultGlyphMetrics(GlyphMetrics&) const override { return false; }
  bool FetchGlyphVectors(char32_t, GlyphVectors&) const override { return false; }
  bool FetchDefaultGlyphVectors(GlyphVectors&) const override { return false; }
  void Release() const override {}
};

struct SetsTag;

std::mutex& SetsMutex() {
  static platform::ForkSafeMutex<std::mutex, SetsTag> mutex;
  return mutex.Get();
}

struct RequestHash {
  std::size_t operator()(const TextFace& request) const {
    const std::size_t style = static_cast<std::size_t>(request.weight) * 31 + request.italic;
    return std::hash<std::wstring_view>()(request.name) ^ (style * 257 + request.charset) * 257 ^
           request.pitchAndFamily;
  }
};

struct RequestEqual {
  bool operator()(const TextFace& a, const TextFace& b) const {
    return a.weight == b.weight && a.italic == b.italic && a.charset == b.charset &&
           a.pitchAndFamily == b.pitchAndFamily && a.name == b.name;
  }
};

/// The sets of all requests, for one state of the registry.
struct Sets {
  unsigned int generation = 0;
  std::unordered_map<TextFace, std::shared_ptr<FaceSet>, RequestHash, RequestEqual> byRequest;
};

Sets& AllSets() {
  static Sets sets;
  return sets;
}

int FlagsOf(const TextFace& request) {
  int flags = MATCH_NAME | MATCH_WEIGHT | MATCH_ITALIC;
  if (request.charset != platform::DEFAULT_CHARACTERS) flags |= MATCH_CHARSET;
  if ((request.pitchAndFamily & platform::FAMILY_MASK) != 0) flags |= MATCH_FAMILY | MATCH_PITCH;
  if ((request.pitchAndFamily & platform::PITCH_VARIABLE) != 0) flags |= MATCH_PITCH;
  return flags;
}

std::shared_ptr<CFaceInfo> MatchRequest(const TextFace& request) {
  CSystemFaceInfo& registry = CSystemFaceInfo::Instance();
  const auto match = [&](const GString& name) {
    return registry.MatchFace(name, request.weight, request.italic, request.charset,
                              request.pitchAndFamily, FlagsOf(request),
                              registry.GetFontMatcherFaceTypeFlags());
  };
  std::shared_ptr<CFaceInfo> face = match(request.name);
  if (face == nullptr) return std::make_shared<EmptyFace>();
  // Without a name the registry gives the default face as it is, upright and regular.
  return request.name.empty() ? match(face->GetFaceName()) : face;
}

/// Returns what a face lacks that would be the best: the family of the primary face in the weight
/// and slant that were asked for, which it need not have.
platform::FontDescription Wanted(const CFaceInfo& primary, const TextFace& request) {
  const auto* const outline = dynamic_cast<const CTrueTypeFaceInfo*>(&primary);
  platform::FontDescription wanted;
  wanted.family = outline != nullptr ? outline->GetDescription().family : primary.GetFaceName();
  wanted.weight = request.weight;
  wanted.italic = request.italic != 0;
  wanted.pitchAndFamily = primary.GetAttributes().pitchAndFamily;
  return wanted;
}

/// Sorts faces: those most like `wanted` first, among equals by name.
void SortByLikeness(std::vector<std::shared_ptr<CFaceInfo>>& faces,
                    const platform::FontDescription& wanted) {
  const auto likeness = [&wanted](const std::shared_ptr<CFaceInfo>& face) {
    return CSystemFaceInfo::CalcMatchValue(
        *face, L"", wanted.weight, wanted.italic, 0, wanted.pitchAndFamily,
        MATCH_WEIGHT | MATCH_ITALIC | MATCH_PITCH | MATCH_FAMILY);
  };
  std::stable_sort(faces.begin(), faces.end(),
                   [&](const auto& a, const auto& b) { return likeness(a) > likeness(b); });
}

const platform::FontDescription& DescriptionOf(const CFaceInfo& face) {
  return static_cast<const CTrueTypeFaceInfo&>(face).GetDescription();
}

/// Puts outline faces into the order in which the system falls back on them.
std::vector<std::shared_ptr<CFaceInfo>> Ranked(const std::vector<std::shared_ptr<CFaceInfo>>& faces,
                                               const platform::FontDescription& missing) {
  std::vector<const platform::FontDescription*> fonts;
  for (const std::shared_ptr<CFaceInfo>& face : faces) fonts.push_back(&DescriptionOf(*face));
  std::vector<std::shared_ptr<CFaceInfo>> ranked;
  for (const std::size_t place : platform::RankFonts(missing, fonts)) {
    ranked.push_back(faces[place]);
  }
  return ranked;
}

/// Returns true when the face may have all of the characters; no font is opened for that.
bool MayHaveAll(const CFaceInfo& face, std::wstring_view cluster) {
  const auto* const outline = dynamic_cast<const CTrueTypeFaceInfo*>(&face);
  while (outline != nullptr && !cluster.empty()) {
    const char32_t character = NextCharacter(cluster);
    if (!NeedsNoFace(character) && !outline->MayHave(character)) return false;
  }
  return true;
}

bool HasAll(const CFaceInfo& face, std::wstring_view cluster) {
  while (!cluster.empty()) {
    const char32_t character = NextCharacter(cluster);
    if (!NeedsNoFace(character) && !face.HasGlyph(character)) return false;
  }
  return true;
}

}  // namespace

/// The faces of 256 characters, of those that were asked for.
struct FaceSet::Page {
  std::array<FaceNumber, PAGE_SIZE> faces;
};

std::shared_ptr<FaceSet> FaceSet::Get(const TextFace& request) {
  const unsigned int generation = CSystemFaceInfo::Instance().GetGeneration();
  {
    const std::lock_guard<std::mutex> lock(SetsMutex());
    Sets& sets = AllSets();
    if (sets.generation == generation) {
      const auto found = sets.byRequest.find(request);
      if (found != sets.byRequest.end()) return found->second;
    }
  }
  auto made = std::make_shared<FaceSet>(request);
  const std::lock_guard<std::mutex> lock(SetsMutex());
  Sets& sets = AllSets();
  if (sets.generation != generation || sets.byRequest.size() >= MOST_SETS) sets.byRequest.clear();
  sets.generation = generation;
  return sets.byRequest.emplace(request, std::move(made)).first->second;
}

FaceSet::FaceSet(const TextFace& request) : request_(request), primary_(MatchRequest(request)) {}

FaceSet::~FaceSet() = default;

const std::shared_ptr<CFaceInfo>& FaceSet::Find(std::wstring_view cluster) {
  std::wstring_view rest = cluster;
  const char32_t base = NextCharacter(rest);
  const std::lock_guard<std::mutex> lock(mutex_);
  return FaceOf(rest.empty() ? FindCharacter(base) : FindCluster(cluster, base));
}

FaceSet::Page& FaceSet::PageOf(char32_t character) {
  const char32_t number = character >> PAGE_SHIFT;
  if (lastPage_ != nullptr && lastNumber_ == number) return *lastPage_;
  std::unique_ptr<Page>& page = pages_[number];
  if (page == nullptr) {
    page = std::make_unique<Page>();
    page->faces.fill(UNKNOWN_FACE);
  }
  lastNumber_ = number;
  lastPage_ = page.get();
  return *page;
}

FaceSet::FaceNumber FaceSet::FindCharacter(char32_t character) {
  FaceNumber& face = PageOf(character).faces[character % PAGE_SIZE];
  if (face == UNKNOWN_FACE) {
    wchar_t units[UNITS_PER_CHARACTER];
    face = Search(std::wstring_view(units, CharacterToWide(character, units)));
    if (face == UNKNOWN_FACE) face = 0;
  }
  return face;
}

FaceSet::FaceNumber FaceSet::FindCluster(std::wstring_view cluster, char32_t base) {
  const FaceNumber first = FindCharacter(base);
  if (HasAll(*FaceOf(first), cluster)) return first;
  if (const auto found = clusters_.find(cluster); found != clusters_.end()) return found->second;
  FaceNumber face = Search(cluster);
  if (face == UNKNOWN_FACE) face = first;
  if (clusters_.size() >= MOST_CLUSTERS) clusters_.clear();
  clusters_.emplace(cluster, face);
  return face;
}

bool FaceSet::Recall(std::wstring_view text, Measure& measure) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = measures_.find(text);
  if (found == measures_.end()) return false;
  measure = found->second;
  return true;
}

void FaceSet::Remember(std::wstring_view text, const Measure& measure) {
  if (text.size() > LONGEST_TEXT) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  if (measures_.size() >= MOST_TEXTS) measures_.clear();
  measures_.emplace(text, measure);
}

/// Collects the faces that may be fallen back on: outline faces, without those that stand in for
/// others, and the stroked text face at last.
void FaceSet::CollectOthers() {
  hasOthers_ = true;
  std::shared_ptr<CFaceInfo> stroked;
  std::vector<std::shared_ptr<CFaceInfo>> faces;
  for (const std::shared_ptr<CFaceInfo>& face : CSystemFaceInfo::Instance().GetFaces()) {
    const auto* const outline = dynamic_cast<const CTrueTypeFaceInfo*>(face.get());
    if (outline != nullptr && !outline->IsStandIn()) faces.push_back(face);
    if (outline == nullptr && face->GetFaceName() == STROKED_TEXT_FACE) stroked = face;
  }
  const platform::FontDescription wanted = Wanted(*primary_, request_);
  SortByLikeness(faces, wanted);
  others_ = Ranked(faces, wanted);
  others_.resize(std::min(others_.size(), MOST_OTHERS));
  if (stroked != nullptr) others_.push_back(stroked);
}

/// Returns the first face that has all of the characters.
FaceSet::FaceNumber FaceSet::Search(std::wstring_view cluster) {
  if (HasAll(*primary_, cluster)) return 0;
  if (!hasOthers_) CollectOthers();
  for (std::size_t i = 0; i < others_.size(); ++i) {
    const CFaceInfo& face = *others_[i];
    if (MayHaveAll(face, cluster) && HasAll(face, cluster)) return static_cast<FaceNumber>(i + 1);
  }
  return UNKNOWN_FACE;
}

}  // namespace shr
