#pragma once

#include "hosts/desktop/WindowMenu.h"
#include "hosts/desktop/WindowPlace.h"
#include "hosts/qtquick/ScreenHost.h"

#include <QObject>
#include <QQuickWindow>
#include <QRect>
#include <QString>

#include <functional>
#include <vector>

namespace desktop {

/// The screen's window as one of the desktop's: shown where it was last, brought forward, and with a menu. Main
/// thread.
class MainWindow final : public QObject {
  Q_OBJECT

 public:
  /// Shows the window. Its place is kept in the file `place`. `screen` outlives this.
  MainWindow(qtquick::ScreenHost& screen, const QString& place);

  QQuickWindow& window() const { return screen_.window(); }

  /// Without the token of whoever asked for it, a Wayland compositor lets no window come forward.
  void comeForward(const QString& activationToken = {}) const;
  /// Has the next start show the window as it is now: in full screen or not, and otherwise as large as it last was in
  /// between.
  void remember();
  /// What the menu has now.
  std::vector<WindowMenu::Entry> menuEntries(std::function<void()> openSettings, std::function<void()> end) const;

 private:
  void showAsRemembered();
  void noteGeometry();

  qtquick::ScreenHost& screen_;
  WindowPlace place_;
  QRect geometry_;  ///< when it last neither was in full screen nor filled the desktop
};

}  // namespace desktop
