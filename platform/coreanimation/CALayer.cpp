#include "platform/coreanimation/CALayer.h"

#include "platform/uikit/UIView.h"

#include <algorithm>

CALayer::~CALayer() = default;

void CALayer::changed() {
  if (view_ != nullptr) {
    view_->changed();
  } else if (const auto above = superlayer_.lock()) {
    above->changed();
  }
}

void CALayer::setFrame(CGRect frame) {
  if (frame_ == frame) return;
  frame_ = frame;
  changed();
}

std::optional<std::vector<Strong<CALayer>>> CALayer::sublayers() const {
  if (sublayers_.empty()) return std::nullopt;
  return sublayers_;
}

void CALayer::addSublayer(const Strong<CALayer>& layer) {
  insertSublayer_atIndex(layer, sublayers_.size());
}

void CALayer::insertSublayer_atIndex(const Strong<CALayer>& layer, std::size_t index) {
  const auto keepAlive = layer;
  layer->removeFromSuperlayer();
  index = std::min(index, sublayers_.size());
  sublayers_.insert(sublayers_.begin() + static_cast<std::ptrdiff_t>(index), layer);
  layer->superlayer_ = weakReference(this);
  changed();
}

void CALayer::removeFromSuperlayer() {
  const auto above = superlayer_.lock();
  if (!above) return;
  const auto keepAlive = shared_from_this();
  std::erase_if(above->sublayers_, [this](const auto& layer) { return layer.get() == this; });
  superlayer_.reset();
  above->didRemoveSublayer();
  above->changed();
}

void CALayer::setCornerRadius(double radius) {
  cornerRadius_ = radius;
  changed();
}

void CALayer::setBorderWidth(double width) {
  borderWidth_ = width;
  changed();
}

void CALayer::setBorderColor(UIColor color) {
  borderColor_ = color;
  changed();
}

void CALayer::setBackgroundColor(UIColor color) {
  if (backgroundColor_ == color) return;
  backgroundColor_ = color;
  changed();
}
