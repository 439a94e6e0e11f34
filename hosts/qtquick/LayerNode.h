#pragma once

#include "hosts/qtquick/Node.h"

#include <QColor>

namespace qtquick {

class FilmItem;

/// A layer that no view draws through: a player's picture, or a coloured rectangle.
class LayerNode final : public Node {
  Q_OBJECT
  Q_PROPERTY(QColor color READ color NOTIFY changed)
  Q_PROPERTY(qreal cornerRadius READ cornerRadius NOTIFY changed)
  Q_PROPERTY(qreal borderWidth READ borderWidth NOTIFY changed)
  Q_PROPERTY(QColor borderColor READ borderColor NOTIFY changed)

 public:
  /// Whether there is anything of `layer` to be seen. A film that was closed leaves a layer without contents.
  static bool isSeen(const CALayer& layer);
  static std::unique_ptr<LayerNode> make(Mirror& mirror, const Strong<CALayer>& layer, QQuickItem& parent);
  ~LayerNode() override;

  void update() override;

  QColor color() const;
  qreal cornerRadius() const;
  qreal borderWidth() const;
  QColor borderColor() const;

 private:
  LayerNode(Mirror& mirror, const Strong<CALayer>& layer);

  Weak<CALayer> layer_;
  std::unique_ptr<FilmItem> film_;
};

}  // namespace qtquick
