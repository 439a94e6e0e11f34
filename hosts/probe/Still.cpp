#include "hosts/probe/Still.h"

#include "hosts/probe/Orientation.h"
#include "hosts/probe/Protection.h"
#include "hosts/probe/ToneMapping.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <new>
#include <utility>

namespace probe {

namespace {

constexpr std::array<double, 3> places = {0.1, 0.3, 0.5};  // of the length
constexpr int mostPacketsForStill = 20'000;                // read in search of a key frame
constexpr int mostKeyFrames = 4;                           // tried at one place, should some be broken

/// The box that a frame's pixels fill, with square pixels, before the picture is turned upright.
struct Size {
  int width = 0;
  int height = 0;
};

double pixelAspect(AVFormatContext& format, AVStream& track, AVFrame& frame) {
  const double aspect = av_q2d(av_guess_sample_aspect_ratio(&format, &track, &frame));
  constexpr double extreme = 8.0;  // beyond that the header is broken
  return aspect >= 1.0 / extreme && aspect <= extreme ? aspect : 1.0;
}

/// Square pixels come from the finer of the two directions, so that nothing is lost; nothing is enlarged further.
Size fittedSize(const AVFrame& frame, double aspect, int largestSide) {
  const double width = frame.width * std::max(1.0, aspect);
  const double height = frame.height * std::max(1.0, 1.0 / aspect);
  const double factor = std::min(1.0, largestSide / std::max(width, height));
  return {std::max(1, static_cast<int>(std::lround(width * factor))),
          std::max(1, static_cast<int>(std::lround(height * factor)))};
}

/// Videos that do not say which colours they mean are of high definition (BT.709) or not (BT.601).
const int* colourCoefficients(const AVFrame& frame) {
  constexpr int highDefinition = 720;
  const bool isUnknown = frame.colorspace == AVCOL_SPC_UNSPECIFIED || frame.colorspace == AVCOL_SPC_RESERVED;
  const int space = !isUnknown                       ? static_cast<int>(frame.colorspace)
                    : frame.height >= highDefinition ? SWS_CS_ITU709
                                                     : SWS_CS_ITU601;
  return sws_getCoefficients(space);
}

bool isFullRange(const AVFrame& frame) {
  switch (frame.format) {
    case AV_PIX_FMT_YUVJ420P:
    case AV_PIX_FMT_YUVJ422P:
    case AV_PIX_FMT_YUVJ444P:
    case AV_PIX_FMT_YUVJ440P:
      return true;
    default:
      return frame.color_range == AVCOL_RANGE_JPEG;
  }
}

/// None for videos of ordinary range.
std::optional<HighRange> highRangeOf(const AVFrame& frame) {
  switch (frame.color_trc) {
    case AVCOL_TRC_SMPTE2084:
      return HighRange::PerceptualQuantizer;
    case AVCOL_TRC_ARIB_STD_B67:
      return HighRange::HybridLogGamma;
    default:
      return std::nullopt;
  }
}

/// Rows of 32 bits a pixel, in `format`.
std::optional<Still> scaledTo(AVPixelFormat format, const AVFrame& frame, Size size) {
  const Scaler scaler(sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), size.width,
                                     size.height, format, SWS_BILINEAR, nullptr, nullptr, nullptr));
  if (!scaler) return std::nullopt;
  constexpr int one = 1 << 16;
  sws_setColorspaceDetails(scaler.get(), colourCoefficients(frame), isFullRange(frame) ? 1 : 0,
                           sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, one, one);
  Still still{size.width, size.height, {}};
  const std::size_t stride = static_cast<std::size_t>(size.width) * 4;
  // The scaler writes whole vectors, also past the end of a row.
  constexpr std::size_t slack = 64;
  still.bgrx.resize(stride * static_cast<std::size_t>(size.height) + slack);
  std::array<std::uint8_t*, 4> planes = {still.bgrx.data(), nullptr, nullptr, nullptr};
  std::array<int, 4> strides = {static_cast<int>(stride), 0, 0, 0};
  const int rows =
      sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes.data(), strides.data());
  if (rows != size.height) return std::nullopt;
  still.bgrx.resize(stride * static_cast<std::size_t>(size.height));
  return still;
}

std::optional<Still> broughtToTheScreen(const AVFrame& frame, Size size, HighRange range) {
  auto still = scaledTo(AV_PIX_FMT_X2RGB10, frame, size);
  if (!still) return std::nullopt;
  std::vector<std::uint32_t> deep(still->bgrx.size() / sizeof(std::uint32_t));
  std::memcpy(deep.data(), still->bgrx.data(), still->bgrx.size());
  ToneMapping(range).mapRow(deep.data(), still->bgrx.data(), static_cast<int>(deep.size()));
  return still;
}

std::optional<Still> scaled(const AVFrame& frame, Size size) {
  if (const auto range = highRangeOf(frame)) return broughtToTheScreen(frame, size, *range);
  auto still = scaledTo(AV_PIX_FMT_BGR0, frame, size);
  if (!still) return std::nullopt;
  for (std::size_t i = 3; i < still->bgrx.size(); i += 4) still->bgrx[i] = 255;
  return still;
}

