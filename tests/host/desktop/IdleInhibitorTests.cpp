#include "hosts/desktop/IdleInhibitor.h"

#include "tests/host/desktop/PrivateBus.h"
#include "tests/host/desktop/StandInServices.h"

#include <gmock/gmock.h>

#include <memory>
#include <random>

namespace desktop {
namespace {

constexpr uint idleFlag = 8;

class IdleInhibitorTest : public testing::Test {
 protected:
  void addPortal() { portal = std::make_unique<StandInPortal>(services); }
  void addScreenSaver() { saver = std::make_unique<StandInScreenSaver>(services); }

  PrivateBus bus;
  QDBusConnection app = bus.connection("app");
  QDBusConnection services = bus.connection("services");
  std::unique_ptr<StandInPortal> portal;
  std::unique_ptr<StandInScreenSaver> saver;
  std::unique_ptr<IdleInhibitor> inhibitor = std::make_unique<IdleInhibitor>(app);
};

TEST_F(IdleInhibitorTest, AsksThePortalAndGivesItsPromiseBack) {
  addPortal();
  addScreenSaver();
  inhibitor->keepAwake(true);
  runUntil([this] { return portal->openRequests() == 1; });
  PrivateBus::settle(app);
  EXPECT_EQ(portal->flags, idleFlag);
  inhibitor->keepAwake(false);
  runUntil([this] { return portal->openRequests() == 0; });
  EXPECT_EQ(saver->requests, 0);
}

TEST_F(IdleInhibitorTest, AsksTheScreenSaverWhereThereIsNoPortal) {
  addScreenSaver();
  inhibitor->keepAwake(true);
  runUntil([this] { return saver->open.size() == 1; });
  PrivateBus::settle(app);
  inhibitor->keepAwake(false);
  runUntil([this] { return saver->open.isEmpty(); });
  EXPECT_EQ(saver->unknownCookies, 0);
}

TEST_F(IdleInhibitorTest, AskedTwiceItHoldsOnePromise) {
  addScreenSaver();
  inhibitor->keepAwake(true);
  inhibitor->keepAwake(true);
  runUntil([this] { return saver->open.size() == 1; });
  PrivateBus::settle(app);
  inhibitor->keepAwake(true);
  PrivateBus::settle(app);
  EXPECT_EQ(saver->requests, 1);
}

TEST_F(IdleInhibitorTest, APromiseThatComesTooLateIsGivenBack) {
  addPortal();
  inhibitor->keepAwake(true);
  inhibitor->keepAwake(false);
  runUntil([this] { return portal->requests.size() == 1 && portal->openRequests() == 0; });
}

TEST_F(IdleInhibitorTest, PromisesAreBalancedWhateverHappens) {
  addScreenSaver();
  std::mt19937 random(3);  // NOLINT: the same each time
  bool wanted = false;
  for (int step = 0; step < 300; ++step) {
    wanted = random() % 2 == 0;
    inhibitor->keepAwake(wanted);
    if (random() % 3 == 0) QCoreApplication::processEvents();
    if (random() % 3 == 0) PrivateBus::settle(app);
    if (step % 50 != 49) continue;
    runUntil([&] { return saver->open.size() == (wanted ? 1 : 0); });
  }
  inhibitor->keepAwake(false);
  runUntil([this] { return saver->open.isEmpty(); });
  EXPECT_EQ(saver->unknownCookies, 0);
  EXPECT_GT(saver->requests, 20);
}

TEST_F(IdleInhibitorTest, ItsEndGivesThePromiseBack) {
  addScreenSaver();
  inhibitor->keepAwake(true);
  runUntil([this] { return saver->open.size() == 1; });
  PrivateBus::settle(app);
  inhibitor.reset();
  runUntil([this] { return saver->open.isEmpty(); });
  EXPECT_EQ(saver->unknownCookies, 0);
}

TEST_F(IdleInhibitorTest, WhereNobodyCanBeAskedTheNextFilmAsksAgain) {
  inhibitor->keepAwake(true);
  PrivateBus::settle(app);  // the portal's refusal
  PrivateBus::settle(app);  // the screen saver's
  inhibitor->keepAwake(false);
  addScreenSaver();
  inhibitor->keepAwake(true);
  runUntil([this] { return saver->open.size() == 1; });
}

}  // namespace
}  // namespace desktop
