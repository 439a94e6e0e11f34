#include "tests/host/gstreamer/FilmPlayers.h"
#include "tests/host/gstreamer/NumberedPictures.h"
#include "tests/host/gstreamer/Stage.h"
#include "tests/support/EnvironmentVariable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace gstreamer {

namespace {

constexpr double tolerance = 0.001;

std::string film() {
  return clips::film("engine-film.mp4", 320, 180, 6.0, 440, 2);
}

/// What goes into the device is what the player says that it plays.
void expectHeardWhereItIs(Stage& stage, const FilmPlayers& film) {
  stage.recording().clear();
  ASSERT_TRUE(stage.until([&] { return stage.recording().playingAt(now()) >= 0.0; }));
  EXPECT_LT(leastOf([&] { return std::fabs(stage.recording().playingAt(now()) - film.sound->position()); }),
            tolerance);
}

/// A sound server that lets programs connect and then says nothing any more.
class DeafServer {
 public:
  DeafServer()
      : path_(std::filesystem::temp_directory_path() / ("quillop-deaf-" + std::to_string(getpid()))),
        socket_(socket(AF_UNIX, SOCK_STREAM, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path_.copy(address.sun_path, sizeof address.sun_path - 1);
    unlink(path_.c_str());
    const void* generic = &address;
    listens_ = bind(socket_, static_cast<const sockaddr*>(generic), sizeof address) == 0 && listen(socket_, 8) == 0;
  }
  ~DeafServer() { hangUp(); }
  DeafServer(const DeafServer&) = delete;
  DeafServer& operator=(const DeafServer&) = delete;

  bool listens() const { return listens_; }
  std::string address() const { return "unix:" + path_; }
  void hangUp() {
    if (socket_ >= 0) close(socket_);
    socket_ = -1;
    unlink(path_.c_str());
  }

 private:
  std::string path_;
  int socket_;
  bool listens_ = false;
};

}  // namespace

TEST(Together, SoundAndPictureStartOnOneInstant) {
  Stage stage;
  FilmPlayers film(stage, gstreamer::film());
  film.play();
  stage.engine().commit();
  ASSERT_TRUE(film.run());
  EXPECT_LT(film.apart(), tolerance);
  expectHeardWhereItIs(stage, film);
}

TEST(Together, TheyStayTogetherOverPauses) {
  Stage stage;
  FilmPlayers film(stage, gstreamer::film());
  film.play();
  stage.engine().commit();
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(film.run());
    film.pause();
    EXPECT_EQ(film.apart(), 0.0);
    stage.engine().commit();
    stage.loop().runFor(0.1);
    EXPECT_EQ(film.apart(), 0.0);
    film.play();
    stage.engine().commit();
    ASSERT_TRUE(film.run());
    EXPECT_LT(film.apart(), tolerance);
    expectHeardWhereItIs(stage, film);
  }
}

TEST(Together, TheyStayTogetherOverSeeks) {
  Stage stage;
  FilmPlayers film(stage, gstreamer::film());
  film.play();
  stage.engine().commit();
  ASSERT_TRUE(film.run());
  for (const double target : {4.0, 1.0, 2.5}) {
    film.seek(target);
    EXPECT_EQ(film.apart(), 0.0);
    stage.engine().commit();
    ASSERT_TRUE(film.run());
    EXPECT_LT(film.apart(), tolerance);
    expectHeardWhereItIs(stage, film);
    stage.loop().runFor(0.1);
  }
}

TEST(Together, TheyStayTogetherAfterAFingerMovedOverTheFilm) {
  Stage stage;
  FilmPlayers film(stage, gstreamer::film());
  film.play();
  stage.engine().commit();
  ASSERT_TRUE(film.run());
  for (int i = 0; i < 15; ++i) {
    film.seek(4.0 - 0.2 * i);
    stage.engine().commit();
    stage.loop().runFor(0.02);
  }
  ASSERT_TRUE(film.run());
  EXPECT_LT(film.apart(), tolerance);
  expectHeardWhereItIs(stage, film);
}

TEST(Together, ThePictureShowsWhatThePositionSays) {
  Stage stage;
  auto picture = stage.picture(numberedPictures());
  picture->play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return picture->position() > 1.0; }));
  const auto shown = picture->pictures()->newest();
  const double position = picture->position();
  // Ten frames: a busy machine may hold a picture up, but a base time that is wrong would be further out.
  EXPECT_NEAR(numberOf(*shown) / 30.0, position, 10.0 / 30.0);
}

TEST(Together, BothAreAtTheEndTogether) {
  Stage stage;
  Heard sound, picture;
  const std::string path = clips::film("engine-brief.mp4", 320, 180, 1.0, 440, 2);
  auto soundPlayer = stage.sound(path, sound);
  auto picturePlayer = stage.picture(path, picture);
  soundPlayer->play();
  picturePlayer->play();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return sound.ended == 1 && picture.ended == 1; }));
  EXPECT_EQ(soundPlayer->position(), picturePlayer->position());
}

TEST(Together, TwoFilmsAreIndependent) {
  Stage stage;
  FilmPlayers one(stage, film());
  one.play();
  stage.engine().commit();
  ASSERT_TRUE(one.run());
  FilmPlayers two(stage, film());
  two.play();
  stage.engine().commit();
  ASSERT_TRUE(two.run());
  two.pause();
  stage.engine().commit();
  const double stands = two.picture->position();
  ASSERT_TRUE(one.run());
  EXPECT_EQ(two.picture->position(), stands);
  EXPECT_LT(one.apart(), tolerance);
}

TEST(Together, ASoundServerThatIsNotThereDoesNotHoldThePictureUp) {
  const EnvironmentVariable nowhere("PULSE_SERVER", "unix:/nonexistent/sound-server");
  Options options;
  options.makeSoundSink = [] { return makeSoundServerSink(); };
  Stage stage(std::move(options));
  FilmPlayers film(stage, gstreamer::film());
  film.play();
  stage.engine().commit();
  EXPECT_TRUE(film.run());
  EXPECT_LT(film.apart(), tolerance);
  EXPECT_TRUE(stage.until([&] { return film.picture->pictures()->counts().shown > 5; }));
}

TEST(Together, ASoundServerThatHangsDoesNotHoldThePictureUpNorTheEnd) {
  DeafServer server;
  ASSERT_TRUE(server.listens());
  const EnvironmentVariable deaf("PULSE_SERVER", server.address());
  Options options;
  options.makeSoundSink = [] { return makeSoundServerSink(); };
  options.closingPatience = 0.2;
  options.soundPatience = 0.4;
  Stage stage(std::move(options));
  {
    FilmPlayers film(stage, gstreamer::film());
    film.play();
    stage.engine().commit();
    EXPECT_TRUE(film.run());
    EXPECT_LT(film.apart(), tolerance);
    EXPECT_TRUE(stage.until([&] { return film.picture->pictures()->counts().shown > 5; }));
    film.pause();
    stage.engine().commit();
    stage.loop().runFor(0.1);
    EXPECT_EQ(film.apart(), 0.0);
  }
  // Returns although the sound's thread is stuck in the sound server's library.
  stage.closeEngine();
  server.hangUp();
}

}  // namespace gstreamer
