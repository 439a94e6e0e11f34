#pragma once

#include "tests/support/EnvironmentVariable.h"

#include <QAnimationDriver>
#include <QCoreApplication>

#include <cmath>

/// The animations of who has not asked for less motion, in a time of their own, for as long as this lives: the one
/// test program asks for no motion, and the machine's time would leave out what lies between two looks.
class Motion final : public QAnimationDriver {
 public:
  Motion() { install(); }
  ~Motion() override { uninstall(); }
  Motion(const Motion&) = delete;
  Motion& operator=(const Motion&) = delete;

  void advance(double seconds) {
    // Qt begins an animation by one event that posts another.
    for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
    time_ += std::llround(seconds * 1000);
    advanceAnimation();
  }
  qint64 elapsed() const override { return time_; }

 protected:
  void start() override {
    time_ = 0;
    QAnimationDriver::start();
  }

 private:
  const EnvironmentVariable welcome_{"QUILLOP_REDUCE_MOTION", std::nullopt};
  qint64 time_ = 0;  // milliseconds since something began to move
};
