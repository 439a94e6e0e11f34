#pragma once

#include "tests/support/SimulatedHost.h"

#include <QColor>
#include <QImage>
#include <QSize>

#include <memory>
#include <mutex>

/// Pictures that a test paints, of 16 by 9 unless told otherwise, made again at every new size.
class PaintedStream final : public host::PictureStream {
 public:
  explicit PaintedStream(QColor color, QSize shape = {16, 9}) : color_(color), shape_(shape) {}

  void setBox(int width, int height) override;
  std::shared_ptr<const host::Picture> newest() const override;
  void setListener(std::function<void()> tell) override;
  Counts counts() const override { return {}; }

  /// Makes a new picture; any thread. Its upper left pixel always is white.
  void paint(QColor color);
  /// Paints the picture's stripe one step further, in the same colours; any thread.
  void paintNext();

  QSize box() const;
  bool hasListener() const;
  /// How many pictures somebody still holds, the newest one's own reference not counted.
  long picturesHeld() const;

 private:
  void make();
  void tell();

  mutable std::mutex mutex_;
  mutable std::mutex listenerMutex_;
  std::function<void()> listener_;
  QColor color_;
  QSize shape_;
  QSize box_;
  int step_ = 0;
  std::shared_ptr<const host::Picture> newest_;
  std::vector<std::weak_ptr<const host::Picture>> made_;
};

/// An engine whose picture players show painted pictures: blue for the first address that is opened, orange for the
/// second one, and so on in turn.
class PaintedEngine final : public host::MediaEngine {
 public:
  void expect(const std::string& url) override { recorded_.expect(url); }
  host::MediaFacts facts(const std::string& url) override { return recorded_.facts(url); }
  std::unique_ptr<host::PicturePlayer> openPicture(const std::string& url, host::PlayerEvents events) override;
  std::unique_ptr<host::SoundPlayer> openSound(const std::string& url, host::PlayerEvents events) override {
    return recorded_.openSound(url, std::move(events));
  }
  void setScrubbing(bool isScrubbing) override { recorded_.setScrubbing(isScrubbing); }
  void commit() override { recorded_.commit(); }

  /// The pictures of all players so far, oldest first.
  const std::vector<std::shared_ptr<PaintedStream>>& streams() const { return streams_; }
  simulated::MediaEngine& recorded() { return recorded_; }

 private:
  simulated::MediaEngine recorded_;
  std::vector<std::shared_ptr<PaintedStream>> streams_;
};
