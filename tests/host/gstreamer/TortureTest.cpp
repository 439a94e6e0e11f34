#include "tests/host/gstreamer/Torture.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace gstreamer {

TEST(Torture, AThousandCommandsBreakNothing) {
  constexpr std::uint32_t seed = 20261122;  // other ones are for the soak
  const Ordeal ordeal = torture(seed, 1000);
  EXPECT_EQ(ordeal.fault, "") << "after " << ordeal.commands << " commands of the seed " << seed;
}

}  // namespace gstreamer
