#include "hosts/gstreamer/FactsCache.h"
#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <future>

namespace gstreamer {

namespace {

std::string film() {
  return clips::film("engine-film.mp4", 320, 180, 6.0, 440, 2);
}

host::MediaFacts factsOf(const std::string& path) {
  Stage stage;
  const std::string url = clips::urlOf(path);
  stage.engine().expect(url);
  return stage.engine().facts(url);
}

/// A file of its own for a test, gone afterwards.
class OwnFile {
 public:
  OwnFile() : path_(std::filesystem::temp_directory_path() / ("quillop-facts-" + std::to_string(getpid()))) {
    write("one");
  }
  ~OwnFile() { std::filesystem::remove(path_); }
  OwnFile(const OwnFile&) = delete;
  OwnFile& operator=(const OwnFile&) = delete;

  void write(const std::string& text) { std::ofstream(path_) << text; }
  std::string url() const { return clips::urlOf(path_.string()); }

 private:
  std::filesystem::path path_;
};

}  // namespace

TEST(Facts, OfAFilm) {
  const auto facts = factsOf(film());
  EXPECT_TRUE(facts.readable);
  EXPECT_TRUE(facts.soundOpens);
  EXPECT_FALSE(facts.hasProtectedContent);
  EXPECT_NEAR(facts.duration, 6.0, 0.1);
  ASSERT_EQ(facts.tracks.size(), 2U);
  EXPECT_EQ(facts.tracks[0].kind, host::TrackKind::Video);
  EXPECT_EQ(facts.tracks[1].kind, host::TrackKind::Audio);
}

TEST(Facts, WhatIsNoMediaOrNotThereIsUnreadable) {
  EXPECT_FALSE(factsOf(__FILE__).readable);
  EXPECT_FALSE(factsOf("/nonexistent/film.mp4").readable);
}

TEST(Facts, AFilmCutOffBeforeItsIndexIsUnreadable) {
  const std::string late = clips::clip("engine-index-last.mp4", {"-i", film(), "-c", "copy"});
  EXPECT_FALSE(factsOf(clips::truncated(late, "engine-index-gone.mp4", 20000)).readable);
}

TEST(Facts, AddressesThatAreNoFilesAreUnreadable) {
  Stage stage;
  EXPECT_FALSE(stage.engine().facts("http://localhost/film.mp4").readable);
  EXPECT_FALSE(stage.engine().facts("no address").readable);
}

TEST(Facts, ProtectedContentIsTold) {
  const std::string path =
      clips::clip("engine-protected.mp4",
                  {"-i", film(), "-c", "copy", "-encryption_scheme", "cenc-aes-ctr", "-encryption_key",
                   "76a6c65c5ea762046bd749a2e632ccbb", "-encryption_kid", "a7e61c373e219033c21091fa607bf3b8"});
  EXPECT_TRUE(factsOf(path).hasProtectedContent);
}

TEST(Facts, AFileIsLookedIntoOnceAndAgainWhenItChanged) {
  OwnFile file;
  std::atomic<int> looks = 0;
  FactsCache cache(
      [&looks](const std::string&, double) {
        host::MediaFacts facts;
        facts.readable = true;
        facts.duration = ++looks;
        return facts;
      },
      5.0);
  cache.expect(file.url());
  EXPECT_EQ(cache.facts(file.url()).duration, 1.0);
  EXPECT_EQ(cache.facts(file.url()).duration, 1.0);
  file.write("another film");
  EXPECT_EQ(cache.facts(file.url()).duration, 2.0);
  EXPECT_EQ(looks, 2);
}

TEST(Facts, ALookThatTakesTooLongLeavesTheFileUnreadable) {
  OwnFile file;
  std::atomic<int> looks = 0;
  std::promise<void> release;
  FactsCache cache(
      [&looks, released = release.get_future().share()](const std::string&, double) {
        ++looks;
        released.wait();
        host::MediaFacts facts;
        facts.readable = true;
        return facts;
      },
      0.05);
  EXPECT_FALSE(cache.facts(file.url()).readable);
  // The look goes on, and what it finds counts for whoever asks later.
  release.set_value();
  EXPECT_TRUE(TestLoop().runUntil([&] { return cache.facts(file.url()).readable; }));
  EXPECT_EQ(looks, 1);
}

}  // namespace gstreamer
