// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `XMLScanner`, a small, forgiving reader of XML files into trees of `XMLNode`
/// (shared/xml/XMLNode.h).
///
/// It knows elements, attributes, text, comments, processing instructions and a document type, all
/// as bytes; of the entities it decodes "&quot;" in attribute values alone. It validates nothing
/// and knows no namespaces. docs/xml.md tells what it takes and what it refuses.
///
///     XMLScanner scanner;
///     std::shared_ptr<XMLNode> root = scanner.ScanFile(L"track.gpx");
///     if (auto gpx = root->FindChild("gpx", 0)) Report(gpx->GetAttribute("version"));
///
/// Threads: one thread a scanner; scanners do not share anything.

#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "shared/Export.h"
#include "shared/files/File.h"
#include "shared/text/GString.h"
#include "shared/xml/XMLNode.h"

namespace shr {

class XMLBlocks;

/// A state machine, each state of which is the business of one virtual operation. A class that
/// reads one construct in another way overrides its operation, which takes characters from
/// `ReadNextChar` and its kin, changes the current node, and says by `SetState` what comes next.
///
/// Unclosed elements at the end of a file stay open and the root is returned; a file that ends
/// inside a tag is an error. Nothing here recurses. Memory: what the tree holds and a buffer of 64
/// kB. When a tree is gone while its scanner is there, the scanner keeps up to 256 MB of what the
/// tree took for the next one. Cost: O(bytes).
class SHARED_API XMLScanner {
public:
  XMLScanner();
  virtual ~XMLScanner();
  XMLScanner(const XMLScanner&) = delete;
  XMLScanner& operator=(const XMLScanner&) = delete;

  /// Reads a file, which others may read and write meanwhile, and returns the root of a new tree,
  /// or an empty handle when `ReadCloseTag` returned false. The scanner keeps nothing of the tree.
  /// Errors: `Exception` "Unable to open '%s'.\n%s" with the path and the system's text, "Error
  /// parsing '%s', line %d:\n%s" with the path, the number of the line and what is wrong there; the
  /// file is closed and the scanner ready for the next one.
  XMLNode::Handle ScanFile(const GString& path);

  /// Reads text that is in memory; `name` stands in messages for the path.
  XMLNode::Handle ScanText(std::string_view text, const GString& name);

  /// Closes the file, which `ScanFile` does itself in the end, and gives back the memory that is
  /// kept for the next tree.
  void Close();

protected:
  enum State : int {
    StateValue = 0,           ///< `ReadValue`
    StateTagName = 1,         ///< `ReadTagName`
    StateComment = 2,         ///< `ReadComment`
    StateDocType = 3,         ///< `ReadDocType`
    StateAttributes = 4,      ///< `ReadAttributes`
    StateAttributeValue = 5,  ///< `ReadAttributeValue`
    StateCloseBracket = 6,    ///< `CloseBracket`
    StateCloseTag = 7,        ///< `ReadCloseTag`
    StateEnd = 8              ///< the end of the input; scanning stops
  };

  /// Reads character data up to the next "<" into the value of the current node; from what follows
  /// it, chooses the state and makes a child for an element or a processing instruction.
  virtual void ReadValue();
  /// Reads the name of the current node.
  virtual void ReadTagName();
  /// Reads an end tag, which must have the current node's name, and makes the parent current.
  /// Returns false to give the scan up.
  virtual bool ReadCloseTag();
  /// Reads the name of the next attribute, if there is one.
  virtual void ReadAttributes();
  /// Reads "=" and the value of the attribute, in double quotes or a word; without "=" it is empty.
  virtual void ReadAttributeValue();
  /// Reads the end of a start tag: ">", "/>" or "?>".
  virtual void CloseBracket();
  /// Skips a comment up to the first "-->" that a plain matcher sees: behind a mismatch it begins
  /// anew with the next character, so that "--->" does not end a comment.
  virtual void ReadComment();
  /// Skips a declaration up to the first ">".
  virtual void ReadDocType();

  /// Returns the next character. At the end of the input the state becomes `StateEnd` and 0 is
  /// returned; a zero byte of the file leaves the state alone.
  char ReadNextChar() {
    if (next_ != end_ && !hasUnread_) [[likely]]
      return *next_++;
    return ReadCharSlowly();
  }
  /// Makes `c` the next character. One may wait at a time; behind the end of the input none does.
  void Unget(char c);
  /// Skips space, tab, line feed, vertical tab, form feed and carriage return.
  char ReadNextNonSpaceChar();
  /// Skips white space and reads up to white space, ">", "?", "=", "/" or the end.
  std::string ReadWord();
  /// Reads up to the next double quote and takes that, too.
  std::string ReadLiteral();

  State GetState() const { return state_; }
  void SetState(State state) { state_ = state; }
  const XMLNode::Handle& GetRoot() const { return root_; }
  const XMLNode::Handle& GetCurrent() const;
  /// An empty handle, as the parent of the root is, makes the root current.
  void SetCurrent(XMLNode::Handle node);
  /// The name that `ReadAttributes` has read.
  const std::string& GetAttributeName() const { return attributeName_; }
  void SetAttributeName(std::string name) { attributeName_ = std::move(name); }
  /// The line of the next character, from 1.
  int GetLine() const;
  const GString& GetFileName() const { return fileName_; }

  /// Raises "Error parsing ..." for the current line; `sourceLine` tells where it was found.
  [[noreturn]] void Fail(const wchar_t* what, int sourceLine) const;

private:
  XMLNode::Handle Scan();
  void Reset(const GString& name);
  char ReadCharSlowly();
  bool Refill();
  void OpenChild();
  void CloseCurrent();
  /// Reads on from `StateValue` as the operations would, many times as fast, as far as text and
  /// plain tags lie within the buffer. What is left, the operations read.
  void TakePlainElements();
  bool TakePlainTag();
  bool TakePlainAttributes();
  void SetAttribute(std::string_view name, std::string_view value);
  /// Like `ReadWord` and `ReadLiteral`; the views are good until the next character is read.
  std::string_view TakeWord();
  std::string_view TakeLiteral();
  void ReadDeclarationStart();
  void SkipPast(char stop);
  /// Reads up to and including `stop`, giving what is before it to `sink` piece by piece, or up to
  /// the end of the input, which the state then tells.
  template <typename Sink>
  void ReadUpTo(char stop, const Sink& sink);

  CFile file_;
  std::shared_ptr<XMLBlocks> blocks_;
  std::vector<char> buffer_;
  const char* begin_ = nullptr;  ///< What is in memory of the input.
  const char* next_ = nullptr;
  const char* end_ = nullptr;
  std::size_t linesBefore_ = 0;  ///< Line feeds before `begin_`.
  char unread_ = 0;
  bool hasUnread_ = false;
  State state_ = StateValue;
  XMLNode::Handle root_;
  XMLNode* node_ = nullptr;  ///< The current node.
  XMLArena* arena_ = nullptr;
  /// Holds the current node or one above it, so that no handle is made until one is asked for.
  mutable XMLNode::Handle current_;
  GString fileName_;
  std::string attributeName_;
  std::string scratch_;  ///< Words and literals that lie across the end of the buffer.
};

}  // namespace shr
