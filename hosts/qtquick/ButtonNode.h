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
  Q_PROPERTY(QColor pressedColor READ pressedColor NOTIFY changed)
  Q_PROPERTY(bool showsPress READ showsPress NOTIFY changed)
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
  QColor color() const override { return colorIn(UIControlState::Normal); }
  QColor pressedColor() const { return colorIn(UIControlState::Highlighted); }
  /// Whether it has a background of its own for the time in which it is pressed.
  bool showsPress() const;
  QUrl backgroundPicture() const { return backgroundPictureIn(UIControlState::Normal); }
  QUrl pressedBackgroundPicture() const { return backgroundPictureIn(UIControlState::Highlighted); }
  QString accessibleName() const override;
  bool takesTouches() const override { return true; }

  Q_INVOKABLE void press() const;

 private:
  Strong<UIButton> button() const { return viewAs<UIButton>(); }
  QString titleIn(UIControlState state) const;
  QColor titleColorIn(UIControlState state) const;
  /// The background's: that of a picture of a single colour, else the view's own.
  QColor colorIn(UIControlState state) const;
  QUrl backgroundPictureIn(UIControlState state) const;
};

}  // namespace qtquick
