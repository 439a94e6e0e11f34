#include "hosts/gstreamer/ContainerClock.h"

#include "hosts/gstreamer/Instant.h"
#include "hosts/gstreamer/Segment.h"

#include <array>

namespace gstreamer {

namespace {

/// The first one has neither an index nor marks where key frames are: its parser goes to where the clock shows the
/// time, behind the pictures of that time. What comes before the place is decoded and left out.
constexpr const char* programStreamParser = "mpegpsdemux";
constexpr const char* transportStreamParser = "tsdemux";
/// Seconds.
constexpr std::array runUpsToTry = {2.0, 8.0, 32.0};
/// A first picture that begins later after the place than this tells that the run-up was too short.
constexpr GstClockTime mostLateStart = 150 * GST_MSECOND;

/// The same segment, of which nothing before `begin` is to be played. Takes `event` and gives another one.
GstEvent* beginningAt(GstClockTime begin, GstEvent* event) {
  return withSegment(event,
                     [begin](GstSegment& segment) { segment.start = segment.time = segment.position = begin; });
}

}  // namespace

void ContainerClock::meet(const char* factory) {
  if (g_str_equal(factory, programStreamParser)) isThere_ = isRough_ = true;
  if (g_str_equal(factory, transportStreamParser)) isThere_ = true;
}

void ContainerClock::follow(GstPad& pad) {
  if (isThere_) gst_pad_add_probe(&pad, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, seeSegment, this, nullptr);
}

GstClockTime ContainerClock::timeAt(double position) const {
  return origin_ + static_cast<GstClockTime>(nanoseconds(position));
}

std::span<const double> ContainerClock::runUps() {
  return runUpsToTry;
}

bool ContainerClock::isTooLate(GstClockTime time) const {
  return GST_CLOCK_TIME_IS_VALID(time) && time > beginsAt_ + mostLateStart;
}

/// The first segment tells what the clock showed at the beginning. Those after a rough seek begin ahead of the place.
GstPadProbeReturn ContainerClock::seeSegment(GstPad*, GstPadProbeInfo* info, gpointer clock) {
  auto& self = *static_cast<ContainerClock*>(clock);
  GstEvent* event = GST_PAD_PROBE_INFO_EVENT(info);
  if (GST_EVENT_TYPE(event) != GST_EVENT_SEGMENT) return GST_PAD_PROBE_OK;
  if (const GstClockTime begin = self.beginsAt_; GST_CLOCK_TIME_IS_VALID(begin)) {
    if (self.isRough_) info->data = beginningAt(begin, event);
  } else {
    const GstSegment* first = nullptr;
    gst_event_parse_segment(event, &first);
    if (first->format == GST_FORMAT_TIME) self.origin_ = first->time;
  }
  return GST_PAD_PROBE_OK;
}

}  // namespace gstreamer
