#include "hosts/medialibrary/Index.h"

#include "hosts/medialibrary/Database.h"
#include "hosts/medialibrary/IndexRows.h"
#include "hosts/medialibrary/IndexSchema.h"
#include "hosts/medialibrary/Paths.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

namespace medialibrary {

namespace {

/// SQLite only says that it cannot open such a file, or waits for an end that never comes.
void expectRegularFile(const std::string& path) {
  struct stat facts {};
  if (::stat(path.c_str(), &facts) == 0 && !S_ISREG(facts.st_mode)) {
    throw IndexError(path + ": not a regular file", false);
  }
}

/// SQLite would take less than its smallest page for an empty database, and write over it.
void expectNothingOrAPage(const std::string& path) {
  constexpr off_t smallestPage = 512;  // SQLite, "Database File Format", 1.3.2
  struct stat facts {};
  if (::stat(path.c_str(), &facts) == 0 && facts.st_size > 0 && facts.st_size < smallestPage) {
    throw IndexError(path + ": too short for an index of videos", true);
  }
}

void expectSound(const Database& database, const std::string& path) {
  const SchemaState state = schemaState(database, indexSchema());
  if (state == SchemaState::Foreign) throw IndexError(path + ": not an index of videos", true);
  if (state == SchemaState::Newer) throw IndexError(path + ": made by a newer version of the app", true);
  const std::string complaint = database.text("PRAGMA quick_check(1)");
  if (complaint != "ok") throw IndexError(path + ": " + complaint, true);
}

std::unique_ptr<Index> openForWriting(const std::string& path, const Order& order) {
  expectNothingOrAPage(path);
  auto database = std::make_unique<Database>(path, Database::Purpose::Writing);
  expectSound(*database, path);
  database->writeLogBackAtTheEnd();
  // With a write-ahead log, readers and the writer do not wait for each other. A power failure may cost the last
  // transactions then, which are only found out again, but never the whole.
  database->run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA journal_size_limit = 16777216");
  bringUpToDate(*database, indexSchema());
  return indexForWriting(std::move(database), order);
}

/// Renames the database and what SQLite keeps beside it, whose names it makes from that of the database. The database
/// goes first: what is left over without one is removed by SQLite.
void setAside(const std::string& path) {
  const std::string aside = path + ".damaged";
  for (const char* ending : {"", "-journal", "-wal", "-shm"}) {
    if (std::rename((path + ending).c_str(), (aside + ending).c_str()) == 0) continue;
    if (errno != ENOENT) throw IndexError(path + ending + " cannot be set aside: " + std::strerror(errno), false);
    std::remove((aside + ending).c_str());  // of what was set aside before
  }
}

}  // namespace

std::unique_ptr<Index> Index::open(const std::string& path, const Order& order, Contents contents) {
  makeFolder(folderOf(path));
  expectRegularFile(path);
  try {
    if (contents == Contents::Kept) return openForWriting(path, order);
  } catch (const IndexError& error) {
    if (!error.isDamaged()) throw;
  }
  setAside(path);
  return openForWriting(path, order);
}

std::unique_ptr<Index> Index::openForReading(const std::string& path) {
  struct stat facts {};
  if (::stat(path.c_str(), &facts) != 0 && (errno == ENOENT || errno == ENOTDIR)) return nullptr;
  expectRegularFile(path);
  auto database = std::make_unique<Database>(path, Database::Purpose::Reading);
  if (schemaState(*database, indexSchema()) != SchemaState::UpToDate) return nullptr;
  return indexForReading(std::move(database));
}

}  // namespace medialibrary
