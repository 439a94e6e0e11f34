#include "platform/foundation/NSTimer.h"

#include "platform/foundation/Console.h"
#include "platform/foundation/Values.h"
#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class TimerTarget final : public NSObject {
 public:
  void fired(const Strong<NSTimer>& timer) {
    ++count;
    last = timer;
  }
  int count = 0;
  Weak<NSTimer> last;
};

class NSTimerTest : public BarePlatform {
 protected:
  Strong<NSTimer> schedule(double interval, bool repeats) {
    return NSTimer::scheduledTimerWithTimeInterval_repeats_block(
        interval, repeats, [this](const Strong<NSTimer>&) { times.push_back(RunLoop::main().now() - start); });
  }

  const double start = RunLoop::main().now();
  std::vector<double> times;
};

TEST_F(NSTimerTest, FiresOnceAfterItsIntervalAndIsInvalidThen) {
  const auto timer = schedule(2, false);
  EXPECT_TRUE(timer->isValid());
  EXPECT_TRUE(RunLoop::main().isScheduled(*timer));
  advance(20);
  EXPECT_THAT(times, ElementsAre(2.0));
  EXPECT_FALSE(timer->isValid());
  EXPECT_FALSE(RunLoop::main().isScheduled(*timer));
}

TEST_F(NSTimerTest, RepeatsAtWholeMultiplesOfItsInterval) {
  const auto timer = schedule(0.5, true);
  advance(2);
  EXPECT_THAT(times, ElementsAre(0.5, 1.0, 1.5, 2.0));
  EXPECT_TRUE(timer->isValid());
}

TEST_F(NSTimerTest, SkipsTheRepeatsThatWereMissed) {
  event([this] {
    schedule(1, true);
    takeSeconds(3.5);
  });
  EXPECT_THAT(times, ElementsAre(3.5));
  advance(1.5);
  EXPECT_THAT(times, ElementsAre(3.5, 4.0, 5.0));
}

TEST_F(NSTimerTest, TellsItsSelectorWhichTimerItIs) {
  const auto target = make<TimerTarget>();
  const auto info = make<NSString>("info");
  const auto timer = NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
      1, target, &TimerTarget::fired, info, true);
  advance(3);
  EXPECT_EQ(target->count, 3);
  EXPECT_EQ(target->last.lock(), timer);
  EXPECT_EQ(timer->userInfo(), info);
  EXPECT_EQ(timer->timeInterval(), 1);
  EXPECT_TRUE(timer->repeats());
}

TEST_F(NSTimerTest, AnInvalidatedTimerNeverFires) {
  const auto timer = schedule(1, false);
  advance(0.5);
  timer->invalidate();
  EXPECT_FALSE(timer->isValid());
  EXPECT_FALSE(RunLoop::main().isScheduled(*timer));
  advance(5);
  EXPECT_THAT(times, ElementsAre());
}

TEST_F(NSTimerTest, InvalidatedAgainNothingHappens) {
  const auto timer = schedule(1, false);
  timer->invalidate();
  timer->invalidate();
  timer->fire();
  EXPECT_FALSE(timer->isValid());
  EXPECT_THAT(times, ElementsAre());
}

TEST_F(NSTimerTest, MayBeInvalidatedInsideItsOwnBlock) {
  NSTimer::scheduledTimerWithTimeInterval_repeats_block(1, true, [](const Strong<NSTimer>& timer) {
    print("fired");
    timer->invalidate();
    print(timer->isValid() ? "valid" : "invalid");
  });
  advance(10);
  EXPECT_THAT(takeLines(), ElementsAre("fired", "invalid"));
}

TEST_F(NSTimerTest, ABlockThatInvalidatesItsTimerKeepsItsCapturesToItsEnd) {
  NSTimer::scheduledTimerWithTimeInterval_repeats_block(
      1, true, [text = make<NSString>("captured")](const Strong<NSTimer>& timer) {
        timer->invalidate();
        print(text->text());
      });
  advance(10);
  EXPECT_THAT(takeLines(), ElementsAre("captured"));
}

