#include "hosts/medialibrary/FolderWatch.h"

#include "hosts/medialibrary/FileDescriptor.h"
#include "hosts/medialibrary/Paths.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <map>
#include <utility>
#include <vector>

namespace medialibrary {

namespace {

/// File systems that other machines write to as well; the numbers that linux/magic.h lacks are from statfs(2) and
/// from the sources of those file systems.
constexpr std::array<std::uint32_t, 19> sharedWithOthers = {
    AFS_SUPER_MAGIC,    AFS_FS_MAGIC,    CEPH_SUPER_MAGIC, CIFS_SUPER_MAGIC,  CODA_SUPER_MAGIC,
    HOSTFS_SUPER_MAGIC, NCP_SUPER_MAGIC, NFS_SUPER_MAGIC,  OCFS2_SUPER_MAGIC, SMB_SUPER_MAGIC,
    0xFE534D42,  // SMB2
    V9FS_MAGIC,
    0x01161970,  // GFS2
    0x0BD00BD0,  // Lustre
    0x19830326,  // BeeGFS
    0x20030528,  // OrangeFS
    0x47504653,  // GPFS
    0x786F4256,  // VirtualBox's shared folders
    0xBACBACBC,  // VMware's
};

// Without IN_EXCL_UNLINK: that would also hide the end of writing to a file that was made without a name (O_TMPFILE)
// and got its name while it was still open.
constexpr std::uint32_t interesting = IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE |
                                      IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

// The kernel says these of the folder itself; its path leads nowhere then, or to another folder.
constexpr std::uint32_t gone = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

std::string contentsOf(const FileDescriptor& file) {
  std::string contents;
  std::array<char, 16384> part{};
  off_t offset = 0;
  for (;;) {
    const ssize_t size = ::pread(file.number(), part.data(), part.size(), offset);
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) return contents;
    contents.append(part.data(), static_cast<std::size_t>(size));
    offset += size;
  }
}

/// The kernel's table of mounts, and whether it has changed.
class Mounts {
 public:
  int descriptor() const { return file_.number(); }

  /// Since the last call. The table itself is compared, for the kernel says that it may have changed to whoever polls
  /// next, once, and that is not this.
  bool haveChanged() {
    if (!file_) return false;
    std::string table = contentsOf(file_);
    if (table == table_) return false;
    table_ = std::move(table);
    return true;
  }

 private:
  FileDescriptor file_{::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)};
  std::string table_ = file_ ? contentsOf(file_) : std::string();
};

class InotifyWatch final : public FolderWatch {
 public:
  explicit InotifyWatch(FolderWatchOptions options) : options_(std::move(options)) {}

  bool add(const std::string& folder) override {
    const int watch = watchFor(folder);
    const auto known = watches_.find(folder);
    if (known != watches_.end() && known->second == watch) return true;
    remove(folder);
    if (watch < 0) return false;
    watches_[folder] = watch;
    paths_[watch].insert(folder);
    return true;
  }

  void remove(const std::string& folder) override {
    const auto known = watches_.find(folder);
    if (known == watches_.end()) return;
    const int watch = known->second;
    watches_.erase(known);
    std::set<std::string>& paths = paths_.at(watch);
    paths.erase(folder);
    if (!paths.empty()) return;
    paths_.erase(watch);
    ::inotify_rm_watch(queue_.number(), watch);
  }

  std::set<std::string> folders() const override {
    std::set<std::string> all;
    for (const auto& [folder, watch] : watches_) all.insert(folder);
    return all;
  }

  int descriptor() const override { return queue_.number(); }
  int mountsDescriptor() const override { return mounts_.descriptor(); }

  FolderChanges changes() override {
    FolderChanges changes;
    changes.isEverything = mounts_.haveChanged();
    alignas(inotify_event) std::array<char, 65536> part;
    for (;;) {
      const ssize_t size = ::read(queue_.number(), part.data(), part.size());
      if (size < 0 && errno == EINTR) continue;
      if (size <= 0) return changes;
      tellAll(part.data(), static_cast<std::size_t>(size), changes);
    }
  }

 private:
  /// The kernel's number for the folder, the same for all paths that lead there; negative where it cannot be watched.
  int watchFor(const std::string& folder) const {
    if (!watches_.contains(folder) && watches_.size() >= options_.mostFolders) return -1;
    const std::optional<FileSystem> fileSystem = options_.fileSystem(folder);
    if (!fileSystem || !tellsItsChanges(*fileSystem)) return -1;
    return ::inotify_add_watch(queue_.number(), folder.c_str(), interesting);
  }

  void tellAll(const char* events, std::size_t size, FolderChanges& changes) {
    while (size >= sizeof(inotify_event)) {
      inotify_event event{};
      std::memcpy(&event, events, sizeof(inotify_event));
      tell(event.wd, event.mask, changes);
      const std::size_t length = sizeof(inotify_event) + event.len;
      events += length;
      size -= length;
    }
  }

  void tell(int watch, std::uint32_t what, FolderChanges& changes) {
    if ((what & IN_Q_OVERFLOW) != 0) changes.isEverything = true;
    const auto known = paths_.find(watch);
    if (known == paths_.end()) return;
    // A drive that was removed and mounted again meanwhile leaves the table of mounts as it was.
    if ((what & IN_UNMOUNT) != 0) changes.isEverything = true;
    const std::set<std::string> paths = known->second;
    changes.folders.insert(paths.begin(), paths.end());
    if ((what & gone) == 0) return;
    for (const std::string& path : paths) forget(path, changes);
  }

  /// The folders inside have gone to where `folder` has, and nothing is said of them.
  void forget(const std::string& folder, FolderChanges& changes) {
    std::vector<std::string> stale;
    for (auto each = watches_.lower_bound(folder); each != watches_.end() && each->first.starts_with(folder);
         ++each) {
      if (isInOrBelow(each->first, folder)) stale.push_back(each->first);
    }
    for (const std::string& path : stale) remove(path);
    changes.folders.insert(stale.begin(), stale.end());
    const std::string outer = folder.substr(0, std::max<std::size_t>(folder.rfind('/'), 1));
    if (watches_.contains(outer)) changes.folders.insert(outer);
  }

  FolderWatchOptions options_;
  FileDescriptor queue_{::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
  Mounts mounts_;
  std::map<std::string, int> watches_;          // by folder
  std::map<int, std::set<std::string>> paths_;  // by watch; several where one folder was added under several paths
};

}  // namespace

std::optional<FileSystem> fileSystemOf(const std::string& folder) {
  struct statfs kind {};
  struct stat facts {};
  if (::statfs(folder.c_str(), &kind) != 0 || ::stat(folder.c_str(), &facts) != 0) return std::nullopt;
  return FileSystem{static_cast<std::uint32_t>(kind.f_type), facts.st_dev};
}

bool tellsItsChanges(const FileSystem& fileSystem) {
  // The kernel gives a file system without a block device a number of its own with the major number 0.
  if (fileSystem.type == FUSE_SUPER_MAGIC) return major(fileSystem.device) != 0;
  return std::find(sharedWithOthers.begin(), sharedWithOthers.end(), fileSystem.type) == sharedWithOthers.end();
}

std::unique_ptr<FolderWatch> FolderWatch::make(FolderWatchOptions options) {
  return std::make_unique<InotifyWatch>(std::move(options));
}

}  // namespace medialibrary
