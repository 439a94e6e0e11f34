#include "hosts/medialibrary/IndexRows.h"

#include "hosts/medialibrary/IndexSchema.h"
#include "hosts/medialibrary/Listing.h"
#include "hosts/medialibrary/Paths.h"
#include "hosts/medialibrary/Titles.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace medialibrary {

namespace {

/// How folders are compared: the root is empty.
std::string_view withoutSlash(std::string_view folder) {
  return folder.ends_with('/') ? folder.substr(0, folder.size() - 1) : folder;
}

/// SQLite has no unsigned numbers: the bits are kept.
std::int64_t stored(std::uint64_t number) {
  return static_cast<std::int64_t>(number);
}

/// Path and state, in the order of the columns wherever they are named.
Query& withFile(Query& query, const VideoFile& file) {
  return query.with(Blob{file.path})
      .with(stored(file.device))
      .with(stored(file.inode))
      .with(file.size)
      .with(file.modifiedSeconds)
      .with(file.modifiedNanoseconds);
}

/// A SELECT of whole files; `condition` is what follows FROM.
std::string selectFiles(std::string_view condition) {
  return "SELECT id, path, device, inode, size, modified_seconds, modified_nanoseconds, is_present, is_known "
         "FROM file " +
         std::string(condition);
}

IndexedFile fileOf(const Query& row) {
  IndexedFile found;
  found.id = row.integer(0);
  found.file.path = row.bytes(1);
  found.file.device = static_cast<dev_t>(row.integer(2));
  found.file.inode = static_cast<ino_t>(row.integer(3));
  found.file.size = row.integer(4);
  found.file.modifiedSeconds = row.integer(5);
  found.file.modifiedNanoseconds = row.integer(6);
  found.isPresent = row.integer(7) != 0;
  found.isKnown = row.integer(8) != 0;
  return found;
}

std::vector<IndexedFile> filesOf(Query& query) {
  std::vector<IndexedFile> files;
  while (query.next()) files.push_back(fileOf(query));
  return files;
}

/// What both kinds of connection can do.
class DatabaseIndex : public Index {
 public:
  explicit DatabaseIndex(std::unique_ptr<Database> database) : database_(std::move(database)) {}

  std::vector<IndexedFile> filesIn(const std::string& folder) const override {
    static const std::string statement = selectFiles("WHERE folder = ? ORDER BY path");
    Query query(*database_, statement);
    query.with(Blob{withoutSlash(folder)});
    return filesOf(query);
  }

  std::optional<IndexedFile> fileAt(const std::string& path) const override {
    static const std::string statement = selectFiles("WHERE path = ?");
    Query query(*database_, statement);
    query.with(Blob{path});
    if (!query.next()) return std::nullopt;
    return fileOf(query);
  }

  std::optional<std::string> titleAt(const std::string& path) const override {
    Query query(*database_, "SELECT title FROM file WHERE path = ? AND is_known = 1");
    query.with(Blob{path});
    if (!query.next()) return std::nullopt;
    return std::string(query.text(0));
  }

  std::vector<IndexedFile> filesLike(const VideoFile& file) const override {
    static const std::string statement = selectFiles(
        "WHERE device = ? AND inode = ? AND size = ? AND modified_seconds = ? AND modified_nanoseconds = ? "
        "ORDER BY path");
    Query query(*database_, statement);
    query.with(stored(file.device)).with(stored(file.inode)).with(file.size);
    query.with(file.modifiedSeconds).with(file.modifiedNanoseconds);
    return filesOf(query);
  }

  std::vector<std::string> folders() const override {
    Query query(*database_, "SELECT DISTINCT folder FROM file ORDER BY folder");
    std::vector<std::string> folders;
    while (query.next()) folders.emplace_back(query.bytes(0).empty() ? std::string_view("/") : query.bytes(0));
    return folders;
  }

  std::vector<IndexedFile> waiting(std::size_t most, const std::vector<std::int64_t>& except) const override {
    static const std::string statement =
        selectFiles("INDEXED BY waiting WHERE is_present = 1 AND is_known = 0 ORDER BY request, id");
    Query query(*database_, statement);
    std::vector<IndexedFile> files;
    while (files.size() < most && query.next()) {
      if (std::find(except.begin(), except.end(), query.integer(0)) == except.end()) files.push_back(fileOf(query));
    }
    return files;
  }

  Counts counts(std::uint64_t mediaType) const override {
    static const std::string statement =
        "SELECT (SELECT count(*) FROM file INDEXED BY listed WHERE media_type = ? AND " +
        std::string(listedFilesOnly) +
        "), (SELECT count(*) FROM file WHERE is_present = 1 AND is_known = 0)"
        ", (SELECT count(*) FROM file WHERE is_present = 1 AND is_known = 1 AND is_readable = 0)";
    Query query(*database_, statement);
    query.with(stored(mediaType)).next();
    const auto count = [&](int column) { return static_cast<std::size_t>(query.integer(column)); };
    return {count(0), count(1), count(2)};
  }

