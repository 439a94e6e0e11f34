#include "hosts/qtquick/TextSize.h"

#include "tests/host/desktop/PrivateBus.h"
#include "tests/host/desktop/StandInServices.h"
#include "tests/support/EnvironmentVariable.h"

#include <QFile>
#include <QTemporaryDir>

#include <memory>

namespace desktop {
namespace {

using qtquick::TextSize;

class TextSizeTest : public testing::Test {
 protected:
  void desktopWants(double factor) {
    settings = std::make_unique<StandInSettings>(bus.connection("services"), "org.gnome.desktop.interface",
                                                 "text-scaling-factor", factor);
  }

  PrivateBus bus;
  QDBusConnection app = bus.connection("app");
  std::unique_ptr<StandInSettings> settings;
};

TEST_F(TextSizeTest, IsTheUsualOneWhereNobodyTells) {
  const TextSize size(app);
  PrivateBus::settle(app);
  EXPECT_EQ(size.scale(), 1);
}

TEST_F(TextSizeTest, IsWhatTheDesktopWants) {
  desktopWants(1.5);
  const TextSize size(app);
  runUntil([&] { return size.scale() == 1.5; });
}

TEST_F(TextSizeTest, ComesFromTheUsersOwnBusWhereTheEnvironmentNamesNone) {
  const EnvironmentVariable none("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
  const QTemporaryDir runtime;
  const EnvironmentVariable folder("XDG_RUNTIME_DIR", runtime.path().toStdString());
  EXPECT_FALSE(qtquick::PortalSetting::sessionBus().isConnected());
  const QString socket = bus.address().section(QStringLiteral("path="), 1).section(QLatin1Char(','), 0, 0);
  ASSERT_TRUE(QFile::link(socket, runtime.filePath(QStringLiteral("bus"))));
  desktopWants(1.5);
  const TextSize size;
  runUntil([&] { return size.scale() == 1.5; });
}

TEST_F(TextSizeTest, FollowsTheDesktop) {
  desktopWants(1);
  const TextSize size(app);
  int changes = 0;
  QObject::connect(&size, &TextSize::changed, &size, [&] { ++changes; });
  runUntil([&] { return settings->questions == 1; });
  settings->set(1.25);
  runUntil([&] { return size.scale() == 1.25; });
  settings->set(1.25);
  settings->set(2.0);
  runUntil([&] { return size.scale() == 2; });
  EXPECT_EQ(changes, 2);
}

TEST_F(TextSizeTest, StaysWithinWhatTheScreensHaveRoomFor) {
  desktopWants(3);
  const TextSize size(app);
  runUntil([&] { return size.scale() == 2; });
  settings->set(0.5);
  runUntil([&] { return size.scale() == 1; });
}

TEST_F(TextSizeTest, OfTheUsersOwnIsHeededInTheDesktopsPlace) {
  const EnvironmentVariable own("QUILLOP_TEXT_SCALE", "1.75");
  desktopWants(1.25);
  const TextSize size(app);
  PrivateBus::settle(app);
  EXPECT_EQ(size.scale(), 1.75);
  EXPECT_EQ(settings->questions, 0);
}

}  // namespace
}  // namespace desktop
