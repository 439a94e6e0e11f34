#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

namespace gstreamer {

namespace {

std::string film() {
  return clips::film("engine-film.mp4", 320, 180, 6.0, 440, 2);
}

/// A film is about to be played, as it is while the list of videos slides away.
class Expected : public testing::Test {
 protected:
  explicit Expected(double patience = 60.0) : stage_(options(patience)) {}

  void expectFilm() {
    stage_.engine().expect(clips::urlOf(film()));
    stage_.engine().commit();
  }

  /// The decoder has been made, and had time to give a picture.
  void waitUntilReady() {
    ASSERT_TRUE(stage_.until([&] { return pipelines() == 1; }));
    stage_.loop().runFor(0.3);
  }

  static Options options(double patience) {
    Options options;
    options.sparePatience = patience;
    return options;
  }

  /// How many were made so far.
  std::size_t pipelines() const { return stage_.elements().count("parsebin"); }

  Heard heard_;
  Stage stage_;
};

constexpr double shortPatience = 3.0;

class ExpectedInVain : public Expected {
 protected:
  ExpectedInVain() : Expected(shortPatience) {}
};

}  // namespace

TEST_F(Expected, ItsPlayerHasThePictureThatWasMadeReady) {
  expectFilm();
  ASSERT_NO_FATAL_FAILURE(waitUntilReady());
  const auto picture = stage_.picture(film(), heard_);
  EXPECT_TRUE(stage_.until([&] { return picture->pictures()->newest() != nullptr; }));
  picture->play();
  stage_.engine().commit();
  EXPECT_TRUE(stage_.until([&] { return picture->position() > 0.2; }));
  EXPECT_EQ(pipelines(), 1U);
}

TEST_F(Expected, ItsPlayerTellsTheEnd) {
  expectFilm();
  ASSERT_NO_FATAL_FAILURE(waitUntilReady());
  const auto picture = stage_.picture(film(), heard_);
  picture->seek(5.5);
  picture->play();
  stage_.engine().commit();
  EXPECT_TRUE(stage_.until([&] { return heard_.ended == 1; }));
}

TEST_F(Expected, TheSecondPlayerOfItIsAnotherOne) {
  expectFilm();
  ASSERT_NO_FATAL_FAILURE(waitUntilReady());
  const auto one = stage_.picture(film(), heard_), other = stage_.picture(film(), heard_);
  EXPECT_NE(one->pictures(), other->pictures());
  stage_.engine().commit();
  EXPECT_TRUE(stage_.until([&] { return other->pictures()->newest() != nullptr; }));
}

TEST_F(Expected, AnotherFilmIsOpenedAnew) {
  expectFilm();
  ASSERT_NO_FATAL_FAILURE(waitUntilReady());
  const auto picture = stage_.picture(clips::film("engine-other.mp4", 320, 180, 6.0, 440, 2), heard_);
  stage_.engine().commit();
  EXPECT_TRUE(stage_.until([&] { return picture->pictures()->newest() != nullptr; }));
  EXPECT_EQ(pipelines(), 2U);
}

TEST_F(ExpectedInVain, ItIsGivenUp) {
  expectFilm();
  ASSERT_NO_FATAL_FAILURE(waitUntilReady());
  stage_.loop().runFor(shortPatience);
  const auto picture = stage_.picture(film(), heard_);
  stage_.engine().commit();
  EXPECT_TRUE(stage_.until([&] { return picture->pictures()->newest() != nullptr; }));
  EXPECT_EQ(pipelines(), 2U);
}

TEST_F(Expected, WhoOpensWhatCannotBePlayedIsToldOfIt) {
  stage_.engine().expect(clips::urlOf(__FILE__));
  stage_.engine().commit();
  stage_.loop().runFor(0.3);
  const auto picture = stage_.picture(__FILE__, heard_);
  picture->play();
  stage_.engine().commit();
  EXPECT_TRUE(stage_.until([&] { return heard_.failed == 1; }));
}

}  // namespace gstreamer
