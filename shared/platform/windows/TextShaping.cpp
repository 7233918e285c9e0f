// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Uniscribe does all. What it says of an item, SCRIPT_ANALYSIS, travels as the number of the
// script.

#include "shared/platform/TextShaping.h"

#include "shared/platform/WindowsTypes.h"
// behind <windows.h>
#include <usp10.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "shared/platform/windows/SelectedFont.h"

namespace shr::platform {
namespace {

struct UniscribeLibrary {
  decltype(&::ScriptItemize) itemize = nullptr;
  decltype(&::ScriptShape) shape = nullptr;
  decltype(&::ScriptPlace) place = nullptr;
  decltype(&::ScriptFreeCache) freeCache = nullptr;
};

bool Load(UniscribeLibrary& api) {
  const HMODULE library = LoadLibraryW(L"usp10.dll");
  return library != nullptr && FindFunction(library, "ScriptItemize", api.itemize) &&
         FindFunction(library, "ScriptShape", api.shape) &&
         FindFunction(library, "ScriptPlace", api.place) &&
         FindFunction(library, "ScriptFreeCache", api.freeCache);
}

/// Returns the library, or null where it is missing.
const UniscribeLibrary* LoadUniscribe() {
  static UniscribeLibrary library;
  static const bool loaded = Load(library);
  return loaded ? &library : nullptr;
}

static_assert(sizeof(SCRIPT_ANALYSIS) == sizeof(std::uint32_t));

SCRIPT_ANALYSIS AnalysisOf(const TextItem& item) {
  SCRIPT_ANALYSIS analysis;
  std::memcpy(&analysis, &item.script, sizeof analysis);
  analysis.fRTL = item.IsRightToLeft();
  analysis.fLogicalOrder = false;
  return analysis;
}

/// Returns true for marks of format that fonts need not have.
bool IsHidden(wchar_t unit) {
  return (unit >= 0xFE00 && unit <= 0xFE0F) || (unit >= 0x200B && unit <= 0x200F) ||
         (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2060 && unit <= 0x206F) || unit == 0xAD ||
         unit == 0x34F || unit == 0x61C || unit == 0xFEFF;
}

/// What Uniscribe writes of a piece of text.
struct ShapeBuffers {
  std::vector<WORD> glyphs, clusters;
  std::vector<SCRIPT_VISATTR> looks;
  std::vector<int> advances;
  std::vector<GOFFSET> offsets;

  void Resize(std::size_t count) {
    glyphs.resize(count);
    looks.resize(count);
    advances.resize(count);
    offsets.resize(count);
  }
};

class UniscribeShaper final : public Shaper {
public:
  explicit UniscribeShaper(const FontDescription& description) : font_(description) {}
  ~UniscribeShaper() override { LoadUniscribe()->freeCache(&cache_); }

  bool IsOpen() const { return font_.IsOpen(); }
  bool Shape(std::wstring_view line, const TextItem& item, ShapedText& shaped) override;

private:
  bool FindGlyphs(std::wstring_view text, SCRIPT_ANALYSIS& analysis);
  void Place(std::wstring_view text, const TextItem& item, ShapedText& shaped) const;

