// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `RecordingCommand`, the command of these tests: it notes each operation in a journal and returns
/// the status it is told.

#pragma once

#include <boost/any.hpp>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "shared/commands/Command.h"

namespace shr {

class RecordingCommand : public Command {
public:
  using Journal = std::vector<std::string>;

  explicit RecordingCommand(std::string name, Journal* journal = nullptr)
      : name_(std::move(name)), journal_(journal) {}
  ~RecordingCommand() override { Note("destroyed"); }

  GString Label() const override { return label.empty() ? Command::Label() : label; }

  using Command::Memento;

  GString label;
  StatusCode status = Success;
  bool throws = false;
  bool redoable = true;
  bool equivalent = false;
  GString textKey, textValue, anyKey;
  boost::any anyValue;

private:
  StatusCode Run(const char* what) {
    Note(what);
    if (throws) throw std::runtime_error(what);
    return status;
  }
  void Note(const std::string& what) const {
    if (journal_) journal_->push_back(what + " " + name_);
  }

  StatusCode DoImpl() override { return Run("do"); }
  GString KeyImpl() const override { return GString(name_); }
  StatusCode RedoImpl() override { return Run("redo"); }
  StatusCode UndoImpl() override { return Run("undo"); }
  bool UndoRedoableImpl() const override { return redoable; }
  void EnumerateOptionsImpl(CommandOptionList& options) const override {
    if (!textKey.empty()) options.emplace_back(textKey, textValue);
  }
  bool EquivalentImpl(const Command&) const override { return equivalent; }
  bool OptionImpl(const GString& key, const boost::any& value) override {
    anyKey = key;
    anyValue = value;
    return true;
  }
  bool OptionImpl(const GString& key, const GString& value) override {
    textKey = key;
    textValue = value;
    return true;
  }
  std::unique_ptr<Command> CloneImpl() const override {
    return std::make_unique<RecordingCommand>(name_);
  }

  std::string name_;
  Journal* journal_;
};

}  // namespace shr
