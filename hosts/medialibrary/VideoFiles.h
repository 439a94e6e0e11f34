#pragma once

#include <sys/types.h>

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

namespace medialibrary {

/// A file that may be a video, in the state in which it was found. Files that compare equal have not changed.
struct VideoFile {
  std::string path;  ///< absolute, as bytes
  std::int64_t size = 0;
  std::int64_t modifiedSeconds = 0;
  std::int64_t modifiedNanoseconds = 0;
  dev_t device = 0;
  ino_t inode = 0;

  auto operator<=>(const VideoFile&) const = default;
};

/// The regular files in `folders` and below whose names end like those of videos. Hidden files and folders are left
/// out. Links are followed, but each file is listed once and each folder searched once, under the name that is
/// found first; names are searched in the order of their bytes. What cannot be read is left out. Opens no file.
std::vector<VideoFile> videoFiles(const std::vector<std::string>& folders);

}  // namespace medialibrary
