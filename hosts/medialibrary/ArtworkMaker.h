#pragma once

#include "hosts/medialibrary/IndexerProcess.h"
#include "hosts/probe/MediaProbe.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace medialibrary {

/// Pictures of videos for whoever shows them. What the thumbnail cache does not hold is made by a process of its own,
/// as all looking into files is, and found in the cache then. Any thread, several at a time.
class ArtworkMaker {
 public:
  /// `indexer` is the program that looks into files.
  explicit ArtworkMaker(std::string indexer);
  ArtworkMaker(const ArtworkMaker&) = delete;
  ArtworkMaker& operator=(const ArtworkMaker&) = delete;

  /// The picture of the video at `path`, fitted into `largestSide` x `largestSide` pixels, never enlarged, and not
  /// larger than the largest thumbnails are; none where there is none, which is looked into again at the next call.
  /// Blocks; never throws.
  std::optional<probe::Still> picture(const std::string& path, int largestSide);

 private:
  bool make(const std::string& path, int largestSide);

  std::string indexer_;
  std::atomic<std::size_t> waiting_ = 0;  // callers; the last one of them ends the process
  std::mutex mutex_;
  std::unique_ptr<IndexerProcess> process_;  // guarded by mutex_
};

}  // namespace medialibrary
