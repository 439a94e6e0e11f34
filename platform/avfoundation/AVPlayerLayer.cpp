#include "platform/avfoundation/AVPlayerLayer.h"

Strong<AVPlayerLayer> AVPlayerLayer::playerLayerWithPlayer(const Strong<AVPlayer>& player) {
  auto layer = make<AVPlayerLayer>(player);
  const auto content = make<AVPlayerContentLayer>(player->pictures());
  content->setBackgroundColor(UIColor::blackColor());
  layer->addSublayer(content);
  return layer;
}

void AVPlayerLayer::setFrame(CGRect frame) {
  CALayer::setFrame(frame);
  for (const auto& content : children()) content->setFrame({{0, 0}, frame.size});
}

void AVPlayerLayer::didRemoveSublayer() {
  if (children().empty()) player_ = nullptr;
}
