#include "hosts/desktop/LoginSession.h"

#include "tests/host/desktop/PrivateBus.h"
#include "tests/host/desktop/StandInServices.h"
#include "tests/support/EnvironmentVariable.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

#include <memory>

namespace desktop {
namespace {

class LoginSessionTest : public testing::Test {
 protected:
  /// The app's side, once it knows the session's state and delays sleep.
  void start() {
    session = std::make_unique<LoginSession>(app);
    QObject::connect(session.get(), &LoginSession::locked, [this](bool isLocked) { locked.append(isLocked); });
    QObject::connect(session.get(), &LoginSession::sleeping, [this](bool isAsleep) { sleeping.append(isAsleep); });
    QObject::connect(session.get(), &LoginSession::sleepDelayed, [this] { ++timesDelayed; });
    runUntil([this] { return !locked.isEmpty() && timesDelayed == 1; });
  }

  const EnvironmentVariable none{"XDG_SESSION_ID", std::nullopt};
  PrivateBus bus;
  QDBusConnection app = bus.connection("app");
  StandInLogin login{bus.connection("services")};
  std::unique_ptr<LoginSession> session;
  QList<bool> locked;
  QList<bool> sleeping;
  int timesDelayed = 0;
};

TEST_F(LoginSessionTest, TellsWhetherTheSessionIsLockedAtTheBeginning) {
  login.session.setLockedHint(login.bus, true);
  start();
  EXPECT_EQ(locked, QList{true});
}

TEST_F(LoginSessionTest, FollowsLockAndUnlock) {
  start();
  emit login.session.Lock();
  emit login.session.Unlock();
  runUntil([this] { return locked.size() == 3; });
  EXPECT_EQ(locked, (QList{false, true, false}));
}

TEST_F(LoginSessionTest, FollowsTheHintOfTheScreenLocker) {
  start();
  login.session.setLockedHint(login.bus, true);
  login.session.setLockedHint(login.bus, false);
  runUntil([this] { return locked.size() == 3; });
  EXPECT_EQ(locked, (QList{false, true, false}));
}

TEST_F(LoginSessionTest, AsksForTheSessionOnTheDisplayWhereTheProgramBelongsToNone) {
  start();
  EXPECT_EQ(login.sessionsAskedFor, QStringList{"auto"});
}

TEST_F(LoginSessionTest, AsksForItsOwnSession) {
  const EnvironmentVariable own("XDG_SESSION_ID", "c7");
  start();
  EXPECT_EQ(login.sessionsAskedFor, QStringList{"c7"});
}

TEST_F(LoginSessionTest, SleepWaitsUntilTheAppIsReady) {
  start();
  ASSERT_EQ(login.delays.size(), 1U);
  EXPECT_EQ(login.delays[0].first(), "sleep");
  EXPECT_EQ(login.delays[0].last(), "delay");
  emit login.PrepareForSleep(true);
  runUntil([this] { return sleeping == QList{true}; });
  PrivateBus::settle(app);
  EXPECT_TRUE(login.isHeld(0));
  session->readyToSleep();
  runUntil([this] { return !login.isHeld(0); });
}

TEST_F(LoginSessionTest, TheNextSleepIsDelayedToo) {
  start();
  emit login.PrepareForSleep(true);
  runUntil([this] { return sleeping == QList{true}; });
  session->readyToSleep();
  emit login.PrepareForSleep(false);
  runUntil([this] { return timesDelayed == 2; });
  EXPECT_EQ(sleeping, (QList{true, false}));
  ASSERT_EQ(login.delays.size(), 2U);
  EXPECT_TRUE(login.isHeld(1));
}

TEST_F(LoginSessionTest, ItsEndLetsTheSystemSleep) {
  start();
  session.reset();
  runUntil([this] { return !login.isHeld(0); });
}

TEST(LoginSession, WithoutTheServiceNothingIsTold) {
  PrivateBus bus;
  auto app = bus.connection("app");
  LoginSession session(app);
  const QSignalSpy locked(&session, &LoginSession::locked);
  const QSignalSpy sleeping(&session, &LoginSession::sleeping);
  PrivateBus::settle(app);
  session.readyToSleep();
  EXPECT_EQ(locked.count() + sleeping.count(), 0);
}

}  // namespace
}  // namespace desktop
