#include "hosts/gstreamer/PictureMaker.h"

#include "hosts/gstreamer/BlueWeight.h"
#include "hosts/gstreamer/Instant.h"
#include "hosts/probe/ToneMapping.h"

#include <libyuv.h>
#include <libyuv/row.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace gstreamer {

const char* const takenFormats =
    "{ I420, YV12, NV12, NV21, Y42B, Y444, GRAY8, I420_10LE, I422_10LE, P010_10LE, BGRx, BGRA }";

namespace {

constexpr int bytesPerPixel = 4;
/// Rows begin where the widest vector instructions like them to.
constexpr int rowAlignment = 64;

int strideOf(int width) {
  return (width * bytesPerPixel + rowAlignment - 1) / rowAlignment * rowAlignment;
}

int halfOf(int size) {
  return (size + 1) / 2;
}

/// Bilinear: at the usual reduction of a film to its half of the screen it costs a quarter of the box filter.
constexpr libyuv::FilterMode filter = libyuv::kFilterBilinear;

/// How a frame's luma and colour differences become red, green and blue.
struct Colours {
  GstVideoColorMatrix matrix = GST_VIDEO_COLOR_MATRIX_UNKNOWN;
  bool isFullRange = false;
  GstVideoTransferFunction transfer = GST_VIDEO_TRANSFER_UNKNOWN;

  bool isRgb() const { return matrix == GST_VIDEO_COLOR_MATRIX_RGB; }
};

/// Frames that do not say which matrix they mean are of high definition (BT.709) or not (BT.601). GStreamer's own
/// guess takes BT.2020 for the largest ones, which cameras of 8 bits do not write.
Colours coloursOf(const GstCaps& caps, const GstVideoInfo& info) {
  constexpr int highDefinition = 720;
  const gchar* told = gst_structure_get_string(gst_caps_get_structure(&caps, 0), "colorimetry");
  GstVideoColorimetry colorimetry{};
  if (told) gst_video_colorimetry_from_string(&colorimetry, told);
  Colours colours{colorimetry.matrix, colorimetry.range == GST_VIDEO_COLOR_RANGE_0_255, colorimetry.transfer};
  if (colours.matrix == GST_VIDEO_COLOR_MATRIX_UNKNOWN)
    colours.matrix =
        GST_VIDEO_INFO_HEIGHT(&info) >= highDefinition ? GST_VIDEO_COLOR_MATRIX_BT709 : GST_VIDEO_COLOR_MATRIX_BT601;
  return colours;
}

const libyuv::YuvConstants& constantsOf(const Colours& colours) {
  // libyuv reads them as whole vectors.
  alignas(64) static const libyuv::YuvConstants limited601 = withBlue(129, libyuv::kYuvI601Constants);
  alignas(64) static const libyuv::YuvConstants limited709 = withBlue(135, libyuv::kYuvH709Constants);
  alignas(64) static const libyuv::YuvConstants limited2020 = withBlue(137, libyuv::kYuv2020Constants);
  switch (colours.matrix) {
    case GST_VIDEO_COLOR_MATRIX_BT709:
    case GST_VIDEO_COLOR_MATRIX_SMPTE240M:
      return colours.isFullRange ? libyuv::kYuvF709Constants : limited709;
    case GST_VIDEO_COLOR_MATRIX_BT2020:
      return colours.isFullRange ? libyuv::kYuvV2020Constants : limited2020;
    default:
      return colours.isFullRange ? libyuv::kYuvJPEGConstants : limited601;
  }
}

struct Plane {
  const std::uint8_t* data = nullptr;
  int stride = 0;  ///< bytes

  const std::uint16_t* wide() const { return static_cast<const std::uint16_t*>(static_cast<const void*>(data)); }
  int wideStride() const { return stride / 2; }
};

struct Room {
  std::uint8_t* data = nullptr;
  int stride = 0;  ///< bytes

  std::uint16_t* wide() const { return static_cast<std::uint16_t*>(static_cast<void*>(data)); }
  int wideStride() const { return stride / 2; }
  Plane plane() const { return {data, stride}; }
};

/// A frame whose memory can be read while this exists.
class MappedFrame {
 public:
  explicit MappedFrame(GstSample& sample) {
    GstCaps* caps = gst_sample_get_caps(&sample);
    GstBuffer* buffer = gst_sample_get_buffer(&sample);
    mapped_ = caps && buffer && gst_video_info_from_caps(&info_, caps) &&
              gst_video_frame_map(&frame_, &info_, buffer, GST_MAP_READ);
    if (mapped_) colours_ = coloursOf(*caps, info_);
  }
  ~MappedFrame() {
    if (mapped_) gst_video_frame_unmap(&frame_);
  }
  MappedFrame(const MappedFrame&) = delete;
  MappedFrame& operator=(const MappedFrame&) = delete;

