#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace medialibrary {

/// Bytes that need not be text, as a BLOB.
struct Blob {
  std::string_view bytes;
};

/// UTF-8 without zero bytes, as a TEXT.
struct Text {
  std::string_view characters;
};

/// A connection to an SQLite database in a file. One thread at a time. Everything throws `IndexError`, with the path
/// of the file in its reason.
class Database {
 public:
  enum class Purpose {
    Writing,  ///< made where there is none, readable by its owner alone
    Reading,  ///< has to be there; nothing in it can be changed
  };

  Database(const std::string& path, Purpose purpose);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  /// Runs statements, separated by semicolons, that have no answer anybody wants.
  void run(const std::string& statements);
  /// The first column of the first row; 0 where there is none.
  std::int64_t number(std::string_view statement) const;
  /// The same as text; empty where there is none.
  std::string text(std::string_view statement) const;
  /// Whether a transaction is open. SQLite ends one by itself when it cannot go on, on a full disk for example.
  bool isInTransaction() const;
  /// Puts the files in order when this is the last connection to end: what the write-ahead log holds is written into
  /// the database, and the log removed. Otherwise they stay as they are, which suits one that only reads, and one
  /// whose database is not known to be sound.
  void writeLogBackAtTheEnd();
  /// Gives the memory of pages that are only kept for later back.
  void releaseMemory() const;

 private:
  friend class Query;

  struct Closer {
    void operator()(sqlite3* handle) const;
  };
  struct Finalizer {
    void operator()(sqlite3_stmt* handle) const;
  };
  using PreparedStatement = std::unique_ptr<sqlite3_stmt, Finalizer>;

  sqlite3_stmt* prepared(std::string_view statement) const;
  [[noreturn]] void fail(int result) const;
  /// For statements that SQLite cannot make sense of. They are constants, so that a table or a column that is
  /// missing, or there already, is the fault of the file.
  [[noreturn]] void failToUnderstand(int result) const;

  std::string path_;
  std::unique_ptr<sqlite3, Closer> connection_;
  mutable std::map<std::string, PreparedStatement, std::less<>> statements_;  // last: they end before the connection
};

/// One use of a statement, which stays prepared for the next one. At most one at a time for the same statement and
/// database. As long as it has rows left and lives, the connection reads the state in which it began.
class Query {
 public:
  Query(const Database& database, std::string_view statement);
  ~Query();
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  /// The value of the next parameter. Text and bytes are copied.
  Query& with(std::int64_t value);
  Query& with(double value);
  Query& with(Text value);
  Query& with(Blob value);
  Query& withNothing();

  /// On to the next row; false behind the last one.
  bool next();
  /// To the end, for what has no rows.
  void run();

  /// Columns of the present row, from 0. What is text or bytes is valid until the next row.
  std::int64_t integer(int column) const;
  double real(int column) const;
  std::string_view text(int column) const;
  std::string_view bytes(int column) const;

 private:
  void check(int result) const;

  const Database& database_;
  sqlite3_stmt* statement_;
  int parameters_ = 0;
};

/// Changes that take effect together: undone at the end of its life unless it was committed.
class Transaction {
 public:
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit();

 private:
  Database& database_;
};

}  // namespace medialibrary
