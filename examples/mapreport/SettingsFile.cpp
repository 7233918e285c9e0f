// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/SettingsFile.h"

#include <algorithm>
#include <utility>

#include "examples/common/InputError.h"
#include "examples/mapreport/PointTables.h"
#include "shared/files/ConfigFile.h"
#include "shared/files/Path.h"
#include "shared/mathtext/Context.h"

namespace mapreport {

using namespace examples;
using namespace shr;

namespace {

constexpr int MOST_ROWS = 100000;
constexpr std::size_t LONGEST_VALUE = 1022;

/// Takes over a value; returns false when it is not of the key's form.
using Taker = bool (*)(const GString& value, SettingsFile& file);

struct Key {
  const wchar_t* section;
  const wchar_t* name;
  Taker take;
};

template <class T>
bool Store(std::optional<T> parsed, std::optional<T>& to) {
  to = std::move(parsed);
  return to.has_value();
}

std::optional<std::size_t> ParseRows(const GString& text) {
  int rows = 0;
  if (!text.ToInt(rows) || rows < 0 || rows > MOST_ROWS) return std::nullopt;
  return static_cast<std::size_t>(rows);
}

/// Reads paths with semicolons between them. Returns false when one is empty.
bool SplitPaths(const GString& text, std::vector<GString>& paths) {
  for (GString::size_type begin = 0; begin <= text.size();) {
    const GString::size_type end = std::min(text.find(L';', begin), text.size());
    paths.push_back(text.substr(begin, end - begin).Trim());
    if (paths.back().empty()) return false;
    begin = end + 1;
  }
  return true;
}

constexpr Key KEYS[] = {
    {L"Files", L"Map", [](const GString& v, SettingsFile& f) { return !(f.map = v).empty(); }},
    {L"Files", L"Points",
     [](const GString& v, SettingsFile& f) { return !(f.points = v).empty(); }},
    {L"Files", L"Cities",
     [](const GString& v, SettingsFile& f) { return !(f.cities = v).empty(); }},
    {L"Files", L"Rivers",
     [](const GString& v, SettingsFile& f) { return !(f.rivers = v).empty(); }},
    {L"Files", L"Attributes",
     [](const GString& v, SettingsFile& f) { return !(f.attributes = v).empty(); }},
    {L"Files", L"Tracks",
     [](const GString& v, SettingsFile& f) { return SplitPaths(v, f.tracks); }},
    {L"Map", L"Title",
     [](const GString& v, SettingsFile& f) {
       return FindMathTextFault(v).empty() && Store({v}, f.settings.title);
     }},
    {L"Map", L"Text",
     [](const GString& v, SettingsFile& f) { return Store(ParseTextMode(v), f.settings.text); }},
    {L"Map", L"Face",
     [](const GString& v, SettingsFile& f) { return Store({v}, f.settings.face); }},
    {L"Map", L"Window",
     [](const GString& v, SettingsFile& f) { return Store(ParseWindow(v), f.settings.window); }},
    {L"Map", L"Labels",
     [](const GString& v, SettingsFile& f) { return Store(ParseRows(v), f.settings.labels); }},
    {L"Map", L"Strongest",
     [](const GString& v, SettingsFile& f) { return Store(ParseRows(v), f.settings.strongest); }},
    {L"Map", L"Clip",
     [](const GString& v, SettingsFile& f) { return Store({v}, f.settings.clip); }},
    {L"Map", L"UnionContinent",
     [](const GString& v, SettingsFile& f) { return Store({v}, f.settings.continent); }},
    {L"Colors", L"Ramp",
     [](const GString& v, SettingsFile& f) { return Store(ParseColors(v), f.settings.ramp); }},
    {L"Colors", L"None",
     [](const GString& v, SettingsFile& f) { return Store(ParseColor(v), f.settings.none); }},
    {L"Colors", L"Sea",
     [](const GString& v, SettingsFile& f) { return Store(ParseColor(v), f.settings.sea); }},
    {L"Colors", L"Rivers",
     [](const GString& v, SettingsFile& f) { return Store(ParseColor(v), f.settings.river); }},
    {L"Rivers", L"Dashes",
     [](const GString& v, SettingsFile& f) { return Store(ParseDashes(v), f.settings.dashes); }},
};
constexpr const wchar_t* SECTIONS[] = {L"Files", L"Map", L"Colors", L"Rivers"};

[[noreturn]] void Fail(const CConfigFile& file, const GString& section, const GString& what) {
  ThrowInputError(file.GetFileName(), L"[" + section + L"] " + what);
}

const Key* FindKey(const GString& section, const GString& name) {
  const auto found = std::find_if(std::begin(KEYS), std::end(KEYS), [&](const Key& key) {
    return section == key.section && GString(key.name).ToLower() == name.ToLower();
  });
  return found == std::end(KEYS) ? nullptr : found;
}

/// A key that is misspelled would have no effect, which nobody would notice.
void CheckKeys(const CConfigFile& file, const GString& section) {
  std::vector<GString> entries;
  file.ReadSection(section, entries);
  for (const GString& entry : entries) {
    const GString name = entry.substr(0, std::min(entry.find(L'='), entry.size())).Trim();
    if (FindKey(section, name) == nullptr) {
      Fail(file, section, Quoted(name) + L" is no key of this section.");
    }
    if (entry.size() - name.size() > LONGEST_VALUE) {
      Fail(file, section, Quoted(name) + L" has too long a value.");
    }
  }
}

bool IsAbsolute(const GString& path) {
  if (path[0] == L'/' || path[0] == L'\\') return true;
  return path.size() > 1 && path[1] == L':';
}

void MakeRelativeTo(const GString& folder, GString& path) {
  if (!path.empty() && !IsAbsolute(path)) path = folder + path;
}

}  // namespace

SettingsFile ReadSettingsFile(const GString& path) {
  if (!IsFileReadable(path)) ThrowInputError(path, L"The settings cannot be read.");
  const CConfigFile file(path);
  for (const wchar_t* const section : SECTIONS) CheckKeys(file, section);
  SettingsFile result;
  for (const Key& key : KEYS) {
    GString value;
    if (!file.Read(key.section, key.name, value)) continue;
    if (!key.take(value, result)) {
      Fail(file, key.section, GString(key.name) + L": " + Quoted(value) + L" is no such value.");
    }
  }
  for (GString* const input :
       {&result.map, &result.points, &result.cities, &result.rivers, &result.attributes}) {
    MakeRelativeTo(FolderOf(path), *input);
  }
  for (GString& track : result.tracks) MakeRelativeTo(FolderOf(path), track);
  std::optional<GString>& clip = result.settings.clip;
  if (clip && (*clip)[0] == L'@') {
    GString area = clip->substr(1);
    MakeRelativeTo(FolderOf(path), area);
    clip = L"@" + area;
  }
  return result;
}

}  // namespace mapreport
