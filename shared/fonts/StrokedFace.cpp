// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/fonts/StrokedFace.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <string>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/files/File.h"
#include "shared/files/Path.h"
#include "shared/fonts/SymbolSetReader.h"
#include "shared/platform/Paths.h"
#include "shared/text/StringCompare.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"StrokedFace";

/// Room that is made for glyphs before a file is read.
constexpr std::size_t GLYPH_SLOTS = 256;

/// A set of all characters of Unicode in long-winded paths would still be smaller.
constexpr std::int64_t LARGEST_FILE = 256 << 20;

std::vector<CSYMSetInfo> LibrarySets() {
  constexpr unsigned char STROKES = platform::PITCH_VARIABLE | platform::FAMILY_SWISS;
  return {CSYMSetInfo(STROKED_TEXT_FACE, L"Stroke.sym", platform::ANSI_CHARACTERS, STROKES),
          CSYMSetInfo(MARKER_FACE, L"Markers.sym")};
}

struct SetTable {
  std::mutex mutex;
  std::vector<CSYMSetInfo> sets = LibrarySets();
};

SetTable& Table() {
  static SetTable table;
  return table;
}

[[noreturn]] void ThrowUnreadable(const GString& path) {
  ThrowErrorImpl(UNIT, __LINE__, L"Symbol set file: %s\ndoes not exist or is not readable.", path);
}

/// Returns the bytes of a file. Errors: as for one that is not there.
std::string ReadBytes(const GString& path) {
  CFile file;
  if (!IsFileReadable(path) ||
      !file.OpenNoThrow(path, CFile::AccessRead, CFile::ModeOpenExisting, CFile::ShareRead)) {
    ThrowUnreadable(path);
  }
  const std::int64_t length = file.GetLength();
  if (length < 0 || length > LARGEST_FILE) ThrowUnreadable(path);
  std::string bytes(static_cast<std::size_t>(length), '\0');
  bytes.resize(file.Read(bytes.data(), static_cast<std::uint32_t>(length)));
  return bytes;
}

}  // namespace

CSYMSetInfo::CSYMSetInfo(const GString& displayName, const GString& fileName, unsigned char charset,
                         unsigned char pitchAndFamily)
    : displayName_(displayName),
      fileName_(fileName),
      charset_(charset),
      pitchAndFamily_(pitchAndFamily) {}

std::vector<CSYMSetInfo> CSYMSetInfo::GetTable() {
  const std::lock_guard<std::mutex> lock(Table().mutex);
  return Table().sets;
}

CSYMSetInfo CSYMSetInfo::GetEntry(std::size_t index) {
  const std::lock_guard<std::mutex> lock(Table().mutex);
  if (index >= Table().sets.size()) ThrowErrorImpl(UNIT, __LINE__, INVALID_PARAMETER_TEXT);
  return Table().sets[index];
}

void CSYMSetInfo::SetTable(const std::vector<CSYMSetInfo>& table) {
  const std::lock_guard<std::mutex> lock(Table().mutex);
  Table().sets = table;
}

void CSYMSetInfo::ResetTable() {
  SetTable(LibrarySets());
}

GString LocateSymbolSet(const GString& fileName) {
  const GString separator(1, platform::PATH_SEPARATOR);
  const GString source = platform::GetEnvironment(L"KvSRC");
  const GString version = platform::GetEnvironment(L"KvSUBVER");
  if (!source.empty() && !version.empty()) {
    return source + separator + L"Subsystems" + separator + version + separator + L"Symbol" +
           separator + fileName;
  }
  const GString inFolder = GString(L"Symbols") + separator + fileName;
  const GString besideProgram = GetStartupPath(nullptr, true) + inFolder;
  if (IsFileReadable(besideProgram)) return besideProgram;
  const GString located = LocateFile(inFolder);
  if (!located.empty()) return located;
  const GString besideLibrary =
      CPath(platform::GetLibraryPath()).GetDriveAndFolder(true) + inFolder;
  return IsFileReadable(besideLibrary) ? besideLibrary : besideProgram;
}

CStrokedFace::CStrokedFace() {
  glyphs_.reserve(GLYPH_SLOTS);
}

CStrokedFace::CStrokedFace(std::size_t setIndex) : CStrokedFace() {
  const CSYMSetInfo set = CSYMSetInfo::GetEntry(setIndex);
  setIndex_ = setIndex;
  BuildGlyphMetricsAndVector(LocateSymbolSet(set.GetFileName()));
}

CStrokedFace CStrokedFace::FromFile(const GString& path) {
  CStrokedFace face;
  face.BuildGlyphMetricsAndVector(path);
  return face;
}

CStrokedFace CStrokedFace::FromText(std::string_view text, const GString& path) {
  CStrokedFace face;
  face.GenVectors(text, path);
  return face;
}

CStrokedFace::CStrokedFace(CStrokedFace&&) noexcept = default;
CStrokedFace& CStrokedFace::operator=(CStrokedFace&&) noexcept = default;
CStrokedFace::~CStrokedFace() = default;

void CStrokedFace::BuildGlyphMetricsAndVector(const GString& path) {
  GenVectors(ReadBytes(path), path);
}

void CStrokedFace::GenVectors(std::string_view text, const GString& path) {
  CStrokedFace read;
  read.setIndex_ = setIndex_;
  SymbolSetReader(text, path).ReadInto(read);
  *this = std::move(read);
}

const CStrokedFace::Glyph* CStrokedFace::FindGlyph(char32_t code) const {
  const auto found =
      std::lower_bound(glyphs_.begin(), glyphs_.end(), code,
                       [](const Glyph& glyph, char32_t wanted) { return glyph.code < wanted; });
  return found != glyphs_.end() && found->code == code ? &*found : nullptr;
}

const CStrokedFace::Glyph* CStrokedFace::FindGlyph(std::wstring_view name) const {
  const auto found = std::find_if(glyphs_.begin(), glyphs_.end(), [name](const Glyph& glyph) {
    return StringEquivalent()(glyph.name, name);
  });
  return found != glyphs_.end() ? &*found : nullptr;
}

const CStrokedFace::Glyph* CStrokedFace::GetMissingGlyph() const {
  return FindGlyph(missing_);
}

}  // namespace shr
