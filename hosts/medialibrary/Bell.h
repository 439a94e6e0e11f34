#pragma once

#include <sys/eventfd.h>
#include <unistd.h>

namespace medialibrary {

/// Wakes a thread that polls. Any thread.
class Bell {
 public:
  Bell() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
  ~Bell() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Bell(const Bell&) = delete;
  Bell& operator=(const Bell&) = delete;

  int descriptor() const { return descriptor_; }
  void ring() const { [[maybe_unused]] const int result = ::eventfd_write(descriptor_, 1); }
  void silence() const {
    eventfd_t count = 0;
    [[maybe_unused]] const int result = ::eventfd_read(descriptor_, &count);
  }

 private:
  int descriptor_;
};

}  // namespace medialibrary
