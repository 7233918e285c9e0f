// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases, each from a file and from memory: every construct of every state; messages and their
// lines; ends of input at every byte; any bytes; constructs on the edges of the buffer; depth;
// overridden operations; several files in turn.

#include "shared/xml/XMLScanner.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "shared/diagnostics/Exception.h"

namespace shr {
namespace {

/// Writes a tree as "name[a=1 b=2]'value'{child ...}", line feeds as "\n".
std::string Notation(const XMLNode& node) {
  std::string text(node.GetName());
  if (node.GetAttributeCount() > 0) text += '[';
  node.ForEachAttribute([&text](std::string_view name, std::string_view value) {
    text.append(text.back() == '[' ? "" : " ").append(name).append("=").append(value);
  });
  if (node.GetAttributeCount() > 0) text += ']';
  if (!node.GetValue().empty()) {
    text += '\'';
    for (const char c : node.GetValue()) text += c == '\n' ? std::string("\\n") : std::string(1, c);
    text += '\'';
  }
  if (node.GetChildren().empty()) return text;
  text += '{';
  for (const XMLNode::Handle& child : node.GetChildren()) {
    text += (text.back() == '{' ? "" : " ") + Notation(*child);
  }
  return text + '}';
}

class TempFile {
public:
  explicit TempFile(std::string_view content) {
    const auto* const info = ::testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::filesystem::temp_directory_path() /
            (std::string("shared-xml-") + info->name() +
             std::to_string(::testing::UnitTest::GetInstance()->random_seed()));
    std::ofstream(path_, std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
  }
  ~TempFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  GString Path() const { return GString(path_.wstring()); }

private:
  std::filesystem::path path_;
};

/// Reads every construct by its operation, which the scanner itself does with unusual ones only.
class StepwiseScanner : public XMLScanner {};

/// Asks for the current node and its kin at every step.
class CuriousScanner : public XMLScanner {
protected:
  void ReadAttributes() override {
    const XMLNode::Handle parent = GetCurrent()->GetParent();
    EXPECT_EQ(parent->GetChildren().back(), GetCurrent());
    XMLScanner::ReadAttributes();
  }
};

/// Returns the tree in notation, or the message of the error behind its first line.
template <typename Scan>
std::string ResultOf(const Scan& scan) {
  try {
    return Notation(*scan());
  } catch (const Exception& error) {
    EXPECT_TRUE(error.GetModule() == L"Shared" && error.GetSrcFile() == L"XMLScanner");
    const std::string text = error.GetDescription().ToUtf8();
    return std::to_string(error.GetSrcLine()) + text.substr(text.find(", line "));
  }
}

/// Scans in every way from memory.
std::string ScannedText(std::string_view content) {
  XMLScanner scanner;
  StepwiseScanner stepwise;
  CuriousScanner curious;
  const std::string result = ResultOf([&] { return scanner.ScanText(content, L"text"); });
  EXPECT_EQ(ResultOf([&] { return stepwise.ScanText(content, L"text"); }), result);
  EXPECT_EQ(ResultOf([&] { return curious.ScanText(content, L"text"); }), result);
  return result;
}

std::string Scanned(std::string_view content) {
  const TempFile file(content);
  XMLScanner scanner;
  const std::string result = ScannedText(content);
  EXPECT_EQ(ResultOf([&] { return scanner.ScanFile(file.Path()); }), result);
  return result;
}

struct Row {
  const char* name;
  std::string_view content;
  std::string_view expected;
};

TEST(XMLScanner, readsWhatItKnows) {
  const Row rows[] = {
      {"empty", "", ""},
      {"text alone", "a\nb", "'a\\nb'"},
      {"element", "<a/>", "{a}"},
      {"element with end tag", "<a></a >", "{a}"},
      {"text around and between", "x<a>y<b>z</b>w</a>v", "'xv'{a'yw'{b'z'}}"},
      {"entities stay in text", "<a>&lt;&quot;</a>", "{a'&lt;&quot;'}"},
      {"declaration", "<?xml version=\"1.0\"?>\n<a/>", "'\\n'{xml[version=1.0] a}"},
      {"attributes", "<a c=\"1\" b = \"2\"\n d=\"\"/>", "{a[b=2 c=1 d=]}"},
      {"quotes are decoded", "<a b=\"a &quot;b&quot;\"/>", "{a[b=a \"b\"]}"},
      {"other entities stay", "<a b=\"&amp;&quot;&quo\"/>", "{a[b=&amp;\"&quo]}"},
      {"attribute without value", "<a b c/>", "{a[b= c=]}"},
      {"value without quotes", "<a b=1 c=2>", "{a[b=1 c=2]}"},
      {"value in single quotes is a word", "<a b='1'/>", "{a[b='1']}"},
      {"value over lines, with brackets", "<a b=\"<\n>\"/>", "{a[b=<\n>]}"},
      {"later attribute replaces", "<a b=\"1\" b=\"2\"/>", "{a[b=2]}"},
      {"comment", "a<!-- <x> -- -> -->b", "'ab'"},
      {"three dashes do not close", "a<!-- x --->b-->c", "'ac'"},
      {"four dashes: a pair and a mismatch", "a<!-- x ---->b--> c", "'a c'"},
      {"empty comment", "a<!---->b", "'ab'"},
      {"two dashes are no end", "a<!-->b-->c", "'ac'"},
      {"document type", "<!DOCTYPE a SYSTEM \"x\">b", "'b'"},
      {"subset ends early", "<!DOCTYPE a [<!ELEMENT b>]>c", "']>c'"},
      {"one dash is no comment", "<!-a>b", "'b'"},
      {"empty declaration", "<!>b", "'b'"},
      {"character data section", "<![CDATA[x]]>b", "'b'"},
      {"question mark ends a tag", "<a?>b", "'b'{a}"},
      {"instruction ends by a slash", "<?a/>b", "'b'{a}"},
      {"unclosed elements", "<a><b>c", "{a{b'c'}}"},
      {"unclosed comment", "a<!-- b", "'a'"},
      {"unclosed declaration", "a<!b", "'a'"},
      {"blanks in tags", "< a >b</ a\n>", "{a'b'}"},
      {"zero bytes", std::string_view("<a\0b c=\"\0\">\0</a\0b>", 18),
       std::string_view("{a\0b[c=\0]'\0'}", 13)},
      {"bytes beyond ASCII", "<\xC3\xA9 \xFF=\"\x80\"/>", "{\xC3\xA9[\xFF=\x80]}"},
  };
  for (const Row& row : rows) EXPECT_EQ(Scanned(row.content), row.expected) << row.name;
}

TEST(XMLScanner, tellsWhatIsWrongAndWhere) {
  const Row rows[] = {
      {"no name", "\n\n<>", "300, line 3:\nTag without name"},
      {"no name at the end", "<", "300, line 1:\nTag without name"},
      {"slash for a name", "<a><=/></a>", "300, line 1:\nTag without name"},
      {"other end tag", "<a>\n<b>\n</a>", "406, line 3:\nClosing tag mismatch"},
      {"case", "<a></A>", "406, line 1:\nClosing tag mismatch"},
      {"end tag of nothing", "\n</a>", "406, line 2:\nClosing tag mismatch"},
      {"nameless end tag of nothing", "</>", "406, line 1:\nClosing tag mismatch"},
      {"more in an end tag", "<a></a b>", "413, line 1:\nClosing tag mismatch"},
      {"end in an end tag", "<a></a", "413, line 1:\nClosing tag mismatch"},
      {"slash without bracket", "<a\n/ b>", "337, line 2:\nInvalid closing bracket"},
      {"end behind a slash", "<a/", "337, line 1:\nInvalid closing bracket"},
      {"equals sign alone", "<a =\"1\">", "343, line 1:\nInvalid closing bracket"},
      {"end in a name", "<a", "343, line 1:\nInvalid closing bracket"},
      {"end in a value", "<a b=\"\n1", "343, line 2:\nInvalid closing bracket"},
  };
  for (const Row& row : rows) EXPECT_EQ(Scanned(row.content), row.expected) << row.name;
}

TEST(XMLScanner, tellsWhyAFileDoesNotOpen) {
  XMLScanner scanner;
  for (const wchar_t* const path : {L"no-such-file.xml", L"."}) {
    try {
      scanner.ScanFile(path);
      ADD_FAILURE();
    } catch (const Exception& error) {
      EXPECT_EQ(error.GetSrcLine(), 100);
      EXPECT_TRUE(error.GetSrcFile() == L"XMLScanner");
      const std::wstring start = std::wstring(L"Unable to open '") + path + L"'.\n";
      const std::wstring text = error.GetDescription().c_str();
      EXPECT_EQ(text.substr(0, start.size()), start);
      EXPECT_GT(text.size(), start.size());
    }
  }
}

constexpr std::string_view SAMPLE =
    "<?xml version=\"1.0\" encoding='utf-8'?>\n<!DOCTYPE gpx>\n<gpx creator=\"a &quot;b&quot;\">"
    "<!-- c --->\n-->\n<trk n=1><name>A &amp; B</name><trkpt lat=\"47.1\" "
    "lon=\"8.2\"/></trk>\n</gpx>\n";

TEST(XMLScanner, survivesAnEndAtEveryByteAndEveryByteChanged) {
  XMLScanner scanner;
  const auto survives = [&scanner](std::string_view text) {
    try {
      EXPECT_NE(scanner.ScanText(text, L"sample"), nullptr);
    } catch (const Exception& error) {
      EXPECT_TRUE(error.GetSrcFile() == L"XMLScanner");
    }
  };
  for (std::size_t size = 0; size <= SAMPLE.size(); ++size) survives(SAMPLE.substr(0, size));
  std::string changed(SAMPLE);
  for (char& c : changed) {
    const char before = c;
    for (const char other : {'<', '>', '/', '"', '=', '-', '!', '?', '\0', '\n', '\xFF'}) {
      c = other;
      survives(changed);
    }
    c = before;
  }
}

TEST(XMLScanner, readsAlikeWhereverTheBufferEnds) {
  const std::string expected = Scanned(SAMPLE);
  XMLScanner scanner;
  for (std::size_t shift = 0; shift <= SAMPLE.size(); shift += 7) {
    // Blanks up to a place at which the sample crosses the end of the first 64 kB.
    const std::string blanks(64 * 1024 - shift, ' ');
    const TempFile file(blanks + std::string(SAMPLE));
    const XMLNode::Handle root = scanner.ScanFile(file.Path());
    root->SetValue(root->GetValue().substr(blanks.size()));
    ASSERT_EQ(Notation(*root), expected) << shift;
  }
}

TEST(XMLScanner, readsAMillionLevels) {
  constexpr int LEVELS = 1000000;
  std::string text;
  for (int i = 0; i < LEVELS; ++i) text += "<a>";
  text += "</a></a>";
  XMLScanner scanner;
  const XMLNode::Handle root = scanner.ScanText(text, L"open");
  int depth = 0;
  for (const XMLNode* node = root.get(); !node->GetChildren().empty(); ++depth) {
    node = node->GetChildren()[0].get();
  }
  EXPECT_EQ(depth, LEVELS);
}

TEST(XMLScanner, releasesADeepTreeThatItGivesUp) {
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "<a>";
  XMLScanner scanner;
  EXPECT_THROW(scanner.ScanText(text + "</b>", L"broken"), Exception);
}

TEST(XMLScanner, costsNoMoreForHostileElements) {
  // As many attributes in falling order, references to quotes, children as fit a second by far.
  std::string text = "<a";
  for (int i = 60000; i > 30000; --i) text += " n" + std::to_string(i) + "=\"&quot;&quot;\"";
  text += ">";
  for (int i = 0; i < 30000; ++i) text += "x<b/>";
  XMLScanner scanner;
  const XMLNode::Handle root = scanner.ScanText(text, L"hostile");
  const XMLNode::Handle a = root->FindChild("a", 0);
  EXPECT_EQ(a->GetAttributeCount(), 30000u);
  EXPECT_EQ(a->GetAttribute("n45000"), "\"\"");
  EXPECT_EQ(a->GetValue(), std::string(30000, 'x'));
}

TEST(XMLScanner, readsAlikeWithAndWithoutOverriding) {
  // Texts of what tags are made of, most of which are not well formed.
  const std::string_view pieces[] = {"<a",       "<b",     ">",     "/>",  "</a>", "</b>", "</a >",
                                     " c=\"1\"", " d='2'", " e",    "<!",  "<!--", "-->",  "text",
                                     "&quot;",   "\n",     "</aa>", "<?x", "?>",   "=",    "\""};
  std::mt19937 random(5);
  for (int i = 0; i < 3000; ++i) {
    std::string text;
    for (auto left = random() % 30; left > 0; --left) {
      // Half of the time a good element, so that scanning gets somewhere.
      text += random() % 2 == 0 ? "<a b=\"&quot;x&amp;\" a=\"\">t</a>"
                                : pieces[random() % std::size(pieces)];
    }
    ScannedText(text);
    ASSERT_FALSE(HasFailure()) << text;
  }
}

/// Hangs what is in "other" below a tree of its own.
class MovingScanner : public XMLScanner {
public:
  XMLNode::Handle other = XMLNode::Factory("other");

protected:
  void CloseBracket() override {
    XMLScanner::CloseBracket();
    if (GetCurrent()->GetName() == "other") SetCurrent(other);
  }
};

TEST(XMLScanner, goesOnBelowANodeOfAnotherTree) {
  MovingScanner scanner;
  const XMLNode::Handle root = scanner.ScanText("<other>x<a b=\"1\"/></other><c/>", L"moved");
  EXPECT_EQ(Notation(*scanner.other), "other'x'{a[b=1]}");
  EXPECT_EQ(Notation(*root), "{other c}");
}

TEST(XMLScanner, keepsMemoryForTheNextTreeOnly) {
  XMLNode::Handle last;
  {
    XMLScanner scanner;
    std::string text;
    for (int i = 0; i < 1000; ++i) text += "<a b=\"1\">text</a>";
    const std::string expected = Notation(*scanner.ScanText(text, L"first"));
    last = scanner.ScanText(text, L"second");  // in the memory of the first
    const XMLNode::Handle together = scanner.ScanText(text, L"third");
    EXPECT_EQ(Notation(*last), expected);
    EXPECT_EQ(Notation(*together), expected);
    scanner.Close();
    EXPECT_EQ(Notation(*scanner.ScanText(text, L"fourth")), expected);
  }
  EXPECT_EQ(last->GetChildren().size(), 1000u);  // outlives its scanner
}

TEST(XMLScanner, keepsNothingOfATreeAndScansOn) {
  XMLScanner scanner;
  const TempFile file("<a><b/></a>");
  XMLNode::Handle first = scanner.ScanFile(file.Path());
  const std::weak_ptr<XMLNode> watch = first->GetChildren()[0];
  EXPECT_THROW(scanner.ScanText("<a>\n\n</b>", L"broken"), Exception);
  EXPECT_EQ(Notation(*scanner.ScanText("<c/>\n", L"sound")), "'\\n'{c}");
  EXPECT_FALSE(watch.expired());
  first.reset();
  EXPECT_TRUE(watch.expired());
  scanner.Close();
}

/// Reads character data sections into the value, names in lower case, and gives up at "stop".
class SectionScanner : public XMLScanner {
protected:
  void ReadDocType() override {
    const char c = ReadNextChar();
    Unget(c);
    if (c != '[') return XMLScanner::ReadDocType();
    std::string text;
    while (GetState() != StateEnd && !text.ends_with("]]>")) text += ReadNextChar();
    GetCurrent()->AppendValue(text.substr(7, text.size() - 10));
    if (GetState() != StateEnd) SetState(StateValue);
  }
  void ReadTagName() override {
    XMLScanner::ReadTagName();
    std::string name(GetCurrent()->GetName());
    for (char& c : name) c = static_cast<char>(c | 0x20);
    GetCurrent()->SetName(name);
  }
  bool ReadCloseTag() override {
    if (GetCurrent()->GetName() == "stop") return false;
    ReadWord();
    if (ReadNextNonSpaceChar() != '>') Fail(L"Closing tag mismatch", 1);
    SetCurrent(GetCurrent()->GetParent());
    SetState(StateValue);
    return true;
  }
};

TEST(XMLScanner, isChangedByOverriding) {
  SectionScanner scanner;
  const XMLNode::Handle root =
      scanner.ScanText("<A>x<![CDATA[<y>]]>z</a><!DOCTYPE b><C/></surplus>v", L"sections");
  EXPECT_EQ(Notation(*root), "'v'{a'x<y>z' c}");
  EXPECT_EQ(scanner.ScanText("<STOP></stop>", L"given up"), nullptr);
}

/// Pushes back characters other than those that were read.
class PushingScanner : public XMLScanner {
public:
  std::string lines;

protected:
  void ReadValue() override {
    if (ReadNextChar() == '\n') {
      lines += std::to_string(GetLine());
      Unget('\n');
      lines += std::to_string(GetLine());
      ReadNextChar();
      Unget('Q');
    }
    XMLScanner::ReadValue();
  }
};

TEST(XMLScanner, countsLinesThatArePushedBack) {
  PushingScanner scanner;
  const XMLNode::Handle root = scanner.ScanText("\n<a>\n</a>\n", L"pushed");
  EXPECT_EQ(scanner.lines, "213243");
  EXPECT_EQ(Notation(*root), "'QQ'{a'Q'}");
}

}  // namespace
}  // namespace shr