  explicit operator bool() const { return mapped_; }
  const GstVideoInfo& info() const { return info_; }
  const Colours& colours() const { return colours_; }
  int width() const { return GST_VIDEO_INFO_WIDTH(&info_); }
  int height() const { return GST_VIDEO_INFO_HEIGHT(&info_); }
  GstVideoFormat format() const { return GST_VIDEO_INFO_FORMAT(&info_); }
  Box sizeOf(int component) const {
    return {GST_VIDEO_FRAME_COMP_WIDTH(&frame_, component), GST_VIDEO_FRAME_COMP_HEIGHT(&frame_, component)};
  }
  /// Luma, blue difference and red difference in this order, whatever the order in memory.
  Plane component(int number) const {
    return {static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_COMP_DATA(&frame_, number)),
            GST_VIDEO_FRAME_COMP_STRIDE(&frame_, number)};
  }
  Plane plane(int number) const {
    return {static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame_, number)),
            GST_VIDEO_FRAME_PLANE_STRIDE(&frame_, number)};
  }

 private:
  GstVideoInfo info_{};
  GstVideoFrame frame_{};
  Colours colours_;
  bool mapped_ = false;
};

/// An orientation as libyuv goes about it: first mirrored left to right, then turned clockwise.
struct Turn {
  explicit Turn(Orientation upright)
      : mirrors((upright.swapsSides != upright.mirrorsHorizontally) != upright.mirrorsVertically) {
    if (upright.swapsSides) {
      rotation = upright.mirrorsHorizontally ? libyuv::kRotate90 : libyuv::kRotate270;
    } else {
      rotation = upright.mirrorsVertically ? libyuv::kRotate180 : libyuv::kRotate0;
    }
  }

  bool mirrors;
  libyuv::RotationMode rotation;
};

}  // namespace

double timeOf(GstSample& frame) {
  const GstClockTime time = GST_BUFFER_PTS(gst_sample_get_buffer(&frame));
  const guint64 place = gst_segment_to_stream_time(gst_sample_get_segment(&frame), GST_FORMAT_TIME, time);
  return GST_CLOCK_TIME_IS_VALID(place) ? seconds(static_cast<Instant>(place)) : HUGE_VAL;
}

Box fitted(const GstVideoInfo& frame, Orientation orientation, Box box) {
  const double pixelShape = static_cast<double>(GST_VIDEO_INFO_PAR_N(&frame)) / GST_VIDEO_INFO_PAR_D(&frame);
  double width = GST_VIDEO_INFO_WIDTH(&frame) * pixelShape;
  double height = GST_VIDEO_INFO_HEIGHT(&frame);
  if (orientation.swapsSides) std::swap(width, height);
  const double scale = std::min(box.width / width, box.height / height);
  return {std::clamp(static_cast<int>(std::lround(width * scale)), 1, box.width),
          std::clamp(static_cast<int>(std::lround(height * scale)), 1, box.height)};
}

/// Memory of pictures that nobody looks at any more, for the next ones. The pictures themselves may outlive it.
class PictureMaker::Pool : public std::enable_shared_from_this<Pool> {
 public:
  using Memory = std::vector<std::uint8_t>;

  std::shared_ptr<Memory> take(std::size_t size) {
    std::unique_ptr<Memory> memory = free(size);
    Memory* const taken = memory.release();
    return {taken, [pool = weak_from_this()](Memory* given) {
              std::unique_ptr<Memory> owned(given);
              if (const auto home = pool.lock()) home->giveBack(std::move(owned));
            }};
  }

 private:
  /// As many as are commonly out at the same time: on the board, on the screen, in the making.
  static constexpr std::size_t most = 4;

  std::unique_ptr<Memory> free(std::size_t size) {
    const std::lock_guard lock(mutex_);
    if (size != size_) free_.clear();
    size_ = size;
    if (free_.empty()) return std::make_unique<Memory>(size);
    std::unique_ptr<Memory> memory = std::move(free_.back());
    free_.pop_back();
    return memory;
  }

  void giveBack(std::unique_ptr<Memory> memory) {
    const std::lock_guard lock(mutex_);
    if (memory->size() == size_ && free_.size() < most) free_.push_back(std::move(memory));
  }

