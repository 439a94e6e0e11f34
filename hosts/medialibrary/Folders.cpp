#include "hosts/medialibrary/Folders.h"

#include "hosts/medialibrary/Paths.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string_view>

namespace medialibrary {

namespace {

/// The XDG standard wants relative paths in these variables to be ignored.
std::optional<std::string> absolutePathIn(const char* variable) {
  const char* value = std::getenv(variable);
  if (value == nullptr || value[0] != '/') return std::nullopt;
  return value;
}

/// What stands between the quotation marks, as a shell would read it.
std::optional<std::string> unquoted(std::string_view text) {
  if (text.empty() || text.front() != '"') return std::nullopt;
  std::string value;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"') return value;
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    value += text[i];
  }
  return std::nullopt;
}

/// The folder that a line like XDG_VIDEOS_DIR="$HOME/Videos" names; none for all other lines.
std::optional<std::string> folderIn(std::string_view line, std::string_view key) {
  constexpr std::string_view home = "$HOME";
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  if (!line.starts_with(key) || line.substr(key.size(), 1) != "=") return std::nullopt;
  auto value = unquoted(line.substr(key.size() + 1));
  if (!value) return std::nullopt;
  if (value->starts_with("/")) return withoutSlashAtEnd(*value);
  if (*value != home && !value->starts_with("$HOME/")) return std::nullopt;
  return withoutSlashAtEnd(homeFolder() + value->substr(home.size()));
}

std::optional<std::string> namedVideosFolder() {
  const std::string configuration = absolutePathIn("XDG_CONFIG_HOME").value_or(homeFolder() + "/.config");
  std::ifstream file(configuration + "/user-dirs.dirs");
  std::optional<std::string> folder;
  for (std::string line; std::getline(file, line);) {
    if (auto named = folderIn(line, "XDG_VIDEOS_DIR")) folder = std::move(named);
  }
  return folder;
}

}  // namespace

std::string homeFolder() {
  if (const auto home = absolutePathIn("HOME")) return withoutSlashAtEnd(*home);
  std::array<char, 4096> memory{};
  struct passwd entry {};
  struct passwd* found = nullptr;
  getpwuid_r(getuid(), &entry, memory.data(), memory.size(), &found);
  return found != nullptr && found->pw_dir[0] == '/' ? withoutSlashAtEnd(found->pw_dir) : "/";
}

std::string cacheFolder() {
  return absolutePathIn("XDG_CACHE_HOME").value_or(homeFolder() + "/.cache");
}

std::string dataFolder() {
  return absolutePathIn("XDG_DATA_HOME").value_or(homeFolder() + "/.local/share");
}

std::string videosFolder() {
  const auto named = namedVideosFolder();
  if (named && *named != homeFolder()) return *named;
  return homeFolder() + "/Videos";
}

}  // namespace medialibrary
