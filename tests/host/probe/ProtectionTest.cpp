#include "hosts/probe/Protection.h"

#include "hosts/probe/MediaProbe.h"
#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/Clips.h"

#include <gtest/gtest.h>

namespace {

constexpr double patience = 20.0;

using namespace std::string_literals;

std::string film() {
  return clips::film("probe-film.mp4", 160, 120, 4.0, 440, 2);
}

std::string encryptedFilm() {
  return clips::clip("probe-encrypted.mp4",
                     {"-i", film(), "-c", "copy", "-encryption_scheme", "cenc-aes-ctr", "-encryption_key",
                      "76a6c65c5ea762046bd749a2e632ccbb", "-encryption_kid", "a7e61c373e219033c21091fa607bf3b8"});
}

/// `bytes`, with the first `from` become `to`, which is as long.
std::string patched(std::string bytes, const std::string& from, const std::string& to) {
  const auto place = bytes.find(from);
  EXPECT_NE(place, std::string::npos);
  EXPECT_EQ(from.size(), to.size());
  return place == std::string::npos ? bytes : bytes.replace(place, from.size(), to);
}

TEST(Protection, OfAnEncryptedFilmIsSeen) {
  const auto facts = probe::look(encryptedFilm(), patience);
  EXPECT_TRUE(facts.media.readable);
  EXPECT_TRUE(facts.media.hasProtectedContent);
  EXPECT_FALSE(facts.media.soundOpens);
  EXPECT_NEAR(facts.media.duration, 4.0, 0.05);
  EXPECT_TRUE(facts.hasPicture);
}

TEST(Protection, LeavesNoStill) {
  EXPECT_EQ(probe::representativeStill(encryptedFilm(), 256, patience), std::nullopt);
}

TEST(Protection, IsNotSeenInAnOrdinaryFilm) {
  EXPECT_FALSE(probe::look(film(), patience).media.hasProtectedContent);
}

TEST(Protection, OfASingleTrackIsEnough) {
  const TemporaryFolder folder;
  const std::string path = folder.write("sound-only.mp4", patched(contentsOf(film()), "mp4a", "enca"));
  EXPECT_TRUE(probe::look(path, patience).media.hasProtectedContent);
}

TEST(Protection, OfTheOlderKindIsSeen) {
  const TemporaryFolder folder;
  const std::string sound = folder.write("sound.m4v", patched(contentsOf(film()), "mp4a", "drms"));
  EXPECT_TRUE(probe::look(sound, patience).media.hasProtectedContent);
  const std::string picture = folder.write("picture.m4v", patched(contentsOf(film()), "avc1\0"s, "drmi\0"s));
  EXPECT_TRUE(probe::look(picture, patience).media.hasProtectedContent);
}

TEST(Protection, OfAMatroskaTrackIsSeen) {
  const std::string path = clips::clip("probe-plain.mkv", {"-i", film(), "-c", "copy"});
  EXPECT_FALSE(probe::look(path, patience).media.hasProtectedContent);
  std::string bytes = contentsOf(path);
  // The track's number of eight bytes gives room for one encoding of the type 1.
  const auto number = bytes.find("\x73\xC5\x88");
  ASSERT_NE(number, std::string::npos);
  bytes.replace(number, 11, "\x6D\x80\x88\x62\x40\x40\x04\x50\x33\x81\x01");
  const TemporaryFolder folder;
  const auto facts = probe::look(folder.write("encrypted.mkv", bytes), patience);
  EXPECT_TRUE(facts.media.readable);
  EXPECT_TRUE(facts.media.hasProtectedContent);
  EXPECT_FALSE(facts.media.soundOpens);
}

// Files made by hand

std::string bigEndian(std::uint64_t value, int bytes) {
  std::string text;
  for (int i = bytes - 1; i >= 0; --i) text += static_cast<char>(value >> (8U * static_cast<unsigned>(i)) & 0xFFU);
  return text;
}

std::string box(const std::string& type, const std::string& contents) {
  return bigEndian(contents.size() + 8, 4) + type + contents;
}

std::string longBox(const std::string& type, const std::string& contents) {
  return bigEndian(1, 4) + type + bigEndian(contents.size() + 16, 8) + contents;
}

std::string entries(const std::string& boxes) {
  return box("moov", box("trak", box("mdia", box("minf", box("stbl", box("stsd", std::string(8, '\0') + boxes))))));
}

std::string element(const std::string& identifier, const std::string& contents) {
  return identifier + '\x08' + bigEndian(contents.size(), 4) + contents;
}

std::string openElement(const std::string& identifier, const std::string& contents) {
  return identifier + "\x01\xFF\xFF\xFF\xFF\xFF\xFF\xFF" + contents;
}

std::string sized(const std::string& identifier, const std::string& contents) {
  return identifier + static_cast<char>(0x80U | contents.size()) + contents;
}

const std::string segment = "\x18\x53\x80\x67";
const std::string cluster = "\x1F\x43\xB6\x75";

std::string tracksWith(const std::string& encodingContents) {
  const std::string encodings = sized("\x6D\x80", sized("\x62\x40", encodingContents));
  return element("\x16\x54\xAE\x6B", element("\xAE", sized("\xD7", "\x01") + encodings));
}

const std::string encryption = sized("\x50\x33", "\x01");
const std::string compression = sized("\x50\x33", "\0"s) + sized("\x50\x34", "");

class HandMade : public testing::Test {
 protected:
  bool isProtectedBoxFile(const std::string& bytes) const {
    const auto file = opened(bytes);
    return probe::isProtectedBoxFile(*file, probe::Deadline(patience));
  }
  bool isProtectedMatroska(const std::string& bytes) const {
    const auto file = opened(bytes);
    return probe::isProtectedMatroska(*file, probe::Deadline(patience));
  }

