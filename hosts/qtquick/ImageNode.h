#pragma once

#include "hosts/qtquick/ViewNode.h"
#include "platform/uikit/UIImageView.h"

#include <QUrl>

namespace qtquick {

/// A view that shows a picture.
class ImageNode final : public ViewNode {
  Q_OBJECT
  Q_PROPERTY(QUrl picture READ picture NOTIFY changed)
  Q_PROPERTY(int fillMode READ fillMode NOTIFY changed)
  Q_PROPERTY(bool inSight READ isInSight NOTIFY changed)

 public:
  ImageNode(Mirror& mirror, const Strong<UIImageView>& view) : ViewNode(mirror, view) {}

  /// That of a picture of a single colour lies over the view's own.
  QColor color() const override;
  QUrl picture() const;
  /// An `Image.fillMode` of QML.
  int fillMode() const;
  /// Its own, else that of its picture.
  QString accessibleName() const override;
  /// Whether the strip that it is in, if any, shows some of it.
  bool isInSight() const;

 private:
  Strong<UIImageView> imageView() const { return viewAs<UIImageView>(); }
};

}  // namespace qtquick
