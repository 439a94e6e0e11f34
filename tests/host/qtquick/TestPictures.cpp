#include "tests/host/qtquick/TestPictures.h"

#include <QPainter>

#include <algorithm>

void PaintedStream::setBox(int width, int height) {
  {
    const std::scoped_lock lock(mutex_);
    box_ = {width, height};
    make();
  }
  tell();
}

std::shared_ptr<const host::Picture> PaintedStream::newest() const {
  const std::scoped_lock lock(mutex_);
  return newest_;
}

void PaintedStream::setListener(std::function<void()> tell) {
  const std::scoped_lock lock(listenerMutex_);
  listener_ = std::move(tell);
}

void PaintedStream::paint(QColor color) {
  {
    const std::scoped_lock lock(mutex_);
    color_ = color;
    make();
  }
  tell();
}

void PaintedStream::paintNext() {
  {
    const std::scoped_lock lock(mutex_);
    ++step_;
    make();
  }
  tell();
}

QSize PaintedStream::box() const {
  const std::scoped_lock lock(mutex_);
  return box_;
}

bool PaintedStream::hasListener() const {
  const std::scoped_lock lock(listenerMutex_);
  return listener_ != nullptr;
}

long PaintedStream::picturesHeld() const {
  const std::scoped_lock lock(mutex_);
  long held = 0;
  for (const auto& picture : made_) held += picture.use_count();
  return newest_ ? held - 1 : held;
}

void PaintedStream::tell() {
  const std::scoped_lock lock(listenerMutex_);
  if (listener_) listener_();
}

void PaintedStream::make() {
  newest_ = nullptr;
  if (box_.isEmpty()) return;
  const QSize size = shape_.scaled(box_, Qt::KeepAspectRatio);
  auto image = std::make_shared<QImage>(size, QImage::Format_RGB32);
  image->fill(color_);
  QPainter painter(image.get());
  painter.fillRect(0, step_ * 3 % size.height(), size.width(), 2, color_.lighter());
  painter.end();
  image->setPixelColor(0, 0, Qt::white);
  auto picture = std::make_shared<host::Picture>();
  *picture = {size.width(), size.height(), static_cast<int>(image->bytesPerLine()), image->constBits(), image};
  newest_ = picture;
  std::erase_if(made_, [](const auto& each) { return each.expired(); });
  made_.push_back(newest_);
}

namespace {

class PaintedPlayer final : public host::PicturePlayer {
 public:
  PaintedPlayer(std::unique_ptr<host::PicturePlayer> recorded, std::shared_ptr<PaintedStream> stream)
      : recorded_(std::move(recorded)), stream_(std::move(stream)) {}

  void setSilenced(const std::vector<int>& trackIdentifiers) override { recorded_->setSilenced(trackIdentifiers); }
  void play() override { recorded_->play(); }
  void pause() override { recorded_->pause(); }
  void seek(double seconds) override { recorded_->seek(seconds); }
  double position() const override { return recorded_->position(); }
  std::shared_ptr<host::PictureStream> pictures() override { return stream_; }

 private:
  std::unique_ptr<host::PicturePlayer> recorded_;
  std::shared_ptr<PaintedStream> stream_;
};

}  // namespace

std::unique_ptr<host::PicturePlayer> PaintedEngine::openPicture(const std::string& url, host::PlayerEvents events) {
  const bool isEven = streams_.size() % 2 == 0;
  streams_.push_back(std::make_shared<PaintedStream>(isEven ? QColor(0, 60, 120) : QColor(120, 60, 0)));
  return std::make_unique<PaintedPlayer>(recorded_.openPicture(url, std::move(events)), streams_.back());
}
