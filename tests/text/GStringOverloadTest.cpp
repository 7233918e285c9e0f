// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every operation that takes text x every kind of text and unit that fits, each call
// resolving to one function and giving the text of the standard string; references, values and
// views made from named, constant and temporary objects; UTF-8 literals and bytes; paths.

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "shared/text/GString.h"

namespace shr {
namespace {

using namespace std::string_view_literals;

/// A class derived from the string is a text, too.
struct Title : GString {
  using GString::GString;
};

/// A path that converts by itself, as old code holds it.
struct HoldsPointer {
  operator const wchar_t*() const { return L"bc"; }
};

const wchar_t* const POINTER = L"bc";
const std::wstring STRING = L"bc";
const std::wstring_view VIEW = L"bcd"sv.substr(0, 2);
const GString TEXT = L"bc";
const Title TITLE(L"bc");

/// Calls `function` with every kind of wide text, each of which reads "bc".
template <class Function>
void ForEachWideText(Function function) {
  wchar_t buffer[] = L"bc";
  function("literal", L"bc");
  function("pointer", POINTER);
  function("array", buffer);
  function("string", STRING);
  function("temporary string", std::wstring(STRING));
  function("view", VIEW);
  function("text", TEXT);
  function("temporary text", GString(TEXT));
  function("derived", TITLE);
}

template <class Text>
concept Comparable = requires(const GString& text, const Text& other) {
  text == other;
  other == text;
  text < other;
  other >= text;
};

TEST(GStringOverloads, takeEveryWideText) {
  ForEachWideText([](const char* name, const auto& other) {
    static_assert(Comparable<std::remove_cvref_t<decltype(other)>>);
    const GString built(other);
    EXPECT_TRUE(built == L"bc" && built == other && !(other < built)) << name;
    GString text(L"a");
    text += other;
    text.append(other).append(L"|");
    EXPECT_EQ(text, L"abcbc|") << name;
    EXPECT_EQ(L'<' + (text + other), L"<abcbc|bc") << name;
    EXPECT_EQ(other + text, L"bcabcbc|") << name;
    EXPECT_EQ(text.find(other), 1u) << name;
    EXPECT_EQ(text.find(other, 2), 3u) << name;
    EXPECT_EQ(text.rfind(other), 3u) << name;
    EXPECT_EQ(text.rfind(other, 2), 1u) << name;
    EXPECT_EQ(text.find_first_of(other), 1u) << name;
    EXPECT_EQ(text.find_last_of(other), 4u) << name;
    EXPECT_EQ(text.find_first_not_of(other, 1), 5u) << name;
    EXPECT_EQ(text.find_last_not_of(other, 4), 0u) << name;
    EXPECT_TRUE(text.contains(other) && !text.starts_with(other) && !text.ends_with(other)) << name;
    text.replace(0, 1, other).insert(1, other);
    EXPECT_EQ(text, L"bbccbcbc|") << name;
    text.replace(text.cbegin(), text.cend() - 1, other);
    EXPECT_EQ(text, L"bc|") << name;
    EXPECT_TRUE(text.starts_with(other) && text.compare(other) > 0) << name;
    EXPECT_EQ(text.compare(0, 2, other), 0) << name;
    text.assign(other);
    EXPECT_TRUE(text.ends_with(other)) << name;
    text = L"other";
    text = other;
    EXPECT_EQ(text, L"bc") << name;
  });
}

TEST(GStringOverloads, takeUnits) {
  GString text(L"abcabc");
  EXPECT_EQ(text.find(L'b') + text.find('b', 2), 1u + 4u);
  EXPECT_EQ(text.find(0), GString::npos) << "a number is a unit, not a null pointer";
  EXPECT_EQ(text.rfind(L'b') + text.rfind(L'b', 3), 4u + 1u);
  EXPECT_EQ(text.find_first_of(L'c') + text.find_last_of(L'c'), 2u + 5u);
  EXPECT_EQ(text.find_first_not_of(L'a') + text.find_last_not_of(L'c'), 1u + 4u);
  EXPECT_TRUE(text.starts_with(L'a') && text.ends_with(L'c') && text.contains(L'b'));
  EXPECT_FALSE(text.starts_with(L'b') || text.ends_with(L'b') || text.contains(L'x'));
  text.insert(1, 2, L'-').replace(0, 1, 3, L'+');
  text.insert(text.cbegin(), L'>');
  EXPECT_EQ(text, L">+++--bcabc");
  text.assign(2, L'x');
  text.resize(4, L'y');
  text.pop_back();
  EXPECT_EQ(text.front() == L'x' && text.back() == L'y' && text.at(1) == L'x', true);
  text.front() = L'1';
  text.at(1) = L'2';
  text.back() = L'3';
  EXPECT_EQ(text, L"123");
  EXPECT_THROW(text.at(3), std::out_of_range);
  EXPECT_THROW(text.insert(4, L"x"), std::out_of_range);
  EXPECT_THROW(text.replace(4, 1, L"x"), std::out_of_range);
  text = L'q';
  EXPECT_EQ(text + L'u' + (L'a' + 1) + '\xE9', L"qub\u00E9") << "a byte is of the ANSI page";
}

TEST(GStringOverloads, readNarrowTextWhereTheyEverDid) {
  GString text("a\xE9");
  EXPECT_TRUE(text == "a\xE9" && text == std::string("a\xE9"));
  text += "\xE9";
  text += std::string("b");
  EXPECT_EQ(text + "c" + std::string("d"), L"a\u00E9\u00E9bcd");
  EXPECT_EQ(text.find("\xE9"), 1u);
  EXPECT_EQ("<" + text, L"<a\u00E9\u00E9b");
  text = "x";
  EXPECT_EQ(text, L"x");
}

TEST(GStringOverloads, takeObjectsThatConvertToAPointer) {
  const HoldsPointer other;
  GString text(other);
  text += other;
  text = text + other;
  EXPECT_TRUE(text == L"bcbcbc" && GString(L"bc") == other);
  text = other;
  EXPECT_EQ(text, L"bc");
}

static_assert(!std::is_constructible_v<GString, int>);
static_assert(!std::is_constructible_v<GString, wchar_t>);
static_assert(!std::is_assignable_v<GString&, std::nullptr_t>);
static_assert(std::is_convertible_v<std::wstring_view, GString>);
static_assert(std::is_convertible_v<GString, std::wstring>);
static_assert(std::is_convertible_v<const GString&, const std::wstring&>);
static_assert(!std::is_convertible_v<GString, std::wstring&>, "a temporary object is a value");
static_assert(!std::is_convertible_v<const GString&, std::wstring&>);
static_assert(!std::is_convertible_v<GString, std::string>);

std::wstring ByValue(std::wstring text) {
  return text;
}
std::size_t ByReference(const std::wstring& text) {
  return text.size();
}
std::size_t ByView(std::wstring_view text) {
  return text.size();
}
const GString MakeConstant() {
  return GString(100, L'k');
}

TEST(GStringOverloads, giveTheStringInsideAndOfTemporaryObjectsAValue) {
  GString text(100, L'x');
  const GString& constant = text;
  std::wstring& inside = text;
  const std::wstring& insideOfConstant = constant;
  EXPECT_TRUE(&inside == &text.String() && &insideOfConstant == &inside);
  EXPECT_TRUE(&constant.String() == &inside && &constant.ToWide(0) == &inside);
  EXPECT_EQ(ByReference(text) + ByReference(constant) + ByView(text) + ByView(constant), 400u);
  EXPECT_EQ(ByReference(GString(L"ab")) + ByView(GString(L"ab")) + ByValue(GString(L"ab")).size(),
            6u);

  // Each reference would be read after its object has gone if it were not a value.
  const std::wstring& converted = GString(100, L'a');
  const std::wstring& ofConstant = MakeConstant();
  const std::wstring& string = GString(100, L'b').String();
  const std::wstring& wide = GString(100, L'c').ToWide(0);
  std::wstring&& moved = GString(100, L'd');
  EXPECT_EQ(converted, std::wstring(100, L'a'));
  EXPECT_EQ(ofConstant, std::wstring(100, L'k'));
  EXPECT_EQ(MakeConstant().String(), ofConstant);
  EXPECT_EQ(string + wide, std::wstring(100, L'b') + std::wstring(100, L'c'));
  EXPECT_EQ(moved, std::wstring(100, L'd'));

  const wchar_t* const buffer = text.data();
  const std::wstring taken = std::move(text);
  EXPECT_EQ(taken.data(), buffer);
}

TEST(GStringOverloads, readAndWriteUtf8) {
  const GString expected(L"\u00E9\u4E2D\U0001F30D");
  const std::u8string string = u8"\u00E9\u4E2D\U0001F30D";
  EXPECT_EQ(GString(u8"\u00E9\u4E2D\U0001F30D"), expected);
  EXPECT_EQ(GString(string), expected);
  EXPECT_EQ(GString(std::u8string_view(string)), expected);
  const GString copied = string;
  EXPECT_TRUE(copied == u8"\u00E9\u4E2D\U0001F30D" && copied == string);
  GString text;
  text = u8"<";
  text += string;
  EXPECT_EQ(text + u8">", L"<" + expected + L">");
  EXPECT_EQ(expected.ToUtf8(), "\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x8C\x8D");
  EXPECT_EQ(GString::FromUtf8(expected.ToUtf8()), expected);
  EXPECT_EQ(GString::FromUtf8("a\xC3"), L"a\uFFFD");
  EXPECT_EQ(GString::FromUtf8(std::string_view("a\0b", 3)).ToUtf8(), std::string("a\0b", 3));
  EXPECT_EQ(GString(std::wstring(1, static_cast<wchar_t>(0xD800))).ToUtf8(), "\xEF\xBF\xBD");
}

bool IsRelative(const std::filesystem::path& path) {
  return path.is_relative();
}

TEST(GStringOverloads, convertPathsBothWays) {
  const GString name(L"\u00E9\u4E2D/\U0001F30D.txt");
  const std::filesystem::path path(name);
  EXPECT_EQ(path.u8string(), u8"\u00E9\u4E2D/\U0001F30D.txt");
  std::filesystem::path assigned;
  assigned = name;
  const std::filesystem::path copied = name;
  EXPECT_TRUE(assigned == path && copied == path);
  EXPECT_TRUE(IsRelative(name));
  EXPECT_TRUE(IsRelative(GString(L"temporary")));
  EXPECT_EQ((path / GString(L"x")).filename(), std::filesystem::path("x"));
  const GString back(path);
  const GString converted = path;
  EXPECT_TRUE(back == name && converted == name);
  GString text;
  text = path;
  EXPECT_EQ(text + path, name + name);
}

}  // namespace
}  // namespace shr
