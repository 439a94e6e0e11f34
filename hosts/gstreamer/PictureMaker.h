#pragma once

#include "hosts/gstreamer/Handles.h"
#include "hosts/gstreamer/PictureBoard.h"

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace gstreamer {

using host::Orientation;

/// When in the film a frame is, in seconds; infinite where it does not tell.
double timeOf(GstSample& frame);

class PictureDrawing;

/// Makes decoded frames into pictures of the board's box. Any thread.
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

  void make();

  std::shared_ptr<PictureBoard> board_;
  std::mutex mutex_;
  Sample frame_;
  Orientation orientation_;
  std::shared_ptr<Pool> pool_;
  std::unique_ptr<PictureDrawing> drawing_;
};

}  // namespace gstreamer
