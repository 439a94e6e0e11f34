#include "hosts/qtquick/FilmItem.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>

#include <cmath>

namespace qtquick {

namespace {

/// An image on the picture's own memory, which lives as long as any copy of the image.
QImage imageOf(const std::shared_ptr<const host::Picture>& picture) {
  auto owner = std::make_unique<std::shared_ptr<const host::Picture>>(picture);
  const auto release = [](void* kept) { delete static_cast<std::shared_ptr<const host::Picture>*>(kept); };
  return {picture->pixels,      picture->width, picture->height, picture->stride,
          QImage::Format_RGB32, release,        owner.release()};
}

/// What the scene graph draws: the black, and on it the picture once there is one.
class FilmNode final : public QSGNode {
 public:
  explicit FilmNode(QSGRectangleNode* background) : background_(background) {
    background_->setColor(Qt::black);
    appendChildNode(background_);
  }

  QSGRectangleNode& background() { return *background_; }
  QSGImageNode* picture() const { return picture_; }
  void setPicture(QSGImageNode* picture) {
    delete picture_;
    picture_ = picture;
    if (picture_ != nullptr) appendChildNode(picture_);
  }

 private:
  QSGRectangleNode* background_;
  QSGImageNode* picture_ = nullptr;
};

}  // namespace

FilmItem::FilmItem(QQuickItem* parent) : QQuickItem(parent) {
  setFlag(ItemHasContents);
}

FilmItem::~FilmItem() {
  setPictures(nullptr);
}

void FilmItem::setPictures(const std::shared_ptr<host::PictureStream>& pictures) {
  if (pictures == pictures_) return;
  if (pictures_) {
    pictures_->setListener({});
    pictures_->setBox(0, 0);
  }
  pictures_ = pictures;
  box_ = {};
  if (!pictures_) return;
  listen();
  askForBox();
  update();
}

void FilmItem::listen() {
  pictures_->setListener([this] {
    if (isTold_.exchange(true)) return;
    QMetaObject::invokeMethod(this, &FilmItem::pictureArrived, Qt::QueuedConnection);
  });
}

void FilmItem::pictureArrived() {
  isTold_ = false;
  update();
}

void FilmItem::geometryChange(const QRectF& now, const QRectF& before) {
  QQuickItem::geometryChange(now, before);
  askForBox();
  update();
}

void FilmItem::itemChange(ItemChange change, const ItemChangeData& data) {
  QQuickItem::itemChange(change, data);
  const bool matters = change == ItemVisibleHasChanged || change == ItemDevicePixelRatioHasChanged ||
                       change == ItemSceneChange;
  if (matters) askForBox();
}

QSize FilmItem::boxInPixels() const {
  if (window() == nullptr || !isVisible()) return {0, 0};
  const double ratio = window()->effectiveDevicePixelRatio();
  return {static_cast<int>(std::lround(width() * ratio)), static_cast<int>(std::lround(height() * ratio))};
}

void FilmItem::askForBox() {
  const QSize box = boxInPixels();
  if (!pictures_ || box == box_) return;
  box_ = box;
  pictures_->setBox(box.width(), box.height());
}

QRectF FilmItem::placeOf(QSize picture) const {
  const double ratio = window()->effectiveDevicePixelRatio();
  const bool fits = picture.width() <= box_.width() && picture.height() <= box_.height() &&
                    (picture.width() == box_.width() || picture.height() == box_.height());
  // Made for another size, on its way to be made again: stretched meanwhile.
  const QSize size = fits ? picture : picture.scaled(box_, Qt::KeepAspectRatio);
  const QPointF corner = mapToScene({0, 0}) * ratio;
  const double left = std::floor(corner.x() + (box_.width() - size.width()) / 2.0 + 0.5);
  const double top = std::floor(corner.y() + (box_.height() - size.height()) / 2.0 + 0.5);
  return {(left - corner.x()) / ratio, (top - corner.y()) / ratio, size.width() / ratio, size.height() / ratio};
}

void FilmItem::showPicture(QSGImageNode& node, const std::shared_ptr<const host::Picture>& picture) const {
  node.setTexture(window()->createTextureFromImage(imageOf(picture), QQuickWindow::TextureIsOpaque));
}

QSGNode* FilmItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
  if (width() <= 0 || height() <= 0) {
    delete old;
    shown_ = nullptr;
    return nullptr;
  }
  auto* node = static_cast<FilmNode*>(old);
  if (node == nullptr) {
    node = new FilmNode(window()->createRectangleNode());
    shown_ = nullptr;
  }
  if (node->background().rect() != boundingRect()) node->background().setRect(boundingRect());
  const auto newest = pictures_ ? pictures_->newest() : nullptr;
  if (!newest) {
    node->setPicture(nullptr);
    shown_ = nullptr;
    return node;
  }
  if (node->picture() == nullptr) {
    // The software scene graph looks at an image node as soon as it is in the tree: not before it has a texture.
    QSGImageNode* const image = window()->createImageNode();
    image->setOwnsTexture(true);
    image->setFiltering(QSGTexture::Nearest);
    showPicture(*image, newest);
    node->setPicture(image);
  } else if (newest != shown_) {
    showPicture(*node->picture(), newest);
  }
  shown_ = newest;
  const QRectF place = placeOf({newest->width, newest->height});
  if (node->picture()->rect() != place) node->picture()->setRect(place);
  return node;
}

}  // namespace qtquick
