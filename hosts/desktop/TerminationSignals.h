#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace desktop {

/// Turns SIGTERM, SIGINT and SIGHUP, as far as they are not ignored, into a call on the main thread. At most one
/// object at a time.
class TerminationSignals final {
 public:
  explicit TerminationSignals(std::function<void()> end);
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

 private:
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace desktop
