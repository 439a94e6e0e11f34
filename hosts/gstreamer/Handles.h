#pragma once

#include <gst/gst.h>

#include <memory>

/// Owners of what GStreamer's C interface hands out.
namespace gstreamer {

struct ObjectRelease {
  void operator()(gpointer object) const { gst_object_unref(object); }
};
struct CapsRelease {
  void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
};
struct SampleRelease {
  void operator()(GstSample* sample) const { gst_sample_unref(sample); }
};
struct EventRelease {
  void operator()(GstEvent* event) const { gst_event_unref(event); }
};
struct StructureRelease {
  void operator()(GstStructure* structure) const { gst_structure_free(structure); }
};
struct ErrorRelease {
  void operator()(GError* error) const { g_error_free(error); }
};
struct FactoriesRelease {
  void operator()(GList* factories) const { gst_plugin_feature_list_free(factories); }
};

using Element = std::unique_ptr<GstElement, ObjectRelease>;
using Pad = std::unique_ptr<GstPad, ObjectRelease>;
using Stream = std::unique_ptr<GstStream, ObjectRelease>;
using Bus = std::unique_ptr<GstBus, ObjectRelease>;
using Factory = std::unique_ptr<GstElementFactory, ObjectRelease>;
using Clock = std::unique_ptr<GstClock, ObjectRelease>;
using BufferPool = std::unique_ptr<GstBufferPool, ObjectRelease>;
using Caps = std::unique_ptr<GstCaps, CapsRelease>;
using Sample = std::unique_ptr<GstSample, SampleRelease>;
using Event = std::unique_ptr<GstEvent, EventRelease>;
using Structure = std::unique_ptr<GstStructure, StructureRelease>;
using Error = std::unique_ptr<GError, ErrorRelease>;
using Factories = std::unique_ptr<GList, FactoriesRelease>;

/// An element of `factory`, or none where there is no such plugin. The reference that elements are born with belongs
/// to nobody ("floating"); here it becomes the handle's, and a bin that the element is put into takes its own.
inline Element makeElement(const char* factory) {
  GstElement* element = gst_element_factory_make(factory, nullptr);
  return Element(element ? GST_ELEMENT(gst_object_ref_sink(element)) : nullptr);
}

}  // namespace gstreamer
