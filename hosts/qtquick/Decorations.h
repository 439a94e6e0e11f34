#pragma once

#include <QObject>

#include <vector>

class QQuickItem;

namespace qtquick {

/// What lies over the main screen without covering it, and under every other screen. Main thread.
class Decorations final : public QObject {
  Q_OBJECT

 public:
  explicit Decorations(QQuickItem& stage) : stage_(stage) {}

  /// Lays `item` over what lies there already, as large as the stage, until it is destroyed.
  void add(QQuickItem& item);
  /// Whether the main screen can be used, and what decorates it with it.
  void setInReach(bool inReach);

 private:
  QQuickItem& stage_;
  bool inReach_ = true;
  std::vector<QQuickItem*> items_;
};

}  // namespace qtquick
