#include "platform/foundation/NSTimer.h"

#include "platform/foundation/RunLoop.h"

Strong<NSTimer> NSTimer::scheduled(double interval, bool repeats, Strong<NSObject> userInfo, Block block) {
  auto timer = make<NSTimer>(interval, repeats, std::move(userInfo), std::move(block));
  RunLoop::main().schedule(timer);
  return timer;
}

void NSTimer::invalidate() {
  if (!valid_) return;
  const auto keepAlive = shared_from_this();  // the run loop may hold the last reference
  valid_ = false;
  RunLoop::main().unschedule(*this);
  block_ = nullptr;
  userInfo_ = nullptr;
}

void NSTimer::fire() {
  if (!valid_) return;
  const auto self = strongReference(this);
  const auto block = block_;  // the action may invalidate the timer
  block(self);
  if (!repeats_) invalidate();
}