  std::vector<UnreadableFile> unreadableFiles(std::size_t most) const override {
    Query query(*database_,
                "SELECT path, reason FROM file WHERE is_present = 1 AND is_known = 1 AND is_readable = 0 "
                "ORDER BY path");
    std::vector<UnreadableFile> files;
    while (files.size() < most && query.next()) {
      files.push_back({std::string(query.bytes(0)), std::string(query.text(1))});
    }
    return files;
  }

  std::shared_ptr<const host::LibraryItems> items(std::uint64_t mediaType) const override {
    static const std::string statement = "SELECT path, title, duration FROM file WHERE media_type = ? AND " +
                                         std::string(listedFilesOnly) + " ORDER BY sort_key, path";
    auto listing = std::make_shared<Listing>();
    {
      Query query(*database_, statement);
      query.with(stored(mediaType));
      while (query.next()) listing->add(query.bytes(0), query.text(1), query.real(2));
    }
    listing->finish();
    database_->releaseMemory();
    return listing;
  }

 protected:
  Database& database() { return *database_; }
  const Database& database() const { return *database_; }

 private:
  std::unique_ptr<Database> database_;
};

/// One that only reads. The database itself refuses to be changed by it, so that what changes files is refused here
/// too, with the same kind of error.
class ReadingIndex final : public DatabaseIndex {
 public:
  using DatabaseIndex::DatabaseIndex;

  void begin() override { refuse(); }
  void commit() override { refuse(); }
  std::int64_t add(const VideoFile&) override { refuse(); }
  void change(std::int64_t, const VideoFile&) override { refuse(); }
  void move(std::int64_t, const VideoFile&) override { refuse(); }
  void setPresent(std::int64_t, bool) override { refuse(); }
  void remove(std::int64_t) override { refuse(); }
  void settle(std::int64_t, const VideoFile&, const Finding&) override { refuse(); }
  void forgetUnreadable() override { refuse(); }

 private:
  [[noreturn]] static void refuse() { throw IndexError("This connection to the index only reads", false); }
};

class WritingIndex final : public DatabaseIndex {
 public:
  WritingIndex(std::unique_ptr<Database> database, const Order& order)
      : DatabaseIndex(std::move(database)), order_(order) {
    sortAsOrdered();
    nextRequest_ = this->database().number(
                       "SELECT max(request) FROM file INDEXED BY waiting WHERE is_present = 1 AND is_known = 0") +
                   1;
  }

  void begin() override { transaction_.emplace(database()); }

  void commit() override {
    if (!transaction_) throw IndexError("There are no changes to commit: an error has undone them", false);
    orUndo([&] { transaction_->commit(); });
    transaction_.reset();
  }

  std::int64_t add(const VideoFile& file) override {
    std::int64_t id = 0;
    orUndo([&] {
      Query query(
          database(),
          "INSERT INTO file (path, device, inode, size, modified_seconds, modified_nanoseconds, folder, request, "
          "is_present, is_known) VALUES (?, ?, ?, ?, ?, ?, ?, ?, 1, 0) "
          "ON CONFLICT (path) DO UPDATE SET device = excluded.device, inode = excluded.inode, "
          "size = excluded.size, modified_seconds = excluded.modified_seconds, "
          "modified_nanoseconds = excluded.modified_nanoseconds, request = excluded.request, "
          "is_present = 1, is_known = 0 RETURNING id");
      withFile(query, file).with(Blob{folderOf(file.path)}).with(nextRequest_++);
      if (query.next()) id = query.integer(0);
      query.run();
    });
    return id;
  }

  void change(std::int64_t id, const VideoFile& file) override {
    orUndo([&] {
      Query query(database(),
                  "UPDATE OR REPLACE file SET path = ?, device = ?, inode = ?, size = ?, modified_seconds = ?, "
                  "modified_nanoseconds = ?, folder = ?, request = ?, is_present = 1, is_known = 0 WHERE id = ?");
      withFile(query, file).with(Blob{folderOf(file.path)}).with(nextRequest_++).with(id).run();
    });
  }

  void move(std::int64_t id, const VideoFile& file) override {
    orUndo([&] {
      const std::string title = titleOf(file.path, titleTag(id));
      Query query(database(),
                  "UPDATE OR REPLACE file SET path = ?, device = ?, inode = ?, size = ?, modified_seconds = ?, "
                  "modified_nanoseconds = ?, folder = ?, title = ?, sort_key = ?, is_present = 1 WHERE id = ?");
      withFile(query, file).with(Blob{folderOf(file.path)}).with(Text{title}).with(Blob{order_.key(title)}).with(id);
      query.run();
    });
  }

