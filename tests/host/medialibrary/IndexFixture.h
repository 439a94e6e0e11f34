#pragma once

#include "hosts/medialibrary/Index.h"
#include "tests/host/probe/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The media library's number for a video without a tag that tells its kind.
constexpr std::uint64_t homeVideo = 8192;

/// A file that differs from others in its identity.
inline medialibrary::VideoFile videoFile(std::string path, ino_t inode) {
  return {std::move(path), 1'000'000, 1'700'000'000, 123'456'789, 42, inode};
}

/// What is found in a healthy film.
inline medialibrary::Finding filmFinding(std::optional<std::string> title = std::nullopt) {
  medialibrary::Finding finding;
  finding.isReadable = true;
  finding.title = std::move(title);
  finding.duration = 90.5;
  finding.soundTracks = 1;
  finding.pictureTracks = 1;
  finding.hasPicture = true;
  return finding;
}

inline medialibrary::Finding unreadableFinding(std::string reason) {
  medialibrary::Finding finding;
  finding.reason = std::move(reason);
  return finding;
}

inline std::vector<std::string> titlesOf(const medialibrary::Index& index, std::uint64_t mediaType = homeVideo) {
  const auto items = index.items(mediaType);
  std::vector<std::string> titles;
  for (std::size_t i = 0; i < items->count(); ++i) titles.push_back(items->item(i).title.value_or("(none)"));
  return titles;
}

/// An index in a folder of its own.
class IndexTest : public testing::Test {
 protected:
  std::unique_ptr<medialibrary::Index> open() const { return medialibrary::Index::open(path_, order_); }
  std::unique_ptr<medialibrary::Index> openForReading() const { return medialibrary::Index::openForReading(path_); }

  /// Adds a film and settles it; its id.
  static std::int64_t addFilm(medialibrary::Index& index, const medialibrary::VideoFile& file,
                              std::optional<std::string> title = std::nullopt) {
    const std::int64_t id = index.add(file);
    index.settle(id, file, filmFinding(std::move(title)));
    return id;
  }

  TemporaryFolder folder_;
  std::string path_ = folder_ / "data/quillop/library.db";
  medialibrary::Order order_{"it_IT"};
};
