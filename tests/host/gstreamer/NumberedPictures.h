#pragma once

#include "platform/host/MediaEngine.h"

#include <string>
#include <vector>

namespace gstreamer {

/// Clips each of whose pictures tells its number: picture `n` is as bright as 16 + 2n. There are at most 110.
struct NumberedPictures {
  int count = 90;
  int rate = 30;  ///< pictures a second
  bool isHeard = false;

  /// The clip `name`, encoded as ffmpeg's options `encoding` say.
  std::string clip(const std::string& name, const std::vector<std::string>& encoding) const;
};

/// Ninety of them in three seconds, without sound; a key frame each one and a half.
std::string numberedPictures();

/// The number that a picture of such a clip tells, as exactly as its shade does.
double shadeNumber(const host::Picture& picture);
int numberOf(const host::Picture& picture);

}  // namespace gstreamer
