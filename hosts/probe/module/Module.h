#pragma once

#include "platform/host/MediaEngine.h"

#include <string>

namespace probe {

/// What the module has to offer, by name and type: `facts` become what `look` tells of the medium at `path`.
inline constexpr const char* moduleLookName = "quillopLook";
using ModuleLook = void(const std::string& path, double deadlineSeconds, host::MediaFacts& facts);

}  // namespace probe
