#pragma once

#include "hosts/medialibrary/Database.h"

#include <cstdint>
#include <string>
#include <vector>

namespace medialibrary {

/// The statements that take a database from one version of its schema to the next; the first ones begin with nothing.
using SchemaSteps = std::vector<std::string>;

/// The history of the index's schema. What has been delivered once is never changed: new steps follow at the end.
const SchemaSteps& indexSchema();

/// Which of these the database is; what has neither a table nor a version is one of version 0.
enum class SchemaState {
  UpToDate,
  Older,    ///< can be brought up to date, also because it is still empty
  Newer,    ///< comes from a later version of the app
  Foreign,  ///< is something else's database
};
SchemaState schemaState(const Database& database, const SchemaSteps& steps);

/// Does the steps that are missing from one that is older, each in a transaction of its own: stopped in between, the
/// next call goes on there.
void bringUpToDate(Database& database, const SchemaSteps& steps);

/// The part of a WHERE clause that only listed files fulfil, exactly as the indexes of the schema have it, because
/// SQLite uses them for nothing else.
extern const char* const listedFilesOnly;

}  // namespace medialibrary
