#pragma once

#include "hosts/gstreamer/Handles.h"
#include "hosts/gstreamer/PictureBoard.h"

#include <gst/video/video.h>

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace gstreamer {

using host::Orientation;

/// The size of the upright picture of square pixels that fits into `box` with its proportions kept; at least 1 x 1.
Box fitted(const GstVideoInfo& frame, Orientation orientation, Box box);

/// The formats of frames that are taken as they are, as GStreamer's caps write them.
extern const char* const takenFormats;

/// When in the film a frame is, in seconds; infinite where it does not tell.
double timeOf(GstSample& frame);

/// Makes decoded frames into pictures of the board's box: scales the planes straight to the final size and only then
/// converts what is left of them, which costs a tenth of the other order. Any thread.
class PictureMaker {
 public:
  explicit PictureMaker(std::shared_ptr<PictureBoard> board);
  ~PictureMaker();

  /// A new frame. It is kept, for when the box changes.
  void take(Sample frame, Orientation orientation);
  /// The kept frame again, in the box as it is now.
  void makeAgain();
  /// Lets go of the kept frame.
  void forget();
  /// When in the film the kept frame is, in seconds; none without one.
  std::optional<double> time();

 private:
  class Pool;
  class Drawing;

  void make();

  std::shared_ptr<PictureBoard> board_;
  std::mutex mutex_;
  Sample frame_;
  Orientation orientation_;
  std::shared_ptr<Pool> pool_;
  std::unique_ptr<Drawing> drawing_;
};

}  // namespace gstreamer
