#pragma once

#include "hosts/gstreamer/Packing.h"

#include <atomic>
#include <optional>

namespace gstreamer {

/// The way from the key frame, where decoding has to begin after a seek, to the place that was sought. What is
/// neither shown nor needed by another picture is not decoded, and where the way is long, all processors decode,
/// until the film comes to a fresh start. The pictures come out as they would have otherwise. Where only the key
/// frame is wanted, it comes out without waiting for what might have to be shown before it.
class Shortcut {
 public:
  /// Leads the data of one decoder, which must not outlive the shortcut.
  void lead(GstElement& decoder);
  /// Whether only a key frame is wanted of the seek that is about to come: it is made the last picture. Any thread.
  void endAtKeyFrame(bool ends) { endsAtKeyFrame_ = ends; }

 private:
  enum class Pace { Usual, Hurried };

  static GstPadProbeReturn see(GstPad* pad, GstPadProbeInfo* info, gpointer shortcut);
  void seeEvent(GstEvent& event);
  GstPadProbeReturn seePicture(GstPad& pad, GstBuffer& picture);
  void choosePace(GstPad& pad, GstBuffer& picture, bool isFirst);
  void setPace(GstPad& pad, Pace pace);
  bool leavesOut(GstBuffer& picture) const;

  std::atomic<bool> endsAtKeyFrame_ = false;
  // Of the thread that the data come on.
  std::optional<Packing> packing_;
  GstClockTime place_ = 0;
  bool begins_ = false;  ///< nothing came yet since the seek
  Pace pace_ = Pace::Usual;
};

}  // namespace gstreamer
