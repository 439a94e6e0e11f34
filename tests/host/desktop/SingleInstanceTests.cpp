#include "hosts/desktop/SingleInstance.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <memory>

#include <sys/wait.h>
#include <unistd.h>

namespace desktop {
namespace {

/// Runs `start` in another process and gives what it answered.
bool inAnotherProcess(const std::function<bool()>& start) {
  const pid_t child = fork();
  if (child == 0) _exit(start() ? 1 : 0);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 1;
}

TEST(SingleInstance, SecondStartIsNotTheFirstAndRaisesTheWindowOfTheFirst) {
  const QTemporaryDir folder;
  int raised = 0;
  const SingleInstance first(folder.path(), [&] { ++raised; });
  EXPECT_TRUE(first.isFirst());
  EXPECT_FALSE(inAnotherProcess([&] { return SingleInstance(folder.path(), [] {}).isFirst(); }));
  QElapsedTimer clock;
  clock.start();
  while (raised == 0 && clock.elapsed() < 5000) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
  EXPECT_EQ(raised, 1);
}

TEST(SingleInstance, PlaceIsFreeAgainAfterTheFirstHasEnded) {
  const QTemporaryDir folder;
  {
    const SingleInstance first(folder.path(), [] {});
  }
  EXPECT_TRUE(SingleInstance(folder.path(), [] {}).isFirst());
}

TEST(SingleInstance, PlaceIsFreeAgainAfterTheFirstWasKilled) {
  const QTemporaryDir folder;
  const auto killed = [&] {
    auto* first = new SingleInstance(folder.path(), [] {});  // never destroyed: as after a kill, lock and socket stay
    return first->isFirst();
  };
  EXPECT_TRUE(inAnotherProcess(killed));
  EXPECT_TRUE(SingleInstance(folder.path(), [] {}).isFirst());
}

TEST(SingleInstance, RunsWhereNoLockCanBeHad) {
  EXPECT_TRUE(SingleInstance(QStringLiteral("/proc/no-such-folder"), [] {}).isFirst());
}

}  // namespace
}  // namespace desktop
