#include "hosts/qtquick/LabelNode.h"

#include "hosts/qtquick/Contrast.h"
#include "hosts/qtquick/Mirror.h"
#include "hosts/qtquick/Pictures.h"

#include <cmath>

namespace qtquick {

QString LabelNode::text() const {
  const auto label = this->label();
  return label ? QString::fromStdString(label->text().value_or(std::string())) : QString();
}

QColor LabelNode::textColor() const {
  const auto label = this->label();
  return label ? mirror().contrast().ink(colour(label->textColor())) : QColor(Qt::white);
}

int LabelNode::fontSize() const {
  const auto label = this->label();
  return label ? static_cast<int>(std::lround(label->fontSize())) : 17;
}

bool LabelNode::isBold() const {
  const auto label = this->label();
  return label && label->isBold();
}

int LabelNode::alignment() const {
  const auto label = this->label();
  switch (label ? label->textAlignment() : NSTextAlignment::Left) {
    case NSTextAlignment::Center:
      return Qt::AlignHCenter;
    case NSTextAlignment::Right:
      return Qt::AlignRight;
    case NSTextAlignment::Left:
      break;
  }
  return Qt::AlignLeft;
}

}  // namespace qtquick
