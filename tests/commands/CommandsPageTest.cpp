// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the code that docs/commands.md quotes, and that it does what the page says.

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "shared/commands/CommandStack.h"
#include "shared/commands/SimpleCommand.h"

namespace shr {
namespace {

struct CLayer {
  GString name;
};

// [command]
class Rename : public SimpleCommand {
public:
  Rename(CLayer& layer, GString name)
      : SimpleCommand(L"Rename", L"Rename layer"), layer_(layer), name_(std::move(name)) {}

private:
  StatusCode DoImpl() override {
    std::swap(layer_.name, name_);
    return Success;
  }
  StatusCode UndoImpl() override { return DoImpl(); }

  CLayer& layer_;
  GString name_;
};
// [end]

TEST(CommandsPage, theDocumentIsDoneUndoneAndSavedAsShown) {
  CLayer layer{L"Paths"};
  std::vector<GString> titles, saved;
  const auto ShowTitle = [&](const GString& title) { titles.push_back(title); };
  const auto SaveDocument = [&] { saved.push_back(layer.name); };
  // [document]
  CommandStack stack(100);  // the newest hundred
  stack.OnChange([&] { ShowTitle(stack.IsClean() ? L"Map" : L"Map *"); });
  stack.Do(std::make_shared<Rename>(layer, L"Roads"));
  if (stack.Undoable()) stack.Undo();  // "Undo " + stack.UndoLabel() is the menu's text
  if (stack.Redoable()) stack.Redo();
  SaveDocument();
  stack.SetClean();
  // [end]
  EXPECT_EQ((std::vector<GString>{L"Map *", L"Map", L"Map *", L"Map"}), titles);
  EXPECT_EQ(std::vector<GString>{L"Roads"}, saved);
  EXPECT_EQ(L"Rename layer", stack.UndoLabel());
  stack.Undo();
  EXPECT_EQ(L"Paths", layer.name);
}

}  // namespace
}  // namespace shr
