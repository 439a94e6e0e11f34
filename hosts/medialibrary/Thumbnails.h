#pragma once

#include "hosts/probe/MediaProbe.h"

#include <cstdint>
#include <optional>
#include <string>

namespace medialibrary {

/// The sizes that the Thumbnail Managing Standard knows (freedesktop.org, "Thumbnail Directory").
enum class ThumbnailSize { Normal, Large, ExtraLarge, ExtraExtraLarge };

/// The largest width and height of a thumbnail of this size, in pixels.
int sideOf(ThumbnailSize size);

/// Makes sure that there is a folder for the user's thumbnails, and names it. Where it cannot be made, nothing will
/// be stored.
std::string makeThumbnailFolder();

/// The thumbnails of one file in the user's thumbnail cache, as the Thumbnail Managing Standard describes it:
/// `thumbnails/SIZE/MD5.png` in the cache folder, where MD5 is that of the file's URI. URI and modification time are
/// also in the picture's texts; a thumbnail counts only while both are right. Any thread, several processes at once.
class ThumbnailCache {
 public:
  /// None when `path` is not a regular file, or one of the thumbnails themselves.
  static std::optional<ThumbnailCache> forFile(const std::string& path);

  /// The smallest size that a picture of `largestSide` pixels can be taken from; none beyond the largest one.
  static std::optional<ThumbnailSize> sizeFor(int largestSide);

  /// The smallest valid thumbnail of a size that `largestSide` pixels can be taken from.
  std::optional<probe::Still> find(int largestSide) const;

  /// The file that holds a valid thumbnail: the smallest one of at least `wantedSide` pixels, else the largest one.
  std::optional<std::string> file(int wantedSide) const;

  /// Stores `still`, which is not larger than `size` allows, in one step: others see the old one or the new one.
  /// Where that fails, all stays as it was.
  void store(ThumbnailSize size, const probe::Still& still) const;

  /// Where the thumbnail of this size is kept.
  std::string pathOf(ThumbnailSize size) const;

 private:
  bool isValid(const std::string& png) const;
  bool holds(ThumbnailSize size) const;

  std::string root_;  // the cache's folder
  std::string uri_;   // of the file
  std::int64_t modified_ = 0;
  std::int64_t bytes_ = 0;
};

/// The URI of the absolute path `path` as desktop programs write it, on which the names of thumbnails depend:
/// letters, digits and -_.!~*'()$&+,/:=@ stand for themselves.
std::string thumbnailUri(const std::string& path);

}  // namespace medialibrary
