#include "hosts/desktop/DesktopBus.h"

#include "tests/host/desktop/PrivateBus.h"
#include "tests/host/desktop/StandInServices.h"
#include "tests/support/EnvironmentVariable.h"

#include <gmock/gmock.h>

#include <QDBusConnectionInterface>

#include <memory>
#include <utility>
#include <vector>

namespace desktop {
namespace {

using Word = std::pair<BackgroundReason, bool>;

/// Both buses are the same one.
class DesktopBusTest : public testing::Test {
 protected:
  void start() {
    desktopBus = std::make_unique<DesktopBus>(DesktopBus::Addresses{bus.address(), bus.address()},
                                              [this](BackgroundReason reason, bool holds) {
                                                EXPECT_EQ(QThread::currentThread(), qApp->thread());
                                                words.append({reason, holds});
                                                if (during) during();
                                              });
  }
  /// Also waits until the signals of what is there are followed.
  void startAndWaitFor(int wordsAtFirst) {
    start();
    runUntil([&] { return words.size() >= wordsAtFirst; });
    words.clear();
  }
  void expectWord(BackgroundReason reason, bool holds) {
    runUntil([&] { return words.contains(Word(reason, holds)); });
    words.clear();
  }

  PrivateBus bus;
  QDBusConnection services = bus.connection("services");
  QList<Word> words;
  std::function<void()> during;
  std::unique_ptr<DesktopBus> desktopBus;
};

TEST_F(DesktopBusTest, TellsOnTheMainThreadThatTheSessionIsLocked) {
  StandInLogin login(services);
  startAndWaitFor(1);
  emit login.session.Lock();
  expectWord(BackgroundReason::SessionLocked, true);
  emit login.session.Unlock();
  expectWord(BackgroundReason::SessionLocked, false);
}

TEST_F(DesktopBusTest, TheSystemSleepsOnlyAfterTheAppHasHeardOfIt) {
  StandInLogin login(services);
  startAndWaitFor(1);
  runUntil([&] { return login.delays.size() == 1; });
  bool wasHeldMeanwhile = false;
  during = [&] { wasHeldMeanwhile = login.isHeld(0); };
  emit login.PrepareForSleep(true);
  expectWord(BackgroundReason::Asleep, true);
  EXPECT_TRUE(wasHeldMeanwhile);
  runUntil([&] { return !login.isHeld(0); });
  emit login.PrepareForSleep(false);
  expectWord(BackgroundReason::Asleep, false);
  runUntil([&] { return login.delays.size() == 2; });
}

TEST_F(DesktopBusTest, TellsOnTheMainThreadWhatALauncherWants) {
  DesktopBus desktop({bus.address(), {}, "example.quillop.App"}, [](auto...) {});
  std::vector<LaunchRequest::Wish> wishes;
  QObject::connect(&desktop, &DesktopBus::launched, [&](const auto& request) {
    EXPECT_EQ(QThread::currentThread(), qApp->thread());
    wishes.push_back(request.wish);
  });
  runUntil([&] { return services.interface()->isServiceRegistered("example.quillop.App").value(); });
  auto call = QDBusMessage::createMethodCall("example.quillop.App", "/example/quillop/App",
                                             "org.freedesktop.Application", "ActivateAction");
  services.send(call << "settings" << QVariantList() << QVariantMap());
  runUntil([&] { return !wishes.empty(); });
  EXPECT_THAT(wishes, testing::ElementsAre(LaunchRequest::Wish::OpenSettings));
}

TEST_F(DesktopBusTest, OneOfSeveralScreenSaversIsEnough) {
  StandInScreenSaver saver(services);
  StandInGnomeScreenSaver other(services);
  startAndWaitFor(2);
  emit saver.ActiveChanged(true);
  expectWord(BackgroundReason::ScreenSaver, true);
  emit other.ActiveChanged(false);
  expectWord(BackgroundReason::ScreenSaver, true);
  emit saver.ActiveChanged(false);
  expectWord(BackgroundReason::ScreenSaver, false);
}

TEST_F(DesktopBusTest, KeepsTheDisplayAwakeAlsoWhenAskedBeforeTheBusIsThere) {
  StandInPortal portal(services);
  start();
  desktopBus->keepAwake(true);
  runUntil([&] { return portal.openRequests() == 1; });
  desktopBus->keepAwake(false);
  runUntil([&] { return portal.openRequests() == 0; });
}

TEST_F(DesktopBusTest, EndsWhileItIsStillConnecting) {
  const StandInLogin login(services);
  for (int time = 0; time < 20; ++time) {
    start();
    desktopBus.reset();
  }
  QCoreApplication::processEvents();
  EXPECT_THAT(words, testing::IsEmpty());
}

TEST(DesktopBus, WithoutABusNothingHappens) {
  for (const auto* address : {"", "unix:path=/proc/no/such/socket", "nonsense"}) {
    bool heard = false;
    DesktopBus bus({address, address}, [&](BackgroundReason, bool) { heard = true; });
    bus.keepAwake(true);
    bus.keepAwake(false);
    QCoreApplication::processEvents();
    EXPECT_FALSE(heard);
  }
}

TEST(DesktopBus, UsualAddressesNeverAskForABusToBeStarted) {
  const QTemporaryDir folder;
  const EnvironmentVariable noSession("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
  const EnvironmentVariable noSystem("DBUS_SYSTEM_BUS_ADDRESS", std::nullopt);
  const EnvironmentVariable runtime("XDG_RUNTIME_DIR", folder.path().toStdString());
  EXPECT_EQ(DesktopBus::usualAddresses().session, QString());
  EXPECT_EQ(DesktopBus::usualAddresses().system, "unix:path=/run/dbus/system_bus_socket");
  QFile socket(folder.filePath("bus"));
  EXPECT_TRUE(socket.open(QIODevice::WriteOnly));
  EXPECT_EQ(DesktopBus::usualAddresses().session, "unix:path=" + folder.path() + "/bus");
  const EnvironmentVariable session("DBUS_SESSION_BUS_ADDRESS", "unix:path=/elsewhere");
  EXPECT_EQ(DesktopBus::usualAddresses().session, "unix:path=/elsewhere");
}

}  // namespace
}  // namespace desktop
