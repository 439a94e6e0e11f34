#pragma once

#include "hosts/desktop/Films.h"

#include <QObject>
#include <QWindow>

namespace desktop {

/// The media keys of the keyboard where they reach the app's window, because no desktop takes them and passes them on
/// to media players: they work the film that was used last. Play makes it go on or pauses it, because most keyboards
/// have no other key for either; Pause pauses it, Stop closes it. A key that is held down counts once. Main thread.
class MediaKeys final : public QObject {
  Q_OBJECT

 public:
  /// Both outlive the keys.
  MediaKeys(QWindow& window, Films& films);

  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  Films& films_;
};

}  // namespace desktop
