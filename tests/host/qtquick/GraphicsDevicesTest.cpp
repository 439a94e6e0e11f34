#include "hosts/qtquick/GraphicsDevices.h"

#include "tests/host/probe/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using qtquick::hasGraphicsDevice;

class GraphicsDevices : public testing::TestWithParam<const char*> {
 protected:
  GraphicsDevices() {
    for (const char* name : {"null", "tty0", "snd/controlC0", "input/event0"}) folder_.write(name, "");
  }
  bool areThere() const { return hasGraphicsDevice(folder_.path().string()); }

  TemporaryFolder folder_;
};

TEST_F(GraphicsDevices, AreNotThereWhereNoneIs) {
  EXPECT_FALSE(areThere());
}

TEST_F(GraphicsDevices, MayBeThereWhereNobodyCanLook) {
  EXPECT_TRUE(hasGraphicsDevice(folder_ / "missing"));
}

TEST_P(GraphicsDevices, AreKnownByTheirNames) {
  folder_.write(GetParam(), "");
  EXPECT_TRUE(areThere());
}

INSTANTIATE_TEST_SUITE_P(Names, GraphicsDevices,
                         testing::Values("dri/renderD128", "nvidia0", "nvhost-gpu", "mali0", "kgsl-3d0", "pvrsrvkm"));

}  // namespace
