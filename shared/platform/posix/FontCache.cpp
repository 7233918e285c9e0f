// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/posix/FontCache.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <vector>

#include "shared/platform/posix/NativePath.h"

namespace shr::platform {
namespace {

constexpr std::string_view HEADER = "shared-faces 1\n";
constexpr off_t LARGEST_CACHE = 64 << 20;

/// The fields of a line, in their order.
enum Field {
  TIME,
  SIZE,
  WEIGHT,
  ITALIC,
  CHARSETS,
  PITCH,
  FIRST,
  FAMILY,
  STYLE,
  INDEX,
  PATH,
  FIELDS
};
using Fields = std::array<std::string_view, FIELDS>;

/// Splits a line at its tabs. Returns false when it has not the right number of fields.
bool Split(std::string_view line, Fields& fields) {
  std::size_t begin = 0;
  for (int i = 0; i < FIELDS; ++i) {
    const std::size_t end = i + 1 == FIELDS ? line.size() : line.find('\t', begin);
    if (end == std::string_view::npos || begin > line.size()) return false;
    fields[static_cast<std::size_t>(i)] = line.substr(begin, end - begin);
    begin = end + 1;
  }
  return true;
}

template <typename Number>
bool Read(std::string_view text, Number& number, int base = 10) {
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  return error == std::errc() && stop == end;
}

/// Returns where the cache is kept, its folders made; empty when there is no place for it.
std::string CacheFile() {
  std::string folder;
  const char* const cache = std::getenv("XDG_CACHE_HOME");
  const char* const home = std::getenv("HOME");
  if (cache != nullptr && cache[0] == '/') {
    folder = cache;
  } else if (home != nullptr && home[0] == '/') {
    folder = std::string(home) + "/.cache";
  } else {
    return std::string();
  }
  constexpr mode_t PRIVATE = 0700;
  ::mkdir(folder.c_str(), PRIVATE);
  folder += "/shared";
  ::mkdir(folder.c_str(), PRIVATE);
  return folder + "/faces-1";
}

/// Returns the bytes of a plain file of no more than `LARGEST_CACHE`; empty on failure.
std::string ReadWhole(const std::string& file) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return std::string();
  struct stat status = {};
  std::string bytes;
  if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
      status.st_size <= LARGEST_CACHE) {
    bytes.resize(static_cast<std::size_t>(status.st_size));
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t got = ::read(descriptor, bytes.data() + done, bytes.size() - done);
      if (got <= 0) break;
      done += static_cast<std::size_t>(got);
    }
    bytes.resize(done);
  }
  ::close(descriptor);
  return bytes;
}

bool WriteWhole(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t put = ::write(descriptor, bytes.data(), bytes.size());
    if (put <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(put));
  }
  return true;
}

}  // namespace

FontCache::FontCache() : file_(CacheFile()) {
  if (!file_.empty()) text_ = ReadWhole(file_);
  if (!text_.starts_with(HEADER)) {
    text_ = HEADER;
  }
  Index();
}

FontCache::~FontCache() = default;

void FontCache::Index() {
  lines_.clear();
  const std::string_view text = text_;
  for (std::size_t begin = HEADER.size(); begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    const std::string_view line = text.substr(begin, end - begin);
    Fields fields;
    // The key is what stands behind the style: the later line of a font counts.
    if (Split(line, fields))
      lines_[line.substr(line.size() - fields[PATH].size() - 1 - fields[INDEX].size())] = line;
    begin = end + 1;
  }
}

FontCache::Answer FontCache::Find(const std::string& path, int index, const FontFileStamp& stamp,
                                  FontDescription& font) const {
  const std::string key = std::to_string(index) + '\t' + path;
  const auto found = lines_.find(key);
  Fields fields;
  if (found == lines_.end() || !Split(found->second, fields)) return Answer::Unknown;
  FontFileStamp known;
  FontDescription result;
  int italic = 0, pitch = 0;
  std::uint32_t first = 0;
  if (!Read(fields[TIME], known.time) || !Read(fields[SIZE], known.size) ||
      !Read(fields[WEIGHT], result.weight) || !Read(fields[ITALIC], italic) ||
      !Read(fields[CHARSETS], result.charsets, 16) || !Read(fields[PITCH], pitch) ||
      !Read(fields[FIRST], first) || known.time != stamp.time || known.size != stamp.size) {
    return Answer::Unknown;
  }
  if (result.weight == 0) return Answer::Broken;
  if (result.weight < 0 || result.weight > 1000 || fields[FAMILY].empty()) return Answer::Unknown;
  result.italic = italic != 0 ? 1 : 0;
  result.pitchAndFamily = static_cast<unsigned char>(pitch);
  result.firstChar = first;
  result.family = GString::FromUtf8(fields[FAMILY]);
  result.style = GString::FromUtf8(fields[STYLE]);
  result.index = index;
  font = std::move(result);
  return Answer::Known;
}

void FontCache::Add(const std::string& path, int index, const FontFileStamp& stamp,
                    const FontDescription* font) {
  const std::string family = font == nullptr ? std::string() : font->family.ToUtf8();
  const std::string style = font == nullptr ? std::string() : font->style.ToUtf8();
  for (const std::string* text : {&path, &family, &style}) {
    if (text->find_first_of("\t\n") != std::string::npos) return;
  }
  std::array<char, 16> charsets = {};
  const std::uint32_t bits = font == nullptr ? 0 : font->charsets;
  const auto end = std::to_chars(charsets.data(), charsets.data() + charsets.size(), bits, 16).ptr;
  const long weight = font == nullptr ? 0 : font->weight;
  added_ += std::to_string(stamp.time) + '\t' + std::to_string(stamp.size) + '\t' +
            std::to_string(weight) + '\t' + (font != nullptr && font->italic ? '1' : '0') + '\t' +
            std::string(charsets.data(), end) + '\t' +
            std::to_string(font == nullptr ? 0 : font->pitchAndFamily) + '\t' +
            std::to_string(font == nullptr ? 0u : static_cast<unsigned>(font->firstChar)) + '\t' +
            family + '\t' + style + '\t' + std::to_string(index) + '\t' + path + '\n';
}

void FontCache::Save() {
  if (added_.empty() || file_.empty()) return;
  if (text_.back() != '\n') text_ += '\n';
  text_ += added_;
  added_.clear();
  Index();
  // Only the line that counts is kept of each font; those of files that are gone stay until the
  // cache is too large to be worth reading.
  std::string kept(HEADER);
  if (text_.size() <= static_cast<std::size_t>(LARGEST_CACHE) / 2) {
    for (const auto& [key, line] : lines_) kept.append(line).push_back('\n');
  }
  std::string aside = file_ + ".XXXXXX";
  const int descriptor = ::mkostemp(aside.data(), O_CLOEXEC);
  if (descriptor < 0) return;
  const bool written = WriteWhole(descriptor, kept);
  if (::close(descriptor) != 0 || !written || ::rename(aside.c_str(), file_.c_str()) != 0) {
    ::unlink(aside.c_str());
  }
}

}  // namespace shr::platform
