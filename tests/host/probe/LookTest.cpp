#include "hosts/probe/MediaProbe.h"
#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/Clips.h"
#include "tests/support/OrdinaryUser.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double patience = 20.0;

probe::FileFacts look(const std::string& path) {
  return probe::look(path, patience);
}

std::string film() {
  return clips::film("probe-film.mp4", 160, 120, 4.0, 440, 2);
}

/// `film()` in another container or with other tags.
std::string copied(const std::string& name, std::vector<std::string> options) {
  std::vector<std::string> arguments = {"-i", film(), "-c", "copy"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return clips::clip(name, arguments);
}

void expectUnreadable(const probe::FileFacts& facts) {
  EXPECT_FALSE(facts.media.readable);
  EXPECT_FALSE(facts.media.soundOpens);
  EXPECT_FALSE(facts.media.hasProtectedContent);
  EXPECT_FALSE(facts.hasPicture);
  EXPECT_EQ(facts.media.duration, 0.0);
  EXPECT_TRUE(facts.media.tracks.empty());
  EXPECT_NE(facts.reason, "");
}

TEST(Look, TellsWhatAFilmHolds) {
  const auto facts = look(film());
  EXPECT_TRUE(facts.media.readable);
  EXPECT_FALSE(facts.media.hasProtectedContent);
  EXPECT_TRUE(facts.media.soundOpens);
  EXPECT_TRUE(facts.hasPicture);
  EXPECT_NEAR(facts.media.duration, 4.0, 0.05);
  EXPECT_EQ(facts.mediaType, 8192U);
  EXPECT_EQ(facts.title, std::nullopt);
  EXPECT_EQ(facts.reason, "");
}

TEST(Look, NumbersTracksInFileOrderFromOne) {
  const auto facts = look(copied("probe-sound-first.mp4", {"-map", "0:a", "-map", "0:v", "-map", "0:a"}));
  ASSERT_EQ(facts.media.tracks.size(), 3U);
  EXPECT_EQ(facts.media.tracks[0].identifier, 1);
  EXPECT_EQ(facts.media.tracks[0].kind, host::TrackKind::Audio);
  EXPECT_EQ(facts.media.tracks[1].identifier, 2);
  EXPECT_EQ(facts.media.tracks[1].kind, host::TrackKind::Video);
  EXPECT_EQ(facts.media.tracks[2].identifier, 3);
  EXPECT_EQ(facts.media.tracks[2].kind, host::TrackKind::Audio);
}

class EveryContainer : public testing::TestWithParam<const char*> {};

TEST_P(EveryContainer, IsReadWithItsDurationSoundAndPicture) {
  const std::string ending = GetParam();
  const auto facts = look(copied("probe-container." + ending, {}));
  EXPECT_TRUE(facts.media.readable) << facts.reason;
  EXPECT_TRUE(facts.media.soundOpens) << facts.reason;
  EXPECT_TRUE(facts.hasPicture);
  EXPECT_NEAR(facts.media.duration, 4.0, 0.1);
}

INSTANTIATE_TEST_SUITE_P(Containers, EveryContainer, testing::Values("mp4", "mov", "mkv", "ts", "avi", "flv", "3gp"),
                         [](const auto& ending) { return std::string("_") + ending.param; });

TEST(Look, FindsTheDurationOfAFragmentedFilm) {
  const auto facts = look(copied("probe-fragments.mp4", {"-movflags", "frag_keyframe+empty_moov+skip_trailer"}));
  EXPECT_NEAR(facts.media.duration, 4.0, 0.1);
}

TEST(Look, LastsUntilTheEndOfTheLongestTrack) {
  const auto facts =
      look(clips::clip("probe-long-sound.mp4", {"-f", "lavfi", "-i", "testsrc2=size=160x120:duration=2", "-f",
                                                "lavfi", "-i", "sine=duration=3"}));
  EXPECT_NEAR(facts.media.duration, 3.0, 0.1);
}

TEST(Look, CountsABroadcastFromItsBeginning) {
  const auto facts = look(copied("probe-late-broadcast.ts", {"-output_ts_offset", "5000"}));
  EXPECT_NEAR(facts.media.duration, 4.0, 0.1);
}

/// Written without coming back to the header, as what records a screen or a call does.
std::string recording(const std::string& name, double seconds) {
  return clips::clip(name, {"-f", "lavfi", "-i", "testsrc2=size=160x120:rate=25:duration=" + std::to_string(seconds),
                            "-f", "lavfi", "-i", "sine=duration=" + std::to_string(seconds), "-c:v", "libvpx", "-g",
                            "25", "-c:a", "libopus", "-live", "1", "-f", "webm"});
}

TEST(Look, FindsTheDurationOfARecordingAtItsEnd) {
  EXPECT_NEAR(look(recording("probe-recording.webm", 7.0)).media.duration, 7.0, 0.1);
  const auto piped = look(copied("probe-piped.mkv", {"-f", "matroska", "-live", "1"}));
  EXPECT_NEAR(piped.media.duration, 4.0, 0.1);
}

TEST(Look, FindsTheDurationOfARecordingThatWasCutOff) {
  const std::string whole = recording("probe-recording.webm", 7.0);
  const auto half = static_cast<long>(contentsOf(whole).size() / 2);
  const auto facts = look(clips::truncated(whole, "probe-recording-cut.webm", half));
  EXPECT_GT(facts.media.duration, 1.0);
  EXPECT_LT(facts.media.duration, 6.0);
}

TEST(Look, FindsTheLastPictureBehindMuchThatIsNone) {
  const std::string whole = recording("probe-recording.webm", 7.0);
  const auto facts = look(clips::edited(whole, "probe-recording-tail.webm", [](std::string& bytes) {
    // Zeros are no element; and what looks like a cluster is none.
    bytes += std::string(3 << 20, '\0') + "\x1F\x43\xB6\x75" + std::string(100, '\xA3');
  }));
  EXPECT_NEAR(facts.media.duration, 7.0, 0.1);
}

TEST(Look, DoesNotInventADuration) {
  const auto facts = look(clips::clip("probe-raw.h264", {"-i", film(), "-an", "-c", "copy"}));
  EXPECT_TRUE(facts.media.readable);
  EXPECT_EQ(facts.media.duration, 0.0);
  const std::string header = contentsOf(recording("probe-recording.webm", 7.0));
  const auto firstCluster = static_cast<long>(header.find("\x1F\x43\xB6\x75"));
  EXPECT_EQ(
      look(clips::truncated(recording("probe-recording.webm", 7.0), "probe-recording-header.webm", firstCluster))
          .media.duration,
      0.0);
}

TEST(Look, LetsTheSoundOfASilentFilmOpen) {
  const auto facts = look(copied("probe-silent.mp4", {"-an"}));
  EXPECT_TRUE(facts.media.soundOpens);
  EXPECT_TRUE(facts.hasPicture);
}

TEST(Look, ReadsSoundWithoutPicture) {
  const auto facts = look(copied("probe-sound.m4a", {"-vn"}));
  EXPECT_TRUE(facts.media.readable);
  EXPECT_TRUE(facts.media.soundOpens);
  EXPECT_FALSE(facts.hasPicture);
}

TEST(Look, DoesNotTakeACoverImageForAPicture) {
  const std::string cover =
      clips::clip("probe-cover.png", {"-f", "lavfi", "-i", "testsrc2=size=64x64", "-frames:v", "1"});
  const std::string sound = copied("probe-sound.m4a", {"-vn"});
  const auto facts =
      look(clips::clip("probe-sound-with-cover.m4a", {"-i", sound, "-i", cover, "-map", "0", "-map", "1", "-c",
                                                      "copy", "-disposition:v:0", "attached_pic"}));
  EXPECT_TRUE(facts.media.readable);
  EXPECT_FALSE(facts.hasPicture);
  ASSERT_EQ(facts.media.tracks.size(), 2U);
  EXPECT_EQ(facts.media.tracks[1].kind, host::TrackKind::Other);
}

TEST(Look, HasNoSoundWhereTheFileEndsBeforeItsFirstSample) {
  const std::string whole = copied("probe-header-first.mp4", {"-movflags", "+faststart"});
  const auto samples = static_cast<long>(contentsOf(whole).find("mdat"));
  const auto facts = look(clips::truncated(whole, "probe-header-only.mp4", samples + 8));
  EXPECT_TRUE(facts.media.readable);
  EXPECT_FALSE(facts.media.soundOpens);
  EXPECT_NE(facts.reason, "");
  EXPECT_NEAR(facts.media.duration, 4.0, 0.05);
}

TEST(Look, HasNoSoundWhereNoDecoderTakesIt) {
  std::string bytes = contentsOf(film());
  for (const char* name : {"mp4a", "esds"}) {
    const auto place = bytes.find(name);
    ASSERT_NE(place, std::string::npos);
    bytes.replace(place, 4, "zzzz");
  }
  const TemporaryFolder folder;
  const auto facts = look(folder.write("unknown-sound.mp4", bytes));
  EXPECT_TRUE(facts.media.readable);
  EXPECT_FALSE(facts.media.soundOpens);
  EXPECT_TRUE(facts.hasPicture);
}

TEST(Look, CannotReadAFilmWhoseHeaderIsCutOff) {
  expectUnreadable(look(clips::truncated(film(), "probe-cut.mp4", 200)));
}

TEST(Look, CannotReadAnEmptyFile) {
  const TemporaryFolder folder;
  expectUnreadable(look(folder.write("empty.mp4", "")));
}

TEST(Look, CannotReadTextThatIsCalledAFilm) {
  const TemporaryFolder folder;
  std::string text;
  for (int i = 0; i < 2000; ++i) text += "This is no film, whatever it is called.\n";
  expectUnreadable(look(folder.write("text.mp4", text)));
}

TEST(Look, CannotReadZeroes) {
  const TemporaryFolder folder;
  expectUnreadable(look(folder.write("zeroes.mp4", std::string(100'000, '\0'))));
}

TEST(Look, DoesNotFollowPlayLists) {
  const TemporaryFolder folder;
  folder.copy(film(), "film.mp4");
  const std::string broadcast = folder.copy(copied("probe-container.ts", {}), "film.ts");
  expectUnreadable(look(folder.write("list.mp4", "ffconcat version 1.0\nfile film.mp4\n")));
  expectUnreadable(look(folder.write(
      "stream.mp4", "#EXTM3U\n#EXT-X-TARGETDURATION:4\n#EXTINF:4,\n" + broadcast + "\n#EXT-X-ENDLIST\n")));
}

TEST(Look, CannotReadAFolder) {
  const TemporaryFolder folder;
  expectUnreadable(look(folder.path().string()));
}

TEST(Look, CannotReadWhatIsNotThere) {
  const TemporaryFolder folder;
  expectUnreadable(look(folder / "missing.mp4"));
  expectUnreadable(look(""));
}

TEST(Look, DoesNotWaitForTheOtherEndOfANamedPipe) {
  const TemporaryFolder folder;
  const std::string pipe = folder / "pipe.mp4";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  expectUnreadable(look(pipe));
}

TEST(Look, CannotReadWhatTheUserMayNot) {
  const TemporaryFolder folder;
  const std::string path = folder.copy(film(), "secret.mp4");
  ASSERT_EQ(chmod(path.c_str(), 0000), 0);
  const OrdinaryUser user;
  expectUnreadable(look(path));
}

TEST(Look, GivesUpAtItsDeadline) {
  const auto facts = probe::look(film(), 0.0);
  expectUnreadable(facts);
  EXPECT_NE(facts.reason.find("too long"), std::string::npos);
  expectUnreadable(probe::look(film(), -1.0));
  expectUnreadable(probe::look(film(), std::nan("")));
}

TEST(Look, TakesNamesAsBytes) {
  const TemporaryFolder folder;
  for (const std::string name :
       {"-i", "a\nb", "\xFF\xFE.mp4", "http:/x", "concat:a|b", "pipe:0", "%d.mp4", "\"'\\ .mp4"}) {
    EXPECT_TRUE(look(folder.copy(film(), name)).media.readable) << name;
  }
}

TEST(Look, JudgesTheContentsNotTheName) {
  const TemporaryFolder folder;
  EXPECT_TRUE(look(folder.copy(film(), "film.txt")).media.soundOpens);
  EXPECT_TRUE(look(folder.copy(film(), "film.mkv")).media.soundOpens);
}

TEST(Look, TrimsTheTitleTag) {
  EXPECT_EQ(look(copied("probe-title.mp4", {"-metadata", "title=  Perché no? \t"})).title, "Perché no?");
  EXPECT_EQ(look(copied("probe-title.mkv", {"-metadata", "title=  Perché no? \t"})).title, "Perché no?");
}

TEST(Look, HasNoTitleWhereTheTagIsBlank) {
  EXPECT_EQ(look(copied("probe-blank-title.mp4", {"-metadata", "title=   "})).title, std::nullopt);
}

TEST(Look, ReplacesBytesOfTheTitleThatAreNoText) {
  std::string bytes = contentsOf(copied("probe-plain-title.mp4", {"-metadata", "title=Besuch"}));
  const auto title = bytes.rfind("Besuch");
  ASSERT_NE(title, std::string::npos);
  bytes[title + 1] = '\xE9';
  const TemporaryFolder folder;
  EXPECT_EQ(look(folder.write("latin.mp4", bytes)).title, "B\xEF\xBF\xBDsuch");
}

struct Tagged {
  const char* tag;
  const char* value;
  std::uint64_t kind;
};

class KindByTag : public testing::TestWithParam<Tagged> {};

TEST_P(KindByTag, IsTheLibrarysNumber) {
  const auto& [tag, value, kind] = GetParam();
  const bool isNumber = std::string(tag) == "media_type";
  const std::string name = std::string("probe-kind-") + tag + "-" + value + (isNumber ? ".mp4" : ".mkv");
  EXPECT_EQ(look(copied(name, {"-metadata", std::string(tag) + "=" + value})).mediaType, kind);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, KindByTag,
    testing::Values(Tagged{"media_type", "0", 8192}, Tagged{"media_type", "1", 8192}, Tagged{"media_type", "2", 4},
                    Tagged{"media_type", "6", 2048}, Tagged{"media_type", "9", 256}, Tagged{"media_type", "10", 512},
                    Tagged{"media_type", "21", 1024}, Tagged{"media_type", "23", 4096},
                    Tagged{"media_type", "99", 8192}, Tagged{"CONTENT_TYPE", "Feature Film", 256},
                    Tagged{"CONTENT_TYPE", "TV-Show", 512}, Tagged{"CONTENT_TYPE", "music video", 2048},
                    Tagged{"CONTENT_TYPE", "Home video", 8192}, Tagged{"CONTENT_TYPE", "Zeppelin", 8192}),
    [](const auto& tagged) {
      std::string name = std::string(tagged.param.tag) + "_" + tagged.param.value;
      std::replace_if(
          name.begin(), name.end(), [](char c) { return c == ' ' || c == '-'; }, '_');
      return name;
    });

TEST(Kind, SurvivesTheMoveIntoAnotherContainer) {
  const std::string programme = copied("probe-programme.mp4", {"-metadata", "media_type=10"});
  EXPECT_EQ(look(clips::clip("probe-programme.mkv", {"-i", programme, "-c", "copy"})).mediaType, 512U);
}

/// A Matroska tag "TITLE: x" for a target of the type `target`, put in front of the film's first cluster. The film
/// is a live one, whose lengths are open, so that nothing else has to change.
std::string filmWithTagFor(const std::string& target, const TemporaryFolder& folder) {
  std::string bytes = contentsOf(copied("probe-live.mkv", {"-live", "1", "-f", "matroska"}));
  const auto element = [](const std::string& identifier, const std::string& contents) {
    return identifier + static_cast<char>(0x80U | contents.size()) + contents;
  };
  const std::string targets = element("\x63\xC0", element("\x63\xCA", target));
  const std::string simple = element("\x67\xC8", element("\x45\xA3", "TITLE") + element("\x44\x87", "x"));
  const std::string tags = element("\x12\x54\xC3\x67", element("\x73\x73", targets + simple));
  bytes.insert(bytes.find("\x1F\x43\xB6\x75"), tags);
  return folder.write(target + ".mkv", bytes);
}

TEST(Kind, OfWhatHasTagsForAnEpisodeOrSeasonIsAProgramme) {
  const TemporaryFolder folder;
  EXPECT_EQ(look(filmWithTagFor("EPISODE", folder)).mediaType, 512U);
  EXPECT_EQ(look(filmWithTagFor("SEASON", folder)).mediaType, 512U);
}

TEST(Kind, OfWhatHasTagsForAMovieStaysAHomeVideo) {
  const TemporaryFolder folder;
  const auto facts = look(filmWithTagFor("MOVIE", folder));
  EXPECT_TRUE(facts.media.readable);
  EXPECT_EQ(facts.mediaType, 8192U);
}

}  // namespace