TEST_F(NSTimerTest, ATimerInvalidatedByAnEarlierOneOfTheSameTurnDoesNotFire) {
  event([this] {
    const auto second = schedule(2, false);
    NSTimer::scheduledTimerWithTimeInterval_repeats_block(1, false,
                                                          [second](const Strong<NSTimer>&) { second->invalidate(); });
    takeSeconds(5);
  });
  EXPECT_THAT(times, ElementsAre());
}

TEST_F(NSTimerTest, AScheduledTimerKeepsItsTarget) {
  auto target = make<TimerTarget>();
  const Weak<TimerTarget> weak = target;
  NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(1, target, &TimerTarget::fired, nullptr,
                                                                           true);
  target = nullptr;
  advance(3);
  ASSERT_FALSE(weak.expired());
  EXPECT_EQ(weak.lock()->count, 3);
}

TEST_F(NSTimerTest, InvalidationReleasesTargetAndUserInfo) {
  auto target = make<TimerTarget>();
  auto info = make<NSString>("info");
  const Weak<TimerTarget> weakTarget = target;
  const Weak<NSString> weakInfo = info;
  const auto timer = NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
      1, target, &TimerTarget::fired, info, true);
  target = nullptr;
  info = nullptr;
  ASSERT_FALSE(weakTarget.expired());
  timer->invalidate();
  EXPECT_TRUE(weakTarget.expired());
  EXPECT_TRUE(weakInfo.expired());
}

TEST_F(NSTimerTest, ATimerThatDoesNotRepeatReleasesItsTargetOnceItHasFired) {
  auto target = make<TimerTarget>();
  const Weak<TimerTarget> weak = target;
  const auto timer = NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
      1, target, &TimerTarget::fired, nullptr, false);
  target = nullptr;
  advance(1);
  EXPECT_TRUE(weak.expired());
}

TEST_F(NSTimerTest, TheRunLoopReleasesATimerThatHasFired) {
  const Weak<NSTimer> weak = schedule(1, false);
  EXPECT_FALSE(weak.expired());
  advance(1);
  EXPECT_TRUE(weak.expired());
}

TEST_F(NSTimerTest, TheLastReferenceMayBeTheRunLoopsWhenItIsInvalidated) {
  const Weak<NSTimer> weak = schedule(1, true);
  weak.lock()->invalidate();
  EXPECT_TRUE(weak.expired());
}

TEST_F(NSTimerTest, FiredByHandATimerThatDoesNotRepeatIsDone) {
  const auto timer = schedule(5, false);
  advance(1);
  event([&] { timer->fire(); });
  EXPECT_FALSE(timer->isValid());
  advance(10);
  EXPECT_THAT(times, ElementsAre(1.0));
}

TEST_F(NSTimerTest, FiredByHandARepeatingTimerKeepsItsTimes) {
  const auto timer = schedule(5, true);
  advance(1);
  event([&] { timer->fire(); });
  advance(9);
  EXPECT_THAT(times, ElementsAre(1.0, 5.0, 10.0));
}

TEST_F(NSTimerTest, ATimerThatIsNotScheduledFiresByHandOnly) {
  const auto timer =
      make<NSTimer>(1, true, nullptr, [this](const Strong<NSTimer>&) { times.push_back(RunLoop::main().now()); });
  advance(5);
  EXPECT_TRUE(times.empty());
  timer->fire();
  timer->fire();
  EXPECT_EQ(times.size(), 2U);
}

TEST_F(NSTimerTest, AnIntervalOfZeroDoesNotStopTheLoop) {
  const auto timer = schedule(0, true);
  advance(0.01);
  EXPECT_GE(times.size(), 99U);
  EXPECT_LE(times.size(), 101U);
}

}  // namespace
