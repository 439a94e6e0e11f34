#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <functional>

namespace qtquick {

/// Where the message bus of the session is: $DBUS_SESSION_BUS_ADDRESS, or else the bus of the user's own in
/// $XDG_RUNTIME_DIR. Empty where there is none.
QString sessionBusAddress();

/// One setting of the desktop, as the settings portal tells it (https://flatpak.github.io/xdg-desktop-portal/,
/// Settings). Asked for once, without waiting, and followed from then on. Silent where there is no message bus or no
/// portal. Main thread.
class PortalSetting final : public QObject {
  Q_OBJECT

 public:
  /// The message bus of the session; one that is not connected where there is none.
  static QDBusConnection sessionBus();

  /// `changed` hears of the value when it arrives, and of each later one.
  PortalSetting(QDBusConnection bus, QString group, QString key, std::function<void(const QVariant&)> changed);

 private slots:
  void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void ask();

  QDBusConnection bus_;
  QString group_;
  QString key_;
  std::function<void(const QVariant&)> changed_;
};

}  // namespace qtquick
