#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace medialibrary {

/// What has happened to watched folders since the last call.
struct FolderChanges {
  /// In which files or folders came, went, or were written to the end, or got other times or permissions; or that
  /// went or were moved themselves, with the watched folders inside, and so are watched no more.
  std::set<std::string> folders;
  /// Too much to tell, or drives were mounted or removed: every folder may have changed. Paths may lead to other
  /// folders than those that are watched, so every folder has to be added once more.
  bool isEverything = false;
};

/// What kind of file system a folder lies in.
struct FileSystem {
  std::uint32_t type = 0;  ///< statfs(2), f_type
  dev_t device = 0;        ///< stat(2), st_dev
};

/// Of the folder; none where there is no such folder.
std::optional<FileSystem> fileSystemOf(const std::string& folder);

/// Whether this machine's kernel hears of every change: not of those that other machines make, or the process that
/// is the file system itself. A file system of a process on a block device of its own (ntfs-3g, for one) changes only
/// by way of the kernel.
bool tellsItsChanges(const FileSystem& fileSystem);

/// What a watch has to make do with. The system sets its limit itself (/proc/sys/fs/inotify/max_user_watches).
struct FolderWatchOptions {
  std::size_t mostFolders = std::numeric_limits<std::size_t>::max();
  std::function<std::optional<FileSystem>(const std::string& folder)> fileSystem = fileSystemOf;
};

/// Watches folders by inotify(7), and drives by the kernel's table of mounts (proc(5), /proc/PID/mountinfo).
///
/// Folders are told by the very bytes under which they were added. What happens to a folder further outside that is
/// not watched itself (that it is renamed) is not told, nor what is done to a file through a name that it has
/// elsewhere. One thread. Nothing here waits, unless a file system does not answer.
class FolderWatch {
 public:
  static std::unique_ptr<FolderWatch> make(FolderWatchOptions options = {});
  virtual ~FolderWatch() = default;

  /// Watches `folder` itself, not what lies below it; links are followed. False where that is impossible: because
  /// there is no such folder or it may not be read, because of the kind of file system (network and user space file
  /// systems do not tell what others change), or because there are no watches left. Such a folder has to be searched
  /// again whenever it matters. Watching it twice is once; if its path leads to another folder than before, it is
  /// that one from now on.
  virtual bool add(const std::string& folder) = 0;
  /// `folder` is watched no more, and what has happened to it already is not told. Nothing where it is not watched.
  virtual void remove(const std::string& folder) = 0;
  /// All folders that are watched.
  virtual std::set<std::string> folders() const = 0;
  /// To be polled: `descriptor` for reading, `mountsDescriptor` for exceptional conditions (POLLPRI). Negative where
  /// there is none.
  virtual int descriptor() const = 0;
  virtual int mountsDescriptor() const = 0;
  /// What has happened. A file is a change when it comes, for it may be a further link to one that is complete, and
  /// once more whenever somebody who has written to it closes it, but not while it is being written: whether it is
  /// complete, `isComplete` tells. Reading a file is no change.
  virtual FolderChanges changes() = 0;
};

}  // namespace medialibrary
