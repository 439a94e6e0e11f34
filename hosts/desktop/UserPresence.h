#pragma once

#include <QObject>

#include <functional>

namespace desktop {

/// Notices that somebody touches, clicks or types in the app, who therefore has it in sight whatever the desktop said
/// before: some screen lockers lock when the session is told to and never tell when they are opened again.
class UserPresence final : public QObject {
  Q_OBJECT

 public:
  /// `noticed` is called on the main thread, outside any turn, before the app gets to know of the touch.
  explicit UserPresence(std::function<void()> noticed);

  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  std::function<void()> noticed_;
};

}  // namespace desktop