  void setPresent(std::int64_t id, bool isPresent) override {
    orUndo([&] {
      Query query(database(), "UPDATE file SET is_present = ? WHERE id = ?");
      query.with(std::int64_t{isPresent}).with(id).run();
    });
  }

  void remove(std::int64_t id) override {
    orUndo([&] { Query(database(), "DELETE FROM file WHERE id = ?").with(id).run(); });
  }

  void settle(std::int64_t id, const VideoFile& file, const Finding& finding) override {
    orUndo([&] {
      Query query(database(),
                  "UPDATE file SET is_known = 1, is_readable = ?, reason = ?, media_type = ?, title_tag = ?, "
                  "title = ?, sort_key = ?, duration = ?, rotation = ?, sound_tracks = ?, picture_tracks = ?, "
                  "has_picture = ?, is_protected = ? "
                  "WHERE path = ? AND device = ? AND inode = ? AND size = ? AND modified_seconds = ? "
                  "AND modified_nanoseconds = ? AND id = ?");
      withFinding(query, titleOf(file.path, finding.title), finding);
      withFile(query, file).with(id).run();
    });
  }

  void forgetUnreadable() override {
    orUndo([&] {
      Query query(database(),
                  "UPDATE file SET is_known = 0, request = ? WHERE is_present = 1 AND is_known = 1 "
                  "AND NOT (is_readable = 1 AND has_picture = 1 AND duration > 0)");
      query.with(nextRequest_++).run();
    });
  }

 private:
  /// What fails undoes everything since `begin`, because SQLite itself undoes sometimes all and sometimes only the
  /// statement.
  template <typename Changes>
  void orUndo(const Changes& changes) {
    try {
      changes();
    } catch (const IndexError&) {
      transaction_.reset();
      throw;
    }
  }

  Query& withFinding(Query& query, const std::string& title, const Finding& finding) const {
    query.with(std::int64_t{finding.isReadable}).with(Text{finding.reason}).with(stored(finding.mediaType));
    if (finding.title) {
      query.with(Text{*finding.title});
    } else {
      query.withNothing();
    }
    query.with(Text{title}).with(Blob{order_.key(title)});
    query.with(std::isfinite(finding.duration) ? finding.duration : 0.0);  // SQLite has no number that is none
    query.with(std::int64_t{finding.rotation});
    query.with(std::int64_t{finding.soundTracks}).with(std::int64_t{finding.pictureTracks});
    return query.with(std::int64_t{finding.hasPicture}).with(std::int64_t{finding.isProtected});
  }

  std::optional<std::string> titleTag(std::int64_t id) const {
    Query query(database(), "SELECT title_tag FROM file WHERE id = ? AND title_tag IS NOT NULL");
    query.with(id);
    if (!query.next()) return std::nullopt;
    return std::string(query.text(0));
  }

  void sortAsOrdered() {
    const std::string name = order_.name();
    if (database().text("SELECT value FROM setting WHERE name = 'order'") == name) return;
    Transaction transaction(database());
    std::int64_t last = 0;
    while (sortFilesBehind(last)) {
    }
    Query(database(), "REPLACE INTO setting (name, value) VALUES ('order', ?)").with(Text{name}).run();
    transaction.commit();
  }

  /// Makes the keys of some files with ids above `last` anew, which becomes the last of them; false behind the end.
  bool sortFilesBehind(std::int64_t& last) {
    struct Key {
      std::int64_t id = 0;
      std::string bytes;
    };
    std::vector<Key> keys;
    {
      Query query(database(), "SELECT id, title FROM file WHERE id > ? ORDER BY id LIMIT 1000");
      query.with(last);
      while (query.next()) keys.push_back({query.integer(0), order_.key(std::string(query.text(1)))});
    }
    for (const Key& key : keys) {
      Query query(database(), "UPDATE file SET sort_key = ? WHERE id = ?");
      query.with(Blob{key.bytes}).with(key.id).run();
      last = key.id;
    }
    return !keys.empty();
  }

  const Order& order_;
  std::int64_t nextRequest_ = 1;
  std::optional<Transaction> transaction_;
};

}  // namespace

std::unique_ptr<Index> indexForReading(std::unique_ptr<Database> database) {
  return std::make_unique<ReadingIndex>(std::move(database));
}

std::unique_ptr<Index> indexForWriting(std::unique_ptr<Database> database, const Order& order) {
  return std::make_unique<WritingIndex>(std::move(database), order);
}

}  // namespace medialibrary
