#include "hosts/desktop/EventLoop.h"

#include "platform/Platform.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/NSTimer.h"
#include "tests/support/SimulatedHost.h"

#include <gmock/gmock.h>

#include <QCoreApplication>

#include <chrono>
#include <thread>

namespace desktop {
namespace {

using namespace std::chrono_literals;

/// The platform on the real event loop; everything else is simulated.
class EventLoopTest : public testing::Test {
 protected:
  EventLoop loop;
  simulated::Host host;
  Platform platform{{loop, host.console, host.defaults, host.resources, host.desktop, host.mail, host.display,
                     host.screen, host.mediaEngine, host.mediaLibrary}};

  static void runUntil(const bool& done) {
    const auto deadline = std::chrono::steady_clock::now() + 5s;
    while (!done && std::chrono::steady_clock::now() < deadline) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
    EXPECT_TRUE(done);
  }
};

TEST_F(EventLoopTest, PostedWorkRunsInOrderOnTheMainThreadAndNotAtOnce) {
  std::vector<int> order;
  bool done = false;
  const auto main = std::this_thread::get_id();
  std::thread other([&] {
    loop.post([&] { order.push_back(std::this_thread::get_id() == main ? 1 : -1); });
    loop.post([&] { order.push_back(2); });
    loop.post([&] { done = true; });
  });
  other.join();
  EXPECT_THAT(order, testing::IsEmpty());
  runUntil(done);
  EXPECT_THAT(order, testing::ElementsAre(1, 2));
}

TEST_F(EventLoopTest, PostedWorkRunsInsideATurn) {
  bool done = false;
  host.mediaEngine.takeCalls();
  loop.post([&] {
    done = true;
    host.mediaEngine.openSound("file:///a.mp4", {});
    EXPECT_THAT(host.mediaEngine.takeCalls(), testing::Not(testing::Contains("commit")));
  });
  runUntil(done);
  EXPECT_THAT(host.mediaEngine.takeCalls(), testing::Contains("commit"));
}

TEST_F(EventLoopTest, DeferredBlocksAndTimersRunAndNeverEarly) {
  bool done = false;
  bool blockRan = false;
  const double start = loop.now();
  double fired = 0;
  DispatchQueue::main().async([&] { blockRan = true; });
  NSTimer::scheduledTimerWithTimeInterval_repeats_block(0.05, false, [&](const Strong<NSTimer>&) {
    fired = loop.now();
    done = true;
  });
  runUntil(done);
  EXPECT_TRUE(blockRan);
  EXPECT_GE(fired - start, 0.05);
}

TEST_F(EventLoopTest, TheFurthestTimeCanBeWaitedFor) {
  static int warnings;
  warnings = 0;
  auto* const before =
      qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++warnings; });
  loop.wakeAt(1e12);
  qInstallMessageHandler(before);
  EXPECT_EQ(warnings, 0) << "no timer waits for that long";
}

}  // namespace
}  // namespace desktop
