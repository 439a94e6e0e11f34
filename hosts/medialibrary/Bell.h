#pragma once

#include "hosts/medialibrary/FileDescriptor.h"

#include <sys/eventfd.h>

namespace medialibrary {

/// Wakes a thread that polls. Any thread.
class Bell {
 public:
  int descriptor() const { return descriptor_.number(); }
  void ring() const { [[maybe_unused]] const int result = ::eventfd_write(descriptor(), 1); }
  void silence() const {
    eventfd_t count = 0;
    [[maybe_unused]] const int result = ::eventfd_read(descriptor(), &count);
  }

 private:
  FileDescriptor descriptor_{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
};

}  // namespace medialibrary
