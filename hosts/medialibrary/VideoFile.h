#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace medialibrary {

/// A file that may be a video, in the state in which it was found. Files that compare equal have not changed.
struct VideoFile {
  std::string path;  ///< absolute, as bytes
  std::int64_t size = 0;
  std::int64_t modifiedSeconds = 0;
  std::int64_t modifiedNanoseconds = 0;
  dev_t device = 0;
  ino_t inode = 0;

  bool operator==(const VideoFile&) const = default;
};

}  // namespace medialibrary
