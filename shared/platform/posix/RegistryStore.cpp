// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Names are compared in the folded form of NameFold.h.
//
// The keys are one flat map from folded paths. A key's subkeys are the entries behind it whose path
// goes on with a separator; no operation walks the tree, and no recursion follows its depth.
//
// A file is ASCII text: a first line with the format's version, a serial number, the length of the
// rest and a checksum, then a line for each key and each value. The checksum is the CRC-32 of W. W.
// Peterson and D. T. Brown, "Cyclic Codes for Error Detection", 1961, with the parameters of ISO
// 3309; it finds every changed byte and every burst up to 32 bits, and the length every truncation.

#include "shared/platform/posix/RegistryStore.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "shared/platform/posix/NameFold.h"
#include "shared/text/Utf.h"

namespace shr::platform {
namespace {

constexpr std::string_view MAGIC = "shared-registry ";
constexpr std::string_view VERSION = "1 ";
constexpr std::size_t SERIAL_DIGITS = 16;
constexpr std::size_t LENGTH_DIGITS = 16;
constexpr std::size_t CHECKSUM_DIGITS = 8;
constexpr std::size_t SERIAL_AT = MAGIC.size() + VERSION.size();
constexpr std::size_t LENGTH_AT = SERIAL_AT + SERIAL_DIGITS + 1;
constexpr std::size_t CHECKSUM_AT = LENGTH_AT + LENGTH_DIGITS + 1;
static_assert(CHECKSUM_AT + CHECKSUM_DIGITS + 1 == RegistryStore::HEADER_SIZE);

constexpr char16_t SEPARATOR = u'\\';
constexpr std::size_t KEY_NAME_LIMIT = 255;
constexpr std::size_t DEPTH_LIMIT = 512;
constexpr std::size_t VALUE_NAME_LIMIT = 16383;

std::u16string Fold(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& unit : folded) unit = FoldNameUnit(unit);
  return folded;
}

/// Returns the path of the key above, which is the root's for a key directly below it.
std::u16string_view ParentOf(std::u16string_view path) {
  const std::size_t separator = path.rfind(SEPARATOR);
  return separator == std::u16string_view::npos ? std::u16string_view() : path.substr(0, separator);
}

// CRC-32, reflected, a byte at a time.

constexpr std::uint32_t CRC_POLYNOMIAL = 0xEDB88320u;

constexpr std::array<std::uint32_t, 256> MakeCrcTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
    std::uint32_t rest = byte;
    for (int bit = 0; bit < 8; ++bit) rest = rest >> 1 ^ (rest & 1 ? CRC_POLYNOMIAL : 0);
    table[byte] = rest;
  }
  return table;
}

constexpr std::array<std::uint32_t, 256> CRC_TABLE = MakeCrcTable();

std::uint32_t AddToCrc(std::uint32_t crc, std::string_view bytes) {
  for (const char c : bytes)
    crc = crc >> 8 ^ CRC_TABLE[(crc ^ static_cast<unsigned char>(c)) & 0xFF];
  return crc;
}

/// Returns the checksum of a file from the part of its first line before the checksum and the rest.
std::uint32_t Checksum(std::string_view head, std::string_view body) {
  return ~AddToCrc(AddToCrc(~std::uint32_t{0}, head), body);
}

// Writing.

constexpr char HEX_DIGITS[] = "0123456789abcdef";

void AppendHex(std::string& out, std::uint64_t value, std::size_t digits) {
  for (std::size_t i = digits; i-- > 0;) out += HEX_DIGITS[value >> (4 * i) & 0xF];
}

/// Units that stand for themselves between double quotes.
bool IsPlain(char16_t unit) {
  return unit >= u' ' && unit <= u'~' && unit != u'"' && unit != u'%';
}

void AppendUnit(std::string& out, char16_t unit) {
  if (IsPlain(unit)) {
    out += static_cast<char>(unit);
  } else {
    out += '%';
    AppendHex(out, unit, 4);
  }
}

void AppendQuoted(std::string& out, std::u16string_view text) {
  out += '"';
  for (const char16_t unit : text) AppendUnit(out, unit);
  out += '"';
}

unsigned ByteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

bool IsTextType(RegistryType type) {
  return type == RegistryType::Text || type == RegistryType::ExpandableText ||
         type == RegistryType::TextList;
}

