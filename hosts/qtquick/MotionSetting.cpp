#include "hosts/qtquick/MotionSetting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace qtquick {

namespace {
const auto portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const auto interfaceGroup = QStringLiteral("org.gnome.desktop.interface");
const auto animationsKey = QStringLiteral("enable-animations");

/// The portal wraps the value of `Read` in one more variant than that of its signal.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value;
}
}  // namespace

MotionSetting::MotionSetting() : reduced_(qEnvironmentVariableIntValue("QUILLOP_REDUCE_MOTION") == 1) {
  // Without an address the D-Bus library would start a bus of its own.
  if (reduced_ || !qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) return;
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  bus.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
              SLOT(settingChanged(QString, QString, QDBusVariant)));
  ask();
}

void MotionSetting::ask() {
  auto question =
      QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, QStringLiteral("Read"));
  question << interfaceGroup << animationsKey;
  auto* const watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (reply.isValid()) settingChanged(interfaceGroup, animationsKey, reply.value());
    watcher->deleteLater();
  });
}

void MotionSetting::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
  if (group != interfaceGroup || key != animationsKey) return;
  const QVariant enabled = unwrapped(value.variant());
  if (enabled.userType() == QMetaType::Bool) reduced_ = !enabled.toBool();
}

}  // namespace qtquick
