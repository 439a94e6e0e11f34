#pragma once

#include "hosts/medialibrary/indexer/IndexerLoop.h"

#include <span>

namespace medialibrary {

/// The whole life of an indexer, whose arguments are those of its program: the process id of its starter, the bytes
/// of memory it may hold, and "urgent" or "background". Confines itself, then serves its standard input and output
/// with `look`. Returns the exit status: that of `runIndexerLoop`, or 2 for other arguments.
int indexerMain(std::span<char*> arguments, const LookInto& look);

}  // namespace medialibrary
