#include "hosts/gstreamer/Options.h"

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

}  // namespace

/// The device keeps its own time and plays one sample after the other ("sync" off): the sink's ways to follow another
/// clock can all be heard. Its default ("skew") cuts the sound several times in the first second, because the
/// server's first answers about its time are guesses, and later whenever it drifted by 40 ms; "resample" repeats and
/// drops samples all the time. So the engine starts the device at the right instant, and moves the picture after it.
Element makeSoundServerSink() {
  Element sink = makeElement("pulsesink");
  if (!sink) return makeElement("autoaudiosink");
  const Structure properties = streamProperties();
  g_object_set(sink.get(), "client-name", "Quillop", "stream-properties", properties.get(), "provide-clock", FALSE,
               "sync", FALSE, nullptr);
  return sink;
}

}  // namespace gstreamer
