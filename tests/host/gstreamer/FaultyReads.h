#pragma once

#include <string>

namespace gstreamer {

/// For as long as it exists, reading from one file fails in this process as it does from a medium that was pulled
/// out (EIO), also through descriptors that are open already. One at a time.
class FaultyReads {
 public:
  explicit FaultyReads(const std::string& path);
  ~FaultyReads();
  FaultyReads(const FaultyReads&) = delete;
  FaultyReads& operator=(const FaultyReads&) = delete;

  /// How many reads were refused since the newest one was made.
  static int refused();
};

}  // namespace gstreamer
