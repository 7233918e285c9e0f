// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors
//
// Prints what text files are read as: for each encoding that may be asked for, with and without
// keepEncoding, the encoding in force and the number of lines.
//
//   encodings [--page NUMBER] FILE...
//
// Exit status: 0, 1 when a file cannot be read or the output cannot be written, 2 for a wrong
// command line.

#include <string>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/files/EncodedBufferedFile.h"
#include "shared/platform/Console.h"

namespace {

using shr::GString;

constexpr unsigned DEFAULT_PAGE = 1252;
constexpr int BAD_INPUT = 1;
constexpr int BAD_USAGE = 2;

constexpr const wchar_t* USAGE =
    L"usage: encodings [--page NUMBER] FILE...\n"
    L"Prints what each FILE is read as, by the encoding asked for; in brackets, what it is read "
    L"as\n"
    L"with keepEncoding. A number behind the encoding counts the lines, + marks a byte-order "
    L"mark.\n"
    L"  --page NUMBER  the code page of ANSI text (1252)\n"
    L"  --help         this text\n";

struct Command {
  unsigned codePage = DEFAULT_PAGE;
  bool isHelp = false;
  std::vector<GString> files;
};

bool Parse(const std::vector<GString>& arguments, Command& command) {
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (arguments[i] == L"--help") {
      command.isHelp = true;
    } else if (arguments[i] == L"--page") {
      if (++i == arguments.size() || !arguments[i].ToUnsignedInt(command.codePage)) return false;
    } else if (arguments[i].String().starts_with(L"--")) {
      return false;
    } else {
      command.files.push_back(arguments[i]);
    }
  }
  return command.isHelp || !command.files.empty();
}

const wchar_t* NameOf(shr::TextEncoding encoding) {
  constexpr const wchar_t* NAMES[] = {L"ANSI", L"UTF-8", L"UTF-16LE", L"UTF-16BE"};
  return NAMES[encoding];
}

/// Opens the file as asked and describes what came of it.
GString Describe(const GString& path, shr::TextEncoding asked, unsigned codePage, bool isKept) {
  shr::CEncodedBufferedFile file(path, L"rt", shr::CEncodedBufferedFile::ShareRead, asked, codePage,
                                 isKept, false);
  unsigned lines = 0;
  for (std::wstring line; file.ReadString(line); line.clear()) ++lines;
  const wchar_t* const mark = file.GetMarkSize() != 0 ? L"+" : L"";
  GString text;
  text.FormatString(L"%s%s %u", NameOf(file.GetEncoding()), mark, lines);
  return text;
}

int PrintFile(const GString& path, unsigned codePage) {
  GString text = path + L"\n";
  for (const auto asked :
       {shr::EncodingANSI, shr::EncodingUTF8, shr::EncodingUTF16LE, shr::EncodingUTF16BE}) {
    const GString found = Describe(path, asked, codePage, false);
    const GString kept = Describe(path, asked, codePage, true);
    text.AppendFormatString(L"  %-8s -> %s (%s)\n", NameOf(asked), found, kept);
  }
  return shr::platform::WriteResult(L"encodings", text);
}

}  // namespace

int main(int argc, char* argv[]) {
  Command command;
  if (!Parse(shr::platform::ProgramArguments(argc, argv), command)) {
    shr::platform::WriteText(stderr, USAGE);
    return BAD_USAGE;
  }
  if (command.isHelp) return shr::platform::WriteResult(L"encodings", USAGE);
  try {
    for (const GString& path : command.files) {
      if (PrintFile(path, command.codePage) != 0) return BAD_INPUT;
    }
  } catch (const shr::Exception& error) {
    shr::platform::WriteText(stderr, error.GetDescription() + L"\n");
    return BAD_INPUT;
  }
  return 0;
}