 private:
  std::optional<probe::MediaFile> opened(const std::string& bytes) const {
    std::string reason;
    return probe::MediaFile::open(folder_.write("file", bytes), reason);
  }
  TemporaryFolder folder_;
};

TEST_F(HandMade, BoxesAreSearchedInAllEntriesOfAllTracks) {
  EXPECT_FALSE(isProtectedBoxFile(entries(box("avc1", "x"))));
  EXPECT_TRUE(isProtectedBoxFile(entries(box("avc1", "x") + box("encv", "x"))));
  EXPECT_TRUE(isProtectedBoxFile(entries(box("avc1", "x")) + entries(box("drms", "x"))));
}

TEST_F(HandMade, BoxesWithLongAndOpenLengthsAreRead) {
  const std::string protectedFilm = entries(box("enca", "x"));
  EXPECT_TRUE(isProtectedBoxFile(longBox("mdat", "samples") + protectedFilm));
  EXPECT_TRUE(isProtectedBoxFile(bigEndian(0, 4) + protectedFilm.substr(4)));
}

TEST_F(HandMade, NamesOutsideTheSampleEntriesDoNotCount) {
  EXPECT_FALSE(isProtectedBoxFile(box("mdat", entries(box("encv", "x"))) + box("encv", "x")));
}

TEST_F(HandMade, LyingBoxLengthsEndTheSearch) {
  EXPECT_FALSE(isProtectedBoxFile(bigEndian(7, 4) + "free" + entries(box("encv", "x"))));
  EXPECT_FALSE(isProtectedBoxFile(bigEndian(1, 4) + "free" + bigEndian(~0ULL, 8) + entries(box("encv", "x"))));
  EXPECT_FALSE(isProtectedBoxFile(bigEndian(1, 4) + "free" + bigEndian(3, 8) + entries(box("encv", "x"))));
  EXPECT_FALSE(isProtectedBoxFile("moo"));
  EXPECT_FALSE(isProtectedBoxFile(box("moov", bigEndian(1, 4) + "trak")));
}

TEST_F(HandMade, EndlesslyManyBoxesEndTheSearch) {
  std::string bytes;
  for (int i = 0; i < 100'000; ++i) bytes += box("free", "");
  EXPECT_FALSE(isProtectedBoxFile(bytes + entries(box("encv", "x"))));
}

TEST_F(HandMade, MatroskaEncryptionIsFoundAndCompressionIsNone) {
  EXPECT_TRUE(isProtectedMatroska(element(segment, tracksWith(encryption))));
  EXPECT_FALSE(isProtectedMatroska(element(segment, tracksWith(compression))));
  EXPECT_TRUE(isProtectedMatroska(element(segment, tracksWith(sized("\x50\x35", "")))));
}

TEST_F(HandMade, MatroskaTracksBehindClustersAreFound) {
  EXPECT_TRUE(isProtectedMatroska(element(segment, element(cluster, "samples") + tracksWith(encryption))));
  const std::string samples = element("\xA3", "samples");
  EXPECT_TRUE(isProtectedMatroska(openElement(segment, openElement(cluster, samples + tracksWith(encryption)))));
}

TEST_F(HandMade, LyingMatroskaLengthsEndTheSearch) {
  EXPECT_FALSE(isProtectedMatroska(segment));
  EXPECT_FALSE(isProtectedMatroska(segment + "\x01\xFF"));
  EXPECT_FALSE(isProtectedMatroska("\0\0\0\0"s + element(segment, tracksWith(encryption))));
  EXPECT_FALSE(isProtectedMatroska(cluster + "\x01\xFF\xFF\xFF\xFF\xFF\xFF\xFE" + tracksWith(encryption)));
}

TEST_F(HandMade, MatroskaElementsNestedWithoutEndAreNotFollowed) {
  std::string bytes;
  for (int i = 0; i < 40'000; ++i) bytes += openElement("\xAE", "");
  EXPECT_FALSE(isProtectedMatroska(element(segment, element("\x16\x54\xAE\x6B", bytes))));
}

}  // namespace
