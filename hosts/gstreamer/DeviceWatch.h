#pragma once

#include "hosts/gstreamer/Handles.h"
#include "hosts/gstreamer/Instant.h"

#include <mutex>
#include <optional>

namespace gstreamer {

/// Compares what a sound device really plays with what it should be playing by now. Only for a sink that leaves its
/// device its own time ("sync" off); any other one sees to that by itself, and is never found to lag.
class DeviceWatch {
 public:
  /// Watches what goes into `sink`, for as long as the pipeline that it is part of can run.
  void attach(GstElement& sink);
  /// Seconds by which what is heard at this moment is behind the pipeline's running time; negative when it is ahead.
  /// None while the device does not play yet, or where the machine took too long to tell. May wait for the sound
  /// server.
  std::optional<double> lag() const;
  /// Sound from before does not count any more: the pipeline is about to be sought, or to stand still.
  void forget();

 private:
  static GstPadProbeReturn seeBuffer(GstPad* pad, GstPadProbeInfo* info, gpointer watch);
  void note(GstPad& pad, GstBuffer& buffer);

  GstElement* sink_ = nullptr;
  mutable std::mutex mutex_;
  /// Running time minus the device's own time of the same sample.
  std::optional<GstClockTimeDiff> difference_;
};

}  // namespace gstreamer
