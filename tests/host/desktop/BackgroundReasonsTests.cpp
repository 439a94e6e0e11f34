#include "hosts/desktop/BackgroundReasons.h"

#include <gmock/gmock.h>

#include <array>
#include <random>
#include <string>
#include <vector>

namespace desktop {
namespace {

using testing::ElementsAre;

class BackgroundReasonsTest : public testing::Test {
 protected:
  std::vector<std::string> told;
  BackgroundReasons reasons{[this] { told.emplace_back("entered"); }, [this] { told.emplace_back("left"); }};
};

TEST_F(BackgroundReasonsTest, EachReasonAloneIsOneEntry) {
  for (const auto reason : {BackgroundReason::WindowHidden, BackgroundReason::SessionLocked,
                            BackgroundReason::ScreenSaver, BackgroundReason::Asleep}) {
    told.clear();
    reasons.set(reason, true);
    EXPECT_THAT(told, ElementsAre("entered"));
    reasons.set(reason, false);
    EXPECT_THAT(told, ElementsAre("entered", "left"));
  }
}

TEST_F(BackgroundReasonsTest, MinimisedAndThenLockedIsOneEntry) {
  reasons.set(BackgroundReason::WindowHidden, true);
  reasons.set(BackgroundReason::SessionLocked, true);
  EXPECT_THAT(told, ElementsAre("entered"));
}

TEST_F(BackgroundReasonsTest, LeftOnlyWhenNoneHoldsAnyMore) {
  reasons.set(BackgroundReason::SessionLocked, true);
  reasons.set(BackgroundReason::Asleep, true);
  reasons.set(BackgroundReason::SessionLocked, false);
  EXPECT_THAT(told, ElementsAre("entered"));
  reasons.set(BackgroundReason::Asleep, false);
  EXPECT_THAT(told, ElementsAre("entered", "left"));
}

TEST_F(BackgroundReasonsTest, ToldTwiceItCountsOnce) {
  reasons.set(BackgroundReason::SessionLocked, false);
  reasons.set(BackgroundReason::SessionLocked, true);
  reasons.set(BackgroundReason::SessionLocked, true);
  reasons.set(BackgroundReason::SessionLocked, false);
  reasons.set(BackgroundReason::SessionLocked, false);
  EXPECT_THAT(told, ElementsAre("entered", "left"));
}

TEST_F(BackgroundReasonsTest, EntriesAndReturnsAlternateWhateverHappens) {
  std::mt19937 random(7);  // NOLINT: the same each time
  std::array<bool, 4> holding{};
  std::size_t expected = 0;
  for (int step = 0; step < 1000; ++step) {
    const auto reason = random() % holding.size();
    const bool before = holding[0] || holding[1] || holding[2] || holding[3];
    holding[reason] = random() % 2 == 0;
    if (before != (holding[0] || holding[1] || holding[2] || holding[3])) ++expected;
    reasons.set(static_cast<BackgroundReason>(reason), holding[reason]);
  }
  ASSERT_EQ(told.size(), expected);
  for (std::size_t index = 0; index < told.size(); ++index)
    EXPECT_EQ(told[index], index % 2 == 0 ? "entered" : "left");
}

}  // namespace
}  // namespace desktop
