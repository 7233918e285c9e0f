// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Reads the input as lines "name=value", sets them as options of a command, and checks that the
// switches follow a plain reading of the lines and that the enumerated options rebuild the command.

#include <boost/any.hpp>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "shared/commands/CommandOptions.h"

namespace {

using namespace shr;

/// Keeps every option that is not a switch.
class KeepingCommand : public Command {
private:
  StatusCode DoImpl() override { return Success; }
  GString KeyImpl() const override { return L"Keep"; }
  StatusCode RedoImpl() override { return Success; }
  StatusCode UndoImpl() override { return Success; }
  bool UndoRedoableImpl() const override { return true; }
  void EnumerateOptionsImpl(CommandOptionList& options) const override {
    options.insert(options.end(), kept_.begin(), kept_.end());
  }
  bool OptionImpl(const GString&, const boost::any&) override { return false; }
  bool OptionImpl(const GString& key, const GString& value) override {
    if (key.empty() || key != key.ToLower()) std::abort();
    kept_.emplace_back(key, value);
    return true;
  }
  std::unique_ptr<Command> CloneImpl() const override {
    return std::make_unique<KeepingCommand>(*this);
  }

  CommandOptionList kept_;
};

void Check(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const GString text(std::wstring(data, data + size));
  CommandOptions described(L"Keep");
  KeepingCommand command;
  bool guiEnabled = true;
  for (GString::size_type pos = 0; pos < text.size();) {
    const GString line = text.ParseToken(pos, L'\n');
    const GString::size_type split = line.find(L'=');
    if (split == GString::npos) continue;
    described.Add(line.substr(0, split), line.substr(split + 1));
    const auto& [name, value] = *described.rbegin();
    bool parsed = false;
    const bool isGui = StringEquivalent()(name.String(), L"guienabled");
    const bool taken = isGui ? value.ToBool(parsed) : !name.empty();
    if (isGui && taken) guiEnabled = parsed;
    if (!StringEquivalent()(name.String(), L"progressenabled") &&
        !StringEquivalent()(name.String(), L"undoredoenabled")) {
      Check(command.Option(name, value) == taken);
    } else {
      command.Option(name, value);
    }
  }
  Check(command.GuiEnabled() == guiEnabled);
  CommandOptionList options, again;
  command.EnumerateOptions(options);
  KeepingCommand rebuilt;
  for (const auto& [name, value] : options) Check(rebuilt.Option(name, value));
  rebuilt.EnumerateOptions(again);
  Check(options == again);
  return 0;
}
