#include "hosts/qtquick/LayerNode.h"

#include "hosts/qtquick/FilmItem.h"
#include "hosts/qtquick/Pictures.h"
#include "platform/avfoundation/AVPlayerLayer.h"

namespace qtquick {

namespace {

/// The pictures to show; none for a layer that never had any, or whose content was removed.
std::shared_ptr<host::PictureStream> picturesOf(const CALayer& layer) {
  if (dynamic_cast<const AVPlayerLayer*>(&layer) == nullptr) return nullptr;
  const auto sublayers = layer.sublayers();
  for (const auto& sublayer : *sublayers) {
    const auto content = std::dynamic_pointer_cast<AVPlayerContentLayer>(sublayer);
    if (content) return content->pictures();
  }
  return nullptr;
}

}  // namespace

bool LayerNode::isSeen(const CALayer& layer) {
  return layer.backgroundColor().alpha > 0 || layer.borderWidth() > 0 || picturesOf(layer);
}

std::unique_ptr<LayerNode> LayerNode::make(Mirror& mirror, const Strong<CALayer>& layer, QQuickItem& parent) {
  std::unique_ptr<LayerNode> node(new LayerNode(mirror, layer));
  node->makeItem(QStringLiteral("Layer"), parent, layer->frame());
  node->update();
  return node;
}

LayerNode::LayerNode(Mirror& mirror, const Strong<CALayer>& layer) : Node(mirror), layer_(layer) {}

LayerNode::~LayerNode() = default;

void LayerNode::update() {
  const auto layer = layer_.lock();
  if (!layer) return;
  place(layer->frame());
  emit changed();
  const auto pictures = picturesOf(*layer);
  if (!pictures) {
    film_ = nullptr;
    return;
  }
  if (!film_) film_ = std::make_unique<FilmItem>(&item());
  film_->setPictures(pictures);
  film_->setSize(item().size());
}

QColor LayerNode::color() const {
  const auto layer = layer_.lock();
  return layer ? colour(layer->backgroundColor()) : QColor(Qt::transparent);
}

qreal LayerNode::cornerRadius() const {
  const auto layer = layer_.lock();
  return layer ? layer->cornerRadius() : 0;
}

qreal LayerNode::borderWidth() const {
  const auto layer = layer_.lock();
  return layer ? layer->borderWidth() : 0;
}

QColor LayerNode::borderColor() const {
  const auto layer = layer_.lock();
  return layer ? colour(layer->borderColor()) : QColor(Qt::transparent);
}

}  // namespace qtquick
