#pragma once

#include "platform/host/MediaEngine.h"

#include <string>

namespace probe {

/// What `look` tells of the medium at `path`, by a module that the first call loads, with FFmpeg's libraries. Blocks;
/// any thread; never throws. Where the module is missing no file is readable, and standard error has the reason.
host::MediaFacts loadedLook(const std::string& path, double deadlineSeconds);

}  // namespace probe
