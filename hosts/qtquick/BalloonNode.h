#pragma once

#include "hosts/qtquick/ViewNode.h"
#include "platform/poptip/PopTip.h"

#include <QRectF>

namespace qtquick {

/// A hint balloon. Its item lies over the whole of the view that the balloon hangs in.
class BalloonNode final : public ViewNode {
  Q_OBJECT
  Q_PROPERTY(QString text READ text NOTIFY changed)
  Q_PROPERTY(int direction READ direction NOTIFY changed)
  Q_PROPERTY(double maximumWidth READ maximumWidth NOTIFY changed)
  Q_PROPERTY(QRectF source READ source NOTIFY changed)

 public:
  BalloonNode(Mirror& mirror, const Strong<PopTip>& balloon) : ViewNode(mirror, balloon) {}

  QString text() const;
  /// The number of a `PopTipDirection`.
  int direction() const;
  double maximumWidth() const;
  /// What the balloon points at.
  QRectF source() const;

 private:
  Strong<PopTip> balloon() const { return viewAs<PopTip>(); }
};

}  // namespace qtquick
