// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The states and what they read are told in docs/xml.md. Characters come from a buffer; runs of
// text, words and literals are taken from it as a whole as far as it goes, and character by
// character only where one was pushed back. Lines are not counted on the way: line feeds are
// counted when a buffer is left behind and when somebody asks. Text and plain tags, which most
// files are made of, are read in two loops that stop before anything unusual; the operations go on
// there.

#include "shared/xml/XMLScanner.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <typeinfo>

#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/RawFile.h"
#include "shared/platform/Simd.h"
#include "shared/xml/XMLNodeBuilding.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"XMLScanner";

// Lines that errors are told to be found at.
constexpr int OPEN_LINE = 100;
constexpr int NO_NAME_LINE = 300;
constexpr int OPEN_BRACKET_LINE = 337;
constexpr int NO_BRACKET_LINE = 343;
constexpr int OTHER_NAME_LINE = 406;
constexpr int OPEN_CLOSE_TAG_LINE = 413;

constexpr const wchar_t* BRACKET_TEXT = L"Invalid closing bracket";
constexpr const wchar_t* MISMATCH_TEXT = L"Closing tag mismatch";

constexpr std::size_t BUFFER_SIZE = 64 * 1024;

/// How much memory of trees that are gone is kept for the next.
constexpr std::size_t KEPT_SIZE = 256 * 1024 * 1024;

constexpr bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// What ends a word, as a table over all bytes.
constexpr std::array<bool, 256> WORD_ENDS = [] {
  std::array<bool, 256> ends{};
  for (const char c : {' ', '\t', '\n', '\v', '\f', '\r', '>', '?', '=', '/'}) {
    ends[static_cast<unsigned char>(c)] = true;
  }
  return ends;
}();

constexpr bool EndsWord(char c) {
  return WORD_ENDS[static_cast<unsigned char>(c)];
}

const char* FindWordEnd(const char* first, const char* last) {
  while (first != last && !EndsWord(*first)) ++first;
  return first;
}

/// Returns the first `c`, or `last`. What is searched mostly is short: a call would take longer.
inline const char* Find(const char* first, const char* last, char c) {
#if SHARED_HAS_SSE2
  const __m128i wanted = _mm_set1_epi8(c);
  for (; last - first >= 16; first += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(first));
    const int found = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted));
    if (found != 0) return first + std::countr_zero(static_cast<unsigned int>(found));
  }
#endif
  return std::find(first, last, c);
}

/// Requires: as many bytes as the text has are there.
inline bool IsSame(const char* bytes, std::string_view text) {
  for (const char c : text) {
    if (*bytes++ != c) return false;
  }
  return true;
}

constexpr std::string_view QUOTE_ENTITY = "&quot;";

/// Returns a copy in the arena.
std::string_view DecodedQuotes(XMLArena& arena, std::string_view value) {
  char* const decoded = arena.TakeText(value.size());
  char* next = decoded;
  for (std::size_t i = 0; i < value.size(); ++next) {
    const bool isQuote = value[i] == '&' && value.substr(i).starts_with(QUOTE_ENTITY);
    *next = isQuote ? '"' : value[i];
    i += isQuote ? QUOTE_ENTITY.size() : 1;
  }
  const auto size = static_cast<std::size_t>(next - decoded);
  arena.GiveTextBack(decoded + value.size(), value.size() - size);
  return {decoded, size};
}

std::size_t CountLines(const char* first, const char* last) {
  std::size_t lines = 0;
#if SHARED_HAS_SSE2
  const __m128i lineFeed = _mm_set1_epi8('\n');
  __m128i sums = _mm_setzero_si128();
  for (; last - first >= 16; first += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(first));
    const __m128i ones = _mm_sub_epi8(_mm_setzero_si128(), _mm_cmpeq_epi8(bytes, lineFeed));
    sums = _mm_add_epi64(sums, _mm_sad_epu8(ones, _mm_setzero_si128()));
  }
  const __m128i sum = _mm_add_epi64(sums, _mm_unpackhi_epi64(sums, sums));
  lines = static_cast<std::size_t>(_mm_cvtsi128_si64(sum));
#endif
  return lines + static_cast<std::size_t>(std::count(first, last, '\n'));
}

}  // namespace

XMLScanner::XMLScanner() : blocks_(std::make_shared<XMLBlocks>()) {
  blocks_->Limit(KEPT_SIZE);
}