  std::mutex mutex_;
  std::size_t size_ = 0;
  std::vector<std::unique_ptr<Memory>> free_;
};

/// Scales, converts and turns one frame at a time; keeps the room for what lies between the steps.
class PictureMaker::Drawing {
 public:
  /// The frame, `upright` in size and orientation, into `target`. False for a format it does not know.
  bool draw(const MappedFrame& frame, Orientation orientation, Box upright, Room target) {
    if (orientation == Orientation{}) return convert(frame, upright, target);
    const Turn turn(orientation);
    const Box stored = orientation.swapsSides ? Box{upright.height, upright.width} : upright;
    Room flat = room(flat_, stored.width * bytesPerPixel, stored.height);
    if (!convert(frame, stored, flat)) return false;
    if (turn.mirrors) {
      const Room mirrored = room(mirrored_, stored.width * bytesPerPixel, stored.height);
      libyuv::ARGBMirror(flat.data, flat.stride, mirrored.data, mirrored.stride, stored.width, stored.height);
      flat = mirrored;
    }
    libyuv::ARGBRotate(flat.data, flat.stride, target.data, target.stride, stored.width, stored.height,
                       turn.rotation);
    return true;
  }

 private:
  using Scratch = std::vector<std::uint8_t>;

  static Room room(Scratch& scratch, int rowBytes, int rows) {
    const int stride = (rowBytes + rowAlignment - 1) / rowAlignment * rowAlignment;
    const auto needed = static_cast<std::size_t>(stride) * static_cast<std::size_t>(rows);
    if (scratch.size() < needed) scratch.resize(needed);
    return {scratch.data(), stride};
  }

  bool convert(const MappedFrame& frame, Box size, Room target) {
    switch (frame.format()) {
      case GST_VIDEO_FORMAT_I420:
      case GST_VIDEO_FORMAT_YV12:
        return convertPlanar(frame, size, target, halfOf(size.width), halfOf(size.height), libyuv::I420Scale,
                             libyuv::I420ToARGBMatrix);
      case GST_VIDEO_FORMAT_Y42B:
        return convertPlanar(frame, size, target, halfOf(size.width), size.height, libyuv::I422Scale,
                             libyuv::I422ToARGBMatrix);
      case GST_VIDEO_FORMAT_Y444:
        if (frame.colours().isRgb()) return convertRgbPlanes(frame, size, target);
        return convertPlanar(frame, size, target, size.width, size.height, libyuv::I444Scale,
                             libyuv::I444ToARGBMatrix);
      case GST_VIDEO_FORMAT_I420_10LE:
        return convertDeep(frame, {frame.component(0), frame.component(1), frame.component(2)}, size, target,
                           halfOf(size.height), libyuv::I420Scale_16, libyuv::I010ToARGBMatrix,
                           libyuv::I010ToAR30Matrix);
      case GST_VIDEO_FORMAT_I422_10LE:
        return convertDeep(frame, {frame.component(0), frame.component(1), frame.component(2)}, size, target,
                           size.height, libyuv::I422Scale_16, libyuv::I210ToARGBMatrix, libyuv::I210ToAR30Matrix);
      case GST_VIDEO_FORMAT_P010_10LE:
        return convertDeep(frame, separated(frame), size, target, halfOf(size.height), libyuv::I420Scale_16,
                           libyuv::I010ToARGBMatrix, libyuv::I010ToAR30Matrix);
      case GST_VIDEO_FORMAT_NV12:
        return convertInterleaved(frame, size, target, libyuv::NV12ToARGBMatrix);
      case GST_VIDEO_FORMAT_NV21:
        return convertInterleaved(frame, size, target, libyuv::NV21ToARGBMatrix);
      case GST_VIDEO_FORMAT_GRAY8:
        return convertGrey(frame, size, target);
      case GST_VIDEO_FORMAT_BGRx:
      case GST_VIDEO_FORMAT_BGRA:
        return libyuv::ARGBScale(frame.plane(0).data, frame.plane(0).stride, frame.width(), frame.height(),
                                 target.data, target.stride, size.width, size.height, filter) == 0;
      default:
        return false;
    }
  }

