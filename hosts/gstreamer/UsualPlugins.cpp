#include "hosts/gstreamer/UsualPlugins.h"

#include "hosts/gstreamer/Handles.h"

#include <array>

namespace gstreamer {

namespace {

/// At least one element of each plugin that a film in MP4 of H.264 and AAC is played by.
constexpr std::array usualElements = {"filesrc",      "avdec_h264", "appsink",   "deinterlace",   "videoconvert",
                                      "audioconvert", "volume",     "audiorate", "audioresample", "pulsesink"};

}  // namespace

void startGStreamer() {
  gst_init(nullptr, nullptr);
}

void loadUsualPlugins() {
  startGStreamer();
  for (const char* name : usualElements) {
    const Factory factory(gst_element_factory_find(name));
    if (factory)
      const Factory loaded(GST_ELEMENT_FACTORY(gst_plugin_feature_load(GST_PLUGIN_FEATURE(factory.get()))));
  }
}

}  // namespace gstreamer
