#pragma once

#include "hosts/medialibrary/Database.h"
#include "hosts/medialibrary/Index.h"

#include <memory>

namespace medialibrary {

/// The rows of an index in `database`, which is sound and has the present schema; what Index promises of one that was
/// opened for reading.
std::unique_ptr<Index> indexForReading(std::unique_ptr<Database> database);
/// The same of one that was opened for writing. Rows that were not sorted by `order`, which outlives the index, are
/// sorted anew. Throws IndexError.
std::unique_ptr<Index> indexForWriting(std::unique_ptr<Database> database, const Order& order);

}  // namespace medialibrary
