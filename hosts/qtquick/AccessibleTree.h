#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <map>

class QAccessibleInterface;
class QQuickWindow;

namespace qtquick {

/// Tells assistive technology what came into a window's accessibility tree and what left it. Qt 6.4 tells of items
/// that are made and of those that become visible, but not of what `Accessible.ignored` lets in and takes out: the
/// controls of a film, and everything beneath a sheet. Main thread.
///
/// Looks a few times a second at most, only after frames, and only while somebody listens.
class AccessibleTree final : public QObject {
  Q_OBJECT

 public:
  /// `window` outlives the tree.
  explicit AccessibleTree(QQuickWindow& window);

 private:
  /// By the objects' addresses, which may be those of objects that are gone by now.
  struct Place {
    QPointer<QObject> object;
    bool isVisible = false;
  };
  using Places = std::map<const QObject*, Place>;

  void noteFrame();
  void tellFocus();
  void look();
  static void collect(QAccessibleInterface& from, Places& places);

  QQuickWindow& window_;
  QTimer pause_;
  Places known_;
};

}  // namespace qtquick
