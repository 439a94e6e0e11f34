#include "hosts/gstreamer/PictureBranch.h"

#include "hosts/gstreamer/Instant.h"
#include "hosts/gstreamer/PictureDrawing.h"

#include <gst/app/gstappsink.h>

#include <cmath>
#include <utility>

namespace gstreamer {

namespace {

/// Decoded frames that wait for their time, beside the one that the decoder has in hand. Enough for a key frame that
/// takes long to decode, and for a machine that has something else to do for a moment: with one, a film of 60
/// pictures a second lost many of them then. Each is some megabytes.
constexpr guint decodedAhead = 3;
/// A frame that is later than this is skipped. Long before, less is decoded.
constexpr gint64 mostLateness = GST_SECOND;

}  // namespace

PictureBranch::PictureBranch(std::shared_ptr<PictureMaker> maker, std::shared_ptr<PictureBoard> board,
                             Orientation orientation)
    : maker_(std::move(maker)), board_(std::move(board)), orientation_(orientation) {}

bool PictureBranch::build(GstBin& pipeline, std::string& reason) {
  queue_ = makeElement("queue");
  const Element deinterlace = makeElement("deinterlace");
  const Element convert = makeElement("videoconvert");
  sink_ = makeElement("appsink");
  if (!queue_ || !deinterlace || !convert || !sink_) {
    reason = "an element for pictures is missing (queue, deinterlace, videoconvert or appsink)";
    return false;
  }
  g_object_set(queue_.get(), "max-size-buffers", decodedAhead, "max-size-bytes", 0U, "max-size-time", guint64{0},
               nullptr);
  configureSink();
  gst_bin_add_many(&pipeline, queue_.get(), deinterlace.get(), convert.get(), sink_.get(), nullptr);
  if (!gst_element_link_many(queue_.get(), deinterlace.get(), convert.get(), sink_.get(), nullptr)) {
    reason = "the elements for pictures do not fit together";
    return false;
  }
  watchSink();
  return true;
}

void PictureBranch::configureSink() {
  const Caps caps(gst_caps_from_string((std::string("video/x-raw, format=") + takenFormats).c_str()));
  g_object_set(sink_.get(), "caps", caps.get(), "max-buffers", 1U, "max-lateness", mostLateness, "qos", TRUE,
               "enable-last-sample", FALSE, nullptr);
  GstAppSinkCallbacks callbacks{};
  callbacks.new_preroll = [](GstAppSink* sink, gpointer branch) {
    static_cast<PictureBranch*>(branch)->takeStill(Sample(gst_app_sink_pull_preroll(sink)));
    return GST_FLOW_OK;
  };
  callbacks.new_sample = [](GstAppSink* sink, gpointer branch) {
    static_cast<PictureBranch*>(branch)->take(Sample(gst_app_sink_pull_sample(sink)));
    return GST_FLOW_OK;
  };
  gst_app_sink_set_callbacks(GST_APP_SINK(sink_.get()), &callbacks, this, nullptr);
}

void PictureBranch::watchSink() {
  const Pad pad(gst_element_get_static_pad(sink_.get(), "sink"));
  const auto kinds = static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM |
                                                  GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM | GST_PAD_PROBE_TYPE_PUSH);
  gst_pad_add_probe(pad.get(), kinds, seeItem, this, nullptr);
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_EVENT_UPSTREAM, seeLateness, this, nullptr);
}

void PictureBranch::setDelay(double seconds) {
  g_object_set(sink_.get(), "ts-offset", gint64{nanoseconds(seconds)}, nullptr);
}

void PictureBranch::lead(GstElement& decoder) {
  shortcut_.lead(decoder);
  overload_.lead(decoder);
}

void PictureBranch::expectStill(bool expected) {
  if (expected) shortcut_.endAtKeyFrame(false);
  near_ = notNear;
  expectsStill_ = expected;
}

void PictureBranch::expectStillNear(double position) {
  shortcut_.endAtKeyFrame(true);
  near_ = position;
  expectsStill_ = true;
}

void PictureBranch::takeStill(Sample frame) {
  hasStill_ = true;
  if (!expectsStill_ || !frame) return;
  const double place = near_;
  const auto shown = maker_->time();
  if (!std::isnan(place) && shown && std::abs(*shown - place) < std::abs(timeOf(*frame) - place)) return;
  take(std::move(frame));
}

bool PictureBranch::hasInStore() const {
  guint frames = 0;
  g_object_get(queue_.get(), "current-level-buffers", &frames, nullptr);
  return frames > 0;
}

void PictureBranch::take(Sample frame) {
  if (frame && !left_) maker_->take(std::move(frame), orientation_);
}

GstPadProbeReturn PictureBranch::seeItem(GstPad*, GstPadProbeInfo* info, gpointer branch) {
  auto& self = *static_cast<PictureBranch*>(branch);
  if (GST_IS_QUERY(info->data)) {
    GstQuery* query = GST_PAD_PROBE_INFO_QUERY(info);
    if (GST_QUERY_TYPE(query) != GST_QUERY_ALLOCATION) return GST_PAD_PROBE_OK;
    self.memory_.offer(*query);
    return GST_PAD_PROBE_HANDLED;
  }
  GstEvent* event = GST_PAD_PROBE_INFO_EVENT(info);
  // A sink is content with a gap; the still of a film that begins with one is the first picture after it.
  if (event && GST_EVENT_TYPE(event) == GST_EVENT_GAP) return GST_PAD_PROBE_DROP;
  return GST_PAD_PROBE_OK;
}

/// Decoders would decode a late frame and then not hand it out.
GstPadProbeReturn PictureBranch::seeLateness(GstPad*, GstPadProbeInfo* info, gpointer branch) {
  GstEvent* event = GST_PAD_PROBE_INFO_EVENT(info);
  if (GST_EVENT_TYPE(event) != GST_EVENT_QOS) return GST_PAD_PROBE_OK;
  GstClockTimeDiff lateness = 0;
  GstClockTime runningTime = 0;
  gst_event_parse_qos(event, nullptr, nullptr, &lateness, &runningTime);
  static_cast<PictureBranch*>(branch)->overload_.note(runningTime, lateness);
  return GST_PAD_PROBE_DROP;
}

}  // namespace gstreamer
