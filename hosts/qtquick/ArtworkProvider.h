#pragma once

#include "hosts/qtquick/ScreenHost.h"

#include <QCache>
#include <QImage>
#include <QMutex>
#include <QQuickAsyncImageProvider>
#include <QThreadPool>

namespace qtquick {

/// The pictures of library items: made on a few threads of its own, cropped to the size that is asked for, in device
/// pixels, with rounded corners, and kept up to a limit. A request that scrolled away before its turn costs nothing.
class ArtworkProvider final : public QQuickAsyncImageProvider {
 public:
  explicit ArtworkProvider(ArtworkLoader loader);
  /// Waits for the pictures being made.
  ~ArtworkProvider() override;

  QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;

  /// What `requestImageResponse` answers in the end. Any thread.
  QImage picture(const QString& id, QSize size);

 private:
  ArtworkLoader loader_;
  QThreadPool threads_;
  QMutex mutex_;
  QCache<QString, QImage> kept_;  // guarded by mutex_; costs are KiB
};

}  // namespace qtquick
