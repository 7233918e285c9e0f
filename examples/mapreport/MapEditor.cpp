// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/MapEditor.h"

#include <algorithm>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Format.h"
#include "examples/mapreport/MapArchive.h"
#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/Logger.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr std::uint64_t MOST_STEPS = 100;

/// Returns "1,679 events and 241 countries in view, 1,200 events counted, 7 classes of color".
GString DescribeState(const Model& model) {
  const auto countries = std::count_if(model.countries.begin(), model.countries.end(),
                                       [](const Country& c) { return !c.visible.counts.empty(); });
  GString text = FormatCount(CountVisible(model), L"event", L"events") + L" and " +
                 FormatCount(static_cast<std::size_t>(countries), L"country", L"countries") +
                 L" in view, " + FormatCount(CountInCountries(model)) + L" counted, " +
                 FormatCount(model.classes.size(), L"class", L"classes") + L" of color";
  if (!model.continent.IsEmpty()) text += L", " + model.continent.name + L" united";
  return text;
}

}  // namespace

MapEditor::MapEditor(Model& model, IProgress& progress)
    : model_(model), progress_(progress), stack_(MOST_STEPS) {
  if (model_.history.empty()) Record(READ, L"Read the layers");
}

void MapEditor::Do(const std::shared_ptr<Command>& step) {
  if (stack_.Do(step) != Success) throw UserAbortException(L"mapreport", L"MapEditor", __LINE__);
  Record(DONE, step->Label());
}

void MapEditor::TakeBackAndRedo(std::size_t count) {
  Operation operation(progress_, L"Taking back", 0);
  for (std::size_t i = 0; i < count && stack_.Undoable(); ++i) {
    const GString label = stack_.UndoLabel();
    stack_.Undo();
    Record(TAKEN_BACK, label);
  }
  while (stack_.Redoable()) {
    const GString label = stack_.RedoLabel();
    stack_.Redo();
    Record(REDONE, label);
  }
}

void MapEditor::Record(const wchar_t* action, const GString& label) {
  Step step{action, label, DescribeState(model_), Fingerprint(model_)};
  g_Logger.SendVA(LogInfo | LogRemote, L"%s: %s (%s; state %s)", action, label, step.outcome,
                  step.fingerprint);
  model_.history.push_back(std::move(step));
}

}  // namespace mapreport
