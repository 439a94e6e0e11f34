#pragma once

#include <cstdint>
#include <string>

namespace gstreamer {

/// What went wrong in a torture; empty where nothing did.
struct Ordeal {
  int commands = 0;  ///< how many were given
  std::string fault;
};

/// Gives a real engine `count` commands that follow from `seed`, as two films of the app could give them: load,
/// close, play and pause, seek, volume, to the end, another size, into the background and back; of whole films,
/// short, silent and damaged ones. Looks after each one whether what must always be true is.
Ordeal torture(std::uint32_t seed, int count);

}  // namespace gstreamer
