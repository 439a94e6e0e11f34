#pragma once

#include "hosts/gstreamer/Instant.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace gstreamer {

/// Work for one thread, in order of posting. Any thread.
class TaskQueue {
 public:
  using Task = std::function<void()>;

  void post(Task task);
  /// `task` once `time` has come. Dropped when the queue ends before.
  void postAt(Instant time, Task task);
  /// What was posted is still run, what is posted later is not.
  void end();
  /// Waits until the thread has run its last task; false when `patience` seconds were not enough.
  bool waitForEnd(double patience);

  /// Runs the tasks until the end. For the thread itself.
  void run();

 private:
  Task next();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Task> tasks_;
  std::multimap<Instant, Task> timers_;
  bool ending_ = false;
  bool ended_ = false;
};

/// A thread with a queue of its own.
class TaskThread {
 public:
  /// `name` is what system tools show; at most 15 characters.
  explicit TaskThread(const char* name);
  /// Runs what was posted and ends the thread.
  ~TaskThread();

  /// May be kept for longer than the thread; then nothing that is posted runs any more.
  const std::shared_ptr<TaskQueue>& queue() const { return queue_; }
  /// Ends the thread, within `patience` seconds. A thread that is stuck in a foreign library for longer is left to
  /// itself; its tasks must therefore own whatever they use.
  void end(double patience);

 private:
  std::shared_ptr<TaskQueue> queue_ = std::make_shared<TaskQueue>();
  std::thread thread_;
};

}  // namespace gstreamer