/// Neither black nor flat: the picture has light, and light and shade.
bool isTelling(const Still& still) {
  double sum = 0.0;
  double sumOfSquares = 0.0;
  for (std::size_t i = 0; i + 2 < still.bgrx.size(); i += 4) {
    const double light = 0.114 * still.bgrx[i] + 0.587 * still.bgrx[i + 1] + 0.299 * still.bgrx[i + 2];
    sum += light;
    sumOfSquares += light * light;
  }
  const double count = static_cast<double>(still.bgrx.size() / 4);
  const double mean = sum / count;
  const double deviation = std::sqrt(std::max(0.0, sumOfSquares / count - mean * mean));
  constexpr double darkest = 10.0;
  constexpr double flattest = 5.0;
  return mean > darkest && deviation > flattest;
}

/// Searches one film for its still.
class Search {
 public:
  Search(OpenMedia& media, AVStream& track, int largestSide, ReadingPosition position)
      : media_(media),
        track_(track),
        largestSide_(largestSide),
        decoder_(openDecoder(track)),
        isAtStart_(position == ReadingPosition::Start) {
    media.selectOnly(track);
    if (decoder_ && isShrunk()) decoder_->skip_loop_filter = AVDISCARD_ALL;
  }

  std::optional<Still> run() {
    if (!decoder_ || !packet_ || !frame_) return std::nullopt;
    std::optional<Still> last;
    for (const double place : places) {
      if (!seek(place)) continue;
      auto still = nextStill();
      if (!still) continue;
      if (isTelling(*still)) return still;
      last = std::move(still);
    }
    return last;
  }

 private:
  /// By so much that smoothing the edges between the stored blocks, which takes its time, cannot be seen.
  bool isShrunk() const {
    constexpr int factor = 3;
    return std::max(track_.codecpar->width, track_.codecpar->height) / factor >= largestSide_;
  }

  /// To the last key frame before `place`; where one cannot seek, the beginning has to do. False when that leads
  /// nowhere new.
  bool seek(double place) {
    const bool wasAtStart = std::exchange(isAtStart_, false);
    return seekInside(place) || wasAtStart;
  }

  bool seekInside(double place) {
    AVFormatContext& format = media_.format();
    if (format.duration == AV_NOPTS_VALUE || format.duration <= 0) return false;
    const std::int64_t start = format.start_time == AV_NOPTS_VALUE ? 0 : format.start_time;
    const auto offset = static_cast<std::int64_t>(place * static_cast<double>(format.duration));
    std::int64_t target = 0;
    if (__builtin_add_overflow(start, offset, &target)) return false;
    const std::int64_t time = av_rescale_q(target, AV_TIME_BASE_Q, track_.time_base);
    return av_seek_frame(&format, track_.index, time, AVSEEK_FLAG_BACKWARD) >= 0;
  }

  std::optional<Still> nextStill() {
    int keyFrames = 0;
    for (int count = 0; count < mostPacketsForStill && keyFrames < mostKeyFrames && media_.read(*packet_); ++count) {
      if (packet_->stream_index != track_.index || (packet_->flags & AV_PKT_FLAG_KEY) == 0) continue;
      if (packet_->pts != AV_NOPTS_VALUE && packet_->pts == lastTried_) return std::nullopt;
      lastTried_ = packet_->pts;
      ++keyFrames;
      if (decodes(*packet_)) return stillOf(*frame_);
    }
    return std::nullopt;
  }

  /// A key frame needs no other: it is decoded alone, and drained out at once.
  bool decodes(const AVPacket& packet) {
    avcodec_flush_buffers(decoder_.get());
    if (avcodec_send_packet(decoder_.get(), &packet) < 0) return false;
    avcodec_send_packet(decoder_.get(), nullptr);
    return avcodec_receive_frame(decoder_.get(), frame_.get()) >= 0 && frame_->width > 0 && frame_->height > 0;
  }

  std::optional<Still> stillOf(AVFrame& frame) {
    const Orientation orientation = orientationOf(track_, frame);
    const double aspect = pixelAspect(media_.format(), track_, frame);
    const auto still = scaled(frame, fittedSize(frame, aspect, largestSide_));
    if (!still) return std::nullopt;
    return upright(*still, orientation);
  }

  OpenMedia& media_;
  AVStream& track_;
  int largestSide_;
  Decoder decoder_;
  Packet packet_{av_packet_alloc()};
  Frame frame_{av_frame_alloc()};
  std::int64_t lastTried_ = AV_NOPTS_VALUE;
  bool isAtStart_;
};

}  // namespace

AVStream* pictureTrack(AVFormatContext& format) {
  const int best = av_find_best_stream(&format, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
  if (best >= 0 && !isAttachedPicture(*format.streams[best])) return format.streams[best];
  for (unsigned i = 0; i < format.nb_streams; ++i) {
    AVStream& track = *format.streams[i];
    if (track.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isAttachedPicture(track)) return &track;
  }
  return nullptr;
}

std::optional<Still> findStill(OpenMedia& media, int largestSide, ReadingPosition position) {
  AVStream* track = pictureTrack(media.format());
  if (track == nullptr || largestSide < 1) return std::nullopt;
  return Search(media, *track, largestSide, position).run();
}

std::optional<Still> representativeStill(const std::string& path, int largestSide, double deadlineSeconds) try {
  if (largestSide < 1) return std::nullopt;
  std::string reason;
  const auto media = OpenMedia::open(path, Deadline(deadlineSeconds), reason);
  if (!media || isProtected(*media)) return std::nullopt;
  return findStill(*media, largestSide, ReadingPosition::Start);
} catch (const std::bad_alloc&) {
  return std::nullopt;
}

}  // namespace probe
