#include "hosts/desktop/SingleInstance.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <functional>
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

/// Leaves the lock of a start that was killed, with `change` made to what it says.
void leaveLock(const QString& folder, const std::function<QByteArray(QByteArray)>& change) {
  inAnotherProcess([&] { return (new SingleInstance(folder, [] {}))->isFirst(); });
  QFile lock(folder + QStringLiteral("/lock"));
  ASSERT_TRUE(lock.open(QIODevice::ReadWrite));
  const QByteArray text = change(lock.readAll());
  lock.resize(0);
  lock.seek(0);
  lock.write(text);
}

TEST(SingleInstance, PlaceIsFreeAgainWhereTheKilledFirstHadTheSameNumber) {
  const QTemporaryDir folder;
  leaveLock(folder.path(),
            [](const QByteArray& text) { return QByteArray::number(getpid()) + text.mid(text.indexOf('\n')); });
  EXPECT_TRUE(SingleInstance(folder.path(), [] {}).isFirst());
}

TEST(SingleInstance, PlaceIsFreeAgainWhereTheFirstWasKilledBeforeItHadWrittenItsNumber) {
  const QTemporaryDir folder;
  leaveLock(folder.path(), [](const QByteArray& /*text*/) { return QByteArray(); });
  EXPECT_TRUE(SingleInstance(folder.path(), [] {}).isFirst());
}

TEST(SingleInstance, RunsWhereNoLockCanBeHad) {
  EXPECT_TRUE(SingleInstance(QStringLiteral("/proc/no-such-folder"), [] {}).isFirst());
}

}  // namespace
}  // namespace desktop
