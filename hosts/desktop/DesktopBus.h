#pragma once

#include "hosts/desktop/BackgroundReasons.h"
#include "hosts/desktop/LaunchRequests.h"
#include "platform/host/Services.h"

#include <QObject>
#include <QString>
#include <QThread>

#include <functional>

namespace desktop {

/// What D-Bus has for the app: why it cannot be seen (session locked, screen saver, system asleep), what launchers
/// want of it, the display that is to stay lit while films play, and folders outside of a sandbox. Everything happens
/// in a thread of its own, because connecting, and following signals, waits for the bus. Without a bus nothing ever
/// happens.
class DesktopBus final : public QObject, public host::Display {
  Q_OBJECT

 public:
  /// In D-Bus's own form, such as "unix:path=/run/user/1000/bus".
  struct Addresses {
    QString session;
    QString system;
    QString applicationId = {};  ///< the app's own name on the session bus; none where it is empty
  };
  /// Where the two buses are for this user. A bus that is not there is not started.
  static Addresses usualAddresses();

  /// Called on the main thread, outside any turn. The system goes to sleep only once `tell` has returned from
  /// (`Asleep`, true), or after the few seconds that the login service grants.
  using Tell = std::function<void(BackgroundReason reason, bool holds)>;

  /// Returns at once; the buses are connected meanwhile.
  DesktopBus(const Addresses& addresses, Tell tell);
  /// Gives back what the desktop promised. Returns when the thread has ended.
  ~DesktopBus() override;

  void keepAwake(bool awake) override;
  /// Has the desktop let the user choose a folder (`FolderPortal`).
  void askForFolder();

 signals:
  /// On the main thread, outside any turn.
  void launched(const desktop::LaunchRequest& request);
  /// Likewise.
  void folderChosen(const QString& folder);

 private:
  class Services;

  void hear(BackgroundReason reason, bool holds);

  Tell tell_;
  QThread thread_;
  Services* services_;  ///< lives, and dies, in the thread
};

}  // namespace desktop
