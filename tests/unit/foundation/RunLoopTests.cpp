#include "platform/foundation/RunLoop.h"

#include "platform/avfoundation/AVPlayer.h"
#include "platform/foundation/Console.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/NSTimer.h"
#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

using simulated::Lines;
using testing::ElementsAre;

namespace {

class RunLoopTest : public BarePlatform {
 protected:
  static void scheduleTimer(double interval, const std::string& line) {
    NSTimer::scheduledTimerWithTimeInterval_repeats_block(interval, false,
                                                          [line](const Strong<NSTimer>&) { print(line); });
  }
  static void queue(const std::string& line) {
    DispatchQueue::main().async([line] { print(line); });
  }
};

TEST_F(RunLoopTest, BlocksRunInOrderOfSubmission) {
  event([] {
    queue("first");
    queue("second");
    queue("third");
    print("event");
  });
  EXPECT_THAT(takeLines(), ElementsAre("event", "first", "second", "third"));
}

TEST_F(RunLoopTest, ABlockQueuedOutsideOfATurnOrdersOne) {
  queue("block");
  EXPECT_THAT(takeLines(), ElementsAre());
  advance(0);
  EXPECT_THAT(takeLines(), ElementsAre("block"));
}

TEST_F(RunLoopTest, BlocksRunBeforeTheTimersOfTheSameTurn) {
  event([this] {
    scheduleTimer(1, "timer");
    queue("block");
    takeSeconds(2);
  });
  EXPECT_THAT(takeLines(), ElementsAre("block", "timer"));
}

TEST_F(RunLoopTest, WhatABlockQueuesRunsInTheNextTurn) {
  event([this] {
    scheduleTimer(1, "timer");
    DispatchQueue::main().async([] {
      queue("queued by the block");
      print("block");
    });
    takeSeconds(2);
  });
  EXPECT_THAT(takeLines(), ElementsAre("block", "timer", "queued by the block"));
}

TEST_F(RunLoopTest, OneTurnRunsOnlyWhatWasQueuedBeforeIt) {
  event([] { queue("in the event"); });
  takeLines();
  DispatchQueue::main().async([] { queue("second"); });
  RunLoop::main().turn();
  EXPECT_THAT(takeLines(), ElementsAre());
  RunLoop::main().turn();
  EXPECT_THAT(takeLines(), ElementsAre("second"));
}

TEST_F(RunLoopTest, WhatATimerQueuesRunsInTheNextTurn) {
  event([this] {
    NSTimer::scheduledTimerWithTimeInterval_repeats_block(1, false, [](const Strong<NSTimer>&) {
      queue("queued by the timer");
      print("first timer");
    });
    scheduleTimer(1.5, "second timer");
    takeSeconds(2);
  });
  EXPECT_THAT(takeLines(), ElementsAre("first timer", "second timer", "queued by the timer"));
}

TEST_F(RunLoopTest, TheEarliestRunsFirst) {
  event([this] {
    scheduleTimer(3, "three");
    scheduleTimer(1, "one");
    DispatchQueue::main().asyncAfter(2, [] { print("two"); });
    takeSeconds(5);
  });
  EXPECT_THAT(takeLines(), ElementsAre("one", "two", "three"));
}

TEST_F(RunLoopTest, EqualTimesRunInOrderOfScheduling) {
  event([this] {
    scheduleTimer(1, "first timer");
    DispatchQueue::main().asyncAfter(1, [] { print("delayed block"); });
    scheduleTimer(1, "second timer");
    takeSeconds(5);
  });
  EXPECT_THAT(takeLines(), ElementsAre("first timer", "delayed block", "second timer"));
}

TEST_F(RunLoopTest, WhatIsDueLaterWaits) {
  event([] { scheduleTimer(1, "timer"); });
  advance(0.999);
  EXPECT_THAT(takeLines(), ElementsAre());
  advance(0.001);
  EXPECT_THAT(takeLines(), ElementsAre("timer"));
}

TEST_F(RunLoopTest, EachThingHappensAtItsOwnTime) {
  std::vector<double> times;
  const double start = RunLoop::main().now();
  for (const double delay : {0.25, 4.0}) {
    DispatchQueue::main().asyncAfter(delay, [&times, start] { times.push_back(RunLoop::main().now() - start); });
  }
  advance(10);
  EXPECT_THAT(times, ElementsAre(0.25, 4.0));
}

TEST_F(RunLoopTest, TheEndOfATurnOrdersTheNextWakeUp) {
  event([] {
    scheduleTimer(7, "late");
    scheduleTimer(2, "early");
  });
  EXPECT_EQ(host.mainLoop.wake(), RunLoop::main().now() + 2);
  advance(2);
  EXPECT_EQ(host.mainLoop.wake(), RunLoop::main().now() + 5);
}

TEST_F(RunLoopTest, NothingToDoOrdersNoWakeUp) {
  event([] {});
  EXPECT_EQ(host.mainLoop.wake(), std::nullopt);
}

TEST_F(RunLoopTest, MediaCommandsTakeEffectTogetherAtTheEndOfTheOutermostTurn) {
  Strong<AVPlayer> player;
  event([&] {
    {
      const RunLoop::Turn inner(RunLoop::main());
      player = AVPlayer::playerWithURL(NSURL::URLWithString("file:///videos/a.mp4"));
    }
    player->play();
  });
  EXPECT_THAT(host.mediaEngine.takeCalls(), ElementsAre("a.mp4 video open", "a.mp4 video play", "commit"));
}

TEST_F(RunLoopTest, ATurnWithoutCommandsCommitsAllTheSame) {
  const auto player = AVPlayer::playerWithURL(NSURL::URLWithString("file:///videos/a.mp4"));
  host.mediaEngine.takeCalls();
  player->play();  // outside of any turn, as no host would
  event([] {});
  EXPECT_THAT(host.mediaEngine.takeCalls(), ElementsAre("a.mp4 video play", "commit"));
}

TEST_F(RunLoopTest, TheEndOfEachOutermostTurnIsToldOnceAfterItsCommandsHaveTakenEffect) {
  const auto player = AVPlayer::playerWithURL(NSURL::URLWithString("file:///a.mp4"));
  event([] {});
  host.mediaEngine.takeCalls();
  RunLoop::main().setTurnEnded([this] { host.mediaEngine.calls.emplace_back("told"); });
  {
    const RunLoop::Turn turn(RunLoop::main());
    const RunLoop::Turn nested(RunLoop::main());
    player->play();
  }
  EXPECT_THAT(host.mediaEngine.takeCalls(), ElementsAre("a.mp4 video play", "commit", "told"));
  RunLoop::main().setTurnEnded(nullptr);
  event([] {});
  EXPECT_THAT(host.mediaEngine.takeCalls(), ElementsAre());
}

TEST_F(RunLoopTest, ABlockIsReleasedOnceItHasRun) {
  auto held = make<NSString>("held");
  const Weak<NSString> weak = held;
  event([&] { DispatchQueue::main().async([keep = std::move(held)] {}); });
  EXPECT_TRUE(weak.expired());
}

TEST_F(RunLoopTest, ADelayedBlockIsHeldUntilItHasRunAndReleasedThen) {
  auto held = make<NSString>("held");
  const Weak<NSString> weak = held;
  DispatchQueue::main().asyncAfter(1, [keep = std::move(held)] {});
  advance(0.5);
  EXPECT_FALSE(weak.expired());
  advance(0.5);
  EXPECT_TRUE(weak.expired());
}

/// Stops a timer of its own when it goes, as a screen does.
class OwnerOfATimer final : public NSObject {
 public:
  OwnerOfATimer()
      : timer_(NSTimer::scheduledTimerWithTimeInterval_repeats_block(1, true, [](const Strong<NSTimer>&) {})) {}
  ~OwnerOfATimer() override {
    print("released");
    timer_->invalidate();
  }

 private:
  Strong<NSTimer> timer_;
};

TEST(Platform, IsStillThereForWhatTheRunLoopReleasesAtTheEnd) {
  simulated::Host host;
  {
    const Platform platform(host.ports());
    DispatchQueue::main().asyncAfter(1, [kept = make<OwnerOfATimer>()] {});
    DispatchQueue::main().async([kept = make<OwnerOfATimer>()] {});
  }
  EXPECT_EQ(host.console.lines, Lines({"released", "released"}));
}

TEST(PlatformDeathTest, ThereMustBeOne) {
  EXPECT_DEATH(RunLoop::main(), "Fatal error: there is no platform");
}

}  // namespace
