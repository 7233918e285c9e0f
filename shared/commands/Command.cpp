// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/Command.h"

#include <boost/any.hpp>

#include "shared/diagnostics/ThrowError.h"
#include "shared/text/StringUtility.h"

namespace shr {
namespace {

constexpr int REDO_DISABLED_LINE = 344;
constexpr int UNDO_DISABLED_LINE = 364;

GString TextOf(bool value) {
  return BoolToStringW(value);
}

}  // namespace

Memento::~Memento() = default;

Command::Command() = default;
Command::Command(const Command& other) = default;
Command& Command::operator=(const Command& other) = default;
Command::~Command() = default;

GString Command::Label() const {
  return Key();
}

StatusCode Command::Do() {
  return DoImpl();
}

StatusCode Command::Undo() {
  if (!UndoRedoable()) {
    ThrowErrorImpl(L"Command", UNDO_DISABLED_LINE, L"Cannot undo disabled command.");
  }
  return UndoImpl();
}

StatusCode Command::Redo() {
  if (!UndoRedoable()) {
    ThrowErrorImpl(L"Command", REDO_DISABLED_LINE, L"Cannot redo disabled command.");
  }
  return RedoImpl();
}

bool Command::UndoRedoable() const {
  return UndoRedoEnabled() && UndoRedoableImpl();
}

GString Command::Key() const {
  return KeyImpl();
}

bool Command::GuiEnabled() const {
  return HasState(GuiEnabledState);
}

void Command::GuiEnabled(bool enabled) {
  SetState(GuiEnabledState, enabled);
}

bool Command::ProgressEnabled() const {
  return HasState(ProgressEnabledState);
}

void Command::ProgressEnabled(bool enabled) {
  SetState(ProgressEnabledState, enabled);
}

bool Command::UndoRedoEnabled() const {
  return HasState(UndoRedoEnabledState);
}

void Command::UndoRedoEnabled(bool enabled) {
  SetState(UndoRedoEnabledState, enabled);
}

bool Command::Option(const GString& key, const GString& value) {
  if (key.empty()) return false;
  const GString lowerKey = key.ToLower();
  const std::uint8_t state = StateOfKey(lowerKey);
  if (state == 0) return OptionImpl(lowerKey, value);
  bool enabled = false;
  if (!value.ToBool(enabled)) return false;
  SetState(state, enabled);
  return true;
}

bool Command::Option(const wchar_t* key, const GString& value) {
  return Option(GString(key), value);
}

bool Command::Option(const GString& key, const wchar_t* value) {
  return Option(key, GString(value));
}

bool Command::Option(const wchar_t* key, const wchar_t* value) {
  return Option(GString(key), GString(value));
}

bool Command::Option(const GString& key, const boost::any& value) {
  if (key.empty()) return false;
  const GString lowerKey = key.ToLower();
  const std::uint8_t state = StateOfKey(lowerKey);
  if (state == 0) return OptionImpl(lowerKey, value);
  const bool* const enabled = boost::any_cast<bool>(&value);
  if (!enabled) return false;
  SetState(state, *enabled);
  return true;
}

bool Command::Option(const wchar_t* key, const boost::any& value) {
  return Option(GString(key), value);
}

void Command::EnumerateOptions(CommandOptionList& options) const {
  options.emplace_back(L"GuiEnabled", TextOf(GuiEnabled()));
  options.emplace_back(L"ProgressEnabled", TextOf(ProgressEnabled()));
  options.emplace_back(L"UndoRedoEnabled", TextOf(UndoRedoEnabled()));
  EnumerateOptionsImpl(options);
}

bool Command::Equivalent(const Command& other) const {
  return (Key() == other.Key() && Label() == other.Label()) || EquivalentImpl(other);
}

bool Command::Merge(const Command& newer) {
  return MergeImpl(newer);
}

void Command::EnumerateOptionsImpl(CommandOptionList&) const {}

bool Command::EquivalentImpl(const Command&) const {
  return false;
}

bool Command::MergeImpl(const Command&) {
  return false;
}

bool Command::OptionImpl(const GString&, const boost::any&) {
  return false;
}

bool Command::OptionImpl(const GString&, const GString&) {
  return false;
}

void Command::SetState(std::uint8_t states, bool enabled) {
  states_ = static_cast<std::uint8_t>(enabled ? states_ | states : states_ & ~states);
}

std::uint8_t Command::StateOfKey(const GString& key) {
  if (key == L"guienabled") return GuiEnabledState;
  if (key == L"progressenabled") return ProgressEnabledState;
  if (key == L"undoredoenabled") return UndoRedoEnabledState;
  return 0;
}

}  // namespace shr
