// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Windows accounts CPU time in ticks of 10 to 16 ms. The program asks until the next tick and takes
// off what the asking cost: the number of questions times the cost of one, which is measured once
// over whole ticks. Counting questions in place of reading a wall clock keeps the time of other
// programs out. User and kernel time are rounded apart, so that a difference may still be off by a
// tick.

#include "bench/driver/benchmark/benchmark.h"
#include "shared/platform/WindowsTypes.h"

namespace benchmark {
namespace {

/// In units of 100 ns.
std::uint64_t Units(const FILETIME& time) {
  return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

double ThreadSeconds() {
  FILETIME created;
  FILETIME ended;
  FILETIME kernel;
  FILETIME user;
  if (GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user) == 0) return 0;
  return static_cast<double>(Units(kernel) + Units(user)) * 1e-7;
}

struct Tick {
  double seconds;
  double questions;
};

Tick WaitForTick() {
  // So many questions take seconds: the system keeps no account, and there is nothing to wait for.
  constexpr int PATIENCE = 10'000'000;
  const double before = ThreadSeconds();
  int questions = 1;
  double now = ThreadSeconds();
  for (; now == before && questions < PATIENCE; ++questions) now = ThreadSeconds();
  return {now, static_cast<double>(questions)};
}

double MeasureQuestion() {
  const double start = WaitForTick().seconds;
  double questions = 0;
  Tick tick{};
  for (int i = 0; i < 5; ++i) {
    tick = WaitForTick();
    questions += tick.questions;
  }
  return (tick.seconds - start) / questions;
}

}  // namespace

double CpuSeconds() {
  static const double secondsEach = MeasureQuestion();
  const Tick tick = WaitForTick();
  return tick.seconds - tick.questions * secondsEach;
}

}  // namespace benchmark
