#include "hosts/medialibrary/FolderSearch.h"

#include "hosts/medialibrary/Paths.h"

#include <algorithm>
#include <utility>

namespace medialibrary {

void FolderSearch::beginAll(std::vector<std::string> folders) {
  roots_.clear();
  for (std::string& folder : folders) roots_.push_back(withoutSlashAtEnd(std::move(folder)));
  extent_ = Extent::Everything;
  stocktaking_.emplace(index_);
  searched_.clear();
  newFolders_.clear();
  changedFolders_.clear();
  hasUnwatchedFolders_ = false;
  hasOtherNames_ = false;
  for (const std::string& root : roots_) watchFolder(root);
  scan_ = std::make_unique<FolderScan>(roots_);
}

void FolderSearch::add(const std::set<std::string>& folders) {
  std::set<std::string> ours;
  for (const std::string& folder : folders) {
    if (isRoot(folder) || searched_.contains(folder)) ours.insert(folder);
  }
  if (ours.empty()) return;
  if (!isUnderWay()) {
    extent_ = Extent::Changes;
    stocktaking_.emplace(index_);
  }
  changedFolders_.merge(ours);
}

void FolderSearch::goOn(std::chrono::steady_clock::time_point time) {
  if (!isUnderWay()) return;
  index_.begin();
  do {
    step();
  } while (isUnderWay() && std::chrono::steady_clock::now() < time);
  index_.commit();
}

void FolderSearch::step() {
  if (scan_) {
    scanOn();
  } else if (!newFolders_.empty()) {
    scan_ = std::make_unique<FolderScan>(std::exchange(newFolders_, {}));
  } else if (!changedFolders_.empty()) {
    searchAgain(changedFolders_.extract(changedFolders_.begin()).value());
  } else {
    finish();
  }
}

void FolderSearch::scanOn() {
  ScannedFolder folder;
  if (!scan_->next(folder)) {
    hasOtherNames_ = hasOtherNames_ || scan_->hasOtherNames();
    scan_ = nullptr;
    return;
  }
  for (const std::string& inside : folder.inside) watchFolder(inside);
  found(folder);
}

void FolderSearch::found(const ScannedFolder& folder) {
  searched_.insert(folder.path);
  stocktaking_->compare(folder);
}

void FolderSearch::searchAgain(const std::string& folder) {
  const bool isWatched = watch_.add(folder);
  ScannedFolder listed;
  const bool isThere = FolderScan({folder}).next(listed);
  // What has gone is found again by the watch of the folder around it, unless nobody watches that.
  hasUnwatchedFolders_ = hasUnwatchedFolders_ || (!isWatched && (isThere || isRoot(folder)));
  if (isThere) {
    found(listed);
    meetChildren(listed);
  } else {
    lose(folder);
  }
}

void FolderSearch::meetChildren(const ScannedFolder& folder) {
  const std::set<std::string> inside(folder.inside.begin(), folder.inside.end());
  for (const std::string& child : inside) {
    if (searched_.contains(child)) continue;
    watchFolder(child);
    newFolders_.push_back(child);
  }
  std::vector<std::string> lost;
  const std::string prefix = folder.path.ends_with('/') ? folder.path : folder.path + "/";
  for (auto each = searched_.upper_bound(prefix); each != searched_.end() && each->starts_with(prefix); ++each) {
    if (each->find('/', prefix.size()) == std::string::npos && !inside.contains(*each)) lost.push_back(*each);
  }
  for (const std::string& child : lost) lose(child);
}

void FolderSearch::lose(const std::string& folder) {
  for (auto each = searched_.lower_bound(folder); each != searched_.end() && each->starts_with(folder);) {
    if (isInOrBelow(*each, folder)) {
      watch_.remove(*each);
      each = searched_.erase(each);
    } else {
      ++each;
    }
  }
  stocktaking_->loseFolder(folder);
}

void FolderSearch::finish() {
  if (extent_ == Extent::Everything) {
    stocktaking_->loseAllOthers();
    for (const std::string& folder : watch_.folders()) {
      if (!isRoot(folder) && !searched_.contains(folder)) watch_.remove(folder);
    }
  }
  const Stocktaking::Outcome outcome = stocktaking_->finish();
  stocktaking_.reset();
  for (const VideoFile& file : outcome.beingWritten) unfinishedFolders_.emplace(folderOf(file.path));
  hasOtherNames_ = hasOtherNames_ || outcome.hasOtherNames;
  // The name that was lost may have been the listed one of several. This ends: what is not listed has no name to
  // lose.
  if (outcome.hasLosses && hasOtherNames_) beginAll();
}

bool FolderSearch::isRoot(const std::string& folder) const {
  return std::find(roots_.begin(), roots_.end(), folder) != roots_.end();
}

void FolderSearch::watchFolder(const std::string& folder) {
  if (!watch_.add(folder)) hasUnwatchedFolders_ = true;
}

}  // namespace medialibrary
