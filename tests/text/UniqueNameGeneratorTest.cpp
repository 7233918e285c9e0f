// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/UniqueNameGenerator.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace shr {
namespace {

TEST(UniqueNameGenerator, countsUpFromTheAddedName) {
  UniqueNameGenerator names;
  names.Add("Layer");
  EXPECT_EQ(names.Get("Layer", true), "Layer_2");
  EXPECT_EQ(names.Get("Layer", false), "Layer_3");
  EXPECT_EQ(names.Get("Layer", true), "Layer_3");
  EXPECT_EQ(names.Get("Layer_7", true), "Layer_8");
  EXPECT_EQ(names.Get("Layer_2", true), "Layer_9");
  EXPECT_EQ(names.size(), 1u);
}

TEST(UniqueNameGenerator, newNamesStayAsTheyAre) {
  UniqueNameGenerator names;
  EXPECT_EQ(names.Get("Map_5", false), "Map_5");
  EXPECT_EQ(names.size(), 0u);
  EXPECT_EQ(names.Get("Map_5", true), "Map_5");
  EXPECT_TRUE(names.Has("Map"));
  EXPECT_FALSE(names.Has("Map_5"));
  EXPECT_EQ(names.Get("Map", true), "Map_2") << "a new base starts at 1 whatever its suffix";
  EXPECT_EQ(names.Get("map", true), "map") << "case matters";
  names.Clear();
  EXPECT_FALSE(names.Has("Map"));
}

TEST(UniqueNameGenerator, addKeepsTheLargerNumber) {
  UniqueNameGenerator names;
  names.Add("a");
  names.Add("a_10");
  EXPECT_EQ(names.Get("a", false), "a_11");
  names.Add("a_3");
  EXPECT_EQ(names.Get("a", false), "a_11");
}

TEST(UniqueNameGenerator, suffixesAreDigitsBehindTheLastUnderscore) {
  UniqueNameGenerator names;
  names.Add("known");
  const struct {
    const char* name;
    const char* base;
    UniqueNameGenerator::Counter number;
  } rows[] = {{"a_7", "a", 8},
              {"a_1_2", "a_1", 3},
              {"a__5", "a_", 6},
              {"a_", "a_", 0},
              {"a7", "a7", 0},
              {"a_7b", "a_7b", 0},
              {"a_007", "a", 8},
              {"known", "known", 2},
              {"known_1", "known", 2},
              {"known_0", "known", 2},
              {"_5", "", 6},
              {"12", "12", 0},
              {"", "", 0},
              {"a_-1", "a_-1", 0},
              {"a_99999999999", "a_99999999999", 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(names.StripName(row.name), std::make_pair(std::string(row.base), row.number))
        << row.name;
  }
}

TEST(UniqueNameGenerator, nameThatIsOnlyASuffixIsItsOwnBase) {
  UniqueNameGenerator names;
  names.Add("_5");
  EXPECT_TRUE(names.Has("_5"));
  EXPECT_EQ(names.Get("_5", true), "_5_2");
  EXPECT_EQ(names.Get("_5", true), "_5_3");
  EXPECT_EQ(names.Get("_6", false), "_6");
}

TEST(UniqueNameGenerator, givesTheNumberOfANewBaseOnceMore) {
  UniqueNameGenerator added;
  added.Add("Layer_2");
  EXPECT_EQ(added.Get("Layer", true), "Layer_2");
  EXPECT_EQ(added.Get("Layer", true), "Layer_3");
  UniqueNameGenerator taken;
  EXPECT_EQ(taken.Get("Layer_2", true), "Layer_2");
  EXPECT_EQ(taken.Get("Layer", true), "Layer_2");
  UniqueNameGenerator begunBare;
  begunBare.Add("Layer");
  begunBare.Add("Layer_2");
  EXPECT_EQ(begunBare.Get("Layer", true), "Layer_3");
}

TEST(UniqueNameGenerator, refusesToWrapAround) {
  UniqueNameGenerator names;
  names.Add("a");
  names.Add("a_4294967295");
  try {
    names.Get("a", true);
    FAIL() << "the numbers are used up";
  } catch (const std::exception& error) {
    EXPECT_STREQ(error.what(), "Invalid flyweight argument.");
  }
  EXPECT_THROW(names.Get("a_2", true), std::invalid_argument);
}

}  // namespace
}  // namespace shr
