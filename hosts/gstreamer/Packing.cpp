#include "hosts/gstreamer/Packing.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

namespace gstreamer {

namespace {

using Bytes = std::span<const guint8>;

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

}  // namespace gstreamer
