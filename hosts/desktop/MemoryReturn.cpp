#include "hosts/desktop/MemoryReturn.h"

#include <malloc.h>

namespace desktop {

namespace {

/// Blocks from this size on, which frames of films are, are mapped one by one, and so go back as soon as they are
/// freed. The C library would raise this limit to the largest block that was ever freed, and frames of a film that
/// was closed would stay. Below are the pictures of ordinary views and most encoded frames, which come and go too
/// often for that.
constexpr int largeBlock = 1 << 20;
/// What is free at the end of a heap beyond this goes back.
constexpr int keptAtTheEnd = 256 << 10;
/// All threads share one heap. By default there are eight for each processor, each of which keeps what it had at its
/// worst, and each film that is opened brings ten new threads. Already a second one grew with every film.
constexpr int heaps = 1;

}  // namespace

void returnFreedMemory() {
  mallopt(M_MMAP_THRESHOLD, largeBlock);
  mallopt(M_TRIM_THRESHOLD, keptAtTheEnd);
  mallopt(M_ARENA_MAX, heaps);
}

}  // namespace desktop
