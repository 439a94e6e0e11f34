#include "hosts/qtquick/PortalSetting.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>

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

QString sessionBusAddress() {
  const QString named = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
  const QString usersOwn = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
  return named.isEmpty() && QFileInfo::exists(usersOwn) ? QStringLiteral("unix:path=") + usersOwn : named;
}

QDBusConnection PortalSetting::sessionBus() {
  // Without an address the D-Bus library would start a bus of its own.
  const QString address = sessionBusAddress();
  if (address.isEmpty()) return QDBusConnection(QString());
  // The connection that Qt itself has, where that knows the address.
  const bool isNamed = !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS");
  return isNamed ? QDBusConnection::sessionBus() : QDBusConnection::connectToBus(address, address);
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
