#pragma once

#include "platform/uikit/UIAlertController.h"

#include <QObject>
#include <QString>
#include <QVariantList>

namespace qtquick {

/// An alert, as QML draws it. Alerts do not change once they are shown.
class AlertNode final : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(QString message READ message CONSTANT)
  Q_PROPERTY(QStringList actions READ actions CONSTANT)
  Q_PROPERTY(int preferred READ preferred CONSTANT)

 public:
  explicit AlertNode(const Strong<UIAlertController>& alert) : alert_(alert) {}

  QString title() const;
  QString message() const;
  /// The buttons' titles, in order.
  QStringList actions() const;
  /// The place of the button that has the focus at first: the one that changes nothing.
  int preferred() const;

  Q_INVOKABLE void press(int action) const;
  Q_INVOKABLE void cancel() const;

 private:
  Weak<UIAlertController> alert_;
};

}  // namespace qtquick
