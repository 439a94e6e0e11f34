#include "hosts/gstreamer/DeviceWatch.h"

#include <gst/audio/gstaudiobasesink.h>
#include <gst/audio/gstaudioclock.h>

namespace gstreamer {

namespace {

constexpr guint64 noSample = ~guint64{0};
/// An answer that took longer says little about this moment.
constexpr Instant longestAnswer = 5 * GST_MSECOND;

}  // namespace

void DeviceWatch::attach(GstElement& sink) {
  if (!GST_IS_AUDIO_BASE_SINK(&sink) || gst_base_sink_get_sync(GST_BASE_SINK(&sink))) return;
  sink_ = &sink;
  const Pad pad(gst_element_get_static_pad(&sink, "sink"));
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, seeBuffer, this, nullptr);
}

GstPadProbeReturn DeviceWatch::seeBuffer(GstPad* pad, GstPadProbeInfo* info, gpointer watch) {
  static_cast<DeviceWatch*>(watch)->note(*pad, *GST_PAD_PROBE_INFO_BUFFER(info));
  return GST_PAD_PROBE_OK;
}

/// When a buffer arrives, everything before it has been written, so its first sample goes to the sink's next place.
void DeviceWatch::note(GstPad& pad, GstBuffer& buffer) {
  const GstAudioBaseSink& sink = *GST_AUDIO_BASE_SINK(sink_);
  const GstAudioRingBuffer* ring = sink.ringbuffer;
  const guint64 place = sink.next_sample;
  if (!ring || place == noSample || place == 0 || !GST_BUFFER_PTS_IS_VALID(&buffer)) return;
  const Event event(gst_pad_get_sticky_event(&pad, GST_EVENT_SEGMENT, 0));
  const GstSegment* segment = nullptr;
  if (event) gst_event_parse_segment(event.get(), &segment);
  const int rate = GST_AUDIO_INFO_RATE(&ring->spec.info);
  if (!segment || segment->format != GST_FORMAT_TIME || rate <= 0) return;
  const guint64 runningTime = gst_segment_to_running_time(segment, GST_FORMAT_TIME, GST_BUFFER_PTS(&buffer));
  if (!GST_CLOCK_TIME_IS_VALID(runningTime)) return;
  const guint64 deviceTime = gst_util_uint64_scale_int(place, GST_SECOND, rate);
  const std::lock_guard lock(mutex_);
  difference_ = GST_CLOCK_DIFF(deviceTime, runningTime);
}

std::optional<double> DeviceWatch::lag() const {
  std::optional<GstClockTimeDiff> difference;
  {
    const std::lock_guard lock(mutex_);
    difference = difference_;
  }
  if (!difference) return std::nullopt;
  auto* clock = GST_AUDIO_CLOCK(GST_AUDIO_BASE_SINK(sink_)->provided_clock);
  const Instant before = now();
  const GstClockTime heard = gst_audio_clock_adjust(clock, gst_audio_clock_get_time(clock));
  const Instant after = now();
  if (after - before > longestAnswer) return std::nullopt;
  const GstClockTimeDiff due = (before + after) / 2 - static_cast<GstClockTimeDiff>(gst_element_get_base_time(sink_));
  return seconds(due - (static_cast<GstClockTimeDiff>(heard) + *difference));
}

void DeviceWatch::forget() {
  const std::lock_guard lock(mutex_);
  difference_.reset();
}

}  // namespace gstreamer
