#include "hosts/medialibrary/Paths.h"

#include <sys/stat.h>

namespace medialibrary {

std::string_view folderOf(std::string_view path) {
  return path.substr(0, path.rfind('/'));
}

bool isInOrBelow(std::string_view path, std::string_view folder) {
  if (!path.starts_with(folder)) return false;
  return path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/';
}

std::string withoutSlashAtEnd(std::string path) {
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

void makeFolder(std::string_view path) {
  for (auto slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
    ::mkdir(std::string(path.substr(0, slash)).c_str(), 0700);
    if (slash == std::string_view::npos) return;
  }
}

}  // namespace medialibrary
