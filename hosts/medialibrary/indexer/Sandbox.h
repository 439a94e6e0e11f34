#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace medialibrary {

/// What a process may still do inside its sandbox, besides reading files and using the descriptors it has.
struct SandboxRules {
  std::string writableFolder;    ///< where it may make, replace and remove files and make folders; "" for nowhere
  std::uint64_t mostMemory = 0;  ///< bytes of data that it may hold; allocating more fails
};

/// Which walls stand. A kernel may lack either, or a container forbid them; the process does its work all the same,
/// and only tests ask.
struct SandboxWalls {
  bool confinesFiles = false;  ///< Landlock
  bool filtersCalls = false;   ///< seccomp
};

/// Takes from the calling process, for good, what looking into a file does not need: writing anywhere but in the one
/// folder, changing modes, owners, times and attributes of files, the network, starting programs or processes
/// (threads are fine), tracing and signalling other processes, gaining rights, core files. What is forbidden fails
/// with an error. To be called while there is one thread, since walls against files hold for it and those it starts.
/// The folder must exist.
SandboxWalls enterSandbox(const SandboxRules& rules);

/// The process is to work only while nobody else wants the processor or the disk.
void giveWayToOtherProcesses();

/// From now on this process ends when the process `starter`, its parent, does. False if that has ended already.
bool endWithStarter(pid_t starter);

}  // namespace medialibrary
