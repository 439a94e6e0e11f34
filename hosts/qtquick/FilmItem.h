#pragma once

#include "platform/host/MediaEngine.h"

#include <QQuickItem>

#include <atomic>
#include <memory>

class QQuickWindow;

namespace qtquick {

class FilmNode;

/// A player's pictures: opaque black all over, the newest picture in the middle, one of its pixels on one of the
/// screen's. While nobody can see it, it asks for no pictures.
class FilmItem final : public QQuickItem {
  Q_OBJECT

 public:
  explicit FilmItem(QQuickItem* parent);
  /// Lets go of the pictures and hears of none any more.
  ~FilmItem() override;

  void setPictures(const std::shared_ptr<host::PictureStream>& pictures);

 protected:
  QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
  void geometryChange(const QRectF& now, const QRectF& before) override;
  void itemChange(ItemChange change, const ItemChangeData& data) override;

 private:
  void listen();
  void pictureArrived();
  void watch(QQuickWindow& window);
  void askForBox();
  QSize boxInPixels() const;
  void showNewest(FilmNode& node);
  QRectF placeOf(QSize picture) const;

  std::shared_ptr<host::PictureStream> pictures_;
  std::shared_ptr<const host::Picture> shown_;
  std::atomic<bool> isTold_ = false;  // of a picture that was not drawn yet
  QSize box_;
};

}  // namespace qtquick
