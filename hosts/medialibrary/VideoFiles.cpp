#include "hosts/medialibrary/VideoFiles.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <string_view>
#include <utility>

namespace medialibrary {

namespace fs = std::filesystem;

namespace {

constexpr std::array<std::string_view, 38> endings = {
    "3g2", "3gp",  "3gp2", "3gpp", "3gpp2", "asf", "avi",  "divx", "dv",  "f4v",  "flv", "m1v", "m2p",
    "m2t", "m2ts", "m2v",  "m4v",  "mk3d",  "mkv", "mov",  "mp4",  "mpe", "mpeg", "mpg", "mpv", "mts",
    "mxf", "nut",  "ogm",  "ogv",  "qt",    "rm",  "rmvb", "ts",   "vob", "webm", "wmv", "wtv"};

bool endsLikeAVideo(const std::string& name) {
  const auto dot = name.rfind('.');
  if (dot == std::string::npos) return false;
  std::string ending = name.substr(dot + 1);
  for (char& c : ending) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return std::binary_search(endings.begin(), endings.end(), ending);
}

/// One walk through the folders.
class Search {
 public:
  std::vector<VideoFile> run(const std::vector<std::string>& folders) {
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) waiting_.push_back(*folder);
    while (!waiting_.empty()) {
      const std::string folder = std::move(waiting_.back());
      waiting_.pop_back();
      if (isNewFolder(folder)) search(folder);
    }
    return std::move(found_);
  }

 private:
  using Identity = std::pair<dev_t, ino_t>;

  bool isNewFolder(const std::string& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0 || !S_ISDIR(facts.st_mode)) return false;
    return folders_.insert({facts.st_dev, facts.st_ino}).second;
  }

  void search(const std::string& folder) {
    std::vector<std::string> inside;
    for (const std::string& name : namesIn(folder)) {
      const std::string path = (folder.ends_with('/') ? folder : folder + "/") + name;
      struct stat facts {};
      if (::stat(path.c_str(), &facts) != 0) continue;
      if (S_ISDIR(facts.st_mode)) inside.push_back(path);
      if (S_ISREG(facts.st_mode) && endsLikeAVideo(name)) add(path, facts);
    }
    waiting_.insert(waiting_.end(), inside.rbegin(), inside.rend());
  }

  static std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
      std::string name = entry->path().filename().string();
      if (!name.starts_with('.')) names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  void add(const std::string& path, const struct stat& facts) {
    if (!files_.insert({facts.st_dev, facts.st_ino}).second) return;
    found_.push_back({path, facts.st_size, facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec, facts.st_dev, facts.st_ino});
  }

  std::vector<std::string> waiting_;  // the next one last
  std::set<Identity> folders_;
  std::set<Identity> files_;
  std::vector<VideoFile> found_;
};

}  // namespace

std::vector<VideoFile> videoFiles(const std::vector<std::string>& folders) {
  return Search().run(folders);
}

}  // namespace medialibrary
