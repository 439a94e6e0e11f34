#pragma once

#include "platform/host/MediaEngine.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace gstreamer {

/// What is known of media files. A file is looked into once for as long as it stays the same: its address, size, time
/// of change and inode. Any thread.
class FactsCache {
 public:
  /// `look` reads the file at a path, on a thread of its own, and ends by itself after `deadline` seconds.
  using Look = std::function<host::MediaFacts(const std::string& path, double deadline)>;

  FactsCache(Look look, double deadline);
  /// Waits for looks that are under way, at most one deadline long.
  ~FactsCache();

  /// Starts looking into the file unless that is under way.
  void expect(const std::string& url);
  /// Waits for the look, at most until the deadline; the file is unreadable then, and also when `url` is no `file:`
  /// URL.
  host::MediaFacts facts(const std::string& url);

 private:
  struct State;
  struct Visit;

  std::shared_ptr<Visit> visit(const std::string& path);

  std::shared_ptr<State> state_;
};

}  // namespace gstreamer
