#pragma once

#include <sched.h>
#include <sys/mount.h>

/// From now on, what this thread mounts is seen by nobody but it and what it starts later: threads and processes.
/// False where that is not allowed. Tests that run at the same time may look at what is mounted.
inline bool keepMountsToOneself() {
  return ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}
