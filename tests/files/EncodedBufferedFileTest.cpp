// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Reading and writing. The grid: encoding x mark x line end x (requested, keepEncoding); damaged
// and cut input; lines around the sizes of pieces, scratch and block; reading and writing in turn;
// every way to fail.

#include "shared/files/EncodedBufferedFile.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/files/BufferedFile.h"
#include "shared/files/TextCodec.h"
#include "shared/platform/CodePages.h"
#include "shared/platform/TextMode.h"
#include "tests/files/TextFiles.h"

namespace shr {
namespace {

using namespace std::string_literals;
using test::Opening;
using test::OpenText;
using test::ReadLines;
using test::ReadUnits;
using test::ScratchFile;
using test::Utf16Bytes;
using test::Utf8Bytes;

using Lines = std::vector<std::wstring>;

constexpr auto LITTLE = ByteOrder::LittleEndian;
constexpr auto BIG = ByteOrder::BigEndian;
constexpr TextEncoding ENCODINGS[] = {EncodingANSI, EncodingUTF8, EncodingUTF16LE, EncodingUTF16BE};
constexpr unsigned SEED = 20261121;

/// The block in which files are read.
constexpr std::size_t BLOCK = 128 * 1024;

std::string Encode(std::wstring_view text, TextEncoding encoding, unsigned codePage = 1252) {
  if (encoding == EncodingUTF8) return Utf8Bytes(text);
  if (encoding != EncodingANSI) return Utf16Bytes(text, encoding == EncodingUTF16LE ? LITTLE : BIG);
  std::string bytes;
  EXPECT_TRUE(platform::AppendNarrow(codePage, text, bytes));
  return bytes;
}

GString DescriptionOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Exception& error) {
    EXPECT_EQ(error.GetModule(), L"Shared");
    EXPECT_EQ(error.GetSrcFile(), L"EncodedBufferedFile");
    return error.GetDescription();
  }
  return L"nothing was thrown";
}

bool StartsWith(const GString& text, const GString& head) {
  return text.String().starts_with(head.String());
}

// Reading.

TEST(EncodedBufferedFile, everyFormIsReadTheSameWay) {
  const Lines expected = {L"caf\xE9", L"", L"\x20AC 12", L"last"};
  for (const TextEncoding encoding : ENCODINGS) {
    for (const bool isMarked : {false, true}) {
      for (const wchar_t* lineEnd : {L"\n", L"\r\n"}) {
        for (const bool isClosedByLineEnd : {false, true}) {
          std::wstring text = isMarked && encoding != EncodingANSI ? L"\xFEFF" : L"";
          for (const std::wstring& line : expected) {
            text += line;
            if (isClosedByLineEnd || line != expected.back()) text += lineEnd;
          }
          const ScratchFile file(Encode(text, encoding));
          for (const wchar_t* mode : {L"r", L"rb", L"rt+"}) {
            SCOPED_TRACE(Utf8Bytes(text) + std::to_string(encoding));
            EXPECT_EQ(ReadLines(file.Path(), {mode, encoding, true}), expected);
            const bool isRecognised = encoding != EncodingUTF8 || isMarked;
            if (!isRecognised) continue;
            EXPECT_EQ(ReadLines(file.Path(), {mode, encoding}), expected);
          }
        }
      }
    }
  }
}

TEST(EncodedBufferedFile, damagedTextIsReadToItsEnd) {
  const struct {
    const char* name;
    std::string bytes;
    TextEncoding encoding;
    std::wstring text;
  } rows[] = {
      {"empty", "", EncodingUTF8, L""},
      {"mark alone", "\xEF\xBB\xBF", EncodingUTF8, L""},
      {"mark alone LE", "\xFF\xFE", EncodingUTF16LE, L""},
      {"cut mark", "\xEF\xBB", EncodingUTF8, L"\xFFFD"},
      {"second mark is text", "\xEF\xBB\xBF\xEF\xBB\xBFx", EncodingUTF8, L"\xFEFFx"},
      {"one byte of a unit", "a", EncodingUTF16LE, L"\xFFFD"},
      {"odd end", "a\0b"s, EncodingUTF16LE, L"a\xFFFD"},
      {"odd end BE", "\0a\nb\n"s, EncodingUTF16BE, L"a\x0A62\xFFFD"},
      {"bad bytes",
       "a\xFF"
       "b\xC3\n",
       EncodingUTF8,
       L"a\xFFFD"
       L"b\xFFFD\n"},
      {"cut at the end", "ab\xE2\x82", EncodingUTF8, L"ab\xFFFD"},
      {"overlong", "\xC0\xAF", EncodingUTF8, L"\xFFFD\xFFFD"},
      {"zeros", "a\0b\n\0"s, EncodingUTF8, L"a\0b\n\0"s},
      {"control Z",
       "a\x1A"
       "b\n",
       EncodingUTF8,
       L"a\x1A"
       L"b\n"},
      {"lone return", "a\rb\r", EncodingUTF8, L"a\rb\r"},
      {"pair", "\x3D\xD8\x00\xDE"s, EncodingUTF16LE, L"\U0001F600"},
      {"pair BE", "\xD8\x3D\xDE\x00"s, EncodingUTF16BE, L"\U0001F600"},
      {"halves", "\x00\xDE\x3D\xD8"s, EncodingUTF16LE, {wchar_t(0xDE00), wchar_t(0xD83D)}},
      {"line feed byte in a unit", "\x0A\x01\x0A\x00"s, EncodingUTF16LE, L"\x010A\n"},
      {"four bytes", "\xF0\x9F\x98\x80", EncodingUTF8, L"\U0001F600"},
  };
  for (const auto& row : rows) {
    const ScratchFile file(row.bytes);
    EXPECT_EQ(ReadUnits(file.Path(), {L"rb", row.encoding, true}), row.text) << row.name;
  }
}

