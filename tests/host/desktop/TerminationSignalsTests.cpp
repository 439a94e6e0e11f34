#include "hosts/desktop/TerminationSignals.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <csignal>

namespace desktop {
namespace {

class TerminationSignalsTest : public testing::Test {
 protected:
  ~TerminationSignalsTest() override { std::signal(SIGHUP, SIG_DFL); }

  bool ended() const {
    const QDeadlineTimer deadline(10000);
    while (ends == 0 && !deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return ends == 1;
  }

  int ends = 0;
};

TEST_F(TerminationSignalsTest, EachOfThemIsACallOnTheMainThread) {
  const TerminationSignals termination([this] { ++ends; });
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    ends = 0;
    std::raise(signal);
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(ended());
  }
}

TEST_F(TerminationSignalsTest, WhatIsIgnoredStaysIgnored) {
  std::signal(SIGHUP, SIG_IGN);
  {
    const TerminationSignals termination([this] { ++ends; });
    std::raise(SIGHUP);
    std::raise(SIGTERM);
    EXPECT_TRUE(ended());
    EXPECT_EQ(std::signal(SIGHUP, SIG_IGN), SIG_IGN);
  }
  EXPECT_EQ(std::signal(SIGHUP, SIG_IGN), SIG_IGN);
}

}  // namespace
}  // namespace desktop
