#include "hosts/gstreamer/TaskThread.h"

#include <pthread.h>

namespace gstreamer {

void TaskQueue::post(Task task) {
  const std::lock_guard lock(mutex_);
  if (ending_) return;
  tasks_.push_back(std::move(task));
  changed_.notify_all();
}

void TaskQueue::postAt(Instant time, Task task) {
  const std::lock_guard lock(mutex_);
  if (ending_) return;
  timers_.emplace(time, std::move(task));
  changed_.notify_all();
}

void TaskQueue::end() {
  const std::lock_guard lock(mutex_);
  ending_ = true;
  changed_.notify_all();
}

bool TaskQueue::waitForEnd(double patience) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, std::chrono::nanoseconds(nanoseconds(patience)), [this] { return ended_; });
}

TaskQueue::Task TaskQueue::next() {
  std::unique_lock lock(mutex_);
  for (;;) {
    if (!tasks_.empty()) {
      Task task = std::move(tasks_.front());
      tasks_.pop_front();
      return task;
    }
    if (ending_) return {};
    if (timers_.empty()) {
      changed_.wait(lock);
    } else if (const Instant wait = timers_.begin()->first - now(); wait > 0) {
      changed_.wait_for(lock, std::chrono::nanoseconds(wait));
    } else {
      Task task = std::move(timers_.begin()->second);
      timers_.erase(timers_.begin());
      return task;
    }
  }
}

void TaskQueue::run() {
  while (Task task = next()) task();
  std::multimap<Instant, Task> neverRun;
  const std::lock_guard lock(mutex_);
  neverRun.swap(timers_);
  ended_ = true;
  changed_.notify_all();
}

TaskThread::TaskThread(const char* name) : thread_([queue = queue_] { queue->run(); }) {
  pthread_setname_np(thread_.native_handle(), name);
}

TaskThread::~TaskThread() {
  queue_->end();
  if (thread_.joinable()) thread_.join();
}

void TaskThread::end(double patience) {
  queue_->end();
  if (!thread_.joinable()) return;
  if (queue_->waitForEnd(patience)) {
    thread_.join();
  } else {
    thread_.detach();
  }
}

}  // namespace gstreamer
