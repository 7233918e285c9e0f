// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The steps of the analysis as commands that a `shr::CommandStack` does, takes back and redoes.
///
///     stack.Do(std::make_shared<ClipToWindowCommand>(model, progress, window));
///     stack.Undo();   // the model is as it was
///
/// The model and the indicator must outlive the commands. Threads: one thread a model.

#pragma once

#include <memory>
#include <utility>

#include "examples/common/Progress.h"
#include "examples/mapreport/Model.h"
#include "shared/commands/Command.h"

namespace mapreport {

/// The part of a model that a step changes.
class SavedPart : public shr::Memento {
public:
  /// Exchanges the part of `model` with the one that is held.
  virtual void Exchange(Model& model) = 0;
};

/// A step that remembers the part that it changes, and exchanges it to take the step back and to do
/// it again. A step that was stopped or that failed leaves the model as it was.
class MapCommand : public shr::Command {
protected:
  MapCommand(Model& model, IProgress& progress) : model_(model), progress_(progress) {}

  IProgress& Indicator() const { return progress_; }
  Model& Target() const { return model_; }

private:
  shr::StatusCode DoImpl() final;
  shr::StatusCode UndoImpl() final;
  shr::StatusCode RedoImpl() final;
  bool UndoRedoableImpl() const final { return Memento() != nullptr; }

  /// Returns a copy of the part that the step is going to change.
  virtual std::shared_ptr<SavedPart> Save() const = 0;
  /// Changes the model. Returns false when the user stopped it.
  virtual bool Apply() = 0;

  Model& model_;
  IProgress& progress_;
};

/// Shows a window of the world.
class ClipToWindowCommand : public MapCommand {
public:
  ClipToWindowCommand(Model& model, IProgress& progress, const Box2d& window)
      : MapCommand(model, progress), window_(window) {}

  GString Label() const override;

private:
  GString KeyImpl() const override { return L"ClipToWindow"; }
  std::unique_ptr<Command> CloneImpl() const override;
  void EnumerateOptionsImpl(shr::CommandOptionList& options) const override;
  std::shared_ptr<SavedPart> Save() const override;
  bool Apply() override;

  Box2d window_;
};

/// Shows only what lies in an area.
class ClipToAreaCommand : public MapCommand {
public:
  ClipToAreaCommand(Model& model, IProgress& progress, Area area)
      : MapCommand(model, progress), area_(std::move(area)) {}

  GString Label() const override { return L"Clip to " + area_.name; }

private:
  GString KeyImpl() const override { return L"ClipToArea"; }
  std::unique_ptr<Command> CloneImpl() const override;
  void EnumerateOptionsImpl(shr::CommandOptionList& options) const override;
  std::shared_ptr<SavedPart> Save() const override;
  bool Apply() override;

  Area area_;
};

/// Unites the visible parts of the countries of a continent.
class UniteContinentCommand : public MapCommand {
public:
  UniteContinentCommand(Model& model, IProgress& progress, const GString& continent)
      : MapCommand(model, progress), continent_(continent) {}

  GString Label() const override { return L"Unite the countries of " + continent_; }

private:
  GString KeyImpl() const override { return L"UniteContinent"; }
  std::unique_ptr<Command> CloneImpl() const override;
  void EnumerateOptionsImpl(shr::CommandOptionList& options) const override;
  std::shared_ptr<SavedPart> Save() const override;
  bool Apply() override;

  GString continent_;
};

/// Counts the events of each country.
class CountEventsCommand : public MapCommand {
public:
  CountEventsCommand(Model& model, IProgress& progress) : MapCommand(model, progress) {}

  GString Label() const override { return L"Count the events of each country"; }

private:
  GString KeyImpl() const override { return L"CountEvents"; }
  std::unique_ptr<Command> CloneImpl() const override;
  std::shared_ptr<SavedPart> Save() const override;
  bool Apply() override;
};

/// Colors the countries by their counts.
class ColorByCountCommand : public MapCommand {
public:
  ColorByCountCommand(Model& model, IProgress& progress, Palette palette)
      : MapCommand(model, progress), palette_(std::move(palette)) {}

  GString Label() const override { return L"Color the countries by number of events"; }

private:
  GString KeyImpl() const override { return L"ColorByCount"; }
  std::unique_ptr<Command> CloneImpl() const override;
  void EnumerateOptionsImpl(shr::CommandOptionList& options) const override;
  std::shared_ptr<SavedPart> Save() const override;
  bool Apply() override;

  Palette palette_;
};

}  // namespace mapreport
