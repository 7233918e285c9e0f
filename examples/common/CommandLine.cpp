// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/common/CommandLine.h"

#include <CLI/CLI.hpp>

#include "shared/platform/CodePages.h"
#include "shared/text/StringUtility.h"

namespace examples {

using namespace shr;

namespace {

ParsedArguments Text(const std::string& text) {
  ParsedArguments result{ParsedArguments::Action::ShowText, GString::FromUtf8(text)};
  if (result.text.empty() || result.text[result.text.size() - 1] != L'\n') result.text += L'\n';
  return result;
}

}  // namespace

ParsedArguments ParseArguments(CLI::App& app, const std::vector<GString>& arguments) {
  const GString program = GString::FromUtf8(app.get_name());
  // The parser takes the arguments from the back.
  std::vector<std::string> reversed;
  for (std::size_t i = arguments.size(); i > 1; --i) {
    reversed.push_back(arguments[i - 1].ToUtf8());
  }
  try {
    app.parse(reversed);
  } catch (const CLI::CallForHelp&) {
    return Text(app.help());
  } catch (const CLI::CallForVersion& version) {
    return Text(version.what());
  } catch (const CLI::ParseError& error) {
    // What is unknown is the likelier mistake than what is missing.
    const std::vector<std::string> unknown = app.remaining();
    if (!unknown.empty()) {
      return UsageError(program, L"There is no option '" + GString::FromUtf8(unknown[0]) + L"'");
    }
    return UsageError(program, GString::FromUtf8(error.what()));
  }
  return ParsedArguments();
}

ParsedArguments UsageError(const GString& program, const GString& what) {
  return {ParsedArguments::Action::UsageError,
          what + L" (" + program + L" --help tells the options)"};
}

std::string CheckCodePage(const std::string& text) {
  unsigned int page = 0;
  if (StringToUnsigned(text, page) && platform::IsCodePageServed(page)) return std::string();
  return "'" + text + "' is no code page that this system has";
}

}  // namespace examples