void AppendData(std::string& out, const RegistryValue& value) {
  const std::string_view bytes = value.bytes;
  if (IsTextType(value.type) && bytes.size() % 2 == 0) {
    out += '"';
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
      AppendUnit(out, static_cast<char16_t>(ByteAt(bytes, i) | ByteAt(bytes, i + 1) << 8));
    }
    out += '"';
    return;
  }
  out += 'x';
  for (std::size_t i = 0; i < bytes.size(); ++i) AppendHex(out, ByteAt(bytes, i), 2);
}

}  // namespace

// Reading.

/// Reads the lines behind the header. Every function returns false and sets the fault when the text
/// is not as it should be.
class RegistryStoreReader {
public:
  RegistryStoreReader(std::string_view body, RegistryStore& store, RegistryStore::Fault& fault)
      : body_(body), store_(store), fault_(fault) {}

  bool ReadAll() {
    while (pos_ < body_.size()) {
      const bool read = body_[pos_] == '[' ? ReadKey() : ReadValue();
      if (!read) return false;
      if (!Take('\n')) return Fail("a line does not end where it should");
      ++line_;
    }
    return true;
  }

private:
  bool ReadKey() {
    std::u16string path;
    if (!Take('[') || !ReadQuoted(path) || !Take(']')) return Fail("the name of a key is damaged");
    std::u16string folded = Fold(path);
    if (!store_.keys_.contains(ParentOf(folded)))
      return Fail("a key comes before the one above it");
    key_ = &store_.keys_.try_emplace(std::move(folded), RegistryStore::Key{std::move(path), {}})
                .first->second;
    return true;
  }

  bool ReadValue() {
    if (!key_) return Fail("a value comes before the first key");
    RegistryStore::NamedValue value;
    if (!ReadQuoted(value.name) || !Take(' ')) return Fail("the name of a value is damaged");
    std::uint32_t type = 0;
    if (!ReadNumber(type) || !Take(' ')) return Fail("the type of a value is damaged");
    value.value.type = static_cast<RegistryType>(type);
    if (!ReadData(value.value.bytes)) return Fail("the data of a value is damaged");
    std::u16string folded = Fold(value.name);
    key_->values.try_emplace(std::move(folded), std::move(value));
    return true;
  }

  bool ReadNumber(std::uint32_t& number) {
    const char* const first = body_.data() + pos_;
    const auto [end, error] = std::from_chars(first, body_.data() + body_.size(), number);
    pos_ += static_cast<std::size_t>(end - first);
    return error == std::errc();
  }

  bool ReadData(std::string& bytes) {
    if (Take('x')) return ReadHexBytes(bytes);
    std::u16string text;
    if (!ReadQuoted(text)) return false;
    bytes.reserve(2 * text.size());
    for (const char16_t unit : text) {
      bytes += static_cast<char>(unit & 0xFF);
      bytes += static_cast<char>(unit >> 8);
    }
    return true;
  }

  bool ReadHexBytes(std::string& bytes) {
    std::uint32_t byte = 0;
    while (pos_ < body_.size() && body_[pos_] != '\n') {
      if (!ReadHex(2, byte)) return false;
      bytes += static_cast<char>(byte);
    }
    return true;
  }

  bool ReadQuoted(std::u16string& text) {
    if (!Take('"')) return false;
    while (!Take('"')) {
      if (pos_ == body_.size()) return false;
      std::uint32_t unit = static_cast<unsigned char>(body_[pos_++]);
      if (unit == '%') {
        if (!ReadHex(4, unit)) return false;
      } else if (!IsPlain(static_cast<char16_t>(unit))) {
        return false;
      }
      text += static_cast<char16_t>(unit);
    }
    return true;
  }

  bool ReadHex(std::size_t digits, std::uint32_t& value) {
    if (body_.size() - pos_ < digits) return false;
    const char* const first = body_.data() + pos_;
    const auto [end, error] = std::from_chars(first, first + digits, value, 16);
    if (error != std::errc() || end != first + digits) return false;
    pos_ += digits;
    return true;
  }

  bool Take(char c) {
    if (pos_ == body_.size() || body_[pos_] != c) return false;
    ++pos_;
    return true;
  }

  bool Fail(const char* reason) {
    fault_ = {line_, reason};
    return false;
  }

