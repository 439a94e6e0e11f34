#include "hosts/qtquick/ButtonNode.h"

#include "hosts/qtquick/Mirror.h"
#include "hosts/qtquick/Pictures.h"
#include "platform/foundation/RunLoop.h"

namespace qtquick {

QString ButtonNode::titleIn(UIControlState state) const {
  const auto button = this->button();
  return button ? QString::fromStdString(button->titleForState(state)) : QString();
}

QColor ButtonNode::titleColorIn(UIControlState state) const {
  const auto button = this->button();
  return button ? colour(button->titleColorForState(state)) : QColor(Qt::white);
}

QColor ButtonNode::colorIn(UIControlState state) const {
  const auto button = this->button();
  const auto picture = button ? pictureColour(button->backgroundImageForState(state)) : std::nullopt;
  return picture.value_or(ViewNode::color());
}

bool ButtonNode::showsPress() const {
  const auto button = this->button();
  return button && button->backgroundImageForState(UIControlState::Highlighted) !=
                       button->backgroundImageForState(UIControlState::Normal);
}

QUrl ButtonNode::backgroundPictureIn(UIControlState state) const {
  const auto button = this->button();
  return button ? pictureUrl(button->backgroundImageForState(state)) : QUrl();
}

QUrl ButtonNode::picture() const {
  const auto button = this->button();
  return button ? pictureUrl(button->imageForState(UIControlState::Normal)) : QUrl();
}

QSizeF ButtonNode::pictureSize() const {
  const auto button = this->button();
  const auto image = button ? button->imageForState(UIControlState::Normal) : nullptr;
  return image ? QSizeF(image->size().width, image->size().height) : QSizeF(0, 0);
}

QString ButtonNode::accessibleName() const {
  const auto button = this->button();
  if (!button) return {};
  const auto film = mirror().filmOf(*button);
  const auto image = button->imageForState(UIControlState::Normal);
  if (film && film->playPause == button && image) {
    const char* const verb = image->name() == "pause" ? "Pause film %1" : "Play film %1";
    return QString::fromLatin1(verb).arg(film->number);
  }
  const QString name = ViewNode::accessibleName();
  return name.isEmpty() ? title() : name;
}

void ButtonNode::press() const {
  const auto button = this->button();
  if (!button) return;
  const RunLoop::Turn turn(RunLoop::main());
  button->press();
}

}  // namespace qtquick
