// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/MapCommands.h"

#include <utility>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Areas.h"
#include "examples/mapreport/Format.h"
#include "examples/mapreport/Settings.h"

namespace mapreport {

using namespace shr;

namespace {

/// What is visible.
class SavedView : public SavedPart {
public:
  explicit SavedView(const Model& model)
      : window_(model.window), clip_(model.clip), continent_(model.continent) {
    for (const Country& country : model.countries) countries_.push_back(country.visible);
    for (const River& river : model.rivers) rivers_.push_back(river.visible);
    for (const Event& event : model.events) events_.push_back(event.visible);
    for (const City& city : model.cities) cities_.push_back(city.visible);
    for (const Track& track : model.tracks) tracks_.push_back(track.visible);
    for (const Waypoint& waypoint : model.waypoints) waypoints_.push_back(waypoint.visible);
  }

  void Exchange(Model& model) override {
    std::swap(window_, model.window);
    std::swap(clip_, model.clip);
    std::swap(continent_, model.continent);
    ExchangePieces(countries_, model.countries);
    ExchangePieces(rivers_, model.rivers);
    ExchangePieces(tracks_, model.tracks);
    ExchangeFlags(events_, model.events);
    ExchangeFlags(cities_, model.cities);
    ExchangeFlags(waypoints_, model.waypoints);
  }

private:
  template <class Part>
  static void ExchangePieces(std::vector<Contours>& pieces, std::vector<Part>& parts) {
    for (std::size_t i = 0; i < pieces.size(); ++i) std::swap(pieces[i], parts[i].visible);
  }
  template <class Point>
  static void ExchangeFlags(std::vector<bool>& flags, std::vector<Point>& points) {
    for (std::size_t i = 0; i < flags.size(); ++i) {
      const bool flag = flags[i];
      flags[i] = points[i].visible;
      points[i].visible = flag;
    }
  }

  Box2d window_;
  Area clip_;
  Area continent_;
  std::vector<Contours> countries_;
  std::vector<Contours> rivers_;
  std::vector<bool> events_;
  std::vector<bool> cities_;
  std::vector<Contours> tracks_;
  std::vector<bool> waypoints_;
};

/// What was counted.
class SavedCounts : public SavedPart {
public:
  explicit SavedCounts(const Model& model) {
    for (const Country& country : model.countries) {
      countries_.emplace_back(country.eventCount, country.largestEvent);
    }
    for (const Event& event : model.events) events_.push_back(event.country);
  }

  void Exchange(Model& model) override {
    for (std::size_t i = 0; i < countries_.size(); ++i) {
      std::swap(countries_[i].first, model.countries[i].eventCount);
      std::swap(countries_[i].second, model.countries[i].largestEvent);
    }
    for (std::size_t i = 0; i < events_.size(); ++i) {
      std::swap(events_[i], model.events[i].country);
    }
  }

private:
  std::vector<std::pair<std::size_t, std::size_t>> countries_;
  std::vector<std::size_t> events_;
};

/// How it is colored.
class SavedColors : public SavedPart {
public:
  explicit SavedColors(const Model& model) : palette_(model.palette), classes_(model.classes) {
    for (const Country& country : model.countries) fills_.push_back(country.fill);
  }

  void Exchange(Model& model) override {
    std::swap(palette_, model.palette);
    std::swap(classes_, model.classes);
    for (std::size_t i = 0; i < fills_.size(); ++i) {
      std::swap(fills_[i], model.countries[i].fill);
    }
  }

private:
  Palette palette_;
  std::vector<ColorClass> classes_;
  std::vector<Color4b> fills_;
};

/// The united continent.
class SavedContinent : public SavedPart {
public:
  explicit SavedContinent(const Model& model) : continent_(model.continent) {}

  void Exchange(Model& model) override { std::swap(continent_, model.continent); }

private:
  Area continent_;
};

void Exchange(const std::shared_ptr<Memento>& saved, Model& model) {
  static_cast<SavedPart&>(*saved).Exchange(model);
}

}  // namespace

StatusCode MapCommand::DoImpl() {
  const std::shared_ptr<SavedPart> before = Save();
  bool isWhole = false;
  try {
    isWhole = Apply();
  } catch (...) {
    before->Exchange(model_);
    throw;
  }
  if (!isWhole) {
    before->Exchange(model_);
    return Cancelled;
  }
  Memento(before);
  return Success;
}

StatusCode MapCommand::UndoImpl() {
  Exchange(Memento(), model_);
  return Success;
}

StatusCode MapCommand::RedoImpl() {
  Exchange(Memento(), model_);
  return Success;
}

GString ClipToWindowCommand::Label() const {
  return L"Clip to the window " + FormatWindow(window_);
}

std::unique_ptr<Command> ClipToWindowCommand::CloneImpl() const {
  return std::make_unique<ClipToWindowCommand>(Target(), Indicator(), window_);
}

void ClipToWindowCommand::EnumerateOptionsImpl(CommandOptionList& options) const {
  options.emplace_back(L"Window", WindowText(window_));
}

std::shared_ptr<SavedPart> ClipToWindowCommand::Save() const {
  return std::make_shared<SavedView>(Target());
}

bool ClipToWindowCommand::Apply() {
  return ClipToWindow(Target(), window_, Indicator());
}

std::unique_ptr<Command> ClipToAreaCommand::CloneImpl() const {
  return std::make_unique<ClipToAreaCommand>(Target(), Indicator(), area_);
}

void ClipToAreaCommand::EnumerateOptionsImpl(CommandOptionList& options) const {
  options.emplace_back(L"Area", area_.name);
}

std::shared_ptr<SavedPart> ClipToAreaCommand::Save() const {
  return std::make_shared<SavedView>(Target());
}

bool ClipToAreaCommand::Apply() {
  return ClipToArea(Target(), area_, Indicator());
}

std::unique_ptr<Command> UniteContinentCommand::CloneImpl() const {
  return std::make_unique<UniteContinentCommand>(Target(), Indicator(), continent_);
}

void UniteContinentCommand::EnumerateOptionsImpl(CommandOptionList& options) const {
  options.emplace_back(L"Continent", continent_);
}

std::shared_ptr<SavedPart> UniteContinentCommand::Save() const {
  return std::make_shared<SavedContinent>(Target());
}

bool UniteContinentCommand::Apply() {
  return UniteContinent(Target(), continent_, Indicator());
}

std::unique_ptr<Command> CountEventsCommand::CloneImpl() const {
  return std::make_unique<CountEventsCommand>(Target(), Indicator());
}

std::shared_ptr<SavedPart> CountEventsCommand::Save() const {
  return std::make_shared<SavedCounts>(Target());
}

bool CountEventsCommand::Apply() {
  return CountEvents(Target(), Indicator());
}

std::unique_ptr<Command> ColorByCountCommand::CloneImpl() const {
  return std::make_unique<ColorByCountCommand>(Target(), Indicator(), palette_);
}

void ColorByCountCommand::EnumerateOptionsImpl(CommandOptionList& options) const {
  options.emplace_back(L"Colors", ColorsText(palette_.ramp));
}

std::shared_ptr<SavedPart> ColorByCountCommand::Save() const {
  return std::make_shared<SavedColors>(Target());
}

bool ColorByCountCommand::Apply() {
  ColorByCount(Target(), palette_);
  return true;
}

}  // namespace mapreport
