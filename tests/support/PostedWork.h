#pragma once

#include "platform/host/MainLoop.h"

#include <deque>
#include <functional>
#include <mutex>
#include <utility>

/// A main loop that runs what was posted when it is told to.
class PostedWork final : public host::MainLoop {
 public:
  double now() const override { return 0.0; }
  void wakeAt(double) override {}
  void post(std::function<void()> work) override {
    const std::lock_guard lock(mutex_);
    work_.push_back(std::move(work));
  }
  /// Runs what was posted until now.
  void turn() {
    std::deque<std::function<void()>> work;
    {
      const std::lock_guard lock(mutex_);
      work.swap(work_);
    }
    for (auto& each : work) each();
  }

 private:
  std::mutex mutex_;
  std::deque<std::function<void()>> work_;
};
