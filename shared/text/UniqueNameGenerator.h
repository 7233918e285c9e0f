// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `UniqueNameGenerator` makes names unique within a set by numbered suffixes: Layer, Layer_2,
/// Layer_3.
///
/// Names are narrow text compared by byte; nothing folds case.
///
/// A name can come twice in two cases: `Get` without `commit` gives the same name again, and the
/// number of a name whose base was new is forgotten, as every new base starts at 1. So behind
/// `Add("Layer_2")` or `Get("Layer_2", true)`, `Get("Layer", true)` gives Layer_2 once more. Names
/// of one base should therefore begin with the bare one.
///
///     UniqueNameGenerator names;
///     names.Add("Layer");
///     std::string next = names.Get("Layer", true);     // Layer_2
///     next = names.Get("Layer_7", true);               // Layer_8
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "shared/Export.h"

namespace shr {

/// Base names with the largest number given out for each.
///
/// A suffix is "_" and decimal digits at the end of a name, of a value that fits the counter; other
/// digits belong to the name. A name that is nothing but a suffix is its own base.
class SHARED_API UniqueNameGenerator {
public:
  using Counter = std::uint32_t;

  /// The counter value that stands for no number.
  static constexpr Counter NO_NUMBER = 0;

  /// Returns the name without its suffix and the number that the next name of that base gets: one
  /// more than the larger of the suffix and the base's counter, or `NO_NUMBER` when there is
  /// neither. The numbers wrap around behind the largest counter.
  std::pair<std::string, Counter> StripName(const std::string& name) const;

  /// Takes a name as given out. A new base starts with the counter 1 whatever the suffix.
  void Add(const std::string& name);

  /// Returns a name for `name`: itself when its base is new, else the base with the next number.
  /// With `commit` the result is taken as given out. Errors: `std::invalid_argument` with `commit`
  /// when the numbers of the base are used up; the set is unchanged.
  std::string Get(const std::string& name, bool commit);

  /// Returns true when `name`, as it stands, is a base.
  bool Has(const std::string& name) const { return counters_.count(name) != 0; }

  void Clear() { counters_.clear(); }

  /// Returns the number of bases.
  std::size_t size() const { return counters_.size(); }

private:
  std::pair<std::string, Counter> BaseOf(const std::string& name) const;

  std::map<std::string, Counter> counters_;
};

}  // namespace shr
