#include "tests/host/gstreamer/FaultyReads.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <bit>
#include <cerrno>
#include <cstdint>

namespace {

std::atomic<ino_t> unreadable = 0;
std::atomic<int> refusals = 0;

std::atomic<ino_t> followed = 0;
std::atomic<std::uint64_t> descriptorsAtTheEnd = 0;  ///< a bit for each

bool is(ino_t wanted, int descriptor) {
  struct stat facts {};
  return wanted != 0 && fstat(descriptor, &facts) == 0 && facts.st_ino == wanted;
}

void follow(int descriptor) {
  struct stat facts {};
  if (fstat(descriptor, &facts) == 0 && lseek(descriptor, 0, SEEK_CUR) >= facts.st_size)
    descriptorsAtTheEnd |= std::uint64_t{1} << (static_cast<unsigned>(descriptor) % 64U);
}

ino_t inodeOf(const std::string& path) {
  struct stat facts {};
  return stat(path.c_str(), &facts) == 0 ? facts.st_ino : 0;
}

}  // namespace

/// Stands in front of the C library's, for every library in the process.
extern "C" ssize_t read(int descriptor, void* buffer, size_t size) {
  if (is(unreadable, descriptor)) {
    ++refusals;
    errno = EIO;
    return -1;
  }
  const ssize_t length = syscall(SYS_read, descriptor, buffer, size);
  if (is(followed, descriptor)) follow(descriptor);
  return length;
}

namespace gstreamer {

FaultyReads::FaultyReads(const std::string& path) {
  refusals = 0;
  unreadable = inodeOf(path);
}

FaultyReads::~FaultyReads() {
  unreadable = 0;
}

int FaultyReads::refused() {
  return refusals;
}

ReadsToTheEnd::ReadsToTheEnd(const std::string& path) {
  descriptorsAtTheEnd = 0;
  followed = inodeOf(path);
}

ReadsToTheEnd::~ReadsToTheEnd() {
  followed = 0;
}

int ReadsToTheEnd::readers() const {
  return std::popcount(descriptorsAtTheEnd.load());
}

}  // namespace gstreamer
