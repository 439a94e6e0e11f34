#pragma once

#include "hosts/qtquick/ViewNode.h"
#include "platform/uikit/UIButton.h"

#include <QUrl>

namespace qtquick {

/// A button. One that plays and pauses a film is named after what pressing it would do.
class ButtonNode final : public ViewNode {
  Q_OBJECT
  Q_PROPERTY(QString title READ title NOTIFY changed)
  Q_PROPERTY(QString pressedTitle READ pressedTitle NOTIFY changed)
  Q_PROPERTY(QColor titleColor READ titleColor NOTIFY changed)
  Q_PROPERTY(QColor pressedTitleColor READ pressedTitleColor NOTIFY changed)
  Q_PROPERTY(QUrl picture READ picture NOTIFY changed)
  Q_PROPERTY(QSizeF pictureSize READ pictureSize NOTIFY changed)
  Q_PROPERTY(QUrl backgroundPicture READ backgroundPicture NOTIFY changed)
  Q_PROPERTY(QUrl pressedBackgroundPicture READ pressedBackgroundPicture NOTIFY changed)

 public:
  ButtonNode(Mirror& mirror, const Strong<UIButton>& button) : ViewNode(mirror, button) {}

  QString title() const { return titleIn(UIControlState::Normal); }
  QString pressedTitle() const { return titleIn(UIControlState::Highlighted); }
  QColor titleColor() const { return titleColorIn(UIControlState::Normal); }
  QColor pressedTitleColor() const { return titleColorIn(UIControlState::Highlighted); }
  QUrl picture() const;
  /// Points.
  QSizeF pictureSize() const;
  QUrl backgroundPicture() const { return backgroundPictureIn(UIControlState::Normal); }
  QUrl pressedBackgroundPicture() const { return backgroundPictureIn(UIControlState::Highlighted); }
  QString accessibleName() const override;

  Q_INVOKABLE void press() const;

 private:
  Strong<UIButton> button() const { return viewAs<UIButton>(); }
  QString titleIn(UIControlState state) const;
  QColor titleColorIn(UIControlState state) const;
  QUrl backgroundPictureIn(UIControlState state) const;
};

}  // namespace qtquick
