#pragma once

#include <unistd.h>

#include <string_view>
#include <utility>

namespace medialibrary {

/// Owns a descriptor of the kernel's and closes it; none where the number is negative.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) : number_(number) {}
  ~FileDescriptor() {
    if (number_ >= 0) ::close(number_);
  }
  FileDescriptor(FileDescriptor&& other) noexcept : number_(other.release()) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }
  /// Hands the descriptor to whoever closes it from now on.
  int release() { return std::exchange(number_, -1); }

 private:
  int number_ = -1;
};

/// Waits until everything is written; false where that is impossible.
bool writeAll(int descriptor, std::string_view bytes);

}  // namespace medialibrary
