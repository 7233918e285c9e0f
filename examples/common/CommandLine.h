// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Command lines of the examples: options, their checks and groups, help and version, and one line
/// for what is wrong. CLI11 does the work, in one source, because it takes long to compile.
///
///     GString out;
///     ArgumentParser parser("draw", "Draws a map.", "1.0");
///     parser.AddText("--out", out, "DIR", "Folder for the report").Required();
///     const ParsedArguments parsed = parser.Parse(arguments);
///     if (parsed.action != ParsedArguments::Action::Run) return parsed;

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "examples/common/Program.h"
#include "shared/plots/SvgTextMode.h"
#include "shared/text/GString.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace examples {

using shr::GString;

/// What a command line asks for.
struct ParsedArguments {
  enum class Action { Run, ShowText, UsageError };

  Action action = Action::Run;
  GString text;  ///< the help or version text, or one line that tells what is wrong
};

/// An option under construction. All texts of options are UTF-8 literals.
class ArgumentOption {
public:
  explicit ArgumentOption(CLI::Option& option) : option_(option) {}

  /// The program does not run without it.
  ArgumentOption& Required();
  /// Not together with these.
  ArgumentOption& Excludes(std::initializer_list<const char*> names);
  /// `findFault` returns what is wrong with the text, or nothing.
  ArgumentOption& Check(std::function<GString(const GString&)> findFault);
  /// `parse` returns something that is true for a text that it can read; else the complaint reads
  /// "'text' COMPLAINT".
  template <class Parse>
  ArgumentOption& MustParse(Parse parse, const wchar_t* complaint) {
    return Check([=](const GString& text) {
      return parse(text) ? GString() : L"'" + text + L"' " + complaint;
    });
  }

private:
  CLI::Option& option_;
};

/// The options of a program. The values must outlive it and are set by `Parse`; an option that is
/// absent leaves its value as it was.
class ArgumentParser {
public:
  ArgumentParser(const char* program, const char* purpose, const char* version);
  ~ArgumentParser();
  ArgumentParser(const ArgumentParser&) = delete;
  ArgumentParser& operator=(const ArgumentParser&) = delete;

  /// What the help says below the options.
  void SetFooter(const char* text);
  /// The options that follow are listed under this heading.
  void BeginGroup(const char* heading);

  ArgumentOption AddText(const char* name, GString& value, const char* kind, const char* help);
  /// An option that may be given several times.
  ArgumentOption AddTexts(const char* name, std::vector<GString>& values, const char* kind,
                          const char* help);
  /// A whole number from 0 to `most`.
  ArgumentOption AddCount(const char* name, std::size_t& value, std::size_t most, const char* help);
  ArgumentOption AddCount(const char* name, std::optional<std::size_t>& value, std::size_t most,
                          const char* help);
  /// The number of a code page that the system has.
  ArgumentOption AddCodePage(const char* name, std::optional<std::uint32_t>& value,
                             const char* help);
  void AddFlag(const char* name, bool& value, const char* help);
  /// `--text HOW`: how the text of pictures is written, "text" or "outlines".
  void AddTextMode(shr::SvgTextMode& value);

  /// Reads the arguments, the program's name first.
  ParsedArguments Parse(const std::vector<GString>& arguments);

private:
  ArgumentOption AddCount(const char* name, std::function<void(std::size_t)> store,
                          std::size_t most, const char* help);

  std::unique_ptr<CLI::App> app_;
};

/// Does what the command line asks for: runs `run`, shows the text, or complains of it.
/// `onFailure`, when given, gets the complaint.
ExitStatus RunParsed(const GString& program, const ParsedArguments& parsed,
                     const std::function<ExitStatus()>& run,
                     const std::function<void(const GString&)>& onFailure = {});

/// Returns a usage error of `program` that names its help.
ParsedArguments UsageError(const GString& program, const GString& what);

}  // namespace examples
