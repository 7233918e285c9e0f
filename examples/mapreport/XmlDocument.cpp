// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/XmlDocument.h"

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

#include "examples/common/InputError.h"
#include "shared/files/File.h"
#include "shared/platform/CodePages.h"
#include "shared/text/Utf.h"
#include "shared/xml/XMLScanner.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr std::string_view UTF8_MARK = "\xEF\xBB\xBF";
constexpr std::string_view REPLACEMENT = "\xEF\xBF\xBD";

// Encoding.

/// Names of encodings that do not tell their code page.
struct EncodingName {
  std::string_view name;
  std::uint32_t codePage;
};
constexpr std::uint32_t UTF8_PAGE = 65001;
constexpr EncodingName ENCODING_NAMES[] = {
    {"utf-8", UTF8_PAGE},  {"utf8", UTF8_PAGE}, {"us-ascii", UTF8_PAGE}, {"ascii", UTF8_PAGE},
    {"utf-16", UTF8_PAGE},  // with bytes that are none: a leftover of a conversion
    {"latin1", 28591},     {"koi8-r", 20866},   {"koi8-u", 21866},       {"shift_jis", 932},
    {"windows-31j", 932},  {"euc-jp", 20932},   {"gb2312", 936},         {"gbk", 936},
    {"gb18030", 54936},    {"big5", 950},       {"euc-kr", 949},         {"macintosh", 10000},
    {"tis-620", 874}};
constexpr EncodingName ENCODING_FAMILIES[] = {
    {"iso-8859-", 28590}, {"windows-", 0}, {"cp", 0}, {"ibm", 0}};

std::string ToLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::optional<std::uint32_t> FindCodePage(const std::string& name) {
  for (const EncodingName& known : ENCODING_NAMES) {
    if (name == known.name) return known.codePage;
  }
  for (const EncodingName& family : ENCODING_FAMILIES) {
    if (!name.starts_with(family.name)) continue;
    std::uint32_t number = 0;
    const char* const first = name.data() + family.name.size();
    const char* const last = name.data() + name.size();
    const auto [end, error] = std::from_chars(first, last, number);
    if (error == std::errc() && end == last && number <= 65535) return family.codePage + number;
  }
  return std::nullopt;
}

/// Returns what the declaration at the head of a file says of its encoding; empty without one.
std::string DeclaredEncoding(std::string_view bytes) {
  if (!bytes.starts_with("<?xml")) return std::string();
  const std::string_view head = bytes.substr(0, bytes.find('>'));
  const std::size_t word = head.find("encoding");
  if (word == std::string_view::npos) return std::string();
  const std::size_t open = head.find_first_of("\"'", word);
  if (open == std::string_view::npos) return std::string();
  return ToLower(head.substr(open + 1, head.find(head[open], open + 1) - open - 1));
}

std::string Utf8Of(std::wstring_view wide) {
  std::string text(wide.size() * UTF8_BYTES_PER_UNIT, '\0');
  text.resize(WideToUtf8(wide, text.data()));
  return text;
}

std::string DecodeUtf16(std::string_view bytes, ByteOrder order) {
  std::wstring wide((bytes.size() + 1) / 2, L'\0');
  wide.resize(Utf16ToWide(bytes, order, wide.data()));
  return Utf8Of(wide);
}

std::optional<ByteOrder> FindUtf16(std::string_view bytes, bool& hasMark) {
  hasMark = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
  if (hasMark) return bytes[0] == '\xFF' ? ByteOrder::LittleEndian : ByteOrder::BigEndian;
  if (bytes.starts_with(std::string_view("<\0", 2))) return ByteOrder::LittleEndian;
  if (bytes.starts_with(std::string_view("\0<", 2))) return ByteOrder::BigEndian;
  return std::nullopt;
}

std::string DecodePage(const std::string& bytes, const GString& name, std::uint32_t codePage) {
  std::wstring wide;
  if (!platform::AppendWide(codePage, bytes, wide)) {
    ThrowInputError(name, 1,
                    L"The system has no code page " + GString(std::to_wstring(codePage)) + L".");
  }
  return Utf8Of(wide);
}

