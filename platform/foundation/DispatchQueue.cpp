#include "platform/foundation/DispatchQueue.h"

#include "platform/foundation/RunLoop.h"

void DispatchQueue::async(std::function<void()> block) const {
  RunLoop::main().enqueue(std::move(block));
}

void DispatchQueue::asyncAfter(double seconds, std::function<void()> block) const {
  RunLoop::main().enqueueAfter(seconds, std::move(block));
}