XMLScanner::~XMLScanner() {
  blocks_->Limit(0);
}

XMLNode::Handle XMLScanner::ScanFile(const GString& path) {
  Reset(path);
  if (!file_.OpenNoThrow(path, CFile::AccessRead, CFile::ModeOpenExisting, CFile::ShareAll)) {
    ThrowErrorImpl(UNIT, OPEN_LINE, L"Unable to open '%s'.\n%s", path.c_str(),
                   platform::LastErrorText().c_str());
  }
  buffer_.resize(BUFFER_SIZE);
  return Scan();
}

XMLNode::Handle XMLScanner::ScanText(std::string_view text, const GString& name) {
  Reset(name);
  begin_ = next_ = text.data();
  end_ = begin_ + text.size();
  return Scan();
}

void XMLScanner::Close() {
  blocks_->Limit(KEPT_SIZE);
  file_.Close();
  begin_ = next_ = end_ = nullptr;
}

XMLNode::Handle XMLScanner::Scan() {
  /// Leaves nothing of a scan behind, however it ends.
  struct Ending {
    XMLScanner& scanner;
    ~Ending() {
      scanner.file_.Abort(false);
      scanner.begin_ = scanner.next_ = scanner.end_ = nullptr;
      scanner.root_.reset();
      scanner.current_.reset();
      scanner.node_ = nullptr;
    }
  };
  const Ending ending{*this};
  const bool isOwn = typeid(*this) == typeid(XMLScanner);
  while (state_ != StateEnd) {
    if (isOwn && state_ == StateValue && !hasUnread_) TakePlainElements();
    switch (state_) {
      case StateValue:
        ReadValue();
        break;
      case StateTagName:
        ReadTagName();
        break;
      case StateComment:
        ReadComment();
        break;
      case StateDocType:
        ReadDocType();
        break;
      case StateAttributes:
        ReadAttributes();
        break;
      case StateAttributeValue:
        ReadAttributeValue();
        break;
      case StateCloseBracket:
        CloseBracket();
        break;
      case StateCloseTag:
        if (!ReadCloseTag()) return nullptr;
        break;
      case StateEnd:
        break;
    }
  }
  return root_;
}

void XMLScanner::Reset(const GString& name) {
  file_.Close();
  begin_ = next_ = end_ = nullptr;
  linesBefore_ = 0;
  hasUnread_ = false;
  state_ = StateValue;
  root_ = XMLNode::MakeRoot(blocks_);
  SetCurrent(root_);
  fileName_ = name;
  attributeName_.clear();
}

// The current node.

const XMLNode::Handle& XMLScanner::GetCurrent() const {
  if (current_.get() != node_) current_ = node_->GetHandle();
  return current_;
}

void XMLScanner::SetCurrent(XMLNode::Handle node) {
  current_ = node == nullptr ? root_ : std::move(node);
  node_ = current_.get();
  arena_ = &node_->GetArena();
}

void XMLScanner::OpenChild() {
  node_ = XMLNode::Make(*arena_, node_);
  state_ = StateTagName;
}

void XMLScanner::CloseCurrent() {
  if (node_->HasHandle()) {
    SetCurrent(node_->GetParent());
  } else {
    node_ = node_->parent_;
  }
  state_ = StateValue;
}

// The usual way.

inline void XMLScanner::SetAttribute(std::string_view name, std::string_view value) {
  const char* const end = value.data() + value.size();
  const bool isPlain = Find(value.data(), end, QUOTE_ENTITY[0]) == end;
  node_->SetKeptAttribute(*arena_, name,
                          isPlain ? arena_->Keep(value) : DecodedQuotes(*arena_, value));
}

void XMLScanner::TakePlainElements() {
  while (TakePlainTag() && TakePlainAttributes()) {
  }
}

