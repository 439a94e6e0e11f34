#include "hosts/gstreamer/Shortcut.h"

#include "hosts/gstreamer/Decoders.h"
#include "hosts/gstreamer/Segment.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <utility>

namespace gstreamer {

namespace {

using Bytes = std::span<const guint8>;

/// A way that is shorter is over before more processors would have helped.
constexpr GstClockTime longWay = GST_SECOND / 2;

struct Map {
  explicit Map(GstBuffer& from) : buffer(from), isValid(gst_buffer_map(&from, &info, GST_MAP_READ)) {}
  ~Map() {
    if (isValid) gst_buffer_unmap(&buffer, &info);
  }
  Map(const Map&) = delete;
  Map& operator=(const Map&) = delete;
  Bytes bytes() const { return isValid ? Bytes(info.data, info.size) : Bytes(); }

  GstBuffer& buffer;
  GstMapInfo info{};
  bool isValid;
};

/// What the stream's own description tells: avcC and hvcC of ISO/IEC 14496-15, 5.3.3 and 8.3.3.
template <std::size_t size>
bool readDescription(const GstStructure& stream, std::array<guint8, size>& start) {
  const GValue* value = gst_structure_get_value(&stream, "codec_data");
  GstBuffer* description = value ? gst_value_get_buffer(value) : nullptr;
  return description && gst_buffer_extract(description, 0, start.data(), size) == size;
}

std::optional<Packing> packingOfH264(const GstStructure& stream, bool hasStartCodes) {
  std::array<guint8, 5> start{};
  if (hasStartCodes) return Packing{Packing::Format::H264, 0};
  if (!readDescription(stream, start)) return std::nullopt;
  return Packing{Packing::Format::H264, (start[4] & 3) + 1};
}

/// A picture of H.265 tells only whether others of its own layer need it, so a stream has to have no other layers.
std::optional<Packing> packingOfH265(const GstStructure& stream, bool hasStartCodes) {
  std::array<guint8, 22> start{};
  if (hasStartCodes || !readDescription(stream, start)) return std::nullopt;
  const int layers = (start[21] >> 3) & 7;
  if (layers != 1) return std::nullopt;
  return Packing{Packing::Format::H265, (start[21] & 3) + 1};
}

/// Takes the next part from `rest`; empty where there is none any more.
Bytes nextPart(Bytes& rest, int lengthSize) {
  std::size_t length = 0;
  const auto prefix = static_cast<std::size_t>(lengthSize);
  if (rest.size() <= prefix) return {};
  for (const guint8 byte : rest.first(prefix)) length = length << 8U | byte;
  length = std::min(length, rest.size() - prefix);
  const Bytes part = rest.subspan(prefix, length);
  rest = rest.subspan(prefix + length);
  return part;
}

/// The same where the parts are told apart by start codes: the part goes on to the end as far as this is concerned.
Bytes nextPartByStartCode(Bytes& rest) {
  constexpr std::array<guint8, 3> startCode{0, 0, 1};
  const auto found = std::search(rest.begin(), rest.end(), startCode.begin(), startCode.end());
  if (rest.end() - found <= static_cast<std::ptrdiff_t>(startCode.size())) return {};
  rest = rest.subspan(static_cast<std::size_t>(found - rest.begin()) + startCode.size());
  return rest;
}

enum class Part { FreshStart, Needed, Disposable, NoPicture };

/// ISO/IEC 14496-10, 7.4.1: nal_ref_idc and nal_unit_type.
Part kindInH264(int header) {
  const int type = header & 0x1F;
  if (type < 1 || type > 5) return Part::NoPicture;
  if (type == 5) return Part::FreshStart;
  return (header & 0x60) == 0 ? Part::Disposable : Part::Needed;
}

/// ISO/IEC 23008-2, 7.4.2.2: of the first types, the even ones are not referred to.
Part kindInH265(int header) {
  const int type = header >> 1 & 0x3F;
  if (type > 31) return Part::NoPicture;
  if (type == 19 || type == 20) return Part::FreshStart;
  return type < 16 && type % 2 == 0 ? Part::Disposable : Part::Needed;
}

/// Whether the picture has parts of a picture at all, and all of them are of this kind.
bool isAll(Part kind, GstBuffer& picture, const Packing& packing) {
  const Map map(picture);
  bool isPicture = false;
  for (Bytes rest = map.bytes();;) {
    const Bytes part = packing.lengthSize > 0 ? nextPart(rest, packing.lengthSize) : nextPartByStartCode(rest);
    if (part.empty()) return isPicture;
    const int header = part.front();
    const Part found = packing.format == Packing::Format::H264 ? kindInH264(header) : kindInH265(header);
    if (found == Part::NoPicture) continue;
    if (found != kind) return false;
    isPicture = true;
  }
}

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

std::optional<Packing> Packing::of(const GstCaps& caps) {
  const GstStructure* stream = gst_caps_get_structure(&caps, 0);
  const char* packing = gst_structure_get_string(stream, "stream-format");
  const char* alignment = gst_structure_get_string(stream, "alignment");
  if (!packing || !alignment || std::strcmp(alignment, "au") != 0) return std::nullopt;
  const bool hasStartCodes = std::strcmp(packing, "byte-stream") == 0;
  if (gst_structure_has_name(stream, "video/x-h264")) return packingOfH264(*stream, hasStartCodes);
  if (gst_structure_has_name(stream, "video/x-h265")) return packingOfH265(*stream, hasStartCodes);
  return std::nullopt;
}

bool Packing::isDisposable(GstBuffer& picture) const {
  return isAll(Part::Disposable, picture, *this);
}

bool Packing::isFreshStart(GstBuffer& picture) const {
  return isAll(Part::FreshStart, picture, *this);
}

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
