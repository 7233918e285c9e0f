// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/common/TextFormat.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "examples/common/InputError.h"
#include "shared/files/File.h"
#include "shared/files/FileUtility.h"
#include "shared/text/Utf.h"

namespace examples {

using namespace shr;

namespace {

constexpr std::size_t CHUNK = 64 * 1024;
constexpr wchar_t REPLACEMENT = L'\xFFFD';
constexpr unsigned int SAMPLE_SIZE = 512;

/// Damaged UTF-8 has far more good sequences than bad ones; text of another encoding the reverse.
constexpr std::size_t GOOD_PER_BAD = 4;

/// How the bytes are read while they are looked at.
enum class Reading { Utf8, Utf16LittleEndian, Utf16BigEndian };

/// What one pass over a file finds. Lines count from 1; 0 means none.
struct Facts {
  std::size_t bytes = 0;
  std::size_t line = 1;
  std::size_t lineLength = 0;
  std::size_t longLine = 0;
  std::size_t zeroLine = 0;
  std::size_t badLine = 0;
  std::size_t badCount = 0;
  std::size_t goodCount = 0;  ///< characters above ASCII that are well formed
  std::size_t zerosAtEven = 0;
  std::size_t zerosAtOdd = 0;
};

void CountZeroBytes(std::string_view bytes, Facts& facts) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] == '\0') ++((facts.bytes + i) % 2 == 0 ? facts.zerosAtEven : facts.zerosAtOdd);
  }
}

/// Replacement characters that stand in the file itself are no damage.
std::size_t CountWrittenReplacements(std::string_view bytes) {
  std::size_t count = 0;
  for (std::size_t at = bytes.find("\xEF\xBF\xBD"); at != std::string_view::npos;
       at = bytes.find("\xEF\xBF\xBD", at + 3)) {
    ++count;
  }
  return count;
}

void LookAtUnit(wchar_t unit, Facts& facts) {
  if (unit == L'\n') {
    ++facts.line;
    facts.lineLength = 0;
    return;
  }
  if (++facts.lineLength > LONGEST_LINE && facts.longLine == 0) facts.longLine = facts.line;
  if (unit == L'\0' && facts.zeroLine == 0) facts.zeroLine = facts.line;
  if (unit >= 0x80 && unit != REPLACEMENT) ++facts.goodCount;
}

void LookAtText(std::wstring_view text, std::size_t writtenReplacements, Facts& facts) {
  std::size_t replacements = 0;
  std::size_t line = 0;
  for (const wchar_t unit : text) {
    LookAtUnit(unit, facts);
    if (unit == REPLACEMENT && ++replacements == 1) line = facts.line;
  }
  if (replacements <= writtenReplacements) return;
  facts.badCount += replacements - writtenReplacements;
  if (facts.badLine == 0) facts.badLine = line;
}

class FileScan {
public:
  explicit FileScan(Reading reading) : reading_(reading), wide_(CHUNK + 8, L'\0') {}

  Facts Run(const GString& path, std::size_t markSize) {
    CFile file(path, CFile::AccessRead, CFile::ModeOpenExisting, CFile::ShareAll);
    file.Seek(static_cast<std::int64_t>(markSize), CFile::OriginBegin);
    std::string buffer;
    while (const std::size_t count = Append(file, buffer)) {
      CountZeroBytes(std::string_view(buffer).substr(buffer.size() - count), facts_);
      facts_.bytes += count;
      const std::size_t whole = CompleteLength(buffer);
      LookAt(std::string_view(buffer).substr(0, whole));
      buffer.erase(0, whole);
    }
    LookAt(buffer);
    return facts_;
  }

private:
  static std::size_t Append(CFile& file, std::string& buffer) {
    const std::size_t kept = buffer.size();
    buffer.resize(CHUNK);
    const std::size_t count =
        file.Read(buffer.data() + kept, static_cast<unsigned int>(CHUNK - kept));
    buffer.resize(kept + count);
    return count;
  }

  ByteOrder Order() const {
    return reading_ == Reading::Utf16BigEndian ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
  }

  std::size_t CompleteLength(std::string_view bytes) const {
    if (reading_ == Reading::Utf8) return Utf8CompleteLength(bytes);
    return Utf16CompleteLength(bytes, Order());
  }

