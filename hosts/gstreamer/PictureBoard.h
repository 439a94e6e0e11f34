#pragma once

#include "platform/host/MediaEngine.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

namespace gstreamer {

struct Box {
  int width = 0;  ///< device pixels
  int height = 0;
  bool empty() const { return width <= 0 || height <= 0; }
  bool operator==(const Box&) const = default;
};

/// Where a player puts its newest picture and the screen takes it from. It may outlive the player, and then stays
/// empty. Any thread.
class PictureBoard final : public host::PictureStream {
 public:
  void setBox(int width, int height) override;
  std::shared_ptr<const host::Picture> newest() const override;
  void setListener(std::function<void()> tell) override;
  Counts counts() const override;

  Box box() const;
  /// `changed` is called, on the thread of `setBox`, when there is another box; it must only pass the word on.
  void whenBoxChanges(std::function<void()> changed);
  /// Puts `picture` up, unless it was made for another box than the present one.
  void show(std::shared_ptr<const host::Picture> picture, Box madeFor);
  void countDropped();
  /// The player is gone: nothing is on the board any more, and nothing will be.
  void close();

 private:
  void tellListener();

  mutable std::mutex mutex_;
  Box box_;
  std::shared_ptr<const host::Picture> newest_;
  std::function<void()> boxChanged_;
  bool closed_ = false;
  /// Held while the listener runs, so that taking it away waits for it.
  std::mutex listenerMutex_;
  std::function<void()> listener_;
  std::atomic<std::uint64_t> shown_ = 0;
  std::atomic<std::uint64_t> dropped_ = 0;
};

}  // namespace gstreamer
