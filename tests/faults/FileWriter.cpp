// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The writer and the check of the kill loop (kill_loop.py):
//
//     file_writer prepare ini|registry|log PATH   makes the first save
//     file_writer write ini|registry|log PATH     makes the next ones until it is killed
//     file_writer check ini|registry|log PATH     succeeds when there is one save, whole
//
// Each save of settings replaces values by others that tell its number and have sizes that change
// with it, beside a setting that was made by the first one and must stay. PATH is the file, or the
// folder of the registry store. A log is written line by line.

#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/Logger.h"
#include "shared/files/ConfigFile.h"
#include "shared/files/EncodedBufferedFile.h"
#include "shared/platform/Paths.h"
#include "shared/platform/Registry.h"
#include "shared/platform/WindowsTypes.h"

namespace {

using shr::CConfigFile;
using shr::GString;
using namespace shr::platform;

constexpr int LINES = 2000;
const GString KEPT_VALUE = L"since the first save";

[[noreturn]] void Fail(const std::string& reason) {
  std::cerr << reason << '\n';
  std::exit(1);
}

/// Lines of a save: the length of a value depends on the number, so that mixtures show.
std::vector<GString> LinesOf(int save) {
  const std::wstring value =
      std::to_wstring(save) + GString(static_cast<unsigned>(save) % 17, L'x').String();
  std::vector<GString> lines;
  for (int i = 0; i < LINES; ++i) lines.push_back(L"Key " + std::to_wstring(i) + L"=" + value);
  return lines;
}

/// A kind of file: how a save is made, and how the last one is found.
struct Kind {
  std::function<void(int save)> write;
  /// Returns the number of the save; fails when it is not whole.
  std::function<int()> read;
};

Kind Ini(const GString& path) {
  const auto write = [path](int save) {
    const CConfigFile file(path);
    if (save == 0) file.Write(L"Kept", L"Value", KEPT_VALUE);
    file.WriteSection(L"Save", LinesOf(save));
  };
  const auto read = [path] {
    const CConfigFile file(path);
    GString kept;
    if (!file.Read(L"Kept", L"Value", kept)) Fail("the setting that was made once is gone");
    if (kept != KEPT_VALUE) Fail("the setting that was made once has changed");
    std::vector<GString> lines;
    file.ReadSection(L"Save", lines);
    if (lines.size() != LINES) Fail("there are " + std::to_string(lines.size()) + " lines");
    const int save = std::stoi(lines[0].String().substr(lines[0].String().find(L'=') + 1));
    if (lines != LinesOf(save)) Fail("the lines are not all of one save");
    return save;
  };
  return {write, read};
}

RegistryValue ValueOf(int save) {
  const auto size = static_cast<std::size_t>(20'000 + save % 1000);
  return {RegistryType::Binary, std::to_string(save) + std::string(size, 'x')};
}

Kind Registry(const std::string& folder) {
  setenv("SHARED_REGISTRY_DIR", folder.c_str(), 1);
  const auto write = [](int save) {
    RegistryKey key;
    const bool opened = key.Create(HKEY_CURRENT_USER, L"Kill") == RegistryStatus::Success;
    const RegistryValue kept = {RegistryType::Binary, "kept"};
    if (!opened || (save == 0 && key.Set(L"Kept", kept) != RegistryStatus::Success) ||
        key.Set(L"Save", ValueOf(save)) != RegistryStatus::Success) {
      Fail(RegistryErrorText().ToUtf8());
    }
  };
  const auto read = [] {
    RegistryKey key;
    RegistryValue kept, value;
    if (key.Open(HKEY_CURRENT_USER, L"Kill", RegistryAccess::Read) != RegistryStatus::Success ||
        key.Query(L"Kept", kept) != RegistryStatus::Success ||
        key.Query(L"Save", value) != RegistryStatus::Success) {
      Fail(RegistryErrorText().ToUtf8());
    }
    const int save = std::stoi(value.bytes);
    if (kept.bytes != "kept" || value != ValueOf(save)) Fail("the values are not of one save");
    return save;
  };
  return {write, read};
}

std::wstring LogLine(int number) {
  return L"line " + std::to_wstring(number) + L" of a log" +
         GString(static_cast<unsigned>(number) % 50, L'.').String();
}

/// A log that each run begins afresh. Its lines are numbered; the last one may be cut.
Kind Log(const GString& path) {
  const auto write = [path](int save) {
    shr::CLogger logger(path);
    for (int number = 1; number < 10 || save > 0; ++number) {
      logger.Send(shr::LogInfo, LogLine(number));
    }
  };
  const auto read = [path] {
    // The file of the run before is deleted first.
    if (!TestAccess(path, PathAccess::Exists)) return 0;
    shr::CEncodedBufferedFile file(path, L"rb", shr::CEncodedBufferedFile::ShareAll,
                                   shr::EncodingUTF16LE, 0, false, false);
    int number = 0;
    for (std::wstring line; file.ReadString(line); line.clear(), ++number) {
      const std::wstring expected = number == 0 ? std::wstring() : LogLine(number);
      if (line == expected) continue;
      if (!expected.starts_with(line)) Fail("line " + std::to_string(number) + " is broken");
      if (file.ReadString(line)) Fail("a line is cut that is not the last one");
      break;
    }
    return number;
  };
  return {write, read};
}

Kind KindCalled(std::string_view name, const std::string& path) {
  if (name == "ini") return Ini(GString(path));
  if (name == "registry") return Registry(path);
  if (name == "log") return Log(GString(path));
  Fail("this is no kind of file");
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 4) Fail("file_writer prepare|write|check ini|registry|log PATH");
  const std::string_view action = arguments[1];
  const Kind kind = KindCalled(arguments[2], arguments[3]);
  try {
    if (action == "prepare") {
      kind.write(0);
    } else if (action == "check") {
      std::cout << "save " << kind.read() << '\n';
    } else {
      for (int save = kind.read() + 1;; ++save) kind.write(save);
    }
    return 0;
  } catch (const shr::Exception& error) {
    Fail(error.GetDescription().ToUtf8());
  } catch (const std::exception& error) {
    Fail(error.what());
  }
}
