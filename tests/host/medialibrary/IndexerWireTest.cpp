#include "hosts/medialibrary/IndexerWire.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <stdexcept>

namespace {

using medialibrary::Finding;
using medialibrary::frameOf;
using medialibrary::IndexerAnswer;
using medialibrary::IndexerMessage;
using medialibrary::IndexerOpening;
using medialibrary::IndexerStream;
using medialibrary::IndexerTask;

Finding fullFinding() {
  Finding finding;
  finding.isReadable = true;
  finding.mediaType = 256;
  finding.title = "Più \xE2\x82\xAC";
  finding.duration = 5400.25;
  finding.rotation = 270;
  finding.soundTracks = 3;
  finding.pictureTracks = 2;
  finding.hasPicture = true;
  finding.isProtected = true;
  return finding;
}

std::optional<IndexerMessage> sent(const IndexerMessage& message) {
  IndexerStream stream;
  stream.add(frameOf(message));
  return stream.next();
}

IndexerAnswer answered(const Finding& finding) {
  const auto message = sent(IndexerAnswer{7, finding});
  if (!message || !std::holds_alternative<IndexerAnswer>(*message)) throw std::runtime_error("no answer");
  return std::get<IndexerAnswer>(*message);
}

bool breaks(const std::string& bytes) {
  IndexerStream stream;
  stream.add(bytes);
  return !stream.next() && stream.isBroken();
}

/// The frame of `message` without its length, and then one of `length` bytes that begins like that.
std::string withLength(const std::string& frame, std::uint32_t length) {
  std::string changed = frame;
  std::memcpy(changed.data(), &length, sizeof length);
  changed.resize(sizeof length + length, '\0');
  return changed;
}

std::uint32_t lengthOf(const std::string& frame) {
  std::uint32_t length = 0;
  std::memcpy(&length, frame.data(), sizeof length);
  return length;
}

TEST(IndexerWire, CarriesTasksOfAnyPath) {
  std::string path = "/";
  for (int byte = 1; byte < 256; ++byte) path += static_cast<char>(byte);
  for (const std::string& each :
       {path, std::string(), std::string("-rf\n/x"), std::string(medialibrary::longestPath, 'p')}) {
    const auto message = sent(IndexerTask{-5, each, 256});
    ASSERT_TRUE(message);
    const auto& task = std::get<IndexerTask>(*message);
    EXPECT_EQ(task.id, -5);
    EXPECT_EQ(task.path, each);
    EXPECT_EQ(task.thumbnailSide, 256);
  }
}

TEST(IndexerWire, CarriesOpenings) {
  const auto message = sent(IndexerOpening{std::numeric_limits<std::int64_t>::min()});
  ASSERT_TRUE(message);
  EXPECT_EQ(std::get<IndexerOpening>(*message).id, std::numeric_limits<std::int64_t>::min());
}

TEST(IndexerWire, CarriesAnswers) {
  EXPECT_EQ(answered(fullFinding()).finding, fullFinding());
  EXPECT_EQ(answered(fullFinding()).id, 7);
  Finding unreadable;
  unreadable.reason = "not a regular file";
  EXPECT_EQ(answered(unreadable).finding, unreadable);
}

TEST(IndexerWire, ShortensLongTextsBetweenTwoCharacters) {
  Finding finding;
  finding.title = "x";
  while (finding.title->size() < 100'000) *finding.title += "\xE2\x82\xAC";
  const auto title = answered(finding).finding.title;
  ASSERT_TRUE(title);
  EXPECT_GT(title->size(), 4000U);
  EXPECT_LE(title->size(), 4096U);
  EXPECT_TRUE(finding.title->starts_with(*title));
  EXPECT_EQ((title->size() - 1) % 3, 0U);
}

TEST(IndexerWire, DoesNotMindHowTheBytesCome) {
  const std::string bytes = frameOf(IndexerOpening{1}) + frameOf(IndexerAnswer{1, fullFinding()});
  IndexerStream stream;
  std::size_t messages = 0;
  for (const char byte : bytes) {
    stream.add({&byte, 1});
    while (stream.next()) ++messages;
  }
  EXPECT_EQ(messages, 2U);
  EXPECT_FALSE(stream.isBroken());
}

TEST(IndexerWire, WaitsForTheRestOfAFrame) {
  const std::string bytes = frameOf(IndexerAnswer{1, fullFinding()});
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    IndexerStream stream;
    stream.add(std::string_view(bytes).substr(0, length));
    EXPECT_FALSE(stream.next());
    EXPECT_FALSE(stream.isBroken());
  }
}

TEST(IndexerWire, RefusesFramesThatAreTooLong) {
  EXPECT_TRUE(breaks("\xFF\xFF\xFF\xFF"));
  EXPECT_TRUE(breaks(std::string("\x01\x40\x00\x00", 4)));
}

TEST(IndexerWire, RefusesFramesOfAnotherLengthThanTheirFields) {
  for (const std::string& frame :
       {frameOf(IndexerTask{1, "/a", 0}), frameOf(IndexerOpening{1}), frameOf(IndexerAnswer{1, fullFinding()})}) {
    for (std::uint32_t length = 0; length < lengthOf(frame); ++length) EXPECT_TRUE(breaks(withLength(frame, length)));
    EXPECT_TRUE(breaks(withLength(frame, lengthOf(frame) + 1)));
    EXPECT_FALSE(breaks(frame));
  }
}

TEST(IndexerWire, RefusesUnknownKinds) {
  std::string frame = frameOf(IndexerOpening{1});
  for (const char kind : {'\0', '\x04', '\xFF'}) {
    frame[4] = kind;
    EXPECT_TRUE(breaks(frame));
  }
}

TEST(IndexerWire, RefusesValuesThatNoFindingHas) {
  const auto refuses = [](auto change) {
    Finding finding = fullFinding();
    change(finding);
    return breaks(frameOf(IndexerAnswer{1, finding}));
  };
  EXPECT_TRUE(refuses([](Finding& finding) { finding.duration = std::numeric_limits<double>::quiet_NaN(); }));
  EXPECT_TRUE(refuses([](Finding& finding) { finding.duration = std::numeric_limits<double>::infinity(); }));
  EXPECT_TRUE(refuses([](Finding& finding) { finding.duration = -1.0; }));
  EXPECT_TRUE(refuses([](Finding& finding) { finding.rotation = 45; }));
  EXPECT_TRUE(refuses([](Finding& finding) { finding.rotation = 360; }));
  EXPECT_TRUE(refuses([](Finding& finding) { finding.soundTracks = -1; }));
  EXPECT_TRUE(refuses([](Finding& finding) { finding.pictureTracks = -1; }));
  EXPECT_TRUE(refuses([](Finding& finding) { finding.title = "two\nlines"; }));
  EXPECT_TRUE(refuses([](Finding& finding) { finding.title = "\xFF"; }));
  EXPECT_TRUE(refuses([](Finding& finding) { finding.reason = "two\nlines"; }));
  EXPECT_FALSE(refuses([](Finding&) {}));
}

TEST(IndexerWire, StaysBroken) {
  IndexerStream stream;
  stream.add("\xFF\xFF\xFF\xFF");
  EXPECT_FALSE(stream.next());
  stream.add(frameOf(IndexerOpening{1}));
  EXPECT_FALSE(stream.next());
  EXPECT_TRUE(stream.isBroken());
}

TEST(IndexerWire, SurvivesAnyBytes) {
  std::mt19937 random(1);
  const std::string whole = frameOf(IndexerAnswer{1, fullFinding()}) + frameOf(IndexerTask{1, "/film", 256});
  std::size_t broken = 0;
  for (int round = 0; round < 20'000; ++round) {
    std::string bytes = whole;
    for (int changes = 0; changes < 3; ++changes) bytes[random() % bytes.size()] = static_cast<char>(random());
    IndexerStream stream;
    stream.add(bytes);
    while (const auto message = stream.next()) {
      const auto* answer = std::get_if<IndexerAnswer>(&*message);
      EXPECT_TRUE(answer == nullptr || answer->finding.duration >= 0.0);
    }
    if (stream.isBroken()) ++broken;
  }
  EXPECT_GT(broken, 1000U);
}

}  // namespace