/// Returns the text in UTF-8, without a mark, and sets `format`.
std::string Decode(std::string bytes, const GString& name, std::optional<std::uint32_t> codePage,
                   TextFormat& format) {
  format.encoding = EncodingUTF8;
  if (const auto order = FindUtf16(bytes, format.hasMark)) {
    format.encoding = *order == ByteOrder::LittleEndian ? EncodingUTF16LE : EncodingUTF16BE;
    return DecodeUtf16(std::string_view(bytes).substr(format.hasMark ? 2 : 0), *order);
  }
  format.hasMark = bytes.starts_with(UTF8_MARK);
  if (format.hasMark) return bytes.erase(0, UTF8_MARK.size());
  const std::string declared = DeclaredEncoding(bytes);
  if (!codePage && !declared.empty()) {
    codePage = FindCodePage(declared);
    if (!codePage) {
      ThrowInputError(name, 1,
                      L"The encoding " + Quoted(GString::FromUtf8(declared)) + L" is not known.");
    }
  }
  if (codePage.value_or(UTF8_PAGE) == UTF8_PAGE) return bytes;
  format.encoding = EncodingANSI;
  format.codePage = *codePage;
  return DecodePage(bytes, name, *codePage);
}

// Scanning.

/// Takes what files of the kind hold beyond what the base class reads.
class DocumentScanner : public XMLScanner {
protected:
  void ReadValue() override {
    XMLScanner::ReadValue();
    CheckEnd();
  }
  void ReadComment() override {
    XMLScanner::ReadComment();
    CheckEnd();
  }

  /// Takes sections of character data for text.
  void ReadDocType() override {
    constexpr std::string_view OPEN = "[CDATA[", CLOSE = "]]>";
    const char c = ReadNextChar();
    Unget(c);
    if (c != OPEN[0]) {
      XMLScanner::ReadDocType();
      return CheckEnd();
    }
    std::string text;
    while (GetState() != StateEnd && !text.ends_with(CLOSE)) text += ReadNextChar();
    CheckEnd();
    if (GetState() == StateEnd) return;
    text.erase(text.size() - CLOSE.size());
    text.erase(0, OPEN.size());
    AppendPlain(text);
    SetState(StateValue);
  }

  void ReadAttributeValue() override {
    std::string value;
    char c = ReadNextNonSpaceChar();
    if (c == '=') {
      c = ReadNextNonSpaceChar();
      if (c == '"') {
        value = ReadLiteral();
      } else if (c == '\'') {
        for (c = ReadNextChar(); c != '\'' && GetState() != StateEnd; c = ReadNextChar())
          value += c;
      } else {
        Unget(c);
        value = ReadWord();
      }
    } else {
      Unget(c);
    }
    GetCurrent()->SetAttribute(GetAttributeName(), value);
    SetState(StateAttributes);
  }

private:
  void CheckEnd() const {
    if (GetState() == StateEnd && GetCurrent() != GetRoot()) {
      Fail(L"The file ends inside an element.", __LINE__);
    }
  }

  /// Such text has no entities; what looks like one is written so that it is decoded to itself.
  void AppendPlain(std::string_view text) {
    for (std::size_t and_ = text.find('&'); and_ != std::string_view::npos; and_ = text.find('&')) {
      GetCurrent()->AppendValue(text.substr(0, and_));
      GetCurrent()->AppendValue("&amp;");
      text.remove_prefix(and_ + 1);
    }
    GetCurrent()->AppendValue(text);
  }
};

/// Stops at an element, which has a number in document order, and tells its line.
class LineFinder : public DocumentScanner {
public:
  explicit LineFinder(std::size_t element) : left_(element) {}
  int line = 1;

protected:
  void ReadTagName() override {
    DocumentScanner::ReadTagName();
    if (left_-- != 0) return;
    line = GetLine();
    SetState(StateEnd);
  }

private:
  std::size_t left_;
};

/// Returns the number of a node below `root` in document order, that of all nodes for the root.
std::size_t NumberOf(const XMLNode& node, const XMLNode& root) {
  std::size_t number = 0;
  std::vector<std::pair<const XMLNode*, std::size_t>> open = {{&root, 0}};
  while (!open.empty()) {
    auto& [parent, next] = open.back();
    if (next == parent->GetChildren().size()) {
      open.pop_back();
      continue;
    }
    const XMLNode* const child = parent->GetChildren()[next++].get();
    if (child == &node) break;
    ++number;
    open.emplace_back(child, 0);
  }
  return number;
}

// Text.

