#pragma once

#include "hosts/gstreamer/Handles.h"

#include <atomic>
#include <span>

namespace gstreamer {

/// The clock that some containers have of their own (those of MPEG), which was running already when the film began.
/// For all others the medium's time is the film's. What it is told it is told by GStreamer's threads, and it may be
/// asked on any.
class ContainerClock {
 public:
  /// `factory` makes an element of the pipeline, a parser perhaps that goes by such a clock.
  void meet(const char* factory);
  /// Follows what comes out of `pad`, the stream of the parser that is played. Must outlive the pad.
  void follow(GstPad& pad);

  /// What the clock shows at `position`, in seconds of the film.
  GstClockTime timeAt(double position) const;
  /// Whether the parser lands somewhere near the place that it is to seek, and not at a key frame. It has to be sent
  /// ahead of the place then, by as many seconds, and by more where that was not enough.
  bool isRough() const { return isRough_; }
  static std::span<const double> runUps();
  /// After a seek: what comes is to begin at `time`.
  void beginAt(GstClockTime time) { beginsAt_ = time; }
  /// Whether what began with a picture of `time` was not sent ahead far enough.
  bool isTooLate(GstClockTime time) const;

 private:
  static GstPadProbeReturn seeSegment(GstPad* pad, GstPadProbeInfo* info, gpointer clock);

  std::atomic<bool> isThere_ = false;
  std::atomic<bool> isRough_ = false;
  /// What it showed when the film began.
  std::atomic<GstClockTime> origin_ = 0;
  std::atomic<GstClockTime> beginsAt_ = GST_CLOCK_TIME_NONE;
};

}  // namespace gstreamer
