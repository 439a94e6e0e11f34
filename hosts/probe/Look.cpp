#include "hosts/probe/Handles.h"
#include "hosts/probe/LastBlock.h"
#include "hosts/probe/MediaKind.h"
#include "hosts/probe/MediaProbe.h"
#include "hosts/probe/OpenMedia.h"
#include "hosts/probe/Orientation.h"
#include "hosts/probe/Protection.h"
#include "hosts/probe/Still.h"
#include "hosts/probe/Text.h"

extern "C" {
#include <libavutil/dict.h>
}

#include <algorithm>
#include <new>
#include <utility>

namespace probe {

namespace {

/// Sound that begins this many packets late is broken sound.
constexpr int mostPacketsForFacts = 4096;
constexpr std::int64_t mostMicroseconds = std::int64_t{1} << 51U;  // 70 years: a broken header

bool isPicture(const AVStream& track) {
  return track.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isAttachedPicture(track);
}

bool isSound(const AVStream& track) {
  return track.codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
}

host::TrackKind kindOf(const AVStream& track) {
  if (isPicture(track)) return host::TrackKind::Video;
  return isSound(track) ? host::TrackKind::Audio : host::TrackKind::Other;
}

std::vector<host::TrackFacts> tracksOf(const AVFormatContext& format) {
  std::vector<host::TrackFacts> tracks;
  for (unsigned i = 0; i < format.nb_streams; ++i) {
    tracks.push_back({static_cast<int>(i) + 1, kindOf(*format.streams[i])});
  }
  return tracks;
}

bool hasSound(const AVFormatContext& format) {
  for (unsigned i = 0; i < format.nb_streams; ++i) {
    if (isSound(*format.streams[i])) return true;
  }
  return false;
}

bool hasDecodablePicture(const AVFormatContext& format) {
  for (unsigned i = 0; i < format.nb_streams; ++i) {
    const AVStream& track = *format.streams[i];
    if (isPicture(track) && avcodec_find_decoder(track.codecpar->codec_id) != nullptr) return true;
  }
  return false;
}

/// Microseconds from the file's origin, 0 if unknown.
std::int64_t endOf(const AVStream& track) {
  if (track.duration == AV_NOPTS_VALUE || track.duration <= 0) return 0;
  const std::int64_t length = av_rescale_q(track.duration, track.time_base, AV_TIME_BASE_Q);
  const std::int64_t start =
      track.start_time == AV_NOPTS_VALUE ? 0 : av_rescale_q(track.start_time, track.time_base, AV_TIME_BASE_Q);
  std::int64_t end = 0;
  return __builtin_add_overflow(start, length, &end) ? 0 : end;
}

/// Broadcasts count on from wherever the recording began; their time line starts there.
std::int64_t originOf(const AVFormatContext& format) {
  const bool isAbsolute = (format.iformat->flags & AVFMT_TS_DISCONT) != 0;
  return isAbsolute && format.start_time != AV_NOPTS_VALUE ? format.start_time : 0;
}

double durationOf(OpenMedia& media) {
  constexpr auto tooLong = static_cast<double>(mostMicroseconds);
  const AVFormatContext& format = media.format();
  std::int64_t longest = 0;
  for (unsigned i = 0; i < format.nb_streams; ++i) {
    const AVStream& track = *format.streams[i];
    std::int64_t end = 0;
    if (!isPicture(track) && !isSound(track)) continue;
    if (!__builtin_sub_overflow(endOf(track), originOf(format), &end)) longest = std::max(longest, end);
  }
  if (longest == 0 && format.duration != AV_NOPTS_VALUE) longest = format.duration;
  if (longest <= 0) longest = static_cast<std::int64_t>(std::min(timeOfLastBlock(media) * AV_TIME_BASE, tooLong));
  const bool isPlausible = longest > 0 && longest < mostMicroseconds;
  return isPlausible ? static_cast<double>(longest) / AV_TIME_BASE : 0.0;
}

/// Feeds `packet` (none: the end) and tells whether samples came out.
bool givesSamples(AVCodecContext& decoder, const AVPacket* packet, AVFrame& frame) {
  avcodec_send_packet(&decoder, packet);
  while (avcodec_receive_frame(&decoder, &frame) >= 0) {
    if (frame.nb_samples > 0) return true;
  }
  return false;
}

bool decodesSamples(OpenMedia& media, const AVStream& track, AVCodecContext& decoder) {
  const Packet packet(av_packet_alloc());
  const Frame frame(av_frame_alloc());
  if (!packet || !frame) return false;
  media.selectOnly(track);
  for (int count = 0; count < mostPacketsForFacts && media.read(*packet); ++count) {
    if (packet->stream_index == track.index && givesSamples(decoder, packet.get(), *frame)) return true;
  }
  return givesSamples(decoder, nullptr, *frame);
}

/// Why the sound cannot be played, or nothing.
std::string whySoundFails(OpenMedia& media) {
  AVFormatContext& format = media.format();
  if (!hasSound(format)) return hasDecodablePicture(format) ? "" : "neither sound nor a picture that can be decoded";
  const int index = av_find_best_stream(&format, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
  if (index < 0) return "the sound track is not described well enough";
  const AVStream& track = *format.streams[index];
  const Decoder decoder = openDecoder(track);
  if (!decoder) return "no decoder for the sound";
  return decodesSamples(media, track, *decoder) ? "" : "no sound could be decoded";
}

std::optional<std::string> titleOf(const AVFormatContext& format) {
  const AVDictionaryEntry* entry = av_dict_get(format.metadata, "title", nullptr, 0);
  if (entry == nullptr) return std::nullopt;
  std::string title = lineOfText(entry->value);
  if (title.empty()) return std::nullopt;
  return title;
}

Orientation pictureOrientation(AVFormatContext& format) {
  const AVStream* track = pictureTrack(format);
  return track == nullptr ? Orientation{} : orientationOf(*track);
}

FileFacts factsOf(OpenMedia& media) {
  AVFormatContext& format = media.format();
  FileFacts facts;
  facts.media.readable = true;
  facts.media.duration = durationOf(media);
  facts.media.tracks = tracksOf(format);
  facts.title = titleOf(format);
  facts.hasPicture = hasDecodablePicture(format);
  facts.media.orientation = pictureOrientation(format);
  facts.rotation = degreesClockwise(facts.media.orientation);
  facts.mediaType = mediaKind(format, facts.hasPicture);
  facts.media.hasProtectedContent = isProtected(media);
  facts.reason = facts.media.hasProtectedContent ? "the file is protected" : whySoundFails(media);
  facts.media.soundOpens = facts.reason.empty();
  return facts;
}

FileFacts unreadable(std::string reason) {
  FileFacts facts;
  facts.reason = std::move(reason);
  return facts;
}

/// The facts of the file at `path`; `more` does what else is to be done while it is open and readable.
template <class More>
FileFacts lookInto(const std::string& path, const Deadline& deadline, const More& more) {
  std::string reason;
  const auto media = OpenMedia::open(path, deadline, reason);
  if (!media) return unreadable(std::move(reason));
  FileFacts facts = factsOf(*media);
  if (deadline.passed()) return unreadable(tooLate);
  more(*media, facts);
  return facts;
}

}  // namespace

FileFacts look(const std::string& path, double deadlineSeconds) try {
  return lookInto(path, Deadline(deadlineSeconds), [](OpenMedia&, const FileFacts&) {});
} catch (const std::bad_alloc&) {
  return unreadable(outOfMemory);
}

FactsAndStill lookWithStill(const std::string& path, int largestSide, double deadlineSeconds) try {
  FactsAndStill result;
  bool isSearched = false;
  result.facts = lookInto(path, Deadline(deadlineSeconds), [&](OpenMedia& media, const FileFacts& facts) {
    isSearched = facts.hasPicture && !facts.media.hasProtectedContent;
    if (isSearched) result.still = findStill(media, largestSide, ReadingPosition::Elsewhere);
  });
  // What cannot be sought in is read from its beginning once more.
  if (isSearched && !result.still) result.still = representativeStill(path, largestSide, deadlineSeconds);
  return result;
} catch (const std::bad_alloc&) {
  return {unreadable(outOfMemory), std::nullopt};
}

}  // namespace probe
