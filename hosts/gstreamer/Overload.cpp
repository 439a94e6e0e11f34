#include "hosts/gstreamer/Overload.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace gstreamer {

namespace {

/// Later than this, a picture and its sound begin to fall apart, and what nobody needs is left out.
constexpr GstClockTimeDiff tolerableLateness = 40 * GST_MSECOND;
/// Who is later than this and in so long did not catch up by so much, will not.
constexpr GstClockTimeDiff mostLateness = 400 * GST_MSECOND;
constexpr Instant patience = 500 * GST_MSECOND;
constexpr GstClockTimeDiff worthwhileGain = 100 * GST_MSECOND;
/// By how much what is left out is ahead of its time, so that the key frame after it can be decoded in time.
constexpr GstClockTime headStart = 250 * GST_MSECOND;
/// How long a wait goes on before it looks whether it was made useless.
constexpr Instant glance = 20 * GST_MSECOND;

/// None while it stands still.
std::optional<GstClockTime> runningTimeNow(GstElement& element) {
  GstState state = GST_STATE_NULL;
  gst_element_get_state(&element, &state, nullptr, 0);
  const GstClockTime time = gst_element_get_current_running_time(&element);
  if (state != GST_STATE_PLAYING || !GST_CLOCK_TIME_IS_VALID(time)) return std::nullopt;
  return time;
}

/// Waits until it is almost `time` for `element`, or `pad` takes nothing any more, since the film is sought or
/// closed. A film that stands still has no time.
void waitFor(GstClockTime time, GstElement& element, GstPad& pad) {
  while (!GST_PAD_IS_FLUSHING(&pad)) {
    const auto timeNow = runningTimeNow(element);
    if (timeNow && *timeNow + headStart >= time) return;
    const Instant left = timeNow ? static_cast<Instant>(time - headStart - *timeNow) : glance;
    std::this_thread::sleep_for(std::chrono::nanoseconds(std::min(left, glance)));
  }
}

}  // namespace

Overload::Overload(std::function<void()> countDropped) : countDropped_(std::move(countDropped)) {
  gst_segment_init(&segment_, GST_FORMAT_UNDEFINED);
}

void Overload::lead(GstElement& decoder) {
  const Pad pad(gst_element_get_static_pad(&decoder, "sink"));
  const auto kinds = static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM | GST_PAD_PROBE_TYPE_BUFFER);
  if (pad) gst_pad_add_probe(pad.get(), kinds, see, this, nullptr);
}

void Overload::note(GstClockTime runningTime, GstClockTimeDiff lateness) {
  const std::lock_guard lock(mutex_);
  if (leaps_ || runningTime < landedAt_) return;
  lateness_ = lateness;
  if (lateness <= mostLateness) {
    lateSince_.reset();
    return;
  }
  const Instant time = now();
  if (lateSince_ && time - *lateSince_ < patience) return;
  if (lateSince_ && lateness > latenessThen_ - worthwhileGain) leaps_ = true;
  lateSince_ = time;
  latenessThen_ = lateness;
}

GstPadProbeReturn Overload::see(GstPad* pad, GstPadProbeInfo* info, gpointer overload) {
  auto& self = *static_cast<Overload*>(overload);
  if (!GST_IS_EVENT(info->data)) return self.seePicture(*pad, *GST_PAD_PROBE_INFO_BUFFER(info));
  self.seeEvent(*GST_PAD_PROBE_INFO_EVENT(info));
  return GST_PAD_PROBE_OK;
}

void Overload::seeEvent(GstEvent& event) {
  if (GST_EVENT_TYPE(&event) == GST_EVENT_CAPS) {
    GstCaps* caps = nullptr;
    gst_event_parse_caps(&event, &caps);
    packing_ = Packing::of(*caps);
  } else if (GST_EVENT_TYPE(&event) == GST_EVENT_SEGMENT) {
    gst_event_copy_segment(&event, &segment_);
    begin();
  }
}

/// What comes now has nothing to do with what came before.
void Overload::begin() {
  const std::lock_guard lock(mutex_);
  landedAt_ = 0;
  lateness_ = 0;
  lateSince_.reset();
  leaps_ = false;
}

GstPadProbeReturn Overload::seePicture(GstPad& pad, GstBuffer& picture) {
  const Element decoder(gst_pad_get_parent_element(&pad));
  const GstClockTime time = gst_segment_to_running_time(&segment_, GST_FORMAT_TIME, GST_BUFFER_PTS(&picture));
  if (!decoder || !GST_CLOCK_TIME_IS_VALID(time)) return GST_PAD_PROBE_OK;
  const Verdict verdict = judge(picture, time, runningTimeNow(*decoder));
  if (verdict == Verdict::Decode) return GST_PAD_PROBE_OK;
  countDropped_();
  // Else the rest of the film would be gone through at once.
  if (verdict == Verdict::LeaveOutAtItsTime) waitFor(time, *decoder, pad);
  return GST_PAD_PROBE_DROP;
}

Overload::Verdict Overload::judge(GstBuffer& picture, GstClockTime runningTime, std::optional<GstClockTime> timeNow) {
  const std::lock_guard lock(mutex_);
  if (leaps_) {
    const bool isKeyFrame = !GST_BUFFER_FLAG_IS_SET(&picture, GST_BUFFER_FLAG_DELTA_UNIT);
    if (!isKeyFrame || (timeNow && runningTime < *timeNow)) return Verdict::LeaveOutAtItsTime;
    leaps_ = false;
    lateness_ = 0;
    lateSince_.reset();
    landedAt_ = runningTime;
    return Verdict::Decode;
  }
  if (runningTime < landedAt_) return Verdict::LeaveOut;
  const bool isLate = lateness_ > tolerableLateness;
  return isLate && packing_ && packing_->isDisposable(picture) ? Verdict::LeaveOut : Verdict::Decode;
}

}  // namespace gstreamer
