#pragma once

#include "hosts/desktop/Layers.h"

#include <QObject>
#include <QQuickItem>
#include <QString>

#include <functional>
#include <memory>

namespace desktop {

/// One thing that the system itself shows over the app, now and then. Main thread.
class Layer final {
 public:
  /// `layers` outlives the layer.
  explicit Layer(Layers& layers) : layers_(layers) {}

  /// Shows the component `name` over the app, or over its main screen only, as `Layers` has it. In the place of what
  /// is shown already.
  void cover(const QString& name, QObject& node, std::function<void()> escape);
  void decorate(const QString& name, QObject& node);
  bool isShown() const { return item_ != nullptr; }

  void end() { item_ = nullptr; }
  /// Ends what is shown and calls `then`, once the event that led here is dealt with: it may be one of the layer's
  /// own. Neither happens where what is shown has gone by then: of two presses the first one counts.
  void endLater(std::function<void()> then = {});

 private:
  Layers& layers_;
  std::unique_ptr<QQuickItem> item_;
  QObject lifetime_;  ///< what is to happen later does not happen without it
};

}  // namespace desktop
