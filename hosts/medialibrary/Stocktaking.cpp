#include "hosts/medialibrary/Stocktaking.h"

#include "hosts/medialibrary/Paths.h"

#include <sys/stat.h>

#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace medialibrary {

namespace {

/// For a file that cannot be asked whether somebody writes it.
constexpr double quietSeconds = 2.0;

bool isSameState(const VideoFile& left, const VideoFile& right) {
  return left.size == right.size && left.modifiedSeconds == right.modifiedSeconds &&
         left.modifiedNanoseconds == right.modifiedNanoseconds;
}

/// Some file systems number their files anew each time they are mounted; then state and path have to do.
bool isUnchanged(const VideoFile& found, const IndexedFile& known) {
  if (!isSameState(found, known.file)) return false;
  return found.inode == known.file.inode || found.device != known.file.device || !known.isPresent;
}

bool isAt(const VideoFile& file, const std::string& path) {
  struct stat facts {};
  return ::stat(path.c_str(), &facts) == 0 && facts.st_dev == file.device && facts.st_ino == file.inode;
}

/// Of the nearest folder above `path` that is there.
std::optional<dev_t> deviceAbove(std::string path) {
  for (auto slash = path.rfind('/'); slash != std::string::npos; slash = path.rfind('/')) {
    path.resize(slash);
    struct stat facts {};
    if (::stat(path.empty() ? "/" : path.c_str(), &facts) == 0) return facts.st_dev;
  }
  return std::nullopt;
}

}  // namespace

void Stocktaking::compare(const ScannedFolder& folder) {
  compared_.insert(folder.path);
  const std::vector<IndexedFile> all = index_.filesIn(folder.path);
  std::unordered_map<std::string_view, const IndexedFile*> known;
  for (const IndexedFile& file : all) known.emplace(file.file.path, &file);
  for (const VideoFile& found : folder.files) {
    const auto place = known.find(found.path);
    meet(found, place == known.end() ? nullptr : place->second);
    if (place != known.end()) known.erase(place);
  }
  for (const IndexedFile& file : all) {
    if (known.contains(file.file.path)) lost_.push_back(file);
  }
}

void Stocktaking::meet(const VideoFile& found, const IndexedFile* known) {
  if (known != nullptr) {
    meetAgain(found, *known);
  } else {
    meetNew(found);
  }
}

void Stocktaking::meetAgain(const VideoFile& found, const IndexedFile& known) {
  if (isUnchanged(found, known)) {
    if (found != known.file) {
      index_.move(known.id, found);
    } else if (!known.isPresent) {
      index_.setPresent(known.id, true);
    }
  } else if (isComplete(found, quietSeconds)) {
    index_.change(known.id, found);
  } else {
    if (known.isPresent) index_.setPresent(known.id, false);
    outcome_.beingWritten.push_back(found);
  }
}

void Stocktaking::meetNew(const VideoFile& found) {
  for (const IndexedFile& like : index_.filesLike(found)) {
    if (like.isPresent && isAt(found, like.file.path)) {
      outcome_.hasOtherNames = true;
      return;
    }
    index_.move(like.id, found);
    return;
  }
  if (isComplete(found, quietSeconds)) {
    index_.add(found);
  } else {
    outcome_.beingWritten.push_back(found);
  }
}

void Stocktaking::loseFolder(const std::string& path) {
  for (const std::string& folder : index_.folders()) {
    if (isInOrBelow(folder, path) && !compared_.contains(folder)) lose(index_.filesIn(folder));
  }
}

void Stocktaking::loseAllOthers() {
  for (const std::string& folder : index_.folders()) {
    if (!compared_.contains(folder)) lose(index_.filesIn(folder));
  }
}

void Stocktaking::lose(const std::vector<IndexedFile>& files) {
  lost_.insert(lost_.end(), files.begin(), files.end());
}

Stocktaking::Outcome Stocktaking::finish() {
  for (const IndexedFile& file : std::exchange(lost_, {})) letGo(file);
  return std::exchange(outcome_, {});
}

void Stocktaking::letGo(const IndexedFile& file) {
  const auto current = index_.fileAt(file.file.path);
  if (!current || current->id != file.id) return;  // it was found elsewhere
  outcome_.hasLosses = outcome_.hasLosses || file.isPresent;
  const bool isHere = isAt(file.file, file.file.path);
  if (!isHere && deviceAbove(file.file.path) == file.file.device) {
    index_.remove(file.id);
  } else if (file.isPresent) {
    index_.setPresent(file.id, false);
  }
}

}  // namespace medialibrary
