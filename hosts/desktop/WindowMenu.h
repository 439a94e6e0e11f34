#pragma once

#include "hosts/desktop/Layer.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <vector>

namespace desktop {

/// The menu of the window itself: the way to the settings for whoever has no keyboard, full screen, and the end. A
/// layer of the system's own. Main thread.
class WindowMenu final : public QObject {
  Q_OBJECT
  Q_PROPERTY(QStringList titles READ titles CONSTANT)

 public:
  struct Entry {
    QString title;
    std::function<void()> chosen;  ///< called once the menu has gone
  };
  /// What the menu has when it is opened.
  using Entries = std::function<std::vector<Entry>()>;

  /// `layers` outlives the menu. Until `offer`, assistive technology is not told of the menu.
  WindowMenu(Layers& layers, Entries entries);

  /// Lets assistive technology open the menu from the main screen, where nothing is to be seen of it.
  void offer();
  /// Shows the menu. Does nothing while it is shown already.
  Q_INVOKABLE void open();
  bool isShown() const { return layer_.isShown(); }

  // For the layer.
  QStringList titles() const;
  // These end the layer.
  Q_INVOKABLE void choose(int entry);
  Q_INVOKABLE void close() { layer_.endLater(); }

 private:
  Entries makeEntries_;
  std::vector<Entry> entries_;
  Layer offer_;
  Layer layer_;
};

}  // namespace desktop
