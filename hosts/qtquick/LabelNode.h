#pragma once

#include "hosts/qtquick/ViewNode.h"
#include "platform/uikit/UILabel.h"

namespace qtquick {

/// A text.
class LabelNode final : public ViewNode {
  Q_OBJECT
  Q_PROPERTY(QString text READ text NOTIFY changed)
  Q_PROPERTY(QColor textColor READ textColor NOTIFY changed)
  Q_PROPERTY(int fontSize READ fontSize NOTIFY changed)
  Q_PROPERTY(bool bold READ isBold NOTIFY changed)
  Q_PROPERTY(int alignment READ alignment NOTIFY changed)

 public:
  LabelNode(Mirror& mirror, const Strong<UILabel>& label) : ViewNode(mirror, label) {}

  QString text() const;
  QColor textColor() const;
  int fontSize() const;
  bool isBold() const;
  /// A `Qt::AlignmentFlag`.
  int alignment() const;

 private:
  Strong<UILabel> label() const { return viewAs<UILabel>(); }
};

}  // namespace qtquick
