#include "hosts/gstreamer/SoundBranch.h"

#include <vector>

namespace gstreamer {

namespace {

/// What happens to samples after the router must not touch a channel of zeros, so no conversion may add dither or
/// shaped noise.
Element makeConverter() {
  Element converter = makeElement("audioconvert");
  if (converter) {
    gst_util_set_object_arg(G_OBJECT(converter.get()), "dithering", "none");
    gst_util_set_object_arg(G_OBJECT(converter.get()), "noise-shaping", "none");
  }
  return converter;
}

/// Puts silence where the track has nothing, for a device that plays one sample after the other.
Element makeGapFiller() {
  Element filler = makeElement("audiorate");
  if (filler) g_object_set(filler.get(), "tolerance", guint64{20 * GST_MSECOND}, nullptr);
  return filler;
}

Element makeFilter(const char* caps) {
  Element filter = makeElement("capsfilter");
  if (filter) gst_util_set_object_arg(G_OBJECT(filter.get()), "caps", caps);
  return filter;
}

#if G_BYTE_ORDER == G_LITTLE_ENDIAN
#define QUILLOP_FLOAT_FORMAT "F32LE"
#else
#define QUILLOP_FLOAT_FORMAT "F32BE"
#endif

/// Floating point from here on, in the source's own channels.
constexpr const char* mixable = "audio/x-raw, format=" QUILLOP_FLOAT_FORMAT ", layout=interleaved";
constexpr const char* stereo =
    "audio/x-raw, format=" QUILLOP_FLOAT_FORMAT ", layout=interleaved, channels=2, channel-mask=(bitmask)0x3";

#undef QUILLOP_FLOAT_FORMAT

/// Sinks pass over buffers that are marked as gaps, and one that keeps its own time passes over them without taking
/// any: a track turned down to nothing would rush to its end. The silence in them is to be played like any sound.
GstPadProbeReturn playGaps(GstPad*, GstPadProbeInfo* info, gpointer) {
  GstBuffer* buffer = GST_PAD_PROBE_INFO_BUFFER(info);
  if (GST_BUFFER_FLAG_IS_SET(buffer, GST_BUFFER_FLAG_GAP)) {
    buffer = gst_buffer_make_writable(buffer);
    GST_BUFFER_FLAG_UNSET(buffer, GST_BUFFER_FLAG_GAP);
    info->data = buffer;
  }
  return GST_PAD_PROBE_OK;
}

/// The router's property: a list of two lists of weights.
void setMatrix(GstElement& router, const Mix& mix) {
  GValue matrix = G_VALUE_INIT;
  g_value_init(&matrix, GST_TYPE_ARRAY);
  for (const auto& weights : mix) {
    GValue row = G_VALUE_INIT;
    g_value_init(&row, GST_TYPE_ARRAY);
    for (const float weight : weights) {
      GValue value = G_VALUE_INIT;
      g_value_init(&value, G_TYPE_FLOAT);
      g_value_set_float(&value, weight);
      gst_value_array_append_and_take_value(&row, &value);
    }
    gst_value_array_append_and_take_value(&matrix, &row);
  }
  g_object_set_property(G_OBJECT(&router), "mix-matrix", &matrix);
  g_value_unset(&matrix);
}

}  // namespace

SoundBranch::SoundBranch(std::function<Element()> makeSink, double pan, double volume)
    : makeSink_(std::move(makeSink)), pan_(pan), firstVolume_(volume) {}

bool SoundBranch::build(GstBin& pipeline, std::string& reason) {
  entry_ = makeConverter();
  volume_ = makeElement("volume");
  router_ = makeConverter();
  sink_ = makeSink_ ? makeSink_() : nullptr;
  const Element mixableFilter = makeFilter(mixable), stereoFilter = makeFilter(stereo);
  const Element filler = makeGapFiller(), resample = makeElement("audioresample"), last = makeConverter();
  const std::vector<GstElement*> chain = {entry_.get(),   mixableFilter.get(), volume_.get(),
                                          router_.get(),  stereoFilter.get(),  filler.get(),
                                          resample.get(), last.get(),          sink_.get()};
  for (GstElement* element : chain) {
    if (!element) {
      reason =
          "there is no sound sink, or an element for sound is missing (audioconvert, volume, audiorate, "
          "audioresample)";
      return false;
    }
  }
  for (GstElement* element : chain) gst_bin_add(&pipeline, element);
  for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
    if (gst_element_link(chain[i], chain[i + 1])) continue;
    reason = "the elements for sound do not fit together";
    return false;
  }
  setVolume(firstVolume_);
  device_.attach(*sink_);
  const Pad pad(gst_element_get_static_pad(entry_.get(), "sink"));
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, seeEvent, this, nullptr);
  const Pad end(gst_element_get_static_pad(sink_.get(), "sink"));
  gst_pad_add_probe(end.get(), GST_PAD_PROBE_TYPE_BUFFER, playGaps, nullptr, nullptr);
  return true;
}

void SoundBranch::setVolume(double volume) {
  g_object_set(volume_.get(), "volume", volume, nullptr);
}

/// The matrix must fit the number of channels, and it is known only once decoded sound arrives. It is set before the
/// first converter learns of the channels: that one then leaves them as they are, since the router takes no others.
GstPadProbeReturn SoundBranch::seeEvent(GstPad*, GstPadProbeInfo* info, gpointer branch) {
  GstEvent* event = GST_PAD_PROBE_INFO_EVENT(info);
  if (GST_EVENT_TYPE(event) == GST_EVENT_CAPS) {
    GstCaps* caps = nullptr;
    gst_event_parse_caps(event, &caps);
    static_cast<SoundBranch*>(branch)->route(*caps);
  }
  return GST_PAD_PROBE_OK;
}

void SoundBranch::route(const GstCaps& caps) {
  const auto channels = channelsOf(caps);
  if (!channels.empty()) setMatrix(*router_, mixFor(channels, pan_));
}

}  // namespace gstreamer
