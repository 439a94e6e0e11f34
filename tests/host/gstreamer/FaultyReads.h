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

/// Who reads a file up to its end, from the time on when this is made. One at a time.
class ReadsToTheEnd {
 public:
  explicit ReadsToTheEnd(const std::string& path);
  ~ReadsToTheEnd();
  ReadsToTheEnd(const ReadsToTheEnd&) = delete;
  ReadsToTheEnd& operator=(const ReadsToTheEnd&) = delete;

  /// How many descriptors have come to what was the end of the file then.
  int readers() const;
};

}  // namespace gstreamer