/// Returns whether a start tag was begun.
bool XMLScanner::TakePlainTag() {
  const char* next = next_;
  const char* const end = end_;
  XMLNode* node = node_;
  bool isBegun = false;
  while (true) {
    const char* const tag = Find(next, end, '<');
    if (tag == end) break;
    if (tag != next) node->AppendValue(*arena_, {next, static_cast<std::size_t>(tag - next)});
    next = tag;
    const auto left = static_cast<std::size_t>(end - tag);
    if (left < 3) break;
    if (tag[1] != '/') {
      const char* const nameEnd = FindWordEnd(tag + 1, end);
      if (tag[1] == '!' || nameEnd == tag + 1 || nameEnd == end) break;
      node = XMLNode::Make(*arena_, node);
      node->SetName(*arena_, {tag + 1, nameEnd});
      next = nameEnd;
      isBegun = true;
      break;
    }
    const std::string_view name = node->GetName();
    if (left < name.size() + 3 || tag[name.size() + 2] != '>' || node == root_.get()) break;
    if (!IsSame(tag + 2, name)) break;
    next = tag + name.size() + 3;
    node = node->parent_;
  }
  next_ = next;
  node_ = node;
  return isBegun;
}

/// Returns whether the tag was ended; else the state tells what is next.
bool XMLScanner::TakePlainAttributes() {
  const char* next = next_;
  const char* const end = end_;
  while (true) {
    while (next != end && IsSpace(*next)) ++next;
    const char* const nameEnd = FindWordEnd(next, end);
    if (end - nameEnd < 2) break;
    if (nameEnd == next) {
      const bool isClosed = next[0] == '/' && next[1] == '>';
      if (!isClosed && *next != '>') break;
      if (isClosed) node_ = node_->parent_;
      next_ = next + (isClosed ? 2 : 1);
      return true;
    }
    if (nameEnd[0] != '=' || nameEnd[1] != '"') break;
    const char* const value = nameEnd + 2;
    const char* const valueEnd = Find(value, end, '"');
    if (valueEnd == end) break;
    SetAttribute({next, nameEnd}, {value, valueEnd});
    next = valueEnd + 1;
  }
  next_ = next;
  state_ = StateAttributes;
  return false;
}

// Characters.

bool XMLScanner::Refill() {
  linesBefore_ += CountLines(begin_, end_);
  begin_ = next_ = end_ = nullptr;
  if (!file_.IsOpen()) return false;
  const std::uint32_t count = file_.Read(buffer_.data(), static_cast<std::uint32_t>(BUFFER_SIZE));
  begin_ = next_ = buffer_.data();
  end_ = begin_ + count;
  return count > 0;
}

char XMLScanner::ReadCharSlowly() {
  if (hasUnread_) {
    hasUnread_ = false;
    return unread_;
  }
  if (next_ == end_ && !Refill()) {
    state_ = StateEnd;
    return 0;
  }
  return *next_++;
}

void XMLScanner::Unget(char c) {
  if (state_ == StateEnd && c == 0) return;
  if (!hasUnread_ && next_ != begin_ && next_[-1] == c) {
    --next_;
    return;
  }
  unread_ = c;
  hasUnread_ = true;
}

char XMLScanner::ReadNextNonSpaceChar() {
  char c = ReadNextChar();
  while (IsSpace(c)) c = ReadNextChar();
  return c;
}

std::string XMLScanner::ReadWord() {
  return std::string(TakeWord());
}

std::string_view XMLScanner::TakeWord() {
  const char c = ReadNextNonSpaceChar();
  if (state_ == StateEnd) return {};
  if (EndsWord(c)) {
    Unget(c);
    return {};
  }
  // The character that was read is the one before `next_`, unless it had been pushed back.
  const bool isInBuffer = next_ != begin_ && next_[-1] == c;
  const char* const first = isInBuffer ? next_ - 1 : next_;
  next_ = FindWordEnd(next_, end_);
  if (isInBuffer && next_ != end_) {
    return {first, static_cast<std::size_t>(next_ - first)};
  }
  scratch_.assign(isInBuffer ? 0 : 1, c);
  scratch_.append(first, next_);
  while (next_ == end_ && Refill()) {
    next_ = FindWordEnd(next_, end_);
    scratch_.append(begin_, next_);
  }
  if (next_ == end_) state_ = StateEnd;
  return scratch_;
}

template <typename Sink>
void XMLScanner::ReadUpTo(char stop, const Sink& sink) {
  if (hasUnread_) {
    hasUnread_ = false;
    if (unread_ == stop) return;
    sink(std::string_view(&unread_, 1));
  }
  do {
    const char* const last = Find(next_, end_, stop);
    const bool isFound = last != end_;
    sink(std::string_view(next_, static_cast<std::size_t>(last - next_)));
    next_ = last;
    if (isFound) {
      ++next_;
      return;
    }
  } while (Refill());
  state_ = StateEnd;
}

