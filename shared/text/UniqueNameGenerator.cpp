// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/UniqueNameGenerator.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string_view>

namespace shr {
namespace {

struct Suffix {
  std::size_t position = std::string::npos;  ///< Of the underscore; `npos` when there is no suffix.
  UniqueNameGenerator::Counter number = 0;
};

Suffix FindSuffix(std::string_view name) {
  const std::size_t lastOther = name.find_last_not_of("0123456789");
  if (lastOther == std::string_view::npos || name[lastOther] != '_') return {};
  Suffix suffix;
  const char* const last = name.data() + name.size();
  const auto result = std::from_chars(name.data() + lastOther + 1, last, suffix.number);
  if (result.ec != std::errc()) return {};
  suffix.position = lastOther;
  return suffix;
}

}  // namespace

std::pair<std::string, UniqueNameGenerator::Counter> UniqueNameGenerator::StripName(
    const std::string& name) const {
  const Suffix suffix = FindSuffix(name);
  std::string base = name.substr(0, suffix.position);
  const auto found = counters_.find(base);
  const bool known = found != counters_.end();
  if (suffix.position == std::string::npos && !known) return {std::move(base), NO_NUMBER};
  const Counter counter = known ? found->second : NO_NUMBER;
  return {std::move(base), std::max(counter, suffix.number) + 1};
}

std::pair<std::string, UniqueNameGenerator::Counter> UniqueNameGenerator::BaseOf(
    const std::string& name) const {
  auto stripped = StripName(name);
  if (!stripped.first.empty()) return stripped;
  const auto found = counters_.find(name);
  return {name, found == counters_.end() ? NO_NUMBER : found->second + 1};
}

void UniqueNameGenerator::Add(const std::string& name) {
  auto [base, next] = BaseOf(name);
  const auto [entry, isNew] = counters_.try_emplace(std::move(base), Counter{1});
  if (!isNew) entry->second = next - 1;
}

std::string UniqueNameGenerator::Get(const std::string& name, bool commit) {
  const auto [base, next] = BaseOf(name);
  const auto found = counters_.find(base);
  if (found == counters_.end()) {
    if (commit) Add(name);
    return name;
  }
  std::string result = base + '_' + std::to_string(next);
  if (commit) {
    if (next == NO_NUMBER) throw std::invalid_argument("Invalid flyweight argument.");
    found->second = next;
  }
  return result;
}

}  // namespace shr