  void LookAt(std::string_view bytes) {
    if (reading_ == Reading::Utf8) {
      const std::size_t count = Utf8ToWide(bytes, wide_.data());
      LookAtText(std::wstring_view(wide_).substr(0, count), CountWrittenReplacements(bytes),
                 facts_);
      return;
    }
    // Only an odd last byte is bad here, and it is told from the size.
    const std::size_t count = Utf16ToWide(bytes, Order(), wide_.data());
    LookAtText(std::wstring_view(wide_).substr(0, count), count, facts_);
  }

  Reading reading_;
  std::wstring wide_;
  Facts facts_;
};

Reading ReadingOf(bool hasMark, TextEncoding encoding) {
  if (hasMark && encoding == EncodingUTF16LE) return Reading::Utf16LittleEndian;
  if (hasMark && encoding == EncodingUTF16BE) return Reading::Utf16BigEndian;
  return Reading::Utf8;
}

/// Text in UTF-16 shows by the zero halves of its line ends and ASCII letters. Returns true when
/// `encoding` was found.
bool FindUtf16(const GString& path, const Facts& facts, TextEncoding& encoding) {
  const bool little = facts.zerosAtOdd > facts.zerosAtEven;
  const ConfidenceLevel confidence =
      little ? IsFileUTF16LE(path, SAMPLE_SIZE) : IsFileUTF16BE(path, SAMPLE_SIZE);
  if (facts.bytes % 2 != 0 || confidence == ConfidenceNo) return false;
  const std::size_t fewer = std::min(facts.zerosAtEven, facts.zerosAtOdd);
  const std::size_t more = std::max(facts.zerosAtEven, facts.zerosAtOdd);
  encoding = little ? EncodingUTF16LE : EncodingUTF16BE;
  return more > 8 * fewer && more > facts.bytes / 8;
}

void CheckMarked(const GString& path, const Facts& facts, const TextFormat& format) {
  if (format.encoding == EncodingUTF8 && facts.badLine != 0) {
    ThrowInputError(path, facts.badLine, L"The text is not UTF-8, although its mark says so.");
  }
  if (format.encoding != EncodingUTF8 && facts.bytes % 2 != 0) {
    ThrowInputError(path, facts.line, L"The UTF-16 text ends inside a character.");
  }
}

void DecideUnmarked(const GString& path, const Facts& facts, std::optional<std::uint32_t> codePage,
                    TextFormat& format) {
  if (codePage) {
    format.encoding = EncodingANSI;
    format.codePage = *codePage;
    return;
  }
  if (facts.zeroLine != 0 && FindUtf16(path, facts, format.encoding)) return;
  if (facts.badCount == 0) {
    format.encoding = EncodingUTF8;
    format.isAscii = facts.goodCount == 0;
    return;
  }
  if (facts.goodCount >= GOOD_PER_BAD * facts.badCount) {
    ThrowInputError(path, facts.badLine, L"The UTF-8 text is damaged or cut off here.");
  }
  format.encoding = EncodingANSI;
}

}  // namespace

GString TextFormat::Describe() const {
  const wchar_t* const mark = hasMark ? L" with mark" : L" without mark";
  switch (encoding) {
    case EncodingUTF8:
      return isAscii ? GString(L"ASCII") : GString(L"UTF-8") + mark;
    case EncodingUTF16LE:
      return GString(L"UTF-16LE") + mark;
    case EncodingUTF16BE:
      return GString(L"UTF-16BE") + mark;
    default:
      return GString(L"code page ") + std::to_wstring(codePage).c_str();
  }
}

TextFormat DetectTextFormat(const GString& path, std::optional<std::uint32_t> codePage) {
  std::size_t markSize = 0;
  TextFormat format;
  GetBOMInfo(path, markSize, format.encoding);
  format.hasMark = markSize != 0;
  const Facts facts = FileScan(ReadingOf(format.hasMark, format.encoding)).Run(path, markSize);
  if (facts.bytes == 0) ThrowInputError(path, 1, L"The file is empty.");
  if (facts.longLine != 0) {
    ThrowInputError(path, facts.longLine, L"The line is longer than 1048576 characters.");
  }
  if (format.hasMark) {
    CheckMarked(path, facts, format);
  } else {
    DecideUnmarked(path, facts, codePage, format);
  }
  const bool utf16 = format.encoding == EncodingUTF16LE || format.encoding == EncodingUTF16BE;
  if (facts.zeroLine != 0 && (format.hasMark || !utf16)) {
    ThrowInputError(path, facts.zeroLine, L"The line holds a zero character; this is no text.");
  }
  return format;
}

}  // namespace examples
