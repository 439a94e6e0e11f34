#pragma once

#include "tests/host/desktop/PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QObject>
#include <QVariantMap>

#include <utility>
#include <vector>

namespace desktop {

/// Somebody on the bus who looks at one media player and works it.
class MediaClient final : public QObject {
  Q_OBJECT

 public:
  MediaClient(QDBusConnection connection, QString playerName)
      : bus(std::move(connection)), service(std::move(playerName)) {
    bus.connect(service, path, properties, "PropertiesChanged", this,
                SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    bus.connect(service, path, player, "Seeked", this, SLOT(seeked(qlonglong)));
  }

  static constexpr auto path = "/org/mpris/MediaPlayer2";
  static constexpr auto root = "org.mpris.MediaPlayer2";
  static constexpr auto player = "org.mpris.MediaPlayer2.Player";
  static constexpr auto properties = "org.freedesktop.DBus.Properties";

  bool isThere() const { return bus.interface()->isServiceRegistered(service); }
  void waitUntilThere() const {
    runUntil([this] { return isThere(); });
  }
  void waitUntilGone() const {
    runUntil([this] { return !isThere(); });
  }

  QDBusMessage call(const QString& interface, const QString& method, const QVariantList& arguments = {}) const {
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    const QDBusPendingCall pending = bus.asyncCall(message);
    runUntil([&] { return pending.isFinished(); });
    QCoreApplication::processEvents();  // signals that came before the answer
    return pending.reply();
  }
  /// Calls a method of the player, which has to work.
  void tell(const QString& method, const QVariantList& arguments = {}) const {
    const auto reply = call(player, method, arguments);
    EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
  }
  QVariant get(const QString& name, const QString& interface = player) const {
    const auto values = call(properties, "Get", {interface, name}).arguments();
    return values.isEmpty() ? QVariant() : values.constFirst().value<QDBusVariant>().variant();
  }
  void set(const QString& name, const QVariant& value) const {
    call(properties, "Set", {QString(player), name, QVariant::fromValue(QDBusVariant(value))});
  }
  QVariantMap metadata() const { return qdbus_cast<QVariantMap>(get("Metadata")); }
  QDBusObjectPath track() const { return metadata().value("mpris:trackid").value<QDBusObjectPath>(); }

  QDBusConnection bus;
  QString service;
  QVariantMap changed;  ///< the newest values of all that was told to have changed
  std::vector<qlonglong> seeks;

 public slots:
  void propertiesChanged(const QString& interface, const QVariantMap& values, const QStringList& /*invalidated*/) {
    EXPECT_EQ(interface, player);
    changed.insert(values);
  }
  void seeked(qlonglong position) { seeks.push_back(position); }
};

}  // namespace desktop
