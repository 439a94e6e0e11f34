#include "hosts/gstreamer/Timeline.h"

#include <gtest/gtest.h>

namespace gstreamer {

TEST(Timeline, RunsFromWhereItStoodOnceTheInstantHasCome) {
  Timeline timeline;
  timeline.hold(3.0);
  EXPECT_EQ(timeline.positionAt(nanoseconds(100.0)), 3.0);
  timeline.run(3.0, nanoseconds(10.0));
  EXPECT_EQ(timeline.positionAt(nanoseconds(9.0)), 3.0);
  EXPECT_NEAR(timeline.positionAt(nanoseconds(12.5)), 5.5, 1e-9);
}

TEST(Timeline, DoesNotRunBeyondItsLength) {
  Timeline timeline;
  timeline.setLength(4.0);
  timeline.run(3.0, 0);
  EXPECT_EQ(timeline.positionAt(nanoseconds(2.0)), 4.0);
}

TEST(Timeline, AnAnnouncedPositionIsTheAnswerUntilItIsCarriedOut) {
  Timeline timeline;
  timeline.run(0.0, 0);
  const auto announcement = timeline.announce(7.0);
  EXPECT_EQ(timeline.positionAt(nanoseconds(2.0)), 7.0);
  timeline.hold(7.0);
  timeline.carriedOut(announcement);
  timeline.run(7.0, nanoseconds(2.0));
  EXPECT_NEAR(timeline.positionAt(nanoseconds(3.0)), 8.0, 1e-9);
}

TEST(Timeline, ANewerAnnouncementOutlivesAnOlderCommand) {
  Timeline timeline;
  const auto first = timeline.announce(7.0);
  timeline.announce(9.0);
  timeline.hold(7.0);
  timeline.carriedOut(first);
  EXPECT_EQ(timeline.position(), 9.0);
}

}  // namespace gstreamer
