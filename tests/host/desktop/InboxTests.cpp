#include "hosts/desktop/Inbox.h"

#include "tests/host/desktop/PrivateBus.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>
#include <vector>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Inbox, WorkIsDoneInOrderAndNeverFromWithinPut) {
  Inbox inbox;
  std::vector<int> done;
  for (const int number : {1, 2, 3}) EXPECT_TRUE(inbox.put([&done, number] { done.push_back(number); }));
  EXPECT_THAT(done, IsEmpty());
  runUntil([&] { return done.size() == 3; });
  EXPECT_THAT(done, ElementsAre(1, 2, 3));
}

TEST(Inbox, WhatDoesNotFitIsRefused) {
  Inbox inbox;
  std::size_t done = 0;
  for (std::size_t number = 0; number < Inbox::room; ++number) EXPECT_TRUE(inbox.put([&] { ++done; }));
  EXPECT_FALSE(inbox.put([&] { ++done; }));
  runUntil([&] { return done == Inbox::room; });
  EXPECT_TRUE(inbox.put([&] { ++done; })) << "there is room again";
  runUntil([&] { return done == Inbox::room + 1; });
}

TEST(Inbox, OneWhoNeverStopsGetsOnlyAShareOfEachRoundOfTheMainLoop) {
  Inbox inbox;
  std::size_t doneInThisRound = 0;
  std::size_t mostInARound = 0;
  std::atomic<bool> isOver = false;
  std::atomic<std::size_t> refused = 0;
  std::thread stranger([&] {
    while (!isOver) {
      const bool isTaken = inbox.put([&] { mostInARound = std::max(mostInARound, ++doneInThisRound); });
      if (!isTaken) ++refused;
    }
  });
  for (int round = 0; round < 20; ++round) {
    doneInThisRound = 0;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  isOver = true;
  stranger.join();
  EXPECT_GT(mostInARound, 0U);
  EXPECT_LE(mostInARound, Inbox::room);
  EXPECT_GT(refused, 0U);
}

TEST(Inbox, WhatIsLeftAtItsEndIsNotDone) {
  bool isDone = false;
  {
    Inbox inbox;
    inbox.put([&] { isDone = true; });
  }
  QCoreApplication::processEvents();
  EXPECT_FALSE(isDone);
}

}  // namespace
}  // namespace desktop
