#include "tests/host/gstreamer/FormatClips.h"

#include "tests/support/Clips.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <map>
#include <ostream>

namespace gstreamer {

namespace {

using Words = std::vector<std::string>;

const std::map<std::string, std::string> endings = {
    {"MP4", "mp4"},   {"QuickTime", "mov"}, {"M4V", "m4v"},          {"3GP", "3gp"},   {"Matroska", "mkv"},
    {"WebM", "webm"}, {"AVI", "avi"},       {"MPEG-TS", "ts"},       {"M2TS", "m2ts"}, {"MPEG-PS", "mpg"},
    {"Ogg", "ogv"},   {"FLV", "flv"},       {"Windows Media", "wmv"}};

const std::map<std::string, Words> pictureEncoders = {
    {"H.264", {"-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-g", "15"}},
    {"HEVC",
     {"-c:v", "libx265", "-preset", "ultrafast", "-x265-params", "log-level=error:keyint=15", "-pix_fmt", "yuv420p"}},
    {"HEVC 10 bits",
     {"-c:v", "libx265", "-preset", "ultrafast", "-x265-params", "log-level=error:keyint=15", "-pix_fmt",
      "yuv420p10le"}},
    {"VP8", {"-c:v", "libvpx", "-deadline", "realtime", "-cpu-used", "8", "-b:v", "1M", "-g", "15"}},
    {"VP9", {"-c:v", "libvpx-vp9", "-deadline", "realtime", "-cpu-used", "8", "-b:v", "1M", "-g", "15"}},
    {"AV1",
     {"-c:v", "libaom-av1", "-usage", "realtime", "-pix_fmt", "yuv420p", "-cpu-used", "8", "-b:v", "1M", "-g", "15"}},
    {"MPEG-4", {"-c:v", "mpeg4", "-q:v", "2"}},
    {"MPEG-2", {"-c:v", "mpeg2video", "-q:v", "2"}},
    {"MPEG-1", {"-c:v", "mpeg1video", "-q:v", "2"}},
    {"Theora", {"-c:v", "libtheora", "-q:v", "10", "-g", "15"}},
    {"Motion JPEG", {"-c:v", "mjpeg", "-q:v", "2", "-pix_fmt", "yuvj420p", "-color_range", "pc"}},
    {"ProRes", {"-c:v", "prores_ks", "-profile:v", "2", "-pix_fmt", "yuv422p10le"}},
    {"H.263", {"-c:v", "h263", "-q:v", "2"}},
    {"DV", {"-c:v", "dvvideo", "-pix_fmt", "yuv420p"}},
    {"Sorenson Spark", {"-c:v", "flv", "-q:v", "2"}},
    {"WMV 8", {"-c:v", "wmv2", "-q:v", "2"}}};

const std::map<std::string, Words> soundEncoders = {
    {"AAC", {"-c:a", "aac"}},      {"MP3", {"-c:a", "libmp3lame"}},   {"MP2", {"-c:a", "mp2"}},
    {"Opus", {"-c:a", "libopus"}}, {"Vorbis", {"-c:a", "libvorbis"}}, {"FLAC", {"-c:a", "flac", "-strict", "-2"}},
    {"AC-3", {"-c:a", "ac3"}},     {"E-AC-3", {"-c:a", "eac3"}},      {"PCM", {"-c:a", "pcm_s16le"}},
    {"ALAC", {"-c:a", "alac"}},    {"WMA", {"-c:a", "wmav2"}}};

const std::map<std::string, int> channelsOfLayout = {{"mono", 1}, {"stereo", 2}, {"5.1", 6}, {"7.1", 8}};

std::vector<FormatClip> plainClips() {
  const std::map<std::string, std::vector<std::array<std::string, 2>>> held = {
      {"MP4",
       {{"H.264", "AAC"},
        {"HEVC", "AAC"},
        {"HEVC 10 bits", "AC-3"},
        {"VP9", "FLAC"},
        {"AV1", "Opus"},
        {"MPEG-4", "MP3"},
        {"MPEG-2", "E-AC-3"}}},
      {"QuickTime",
       {{"H.264", "AAC"}, {"HEVC 10 bits", "AAC"}, {"Motion JPEG", "PCM"}, {"ProRes", "PCM"}, {"MPEG-4", "ALAC"}}},
      {"M4V", {{"H.264", "AAC"}, {"MPEG-4", "AC-3"}}},
      {"3GP", {{"H.264", "AAC"}, {"MPEG-4", "AAC"}, {"H.263", "AAC"}}},
      {"Matroska",
       {{"H.264", "FLAC"},
        {"HEVC", "Opus"},
        {"HEVC 10 bits", "AC-3"},
        {"VP8", "Vorbis"},
        {"VP9", "Opus"},
        {"AV1", "AAC"},
        {"MPEG-4", "MP3"},
        {"MPEG-2", "AC-3"},
        {"Theora", "Vorbis"},
        {"Motion JPEG", "PCM"},
        {"ProRes", "PCM"}}},
      {"WebM", {{"VP8", "Vorbis"}, {"VP9", "Opus"}, {"AV1", "Opus"}}},
      {"AVI", {{"MPEG-4", "MP3"}, {"Motion JPEG", "PCM"}, {"H.264", "MP3"}, {"DV", "PCM"}, {"MPEG-4", "AC-3"}}},
      {"MPEG-TS", {{"H.264", "AAC"}, {"HEVC", "AC-3"}, {"MPEG-2", "MP2"}}},
      {"M2TS", {{"H.264", "AC-3"}}},
      {"MPEG-PS", {{"MPEG-2", "MP2"}, {"MPEG-1", "MP2"}, {"MPEG-2", "AC-3"}}},
      {"Ogg", {{"Theora", "Vorbis"}, {"Theora", "Opus"}, {"Theora", "FLAC"}}},
      {"FLV", {{"Sorenson Spark", "MP3"}, {"H.264", "AAC"}}},
      {"Windows Media", {{"WMV 8", "WMA"}}}};
  std::vector<FormatClip> clips;
  for (const auto& [container, pairs] : held) {
    for (const auto& [picture, sound] : pairs) {
      FormatClip clip{"", container, picture, sound};
      if (picture == "H.263") clip.width = 176, clip.height = 144, clip.pixelShape = 12.0 / 11.0;
      if (picture == "DV") clip.width = 720, clip.height = 576, clip.rate = "25", clip.pixelShape = 16.0 / 15.0;
      clip.name = container + picture + sound;
      std::erase_if(clip.name, [](unsigned char c) { return std::isalnum(c) == 0; });
      clips.push_back(clip);
    }
  }
  return clips;
}

FormatClip special(const std::string& name, const std::string& feature) {
  FormatClip clip{name, "MP4", "H.264", "AAC"};
  clip.feature = feature;
  return clip;
}

std::vector<FormatClip> turnedClips() {
  std::vector<FormatClip> clips;
  const auto add = [&](const std::string& name, const std::string& feature, Turn turn) {
    clips.push_back(special(name, feature));
    clips.back().turn = turn;
  };
  add("TurnedBy90", "turned by 90, 180 and 270 degrees", {0, 1, -1, 0});
  add("TurnedBy180", "turned by 90, 180 and 270 degrees", {-1, 0, 0, -1});
  add("TurnedBy270", "turned by 90, 180 and 270 degrees", {0, -1, 1, 0});
  add("MirroredAcross", "mirrored", {-1, 0, 0, 1});
  add("MirroredDown", "mirrored", {1, 0, 0, -1});
  add("MirroredAndTurned", "mirrored", {0, 1, 1, 0});
  add("MirroredAndTurnedBack", "mirrored", {0, -1, -1, 0});
  return clips;
}

std::vector<FormatClip> soundClips() {
  std::vector<FormatClip> clips;
  const auto add = [&](const std::string& name, const std::string& container, const std::string& sound,
                       const std::string& layout) {
    clips.push_back(special(name, "mono, stereo, 5.1 and 7.1 sound, and none"));
    clips.back().container = container;
    clips.back().sound = sound;
    clips.back().layout = layout;
  };
  add("MonoAac", "MP4", "AAC", "mono");
  add("MonoOpus", "Matroska", "Opus", "mono");
  add("FiveOneAac", "MP4", "AAC", "5.1");
  add("FiveOneAc3", "MPEG-TS", "AC-3", "5.1");
  add("FiveOneOpus", "Matroska", "Opus", "5.1");
  add("FiveOneVorbis", "Matroska", "Vorbis", "5.1");
  add("FiveOnePcm", "QuickTime", "PCM", "5.1");
  add("SevenOneAac", "MP4", "AAC", "7.1");
  add("SevenOneFlac", "Matroska", "FLAC", "7.1");
  add("SevenOneOpus", "Matroska", "Opus", "7.1");
  add("NoSound", "MP4", "", "stereo");
  add("NoSoundMatroska", "Matroska", "", "stereo");
  clips[2].more = {"-b:a", "256k"};
  return clips;
}

std::vector<FormatClip> sizeClips() {
  std::vector<FormatClip> clips;
  const auto add = [&](const std::string& name, const std::string& feature, int width, int height) {
    clips.push_back(special(name, feature));
    clips.back().width = width;
    clips.back().height = height;
  };
  add("Tiny", "from 16 x 16 to 4096 x 2304 pixels, odd sizes too", 16, 16);
  add("Huge", "from 16 x 16 to 4096 x 2304 pixels, odd sizes too", 4096, 2304);
  clips.back().rate = "10";
  clips.back().pictureSeconds = clips.back().soundSeconds = 1.6;
  add("OddSize", "from 16 x 16 to 4096 x 2304 pixels, odd sizes too", 161, 121);
  clips.back().picture = "VP9";
  clips.back().container = "WebM";
  clips.back().sound = "Opus";
  add("OddSizeH264", "from 16 x 16 to 4096 x 2304 pixels, odd sizes too", 161, 121);
  clips.back().more = {"-pix_fmt", "yuv444p"};
  add("Upright", "from 16 x 16 to 4096 x 2304 pixels, odd sizes too", 90, 160);
  add("WidePixels", "pixels that are not square", 120, 120);
  clips.back().filters = "setsar=4/3";
  clips.back().pixelShape = 4.0 / 3.0;
  add("WidePixelsOfTelevision", "pixels that are not square", 720, 576);
  clips.back().filters = "setsar=16/11";
  clips.back().pixelShape = 16.0 / 11.0;
  clips.back().container = "MPEG-PS";
  clips.back().picture = "MPEG-2";
  clips.back().sound = "MP2";
  clips.back().rate = "25";
  clips.back().filters = "setdar=16/9";
  clips.back().pixelShape = 16.0 / 9.0 / (720.0 / 576.0);
  return clips;
}

std::vector<FormatClip> timeClips() {
  std::vector<FormatClip> clips;
  const auto add = [&](const std::string& name, const std::string& feature) -> FormatClip& {
    clips.push_back(special(name, feature));
    return clips.back();
  };
  const Words interlacing = {"-flags", "+ildct+ilme"};
  add("Interlaced", "interlaced").more = {"-flags", "+ildct+ilme", "-x264opts", "tff=1"};
  auto& broadcast = add("InterlacedMpeg2", "interlaced");
  broadcast.container = "MPEG-TS", broadcast.picture = "MPEG-2", broadcast.sound = "MP2", broadcast.rate = "25";
  broadcast.more = interlacing;
  auto& uneven = add("VariableRate", "variable frame rate");
  const std::string someFrames = "select='lt(mod(n,15),5)+eq(mod(n,15),9)'";
  uneven.filters = someFrames;
  uneven.more = {"-vsync", "vfr"};
  auto& unevenMatroska = add("VariableRateMatroska", "variable frame rate");
  unevenMatroska.container = "Matroska";
  unevenMatroska.filters = someFrames;
  unevenMatroska.more = {"-vsync", "vfr"};
  auto& slow = add("OneFrameASecond", "from 1 to 120 frames a second");
  slow.rate = "1", slow.pictureSeconds = slow.soundSeconds = 4.0;
  add("ManyFramesASecond", "from 1 to 120 frames a second").rate = "120";
  add("SoundShorter", "sound or picture shorter than the film").soundSeconds = 1.0;
  add("PictureShorter", "sound or picture shorter than the film").pictureSeconds = 1.2;
  auto& shortInMatroska = add("PictureShorterMatroska", "sound or picture shorter than the film");
  shortInMatroska.pictureSeconds = 1.2;
  shortInMatroska.container = "Matroska";
  for (const std::string container : {"MP4", "MPEG-TS", "Matroska"}) {
    auto& late = add("StartsLate" + container, "a start that is not zero");
    std::erase(late.name, '-');
    late.container = container;
    late.more = {"-output_ts_offset", "0.5"};
    // A broadcast's time line begins with its first picture, whatever the clock said then.
    if (container != "MPEG-TS") late.lead = 0.5;
  }
  return clips;
}

std::vector<FormatClip> trackClips() {
  std::vector<FormatClip> clips;
  const auto add = [&](const std::string& name, const std::string& feature) -> FormatClip& {
    clips.push_back(special(name, feature));
    return clips.back();
  };
  for (const std::string container : {"MP4", "Matroska"}) {
    auto& sounds = add("TwoSounds" + container, "more sound and picture tracks than one");
    sounds.container = container;
    sounds.more = {"-map", "0:v", "-map", "1:a", "-map", "1:a"};
    auto& pictures = add("TwoPictures" + container, "more sound and picture tracks than one");
    pictures.container = container;
    pictures.more = {"-map", "0:v", "-map", "0:v", "-map", "1:a"};
  }
  const Words subtitles = {"-f", "srt", "-i", "data:text/plain,1\n00:00:00,200 --> 00:00:01,800\nHello\n\n"};
  const std::string passedOver = "subtitles, chapters and covers in the file (passed over, not shown)";
  auto& titled = add("SubtitlesMatroska", passedOver);
  titled.container = "Matroska", titled.inputs = subtitles;
  titled.more = {"-map", "0:v", "-map", "1:a", "-map", "2:s", "-c:s", "srt"};
  auto& timed = add("SubtitlesMp4", passedOver);
  timed.inputs = subtitles;
  timed.more = {"-map", "0:v", "-map", "1:a", "-map", "2:s", "-c:s", "mov_text"};
  const std::string chapter = "[CHAPTER]\nTIMEBASE=1/1000\n";
  const Words chapters = {"-f", "ffmetadata", "-i",
                          "data:text/plain,;FFMETADATA1\n" + chapter + "START=0\nEND=1000\ntitle=One\n" + chapter +
                              "START=1000\nEND=2000\ntitle=Two\n"};
  for (const std::string container : {"MP4", "Matroska"}) {
    auto& chaptered = add("Chapters" + container, passedOver);
    chaptered.container = container, chaptered.inputs = chapters;
    chaptered.more = {"-map", "0:v", "-map", "1:a", "-map_chapters", "2"};
    auto& covered = add("Cover" + container, passedOver);
    covered.container = container;
    covered.inputs = {"-f", "lavfi", "-i", "color=purple:size=64x64:rate=1:duration=1"};
    covered.more = {"-map",
                    "0:v",
                    "-map",
                    "1:a",
                    "-map",
                    "2:v",
                    "-c:v:1",
                    "mjpeg",
                    "-pix_fmt:v:1",
                    "yuvj420p",
                    "-disposition:v:1",
                    "attached_pic"};
  }
  return clips;
}

std::string testPicture(const FormatClip& clip) {
  const std::string size = std::to_string(clip.width) + "x" + std::to_string(clip.height);
  const std::string half = std::to_string(clip.pictureSeconds / 2);
  const std::string matrix = clip.height > 576 ? "bt709" : "bt601";
  const std::string range = clip.picture == "Motion JPEG" ? "full" : "limited";
  const std::string corner = ",drawbox=w=iw/2:h=ih/2:t=fill";
  const std::string centre = ",drawbox=x=iw*3/8:y=ih*3/8:w=iw/4:h=ih/4:t=fill";
  return "color=0xC83232:size=" + size + ":rate=" + clip.rate + ":duration=" + std::to_string(clip.pictureSeconds) +
         ",format=gbrp" + corner + ":x=iw/2:y=0:color=0x32C832" + corner + ":x=0:y=ih/2:color=0x3232C8" + corner +
         ":x=iw/2:y=ih/2:color=0xC8C832" + centre + ":color=black" + centre + ":color=white:enable='gte(t," + half +
         ")',scale=out_color_matrix=" + matrix + ":out_range=" + range +
         ",format=" + (range == "full" ? "yuvj444p" : "yuv444p") + "," + clip.filters;
}

std::string testSound(const FormatClip& clip) {
  std::string channels;
  for (int i = 0; i < channelsOfLayout.at(clip.layout); ++i) channels += "0.5*sin(2*PI*440*t)|";
  channels.pop_back();
  return "aevalsrc=exprs=" + channels + ":sample_rate=48000:duration=" + std::to_string(clip.soundSeconds) +
         ":channel_layout=" + clip.layout;
}

/// Writes `turn` into the track header of the picture (ISO/IEC 14496-12, 8.3.2), which is the first one.
void turnPicture(std::string& bytes, const Turn& turn) {
  const auto matrix = bytes.find("tkhd") + 44;
  const auto put = [&](std::size_t index, int factor) {
    const auto fixedPoint = static_cast<std::uint32_t>(factor) << 16U;
    for (unsigned i = 0; i < 4; ++i)
      bytes[matrix + index * 4 + i] = static_cast<char>(fixedPoint >> (24U - 8U * i) & 0xFFU);
  };
  put(0, turn.a);
  put(1, turn.b);
  put(3, turn.c);
  put(4, turn.d);
}

std::string listOf(const std::vector<std::string>& words) {
  std::string list;
  for (const auto& word : words) list += (list.empty() ? "" : ", ") + word;
  return list;
}

void addOnce(std::vector<std::string>& words, const std::string& word) {
  if (!word.empty() && std::find(words.begin(), words.end(), word) == words.end()) words.push_back(word);
}

}  // namespace

double FormatClip::length() const {
  return lead + (sound.empty() ? pictureSeconds : std::max(pictureSeconds, soundSeconds));
}

void PrintTo(const FormatClip& clip, std::ostream* where) {
  *where << clip.container << " of " << clip.picture << " and " << (clip.sound.empty() ? "no sound" : clip.sound);
}

const std::vector<FormatClip>& formatClips() {
  static const std::vector<FormatClip> all = [] {
    std::vector<FormatClip> clips = plainClips();
    for (const auto& more : {turnedClips(), soundClips(), sizeClips(), timeClips(), trackClips()})
      clips.insert(clips.end(), more.begin(), more.end());
    return clips;
  }();
  return all;
}

std::string pathOf(const FormatClip& clip) {
  Words arguments = {"-f", "lavfi", "-i", testPicture(clip)};
  const auto append = [&arguments](const Words& words) {
    arguments.insert(arguments.end(), words.begin(), words.end());
  };
  if (!clip.sound.empty()) append({"-f", "lavfi", "-i", testSound(clip)});
  append(clip.inputs);
  append(pictureEncoders.at(clip.picture));
  if (!clip.sound.empty()) append(soundEncoders.at(clip.sound));
  append(clip.more);
  const std::string ending = "." + endings.at(clip.container);
  const std::string path = clips::clip("format-" + clip.name + ending, arguments);
  if (clip.turn.a == 1 && clip.turn.d == 1) return path;
  return clips::edited(path, "format-" + clip.name + "-turned" + ending,
                       [&](std::string& bytes) { turnPicture(bytes, clip.turn); });
}

std::string readmeTable() {
  std::map<std::string, std::array<std::vector<std::string>, 2>> held;
  std::vector<std::string> order, features;
  for (const auto& clip : formatClips()) {
    addOnce(order, clip.container);
    addOnce(held[clip.container][0], clip.picture);
    addOnce(held[clip.container][1], clip.sound);
    addOnce(features, clip.feature);
  }
  std::string table = "| container | pictures | sound |\n|---|---|---|\n";
  for (const auto& container : order) {
    table += "| " + container + " (." + endings.at(container) + ") | " + listOf(held[container][0]) + " | " +
             listOf(held[container][1]) + " |\n";
  }
  table += "\nAlso:\n\n";
  for (const auto& feature : features) table += "- " + feature + "\n";
  return table;
}

}  // namespace gstreamer
