#include "hosts/gstreamer/Shortcut.h"

#include "hosts/gstreamer/Decoders.h"
#include "hosts/gstreamer/Segment.h"

#include <algorithm>
#include <utility>

namespace gstreamer {

namespace {

/// A way that is shorter is over before more processors would have helped.
constexpr GstClockTime longWay = GST_SECOND / 2;

/// The same segment, of which everything before it is to be played too. A parser that was sent to the key frame
/// before a place may begin the segment where another stream has something, behind the picture's key frame, which
/// would not come out then. Takes `event` and gives another one.
GstEvent* withoutBeginning(GstEvent* event) {
  return withSegment(event, [](GstSegment& segment) {
    const guint64 before = std::min(segment.start, segment.time);
    segment.start -= before, segment.time -= before;
    segment.position = segment.start;
  });
}

}  // namespace

void Shortcut::lead(GstElement& decoder) {
  const Pad pad(gst_element_get_static_pad(&decoder, "sink"));
  const auto kinds = static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM | GST_PAD_PROBE_TYPE_BUFFER);
  if (pad) gst_pad_add_probe(pad.get(), kinds, see, this, nullptr);
}

GstPadProbeReturn Shortcut::see(GstPad* pad, GstPadProbeInfo* info, gpointer shortcut) {
  auto& self = *static_cast<Shortcut*>(shortcut);
  if (GST_IS_EVENT(info->data)) {
    self.seeEvent(*GST_PAD_PROBE_INFO_EVENT(info));
    if (self.begins_ && self.endsAtKeyFrame_ && GST_EVENT_TYPE(info->data) == GST_EVENT_SEGMENT)
      info->data = withoutBeginning(GST_PAD_PROBE_INFO_EVENT(info));
    return GST_PAD_PROBE_OK;
  }
  return self.seePicture(*pad, *GST_PAD_PROBE_INFO_BUFFER(info));
}

GstPadProbeReturn Shortcut::seePicture(GstPad& pad, GstBuffer& picture) {
  const bool isFirst = std::exchange(begins_, false);
  if (!isFirst && endsAtKeyFrame_) {
    gst_pad_send_event(&pad, gst_event_new_eos());
    return GST_PAD_PROBE_DROP;
  }
  if (!packing_ || !GST_BUFFER_PTS_IS_VALID(&picture)) return GST_PAD_PROBE_OK;
  choosePace(pad, picture, isFirst);
  return leavesOut(picture) ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
}

void Shortcut::seeEvent(GstEvent& event) {
  if (GST_EVENT_TYPE(&event) == GST_EVENT_CAPS) {
    GstCaps* caps = nullptr;
    gst_event_parse_caps(&event, &caps);
    packing_ = Packing::of(*caps);
  } else if (GST_EVENT_TYPE(&event) == GST_EVENT_SEGMENT) {
    const GstSegment* segment = nullptr;
    gst_event_parse_segment(&event, &segment);
    place_ = segment->format == GST_FORMAT_TIME ? segment->start : 0;
    begins_ = true;
  }
}

void Shortcut::choosePace(GstPad& pad, GstBuffer& picture, bool isFirst) {
  const GstClockTime time = GST_BUFFER_PTS(&picture);
  if (isFirst) {
    if (time + longWay < place_) setPace(pad, Pace::Hurried);
  } else if (pace_ == Pace::Hurried && time >= place_ &&
             !GST_BUFFER_FLAG_IS_SET(&picture, GST_BUFFER_FLAG_DELTA_UNIT)) {
    if (packing_->isFreshStart(picture)) setPace(pad, Pace::Usual);
  }
}

/// A decoder takes other caps for another stream, and begins anew with as many threads as it is to have by then. So
/// the caps carry the pace, which means nothing to it.
void Shortcut::setPace(GstPad& pad, Pace pace) {
  const Caps caps(gst_pad_get_current_caps(&pad));
  const Element decoder(gst_pad_get_parent_element(&pad));
  if (pace == pace_ || !caps || !decoder) return;
  pace_ = pace;
  const bool isOther = pace == Pace::Hurried ? unlimitThreads(*decoder) : limitThreads(*decoder, *caps);
  if (!isOther) return;
  const Caps told(gst_caps_copy(caps.get()));
  gst_caps_set_simple(told.get(), "pace", G_TYPE_INT, static_cast<int>(pace), nullptr);
  gst_pad_send_event(&pad, gst_event_new_caps(told.get()));
}

bool Shortcut::leavesOut(GstBuffer& picture) const {
  const GstClockTime duration = GST_BUFFER_DURATION(&picture);
  if (!GST_CLOCK_TIME_IS_VALID(duration)) return false;
  return GST_BUFFER_PTS(&picture) + duration <= place_ && packing_->isDisposable(picture);
}

}  // namespace gstreamer
