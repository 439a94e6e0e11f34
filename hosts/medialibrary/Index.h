#pragma once

#include "hosts/medialibrary/Finding.h"
#include "hosts/medialibrary/Order.h"
#include "hosts/medialibrary/VideoFile.h"
#include "platform/host/MediaLibrary.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace medialibrary {

/// The index cannot be used any more as it is: `isDamaged` says that the file's contents are wrong, so that it has to
/// be set aside; otherwise the disk is full or does not answer. Does not leave this host.
class IndexError final : public std::runtime_error {
 public:
  IndexError(const std::string& reason, bool isDamaged) : std::runtime_error(reason), isDamaged_(isDamaged) {}
  bool isDamaged() const { return isDamaged_; }

 private:
  bool isDamaged_;
};

/// What the index knows of one file.
struct IndexedFile {
  std::int64_t id = 0;
  VideoFile file;          ///< its state when it was last seen
  bool isPresent = false;  ///< part of the library now; what is not may come back
  bool isKnown = false;    ///< looked into since it has been in that state
};

/// The user's videos, in a database that survives the app: one row for each file.
///
/// One connection to it. Any thread, one at a time. Other connections, of other threads or processes, read what was
/// committed last, and wait for nobody. Every operation may throw `IndexError`.
class Index {
 public:
  /// What becomes of an index that is there.
  enum class Contents {
    Kept,
    SetAside,  ///< in any case: it turned out to be damaged in a way that nothing told when it was opened
  };
  /// The index in the file `path`, made where there is none, its folder included; its schema is brought up to date.
  /// What is not an index, fails SQLite's quick check, or comes from a newer version of the app is set aside under
  /// the same name with ".damaged" behind it, and a new one is made. `order` gives the order of titles; rows that
  /// were sorted by another one are sorted anew; it outlives the index. Creating one is the business of the one
  /// process that writes. What is no regular file, or must not be written, is an error, not damage. Connections that
  /// were opened for reading before stay with what was set aside.
  static std::unique_ptr<Index> open(const std::string& path, const Order& order, Contents contents = Contents::Kept);
  /// For reading only, and without checking anything; none where there is no index of this version yet. What changes
  /// files throws.
  static std::unique_ptr<Index> openForReading(const std::string& path);

  virtual ~Index() = default;

  // Writing. All changes between `begin` and `commit` take effect together; outside of them each one does alone.
  // An error in between undoes all of them; so do another `begin` and the end of this connection. A `commit` with
  // nothing to commit is an error. Ids that do not exist are passed over.

  virtual void begin() = 0;
  virtual void commit() = 0;

  /// A file that was not known; it is present, and waits to be looked into. Its id. Where its path is known already,
  /// that row becomes this file.
  virtual std::int64_t add(const VideoFile& file) = 0;
  /// The same file with another state of its contents: it is present, waits to be looked into, and is not listed
  /// meanwhile. Another row with its path is removed.
  virtual void change(std::int64_t id, const VideoFile& file) = 0;
  /// The same contents under another path or on another device number: it is present, and what is known of it stays,
  /// except for a title that was made of its name. Another row with its path is removed.
  virtual void move(std::int64_t id, const VideoFile& file) = 0;
  virtual void setPresent(std::int64_t id, bool isPresent) = 0;
  virtual void remove(std::int64_t id) = 0;
  /// What was found in the file while it was in the state `file`; dropped if it is in another one by now.
  virtual void settle(std::int64_t id, const VideoFile& file, const Finding& finding) = 0;
  /// Everything that is present and was looked into in vain, because it could not be read or because it has no
  /// picture or duration, is looked into once more, as if it were new. What is listed stays so.
  virtual void forgetUnreadable() = 0;

  // Reading.

  /// The files that lie in `folder` itself, present or not, by path.
  virtual std::vector<IndexedFile> filesIn(const std::string& folder) const = 0;
  virtual std::optional<IndexedFile> fileAt(const std::string& path) const = 0;
  /// What the file at `path` is called; none where it was not looked into.
  virtual std::optional<std::string> titleAt(const std::string& path) const = 0;
  /// Files with this identity and state (device, inode, size and times), whatever their paths, by path.
  virtual std::vector<IndexedFile> filesLike(const VideoFile& file) const = 0;
  /// All folders in which there is a file, present or not, in the order of their bytes, without a slash at the end.
  virtual std::vector<std::string> folders() const = 0;
  /// Present files that wait to be looked into, oldest request first, `most` at most, those with ids in `except` left
  /// out.
  virtual std::vector<IndexedFile> waiting(std::size_t most, const std::vector<std::int64_t>& except) const = 0;

  struct Counts {
    std::size_t items = 0;       ///< listed under the media type that was asked for
    std::size_t waiting = 0;     ///< present, not looked into yet
    std::size_t unreadable = 0;  ///< present, looked into in vain
  };
  virtual Counts counts(std::uint64_t mediaType) const = 0;

  struct UnreadableFile {
    std::string path;
    std::string reason;
  };
  /// By path, `most` at most.
  virtual std::vector<UnreadableFile> unreadableFiles(std::size_t most) const = 0;

  /// What is present, readable, has a picture and a duration, and is of this type: by title, then by path. One
  /// read of the index; the answer holds no part of it open.
  virtual std::shared_ptr<const host::LibraryItems> items(std::uint64_t mediaType) const = 0;
};

}  // namespace medialibrary
