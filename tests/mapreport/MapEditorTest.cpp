// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Steps that are taken back and done again, on the made map of SmallModel.h.

#include "examples/mapreport/MapEditor.h"

#include <gtest/gtest.h>

#include "examples/mapreport/MapArchive.h"
#include "examples/mapreport/MapCommands.h"
#include "shared/diagnostics/Exception.h"
#include "tests/mapreport/SmallModel.h"

using namespace mapreport;

namespace {

SilentProgress silent;

/// The history as "Done Label: state" with states numbered as they first appear.
std::vector<std::pair<GString, std::size_t>> Actions(const Model& model) {
  std::vector<GString> states;
  std::vector<std::pair<GString, std::size_t>> actions;
  for (const Step& step : model.history) {
    const auto found = std::find(states.begin(), states.end(), step.fingerprint);
    actions.emplace_back(step.action, static_cast<std::size_t>(found - states.begin()));
    if (found == states.end()) states.push_back(step.fingerprint);
  }
  return actions;
}

void RunAllSteps(MapEditor& editor, Model& model, IProgress& progress = silent) {
  editor.Do(std::make_shared<ClipToWindowCommand>(model, progress, Box2d(-5, -5, 5, 15)));
  editor.Do(std::make_shared<CountEventsCommand>(model, progress));
  editor.Do(std::make_shared<ColorByCountCommand>(model, progress, DefaultPalette()));
}

}  // namespace

TEST(MapEditor, stepsTakenBackLeadThroughTheSameStates) {
  Model model = SmallModel();
  MapEditor editor(model, silent);
  RunAllSteps(editor, model);
  const std::string before = StoreMap(model);
  editor.TakeBackAndRedo(2);
  const std::vector<std::pair<GString, std::size_t>> expected = {
      {READ, 0},       {DONE, 1},       {DONE, 2},   {DONE, 3},
      {TAKEN_BACK, 2}, {TAKEN_BACK, 1}, {REDONE, 2}, {REDONE, 3}};
  EXPECT_EQ(expected, Actions(model));
  EXPECT_EQ(L"Count the events of each country", model.history[6].label);
  model.history.resize(4);
  EXPECT_EQ(before, StoreMap(model));
}

TEST(MapEditor, clippingToAnAreaAndUnitingAreTakenBack) {
  Model model = SmallModel();
  model.countries[0].continent = L"C";
  model.rivers.push_back({L"R", {Vec2d(-4, 1), Vec2d(12, 1)}, {}});
  MapEditor editor(model, silent);
  editor.Do(std::make_shared<ClipToWindowCommand>(model, silent, Box2d(-5, -5, 15, 15)));
  const Area corner{L"corner", {{Vec2d(0, 0), Vec2d(3, 0), Vec2d(3, 3), Vec2d(0, 3)}, {4}}};
  editor.Do(std::make_shared<ClipToAreaCommand>(model, silent, corner));
  editor.Do(std::make_shared<UniteContinentCommand>(model, silent, L"c"));
  EXPECT_EQ(L"C", model.continent.name);
  editor.TakeBackAndRedo(3);
  const std::vector<std::pair<GString, std::size_t>> expected = {
      {READ, 0},       {DONE, 1},       {DONE, 2},   {DONE, 3},   {TAKEN_BACK, 2},
      {TAKEN_BACK, 1}, {TAKEN_BACK, 0}, {REDONE, 1}, {REDONE, 2}, {REDONE, 3}};
  EXPECT_EQ(expected, Actions(model));
}

TEST(MapEditor, noMoreStepsAreTakenBackThanThereAre) {
  Model model = SmallModel();
  MapEditor editor(model, silent);
  RunAllSteps(editor, model);
  editor.TakeBackAndRedo(50);
  ASSERT_EQ(10u, model.history.size());
  EXPECT_EQ(model.history[0].fingerprint, model.history[6].fingerprint);
  EXPECT_EQ(model.history[3].fingerprint, model.history[9].fingerprint);
  MapEditor next(model, silent);
  next.TakeBackAndRedo(1);
  EXPECT_EQ(10u, model.history.size()) << "another editor did these steps";
}

TEST(MapEditor, aStoppedStepLeavesTheModelAsItWas) {
  for (std::uint64_t steps = 0; steps < 2; ++steps) {
    Model model = SmallModel();
    MapEditor editor(model, silent);
    SilentProgress stopping(steps);
    EXPECT_THROW(RunAllSteps(editor, model, stopping), shr::UserAbortException) << steps;
    ASSERT_FALSE(model.history.empty());
    EXPECT_EQ(model.history.back().fingerprint, Fingerprint(model)) << steps;
  }
}

TEST(MapEditor, aStepTellsItsOptions) {
  Model model = SmallModel();
  const ClipToWindowCommand clip(model, silent, Box2d(-5, -5, 5, 15));
  shr::CommandOptionList options;
  clip.EnumerateOptions(options);
  EXPECT_EQ(L"-5,-5,5,15", options.back().second);
  EXPECT_FALSE(clip.UndoRedoable()) << "it was never done";
}
