#include "hosts/desktop/MediaKeys.h"

#include "platform/foundation/RunLoop.h"

#include <QKeyEvent>

namespace desktop {

namespace {

using Operation = void (Film::*)();

/// What the key does to a film; none for a key that is no media key.
Operation operationOf(int key) {
  switch (key) {
    case Qt::Key_MediaPlay:  // what the one key of most keyboards is called
    case Qt::Key_MediaTogglePlayPause:
      return &Film::playOrPause;
    case Qt::Key_MediaPause:
      return &Film::pause;
    case Qt::Key_MediaStop:
      return &Film::close;
    default:
      return nullptr;
  }
}

}  // namespace

MediaKeys::MediaKeys(QWindow& window, Films& films) : films_(films) {
  window.installEventFilter(this);
}

bool MediaKeys::eventFilter(QObject* /*receiver*/, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  const auto operation = operationOf(key.key());
  if (operation == nullptr) return false;
  Film* const film = films_.lastUsed();
  if (key.isAutoRepeat() || film == nullptr) return true;
  const RunLoop::Turn turn(RunLoop::main());
  (film->*operation)();
  return true;
}

}  // namespace desktop
