#pragma once

#include "platform/host/Services.h"

#include <functional>
#include <utility>

namespace desktop {

/// The display, for which somebody else hears too whether films play. Main thread.
class PlayingDisplay final : public host::Display {
 public:
  /// `display` outlives this one; `heard` is called after it, with the same.
  PlayingDisplay(host::Display& display, std::function<void(bool isPlaying)> heard)
      : display_(display), heard_(std::move(heard)) {}

  void keepAwake(bool awake) override {
    display_.keepAwake(awake);
    heard_(awake);
  }

 private:
  host::Display& display_;
  std::function<void(bool isPlaying)> heard_;
};

}  // namespace desktop
