#include "hosts/probe/OpenMedia.h"

#include "hosts/probe/MediaProbe.h"

extern "C" {
#include <libavutil/avstring.h>
}

#include <array>
#include <cerrno>
#include <cstdio>
#include <mutex>

namespace probe {

namespace {

constexpr int bufferSize = 32 * 1024;

/// Containers of sound and pictures. Play lists, which would name other files or addresses, and formats that
/// recognise nearly everything are not among them.
constexpr const char* containers =
    "mov,mp4,m4a,3gp,3g2,mj2,matroska,webm,avi,mpegts,mpeg,mpegvideo,flv,live_flv,asf,ogg,dv,gxf,mxf,nut,rm,ivf,wtv,"
    "nuv,yuv4mpegpipe,h264,hevc,m4v,vc1,mp3,wav,w64,flac,aac,ac3,eac3,dts,aiff,au,amr,caf,ape,wv,tta";

std::string textOfError(int error) {
  if (error == AVERROR(ENOMEM)) return outOfMemory;
  std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
  av_strerror(error, text.data(), text.size());
  return text.data();
}

void silenceLog() {
  static std::once_flag once;
  std::call_once(once, [] { av_log_set_level(AV_LOG_QUIET); });
}

int hasPassed(void* deadline) {
  return static_cast<const Deadline*>(deadline)->passed() ? 1 : 0;
}

int refuseOtherFile(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
  return AVERROR(EPERM);
}

bool isDescribed(const AVStream& track) {
  const AVCodecParameters& codec = *track.codecpar;
  if (codec.codec_type == AVMEDIA_TYPE_VIDEO) return codec.codec_id != AV_CODEC_ID_NONE && codec.width > 0;
  if (codec.codec_type == AVMEDIA_TYPE_AUDIO) return codec.codec_id != AV_CODEC_ID_NONE && codec.sample_rate > 0;
  return true;
}

bool hasDuration(const AVFormatContext& format) {
  return format.duration != AV_NOPTS_VALUE && format.duration > 0;
}

/// Whether the header alone told everything, which saves decoding the beginning of each track.
bool knowsAll(const AVFormatContext& format) {
  if ((format.ctx_flags & AVFMTCTX_NOHEADER) != 0 || !hasDuration(format)) return false;
  for (unsigned i = 0; i < format.nb_streams; ++i) {
    if (!isDescribed(*format.streams[i])) return false;
  }
  return true;
}

/// Also where the codec is not known: protected tracks may hide theirs.
bool hasSoundOrPicture(const AVFormatContext& format) {
  for (unsigned i = 0; i < format.nb_streams; ++i) {
    const AVStream& track = *format.streams[i];
    const AVMediaType type = track.codecpar->codec_type;
    const bool isMedia = type == AVMEDIA_TYPE_AUDIO || (type == AVMEDIA_TYPE_VIDEO && !isAttachedPicture(track));
    if (isMedia) return true;
  }
  return false;
}

}  // namespace

std::unique_ptr<OpenMedia> OpenMedia::open(const std::string& path, Deadline deadline, std::string& reason) {
  silenceLog();
  auto file = MediaFile::open(path, reason);
  if (!file) return nullptr;
  if (file->size() == 0) {
    reason = "the file is empty";
    return nullptr;
  }
  std::unique_ptr<OpenMedia> media(new OpenMedia(std::move(*file), deadline));
  const bool opened = media->openFormat(reason) && media->completeStructure(reason);
  if (deadline.passed()) reason = tooLate;
  return opened && !deadline.passed() ? std::move(media) : nullptr;
}

bool OpenMedia::openFormat(std::string& reason) {
  auto* buffer = static_cast<unsigned char*>(av_malloc(bufferSize));
  AVIOContext* inputOutput = avio_alloc_context(buffer, bufferSize, 0, this, readBytes, nullptr, moveTo);
  AVFormatContext* format = avformat_alloc_context();
  if (inputOutput == nullptr || format == nullptr) {
    reason = outOfMemory;
    if (inputOutput == nullptr) av_free(buffer);
    inputOutput_.reset(inputOutput);
    avformat_free_context(format);
    return false;
  }
  inputOutput_.reset(inputOutput);
  format->pb = inputOutput;
  format->interrupt_callback = {hasPassed, &deadline_};
  format->io_open = refuseOtherFile;
  format->format_whitelist = av_strdup(containers);
  format->protocol_whitelist = av_strdup("none");
  // Without a name: what a file is, is decided by its contents alone.
  const int error = avformat_open_input(&format, nullptr, nullptr, nullptr);
  if (error < 0) {
    reason = textOfError(error);
    return false;
  }
  format_.reset(format);
  return true;
}

bool OpenMedia::completeStructure(std::string& reason) {
  if (format_->probe_score < AVPROBE_SCORE_RETRY) {
    reason = "not recognised as a media file";
    return false;
  }
  if (!knowsAll(*format_)) {
    const int error = avformat_find_stream_info(format_.get(), nullptr);
    if (error < 0) {
      reason = textOfError(error);
      return false;
    }
  }
  if (hasSoundOrPicture(*format_)) return true;
  reason = "no track of sound or pictures";
  return false;
}

int OpenMedia::readBytes(void* self, std::uint8_t* bytes, int count) {
  auto& media = *static_cast<OpenMedia*>(self);
  if (media.deadline_.passed()) return AVERROR_EXIT;
  const std::int64_t got = media.file_.readAt(media.position_, bytes, static_cast<std::size_t>(count));
  if (got < 0) return AVERROR(EIO);
  if (got == 0) return AVERROR_EOF;
  media.position_ += got;
  return static_cast<int>(got);
}

std::int64_t OpenMedia::moveTo(void* self, std::int64_t offset, int whence) {
  auto& media = *static_cast<OpenMedia*>(self);
  std::int64_t origin = 0;
  switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
      return media.file_.size();
    case SEEK_SET:
      break;
    case SEEK_CUR:
      origin = media.position_;
      break;
    case SEEK_END:
      origin = media.file_.size();
      break;
    default:
      return AVERROR(EINVAL);
  }
  std::int64_t target = 0;
  if (__builtin_add_overflow(origin, offset, &target) || target < 0) return AVERROR(EINVAL);
  media.position_ = target;
  return target;
}

bool OpenMedia::isContainer(const char* name) const {
  return av_match_name(name, format_->iformat->name) != 0;
}

void OpenMedia::selectOnly(const AVStream& track) {
  for (unsigned i = 0; i < format_->nb_streams; ++i) {
    AVStream& other = *format_->streams[i];
    other.discard = &other == &track ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
  }
}

bool OpenMedia::read(AVPacket& packet) {
  av_packet_unref(&packet);
  return !deadline_.passed() && av_read_frame(format_.get(), &packet) >= 0;
}

bool isAttachedPicture(const AVStream& track) {
  return (track.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

Decoder openDecoder(const AVStream& track) {
  const AVCodec* codec = avcodec_find_decoder(track.codecpar->codec_id);
  if (codec == nullptr) return nullptr;
  Decoder decoder(avcodec_alloc_context3(codec));
  if (!decoder || avcodec_parameters_to_context(decoder.get(), track.codecpar) < 0) return nullptr;
  decoder->pkt_timebase = track.time_base;
  decoder->thread_count = 1;
  if (avcodec_open2(decoder.get(), codec, nullptr) < 0) return nullptr;
  return decoder;
}

}  // namespace probe
