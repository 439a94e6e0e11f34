#include "hosts/medialibrary/FolderScan.h"

#include "hosts/medialibrary/FileDescriptor.h"
#include "hosts/medialibrary/Paths.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cmath>
#include <csignal>
#include <ctime>
#include <functional>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace medialibrary {

namespace {

constexpr std::array<std::string_view, 38> endings = {
    "3g2", "3gp",  "3gp2", "3gpp", "3gpp2", "asf", "avi",  "divx", "dv",  "f4v",  "flv", "m1v", "m2p",
    "m2t", "m2ts", "m2v",  "m4v",  "mk3d",  "mkv", "mov",  "mp4",  "mpe", "mpeg", "mpg", "mpv", "mts",
    "mxf", "nut",  "ogm",  "ogv",  "qt",    "rm",  "rmvb", "ts",   "vob", "webm", "wmv", "wtv"};
constexpr std::size_t longestEnding = 5;

bool endsLikeAVideo(std::string_view name) {
  const auto dot = name.rfind('.');
  if (dot == std::string_view::npos || name.size() - dot - 1 > longestEnding) return false;
  std::string ending(name.substr(dot + 1));
  for (char& c : ending) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return std::binary_search(endings.begin(), endings.end(), ending);
}

struct CloseDirectory {
  void operator()(DIR* directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

Directory openDirectory(const std::string& path) {
  FileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor) return nullptr;
  Directory directory(::fdopendir(descriptor.number()));
  if (directory) descriptor.release();
  return directory;
}

/// A name in a folder that may be that of a video or of a folder.
struct Entry {
  std::string name;
  ino_t inode = 0;
  unsigned char type = DT_UNKNOWN;
};

bool mayMatter(const dirent& entry) {
  if (entry.d_name[0] == '.') return false;
  switch (entry.d_type) {
    case DT_REG:
      return endsLikeAVideo(entry.d_name);
    case DT_DIR:
    case DT_LNK:
    case DT_UNKNOWN:
      return true;
    default:
      return false;
  }
}

/// By name.
std::vector<Entry> entriesOf(DIR* directory) {
  std::vector<Entry> entries;
  while (const dirent* entry = ::readdir(directory)) {
    if (mayMatter(*entry)) entries.push_back({entry->d_name, entry->d_ino, entry->d_type});
  }
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.name < b.name; });
  return entries;
}

struct Identity {
  dev_t device = 0;
  ino_t inode = 0;
  bool operator==(const Identity&) const = default;
};

struct IdentityHash {
  std::size_t operator()(const Identity& identity) const {
    return std::hash<ino_t>()(identity.inode) ^ (std::hash<dev_t>()(identity.device) << 40U);
  }
};

/// What matters of a stat, which is several times as large.
struct Facts {
  mode_t mode = 0;
  off_t size = 0;
  timespec modified{};
  Identity identity;
};

Facts factsFrom(const struct stat& facts) {
  return {facts.st_mode, facts.st_size, facts.st_mtim, {facts.st_dev, facts.st_ino}};
}

/// What each of the names stands for, in their order; none where that cannot be told, and for folders, which need it
/// not.
///
/// The file system is asked in the order of the inodes: on a drive that turns, that spares one movement of its head
/// per file.
std::vector<std::optional<Facts>> factsOf(const std::vector<Entry>& entries, int directory) {
  std::vector<std::pair<ino_t, std::size_t>> order;
  order.reserve(entries.size());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].type != DT_DIR) order.emplace_back(entries[i].inode, i);
  }
  std::sort(order.begin(), order.end());
  std::vector<std::optional<Facts>> all(entries.size());
  for (const auto& [inode, i] : order) {
    struct stat facts {};
    if (::fstatat(directory, entries[i].name.c_str(), &facts, 0) == 0) all[i] = factsFrom(facts);
  }
  return all;
}

std::string pathIn(const std::string& folder, const std::string& name) {
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  path += folder;
  if (!folder.ends_with('/')) path += '/';
  return path += name;
}

}  // namespace

struct FolderScan::State {
  std::vector<std::string> waiting;                                 // the next one last
  std::unordered_map<Identity, std::string, IdentityHash> folders;  // under which path each was given
  std::unordered_set<Identity, IdentityHash> files;
  bool hasOtherNames = false;

