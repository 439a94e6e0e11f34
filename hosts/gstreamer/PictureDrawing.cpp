#include "hosts/gstreamer/PictureDrawing.h"

#include "hosts/gstreamer/BlueWeight.h"
#include "hosts/probe/ToneMapping.h"

#include <libyuv.h>
#include <libyuv/row.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace gstreamer {

const char* const takenFormats =
    "{ I420, YV12, NV12, NV21, Y42B, Y444, GRAY8, I420_10LE, I422_10LE, P010_10LE, BGRx, BGRA }";

namespace {

constexpr int bytesPerPixel = 4;

int halfOf(int size) {
  return (size + 1) / 2;
}

/// Bilinear: at the usual reduction of a film to its half of the screen it costs a quarter of the box filter.
constexpr libyuv::FilterMode filter = libyuv::kFilterBilinear;

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

/// Rows begin where the widest vector instructions like them to.
int aligned(int bytes) {
  constexpr int rowAlignment = 64;
  return (bytes + rowAlignment - 1) / rowAlignment * rowAlignment;
}

}  // namespace

int strideOf(int width) {
  return aligned(width * bytesPerPixel);
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

class PictureDrawing::Steps {
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
    const int stride = aligned(rowBytes);
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
  /// greens of a row it takes at once. The rows lie too far from each other for the processor to see by itself which
  /// ones come next.
  void takeThird(const Plane& from, const Room& to, Box size) {
    constexpr int rowsAhead = 3;
    const auto middle = [&from](int row) {
      return from.data + (3 * row + 1) * static_cast<std::ptrdiff_t>(from.stride);
    };
    const auto taken = [&to](int row) { return to.data + row * static_cast<std::ptrdiff_t>(to.stride); };
    const Room others = room(others_, size.width, 2);
    for (int row = 0; row < size.height; ++row) {
      if (row + rowsAhead < size.height) fetch(middle(row + rowsAhead), 3 * size.width);
      libyuv::SplitRGBPlane(middle(row), 0, others.data, 0, taken(row), 0, others.data + others.stride, 0, size.width,
                            1);
    }
  }

  /// Has memory brought into the processor's caches, without waiting for it.
  static void fetch(const std::uint8_t* bytes, int count) {
    constexpr int cacheLine = 64;
    for (int at = 0; at < count; at += cacheLine) __builtin_prefetch(bytes + at);
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

PictureDrawing::PictureDrawing() : steps_(std::make_unique<Steps>()) {}

PictureDrawing::~PictureDrawing() = default;

bool PictureDrawing::draw(const MappedFrame& frame, Orientation orientation, Box upright, Room target) {
  return steps_->draw(frame, orientation, upright, target);
}

}  // namespace gstreamer
