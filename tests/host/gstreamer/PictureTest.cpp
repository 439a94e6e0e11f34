#include "tests/host/gstreamer/NumberedPictures.h"
#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <stdexcept>

namespace gstreamer {

namespace {

using Pictures = std::shared_ptr<host::PictureStream>;

std::string film() {
  return clips::film("engine-film.mp4", 320, 180, 6.0, 440, 2);
}

/// Left half one colour, right half another, so that turning and mirroring can be told. `format` and what follows are
/// ffmpeg's.
std::string halves(const std::string& name, const std::vector<std::string>& encoding,
                   const std::string& filters = "null") {
  std::vector<std::string> arguments = {"-f",
                                        "lavfi",
                                        "-i",
                                        "color=0xC83232:size=160x180:rate=10:duration=1",
                                        "-f",
                                        "lavfi",
                                        "-i",
                                        "color=0x3232C8:size=160x180:rate=10:duration=1",
                                        "-filter_complex",
                                        "[0][1]hstack," + filters};
  arguments.insert(arguments.end(), encoding.begin(), encoding.end());
  return clips::clip(name, arguments);
}

const std::vector<std::string> h264 = {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-colorspace", "bt709"};

std::shared_ptr<const host::Picture> first(Stage& stage, host::PicturePlayer& player) {
  const Pictures stream = player.pictures();
  if (!stage.until([&] { return stream->newest() != nullptr; })) throw std::runtime_error("no picture came");
  return stream->newest();
}

/// The first picture of `path` in a box of `width` x `height`. The engine is gone by then: a picture owns its memory.
std::shared_ptr<const host::Picture> pictureOf(const std::string& path, int width, int height) {
  Stage stage;
  Heard heard;
  auto player = stage.picture(path, heard, width, height);
  stage.engine().commit();
  return first(stage, *player);
}

void expectColour(Colour colour, int red, int green, int blue) {
  // What the encoders lose.
  constexpr int tolerance = 6;
  EXPECT_NEAR(colour.red, red, tolerance);
  EXPECT_NEAR(colour.green, green, tolerance);
  EXPECT_NEAR(colour.blue, blue, tolerance);
}

void expectHalves(const host::Picture& picture) {
  expectColour(colourAt(picture, picture.width / 4, picture.height / 2), 0xC8, 0x32, 0x32);
  expectColour(colourAt(picture, picture.width * 3 / 4, picture.height / 2), 0x32, 0x32, 0xC8);
}

}  // namespace

TEST(Picture, TheFirstPictureIsThereWithoutPlaying) {
  const auto picture = pictureOf(film(), 320, 180);
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->width, 320);
  EXPECT_EQ(picture->height, 180);
}

TEST(Picture, FitsIntoItsBoxWithItsProportions) {
  const auto wide = pictureOf(film(), 1000, 90);
  EXPECT_EQ(wide->width, 160);
  EXPECT_EQ(wide->height, 90);
  const auto tall = pictureOf(film(), 160, 1000);
  EXPECT_EQ(tall->width, 160);
  EXPECT_EQ(tall->height, 90);
}

TEST(Picture, SmallFilmsAreEnlarged) {
  const auto picture = pictureOf(film(), 641, 361);
  EXPECT_EQ(picture->width, 641);
  EXPECT_EQ(picture->height, 361);
}

TEST(Picture, AtAThirdOfItsSizeItConsistsOfTheMiddleOnesOfNinePixels) {
  const std::string noise =
      clips::clip("engine-grey-noise.mp4", {"-f", "lavfi", "-i",
                                            "color=black:size=246x150:rate=10:duration=0.5,"
                                            "geq=lum='16+mod(X*X*3+Y*Y*7+X*Y,200)':cb=128:cr=128",
                                            "-c:v", "libx264", "-qp", "0", "-pix_fmt", "yuv420p"});
  const auto whole = pictureOf(noise, 246, 150), third = pictureOf(noise, 82, 50);
  ASSERT_EQ(third->width, 82);
  ASSERT_EQ(third->height, 50);
  for (int y = 0; y < third->height; ++y) {
    for (int x = 0; x < third->width; ++x)
      ASSERT_EQ(colourAt(*third, x, y).green, colourAt(*whole, 3 * x + 1, 3 * y + 1).green) << x << ", " << y;
  }
}

TEST(Picture, KeepsItsColours) {
  expectHalves(*pictureOf(halves("engine-halves.mp4", h264, "scale=out_color_matrix=bt709"), 200, 200));
}

TEST(Picture, KeepsItsColoursInTheMatrixOfSmallFilms) {
  expectHalves(*pictureOf(
      halves("engine-halves-601.mp4", {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-colorspace", "smpte170m"},
             "scale=out_color_matrix=bt601"),
      200, 200));
}

TEST(Picture, KeepsItsColoursOverTheFullRange) {
  expectHalves(
      *pictureOf(halves("engine-halves-full.mp4",
                        {"-c:v", "libx264", "-pix_fmt", "yuvj420p", "-colorspace", "bt709", "-color_range", "pc"},
                        "scale=out_color_matrix=bt709:out_range=full"),
                 200, 200));
}

TEST(Picture, TakesTenBitsOfHevc) {
  expectHalves(*pictureOf(halves("engine-halves-hevc10.mp4",
                                 {"-c:v", "libx265", "-x265-params", "log-level=error", "-pix_fmt", "yuv420p10le",
                                  "-colorspace", "bt709", "-tag:v", "hvc1"},
                                 "scale=out_color_matrix=bt709"),
                          200, 200));
}

TEST(Picture, TakesTenBitsOfVp9) {
  expectHalves(*pictureOf(
      halves("engine-halves-vp9-10.webm", {"-c:v", "libvpx-vp9", "-pix_fmt", "yuv420p10le", "-colorspace", "bt709"},
             "scale=out_color_matrix=bt709"),
      200, 200));
}

TEST(Picture, TakesOtherSamplings) {
  for (const std::string format : {"yuv422p", "yuv444p", "yuv422p10le", "gbrp"}) {
    SCOPED_TRACE(format);
    const std::string encoder = format == "gbrp" ? "libx264rgb" : "libx264";
    const std::string pixels = format == "gbrp" ? "bgr24" : format;
    const std::string filters = format == "gbrp" ? "null" : "scale=out_color_matrix=bt709";
    expectHalves(*pictureOf(
        halves("engine-halves-" + format + ".mkv",
               {"-c:v", encoder, "-pix_fmt", pixels, "-colorspace", format == "gbrp" ? "rgb" : "bt709"}, filters),
        200, 200));
  }
}

TEST(Picture, IsTurnedUpright) {
  const std::string plain = halves("engine-halves.mp4", h264, "scale=out_color_matrix=bt709");
  // The tag counts against the clock here: turned by 90 degrees, the right half comes out on top.
  for (const std::string angle : {"90", "270"}) {
    SCOPED_TRACE(angle);
    const std::string turned = clips::clip("engine-turned-" + angle + ".mp4",
                                           {"-i", plain, "-c", "copy", "-metadata:s:v:0", "rotate=" + angle});
    const auto picture = pictureOf(turned, 320, 320);
    EXPECT_EQ(picture->width, 180);
    EXPECT_EQ(picture->height, 320);
    const int redRow = angle == "90" ? 240 : 80;
    expectColour(colourAt(*picture, 90, redRow), 0xC8, 0x32, 0x32);
    expectColour(colourAt(*picture, 90, 320 - redRow), 0x32, 0x32, 0xC8);
  }
}

TEST(Picture, IsTurnedFromUpsideDown) {
  const std::string plain = halves("engine-halves.mp4", h264, "scale=out_color_matrix=bt709");
  const std::string turned =
      clips::clip("engine-upside.mp4", {"-i", plain, "-c", "copy", "-metadata:s:v:0", "rotate=180"});
  const auto picture = pictureOf(turned, 320, 320);
  EXPECT_EQ(picture->width, 320);
  expectColour(colourAt(*picture, 80, 90), 0x32, 0x32, 0xC8);
  expectColour(colourAt(*picture, 240, 90), 0xC8, 0x32, 0x32);
}

TEST(Picture, PixelsThatAreNotSquareBecomeSquare) {
  const std::string path = halves("engine-wide-pixels.mp4", h264, "scale=out_color_matrix=bt709,setsar=2/1");
  const auto picture = pictureOf(path, 640, 640);
  EXPECT_EQ(picture->width, 640);
  EXPECT_EQ(picture->height, 180);
}

TEST(Picture, InterlacedFilmsAreShown) {
  expectHalves(*pictureOf(halves("engine-interlaced.mp4",
                                 {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-colorspace", "bt709", "-flags",
                                  "+ildct+ilme", "-x264opts", "tff=1"},
                                 "scale=out_color_matrix=bt709"),
                          200, 200));
}

TEST(Picture, IsMadeAgainForANewBoxWhilePaused) {
  Stage stage;
  Heard heard;
  auto player = stage.picture(film(), heard, 320, 180);
  stage.engine().commit();
  ASSERT_TRUE(first(stage, *player));
  const Pictures stream = player->pictures();
  std::atomic<int> told = 0;
  stream->setListener([&told] { ++told; });
  stream->setBox(160, 200);
  EXPECT_TRUE(stage.until([&] { return stream->newest()->width == 160; }));
  EXPECT_EQ(stream->newest()->height, 90);
  EXPECT_TRUE(stage.until([&] { return told == 1; }));
  stream->setListener({});
}

TEST(Picture, NobodyLooksNoPictureIsMade) {
  Stage stage;
  Heard heard;
  auto player = stage.picture(film(), heard, 0, 0);
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return player->position() > 0.5; }));
  const Pictures stream = player->pictures();
  EXPECT_FALSE(stream->newest());
  EXPECT_EQ(stream->counts().shown, 0U);
  stream->setBox(320, 180);
  EXPECT_TRUE(stage.until([&] { return stream->newest() != nullptr; }));
  stream->setBox(0, 0);
  EXPECT_FALSE(stream->newest());
}

