#include "hosts/medialibrary/Database.h"

#include "hosts/medialibrary/Index.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <utility>

namespace medialibrary {

namespace {

/// Nobody holds a lock for long: a reader holds none that a writer waits for, and the only ones that it waits for
/// itself are those under which a log that a killed writer left behind is read again, or written back at the end.
constexpr int longestWaitForLocks = 5'000;  // milliseconds

/// The results that mean that the contents of the file are wrong (SQLite, "Result and Error Codes"), however healthy
/// disk and system are.
bool meansDamage(int result) {
  switch (result & 0xFF) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
      return true;
    default:
      return false;
  }
}

/// SQLite would let everybody read a new file, and gives the files beside it the same mode. One that is there must
/// not be opened here: closing it again would drop the locks of all connections in this process.
void makeForOwnerAlone(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (descriptor >= 0) ::close(descriptor);
}

}  // namespace

void Database::Closer::operator()(sqlite3* handle) const {
  sqlite3_close(handle);
}

void Database::Finalizer::operator()(sqlite3_stmt* handle) const {
  sqlite3_finalize(handle);
}

Database::Database(const std::string& path, Purpose purpose) : path_(path) {
  const bool writes = purpose == Purpose::Writing;
  if (writes) makeForOwnerAlone(path);
  // One that only reads takes part in the write-ahead log too, which needs to write to the files beside the database.
  sqlite3* connection = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &connection, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  connection_.reset(connection);
  if (result != SQLITE_OK) fail(result);
  sqlite3_extended_result_codes(connection, 1);
  sqlite3_busy_timeout(connection, longestWaitForLocks);
  if (sqlite3_db_readonly(connection, "main") != 0) fail(SQLITE_READONLY);
  // The last connection would write the log back into the database and remove it.
  sqlite3_db_config(connection, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  if (!writes) run("PRAGMA query_only = ON");
}

Database::~Database() = default;

void Database::run(const std::string& statements) {
  const int result = sqlite3_exec(connection_.get(), statements.c_str(), nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) failToUnderstand(result);
}

std::int64_t Database::number(std::string_view statement) const {
  Query query(*this, statement);
  return query.next() ? query.integer(0) : 0;
}

std::string Database::text(std::string_view statement) const {
  Query query(*this, statement);
  return query.next() ? std::string(query.text(0)) : std::string();
}

bool Database::isInTransaction() const {
  return sqlite3_get_autocommit(connection_.get()) == 0;
}

void Database::writeLogBackAtTheEnd() {
  sqlite3_db_config(connection_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
}

void Database::releaseMemory() const {
  sqlite3_db_release_memory(connection_.get());
}

sqlite3_stmt* Database::prepared(std::string_view statement) const {
  const auto known = statements_.find(statement);
  if (known != statements_.end()) return known->second.get();
  sqlite3_stmt* handle = nullptr;
  const int result = sqlite3_prepare_v3(connection_.get(), statement.data(), static_cast<int>(statement.size()),
                                        SQLITE_PREPARE_PERSISTENT, &handle, nullptr);
  PreparedStatement owned(handle);
  if (result != SQLITE_OK) failToUnderstand(result);
  return statements_.emplace(statement, std::move(owned)).first->second.get();
}

void Database::fail(int result) const {
  const bool hasMessage = connection_ != nullptr && (sqlite3_errcode(connection_.get()) & 0xFF) == (result & 0xFF);
  const char* message = hasMessage ? sqlite3_errmsg(connection_.get()) : sqlite3_errstr(result);
  throw IndexError(path_ + ": " + message, meansDamage(result));
}

void Database::failToUnderstand(int result) const {
  if ((result & 0xFF) == SQLITE_ERROR) throw IndexError(path_ + ": " + sqlite3_errmsg(connection_.get()), true);
  fail(result);
}

Query::Query(const Database& database, std::string_view statement)
    : database_(database), statement_(database.prepared(statement)) {}

Query::~Query() {
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

Query& Query::with(std::int64_t value) {
  check(sqlite3_bind_int64(statement_, ++parameters_, value));
  return *this;
}

Query& Query::with(double value) {
  check(sqlite3_bind_double(statement_, ++parameters_, value));
  return *this;
}

Query& Query::with(Text value) {
  const char* characters = value.characters.empty() ? "" : value.characters.data();  // no address would mean NULL
  check(sqlite3_bind_text64(statement_, ++parameters_, characters, value.characters.size(), SQLITE_TRANSIENT,
                            SQLITE_UTF8));
  return *this;
}

Query& Query::with(Blob value) {
  const char* bytes = value.bytes.empty() ? "" : value.bytes.data();
  check(sqlite3_bind_blob64(statement_, ++parameters_, bytes, value.bytes.size(), SQLITE_TRANSIENT));
  return *this;
}

Query& Query::withNothing() {
  check(sqlite3_bind_null(statement_, ++parameters_));
  return *this;
}

bool Query::next() {
  const int result = sqlite3_step(statement_);
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) database_.fail(result);
  return false;
}

void Query::run() {
  while (next()) {
  }
}

std::int64_t Query::integer(int column) const {
  return sqlite3_column_int64(statement_, column);
}

double Query::real(int column) const {
  return sqlite3_column_double(statement_, column);
}

std::string_view Query::text(int column) const {
  const auto* characters = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
  if (characters == nullptr) return {};
  return {characters, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

std::string_view Query::bytes(int column) const {
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_, column));
  if (bytes == nullptr) return {};
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

void Query::check(int result) const {
  if (result != SQLITE_OK) database_.fail(result);
}

Transaction::Transaction(Database& database) : database_(database) {
  Query(database, "BEGIN IMMEDIATE").run();  // so that waiting for a lock happens here and not in the middle
}

Transaction::~Transaction() {
  if (!database_.isInTransaction()) return;
  try {
    Query(database_, "ROLLBACK").run();
  } catch (const IndexError&) {
    // Then it lasts until the connection ends, which undoes it as well.
  }
}

void Transaction::commit() {
  Query(database_, "COMMIT").run();
}

}  // namespace medialibrary