  std::optional<ScannedFolder> search(std::string path) {
    const Directory directory = openDirectory(path);
    struct stat facts {};
    if (!directory || ::fstat(::dirfd(directory.get()), &facts) != 0) return std::nullopt;
    const auto [given, isNew] = folders.try_emplace({facts.st_dev, facts.st_ino}, path);
    if (!isNew) {
      hasOtherNames = hasOtherNames || given->second != path;  // one to begin at may lie in another
      return std::nullopt;
    }
    ScannedFolder folder{std::move(path), {}, {}};
    const std::vector<Entry> entries = entriesOf(directory.get());
    const std::vector<std::optional<Facts>> known = factsOf(entries, ::dirfd(directory.get()));
    for (std::size_t i = 0; i < entries.size(); ++i) add(entries[i], known[i], folder);
    return folder;
  }

 private:
  void add(const Entry& entry, const std::optional<Facts>& facts, ScannedFolder& folder) {
    std::string path = pathIn(folder.path, entry.name);
    if (path.size() >= PATH_MAX) return;
    if (entry.type == DT_DIR || (facts && S_ISDIR(facts->mode))) return folder.inside.push_back(std::move(path));
    if (!facts || !S_ISREG(facts->mode) || !endsLikeAVideo(entry.name)) return;
    if (!files.insert(facts->identity).second) {
      hasOtherNames = true;
      return;
    }
    folder.files.push_back({std::move(path), facts->size, facts->modified.tv_sec, facts->modified.tv_nsec,
                            facts->identity.device, facts->identity.inode});
  }
};

FolderScan::FolderScan(std::vector<std::string> folders) : state_(std::make_unique<State>()) {
  for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
    state_->waiting.push_back(withoutSlashAtEnd(std::move(*folder)));
  }
}

FolderScan::~FolderScan() = default;

bool FolderScan::next(ScannedFolder& folder) {
  auto& waiting = state_->waiting;
  while (!waiting.empty()) {
    std::string path = std::move(waiting.back());
    waiting.pop_back();
    std::optional<ScannedFolder> found = state_->search(std::move(path));
    if (!found) continue;
    folder = std::move(*found);
    waiting.insert(waiting.end(), folder.inside.rbegin(), folder.inside.rend());
    return true;
  }
  return false;
}

bool FolderScan::hasOtherNames() const {
  return state_->hasOtherNames;
}

namespace {

bool isRegular(const struct stat& facts) {
  return S_ISREG(facts.st_mode);
}

/// Whether anybody has the file open for writing; none where that cannot be asked.
std::optional<bool> isBeingWritten(const FileDescriptor& file) {
  // Whoever opens the file for writing right now makes the kernel send a signal, which ends the process if it is
  // SIGIO, as it is unless told otherwise. Nobody handles SIGURG, and then it does nothing.
  if (::fcntl(file.number(), F_SETSIG, SIGURG) != 0) return std::nullopt;
  if (::fcntl(file.number(), F_SETLEASE, F_RDLCK) == 0) {
    ::fcntl(file.number(), F_SETLEASE, F_UNLCK);
    return false;
  }
  return errno == EAGAIN ? std::optional(true) : std::nullopt;
}

/// A time in the future is that of a clock which was wrong, or of a drive that was written elsewhere: what is written
/// now gets the present time.
bool isQuiet(const struct stat& facts, double seconds) {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  const double age = static_cast<double>(now.tv_sec - facts.st_mtim.tv_sec) +
                     static_cast<double>(now.tv_nsec - facts.st_mtim.tv_nsec) / 1e9;
  return std::abs(age) >= seconds;
}

}  // namespace

bool isComplete(const VideoFile& file, double quietSeconds) {
  struct stat facts {};
  // Opening may have an effect of its own on what is no regular file; to whoever waits at the other end of a FIFO,
  // for example.
  if (::stat(file.path.c_str(), &facts) != 0 || !isRegular(facts)) return true;
  const FileDescriptor opened(::open(file.path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!opened || ::fstat(opened.number(), &facts) != 0 || !isRegular(facts)) return true;
  const std::optional<bool> written = isBeingWritten(opened);
  return written ? !*written : isQuiet(facts, quietSeconds);
}

}  // namespace medialibrary
