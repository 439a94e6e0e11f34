#include "tests/host/gstreamer/Torture.h"

#include <gtest/gtest.h>

#include <random>

namespace gstreamer {

TEST(Torture, AThousandCommandsBreakNothing) {
  const auto seed = static_cast<std::uint32_t>(std::random_device()());
  std::printf("seed %u\n", seed);
  const Ordeal ordeal = torture(seed, 1000);
  EXPECT_EQ(ordeal.fault, "") << "after " << ordeal.commands << " commands of the seed " << seed;
}

}  // namespace gstreamer
