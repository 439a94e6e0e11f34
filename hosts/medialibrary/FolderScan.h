#pragma once

#include "hosts/medialibrary/VideoFile.h"

#include <memory>
#include <string>
#include <vector>

namespace medialibrary {

/// A folder as a scan found it.
struct ScannedFolder {
  std::string path;                 ///< absolute, without a slash at its end unless it is the root, as bytes
  std::vector<VideoFile> files;     ///< what lies in it and may be a video, by name
  std::vector<std::string> inside;  ///< the paths of the folders in it, and of the links to folders, by name
};

/// A walk through folders that gives each folder once and each file once, whatever links lead there.
///
/// Hidden files and folders are left out, unless a walk begins at one. Links are followed; names are searched in the
/// order of their bytes, so that the name under which a file is found does not change from one walk to the next. What
/// cannot be read is left out, and so is what has a path too long to be opened (PATH_MAX). Opens folders, one at a
/// time, but no file. About as fast as the file system can tell the facts of each file. One thread.
class FolderScan {
 public:
  /// `folders` are absolute; they are walked through in this order. One that is missing, is no folder, or lies in
  /// another one that has been walked through gives nothing.
  explicit FolderScan(std::vector<std::string> folders);
  ~FolderScan();
  FolderScan(const FolderScan&) = delete;
  FolderScan& operator=(const FolderScan&) = delete;

  /// The next folder, the outer one before those inside it; false at the end, which leaves `folder` as it is. Of the
  /// folders `inside`, those are not given once more that have been given already under another path.
  bool next(ScannedFolder& folder);
  /// Whether a folder or file was left out so far because it had been given under another name.
  bool hasOtherNames() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Whether the file is complete, as far as one can tell: nobody has it open for writing, or, where that cannot be
/// asked, its time of modification is at least `quietSeconds` away from now. What is not a readable regular file
/// counts as complete: reading it will tell what is wrong with it.
///
/// It is asked by way of a lease (fcntl(2), F_SETLEASE), which only the owner of a file gets, and not on every file
/// system. Somebody who opens the file for writing while the lease is held, for some microseconds, waits that long,
/// or is told to try again if it does not want to wait (O_NONBLOCK). Any thread; waits for nobody.
bool isComplete(const VideoFile& file, double quietSeconds);

}  // namespace medialibrary
