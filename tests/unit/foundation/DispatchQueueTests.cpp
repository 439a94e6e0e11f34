#include "platform/foundation/DispatchQueue.h"

#include "platform/foundation/Console.h"
#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class DispatchQueueTest : public BarePlatform {};

TEST_F(DispatchQueueTest, AsyncNeverRunsFromWithinTheCall) {
  event([] {
    DispatchQueue::main().async([] { print("block"); });
    print("after the call");
  });
  EXPECT_THAT(takeLines(), ElementsAre("after the call", "block"));
}

TEST_F(DispatchQueueTest, AsyncAfterWaitsItsSeconds) {
  DispatchQueue::main().asyncAfter(0.5, [] { print("block"); });
  advance(0.25);
  EXPECT_THAT(takeLines(), ElementsAre());
  advance(0.25);
  EXPECT_THAT(takeLines(), ElementsAre("block"));
  advance(10);
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(DispatchQueueTest, AsyncAfterWithoutADelayIsAsync) {
  event([] {
    DispatchQueue::main().asyncAfter(0, [] { print("no delay"); });
    DispatchQueue::main().asyncAfter(-1, [] { print("less than none"); });
    DispatchQueue::main().async([] { print("async"); });
    print("event");
  });
  EXPECT_THAT(takeLines(), ElementsAre("event", "no delay", "less than none", "async"));
}

}  // namespace
