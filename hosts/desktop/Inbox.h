#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <vector>

namespace desktop {

/// Work for the main thread that strangers ask for. It is done in the order in which it came: the first piece as soon
/// as possible, more of it a share at a time, so that whoever asks without end leaves the main thread time for
/// everything else.
///
/// Made and destroyed on the main thread, when nobody puts anything into it any more; what is left then is not done.
class Inbox final : public QObject {
  Q_OBJECT

 public:
  using Work = std::function<void()>;
  /// What is done in one go, and the time between two of them.
  static constexpr std::size_t room = 16;
  static constexpr std::chrono::milliseconds pause{20};

  Inbox();

  /// Any thread. False, and nothing done, where there is no room left.
  bool put(Work work);

 private:
  void empty();

  QTimer rest_;
  std::mutex mutex_;
  std::vector<Work> waiting_;  // guarded by mutex_
};

}  // namespace desktop