/// Returns the character that an entity stands for, without "&" and ";"; 0 for one that is unknown.
char32_t DecodeEntity(std::string_view name) {
  static constexpr std::pair<std::string_view, char32_t> NAMES[] = {
      {"amp", U'&'}, {"lt", U'<'}, {"gt", U'>'}, {"quot", U'"'}, {"apos", U'\''}};
  for (const auto& [known, character] : NAMES) {
    if (name == known) return character;
  }
  if (!name.starts_with('#')) return 0;
  const bool isHex = name.starts_with("#x") || name.starts_with("#X");
  const char* const first = name.data() + (isHex ? 2 : 1);
  const char* const last = name.data() + name.size();
  std::uint32_t code = 0;
  const auto [end, error] = std::from_chars(first, last, code, isHex ? 16 : 10);
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (error != std::errc() || end != last || code > 0x10FFFF || isSurrogate) return 0;
  return code;
}

void AppendUtf8(char32_t code, std::string& text) {
  const auto add = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) return add(code);
  if (code < 0x800) {
    add(0xC0 | (code >> 6));
  } else {
    if (code < 0x10000) {
      add(0xE0 | (code >> 12));
    } else {
      add(0xF0 | (code >> 18));
      add(0x80 | ((code >> 12) & 0x3F));
    }
    add(0x80 | ((code >> 6) & 0x3F));
  }
  add(0x80 | (code & 0x3F));
}

/// Entities that are unknown stay as they are.
std::string DecodeEntities(std::string_view text) {
  constexpr std::size_t LONGEST = 12;
  std::string decoded;
  for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&')) {
    decoded += text.substr(0, at);
    text.remove_prefix(at + 1);
    const std::size_t end = text.substr(0, LONGEST).find(';');
    const char32_t code = end == std::string_view::npos ? 0 : DecodeEntity(text.substr(0, end));
    if (code == 0) {
      decoded += '&';
      continue;
    }
    AppendUtf8(code, decoded);
    text.remove_prefix(end + 1);
  }
  return decoded += text;
}

bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string CollapseSpace(std::string_view text) {
  std::string words;
  for (const char c : text) {
    if (!IsSpace(c)) {
      words += c;
    } else if (!words.empty() && words.back() != ' ') {
      words += ' ';
    }
  }
  if (words.ends_with(' ')) words.pop_back();
  return words;
}

bool IsUtf8(const std::string& text) {
  std::wstring wide(text.size(), L'\0');
  const std::size_t size = Utf8ToWide(text, wide.data());
  const auto found =
      std::count(wide.begin(), wide.begin() + static_cast<std::ptrdiff_t>(size), L'\xFFFD');
  if (found == 0) return true;
  std::ptrdiff_t written = 0;
  for (std::size_t at = text.find(REPLACEMENT); at != std::string::npos;
       at = text.find(REPLACEMENT, at + 3))
    ++written;
  return found == written;
}

}  // namespace

XmlDocument::XmlDocument(std::string bytes, const GString& name,
                         std::optional<std::uint32_t> codePage)
    : name_(name) {
  if (bytes.empty()) ThrowInputError(name, 1, L"The file is empty.");
  text_ = Decode(std::move(bytes), name, codePage, format_);
  DocumentScanner scanner;
  root_ = scanner.ScanText(text_, name);
}

GString XmlDocument::Text(const XMLNode& node) const {
  const std::string text = CollapseSpace(DecodeEntities(node.GetValue()));
  if (!IsUtf8(text))
    Fail(node, L"The text is not UTF-8, as which the file is read; --codepage names another.");
  return GString::FromUtf8(text);
}

void XmlDocument::Fail(const XMLNode& node, const GString& what) const {
  LineFinder finder(NumberOf(node, *root_));
  finder.ScanText(text_, name_);
  ThrowInputError(name_, static_cast<std::size_t>(finder.line), what);
}

std::string ReadBytes(const GString& path) {
  constexpr std::uint32_t BLOCK_SIZE = 1 << 16;
  CFile file;
  file.Open(path, CFile::AccessRead, CFile::ModeOpenExisting, CFile::ShareRead);
  std::string bytes;
  std::vector<char> block(BLOCK_SIZE);
  while (const std::uint32_t count = file.Read(block.data(), BLOCK_SIZE)) {
    bytes.append(block.data(), count);
  }
  return bytes;
}

std::string_view LocalName(const XMLNode& node) {
  const std::string_view name = node.GetName();
  return name.substr(name.rfind(':') + 1);
}

const XMLNode* FindChild(const XMLNode& node, std::string_view localName) {
  for (const XMLNode::Handle& child : node.GetChildren()) {
    if (LocalName(*child) == localName) return child.get();
  }
  return nullptr;
}

}  // namespace mapreport
