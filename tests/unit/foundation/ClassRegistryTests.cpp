#include "platform/foundation/ClassRegistry.h"

#include "platform/foundation/Values.h"
#include "platform/uikit/UIStoryboard.h"

#include <gtest/gtest.h>

namespace {

class Plain final : public NSObject {};

class FromCoder final : public NSObject {
 public:
  explicit FromCoder(const NSCoder& coder) : scene(coder.scene()) {}
  std::string scene;
};

const ClassRegistration plain = registerClass<Plain>("ClassRegistryTests.Plain");
const ClassRegistration fromCoder = registerClass<FromCoder>("ClassRegistryTests.FromCoder");

TEST(ClassRegistry, MakesANewObjectEachTime) {
  const auto first = ClassRegistry::create("ClassRegistryTests.Plain", NSCoder());
  const auto second = ClassRegistry::create("ClassRegistryTests.Plain", NSCoder());
  EXPECT_TRUE(std::dynamic_pointer_cast<Plain>(first));
  EXPECT_NE(first, second);
}

TEST(ClassRegistry, GivesTheCoderToAClassThatTakesOne) {
  const auto made = ClassRegistry::create("ClassRegistryTests.FromCoder", NSCoder(nullptr, "Scena"));
  ASSERT_TRUE(std::dynamic_pointer_cast<FromCoder>(made));
  EXPECT_EQ(std::dynamic_pointer_cast<FromCoder>(made)->scene, "Scena");
}

TEST(ClassRegistry, NamesAClass) {
  EXPECT_EQ(NSStringFromClass<Plain>(), "ClassRegistryTests.Plain");
}

TEST(ClassRegistryDeathTest, KnowsNoOtherName) {
  EXPECT_DEATH(ClassRegistry::create("Nessuna", NSCoder()), "Fatal error: no class is called Nessuna");
}

TEST(ClassRegistryDeathTest, KnowsNoOtherClass) {
  EXPECT_DEATH(NSStringFromClass<NSString>(), "a class without a registered name");
}

}  // namespace