  static constexpr std::size_t FIRST_BODY_LINE = 2;

  std::string_view body_;
  RegistryStore& store_;
  RegistryStore::Fault& fault_;
  RegistryStore::Key* key_ = nullptr;
  std::size_t pos_ = 0;
  std::size_t line_ = FIRST_BODY_LINE;
};

namespace {

/// Reads a field of the first line, which must be hexadecimal digits as `AppendHex` writes them.
bool ReadField(std::string_view header, std::size_t at, std::size_t digits, std::uint64_t& value) {
  const std::string_view field = header.substr(at, digits);
  if (field.find_first_not_of(HEX_DIGITS) != std::string_view::npos) return false;
  return std::from_chars(field.data(), field.data() + digits, value, 16).ec == std::errc();
}

}  // namespace

RegistryStatus RegistryStore::NormalizePath(const GString& path, std::u16string& normalized) {
  const std::u16string given = ToName(path);
  if (!given.empty() && given.front() == SEPARATOR) return RegistryStatus::BadPath;
  normalized.clear();
  std::size_t depth = 0;
  for (std::size_t pos = 0; pos < given.size();) {
    const std::size_t end = std::min(given.find(SEPARATOR, pos), given.size());
    const std::size_t length = end - pos;
    if (length > KEY_NAME_LIMIT) return RegistryStatus::InvalidParameter;
    if (length > 0) {
      if (++depth > DEPTH_LIMIT) return RegistryStatus::InvalidParameter;
      if (!normalized.empty()) normalized += SEPARATOR;
      normalized.append(given, pos, length);
    }
    pos = end + 1;
  }
  return RegistryStatus::Success;
}

std::u16string RegistryStore::ToName(const GString& name) {
  const std::wstring_view terminated = name.c_str();
  std::u16string units(terminated.size() * sizeof(wchar_t) / sizeof(char16_t), u'\0');
  std::string bytes(units.size() * sizeof(char16_t), '\0');
  const std::size_t size = WideToUtf16(terminated, ByteOrder::LittleEndian, bytes.data());
  units.resize(size / sizeof(char16_t));
  for (std::size_t i = 0; i < units.size(); ++i) {
    units[i] = static_cast<char16_t>(ByteAt(bytes, 2 * i) | ByteAt(bytes, 2 * i + 1) << 8);
  }
  return units;
}

bool RegistryStore::HasKey(std::u16string_view path) const {
  return FindKey(path) != nullptr;
}

bool RegistryStore::CreateKey(std::u16string_view path) {
  if (HasKey(path)) return false;
  for (std::size_t end = 0; end < path.size(); ++end) {
    end = std::min(path.find(SEPARATOR, end), path.size());
    const std::u16string_view head = path.substr(0, end);
    if (HasKey(head)) continue;
    // The keys above keep the spelling under which they were made.
    const std::u16string_view parent = ParentOf(head);
    std::u16string spelled = FindKey(parent)->path;
    spelled += head.substr(parent.size());
    keys_.emplace(Fold(head), Key{std::move(spelled), {}});
  }
  return true;
}

RegistryStatus RegistryStore::RemoveKey(std::u16string_view path) {
  const std::u16string folded = Fold(path);
  const auto key = keys_.find(folded);
  if (key == keys_.end()) return RegistryStatus::NotFound;
  const std::u16string below = folded + SEPARATOR;
  const auto next = keys_.lower_bound(below);
  const bool hasSubkeys = next != keys_.end() && next->first.starts_with(below);
  if (path.empty() || hasSubkeys) return RegistryStatus::AccessDenied;
  keys_.erase(key);
  return RegistryStatus::Success;
}

RegistryStatus RegistryStore::Find(std::u16string_view path, std::u16string_view name,
                                   const RegistryValue*& value) const {
  const Key* const key = FindKey(path);
  if (!key) return RegistryStatus::KeyDeleted;
  const auto found = key->values.find(Fold(name));
  if (found == key->values.end()) return RegistryStatus::NotFound;
  value = &found->second.value;
  return RegistryStatus::Success;
}

RegistryStatus RegistryStore::Set(std::u16string_view path, const std::u16string& name,
                                  const RegistryValue& value) {
  if (name.size() > VALUE_NAME_LIMIT) return RegistryStatus::InvalidParameter;
  Key* const key = FindKey(path);
  if (!key) return RegistryStatus::KeyDeleted;
  const auto [entry, isNew] = key->values.try_emplace(Fold(name), NamedValue{name, value});
  if (!isNew) entry->second.value = value;
  return RegistryStatus::Success;
}

