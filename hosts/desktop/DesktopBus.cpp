#include "hosts/desktop/DesktopBus.h"

#include "hosts/desktop/FolderPortal.h"
#include "hosts/desktop/IdleInhibitor.h"
#include "hosts/desktop/LoginSession.h"
#include "hosts/desktop/ScreenSaverWatch.h"
#include "hosts/qtquick/PortalSetting.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QSet>

#include <array>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace desktop {

namespace {

const auto sessionName = QStringLiteral("quillop-session");
const auto systemName = QStringLiteral("quillop-system");

struct ScreenSaver {
  const char* service;
  const char* path;
};
constexpr std::array screenSavers{ScreenSaver{"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
                                  ScreenSaver{"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
                                  ScreenSaver{"org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver"},
                                  ScreenSaver{"org.mate.ScreenSaver", "/org/mate/ScreenSaver"},
                                  ScreenSaver{"org.xfce.ScreenSaver", "/org/xfce/ScreenSaver"}};

}  // namespace

/// The part in the thread.
class DesktopBus::Services final : public QObject {
 public:
  using Hear = std::function<void(BackgroundReason reason, bool holds)>;
  using Launched = std::function<void(const LaunchRequest& request)>;
  using Chosen = std::function<void(const QString& folder)>;

  Services(Hear hear, Launched launched, Chosen chosen)
      : hear_(std::move(hear)), launched_(std::move(launched)), chosen_(std::move(chosen)) {}
  ~Services() override;

  void connectTo(const Addresses& addresses);
  void keepAwake(bool awake) {
    if (inhibitor_) inhibitor_->keepAwake(awake);
  }
  void askForFolder() {
    if (folders_) folders_->ask();
  }
  void readyToSleep() {
    if (login_) login_->readyToSleep();
  }

 private:
  void useSystemBus(const QDBusConnection& bus);
  void useSessionBus(const QDBusConnection& bus, const QString& applicationId);
  void screenSaverTold(const QString& service, bool isActive);

  Hear hear_;
  Launched launched_;
  Chosen chosen_;
  QSet<QString> activeScreenSavers_;
  std::unique_ptr<LoginSession> login_;
  std::vector<std::unique_ptr<ScreenSaverWatch>> screenSavers_;
  std::optional<IdleInhibitor> inhibitor_;
  std::unique_ptr<LaunchRequests> launches_;
  std::optional<FolderPortal> folders_;
};

DesktopBus::Services::~Services() {
  folders_.reset();
  launches_.reset();
  inhibitor_.reset();
  screenSavers_.clear();
  login_.reset();
  QDBusConnection::disconnectFromBus(sessionName);
  QDBusConnection::disconnectFromBus(systemName);
}

void DesktopBus::Services::connectTo(const Addresses& addresses) {
  if (!addresses.session.isEmpty())
    useSessionBus(QDBusConnection::connectToBus(addresses.session, sessionName), addresses.applicationId);
  if (!addresses.system.isEmpty()) useSystemBus(QDBusConnection::connectToBus(addresses.system, systemName));
}

void DesktopBus::Services::useSystemBus(const QDBusConnection& bus) {
  if (!bus.isConnected()) return;
  login_ = std::make_unique<LoginSession>(bus);
  connect(login_.get(), &LoginSession::locked, this,
          [this](bool isLocked) { hear_(BackgroundReason::SessionLocked, isLocked); });
  connect(login_.get(), &LoginSession::sleeping, this,
          [this](bool isAsleep) { hear_(BackgroundReason::Asleep, isAsleep); });
}

void DesktopBus::Services::useSessionBus(const QDBusConnection& bus, const QString& applicationId) {
  if (!bus.isConnected()) return;
  if (!applicationId.isEmpty()) {
    launches_ = std::make_unique<LaunchRequests>(bus, applicationId);
    connect(launches_.get(), &LaunchRequests::asked, this, launched_);
  }
  inhibitor_.emplace(bus);
  connect(&folders_.emplace(bus), &FolderPortal::chosen, this, chosen_);
  for (const auto& [service, path] : screenSavers) {
    const QString name = QString::fromLatin1(service);
    const auto& watch =
        screenSavers_.emplace_back(std::make_unique<ScreenSaverWatch>(bus, name, QString::fromLatin1(path)));
    connect(watch.get(), &ScreenSaverWatch::active, this,
            [this, name](bool isActive) { screenSaverTold(name, isActive); });
  }
}

void DesktopBus::Services::screenSaverTold(const QString& service, bool isActive) {
  if (isActive) {
    activeScreenSavers_.insert(service);
  } else {
    activeScreenSavers_.remove(service);
  }
  hear_(BackgroundReason::ScreenSaver, !activeScreenSavers_.isEmpty());
}

DesktopBus::Addresses DesktopBus::usualAddresses() {
  return {qtquick::sessionBusAddress(),
          qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS", QStringLiteral("unix:path=/run/dbus/system_bus_socket")),
          QGuiApplication::desktopFileName()};
}

DesktopBus::DesktopBus(const Addresses& addresses, Tell tell) : tell_(std::move(tell)) {
  const auto heard = [this](auto reason, bool holds) {
    QMetaObject::invokeMethod(this, [this, reason, holds] { hear(reason, holds); });
  };
  const auto wasLaunched = [this](const auto& request) {
    QMetaObject::invokeMethod(this, [this, request] { emit launched(request); });
  };
  const auto wasChosen = [this](const auto& folder) {
    QMetaObject::invokeMethod(this, [this, folder] { emit folderChosen(folder); });
  };
  services_ = new Services(heard, wasLaunched, wasChosen);
  thread_.setObjectName(QStringLiteral("desktop-bus"));
  services_->moveToThread(&thread_);
  connect(&thread_, &QThread::finished, services_, &QObject::deleteLater);
  thread_.start();
  QMetaObject::invokeMethod(services_, [services = services_, addresses] { services->connectTo(addresses); });
}

DesktopBus::~DesktopBus() {
  thread_.quit();
  thread_.wait();
}

void DesktopBus::keepAwake(bool awake) {
  QMetaObject::invokeMethod(services_, [services = services_, awake] { services->keepAwake(awake); });
}

void DesktopBus::askForFolder() {
  QMetaObject::invokeMethod(services_, [services = services_] { services->askForFolder(); });
}

void DesktopBus::hear(BackgroundReason reason, bool holds) {
  tell_(reason, holds);
  if (reason != BackgroundReason::Asleep || !holds) return;
  QMetaObject::invokeMethod(services_, [services = services_] { services->readyToSleep(); });
}

}  // namespace desktop
