#include "hosts/gstreamer/Options.h"

namespace gstreamer {

namespace {

/// The sound server is to play exactly these two channels: no remembered balance, no mixing into other channels, no
/// virtual surround, all of which would let one ear hear the other's film. PipeWire obeys the names with "stream.",
/// "channelmix." and "state."; PulseAudio knows "media.role" and "filter.suppress".
Structure streamProperties() {
  return Structure(gst_structure_new("properties",                                       //
                                     "media.role", G_TYPE_STRING, "video",               //
                                     "filter.suppress", G_TYPE_STRING, "virtual-surround-sink",  //
                                     "stream.dont-remix", G_TYPE_STRING, "true",         //
                                     "channelmix.upmix", G_TYPE_STRING, "false",         //
                                     "channelmix.normalize", G_TYPE_STRING, "false",     //
                                     "state.restore-props", G_TYPE_STRING, "false",      //
                                     nullptr));
}

}  // namespace

Element makeSoundServerSink() {
  Element sink = makeElement("pulsesink");
  if (!sink) return makeElement("autoaudiosink");
  const Structure properties = streamProperties();
  g_object_set(sink.get(), "client-name", "Quillop", "stream-properties", properties.get(), "provide-clock", FALSE,
               nullptr);
  return sink;
}

}  // namespace gstreamer
