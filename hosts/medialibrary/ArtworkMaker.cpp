#include "hosts/medialibrary/ArtworkMaker.h"

#include "hosts/medialibrary/Artwork.h"
#include "hosts/medialibrary/Thumbnails.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

namespace medialibrary {

namespace {

using std::chrono::milliseconds;

/// Waits until the process may have something to say.
void waitFor(const IndexerProcess& process) {
  constexpr milliseconds longest{100};
  milliseconds patience = longest;
  if (const auto deadline = process.deadline()) {
    const auto left = std::chrono::ceil<milliseconds>(*deadline - std::chrono::steady_clock::now());
    patience = std::clamp(left, milliseconds::zero(), longest);
  }
  pollfd descriptor{process.descriptor(), POLLIN, 0};
  ::poll(&descriptor, 1, static_cast<int>(patience.count()));
}

}  // namespace

ArtworkMaker::ArtworkMaker(std::string indexer) : indexer_(std::move(indexer)) {}

std::optional<probe::Still> ArtworkMaker::picture(const std::string& path, int sideAskedFor) try {
  const int largestSide = std::min(sideAskedFor, sideOf(ThumbnailSize::ExtraExtraLarge));
  if (auto still = keptArtwork(path, largestSide)) return still;
  ++waiting_;
  const std::lock_guard lock(mutex_);
  const bool isMade = make(path, largestSide);
  if (--waiting_ == 0 || !isMade) process_ = nullptr;
  return isMade ? keptArtwork(path, largestSide) : std::nullopt;
} catch (const std::exception&) {
  return std::nullopt;  // out of memory
}

/// Where it fails, the process is not used any more: it may still have something to say about this video.
bool ArtworkMaker::make(const std::string& path, int largestSide) try {
  if (!process_) {
    IndexerOptions options;
    options.program = indexer_;
    options.isUrgent = true;
    process_ = IndexerProcess::make(std::move(options));
  }
  process_->add({0, path, largestSide});
  for (;;) {
    const auto answers = process_->answers();
    if (!answers.empty()) return process_->canRun() && answers.front().finding.isReadable;
    if (process_->descriptor() < 0) return false;  // none can be started at the moment
    waitFor(*process_);
  }
} catch (const std::exception&) {
  return false;  // out of memory
}

}  // namespace medialibrary
