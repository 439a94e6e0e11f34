#pragma once

#include "hosts/medialibrary/IndexerProcess.h"

namespace medialibrary {

/// Looks into the file of `task`, and sees to its thumbnail: where a picture is wanted and the user's thumbnail cache
/// has no valid one of that size or larger, the film's still is stored there. Blocks for as long as it takes. Throws
/// `std::bad_alloc` when there is not enough memory for the file.
Finding lookInto(const IndexerTask& task);

}  // namespace medialibrary
