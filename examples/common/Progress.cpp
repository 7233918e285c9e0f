// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/common/Progress.h"

#include <cstdio>
#include <string>

#include "shared/commands/ProgressFactory.h"
#include "shared/platform/Console.h"

namespace examples {

using namespace shr;

namespace {

constexpr const wchar_t* CONSOLE_KEY = L"Console";
constexpr const wchar_t* SILENT_KEY = L"Silent";

class ConsoleProgress : public IProgress {
public:
  ~ConsoleProgress() override { Overwrite(GString()); }

  void Begin(const GString& label, std::uint64_t total) override {
    label_ = label;
    total_ = total;
    Advance(0);
  }
  void Advance(std::uint64_t done) override {
    const GString line = ProgressLine(label_, done, total_);
    if (line != shown_) Overwrite(line);
  }
  bool IsCancelled() const override { return false; }
  void End() override { Overwrite(GString()); }

private:
  void Overwrite(const GString& line) {
    if (line.empty() && shown_.empty()) return;
    GString text(L"\r");
    text += line;
    if (line.size() < shown_.size()) text.append(shown_.size() - line.size(), L' ');
    text += L"\r";
    text += line;
    shown_ = line;
    platform::WriteText(stderr, text);
  }

  GString label_;
  GString shown_;
  std::uint64_t total_ = 0;
};

class SilentProgress : public IProgress {
public:
  void Begin(const GString&, std::uint64_t) override {}
  void Advance(std::uint64_t) override {}
  bool IsCancelled() const override { return false; }
  void End() override {}
};

template <class Indicator>
class Creator : public ProgressFactory {
public:
  explicit Creator(const wchar_t* key) : ProgressFactory(key, this) {}

private:
  std::unique_ptr<IProgress> ConstructImpl() const override {
    return std::make_unique<Indicator>();
  }
};

const Creator<ConsoleProgress> consoleCreator(CONSOLE_KEY);
const Creator<SilentProgress> silentCreator(SILENT_KEY);

}  // namespace

std::unique_ptr<IProgress> MakeProgress(bool quiet) {
  if (quiet || !platform::IsTerminal(stderr)) return ProgressFactory::Construct(SILENT_KEY);
  return ProgressFactory::Construct();
}

GString ProgressLine(const GString& label, std::uint64_t done, std::uint64_t total) {
  if (total == 0) return label;
  return label + L" " + std::to_wstring(100 * done / total).c_str() + L" %";
}

Operation::Operation(IProgress& progress, const GString& label, std::uint64_t total)
    : progress_(progress) {
  progress_.Begin(label, total);
}

Operation::~Operation() {
  progress_.End();
}

bool Operation::Step() {
  progress_.Advance(++done_);
  return !progress_.IsCancelled();
}

}  // namespace examples