RegistryStatus RegistryStore::RemoveValue(std::u16string_view path, std::u16string_view name) {
  Key* const key = FindKey(path);
  if (!key) return RegistryStatus::KeyDeleted;
  return key->values.erase(Fold(name)) > 0 ? RegistryStatus::Success : RegistryStatus::NotFound;
}

std::string RegistryStore::Write(std::uint64_t serial) const {
  std::string body;
  for (const auto& [folded, key] : keys_) {
    body += '[';
    AppendQuoted(body, key.path);
    body += "]\n";
    for (const auto& [foldedName, named] : key.values) {
      AppendQuoted(body, named.name);
      body += ' ';
      body += std::to_string(static_cast<std::uint32_t>(named.value.type));
      body += ' ';
      AppendData(body, named.value);
      body += '\n';
    }
  }
  std::string file(MAGIC);
  file.reserve(HEADER_SIZE + body.size());
  file += VERSION;
  AppendHex(file, serial, SERIAL_DIGITS);
  file += ' ';
  AppendHex(file, body.size(), LENGTH_DIGITS);
  file += ' ';
  AppendHex(file, Checksum(file, body), CHECKSUM_DIGITS);
  file += '\n';
  return file += body;
}

RegistryStore::ReadResult RegistryStore::CheckHeader(std::string_view header,
                                                     std::uint64_t fileSize, Fault& fault) {
  if (!header.starts_with(MAGIC)) {
    fault = {1, "it does not begin as such a file does"};
    return ReadResult::Damaged;
  }
  if (header.substr(MAGIC.size(), VERSION.size()) != VERSION) {
    fault = {1, "it is of another version"};
    return ReadResult::UnknownVersion;
  }
  std::uint64_t length = 0, number = 0;
  const bool complete = header.size() >= HEADER_SIZE && header[LENGTH_AT - 1] == ' ' &&
                        header[CHECKSUM_AT - 1] == ' ' && header[HEADER_SIZE - 1] == '\n' &&
                        ReadField(header, SERIAL_AT, SERIAL_DIGITS, number) &&
                        ReadField(header, LENGTH_AT, LENGTH_DIGITS, length) &&
                        ReadField(header, CHECKSUM_AT, CHECKSUM_DIGITS, number);
  if (!complete) {
    fault = {1, "its first line is damaged"};
    return ReadResult::Damaged;
  }
  if (length != fileSize - HEADER_SIZE) {
    fault = {0, "its length is not the one it should have"};
    return ReadResult::Damaged;
  }
  return ReadResult::Ok;
}

RegistryStore::ReadResult RegistryStore::Read(std::string_view file, std::uint64_t& serial,
                                              Fault& fault) {
  *this = RegistryStore();
  const ReadResult result = CheckHeader(file.substr(0, HEADER_SIZE), file.size(), fault);
  if (result != ReadResult::Ok) return result;
  std::uint64_t checksum = 0;
  ReadField(file, SERIAL_AT, SERIAL_DIGITS, serial);
  ReadField(file, CHECKSUM_AT, CHECKSUM_DIGITS, checksum);
  const std::string_view body = file.substr(HEADER_SIZE);
  if (checksum != Checksum(file.substr(0, CHECKSUM_AT), body)) {
    fault = {0, "its checksum does not fit its content"};
    return ReadResult::Damaged;
  }
  return ReadBody(body, fault);
}

RegistryStore::ReadResult RegistryStore::ReadBody(std::string_view body, Fault& fault) {
  *this = RegistryStore();
  if (RegistryStoreReader(body, *this, fault).ReadAll()) return ReadResult::Ok;
  *this = RegistryStore();
  return ReadResult::Damaged;
}

const RegistryStore::Key* RegistryStore::FindKey(std::u16string_view path) const {
  const auto found = keys_.find(Fold(path));
  return found != keys_.end() ? &found->second : nullptr;
}

RegistryStore::Key* RegistryStore::FindKey(std::u16string_view path) {
  const auto found = keys_.find(Fold(path));
  return found != keys_.end() ? &found->second : nullptr;
}

}  // namespace shr::platform
