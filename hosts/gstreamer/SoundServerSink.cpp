#include "hosts/gstreamer/Options.h"

#include <gst/audio/gstaudiobasesink.h>

namespace gstreamer {

namespace {

/// The sound server is to play exactly these two channels: no remembered balance, no mixing into other channels, no
/// virtual surround, all of which would let one ear hear the other's film. PipeWire obeys the names with "stream.",
/// "channelmix." and "state."; PulseAudio knows "media.role" and "filter.suppress".
Structure streamProperties() {
  return Structure(gst_structure_new("properties",                                               //
                                     "media.role", G_TYPE_STRING, "video",                       //
                                     "filter.suppress", G_TYPE_STRING, "virtual-surround-sink",  //
                                     "stream.dont-remix", G_TYPE_STRING, "true",                 //
                                     "channelmix.upmix", G_TYPE_STRING, "false",                 //
                                     "channelmix.normalize", G_TYPE_STRING, "false",             //
                                     "state.restore-props", G_TYPE_STRING, "false",              //
                                     nullptr));
}

GstFlowReturn (*renderOfSink)(GstBaseSink*, GstBuffer*) = nullptr;

/// The sink starts its device at the first buffer while it holds its own lock, to fit the device into the pipeline's
/// clock. Where the device is gone by then, it tells so, needs that very lock for it, and waits forever, and with it
/// all sinks of the process, which share one connection to the server. So the device is started before, without the
/// lock; and without a clock there is nothing that it would be fitted into.
GstFlowReturn startAndRender(GstBaseSink* base, GstBuffer* buffer) {
  GstAudioBaseSink& sink = *GST_AUDIO_BASE_SINK(base);
  if (GST_ELEMENT_CLOCK(base)) {
    gst_element_set_clock(GST_ELEMENT(base), nullptr);
    g_atomic_int_set(&sink.eos_rendering, 1);  // start at once, not only once the device's store is full
    gst_audio_ring_buffer_start(sink.ringbuffer);
    g_atomic_int_set(&sink.eos_rendering, 0);
  }
  return renderOfSink(base, buffer);
}

void replaceRender(gpointer type, gpointer) {
  GstBaseSinkClass* sink = GST_BASE_SINK_CLASS(type);
  renderOfSink = sink->render;
  sink->render = startAndRender;
}

/// GStreamer's sink for sound servers with another way to start; the type of none where there is no such sink.
GType sinkType() {
  static const GType type = [] {
    const Element usual = makeElement("pulsesink");
    if (!usual || !GST_IS_AUDIO_BASE_SINK(usual.get())) return G_TYPE_INVALID;
    GTypeQuery parent;
    g_type_query(G_OBJECT_TYPE(usual.get()), &parent);
    return g_type_register_static_simple(parent.type, "QuillopSoundServerSink", parent.class_size, replaceRender,
                                         parent.instance_size, nullptr, GTypeFlags{});
  }();
  return type;
}

}  // namespace

/// The device keeps its own time and plays one sample after the other ("sync" off): the sink's ways to follow another
/// clock can all be heard. Its default ("skew") cuts the sound several times in the first second, because the
/// server's first answers about its time are guesses, and later whenever it drifted by 40 ms; "resample" repeats and
/// drops samples all the time. So the engine starts the device at the right instant, and moves the picture after it.
Element makeSoundServerSink() {
  if (sinkType() == G_TYPE_INVALID) return makeElement("autoaudiosink");
  Element sink(GST_ELEMENT(gst_object_ref_sink(g_object_new(sinkType(), nullptr))));
  const Structure properties = streamProperties();
  g_object_set(sink.get(), "client-name", "Quillop", "stream-properties", properties.get(), "provide-clock", FALSE,
               "sync", FALSE, nullptr);
  return sink;
}

}  // namespace gstreamer
