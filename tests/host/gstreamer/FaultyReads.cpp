#include "tests/host/gstreamer/FaultyReads.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace {

std::atomic<ino_t> unreadable = 0;
std::atomic<int> refusals = 0;

bool isUnreadable(int descriptor) {
  const ino_t wanted = unreadable;
  struct stat facts {};
  return wanted != 0 && fstat(descriptor, &facts) == 0 && facts.st_ino == wanted;
}

}  // namespace

/// Stands in front of the C library's, for every library in the process.
extern "C" ssize_t read(int descriptor, void* buffer, size_t size) {
  if (isUnreadable(descriptor)) {
    ++refusals;
    errno = EIO;
    return -1;
  }
  return syscall(SYS_read, descriptor, buffer, size);
}

namespace gstreamer {

FaultyReads::FaultyReads(const std::string& path) {
  struct stat facts {};
  refusals = 0;
  if (stat(path.c_str(), &facts) == 0) unreadable = facts.st_ino;
}

FaultyReads::~FaultyReads() {
  unreadable = 0;
}

int FaultyReads::refused() {
  return refusals;
}

}  // namespace gstreamer
