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

GString FaultOfCodePage(const GString& text) {
  unsigned int page = 0;
  if (StringToUnsigned(text, page) && platform::IsCodePageServed(page)) return GString();
  return L"'" + text + L"' is no code page that this system has";
}

}  // namespace

ArgumentOption& ArgumentOption::Required() {
  option_.required();
  return *this;
}

ArgumentOption& ArgumentOption::Excludes(std::initializer_list<const char*> names) {
  for (const char* name : names) option_.excludes(name);
  return *this;
}

ArgumentOption& ArgumentOption::Check(std::function<GString(const GString&)> findFault) {
  option_.check([findFault = std::move(findFault)](const std::string& text) {
    return findFault(GString::FromUtf8(text)).ToUtf8();
  });
  return *this;
}

ArgumentParser::ArgumentParser(const char* program, const char* purpose, const char* version)
    : app_(std::make_unique<CLI::App>(purpose, program)) {
  app_->set_version_flag("--version", std::string(program) + " " + version);
  // A path such as "/data" is none of the program's options, on Windows neither.
  app_->allow_windows_style_options(false);
}

ArgumentParser::~ArgumentParser() = default;

void ArgumentParser::SetFooter(const char* text) {
  app_->footer(text);
}

void ArgumentParser::BeginGroup(const char* heading) {
  app_->option_defaults()->group(heading);
}

ArgumentOption ArgumentParser::AddText(const char* name, GString& value, const char* kind,
                                       const char* help) {
  const auto store = [&value](const std::string& text) { value = GString::FromUtf8(text); };
  return ArgumentOption(
      *app_->add_option_function<std::string>(name, store, help)->type_name(kind));
}

ArgumentOption ArgumentParser::AddTexts(const char* name, std::vector<GString>& values,
                                        const char* kind, const char* help) {
  const auto store = [&values](const std::vector<std::string>& texts) {
    for (const std::string& text : texts) values.push_back(GString::FromUtf8(text));
  };
  return ArgumentOption(*app_->add_option_function<std::vector<std::string>>(name, store, help)
                             ->type_name(kind)
                             ->allow_extra_args(false));
}

ArgumentOption ArgumentParser::AddCount(const char* name, std::function<void(std::size_t)> store,
                                        std::size_t most, const char* help) {
  return ArgumentOption(*app_->add_option_function<std::size_t>(name, std::move(store), help)
                             ->type_name("N")
                             ->check(CLI::Range(std::size_t{0}, most)));
}

ArgumentOption ArgumentParser::AddCount(const char* name, std::size_t& value, std::size_t most,
                                        const char* help) {
  return AddCount(
      name, [&value](std::size_t count) { value = count; }, most, help);
}

ArgumentOption ArgumentParser::AddCount(const char* name, std::optional<std::size_t>& value,
                                        std::size_t most, const char* help) {
  return AddCount(
      name, [&value](std::size_t count) { value = count; }, most, help);
}

ArgumentOption ArgumentParser::AddCodePage(const char* name, std::optional<std::uint32_t>& value,
                                           const char* help) {
  const auto store = [&value](std::uint32_t page) { value = page; };
  return ArgumentOption(
             *app_->add_option_function<std::uint32_t>(name, store, help)->type_name("N"))
      .Check(FaultOfCodePage);
}

void ArgumentParser::AddFlag(const char* name, bool& value, const char* help) {
  app_->add_flag(name, value, help);
}

void ArgumentParser::AddTextMode(shr::SvgTextMode& value) {
  const auto store = [&value](const std::string& how) {
    if (how != "text" && how != "outlines") {
      throw CLI::ValidationError("--text", "'" + how + "' is not text or outlines");
    }
    value = how == "text" ? shr::SvgTextMode::Text : shr::SvgTextMode::Outlines;
  };
  app_->add_option_function<std::string>(
          "--text", store, "How text is drawn: text, or outlines, the same on any machine")
      ->type_name("HOW");
}

ParsedArguments ArgumentParser::Parse(const std::vector<GString>& arguments) {
  const GString program = GString::FromUtf8(app_->get_name());
  // The parser takes the arguments from the back.
  std::vector<std::string> reversed;
  for (std::size_t i = arguments.size(); i > 1; --i) {
    reversed.push_back(arguments[i - 1].ToUtf8());
  }
  try {
    app_->parse(reversed);
  } catch (const CLI::CallForHelp&) {
    return Text(app_->help());
  } catch (const CLI::CallForVersion& version) {
    return Text(version.what());
  } catch (const CLI::ParseError& error) {
    // What is unknown is the likelier mistake than what is missing.
    const std::vector<std::string> unknown = app_->remaining();
    if (!unknown.empty()) {
      return UsageError(program, L"There is no option '" + GString::FromUtf8(unknown[0]) + L"'");
    }
    return UsageError(program, GString::FromUtf8(error.what()));
  }
  return ParsedArguments();
}

ExitStatus RunParsed(const GString& program, const ParsedArguments& parsed,
                     const std::function<ExitStatus()>& run,
                     const std::function<void(const GString&)>& onFailure) {
  if (parsed.action == ParsedArguments::Action::Run) return run();
  if (parsed.action == ParsedArguments::Action::ShowText) return Show(program, parsed.text);
  const GString complaint = Complain(program, parsed.text);
  if (onFailure) onFailure(complaint);
  return ExitStatus::Usage;
}

ParsedArguments UsageError(const GString& program, const GString& what) {
  return {ParsedArguments::Action::UsageError,
          what + L" (" + program + L" --help tells the options)"};
}

}  // namespace examples
