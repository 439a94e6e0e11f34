#include "hosts/medialibrary/IndexSchema.h"

namespace medialibrary {

namespace {

/// "QuLi": what tells an index from other databases (SQLite, "Database File Format", 1.3.17).
constexpr std::int64_t applicationId = 0x51754C69;

/// Times are those of stat(2). Numbers that are unsigned elsewhere keep their 64 bits here. What stands from
/// `is_readable` on means nothing before `is_known` is 1.
///
/// The index `listing` holds all that a query of the library answers with, in its order, and all that it asks for,
/// though that is the same in each of its rows: without it SQLite would look into the table for each row. The index
/// `listed` is the same thing for counting, which does not have to read the titles then.
constexpr const char* version1 = R"(
  CREATE TABLE file (
    id INTEGER PRIMARY KEY,
    path BLOB NOT NULL UNIQUE,
    folder BLOB NOT NULL,
    device INTEGER NOT NULL,
    inode INTEGER NOT NULL,
    size INTEGER NOT NULL,
    modified_seconds INTEGER NOT NULL,
    modified_nanoseconds INTEGER NOT NULL,
    is_present INTEGER NOT NULL,
    is_known INTEGER NOT NULL,
    request INTEGER NOT NULL,
    is_readable INTEGER NOT NULL DEFAULT 0,
    reason TEXT NOT NULL DEFAULT '',
    media_type INTEGER NOT NULL DEFAULT 0,
    title_tag TEXT,
    title TEXT NOT NULL DEFAULT '',
    sort_key BLOB NOT NULL DEFAULT x'',
    duration REAL NOT NULL DEFAULT 0,
    rotation INTEGER NOT NULL DEFAULT 0,
    sound_tracks INTEGER NOT NULL DEFAULT 0,
    picture_tracks INTEGER NOT NULL DEFAULT 0,
    has_picture INTEGER NOT NULL DEFAULT 0,
    is_protected INTEGER NOT NULL DEFAULT 0
  ) STRICT;
  CREATE INDEX file_folder ON file (folder);
  CREATE INDEX file_identity ON file (inode, device);
  CREATE INDEX file_state ON file (is_present, is_known, is_readable);
  CREATE INDEX waiting ON file (request) WHERE is_present = 1 AND is_known = 0;
  CREATE INDEX listed ON file (media_type, is_present, is_known, is_readable, has_picture, duration)
    WHERE is_present = 1 AND is_known = 1 AND is_readable = 1 AND has_picture = 1 AND duration > 0;
  CREATE INDEX listing ON file (
      media_type, sort_key, path, title, duration, is_present, is_known, is_readable, has_picture)
    WHERE is_present = 1 AND is_known = 1 AND is_readable = 1 AND has_picture = 1 AND duration > 0;
  CREATE TABLE setting (name TEXT PRIMARY KEY, value TEXT NOT NULL) STRICT;
)";

std::int64_t latestVersion(const SchemaSteps& steps) {
  return static_cast<std::int64_t>(steps.size());
}

std::int64_t versionOf(const Database& database) {
  return database.number("PRAGMA user_version");
}

}  // namespace

const char* const listedFilesOnly =
    "is_present = 1 AND is_known = 1 AND is_readable = 1 AND has_picture = 1 AND duration > 0";

const SchemaSteps& indexSchema() {
  static const SchemaSteps steps = {version1};
  return steps;
}

SchemaState schemaState(const Database& database, const SchemaSteps& steps) {
  const std::int64_t application = database.number("PRAGMA application_id");
  const std::int64_t version = versionOf(database);
  if (application == 0 && version == 0 && database.number("SELECT count(*) FROM sqlite_schema") == 0) {
    return SchemaState::Older;
  }
  if (application != applicationId || version < 1) return SchemaState::Foreign;
  if (version > latestVersion(steps)) return SchemaState::Newer;
  return version < latestVersion(steps) ? SchemaState::Older : SchemaState::UpToDate;
}

void bringUpToDate(Database& database, const SchemaSteps& steps) {
  for (std::int64_t version = versionOf(database); version < latestVersion(steps); ++version) {
    Transaction transaction(database);
    database.run(steps[static_cast<std::size_t>(version)]);
    database.run("PRAGMA application_id = " + std::to_string(applicationId));
    database.run("PRAGMA user_version = " + std::to_string(version + 1));
    transaction.commit();
  }
}

}  // namespace medialibrary