void XMLScanner::SkipPast(char stop) {
  ReadUpTo(stop, [](std::string_view) {});
}

std::string XMLScanner::ReadLiteral() {
  return std::string(TakeLiteral());
}

std::string_view XMLScanner::TakeLiteral() {
  const char* const first = next_;
  const char* const last = hasUnread_ ? end_ : Find(first, end_, '"');
  if (last != end_) {
    next_ = last + 1;
    return {first, static_cast<std::size_t>(last - first)};
  }
  scratch_.clear();
  ReadUpTo('"', [this](std::string_view text) { scratch_ += text; });
  return scratch_;
}

// States.

/// Tells a comment from another declaration.
void XMLScanner::ReadDeclarationStart() {
  for (int dashes = 0; dashes < 2; ++dashes) {
    const char c = ReadNextChar();
    if (c == '-') continue;
    Unget(c);
    state_ = StateDocType;
    return;
  }
  state_ = StateComment;
}

void XMLScanner::ReadValue() {
  ReadUpTo('<', [this](std::string_view text) { node_->AppendValue(*arena_, text); });
  if (state_ == StateEnd) return;
  const char c = ReadNextChar();
  switch (c) {
    case '!':
      ReadDeclarationStart();
      return;
    case '/':
      state_ = StateCloseTag;
      return;
    case '?':
      OpenChild();
      return;
    default:
      Unget(c);
      OpenChild();
  }
}

void XMLScanner::ReadTagName() {
  const std::string_view name = TakeWord();
  if (name.empty()) Fail(L"Tag without name", NO_NAME_LINE);
  node_->SetName(*arena_, name);
  state_ = StateAttributes;
}

bool XMLScanner::ReadCloseTag() {
  const std::string_view name = TakeWord();
  // The root has no tag that could be closed.
  if (name != node_->GetName() || node_ == root_.get()) Fail(MISMATCH_TEXT, OTHER_NAME_LINE);
  if (ReadNextNonSpaceChar() != '>') Fail(MISMATCH_TEXT, OPEN_CLOSE_TAG_LINE);
  CloseCurrent();
  return true;
}

void XMLScanner::ReadAttributes() {
  attributeName_ = TakeWord();
  state_ = attributeName_.empty() ? StateCloseBracket : StateAttributeValue;
}

void XMLScanner::ReadAttributeValue() {
  std::string_view value;
  char c = ReadNextNonSpaceChar();
  if (c == '=') {
    c = ReadNextNonSpaceChar();
    if (c == '"') {
      value = TakeLiteral();
    } else {
      Unget(c);
      value = TakeWord();
    }
  } else {
    Unget(c);
  }
  SetAttribute(attributeName_, value);
  state_ = StateAttributes;
}

void XMLScanner::CloseBracket() {
  const char c = ReadNextNonSpaceChar();
  if (c == '>') {
    state_ = StateValue;
    return;
  }
  if (c != '/' && c != '?') Fail(BRACKET_TEXT, NO_BRACKET_LINE);
  if (ReadNextChar() != '>') Fail(BRACKET_TEXT, OPEN_BRACKET_LINE);
  CloseCurrent();
}

void XMLScanner::ReadComment() {
  constexpr std::string_view CLOSE = "-->";
  for (std::size_t matched = 0; matched < CLOSE.size() && state_ != StateEnd;) {
    if (matched == 0) {
      SkipPast(CLOSE[0]);
      ++matched;
    } else {
      matched = ReadNextChar() == CLOSE[matched] ? matched + 1 : 0;
    }
  }
  if (state_ != StateEnd) state_ = StateValue;
}

void XMLScanner::ReadDocType() {
  SkipPast('>');
  if (state_ != StateEnd) state_ = StateValue;
}

// Errors.

int XMLScanner::GetLine() const {
  const std::size_t lines = linesBefore_ + CountLines(begin_, next_);
  return static_cast<int>(lines) + 1 - (hasUnread_ && unread_ == '\n' ? 1 : 0);
}

void XMLScanner::Fail(const wchar_t* what, int sourceLine) const {
  ThrowErrorImpl(UNIT, sourceLine, L"Error parsing '%s', line %d:\n%s", fileName_.c_str(),
                 GetLine(), what);
}

}  // namespace shr
