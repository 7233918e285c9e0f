// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Executing, undoing and redoing N commands, and executing N commands on a stack that keeps the
// newest 1,000. The peer is the straightforward stack: a std::deque of handles and a position in
// it. Both must have run the same commands in the same order before they are timed.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include "shared/commands/CommandStack.h"

namespace {

using shr::Command;
using shr::CommandStack;
using shr::GString;
using shr::StatusCode;

constexpr std::uint64_t FULL_SIZE = 1000;

/// Folds what it is told into a checksum that depends on the order.
class Counting : public Command {
public:
  Counting(std::uint64_t id, std::uint64_t& checksum) : id_(id), checksum_(checksum) {}

private:
  StatusCode Fold(std::uint64_t what) {
    checksum_ = checksum_ * 31 + id_ * 3 + what;
    return shr::Success;
  }
  StatusCode DoImpl() override { return Fold(0); }
  GString KeyImpl() const override { return L"Counting"; }
  StatusCode RedoImpl() override { return Fold(1); }
  StatusCode UndoImpl() override { return Fold(2); }
  bool UndoRedoableImpl() const override { return true; }
  std::unique_ptr<Command> CloneImpl() const override {
    return std::make_unique<Counting>(id_, checksum_);
  }

  std::uint64_t id_;
  std::uint64_t& checksum_;
};

/// The straightforward stack, newest command at the back; those behind the position are undone.
class DequeStack {
public:
  explicit DequeStack(std::uint64_t maximumSize) : maximumSize_(maximumSize) {}

  void Do(std::shared_ptr<Command> command) {
    if (command->Do() != shr::Success) return;
    commands_.resize(done_);
    commands_.push_back(std::move(command));
    if (commands_.size() > maximumSize_) commands_.pop_front();
    done_ = commands_.size();
  }
  bool Undoable() const { return done_ > 0 && commands_[done_ - 1]->UndoRedoable(); }
  void Undo() { commands_[--done_]->Undo(); }
  bool Redoable() const { return done_ < commands_.size() && commands_[done_]->UndoRedoable(); }
  void Redo() { commands_[done_++]->Redo(); }

private:
  std::uint64_t maximumSize_;
  std::deque<std::shared_ptr<Command>> commands_;
  std::size_t done_ = 0;
};

template <typename Stack>
std::uint64_t DoUndoRedo(std::uint64_t count) {
  std::uint64_t checksum = 1;
  Stack stack(count);
  for (std::uint64_t id = 0; id < count; ++id) stack.Do(std::make_shared<Counting>(id, checksum));
  while (stack.Undoable()) stack.Undo();
  while (stack.Redoable()) stack.Redo();
  return checksum;
}

template <typename Stack>
std::uint64_t DoOnFullStack(std::uint64_t count) {
  std::uint64_t checksum = 1;
  Stack stack(FULL_SIZE);
  for (std::uint64_t id = 0; id < count; ++id) stack.Do(std::make_shared<Counting>(id, checksum));
  while (stack.Undoable()) stack.Undo();
  return checksum;
}

using Work = std::uint64_t (*)(std::uint64_t);

template <Work WORK, Work OTHER>
void Run(benchmark::State& state) {
  const auto count = static_cast<std::uint64_t>(state.range(0));
  if (WORK(FULL_SIZE * 3) != OTHER(FULL_SIZE * 3)) {
    std::fprintf(stderr, "contenders run different commands\n");
    std::abort();
  }
  for (auto _ : state) benchmark::DoNotOptimize(WORK(count));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(Run<DoUndoRedo<CommandStack>, DoUndoRedo<DequeStack>>)
    ->Name("commands/stack-do-undo-redo/ours")
    ->Apply(Sizes);
BENCHMARK(Run<DoUndoRedo<DequeStack>, DoUndoRedo<CommandStack>>)
    ->Name("commands/stack-do-undo-redo/deque")
    ->Apply(Sizes);
BENCHMARK(Run<DoOnFullStack<CommandStack>, DoOnFullStack<DequeStack>>)
    ->Name("commands/stack-do-full/ours")
    ->Apply(Sizes);
BENCHMARK(Run<DoOnFullStack<DequeStack>, DoOnFullStack<CommandStack>>)
    ->Name("commands/stack-do-full/deque")
    ->Apply(Sizes);

}  // namespace
