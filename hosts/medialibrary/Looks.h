#pragma once

#include "hosts/medialibrary/VideoFiles.h"
#include "hosts/probe/MediaProbe.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace medialibrary {

/// Looks into files on threads of its own and remembers what was found.
class Looks {
 public:
  using Facts = std::shared_ptr<const probe::FileFacts>;

  /// Begins with the files that `firstFiles` lists; it is called on another thread.
  explicit Looks(std::function<std::vector<VideoFile>()> firstFiles);
  /// Waits for the looks under way; what still waits for its turn is dropped.
  ~Looks();
  Looks(const Looks&) = delete;
  Looks& operator=(const Looks&) = delete;

  /// What is known of each of `files`, in their order, after waiting for as much as can be found out within
  /// `patience` seconds; none where that was not enough. All other files are forgotten. One thread at a time.
  std::vector<Facts> facts(const std::vector<VideoFile>& files, double patience);

 private:
  void run();
  void expect(const std::vector<VideoFile>& files);
  bool areKnown(const std::vector<VideoFile>& files) const;
  void keepOnly(const std::vector<VideoFile>& files);

  std::mutex mutex_;
  std::condition_variable somethingWaits_;
  std::condition_variable somethingIsKnown_;
  std::map<VideoFile, Facts> known_;  // none: waiting or being looked into
  std::deque<VideoFile> waiting_;
  bool ends_ = false;
  std::vector<std::thread> threads_;  // last: they use all the others
};

}  // namespace medialibrary
