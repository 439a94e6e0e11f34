#include "hosts/probe/MediaFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <utility>

namespace probe {

Deadline::Deadline(double seconds) : end_(std::chrono::steady_clock::now()) {
  constexpr double longest = 86400.0;  // keeps the sum inside the clock's range
  const double bounded = std::isnan(seconds) ? 0.0 : std::clamp(seconds, 0.0, longest);
  end_ += std::chrono::microseconds(std::llround(bounded * 1e6));
}

std::optional<MediaFile> MediaFile::open(const std::string& path, std::string& reason) {
  struct stat facts {};
  if (::stat(path.c_str(), &facts) != 0) {
    reason = std::strerror(errno);
    return std::nullopt;
  }
  if (!S_ISREG(facts.st_mode)) {
    reason = "not a regular file";
    return std::nullopt;
  }
  // A pipe may have taken the name in between, hence O_NONBLOCK and the second look.
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) {
    reason = std::strerror(errno);
    return std::nullopt;
  }
  MediaFile file(descriptor, 0);
  if (::fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) {
    reason = "not a regular file";
    return std::nullopt;
  }
  file.size_ = facts.st_size;
  return file;
}

MediaFile::MediaFile(MediaFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), size_(other.size_) {}

MediaFile::~MediaFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::int64_t MediaFile::readAt(std::int64_t offset, void* bytes, std::size_t count) const {
  if (offset < 0) return -1;
  for (;;) {
    const ssize_t got = ::pread(descriptor_, bytes, count, offset);
    if (got >= 0 || errno != EINTR) return got;
  }
}

}  // namespace probe
