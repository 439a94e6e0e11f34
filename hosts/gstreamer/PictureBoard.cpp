#include "hosts/gstreamer/PictureBoard.h"

#include <algorithm>

namespace gstreamer {

void PictureBoard::setBox(int width, int height) {
  std::function<void()> changed;
  std::shared_ptr<const host::Picture> taken;
  {
    const std::lock_guard lock(mutex_);
    Box box{std::max(0, width), std::max(0, height)};
    if (box.empty()) box = {};
    if (closed_ || box == box_) return;
    box_ = box;
    if (box.empty()) taken.swap(newest_);
    changed = boxChanged_;
  }
  if (taken) tellListener();
  if (changed) changed();
}

std::shared_ptr<const host::Picture> PictureBoard::newest() const {
  const std::lock_guard lock(mutex_);
  return newest_;
}

void PictureBoard::setListener(std::function<void()> tell) {
  const std::lock_guard lock(listenerMutex_);
  listener_ = std::move(tell);
}

host::PictureStream::Counts PictureBoard::counts() const {
  return {shown_, dropped_};
}

Box PictureBoard::box() const {
  const std::lock_guard lock(mutex_);
  return box_;
}

void PictureBoard::whenBoxChanges(std::function<void()> changed) {
  const std::lock_guard lock(mutex_);
  if (!closed_) boxChanged_ = std::move(changed);
}

void PictureBoard::show(std::shared_ptr<const host::Picture> picture, Box madeFor) {
  {
    const std::lock_guard lock(mutex_);
    if (closed_ || madeFor != box_) return;
    newest_.swap(picture);
  }
  ++shown_;
  tellListener();
}

void PictureBoard::countDropped() {
  ++dropped_;
}

void PictureBoard::close() {
  std::shared_ptr<const host::Picture> taken;
  std::function<void()> changed;
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    taken.swap(newest_);
    changed.swap(boxChanged_);
  }
  if (taken) tellListener();
}

void PictureBoard::tellListener() {
  const std::lock_guard lock(listenerMutex_);
  if (listener_) listener_();
}

}  // namespace gstreamer
