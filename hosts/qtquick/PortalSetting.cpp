#include "hosts/qtquick/PortalSetting.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace qtquick {

namespace {
const auto portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

/// The portal wraps the value of `Read` in one more variant than that of its signal.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value;
}
}  // namespace

QDBusConnection PortalSetting::sessionBus() {
  // Without an address the D-Bus library would start a bus of its own.
  const bool isThere = qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS");
  return isThere ? QDBusConnection::sessionBus() : QDBusConnection(QString());
}

PortalSetting::PortalSetting(QDBusConnection bus, QString group, QString key,
                             std::function<void(const QVariant&)> changed)
    : bus_(std::move(bus)), group_(std::move(group)), key_(std::move(key)), changed_(std::move(changed)) {
  if (!bus_.isConnected()) return;
  // Qt looks the slot's types up by their names, and nobody may have used this one yet.
  qRegisterMetaType<QDBusVariant>();
  bus_.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
               SLOT(settingChanged(QString, QString, QDBusVariant)));
  ask();
}

void PortalSetting::ask() {
  auto question =
      QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, QStringLiteral("Read"));
  question << group_ << key_;
  auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (reply.isValid()) settingChanged(group_, key_, reply.value());
    watcher->deleteLater();
  });
}

void PortalSetting::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
  if (group == group_ && key == key_) changed_(unwrapped(value.variant()));
}

}  // namespace qtquick
