// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: all ways, copying too, against adding bytes one by one, for all short sizes, all
// alignments and sizes at which lanes are added up; the largest bytes, which would overflow a lane
// first.

#include "shared/archive/ByteSum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace shr {
namespace {

std::uint16_t PlainSum(const unsigned char* bytes, std::size_t size) {
  unsigned sum = 0;
  for (std::size_t i = 0; i < size; ++i) sum = (sum + bytes[i]) & 0xFFFFu;
  return static_cast<std::uint16_t>(sum);
}

TEST(ByteSum, bothWaysGiveTheSumOfAllBytes) {
  constexpr unsigned SEED = 20240;
  std::mt19937 random(SEED);
  std::vector<unsigned char> bytes(20000);
  for (const bool isLargest : {false, true}) {
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(isLargest ? 255 : random());
    std::vector<std::size_t> sizes = {2047, 2048, 2049, 2055, 4096, 16384, 19984};
    for (std::size_t size = 0; size < 200; ++size) sizes.push_back(size);
    for (const std::size_t size : sizes) {
      for (std::size_t offset = 0; offset < 16; offset += 3) {
        const std::uint16_t expected = PlainSum(bytes.data() + offset, size);
        EXPECT_EQ(expected, ByteSum(bytes.data() + offset, size)) << size << " seed " << SEED;
        EXPECT_EQ(expected, PortableByteSum(bytes.data() + offset, size)) << size;
        std::vector<unsigned char> copy(size + offset + 1, 7);
        EXPECT_EQ(expected, CopyAndSum(copy.data() + offset, bytes.data() + offset, size)) << size;
        EXPECT_TRUE(
            std::equal(copy.data() + offset, copy.data() + offset + size, bytes.data() + offset))
            << size;
        EXPECT_EQ(7, copy.back()) << size;
      }
    }
  }
  EXPECT_EQ(0, ByteSum(nullptr, 0));
  EXPECT_EQ(0, PortableByteSum(nullptr, 0));
}

}  // namespace
}  // namespace shr
