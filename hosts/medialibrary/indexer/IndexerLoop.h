#pragma once

#include "hosts/medialibrary/IndexerProcess.h"

#include <functional>

namespace medialibrary {

/// What looks into the file of one task. May throw `std::bad_alloc` when the file wants too much memory.
using LookInto = std::function<Finding(const IndexerTask&)>;

/// The exit status of an indexer to which a file was too much.
inline constexpr int exitOutOfMemory = 71;

/// Does the tasks that arrive at the descriptor `input`, one after the other, and reports to `output`: a note before
/// each file is opened, the answer afterwards. Returns the exit status of the process: 0 once the input has ended,
/// `exitOutOfMemory` at once when a look threw that (what is left of the memory is not to be relied on), 1 when
/// either end failed or was sent nonsense.
int runIndexerLoop(int input, int output, const LookInto& look);

}  // namespace medialibrary