TEST(Picture, MovesWhileItPlays) {
  Stage stage;
  Heard heard;
  auto player = stage.picture(film(), heard);
  player->play();
  stage.engine().commit();
  const Pictures stream = player->pictures();
  EXPECT_TRUE(stage.until([&] { return stream->counts().shown > 20; }));
}

TEST(Picture, WhatTheFilmCutsOffAtTheTopIsNotShown) {
  const std::string cut =
      clips::clip("engine-cut-at-the-top.mp4",
                  {"-f", "lavfi", "-i", "color=0xC83232:size=320x64:rate=10:duration=2", "-f", "lavfi", "-i",
                   "color=0x3232C8:size=320x192:rate=10:duration=2", "-filter_complex", "[0][1]vstack", "-c:v",
                   "libx264", "-pix_fmt", "yuv420p", "-bsf:v", "h264_metadata=crop_top=64"});
  Stage stage;
  Heard heard;
  auto player = stage.picture(cut, heard, 320, 192);
  player->play();
  stage.engine().commit();
  const Pictures stream = player->pictures();
  ASSERT_TRUE(stage.until([&] { return stream->counts().shown > 5; }));
  const auto picture = stream->newest();
  ASSERT_EQ(picture->height, 192);
  const Colour colour = colourAt(*picture, 160, 20);
  EXPECT_GT(colour.blue, 150);
  EXPECT_LT(colour.red, 100);
}

