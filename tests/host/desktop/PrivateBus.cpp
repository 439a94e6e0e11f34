#include "tests/host/desktop/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFile>

#include <csignal>

namespace desktop {

namespace {

// No folders of services: whatever is installed on this machine is not started.
constexpr auto configuration = R"(<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

}  // namespace

PrivateBus::PrivateBus() {
  const QString path = folder_.filePath(QStringLiteral("bus.conf"));
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(QString::fromLatin1(configuration).arg(folder_.path()).toUtf8());
  file.close();
  daemon_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--config-file=") + path, QStringLiteral("--nofork"),
                                                QStringLiteral("--print-address")});
  EXPECT_TRUE(daemon_.waitForReadyRead()) << "dbus-daemon is needed";
  address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
}

PrivateBus::~PrivateBus() {
  for (const auto& name : connections_) QDBusConnection::disconnectFromBus(name);
  daemon_.terminate();
  daemon_.waitForFinished();
}

QDBusConnection PrivateBus::connection(const QString& name) {
  if (connections_.contains(name)) return QDBusConnection(name);
  connections_.append(name);
  auto bus = QDBusConnection::connectToBus(address_, name);
  EXPECT_TRUE(bus.isConnected()) << bus.lastError().message().toStdString();
  return bus;
}

void PrivateBus::settle(const QDBusConnection& receiver) {
  // The bus keeps the order of what it delivers, so that its answer comes last.
  bool answered = false;
  QDBusPendingCallWatcher watcher(receiver.asyncCall(
      QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                     QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ListNames"))));
  QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, [&] { answered = true; });
  runUntil([&] { return answered; });
}

void PrivateBus::suspend() const {
  EXPECT_EQ(kill(static_cast<pid_t>(daemon_.processId()), SIGSTOP), 0);
}

void PrivateBus::resume() const {
  EXPECT_EQ(kill(static_cast<pid_t>(daemon_.processId()), SIGCONT), 0);
}

}  // namespace desktop