TEST(EncodedBufferedFile, linesOfAnyLengthComeBackWhole) {
  const std::size_t lengths[] = {
      0,     1,         253,           254,       255,          256,       300,
      510,   2047,      2048,          2049,      4096,         BLOCK - 2, BLOCK - 1,
      BLOCK, BLOCK + 1, 2 * BLOCK - 1, 2 * BLOCK, 3 * BLOCK + 7};
  for (const TextEncoding encoding : ENCODINGS) {
    Lines lines;
    std::wstring text;
    for (const std::size_t length : lengths) {
      // A character of two bytes in UTF-8 meets every border at one parity or the other.
      lines.push_back(std::wstring(length % 2, L'x') + std::wstring(length, L'\xE9'));
      text += lines.back() + (length % 3 == 0 ? L"\r\n" : L"\n");
    }
    const ScratchFile file(Encode(text, encoding));
    EXPECT_EQ(ReadLines(file.Path(), {L"rb", encoding, true}), lines) << encoding;
    EXPECT_EQ(ReadUnits(file.Path(), {L"rb", encoding, true}), text) << encoding;
  }
}

TEST(EncodedBufferedFile, lineEndsAcrossTheBlockBorderAreFound) {
  for (const TextEncoding encoding : ENCODINGS) {
    const std::size_t unitSize = Encode(L"x", encoding).size();
    for (std::size_t before = BLOCK / unitSize - 4; before <= BLOCK / unitSize + 2; ++before) {
      const std::wstring first(before, L'x');
      const ScratchFile file(Encode(first + L"\r\nsecond\r\n", encoding));
      const Lines expected = {first, L"second"};
      EXPECT_EQ(ReadLines(file.Path(), {L"rt", encoding, true}), expected) << before;
    }
  }
}

TEST(EncodedBufferedFile, multiBytePagesAreConvertedInPiecesOf255Bytes) {
  // The two bytes of the 128th character stand in different pieces.
  const std::string pairs(300, '\x82');
  std::wstring first;
  std::wstring second;
  ASSERT_TRUE(platform::AppendWide(932, pairs.substr(0, 255), first));
  ASSERT_TRUE(platform::AppendWide(932, pairs.substr(255) + "\n", second));
  const ScratchFile file(pairs + "\n");
  EXPECT_EQ(ReadUnits(file.Path(), {L"rb", EncodingANSI, true, 932}), first + second);

  // A page of single bytes never shows its pieces, nor does a short line.
  const ScratchFile shortLine("\x82\xA0\x82\xA2\r\n");
  EXPECT_EQ(ReadLines(shortLine.Path(), {L"rt", EncodingANSI, true, 932}), Lines{L"\x3042\x3044"});
}