  template <typename Scale, typename Convert>
  bool convertPlanar(const MappedFrame& frame, Box size, Room target, int chromaWidth, int chromaHeight, Scale scale,
                     Convert toPixels) {
    Plane y = frame.component(0), u = frame.component(1), v = frame.component(2);
    if (size != Box{frame.width(), frame.height()}) {
      const Room toY = room(y_, size.width, size.height);
      const Room toU = room(u_, chromaWidth, chromaHeight);
      const Room toV = room(v_, chromaWidth, chromaHeight);
      const Box chroma{chromaWidth, chromaHeight};
      if (isThird(frame, 0, size) && isThird(frame, 1, chroma)) {
        takeThird(y, toY, size), takeThird(u, toU, chroma), takeThird(v, toV, chroma);
      } else {
        scale(y.data, y.stride, u.data, u.stride, v.data, v.stride, frame.width(), frame.height(), toY.data,
              toY.stride, toU.data, toU.stride, toV.data, toV.stride, size.width, size.height, filter);
      }
      y = toY.plane(), u = toU.plane(), v = toV.plane();
    }
    return toPixels(y.data, y.stride, u.data, u.stride, v.data, v.stride, target.data, target.stride,
                    &constantsOf(frame.colours()), size.width, size.height) == 0;
  }

  static bool isThird(const MappedFrame& frame, int component, Box size) {
    return frame.sizeOf(component) == Box{3 * size.width, 3 * size.height};
  }

  /// At exactly a third every sample falls onto the middle one of nine. libyuv takes them one by one, and so uses no
  /// vectors; but the middle one of three is what it would call the green of a pixel of three bytes, and all the
  /// greens of a row it takes at once.
  void takeThird(const Plane& from, const Room& to, Box size) {
    const Room others = room(others_, size.width, 2);
    libyuv::SplitRGBPlane(from.data + from.stride, 3 * from.stride, others.data, 0, to.data, to.stride,
                          others.data + others.stride, 0, size.width, size.height);
  }

  /// More than 8 bits a component, chroma of half the width.
  template <typename Scale, typename Convert>
  bool convertDeep(const MappedFrame& frame, std::array<Plane, 3> from, Box size, Room target, int chromaHeight,
                   Scale scale, Convert toPixels, Convert toDeepPixels) {
    auto [y, u, v] = from;
    if (size != Box{frame.width(), frame.height()}) {
      const Room toY = room(y_, 2 * size.width, size.height);
      const Room toU = room(u_, 2 * halfOf(size.width), chromaHeight);
      const Room toV = room(v_, 2 * halfOf(size.width), chromaHeight);
      scale(y.wide(), y.wideStride(), u.wide(), u.wideStride(), v.wide(), v.wideStride(), frame.width(),
            frame.height(), toY.wide(), toY.wideStride(), toU.wide(), toU.wideStride(), toV.wide(), toV.wideStride(),
            size.width, size.height, filter);
      y = toY.plane(), u = toU.plane(), v = toV.plane();
    }
    const auto pixels = [&](Convert make, const Room& to) {
      return make(y.wide(), y.wideStride(), u.wide(), u.wideStride(), v.wide(), v.wideStride(), to.data, to.stride,
                  &constantsOf(frame.colours()), size.width, size.height) == 0;
    };
    const probe::ToneMapping* toScreen = toneMappingFor(frame.colours());
    if (!toScreen) return pixels(toPixels, target);
    if (!pixels(toDeepPixels, target)) return false;
    for (int row = 0; row < size.height; ++row) {
      std::uint8_t* const pixel = target.data + static_cast<std::ptrdiff_t>(row) * target.stride;
      toScreen->mapRow(static_cast<const std::uint32_t*>(static_cast<const void*>(pixel)), pixel, size.width);
    }
    return true;
  }

  /// None for films of ordinary range. Made once: a film does not change from one to the other.
  const probe::ToneMapping* toneMappingFor(const Colours& colours) {
    const bool quantized = colours.transfer == GST_VIDEO_TRANSFER_SMPTE2084;
    if (!quantized && colours.transfer != GST_VIDEO_TRANSFER_ARIB_STD_B67) return nullptr;
    if (!toneMapping_)
      toneMapping_ = std::make_unique<probe::ToneMapping>(quantized ? probe::HighRange::PerceptualQuantizer
                                                                    : probe::HighRange::HybridLogGamma);
    return toneMapping_.get();
  }

