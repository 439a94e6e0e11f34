#include "hosts/gstreamer/Decoders.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <thread>

namespace gstreamer {

namespace {

bool isHardware(const gchar* klass) {
  return klass && std::strstr(klass, "Hardware");
}

bool isHardware(GstElementFactory* factory) {
  return isHardware(gst_element_factory_get_metadata(factory, GST_ELEMENT_METADATA_KLASS));
}

/// One thread of the reference machine decodes somewhat more than this of H.264 with 8 bits.
constexpr double pixelsPerSecondOfOneThread = 1920.0 * 1088.0 * 31.0;

/// How much more work a pixel is than one of H.264 with 8 bits.
double effortOf(const GstStructure& stream) {
  const char* depth = gst_structure_get_string(&stream, "profile");
  const bool deep = depth && std::strstr(depth, "10");
  const bool newer =
      !gst_structure_has_name(&stream, "video/x-h264") && !gst_structure_has_name(&stream, "video/mpeg");
  return (newer ? 1.5 : 1.0) * (deep ? 1.5 : 1.0);
}

/// Pictures a second; what says nothing is taken for a film of 30.
double rateOf(const GstStructure& stream) {
  int numerator = 0, denominator = 1;
  const bool known = gst_structure_get_fraction(&stream, "framerate", &numerator, &denominator);
  return known && numerator > 0 ? static_cast<double>(numerator) / denominator : 30.0;
}

int mostThreads() {
  return static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
}

int threadsFor(const GstStructure& stream) {
  int width = 0, height = 0;
  gst_structure_get_int(&stream, "width", &width);
  gst_structure_get_int(&stream, "height", &height);
  const double load = static_cast<double>(width) * height * rateOf(stream) * effortOf(stream);
  const int needed = static_cast<int>(std::ceil(load / pixelsPerSecondOfOneThread));
  return std::clamp(needed, 1, mostThreads());
}

/// The property that tells a decoder how many threads to use; none where there is no such choice.
const GParamSpec* threadsOf(GstElement& decoder) {
  for (const char* property : {"max-threads", "threads"}) {
    const GParamSpec* found = g_object_class_find_property(G_OBJECT_GET_CLASS(&decoder), property);
    if (found && (found->value_type == G_TYPE_INT || found->value_type == G_TYPE_UINT)) return found;
  }
  return nullptr;
}

bool setThreads(GstElement& decoder, int threads) {
  const GParamSpec* property = threadsOf(decoder);
  if (!property) return false;
  int before = 0;  // of the same size, whether it has a sign or not
  g_object_get(&decoder, property->name, &before, nullptr);
  g_object_set(&decoder, property->name, threads, nullptr);
  return threads != before;
}

}  // namespace

std::vector<std::string> decodersFor(const GstCaps& caps, Hardware hardware) {
  const auto decoders = GST_ELEMENT_FACTORY_TYPE_DECODER | GST_ELEMENT_FACTORY_TYPE_MEDIA_ANY;
  const Factories all(gst_element_factory_list_get_elements(decoders, GST_RANK_MARGINAL));
  const Factories fitting(gst_element_factory_list_filter(all.get(), &caps, GST_PAD_SINK, gst_caps_is_fixed(&caps)));
  const Factories sorted(
      g_list_sort(gst_plugin_feature_list_copy(fitting.get()), gst_plugin_feature_rank_compare_func));
  std::vector<std::string> chips, names;
  for (const GList* entry = sorted.get(); entry; entry = entry->next) {
    auto* factory = GST_ELEMENT_FACTORY(entry->data);
    auto& those = isHardware(factory) ? chips : names;
    those.emplace_back(gst_plugin_feature_get_name(GST_PLUGIN_FEATURE(factory)));
  }
  if (hardware == Hardware::Preferred) names.insert(names.begin(), chips.begin(), chips.end());
  return names;
}

bool isHardwareDecoder(GstElement& element) {
  return isHardware(gst_element_class_get_metadata(GST_ELEMENT_GET_CLASS(&element), GST_ELEMENT_METADATA_KLASS));
}

bool limitThreads(GstElement& decoder, const GstCaps& caps) {
  const GstStructure* stream = gst_caps_get_structure(&caps, 0);
  return stream && setThreads(decoder, threadsFor(*stream));
}

bool unlimitThreads(GstElement& decoder) {
  // Threads that decode whole pictures wait for each other; one more of them than processors keeps all of these busy.
  const int processors = mostThreads();
  return setThreads(decoder, processors > 1 ? processors + 1 : 1);
}

}  // namespace gstreamer
