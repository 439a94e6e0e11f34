#include "hosts/desktop/UserPresence.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

#include <utility>

namespace desktop {

namespace {

bool isTouchOfSomebody(const QEvent& event) {
  switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
    case QEvent::KeyPress:
    case QEvent::Wheel:
      return event.spontaneous();
    default:
      return false;
  }
}

}  // namespace

UserPresence::UserPresence(std::function<void()> noticed) : noticed_(std::move(noticed)) {
  qGuiApp->installEventFilter(this);
}

bool UserPresence::eventFilter(QObject* receiver, QEvent* event) {
  // The window gets each of them first; what it passes on to its items is no news.
  if (isTouchOfSomebody(*event) && receiver->isWindowType()) noticed_();
  return false;
}

}  // namespace desktop