  SelectedFont font_;
  SCRIPT_CACHE cache_ = nullptr;
  ShapeBuffers buffers_;
};

/// Fills the buffers with the glyphs; a script that the font does not know is tried as none.
bool UniscribeShaper::FindGlyphs(std::wstring_view text, SCRIPT_ANALYSIS& analysis) {
  const auto length = static_cast<int>(text.size());
  std::size_t room = text.size() * 3 / 2 + 16;  // as Uniscribe's manual has it
  const std::size_t mostRoom = std::min<std::size_t>(
      64 * text.size() + 64, static_cast<std::size_t>(std::numeric_limits<WORD>::max()));
  room = std::min(room, mostRoom);
  buffers_.clusters.resize(text.size());
  while (true) {
    buffers_.Resize(room);
    int count = 0;
    const HRESULT result = LoadUniscribe()->shape(
        font_.GetDevice(), &cache_, text.data(), length, static_cast<int>(room), &analysis,
        buffers_.glyphs.data(), buffers_.clusters.data(), buffers_.looks.data(), &count);
    if (result == S_OK) {
      buffers_.Resize(static_cast<std::size_t>(count));
      return true;
    }
    if (result == E_OUTOFMEMORY && room < mostRoom) {
      room = std::min(2 * room, mostRoom);
    } else if (result == USP_E_SCRIPT_NOT_IN_FONT && analysis.eScript != SCRIPT_UNDEFINED) {
      analysis.eScript = SCRIPT_UNDEFINED;
    } else {
      return false;
    }
  }
}

void UniscribeShaper::Place(std::wstring_view text, const TextItem& item,
                            ShapedText& shaped) const {
  const std::size_t count = buffers_.glyphs.size();
  std::vector<std::size_t> places(count, text.size());
  for (std::size_t i = text.size(); i-- > 0;) {
    if (buffers_.clusters[i] < count) places[buffers_.clusters[i]] = i;
  }
  // Glyphs of a cluster follow its first in logical order.
  const auto spread = [&places, &text](auto begin, auto end) {
    std::size_t last = 0;
    for (auto i = begin; i != end; ++i) {
      if (*i == text.size()) *i = last;
      last = *i;
    }
  };
  if (item.IsRightToLeft()) spread(places.rbegin(), places.rend());
  if (!item.IsRightToLeft()) spread(places.begin(), places.end());
  shaped.glyphs.clear();
  long pen = 0;  // design units
  for (std::size_t i = 0; i < count; ++i) {
    if (buffers_.glyphs[i] == MISSING_GLYPH && IsHidden(text[places[i]])) continue;
    shaped.glyphs.push_back({buffers_.glyphs[i], item.begin + places[i],
                             static_cast<double>(pen + buffers_.offsets[i].du) / font_.GetEm(),
                             static_cast<double>(buffers_.offsets[i].dv) / font_.GetEm()});
    pen += buffers_.advances[i];
  }
  shaped.advance = static_cast<double>(pen) / font_.GetEm();
}

bool UniscribeShaper::Shape(std::wstring_view line, const TextItem& item, ShapedText& shaped) {
  const std::wstring_view text = line.substr(item.begin, item.length);
  SCRIPT_ANALYSIS analysis = AnalysisOf(item);
  if (text.empty() || !FindGlyphs(text, analysis)) return false;
  const auto count = static_cast<int>(buffers_.glyphs.size());
  ABC widths = {};
  if (LoadUniscribe()->place(font_.GetDevice(), &cache_, buffers_.glyphs.data(), count,
                             buffers_.looks.data(), &analysis, buffers_.advances.data(),
                             buffers_.offsets.data(), &widths) != S_OK) {
    return false;
  }
  Place(text, item, shaped);
  return true;
}

}  // namespace

Shaper::Shaper() = default;
Shaper::~Shaper() = default;

bool ItemizeText(std::wstring_view line, bool isRightToLeft, std::vector<TextItem>& items) {
  items.clear();
  const UniscribeLibrary* const api = LoadUniscribe();
  if (api == nullptr || line.empty()) return api != nullptr;
  const SCRIPT_CONTROL control = {};
  SCRIPT_STATE state = {};
  state.uBidiLevel = isRightToLeft;
  std::vector<SCRIPT_ITEM> found(line.size() + 2);  // one behind the last, and one to spare
  int count = 0;
  if (api->itemize(line.data(), static_cast<int>(line.size()), static_cast<int>(found.size() - 1),
                   &control, &state, found.data(), &count) != S_OK) {
    return false;
  }
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
    const auto begin = static_cast<std::size_t>(found[i].iCharPos);
    const auto end = static_cast<std::size_t>(found[i + 1].iCharPos);
    TextItem item = {begin, end - begin, static_cast<unsigned char>(found[i].a.s.uBidiLevel), 0};
    std::memcpy(&item.script, &found[i].a, sizeof item.script);
    if (item.length > 0) items.push_back(item);
  }
  return true;
}

std::unique_ptr<Shaper> OpenShaper(const FontDescription& description) {
  if (LoadUniscribe() == nullptr) return nullptr;
  auto shaper = std::make_unique<UniscribeShaper>(description);
  if (!shaper->IsOpen()) return nullptr;
  return shaper;
}

}  // namespace shr::platform
