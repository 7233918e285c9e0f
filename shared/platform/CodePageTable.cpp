// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/CodePageTable.h"

#include <algorithm>

namespace shr::platform {
namespace {

/// Units converted at a time on their way through the stack, small enough to stay in the nearest
/// cache.
constexpr std::size_t PART = 2048;

}  // namespace

CodePageTable::CodePageTable(StandIns standIns)
    : standIns_(standIns), keys_(BLOCK, standIns.byte), encoded_(0x10000, false) {
  units_.fill(static_cast<wchar_t>(standIns.unit));
}

void CodePageTable::SetLead(unsigned char byte) {
  if (IsLead(byte)) return;
  hasPairs_ = true;
  units_[byte] = LEAD;
  rows_[byte] = static_cast<std::uint32_t>(pairs_.size());
  pairs_.resize(pairs_.size() + BLOCK, standIns_.unit);
}

void CodePageTable::SetSingle(unsigned char byte, char16_t unit) {
  units_[byte] = static_cast<wchar_t>(unit);
}

void CodePageTable::SetPair(std::uint16_t pair, char16_t unit) {
  pairs_[rows_[pair >> 8] + (pair & 0xFF)] = unit;
}

void CodePageTable::SetEncoding(char16_t unit, std::uint16_t key) {
  std::uint16_t& block = blocks_[unit >> 8];
  if (block == 0) {
    block = static_cast<std::uint16_t>(keys_.size() / BLOCK);
    keys_.resize(keys_.size() + BLOCK, standIns_.byte);
  }
  keys_[block * BLOCK + (unit & 0xFF)] = key;
  encoded_[unit] = true;
}

bool CodePageTable::HasEncoding(char16_t unit) const noexcept {
  return encoded_[unit];
}

std::uint16_t CodePageTable::Encoding(char16_t unit) const noexcept {
  return keys_[blocks_[unit >> 8] * BLOCK + (unit & 0xFF)];
}

void CodePageTable::DecodeSingles(const unsigned char* in, std::size_t count,
                                  wchar_t* out) const noexcept {
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    out[i] = units_[in[i]];
    out[i + 1] = units_[in[i + 1]];
    out[i + 2] = units_[in[i + 2]];
    out[i + 3] = units_[in[i + 3]];
  }
  for (; i < count; ++i) out[i] = units_[in[i]];
}

CodePageTable::Progress CodePageTable::Decode(std::string_view bytes, Input input,
                                              wchar_t* out) const noexcept {
  const auto* begin = reinterpret_cast<const unsigned char*>(bytes.data());
  if (!hasPairs_) {
    DecodeSingles(begin, bytes.size(), out);
    return {bytes.size(), bytes.size()};
  }
  const unsigned char* in = begin;
  const unsigned char* end = begin + bytes.size();
  wchar_t* next = out;
  while (in < end) {
    const unsigned char first = *in;
    const wchar_t unit = units_[first];
    if (unit != LEAD) {
      *next++ = unit;
      ++in;
      continue;
    }
    if (end - in < 2 && input == Input::Continues) break;
    const bool isPair = end - in >= 2 && in[1] != 0;
    *next++ = static_cast<wchar_t>(isPair ? pairs_[rows_[first] + in[1]] : standIns_.unit);
    in += isPair ? 2 : 1;
  }
  return {static_cast<std::size_t>(in - begin), static_cast<std::size_t>(next - out)};
}

char* CodePageTable::EncodeUnit(char32_t ch, char* out) const noexcept {
  if (ch > 0xFFFF) {
    *out++ = static_cast<char>(standIns_.byte);
    if (ch <= 0x10FFFF) *out++ = static_cast<char>(standIns_.byte);
    return out;
  }
  const std::uint16_t key = Encoding(static_cast<char16_t>(ch));
  if (key > 0xFF) *out++ = static_cast<char>(key >> 8);
  *out++ = static_cast<char>(key & 0xFF);
  return out;
}

std::size_t CodePageTable::Encode(std::wstring_view text, char* out) const noexcept {
  char* next = out;
  for (const wchar_t unit : text) {
    const auto ch = static_cast<char32_t>(unit);
    next = EncodeUnit(sizeof(wchar_t) == 2 ? ch & 0xFFFF : ch, next);
  }
  return static_cast<std::size_t>(next - out);
}

void CodePageTable::AppendDecoded(std::string_view bytes, std::wstring& wide) const {
  wchar_t part[PART];
  if (bytes.size() > PART) wide.reserve(wide.size() + bytes.size() / (hasPairs_ ? 2 : 1));
  while (!bytes.empty()) {
    const bool isLast = bytes.size() <= PART;
    const Progress progress =
        Decode(bytes.substr(0, PART), isLast ? Input::Complete : Input::Continues, part);
    wide.append(part, progress.written);
    bytes.remove_prefix(progress.read);
  }
}

void CodePageTable::AppendEncoded(std::wstring_view text, std::string& narrow) const {
  char part[2 * PART];
  if (text.size() > PART) narrow.reserve(narrow.size() + text.size());
  while (!text.empty()) {
    const std::size_t count = std::min(text.size(), PART);
    narrow.append(part, Encode(text.substr(0, count), part));
    text.remove_prefix(count);
  }
}

}  // namespace shr::platform
