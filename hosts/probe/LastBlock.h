#pragma once

#include "hosts/probe/OpenMedia.h"

namespace probe {

/// Seconds at which the last picture or sound of a Matroska or WebM file begins, which tells how long a recording is
/// that was written without coming back to its header. Reads the end of the file alone. 0 where it does not tell, and
/// for other containers.
double timeOfLastBlock(OpenMedia& media);

}  // namespace probe
