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

}  // namespace

/// What the scene graph draws: the black, and on it the picture.
///
/// Both nodes are there from the beginning, the second one black as well until there is a picture: the software scene
/// graph places a node that is added later without regard to where the item lies, and needs its texture at once.
class FilmNode final : public QSGNode {
 public:
  explicit FilmNode(QQuickWindow& window)
      : window_(window), background_(window.createRectangleNode()), picture_(window.createImageNode()) {
    background_->setColor(Qt::black);
    picture_->setOwnsTexture(true);
    picture_->setFiltering(QSGTexture::Nearest);
    clearPicture();
    appendChildNode(background_);
    appendChildNode(picture_);
  }

  void setBackground(const QRectF& rect) {
    if (background_->rect() != rect) background_->setRect(rect);
  }
  void setPicture(const QImage& image) {
    picture_->setTexture(window_.createTextureFromImage(image, QQuickWindow::TextureIsOpaque));
  }
  void place(const QRectF& rect) {
    if (picture_->rect() != rect) picture_->setRect(rect);
  }
  void clearPicture() {
    QImage black(1, 1, QImage::Format_RGB32);
    black.fill(Qt::black);
    setPicture(black);
    place({0, 0, 1, 1});
  }

 private:
  QQuickWindow& window_;
  QSGRectangleNode* background_;
  QSGImageNode* picture_;
};

FilmItem::FilmItem(QQuickItem* parent) : QQuickItem(parent) {
  setFlag(ItemHasContents);
  if (window() != nullptr) watch(*window());
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
  const bool matters =
      change == ItemVisibleHasChanged || change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange;
  if (matters) askForBox();
}

void FilmItem::watch(QQuickWindow& window) {
  connect(&window, &QWindow::windowStateChanged, this, &FilmItem::askForBox, Qt::UniqueConnection);
}

QSize FilmItem::boxInPixels() const {
  const bool isInSight = window() != nullptr && isVisible() && !(window()->windowStates() & Qt::WindowMinimized);
  if (!isInSight) return {0, 0};
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

void FilmItem::showNewest(FilmNode& node) {
  const auto newest = pictures_ ? pictures_->newest() : nullptr;
  if (newest && newest != shown_) node.setPicture(imageOf(newest));
  if (newest) node.place(placeOf({newest->width, newest->height}));
  if (!newest && shown_) node.clearPicture();
  shown_ = newest;
}

QSGNode* FilmItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
  if (old == nullptr) shown_ = nullptr;
  if (width() <= 0 || height() <= 0) {
    delete old;
    return nullptr;
  }
  auto* const node = old == nullptr ? new FilmNode(*window()) : static_cast<FilmNode*>(old);
  node->setBackground(boundingRect());
  showNewest(*node);
  return node;
}

}  // namespace qtquick
