#include "hosts/desktop/MemoryReturn.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <cstdlib>
#include <memory>

namespace desktop {

namespace {

struct Free {
  void operator()(void* block) const { std::free(block); }
};
using Block = std::unique_ptr<void, Free>;

/// About what a frame of a large film takes.
constexpr std::size_t frame = 12 << 20;

std::size_t mapped() {
  return mallinfo2().hblkhd;
}

}  // namespace

TEST(MemoryReturn, FramesAreMappedOneByOneEvenAfterOneWasFreed) {
  returnFreedMemory();
  const std::size_t before = mapped();
  Block block(std::malloc(frame));
  ASSERT_GE(mapped(), before + frame);
  block.reset();
  EXPECT_EQ(mapped(), before);
  block.reset(std::malloc(frame));
  EXPECT_GE(mapped(), before + frame);
}

}  // namespace desktop