TEST(Picture, ASeekShowsTheFrameOfItsTargetExactly) {
  Stage stage;
  Heard heard;
  auto player = stage.picture(numberedPictures(), heard, 64, 64);
  stage.engine().commit();
  EXPECT_EQ(numberOf(*first(stage, *player)), 0);
  for (const double target : {2.5, 1.2, 0.0, 1.5}) {
    player->seek(target);
    EXPECT_EQ(player->position(), target);
    stage.engine().commit();
    const int expected = static_cast<int>(std::lround(target * 30.0));
    EXPECT_TRUE(stage.until([&] { return numberOf(*player->pictures()->newest()) == expected; })) << target;
    EXPECT_EQ(player->position(), target);
    stage.loop().runFor(0.15);
  }
}

TEST(Picture, OfARecordingThatStatesNoDurationIsSoughtAndEnds) {
  const std::string path =
      NumberedPictures{}.clip("engine-recording.webm",
                              {"-c:v", "libvpx", "-b:v", "4M", "-qmax", "4", "-g", "30", "-live", "1", "-f", "webm"});
  Stage stage;
  Heard heard;
  auto player = stage.picture(path, heard, 64, 64);
  stage.engine().commit();
  ASSERT_TRUE(first(stage, *player));
  player->seek(2.0);
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return std::abs(numberOf(*player->pictures()->newest()) - 60) <= 1; }));
  player->play();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return heard.ended > 0; }));
  EXPECT_NEAR(player->position(), 3.0, 0.2);
  EXPECT_EQ(heard.failed, 0);
}