  /// P010 as three planes with the value in the lower bits: libyuv cannot scale it as it is.
  std::array<Plane, 3> separated(const MappedFrame& frame) {
    const int width = frame.width(), height = frame.height();
    const Room y = room(separateY_, 2 * width, height);
    const Room u = room(separateU_, 2 * halfOf(width), halfOf(height));
    const Room v = room(separateV_, 2 * halfOf(width), halfOf(height));
    const Plane fromY = frame.plane(0), fromChroma = frame.plane(1);
    libyuv::P010ToI010(fromY.wide(), fromY.wideStride(), fromChroma.wide(), fromChroma.wideStride(), y.wide(),
                       y.wideStride(), u.wide(), u.wideStride(), v.wide(), v.wideStride(), width, height);
    return {y.plane(), u.plane(), v.plane()};
  }

  template <typename Convert>
  bool convertInterleaved(const MappedFrame& frame, Box size, Room target, Convert toPixels) {
    Plane y = frame.plane(0), chroma = frame.plane(1);
    if (size != Box{frame.width(), frame.height()}) {
      const Room toY = room(y_, size.width, size.height);
      const Room toChroma = room(u_, 2 * halfOf(size.width), halfOf(size.height));
      libyuv::NV12Scale(y.data, y.stride, chroma.data, chroma.stride, frame.width(), frame.height(), toY.data,
                        toY.stride, toChroma.data, toChroma.stride, size.width, size.height, filter);
      y = toY.plane(), chroma = toChroma.plane();
    }
    return toPixels(y.data, y.stride, chroma.data, chroma.stride, target.data, target.stride,
                    &constantsOf(frame.colours()), size.width, size.height) == 0;
  }

  /// Some decoders hand out red, green and blue under the name of luma and colour differences: green, blue, red.
  bool convertRgbPlanes(const MappedFrame& frame, Box size, Room target) {
    Plane green = frame.component(0), blue = frame.component(1), red = frame.component(2);
    if (size != Box{frame.width(), frame.height()}) {
      const auto scaled = [&](const Plane& from, Scratch& scratch) {
        const Room to = room(scratch, size.width, size.height);
        libyuv::ScalePlane(from.data, from.stride, frame.width(), frame.height(), to.data, to.stride, size.width,
                           size.height, filter);
        return to.plane();
      };
      green = scaled(green, y_), blue = scaled(blue, u_), red = scaled(red, v_);
    }
    libyuv::MergeARGBPlane(red.data, red.stride, green.data, green.stride, blue.data, blue.stride, nullptr, 0,
                           target.data, target.stride, size.width, size.height);
    return true;
  }

  bool convertGrey(const MappedFrame& frame, Box size, Room target) {
    const Plane from = frame.plane(0);
    const Room y = room(y_, size.width, size.height);
    libyuv::ScalePlane(from.data, from.stride, frame.width(), frame.height(), y.data, y.stride, size.width,
                       size.height, filter);
    return libyuv::I400ToARGBMatrix(y.data, y.stride, target.data, target.stride, &constantsOf(frame.colours()),
                                    size.width, size.height) == 0;
  }

  Scratch y_, u_, v_;
  Scratch separateY_, separateU_, separateV_;
  Scratch others_;
  Scratch flat_, mirrored_;
  std::unique_ptr<probe::ToneMapping> toneMapping_;
};

PictureMaker::PictureMaker(std::shared_ptr<PictureBoard> board)
    : board_(std::move(board)), pool_(std::make_shared<Pool>()), drawing_(std::make_unique<Drawing>()) {}

PictureMaker::~PictureMaker() = default;

void PictureMaker::take(Sample frame, Orientation orientation) {
  const std::lock_guard lock(mutex_);
  frame_ = std::move(frame);
  orientation_ = orientation;
  make();
}

void PictureMaker::makeAgain() {
  const std::lock_guard lock(mutex_);
  if (frame_) make();
}

void PictureMaker::forget() {
  const std::lock_guard lock(mutex_);
  frame_.reset();
}

std::optional<double> PictureMaker::time() {
  const std::lock_guard lock(mutex_);
  return frame_ ? std::optional(timeOf(*frame_)) : std::nullopt;
}

void PictureMaker::make() {
  const Box box = board_->box();
  if (box.empty()) return;
  const MappedFrame frame(*frame_);
  if (!frame) return;
  const Box size = fitted(frame.info(), orientation_, box);
  const int stride = strideOf(size.width);
  const auto memory = pool_->take(static_cast<std::size_t>(stride) * static_cast<std::size_t>(size.height));
  if (!drawing_->draw(frame, orientation_, size, {memory->data(), stride})) return;
  board_->show(
      std::make_shared<host::Picture>(host::Picture{size.width, size.height, stride, memory->data(), memory}), box);
}

}  // namespace gstreamer
