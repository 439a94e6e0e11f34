#pragma once

#include <string>

namespace qtquick {

/// Whether `folder`, which is /dev on a running system, has a device that drivers of graphics processors need: a
/// render or card node of the kernel's own (dri), or that of a maker's driver. Without one OpenGL is made in
/// software, which need not be asked for to be known: to ask it means loading a compiler of tens of megabytes. Any
/// thread.
bool hasGraphicsDevice(const std::string& folder);

}  // namespace qtquick