TEST(EncodedBufferedFile, wholeLinesOfMultiBytePagesLoseNothing) {
  const std::wstring sentence = L"ab\x4E2D\x6587";
  for (const unsigned page : {932u, 936u, 949u, 50220u, 52936u}) {
    Lines lines;
    std::string bytes;
    for (const std::size_t count : {1u, 60u, 200u, 70'000u, 2u}) {
      lines.push_back({});
      for (std::size_t i = 0; i < count; ++i) lines.back() += sentence;
      platform::AppendNarrow(page, lines.back(), bytes);
      bytes += '\n';
    }
    lines.push_back(sentence);
    platform::AppendNarrow(page, sentence, bytes);
    const ScratchFile file(bytes);
    CEncodedBufferedFile in;
    in.SetWholeLines(true);
    in.Open(file.Path(), L"rb", CEncodedBufferedFile::ShareAll, EncodingANSI, page, true, false);
    EXPECT_TRUE(ReadLines(in) == lines) << page;
    EXPECT_EQ(in.GetPosition(), static_cast<std::int64_t>(bytes.size())) << page;
    in.SeekToBegin();
    in.SetWholeLines(false);
    EXPECT_FALSE(ReadLines(in) == lines) << page;
    const CEncodedBufferedFile copy(in);
    EXPECT_FALSE(copy.GetWholeLines());
  }
}

TEST(EncodedBufferedFile, aTildeAtTheEndOfALineOfHzJoinsTheNext) {
  const struct {
    const char* name;
    std::string bytes;
    Lines lines;
  } rows[] = {
      {"alone", "one\n~\ntwo\n", {L"one", L"two"}},
      {"many, then the end", "one\n~\n~\n~\n", {L"one"}},
      {"behind text", "one~\ntwo\nthree", {L"onetwo", L"three"}},
      {"two are one tilde", "one~~\ntwo\n", {L"one~", L"two"}},
      {"behind a long line",
       std::string(140'000, 'x') + "~\ny\n",
       {std::wstring(140'000, L'x') + L"y"}},
  };
  for (const auto& row : rows) {
    const ScratchFile file(row.bytes);
    for (const bool isWhole : {false, true}) {
      CEncodedBufferedFile in = OpenText(file.Path(), {L"rb", EncodingANSI, true, 52936});
      in.SetWholeLines(isWhole);
      EXPECT_EQ(ReadLines(in), row.lines) << row.name;
      EXPECT_EQ(in.GetPosition(), in.GetLength()) << row.name;
    }
  }
}

TEST(EncodedBufferedFile, theEndOfAGrowingFileMovesAlikeInBothClasses) {
  for (const wchar_t* const mode : {L"rb", L"rt"}) {
    const ScratchFile file("one\ntw");
    CEncodedBufferedFile wide = OpenText(file.Path(), {mode, EncodingANSI, true});
    CBufferedFile narrow(file.Path(), mode, CBufferedFile::ShareAll, false);
    const auto expectBoth = [&](const char* expected) {
      std::wstring wideLine;
      std::string narrowLine;
      EXPECT_EQ(wide.ReadString(wideLine), narrow.ReadString(narrowLine)) << expected;
      EXPECT_EQ(narrowLine, expected);
      EXPECT_EQ(wideLine, std::wstring(narrowLine.begin(), narrowLine.end()));
      EXPECT_EQ(wide.EndOfFile(), narrow.EndOfFile()) << expected;
    };
    expectBoth("one");
    expectBoth("tw");
    expectBoth("");
    CBufferedFile more(file.Path(), L"ab", CBufferedFile::ShareAll, false);
    more.WriteString("o\nthree\n");
    more.Flush();
    expectBoth("o");
    EXPECT_EQ(wide.Getc(), L't');
    EXPECT_EQ(narrow.Getc(), 't');
    expectBoth("hree");
    EXPECT_EQ(narrow.Getc(), -1);
    EXPECT_EQ(wide.Getc(), CEncodedBufferedFile::END_OF_TEXT);
    more.WriteString("four");
    more.Flush();
    EXPECT_FALSE(wide.EndOfFile());
    EXPECT_FALSE(narrow.EndOfFile());
    expectBoth("four");
  }
}

TEST(EncodedBufferedFile, readStringAppendsAndTellsEmptyLinesFromTheEnd) {
  const ScratchFile file("one\n\ntwo");
  CEncodedBufferedFile in = OpenText(file.Path(), {});
  std::wstring line = L"before ";
  EXPECT_TRUE(in.ReadString(line));
  EXPECT_EQ(line, L"before one");
  EXPECT_TRUE(in.ReadString(line));
  EXPECT_EQ(line, L"before one");
  EXPECT_FALSE(in.EndOfFile());
  EXPECT_TRUE(in.ReadString(line));
  EXPECT_EQ(line, L"before onetwo");
  EXPECT_TRUE(in.EndOfFile());
  EXPECT_FALSE(in.ReadString(line));
  EXPECT_EQ(line, L"before onetwo");
}

TEST(EncodedBufferedFile, unitsAreGivenBackAndReadAgain) {
  const ScratchFile file("ab\ncd\n");
  CEncodedBufferedFile in = OpenText(file.Path(), {});
  EXPECT_EQ(in.UnGetc(L'>'), L'>');
  std::wstring line;
  EXPECT_TRUE(in.ReadString(line));
  EXPECT_EQ(line, L">ab");
  EXPECT_EQ(in.Getc(), L'c');
  EXPECT_EQ(in.UnGetc(L'C'), L'C');
  EXPECT_EQ(in.Getc(), L'C');
  EXPECT_EQ(in.Getc(), L'd');
  line.clear();
  EXPECT_TRUE(in.ReadString(line));
  EXPECT_EQ(line, L"");
  EXPECT_EQ(in.Getc(), CEncodedBufferedFile::END_OF_TEXT);
  EXPECT_EQ(in.UnGetc(CEncodedBufferedFile::END_OF_TEXT), CEncodedBufferedFile::END_OF_TEXT);
  EXPECT_TRUE(in.EndOfFile());
  EXPECT_EQ(in.UnGetc(L'!'), L'!');
  EXPECT_FALSE(in.EndOfFile());
  EXPECT_EQ(in.Getc(), L'!');
}

TEST(EncodedBufferedFile, aLineFeedGivenBackEndsALineOfItsOwn) {
  const ScratchFile file("ab\ncd\nef");
  CEncodedBufferedFile in = OpenText(file.Path(), {});
  const auto next = [&in] {
    std::wstring line;
    return in.ReadString(line) ? line : L"(end)";
  };
  EXPECT_EQ(in.UnGetc(L'\n'), L'\n');
  EXPECT_EQ(next(), L"");
  EXPECT_EQ(next(), L"ab");
  EXPECT_EQ(in.UnGetc(L'\n'), L'\n');
  EXPECT_EQ(next(), L"") << "behind a line that was taken whole";
  EXPECT_EQ(in.Getc(), L'c');
  EXPECT_EQ(in.Getc(), L'd');
  EXPECT_EQ(in.Getc(), L'\n');
  EXPECT_EQ(in.UnGetc(L'\n'), L'\n');
  EXPECT_EQ(next(), L"") << "the line feed that was just read";
  EXPECT_EQ(next(), L"ef");
  EXPECT_EQ(in.UnGetc(L'\n'), L'\n');
  EXPECT_EQ(next(), L"") << "at the end";
  EXPECT_EQ(next(), L"(end)");
}

TEST(EncodedBufferedFile, whatWasGivenBackMovesAlong) {
  const ScratchFile file("ab\ncd\nef");
  CEncodedBufferedFile in = OpenText(file.Path(), {});
  EXPECT_EQ(in.Getc(), L'a');
  in.UnGetc(L'>');
  CEncodedBufferedFile made(std::move(in));
  std::wstring line;
  EXPECT_TRUE(made.ReadString(line));
  EXPECT_EQ(line, L">b");
  EXPECT_EQ(made.Getc(), L'c');
  EXPECT_EQ(made.Getc(), L'd');
  EXPECT_EQ(made.Getc(), L'\n');
  made.UnGetc(L'+');
  CEncodedBufferedFile assigned;
  assigned = std::move(made);
  line.clear();
  EXPECT_TRUE(assigned.ReadString(line));
  EXPECT_EQ(line, L"+ef") << "what stands for a line feed begins the next line";
  // NOLINTBEGIN(bugprone-use-after-move): a file that was moved from holds nothing
  for (CEncodedBufferedFile* const source : {&in, &made}) {
    EXPECT_FALSE(source->IsOpen() || source->ReadString(line));
    EXPECT_EQ(source->Getc(), CEncodedBufferedFile::END_OF_TEXT);
  }
  // NOLINTEND(bugprone-use-after-move)
}

TEST(EncodedBufferedFile, theLastCodePointOfThePlaneIsGivenBackToo) {
  const ScratchFile file(
      "\xFF\xFF"
      "a\0"s);
  CEncodedBufferedFile in = OpenText(file.Path(), {L"rb", EncodingUTF16LE, true});
  in.UnGetc(in.Getc());
  EXPECT_EQ(in.Getc(), CEncodedBufferedFile::END_OF_TEXT);
  EXPECT_FALSE(in.EndOfFile());
  EXPECT_EQ(in.Getc(), L'a');
}

TEST(EncodedBufferedFile, linesEndWhereTheFileSaysEvenWhenThePageSwallowsTheLineFeed) {
  // 81 is a lead byte in page 932; the line feed behind it is no second byte.
  const ScratchFile file("a\x81\n\x81\nb\nc");
  const Opening opening = {L"rb", EncodingANSI, true, 932};
  const Lines whole = ReadLines(file.Path(), opening);
  CEncodedBufferedFile in = OpenText(file.Path(), opening);
  Lines peeked;
  for (std::wstring line; !in.EndOfFile(); line.clear()) {
    in.UnGetc(in.Getc());
    ASSERT_TRUE(in.ReadString(line));
    peeked.push_back(line);
  }
  EXPECT_EQ(peeked, whole);
  EXPECT_EQ(whole.size(), 4u);
}

// Writing.

TEST(EncodedBufferedFile, newFilesGetTheirMarkAndOldOnesKeepTheirEncoding) {
  const std::string old = "\xFF\xFEo\0"s;
  const struct {
    const char* name;
    const wchar_t* mode;
    TextEncoding encoding;
    std::string before;
    std::string after;  ///< when x was written
  } rows[] = {
      {"new", L"wb", EncodingUTF8, old, "\xEF\xBB\xBFx"},
      {"new LE", L"wb+", EncodingUTF16LE, old, "\xFF\xFEx\0"s},
      {"new BE", L"wb", EncodingUTF16BE, old, "\xFE\xFF\0x"s},
      {"new ANSI", L"wb", EncodingANSI, old, "x"},
      {"append to an empty file", L"ab", EncodingUTF8, "", "\xEF\xBB\xBFx"},
      {"append with reading", L"ab+", EncodingUTF16BE, "", "\xFE\xFF\0x"s},
      {"the mark decides", L"ab", EncodingUTF8, old, old + "x\0"s},
      {"the mark decides with reading", L"ab+", EncodingUTF16BE, old, old + "x\0"s},
      {"no mark, as asked", L"ab", EncodingUTF16LE, "o", "ox\0"s},
      {"ANSI has no marks", L"ab", EncodingANSI, old, old + "x"},
      {"overwriting", L"rb+", EncodingUTF16LE, old + "ld"s, "\xFF\xFEx\0ld"s},
  };
  for (const auto& row : rows) {
    const ScratchFile file(row.before);
    CEncodedBufferedFile out = OpenText(file.Path(), {row.mode, row.encoding});
    out.WriteString(L"x");
    EXPECT_EQ(out.GetLength(), static_cast<std::int64_t>(row.after.size())) << row.name;
    out.Close();
    EXPECT_EQ(file.GetBytes(), row.after) << row.name;
  }
}

TEST(EncodedBufferedFile, aFileThatCannotBeReadGetsNoSecondMark) {
  const std::string old = "\xEF\xBB\xBFo";
  const ScratchFile file(old);
  CBufferedFile denying(file.Path(), L"ab", CBufferedFile::ShareWrite, false);
  CEncodedBufferedFile out(file.Path(), L"ab", CEncodedBufferedFile::ShareWrite, EncodingUTF8, 0,
                           false, false);
  out.WriteString(L"x");
  out.Close();
  denying.Close();
  EXPECT_EQ(file.GetBytes(), old + "x");
}

TEST(EncodedBufferedFile, theMarkIsWrittenEvenAlone) {
  const ScratchFile file;
  OpenText(file.Path(), {L"w", EncodingUTF8}).Close();
  EXPECT_EQ(file.GetBytes(), "\xEF\xBB\xBF");
  EXPECT_EQ(ReadLines(file.Path(), {L"r", EncodingANSI}), Lines{});
}

TEST(EncodedBufferedFile, lineFeedsBecomeWhatTheTargetUsesInTextMode) {
  const std::wstring text = L"a\nb\r\n\n";
  const bool isTranslated = platform::TextModeTranslatesLineEnds();
  const std::wstring stored = isTranslated ? L"a\r\nb\r\r\n\r\n" : text;
  for (const TextEncoding encoding : ENCODINGS) {
    const std::wstring mark = encoding == EncodingANSI ? L"" : L"\xFEFF";
    const ScratchFile file;
    OpenText(file.Path(), {L"wt", encoding}).WriteString(text);
    EXPECT_EQ(file.GetBytes(), Encode(mark + stored, encoding)) << encoding;
    EXPECT_EQ(ReadUnits(file.Path(), {L"rt", encoding, true}), text) << encoding;
    EXPECT_EQ(ReadUnits(file.Path(), {L"rb", encoding, true}), stored) << encoding;
    OpenText(file.Path(), {L"wb", encoding}).WriteString(text);
    EXPECT_EQ(file.GetBytes(), Encode(mark + text, encoding)) << encoding;
  }
}

TEST(EncodedBufferedFile, pairsMayComeInTwoCalls) {
  const struct {
    TextEncoding encoding;
    unsigned codePage;
    std::string pair;
    std::string half;  ///< a high surrogate, then x
  } rows[] = {{EncodingUTF8, 0, "\xEF\xBB\xBF\xF0\x9F\x98\x80", "\xEF\xBB\xBF\xEF\xBF\xBDx"},
              {EncodingUTF16LE, 0, "\xFF\xFE\x3D\xD8\x00\xDE"s, "\xFF\xFE\x3D\xD8x\0"s},
              {EncodingUTF16BE, 0, "\xFE\xFF\xD8\x3D\xDE\x00"s, "\xFE\xFF\xD8\x3D\0x"s},
              {EncodingANSI, 65001, "\xF0\x9F\x98\x80", "\xEF\xBF\xBDx"}};
  for (const auto& row : rows) {
    const Opening opening = {L"wb", row.encoding, false, row.codePage};
    const ScratchFile file;
    CEncodedBufferedFile out = OpenText(file.Path(), opening);
    out.Putc(static_cast<unsigned short>(0xD83D));
    out.Flush();
    out.Putc(static_cast<unsigned short>(0xDE00));
    out.Close();
    EXPECT_EQ(file.GetBytes(), row.pair) << row.encoding;
    out = OpenText(file.Path(), opening);
    out.WriteString(std::wstring(1, wchar_t(0xD83D)));
    out.WriteString(L"");
    out.Putc(L'x');
    out.Close();
    EXPECT_EQ(file.GetBytes(), row.half) << row.encoding;
  }
}

void AppendCodePoint(unsigned long ch, std::wstring& text) {
  if (sizeof(wchar_t) != 2 || ch < 0x10000) {
    text.push_back(static_cast<wchar_t>(ch));
  } else {
    text.push_back(static_cast<wchar_t>(0xD7C0 + (ch >> 10)));
    text.push_back(static_cast<wchar_t>(0xDC00 | (ch & 0x3FF)));
  }
}

std::wstring RandomText(std::mt19937& random, TextEncoding encoding) {
  static const std::wstring latin = L"abc xyz\r\n\n\t\x1A\xE9\xFC\x20AC\x2013"s + L'\0';
  std::wstring text;
  const std::size_t count = random() % 10 == 0 ? 70000 : random() % 600;
  while (text.size() < count) {
    if (encoding == EncodingANSI || random() % 2 != 0) {
      text.push_back(latin[random() % latin.size()]);
      continue;
    }
    const auto ch = random() % 4 == 0 ? random() % 0x10FFFE : random() % 0x3000;
    const bool isSurrogate = ch >= 0xD800 && ch < 0xE000;
    if (!isSurrogate && ch != 0xFFFF) AppendCodePoint(ch, text);
  }
  return text;
}

TEST(EncodedBufferedFile, randomTextComesBackFromEveryEncoding) {
  SCOPED_TRACE(SEED);
  std::mt19937 random(SEED);
  for (int round = 0; round < 60; ++round) {
    const TextEncoding encoding = ENCODINGS[round % 4];
    const wchar_t* const kinds[] = {L"b", L"t"};
    const std::wstring kind = kinds[random() % 2];
    const std::wstring text = RandomText(random, encoding);
    const ScratchFile file;
    CEncodedBufferedFile out = OpenText(file.Path(), {L"w" + kind, encoding});
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t count = random() % 100;
      out.WriteString(text.substr(at, count));
      at += count;
    }
    out.Close();
    EXPECT_EQ(ReadUnits(file.Path(), {L"r" + kind, encoding, true}), text) << round;
  }
}

// Reading and writing in turn, positions.

TEST(EncodedBufferedFile, readingAndWritingTakeTurnsAtThePosition) {
  for (const TextEncoding encoding : ENCODINGS) {
    const std::wstring mark = encoding == EncodingANSI ? L"" : L"\xFEFF";
    const auto sizeOf = [&](std::wstring_view text) {
      return static_cast<std::int64_t>(Encode(mark + std::wstring(text), encoding).size());
    };
    const ScratchFile file;
    CEncodedBufferedFile both = OpenText(file.Path(), {L"wb+", encoding});
    EXPECT_EQ(both.GetPosition(), sizeOf(L""));
    both.WriteString(L"first\nsecond\nthird\n");
    EXPECT_EQ(both.GetPosition(), sizeOf(L"first\nsecond\nthird\n"));
    EXPECT_TRUE(both.EndOfFile());
    both.SeekToBegin();
    EXPECT_EQ(both.GetPosition(), sizeOf(L""));
    std::wstring line;
    EXPECT_TRUE(both.ReadString(line));
    EXPECT_EQ(both.GetPosition(), sizeOf(L"first\n"));
    both.WriteString(L"SECON");
    EXPECT_EQ(both.Getc(), L'd');
    both.SeekToEnd();
    EXPECT_EQ(both.Getc(), CEncodedBufferedFile::END_OF_TEXT);
    both.WriteString(L"fourth");
    both.SeekToBegin();
    EXPECT_EQ(ReadLines(both), (Lines{L"first", L"SECONd", L"third", L"fourth"}));
    both.Close();
    EXPECT_EQ(file.GetBytes(), Encode(mark + L"first\nSECONd\nthird\nfourth", encoding));
  }
}

TEST(EncodedBufferedFile, appendingReadsFromTheStartAndWritesToTheEnd) {
  const ScratchFile file("\xEF\xBB\xBFone\ntwo\n");
  CEncodedBufferedFile both = OpenText(file.Path(), {L"ab+", EncodingUTF8});
  EXPECT_EQ(both.GetPosition(), 3);
  std::wstring line;
  EXPECT_TRUE(both.ReadString(line));
  EXPECT_EQ(line, L"one");
  both.WriteString(L"three\n");
  EXPECT_EQ(both.GetPosition(), both.GetLength());
  EXPECT_TRUE(both.EndOfFile());
  both.SeekToBegin();
  EXPECT_EQ(ReadLines(both), (Lines{L"one", L"two", L"three"}));
}

TEST(EncodedBufferedFile, codePageCanChangeOnTheWay) {
  const ScratchFile file("\xE0\n\xE0\n");
  CEncodedBufferedFile in = OpenText(file.Path(), {});
  EXPECT_EQ(in.Getc(), L'\xE0');
  EXPECT_EQ(in.Getc(), L'\n');
  in.SetCodePage(1251);
  EXPECT_EQ(in.GetCodePage(), 1251u);
  EXPECT_EQ(in.Getc(), L'\x0430');
}

// Life of an object.

TEST(EncodedBufferedFile, abandonedFilesAreWrittenOrRemoved) {
  const ScratchFile kept;
  OpenText(kept.Path(), {L"w"}).WriteString(L"text");
  EXPECT_EQ(kept.GetBytes(), "text");
  const ScratchFile removed;
  {
    CEncodedBufferedFile out(removed.Path(), L"w", CEncodedBufferedFile::ShareNone, EncodingANSI,
                             1252, false, true);
    out.WriteString(L"text");
  }
  EXPECT_FALSE(removed.Exists());
  const ScratchFile aborted;
  CEncodedBufferedFile out = OpenText(aborted.Path(), {L"w"});
  out.Abort(true);
  EXPECT_FALSE(out.IsOpen());
  EXPECT_TRUE(out.GetFilePath().empty());
  EXPECT_FALSE(aborted.Exists());
}

TEST(EncodedBufferedFile, copiesHoldNoFileAndMovesTakeItOver) {
  const ScratchFile file("a\nb\n");
  CEncodedBufferedFile original = OpenText(file.Path(), {L"r", EncodingANSI, false, 1250});
  const CEncodedBufferedFile copy = original;
  EXPECT_FALSE(copy.IsOpen());
  EXPECT_EQ(copy.GetCodePage(), 1250u);
  EXPECT_EQ(original.Getc(), L'a');
  CEncodedBufferedFile taken = std::move(original);
  EXPECT_EQ(taken.GetFilePath(), file.Path());
  EXPECT_EQ(taken.Getc(), L'\n');
  taken = copy;
  EXPECT_FALSE(taken.IsOpen());
}

TEST(EncodedBufferedFile, objectsWithoutFileReadNothingAndRefuseToWrite) {
  CEncodedBufferedFile none;
  std::wstring line = L"kept";
  EXPECT_FALSE(none.ReadString(line));
  EXPECT_EQ(line, L"kept");
  EXPECT_EQ(none.Getc(), CEncodedBufferedFile::END_OF_TEXT);
  EXPECT_EQ(none.UnGetc(L'x'), CEncodedBufferedFile::END_OF_TEXT);
  EXPECT_TRUE(none.EndOfFile());
  EXPECT_EQ(none.GetPosition(), -1);
  EXPECT_EQ(none.GetLength(), -1);
  none.Flush();
  none.Close();
  EXPECT_THROW(none.WriteString(L"x"), InternalErrorException);
  EXPECT_THROW(none.Putc(L'x'), InternalErrorException);
  EXPECT_THROW(none.SeekToBegin(), InternalErrorException);
  EXPECT_THROW(none.SeekToEnd(), InternalErrorException);
}

// Failures.

TEST(EncodedBufferedFile, whatCannotBeOpenedIsToldOrReturned) {
  const ScratchFile file("text");
  const struct {
    const char* name;
    GString path;
    const wchar_t* mode;
  } rows[] = {{"missing", ScratchFile().Path(), L"r"},
              {"missing, to overwrite", ScratchFile().Path(), L"r+"},
              {"folder", file.Folder(), L"r"},
              {"folder, to write", file.Folder(), L"w"},
              {"folder missing", file.Folder() + L"/none/file", L"w"},
              {"no mode", file.Path(), L"x"},
              {"upper case", file.Path(), L"R"},
              {"two kinds", file.Path(), L"rbt"},
              {"twice", file.Path(), L"r++"},
              {"suffix", file.Path(), L"r,ccs=UTF-8"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    for (const TextEncoding encoding : ENCODINGS) {
      CEncodedBufferedFile in;
      const auto share = CEncodedBufferedFile::ShareAll;
      EXPECT_FALSE(in.OpenNoThrow(row.path, row.mode, share, encoding, 0, false, false));
      EXPECT_FALSE(in.IsOpen());
      const GString text =
          DescriptionOf([&] { in.Open(row.path, row.mode, share, encoding, 0, false, false); });
      const GString head = L"Unable to open '" + row.path + L"'.\n";
      EXPECT_TRUE(StartsWith(text, head) && text.size() > head.size()) << text;
    }
  }
  EXPECT_EQ(file.GetBytes(), "text");
}

TEST(EncodedBufferedFile, wrongArgumentsAreFaultsOfTheCaller) {
  const ScratchFile file("text");
  CEncodedBufferedFile in;
  const auto open = [&](const GString& path, const GString& mode, int sharing, int encoding) {
    in.OpenNoThrow(path, mode, static_cast<CEncodedBufferedFile::Sharing>(sharing),
                   static_cast<TextEncoding>(encoding), 1252, false, false);
  };
  EXPECT_THROW(open(L"", L"r", 3, 0), InternalErrorException);
  EXPECT_THROW(open(file.Path(), L"", 3, 0), InternalErrorException);
  EXPECT_THROW(open(file.Path(), L"r", 4, 0), InternalErrorException);
  EXPECT_THROW(open(file.Path(), L"r", -1, 0), InternalErrorException);
  EXPECT_EQ(DescriptionOf([&] { open(file.Path(), L"r", 3, 7); }), INVALID_PARAMETER_TEXT);
  open(file.Path(), L"r", 3, 0);
  EXPECT_THROW(open(file.Path(), L"r", 3, 0), InternalErrorException);
}

TEST(EncodedBufferedFile, sharingBindsTheNextOpener) {
  const ScratchFile file("text");
  const auto open = [&](const wchar_t* mode, CEncodedBufferedFile::Sharing sharing) {
    CEncodedBufferedFile opened;
    opened.OpenNoThrow(file.Path(), mode, sharing, EncodingANSI, 0, false, false);
    return opened;
  };
  const CEncodedBufferedFile first = open(L"r", CEncodedBufferedFile::ShareRead);
  ASSERT_TRUE(first.IsOpen());
  EXPECT_TRUE(open(L"r", CEncodedBufferedFile::ShareRead).IsOpen());
  EXPECT_FALSE(open(L"r+", CEncodedBufferedFile::ShareAll).IsOpen());
  EXPECT_FALSE(open(L"w", CEncodedBufferedFile::ShareAll).IsOpen());
  EXPECT_FALSE(open(L"r", CEncodedBufferedFile::ShareNone).IsOpen());
  EXPECT_EQ(file.GetBytes(), "text");
}

TEST(EncodedBufferedFile, wrongDirectionsAreErrors) {
  const ScratchFile file("text");
  CEncodedBufferedFile in = OpenText(file.Path(), {L"r"});
  in.WriteString(L"x");
  EXPECT_TRUE(StartsWith(DescriptionOf([&] { in.Flush(); }), L"Unable to write '"));
  in.Close();
  CEncodedBufferedFile out = OpenText(file.Path(), {L"a"});
  EXPECT_TRUE(StartsWith(DescriptionOf([&] { out.Getc(); }), L"Unable to read '"));
  EXPECT_TRUE(out.EndOfFile() == (out.GetPosition() == out.GetLength()));
}

TEST(EncodedBufferedFile, pagesThatCannotBeConvertedAreErrors) {
  constexpr unsigned NO_PAGE = 64000;
  ASSERT_FALSE(platform::IsCodePageServed(NO_PAGE));
  const ScratchFile file("text");
  CEncodedBufferedFile in = OpenText(file.Path(), {L"r", EncodingANSI, false, NO_PAGE});
  EXPECT_TRUE(StartsWith(DescriptionOf([&] { in.Getc(); }), L"Unable to read '"));
  CEncodedBufferedFile out = OpenText(file.Path(), {L"a", EncodingANSI, false, NO_PAGE});
  EXPECT_TRUE(StartsWith(DescriptionOf([&] { out.WriteString(L"x"); }), L"Unable to write '"));
}

// The codec by itself, with the line ends of the other target.

TEST(TextCodec, decoderJoinsCarriageReturnAndLineFeedAtTheEndOnly) {
  for (const TextEncoding encoding : ENCODINGS) {
    for (const unsigned codePage : {1252u, 932u}) {
      TextDecoder decoder({encoding, codePage, LineEnds::CarriageReturnLineFeed});
      for (const auto& [stored, seen] :
           {std::pair(L"a\r\n", L"a\n"), std::pair(L"\r\r\n", L"\r\n"), std::pair(L"a\r", L"a\r"),
            std::pair(L"\r\n", L"\n"), std::pair(L"a\rb\n", L"a\rb\n")}) {
        std::wstring text = L"\r";
        const std::string bytes = Encode(stored, encoding);
        EXPECT_EQ(decoder.Take(bytes, 0, TakenText::Rest, text).bytes, bytes.size());
        EXPECT_EQ(text, std::wstring(L"\r") + seen) << encoding;
      }
    }
  }
}

TEST(TextCodec, lineEndsAreFoundAtUnitsOnly) {
  for (std::size_t before = 0; before < 40; ++before) {
    const std::wstring text = std::wstring(before, L'\x0A0A') + L"\n" + L"tail";
    for (const TextEncoding encoding : {EncodingUTF16LE, EncodingUTF16BE}) {
      TextDecoder decoder({encoding, 0, LineEnds::AsStored});
      const std::string bytes = Encode(text, encoding);
      const auto take = [&](std::size_t searched) {
        std::wstring taken;
        return decoder.Take(bytes, searched, TakenText::Line, taken).bytes;
      };
      EXPECT_EQ(take(0), 2 * before + 2);
      EXPECT_EQ(take(2 * before + 1), 2 * before + 2);
      EXPECT_EQ(take(2 * before + 2), 0u);
    }
  }
}

TEST(TextCodec, linesAreDecodedAsUtf8ToWideDoes) {
  const std::string_view parts[] = {"a",        "name,12.5",    "\xC3\xA9",
                                    "\xD0\x96", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80",
                                    "\xE4\xB8", "\x80",         "0123456789abcde"};
  const unsigned seed = 20265;
  std::mt19937 random(seed);
  for (int round = 0; round < 3000; ++round) {
    std::string line;
    for (auto count = random() % 40; count > 0; --count) line += parts[random() % std::size(parts)];
    line += '\n';
    std::wstring expected(line.size(), L'\0');
    expected.resize(Utf8ToWide(line, expected.data()));
    // What follows may be short of what the blocks load; the sanitizer sees the end.
    const std::string following(random() % 70, 'z');
    const std::vector<char> exact = [&] {
      const std::string all = line + following;
      return std::vector<char>(all.begin(), all.end());
    }();
    TextDecoder decoder({EncodingUTF8, 0, LineEnds::AsStored, false});
    std::wstring text = L"<";
    const Taken taken = decoder.Take({exact.data(), exact.size()}, 0, TakenText::Line, text);
    ASSERT_TRUE(taken.isLine);
    ASSERT_EQ(taken.bytes, line.size()) << "seed " << seed << ", round " << round;
    ASSERT_EQ(text, L"<" + expected) << "seed " << seed << ", round " << round;
  }
}

TEST(TextCodec, encoderWritesBothLineEnds) {
  for (const TextEncoding encoding : ENCODINGS) {
    TextEncoder encoder({encoding, 1252, LineEnds::CarriageReturnLineFeed});
    std::string bytes;
    encoder.Append(L"a\n\nb\r\n", bytes);
    EXPECT_EQ(bytes, Encode(L"a\r\n\r\nb\r\r\n", encoding));
  }
}

}  // namespace
}  // namespace shr
