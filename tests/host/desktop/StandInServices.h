#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QVariantMap>

#include <cerrno>
#include <memory>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

/// Services of the desktop, as far as the app uses them.
namespace desktop {

/// The session of the login service.
class StandInSession final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Session")
  Q_PROPERTY(bool LockedHint READ lockedHint)

 public:
  static constexpr auto path = "/org/freedesktop/login1/session/_32";

  bool lockedHint() const { return lockedHint_; }
  void setLockedHint(QDBusConnection bus, bool locked) {
    lockedHint_ = locked;
    auto signal = QDBusMessage::createSignal(path, "org.freedesktop.DBus.Properties", "PropertiesChanged");
    signal << "org.freedesktop.login1.Session" << QVariantMap{{"LockedHint", locked}} << QStringList();
    bus.send(signal);
  }

 signals:
  void Lock();
  void Unlock();

 private:
  bool lockedHint_ = false;
};

/// The manager of the login service.
class StandInLogin final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

 public:
  explicit StandInLogin(QDBusConnection connection) : bus(std::move(connection)) {
    bus.registerObject("/org/freedesktop/login1", this, QDBusConnection::ExportAllContents);
    bus.registerObject(StandInSession::path, &session, QDBusConnection::ExportAllContents);
    bus.registerService("org.freedesktop.login1");
  }
  ~StandInLogin() override {
    bus.unregisterService("org.freedesktop.login1");
    for (const int end : std::as_const(readingEnds)) close(end);
  }

  /// Whether the promise to wait before sleeping, counted from 0, is still held by somebody.
  bool isHeld(std::size_t delay) const {
    char byte = 0;
    return read(readingEnds.at(delay), &byte, 1) < 0 && errno == EAGAIN;
  }

  QDBusConnection bus;
  StandInSession session;
  QStringList sessionsAskedFor;
  std::vector<QStringList> delays;
  std::vector<int> readingEnds;

 public slots:
  QDBusObjectPath GetSession(const QString& name) {
    sessionsAskedFor.append(name);
    return QDBusObjectPath(StandInSession::path);
  }
  QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString& why, const QString& mode) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return {};
    delays.push_back({what, who, why, mode});
    readingEnds.push_back(ends[0]);
    QDBusUnixFileDescriptor promise;
    promise.giveFileDescriptor(ends[1]);
    return promise;
  }

 signals:
  void PrepareForSleep(bool asleep);
};

/// A screen saver that also takes requests to stay away.
class StandInScreenSaver final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

 public:
  explicit StandInScreenSaver(QDBusConnection connection) : bus(std::move(connection)) {
    bus.registerObject("/org/freedesktop/ScreenSaver", this, QDBusConnection::ExportAllContents);
    bus.registerService("org.freedesktop.ScreenSaver");
  }
  ~StandInScreenSaver() override { bus.unregisterService("org.freedesktop.ScreenSaver"); }

  QDBusConnection bus;
  bool isActive = false;
  int requests = 0;
  int unknownCookies = 0;
  QSet<uint> open;

 public slots:
  bool GetActive() const { return isActive; }
  uint Inhibit(const QString& /*who*/, const QString& /*why*/) {
    const uint cookie = 1000U + static_cast<uint>(++requests);
    open.insert(cookie);
    return cookie;
  }
  void UnInhibit(uint cookie) {
    if (!open.remove(cookie)) ++unknownCookies;
  }

 signals:
  void ActiveChanged(bool active);
};

/// The screen saver of another desktop, without requests.
class StandInGnomeScreenSaver final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.gnome.ScreenSaver")

 public:
  explicit StandInGnomeScreenSaver(QDBusConnection connection) : bus(std::move(connection)) {
    bus.registerObject("/org/gnome/ScreenSaver", this, QDBusConnection::ExportAllContents);
    bus.registerService("org.gnome.ScreenSaver");
  }
  ~StandInGnomeScreenSaver() override { bus.unregisterService("org.gnome.ScreenSaver"); }

  QDBusConnection bus;

 public slots:
  bool GetActive() const { return false; }

 signals:
  void ActiveChanged(bool active);
};

/// A promise of the portal.
class StandInRequest final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Request")

 public:
  bool isOpen = true;

 public slots:
  void Close() { isOpen = false; }
};

