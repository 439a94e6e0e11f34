#include "hosts/qtquick/ArtworkProvider.h"

#include <QPainter>
#include <QPainterPath>
#include <QRunnable>

#include <algorithm>
#include <atomic>

namespace qtquick {

namespace {

constexpr int threadCount = 2;
constexpr int keptKiB = 24 * 1024;
// Of the picture's shorter side.
constexpr double cornerFraction = 0.15;

class Response final : public QQuickImageResponse {
 public:
  QQuickTextureFactory* textureFactory() const override {
    return QQuickTextureFactory::textureFactoryForImage(image_);
  }
  void cancel() override { cancelled_ = true; }

  bool isCancelled() const { return cancelled_; }
  /// Any thread. Told on the response's own: Qt Quick first connects to the signal and then looks whether it has been
  /// emitted, and one that another thread emits in between is lost, so that the picture would never come.
  void answer(QImage image) {
    image_ = std::move(image);
    QMetaObject::invokeMethod(this, &Response::finished, Qt::QueuedConnection);
  }

 private:
  std::atomic<bool> cancelled_ = false;
  QImage image_;
};

/// The middle of `image`, filling `size`, with rounded corners.
QImage cropped(const QImage& image, QSize size) {
  const QSize scaled = image.size().scaled(size, Qt::KeepAspectRatioByExpanding);
  const QImage filling = image.scaled(scaled, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  QImage result(size, QImage::Format_ARGB32_Premultiplied);
  result.fill(Qt::transparent);
  QPainter painter(&result);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath outline;
  const double radius = cornerFraction * std::min(size.width(), size.height());
  outline.addRoundedRect(QRectF(QPointF(), QSizeF(size)), radius, radius);
  QBrush brush(filling);
  brush.setTransform(
      QTransform::fromTranslate((size.width() - scaled.width()) / 2.0, (size.height() - scaled.height()) / 2.0));
  painter.fillPath(outline, brush);
  return result;
}

}  // namespace

ArtworkProvider::ArtworkProvider(ArtworkLoader loader) : loader_(std::move(loader)), kept_(keptKiB) {
  threads_.setMaxThreadCount(threadCount);
}

ArtworkProvider::~ArtworkProvider() {
  threads_.clear();
  threads_.waitForDone();
}

QQuickImageResponse* ArtworkProvider::requestImageResponse(const QString& id, const QSize& requestedSize) {
  auto* const response = new Response;
  // Qt Quick deletes a response only after it has finished, so that one which is cancelled has to finish too.
  threads_.start([this, response, id, requestedSize] {
    response->answer(response->isCancelled() ? QImage() : picture(id, requestedSize));
  });
  return response;
}

QImage ArtworkProvider::picture(const QString& id, QSize size) {
  const QString key = QStringLiteral("%1x%2 ").arg(size.width()).arg(size.height()) + id;
  {
    const QMutexLocker lock(&mutex_);
    if (const QImage* const known = kept_.object(key)) return *known;
  }
  const std::string path = QByteArray::fromPercentEncoding(id.toUtf8()).toStdString();
  const QImage loaded = loader_ ? loader_(path, std::max(size.width(), size.height())) : QImage();
  if (loaded.isNull() || size.isEmpty()) return loaded;
  const QImage result = cropped(loaded, size);
  const QMutexLocker lock(&mutex_);
  kept_.insert(key, new QImage(result), static_cast<int>(std::max<qsizetype>(1, result.sizeInBytes() / 1024)));
  return result;
}

}  // namespace qtquick
