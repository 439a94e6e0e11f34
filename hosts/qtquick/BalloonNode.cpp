#include "hosts/qtquick/BalloonNode.h"

namespace qtquick {

QString BalloonNode::text() const {
  const auto balloon = this->balloon();
  return balloon ? QString::fromStdString(balloon->text()) : QString();
}

int BalloonNode::direction() const {
  const auto balloon = this->balloon();
  return static_cast<int>(balloon ? balloon->direction() : PopTipDirection::None);
}

double BalloonNode::maximumWidth() const {
  const auto balloon = this->balloon();
  return balloon ? balloon->maxWidth() : 0;
}

QRectF BalloonNode::source() const {
  const auto balloon = this->balloon();
  if (!balloon) return {};
  const CGRect rect = balloon->sourceRect();
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

}  // namespace qtquick
