#include "hosts/qtquick/Contrast.h"

#include "tests/host/desktop/PrivateBus.h"
#include "tests/support/EnvironmentVariable.h"

#include <map>

namespace desktop {

/// The portal's Settings interface, with as many settings as it is given.
class StandInLook final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

 public:
  explicit StandInLook(const QDBusConnection& connection) : bus_(connection) {
    bus_.registerObject("/org/freedesktop/portal/desktop", this, QDBusConnection::ExportAllContents);
    bus_.registerService("org.freedesktop.portal.Desktop");
  }
  ~StandInLook() override { bus_.unregisterService("org.freedesktop.portal.Desktop"); }

  std::map<QString, QVariant> values;
  int questions = 0;

  void change(const QString& group, const QString& key, const QVariant& value) {
    values[group + '/' + key] = value;
    emit SettingChanged(group, key, QDBusVariant(value));
  }

 public slots:
  // The answer is wrapped once more than the signal's value.
  QDBusVariant Read(const QString& group, const QString& key) {
    ++questions;
    const auto found = values.find(group + '/' + key);
    return QDBusVariant(
        QVariant::fromValue(QDBusVariant(found == values.end() ? QVariant(QString()) : found->second)));
  }

 signals:
  void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  QDBusConnection bus_;
};

namespace {

using qtquick::Contrast;

const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto accessibility = QStringLiteral("org.gnome.desktop.a11y.interface");
const QColor grey(0x8A, 0x97, 0x9F);
const QColor blue(0x3D, 0xA9, 0xFC);
const QColor glass(0x1B, 0x21, 0x24, 0xEB);

class ContrastTest : public testing::Test {
 protected:
  void follow(const Contrast& contrast) {
    QObject::connect(&contrast, &Contrast::changed, &contrast, [this] { ++changes; });
  }

  PrivateBus bus;
  QDBusConnection app = bus.connection("app");
  StandInLook look{bus.connection("services")};
  int changes = 0;
};

TEST_F(ContrastTest, IsTheUsualOneWhereTheDesktopHasNoWish) {
  const Contrast contrast(app);
  runUntil([&] { return look.questions == 2; });
  PrivateBus::settle(app);
  EXPECT_FALSE(contrast.isHigh());
  EXPECT_EQ(contrast.ground(glass), glass);
  EXPECT_EQ(contrast.ink(grey), grey);
}

TEST_F(ContrastTest, IsHighWhereTheDesktopAsksForItInEitherWay) {
  look.values[appearance + "/contrast"] = 1U;
  const Contrast first(app);
  runUntil([&] { return first.isHigh(); });
  look.values = {{accessibility + "/high-contrast", true}};
  const Contrast second(app);
  runUntil([&] { return second.isHigh(); });
}

TEST_F(ContrastTest, FollowsTheDesktop) {
  const Contrast contrast(app);
  follow(contrast);
  runUntil([&] { return look.questions == 2; });
  look.change(appearance, "contrast", 1U);
  runUntil([&] { return contrast.isHigh(); });
  look.change(accessibility, "high-contrast", true);
  look.change(appearance, "contrast", 0U);
  PrivateBus::settle(app);
  EXPECT_TRUE(contrast.isHigh());
  EXPECT_EQ(changes, 1);
  look.change(accessibility, "high-contrast", false);
  runUntil([&] { return !contrast.isHigh(); });
  EXPECT_EQ(changes, 2);
}

TEST_F(ContrastTest, OfTheUsersOwnIsHeededInTheDesktopsPlace) {
  const EnvironmentVariable own("QUILLOP_HIGH_CONTRAST", "0");
  look.values[appearance + "/contrast"] = 1U;
  const Contrast contrast(app);
  PrivateBus::settle(app);
  EXPECT_FALSE(contrast.isHigh());
  EXPECT_EQ(look.questions, 0);
}

TEST_F(ContrastTest, HighLeavesBlackWhiteAndTheColoursThatMeanSomething) {
  const EnvironmentVariable own("QUILLOP_HIGH_CONTRAST", "1");
  const Contrast contrast(app);
  EXPECT_EQ(contrast.ground(glass), QColor(Qt::black));
  EXPECT_EQ(contrast.ink(grey), QColor(Qt::white));
  EXPECT_EQ(contrast.ground(blue), blue);
  EXPECT_EQ(contrast.ink(blue), blue);
  EXPECT_EQ(contrast.ground(Qt::transparent), QColor(Qt::transparent));
}

}  // namespace
}  // namespace desktop

#include "ContrastTests.moc"
