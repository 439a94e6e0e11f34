#pragma once

#include "hosts/gstreamer/Instant.h"
#include "hosts/gstreamer/Packing.h"

#include <functional>
#include <mutex>
#include <optional>

namespace gstreamer {

/// What to leave out while decoding takes longer than the film itself, so that the pictures that are decoded still
/// come about when their sound does: while they are late, those that no other picture needs; and where that is not
/// enough, all up to the next key frame that can be in time.
class Overload {
 public:
  /// `countDropped` is called for each picture that is left out, on the thread that the data come on.
  explicit Overload(std::function<void()> countDropped);

  /// Leads the data of one decoder, which must not outlive this.
  void lead(GstElement& decoder);
  /// A picture of this running time was decoded, and is `lateness` nanoseconds late (less than 0: early). Any thread.
  void note(GstClockTime runningTime, GstClockTimeDiff lateness);

 private:
  enum class Verdict { Decode, LeaveOut, LeaveOutAtItsTime };

  static GstPadProbeReturn see(GstPad* pad, GstPadProbeInfo* info, gpointer overload);
  void seeEvent(GstEvent& event);
  GstPadProbeReturn seePicture(GstPad& pad, GstBuffer& picture);
  Verdict judge(GstBuffer& picture, GstClockTime runningTime, std::optional<GstClockTime> timeNow);
  void begin();

  const std::function<void()> countDropped_;
  // Of the thread that the data come on.
  std::optional<Packing> packing_;
  GstSegment segment_;
  // Of both threads.
  std::mutex mutex_;
  GstClockTimeDiff lateness_ = 0;
  std::optional<Instant> lateSince_;  ///< by more than may be
  GstClockTimeDiff latenessThen_ = 0;
  /// Running time of the key frame that was leapt to. What is handed in after it and to be shown before it, needs
  /// what was left out; and how late pictures before it are, does not tell anything any more.
  GstClockTime landedAt_ = 0;
  bool leaps_ = false;  ///< leaves out everything until a key frame
};

}  // namespace gstreamer
