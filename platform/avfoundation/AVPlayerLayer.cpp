#include "platform/avfoundation/AVPlayerLayer.h"

#include <algorithm>

Strong<AVPlayerLayer> AVPlayerLayer::playerLayerWithPlayer(const Strong<AVPlayer>& player) {
  auto layer = make<AVPlayerLayer>(player);
  const auto content = make<AVPlayerContentLayer>(player->pictures());
  content->setBackgroundColor(UIColor::blackColor());
  layer->addSublayer(content);
  return layer;
}

void AVPlayerLayer::setFrame(CGRect frame) {
  CALayer::setFrame(frame);
  if (const auto layer = content()) layer->setFrame({{0, 0}, frame.size});
}

Strong<CALayer> AVPlayerLayer::content() const {
  const auto found = std::find_if(children().begin(), children().end(), [](const auto& layer) {
    return dynamic_cast<const AVPlayerContentLayer*>(layer.get()) != nullptr;
  });
  return found == children().end() ? nullptr : *found;
}

void AVPlayerLayer::didRemoveSublayer() {
  if (!content()) player_ = nullptr;
}
