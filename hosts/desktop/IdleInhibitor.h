#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>

#include <functional>
#include <variant>

namespace desktop {

/// Asks the desktop not to blank the screen: the portal's Inhibit (https://flatpak.github.io/xdg-desktop-portal/)
/// where there is one, else org.freedesktop.ScreenSaver. Every promise that the desktop gave is given back, also when
/// it came after it was wanted no more.
///
/// Does nothing where the desktop has neither. Never waits.
class IdleInhibitor final : public QObject {
  Q_OBJECT

 public:
  explicit IdleInhibitor(const QDBusConnection& sessionBus) : bus_(sessionBus) {}
  ~IdleInhibitor() override;

 public slots:
  void keepAwake(bool awake);

 private:
  using Cookie = uint;  ///< how org.freedesktop.ScreenSaver names a promise; the portal has an object for it
  using Promise = std::variant<std::monostate, QDBusObjectPath, Cookie>;
  using Answer = std::function<void(const QDBusMessage& reply)>;

  void askPortal();
  void askScreenSaver();
  void ask(const QDBusMessage& question, Answer answer);
  void settle(Promise promise);
  void giveBack();

  QDBusConnection bus_;
  Promise promise_;
  bool wanted_ = false;
  bool asking_ = false;
};

}  // namespace desktop