/// The portal's Settings interface, with one setting.
class StandInSettings final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

 public:
  StandInSettings(QDBusConnection connection, QString group, QString key, QVariant value)
      : bus(std::move(connection)), group_(std::move(group)), key_(std::move(key)), value_(std::move(value)) {
    bus.registerObject("/org/freedesktop/portal/desktop", this, QDBusConnection::ExportAllContents);
    bus.registerService("org.freedesktop.portal.Desktop");
  }
  ~StandInSettings() override { bus.unregisterService("org.freedesktop.portal.Desktop"); }

  void set(const QVariant& value) { emit SettingChanged(group_, key_, QDBusVariant(value)); }

  QDBusConnection bus;
  int questions = 0;

 public slots:
  // The answer is wrapped once more than the signal's value.
  QDBusVariant Read(const QString& group, const QString& key) {
    ++questions;
    const bool isKnown = group == group_ && key == key_;
    return QDBusVariant(QVariant::fromValue(QDBusVariant(isKnown ? value_ : QVariant(0))));
  }

 signals:
  void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  QString group_;
  QString key_;
  QVariant value_;
};

/// The portal's Inhibit interface.
class StandInPortal final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Inhibit")

 public:
  explicit StandInPortal(QDBusConnection connection) : bus(std::move(connection)) {
    bus.registerObject("/org/freedesktop/portal/desktop", this, QDBusConnection::ExportAllContents);
    bus.registerService("org.freedesktop.portal.Desktop");
  }
  ~StandInPortal() override { bus.unregisterService("org.freedesktop.portal.Desktop"); }

  int openRequests() const {
    int open = 0;
    for (const auto& request : requests) open += request->isOpen ? 1 : 0;
    return open;
  }

  QDBusConnection bus;
  std::vector<std::unique_ptr<StandInRequest>> requests;
  uint flags = 0;

 public slots:
  QDBusObjectPath Inhibit(const QString& /*window*/, uint wantedFlags, const QVariantMap& /*options*/) {
    flags = wantedFlags;
    const auto path = QStringLiteral("/org/freedesktop/portal/desktop/request/%1").arg(requests.size());
    bus.registerObject(path, requests.emplace_back(std::make_unique<StandInRequest>()).get(),
                       QDBusConnection::ExportAllContents);
    return QDBusObjectPath(path);
  }
};

/// The portal's FileChooser interface.
class StandInFolderPortal final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")

 public:
  struct Question {
    QString request;
    QVariantMap options;
  };

  explicit StandInFolderPortal(QDBusConnection connection) : bus(std::move(connection)) {
    bus.registerObject("/org/freedesktop/portal/desktop", this, QDBusConnection::ExportAllContents);
    bus.registerService("org.freedesktop.portal.Desktop");
  }
  ~StandInFolderPortal() override { bus.unregisterService("org.freedesktop.portal.Desktop"); }

  /// What the user did about a question, counted from 0.
  void answer(std::size_t question, uint response, const QStringList& addresses) {
    auto signal =
        QDBusMessage::createSignal(questions.at(question).request, "org.freedesktop.portal.Request", "Response");
    bus.send(signal << response << QVariantMap{{"uris", addresses}});
  }

  QDBusConnection bus;
  std::vector<Question> questions;

 public slots:
  QDBusObjectPath OpenFile(const QString& /*window*/, const QString& /*title*/, const QVariantMap& options,
                           const QDBusMessage& call) {
    const QString asker = call.service().mid(1).replace('.', '_');
    questions.push_back(
        {"/org/freedesktop/portal/desktop/request/" + asker + '/' + options.value("handle_token").toString(),
         options});
    return QDBusObjectPath(questions.back().request);
  }
};

/// The portal's Email interface.
class StandInMailPortal final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Email")

 public:
  explicit StandInMailPortal(QDBusConnection connection) : bus(std::move(connection)) {
    bus.registerObject("/org/freedesktop/portal/desktop", this, QDBusConnection::ExportAllContents);
    bus.registerService("org.freedesktop.portal.Desktop");
  }
  ~StandInMailPortal() override { bus.unregisterService("org.freedesktop.portal.Desktop"); }

  QDBusConnection bus;
  std::vector<QVariantMap> drafts;

 public slots:
  QDBusObjectPath ComposeEmail(const QString& /*window*/, const QVariantMap& options) {
    drafts.push_back(options);
    return QDBusObjectPath("/org/freedesktop/portal/desktop/request/mail");
  }
};

}  // namespace desktop
