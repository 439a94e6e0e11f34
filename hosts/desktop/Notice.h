#pragma once

#include "hosts/desktop/Layer.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace desktop {

/// Tells the person something over the main screen, without being in the way, for some seconds or until they hide it.
/// Main thread.
class Notice final : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString text READ text CONSTANT)

 public:
  /// `layers` outlives the notice.
  Notice(Layers& layers, QString text);

  /// Shows the notice; one that is shown already stays for as long as if it came now.
  void show();
  bool isShown() const { return layer_.isShown(); }

  // For the layer.
  const QString& text() const { return text_; }
  /// Ends the layer.
  Q_INVOKABLE void hide() { layer_.endLater(); }

 private:
  QString text_;
  QTimer end_;
  Layer layer_;
};

}  // namespace desktop
