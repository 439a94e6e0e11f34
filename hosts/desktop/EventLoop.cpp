#include "hosts/desktop/EventLoop.h"

#include "platform/foundation/RunLoop.h"

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {
constexpr double millisecond = 0.001;
constexpr double longestWait = 24.0 * 3600;  // in seconds; the loop asks again whenever it is woken
}  // namespace

EventLoop::EventLoop() {
  clock_.start();
  wakeUp_.setSingleShot(true);
  wakeUp_.setTimerType(Qt::PreciseTimer);
  connect(&wakeUp_, &QTimer::timeout, this, [] { RunLoop::main().turn(); });
}

double EventLoop::now() const {
  return static_cast<double>(clock_.nsecsElapsed()) * 1e-9;
}

void EventLoop::wakeAt(double time) {
  const double wait = std::clamp(time - now(), 0.0, longestWait);
  wakeUp_.start(static_cast<int>(std::ceil(wait / millisecond)));
}

void EventLoop::post(std::function<void()> work) {
  QMetaObject::invokeMethod(
      this,
      [work = std::move(work)] {
        const RunLoop::Turn turn(RunLoop::main());
        work();
      },
      Qt::QueuedConnection);
}

}  // namespace desktop
