#include "hosts/medialibrary/indexer/FileLook.h"

#include "hosts/medialibrary/Thumbnails.h"
#include "hosts/probe/MediaProbe.h"

#include <algorithm>
#include <new>
#include <optional>

namespace medialibrary {

namespace {

/// Whoever started the indexer decides how long is too long, and stops it.
constexpr double longestSeconds = 86'400.0;

int countOf(const probe::FileFacts& facts, host::TrackKind kind) {
  return static_cast<int>(std::count_if(facts.media.tracks.begin(), facts.media.tracks.end(),
                                        [kind](const host::TrackFacts& track) { return track.kind == kind; }));
}

Finding findingOf(const probe::FileFacts& facts) {
  if (facts.reason == probe::outOfMemory) throw std::bad_alloc();
  Finding finding;
  finding.isReadable = facts.media.readable;
  if (!finding.isReadable) finding.reason = facts.reason;
  finding.mediaType = facts.mediaType;
  finding.title = facts.title;
  finding.duration = facts.media.duration;
  finding.rotation = facts.rotation;
  finding.soundTracks = countOf(facts, host::TrackKind::Audio);
  finding.pictureTracks = countOf(facts, host::TrackKind::Video);
  finding.hasPicture = facts.hasPicture;
  finding.isProtected = facts.media.hasProtectedContent;
  return finding;
}

/// The cache that lacks the picture that `task` wants, if one is lacking.
std::optional<ThumbnailCache> cacheInWant(const IndexerTask& task) {
  if (task.thumbnailSide < 1 || !ThumbnailCache::sizeFor(task.thumbnailSide)) return std::nullopt;
  auto cache = ThumbnailCache::forFile(task.path);
  if (!cache || cache->find(task.thumbnailSide)) return std::nullopt;
  return cache;
}

}  // namespace

Finding lookInto(const IndexerTask& task) {
  // Its state is noted before the file is read: if it changes meanwhile, the picture is out of date at once.
  const auto cache = cacheInWant(task);
  if (!cache) return findingOf(probe::look(task.path, longestSeconds));
  const ThumbnailSize size = *ThumbnailCache::sizeFor(task.thumbnailSide);
  const auto found = probe::lookWithStill(task.path, sideOf(size), longestSeconds);
  if (found.still) cache->store(size, *found.still);
  return findingOf(found.facts);
}

}  // namespace medialibrary
