#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace probe {

/// A point in time that work has to be finished by.
class Deadline {
 public:
  explicit Deadline(double seconds);
  bool passed() const { return std::chrono::steady_clock::now() >= end_; }

 private:
  std::chrono::steady_clock::time_point end_;
};

/// A regular file, open for reading. All of its readers share one descriptor, so that they see the same file even
/// when another one takes its name meanwhile.
class MediaFile {
 public:
  /// None for whatever is not a readable regular file, with the cause in `reason`. Does not wait for the other end
  /// of a named pipe, and does not touch devices.
  static std::optional<MediaFile> open(const std::string& path, std::string& reason);

  MediaFile(MediaFile&& other) noexcept;
  MediaFile& operator=(MediaFile&&) = delete;
  ~MediaFile();

  /// Bytes, as of opening.
  std::int64_t size() const { return size_; }
  /// Reads up to `count` bytes that start `offset` bytes into the file; how many there were, 0 at the end, negative
  /// after an error.
  std::int64_t readAt(std::int64_t offset, void* bytes, std::size_t count) const;

 private:
  MediaFile(int descriptor, std::int64_t size) : descriptor_(descriptor), size_(size) {}

  int descriptor_;
  std::int64_t size_;
};

}  // namespace probe