TEST(Picture, OfManyTargetsTheNewestWins) {
  Stage stage;
  Heard heard;
  auto player = stage.picture(numberedPictures(), heard, 64, 64);
  stage.engine().commit();
  ASSERT_TRUE(first(stage, *player));
  for (int i = 0; i < 20; ++i) {
    player->seek(2.8 - 0.1 * i);
    stage.engine().commit();
    stage.loop().runFor(0.01);
  }
  EXPECT_TRUE(stage.until([&] { return numberOf(*player->pictures()->newest()) == 27; }));
  stage.loop().runFor(0.3);
  EXPECT_EQ(numberOf(*player->pictures()->newest()), 27);
  EXPECT_NEAR(player->position(), 0.9, 1e-9);
}

TEST(Picture, APausedPictureStays) {
  Stage stage;
  Heard heard;
  auto player = stage.picture(numberedPictures(), heard, 64, 64);
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return player->position() > 0.5; }));
  player->pause();
  const double position = player->position();
  stage.engine().commit();
  stage.loop().runFor(0.2);
  const int frame = numberOf(*player->pictures()->newest());
  stage.loop().runFor(0.3);
  EXPECT_EQ(numberOf(*player->pictures()->newest()), frame);
  EXPECT_EQ(player->position(), position);
}

TEST(Picture, TheLastPictureStaysUntilTheEndOfALongerSound) {
  const std::string path =
      clips::clip("engine-long-sound.mp4", {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=30:duration=0.5", "-f",
                                            "lavfi", "-i", "sine=frequency=440:sample_rate=48000:duration=1.5",
                                            "-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac"});
  Stage stage;
  Heard heard;
  auto player = stage.picture(path, heard);
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return player->position() > 1.0; }));
  EXPECT_TRUE(player->pictures()->newest());
  ASSERT_TRUE(stage.until([&] { return heard.ended > 0; }));
  EXPECT_NEAR(player->position(), 1.5, 0.1);
  EXPECT_TRUE(player->pictures()->newest());
  stage.loop().runFor(0.3);
  EXPECT_EQ(heard.ended, 1);
  EXPECT_EQ(heard.failed, 0);
}

TEST(Picture, SoundIsNotDecodedForAPicture) {
  Stage stage;
  Heard heard;
  auto player = stage.picture(film(), heard);
  player->setSilenced({2});
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(first(stage, *player));
  const auto elements = stage.elements();
  EXPECT_EQ(elements.count("avdec_h264"), 1U);
  EXPECT_EQ(elements.count("avdec_aac"), 0U);
  EXPECT_EQ(elements.count("aacparse"), 0U);
}

TEST(Picture, PicturesAreNotDecodedForASound) {
  Stage stage;
  auto player = stage.sound(film());
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return !stage.recording().sound().left.empty(); }));
  const auto elements = stage.elements();
  EXPECT_EQ(elements.count("avdec_h264"), 0U);
  EXPECT_EQ(elements.count("h264parse"), 0U);
}

TEST(Picture, NothingIsLeftOnceThePlayerIsGone) {
  Stage stage;
  Heard heard;
  auto player = stage.picture(film(), heard);
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(first(stage, *player));
  const Pictures stream = player->pictures();
  std::atomic<int> told = 0;
  stream->setListener([&told] { ++told; });
  player.reset();
  EXPECT_FALSE(stream->newest());
  const int toldByThen = told;
  EXPECT_GE(toldByThen, 1);
  stream->setBox(640, 360);
  stage.loop().runFor(0.3);
  EXPECT_FALSE(stream->newest());
  EXPECT_EQ(told, toldByThen);
  stream->setListener({});
}

TEST(Picture, AFileCutOffInTheMiddleEndsAndDoesNotHang) {
  const std::string whole = clips::clip("engine-fragments.mkv", {"-i", film(), "-c", "copy"});
  const std::string cut = clips::truncated(whole, "engine-cut.mkv", 60000);
  Stage stage;
  Heard heard;
  auto player = stage.picture(cut, heard);
  player->play();
  player->seek(5.0);
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return heard.ended + heard.failed > 0; }));
  stage.loop().runFor(0.3);
  EXPECT_EQ(heard.ended + heard.failed, 1);
}

}  // namespace gstreamer
