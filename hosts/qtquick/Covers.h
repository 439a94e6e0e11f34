#pragma once

#include <QObject>

#include <functional>
#include <vector>

class QQuickItem;

namespace qtquick {

/// What lies over everything of the app: questions and pages that are not the app's own. Main thread.
class Covers final : public QObject {
  Q_OBJECT

 public:
  /// `focusReason` is asked for the reason to give to one that gets the focus. `changed` is called whenever the first
  /// one came or the last one went.
  Covers(QQuickItem& stage, std::function<Qt::FocusReason()> focusReason, std::function<void()> changed);

  /// Lays `item` over the stage and everything that lies there already, as large as the stage, until it is destroyed.
  void add(QQuickItem& item, std::function<void()> escape);
  bool isEmpty() const { return covers_.empty(); }
  /// Escape or Back: tells the uppermost. False where there is none.
  bool escape() const;

 private:
  struct Cover {
    QQuickItem* item = nullptr;
    std::function<void()> escape;
  };

  void remove(const QObject* item);
  /// Only the uppermost takes input and has the focus.
  void noteUppermost();

  QQuickItem& stage_;
  std::function<Qt::FocusReason()> focusReason_;
  std::function<void()> changed_;
  std::vector<Cover> covers_;  // from the bottom to the top
};

}  // namespace qtquick
