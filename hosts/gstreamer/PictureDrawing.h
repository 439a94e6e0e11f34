#pragma once

#include "hosts/gstreamer/MappedFrame.h"

#include <memory>

namespace gstreamer {

using host::Orientation;

/// The formats of frames that can be drawn, as GStreamer's caps write them.
extern const char* const takenFormats;

/// The size of the upright picture of square pixels that fits into `box` with its proportions kept; at least 1 x 1.
Box fitted(const GstVideoInfo& frame, Orientation orientation, Box box);

/// From one row of so many pixels to the next, in bytes.
int strideOf(int width);

/// Memory of pixels, or of one component of them.
struct Room {
  std::uint8_t* data = nullptr;
  int stride = 0;  ///< bytes

  std::uint16_t* wide() const { return static_cast<std::uint16_t*>(static_cast<void*>(data)); }
  int wideStride() const { return stride / 2; }
  Plane plane() const { return {data, stride}; }
};

/// Scales, converts and turns one frame at a time: scales the planes straight to the final size and only then
/// converts what is left of them, which costs a tenth of the other order. Keeps the room for what lies between the
/// steps. One thread at a time.
class PictureDrawing {
 public:
  PictureDrawing();
  ~PictureDrawing();

  /// The frame, `upright` in size and orientation, as pixels of four bytes into `target`. False for a format it does
  /// not know.
  bool draw(const MappedFrame& frame, Orientation orientation, Box upright, Room target);

 private:
  class Steps;

  std::unique_ptr<Steps> steps_;
};

}  // namespace gstreamer
