#include "hosts/desktop/ScreenSaverWatch.h"

#include "tests/host/desktop/PrivateBus.h"
#include "tests/host/desktop/StandInServices.h"

#include <gmock/gmock.h>

#include <memory>

namespace desktop {
namespace {

class ScreenSaverWatchTest : public testing::Test {
 protected:
  void start() {
    watch = std::make_unique<ScreenSaverWatch>(app, "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver");
    QObject::connect(watch.get(), &ScreenSaverWatch::active, [this](bool isActive) { told.append(isActive); });
  }

  PrivateBus bus;
  QDBusConnection app = bus.connection("app");
  std::unique_ptr<StandInScreenSaver> saver = std::make_unique<StandInScreenSaver>(bus.connection("services"));
  std::unique_ptr<ScreenSaverWatch> watch;
  QList<bool> told;
};

TEST_F(ScreenSaverWatchTest, TellsWhetherItIsActiveAtTheBeginning) {
  saver->isActive = true;
  start();
  runUntil([this] { return told == QList{true}; });
}

TEST_F(ScreenSaverWatchTest, TellsEachChange) {
  start();
  runUntil([this] { return told == QList{false}; });
  emit saver->ActiveChanged(true);
  emit saver->ActiveChanged(false);
  runUntil([this] { return told == QList{false, true, false}; });
}

TEST_F(ScreenSaverWatchTest, AScreenSaverThatHasGoneIsNotActive) {
  saver->isActive = true;
  start();
  runUntil([this] { return told == QList{true}; });
  saver.reset();
  runUntil([this] { return told == QList{true, false}; });
}

TEST_F(ScreenSaverWatchTest, OneThatComesLaterIsFollowed) {
  saver.reset();
  start();
  PrivateBus::settle(app);
  EXPECT_EQ(told, QList<bool>());
  saver = std::make_unique<StandInScreenSaver>(bus.connection("services"));
  PrivateBus::settle(app);
  emit saver->ActiveChanged(true);
  runUntil([this] { return told == QList{true}; });
}

}  // namespace
}  // namespace desktop
