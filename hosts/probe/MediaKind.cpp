#include "hosts/probe/MediaKind.h"

extern "C" {
#include <libavutil/dict.h>
}

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>

namespace probe {

namespace {

namespace kind {
constexpr std::uint64_t music = 1U << 0U;
constexpr std::uint64_t podcast = 1U << 1U;
constexpr std::uint64_t audiobook = 1U << 2U;
constexpr std::uint64_t lecture = 1U << 3U;
constexpr std::uint64_t film = 1U << 8U;
constexpr std::uint64_t televisionProgramme = 1U << 9U;
constexpr std::uint64_t videoPodcast = 1U << 10U;
constexpr std::uint64_t musicVideo = 1U << 11U;
constexpr std::uint64_t videoLecture = 1U << 12U;
constexpr std::uint64_t homeVideo = 1U << 13U;
}  // namespace kind

std::optional<std::string_view> tag(const AVFormatContext& format, const char* key) {
  const AVDictionaryEntry* entry = av_dict_get(format.metadata, key, nullptr, 0);
  if (entry == nullptr) return std::nullopt;
  return entry->value;
}

std::optional<std::uint64_t> kindOfNumber(std::string_view text, bool hasPicture) {
  int number = -1;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  switch (number) {
    case 0:  // once the number of films, and what tagging programs write for home videos today
      return kind::homeVideo;
    case 9:
      return kind::film;
    case 1:  // "normal": a song, unless there is something to see
      return hasPicture ? kind::homeVideo : kind::music;
    case 2:
      return kind::audiobook;
    case 6:
      return kind::musicVideo;
    case 10:
      return kind::televisionProgramme;
    case 21:
      return hasPicture ? kind::videoPodcast : kind::podcast;
    case 23:
      return hasPicture ? kind::videoLecture : kind::lecture;
    default:
      return std::nullopt;
  }
}

/// Lower case, letters only: writers differ in blanks, hyphens and capitals.
std::string lettersOf(std::string_view text) {
  std::string letters;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalpha(byte) != 0) letters += static_cast<char>(std::tolower(byte));
  }
  return letters;
}

struct Word {
  std::string_view letters;
  std::uint64_t kind;
};

constexpr std::array<Word, 14> words = {{
    {"movie", kind::film},
    {"film", kind::film},
    {"featurefilm", kind::film},
    {"shortfilm", kind::film},
    {"tv", kind::televisionProgramme},
    {"tvshow", kind::televisionProgramme},
    {"tvseries", kind::televisionProgramme},
    {"tvepisode", kind::televisionProgramme},
    {"episode", kind::televisionProgramme},
    {"series", kind::televisionProgramme},
    {"musicvideo", kind::musicVideo},
    {"podcast", kind::videoPodcast},
    {"homevideo", kind::homeVideo},
    {"homemovie", kind::homeVideo},
}};

std::optional<std::uint64_t> kindOfWord(std::string_view text) {
  const std::string letters = lettersOf(text);
  const auto* found =
      std::find_if(words.begin(), words.end(), [&](const Word& word) { return word.letters == letters; });
  if (found == words.end()) return std::nullopt;
  return found->kind;
}

/// FFmpeg writes the target type of a whole file's tag in front of its name: "EPISODE/TITLE".
bool hasTagFor(const AVFormatContext& format, const char* target) {
  return av_dict_get(format.metadata, target, nullptr, AV_DICT_IGNORE_SUFFIX) != nullptr;
}

}  // namespace

std::uint64_t mediaKind(const AVFormatContext& format, bool hasPicture) {
  if (const auto number = tag(format, "media_type")) {
    if (const auto found = kindOfNumber(*number, hasPicture)) return *found;
  }
  for (const char* key : {"CONTENT_TYPE", "MOVIE/CONTENT_TYPE", "EPISODE/CONTENT_TYPE"}) {
    const auto word = tag(format, key);
    if (!word) continue;
    if (const auto found = kindOfWord(*word)) return *found;
  }
  if (hasTagFor(format, "SEASON/") || hasTagFor(format, "EPISODE/")) return kind::televisionProgramme;
  return kind::homeVideo;
}

}  // namespace probe
