#pragma once

namespace desktop {

/// From now on memory that is no longer used goes back to the system rather than being kept for later. To be called
/// once, before there are other threads.
void returnFreedMemory();

}  // namespace desktop
