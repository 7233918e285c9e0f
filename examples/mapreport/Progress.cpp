// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Progress.h"

#include <cstdio>
#include <string>

#include "shared/platform/Console.h"

namespace mapreport {

using namespace shr;

Progress::Progress(std::size_t steps, bool quiet)
    : steps_(steps), visible_(!quiet && platform::IsTerminal(stderr)) {}

Progress::~Progress() {
  Finish();
}

void Progress::Step(const GString& what) {
  if (visible_) {
    const std::size_t percent = 100 * done_ / steps_;
    Overwrite(GString(std::to_wstring(percent)) + L" % " + what);
  }
  ++done_;
}

void Progress::Finish() {
  if (visible_ && shownLength_ > 0) Overwrite(GString());
}

void Progress::Overwrite(const GString& line) {
  GString text(L"\r");
  text += line;
  if (line.size() < shownLength_) text.append(shownLength_ - line.size(), L' ');
  text += L"\r";
  text += line;
  shownLength_ = line.size();
  platform::WriteText(stderr, text);
}

}  // namespace mapreport
