#pragma once

#include "hosts/desktop/Layers.h"

#include <QObject>
#include <QQuickItem>
#include <QString>
#include <QTimer>

#include <memory>

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
  bool isShown() const { return layer_ != nullptr; }

  // For the layer.
  const QString& text() const { return text_; }
  /// Takes effect once the event that led here is dealt with, since it ends the layer.
  Q_INVOKABLE void hide();

 private:
  Layers& layers_;
  QString text_;
  QTimer end_;
  std::unique_ptr<QQuickItem> layer_;
};

}  // namespace desktop
