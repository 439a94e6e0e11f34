#include "hosts/desktop/MediaKeys.h"

#include "tests/support/Stage.h"

#include <gmock/gmock.h>

#include <QTest>
#include <QWindow>

namespace desktop {
namespace {

class MediaKeysTest : public testing::Test {
 protected:
  MediaKeysTest() {
    stage.load(1, "uno.mp4");
    stage.load(2, "due.mp4");
  }
  void press(Qt::Key key, bool isAutoRepeat = false) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString(), isAutoRepeat);
    QCoreApplication::sendEvent(&window, &event);
    stage.advance(0);
  }
  bool plays(int film) { return stage.fields().audio(film)->isPlaying(); }

  Stage stage;
  Films films{stage.screen().films()};
  QWindow window;
  MediaKeys keys{window, films};
};

TEST_F(MediaKeysTest, PlayPauseWorksTheFilmUsedLastAndNoOther) {
  stage.press(stage.playPause(1));
  stage.press(stage.playPause(1));
  for (const auto key : {Qt::Key_MediaTogglePlayPause, Qt::Key_MediaPlay}) {
    press(key);
    EXPECT_FALSE(plays(1));
    EXPECT_TRUE(plays(2));
    press(key);
    EXPECT_TRUE(plays(1));
  }
}

TEST_F(MediaKeysTest, PauseOnlyPauses) {
  stage.press(stage.playPause(2));
  stage.press(stage.playPause(2));
  for (int time = 0; time < 2; ++time) {
    press(Qt::Key_MediaPause);
    EXPECT_FALSE(plays(2));
  }
  EXPECT_TRUE(plays(1));
}

TEST_F(MediaKeysTest, StopClosesTheFilmAndTheKeysGoToTheOther) {
  stage.press(stage.playPause(2));
  press(Qt::Key_MediaStop);
  EXPECT_FALSE(stage.fields().audio(2));
  EXPECT_TRUE(plays(1));
  press(Qt::Key_MediaPause);
  EXPECT_FALSE(plays(1));
}

TEST_F(MediaKeysTest, AKeyThatIsHeldDownCountsOnce) {
  stage.press(stage.playPause(1));
  press(Qt::Key_MediaTogglePlayPause);
  press(Qt::Key_MediaTogglePlayPause, true);
  press(Qt::Key_MediaTogglePlayPause, true);
  EXPECT_TRUE(plays(1));
}

TEST_F(MediaKeysTest, WithoutFilmsAndWithOtherKeysNothingHappens) {
  press(Qt::Key_Space);
  EXPECT_TRUE(plays(1) && plays(2));
  press(Qt::Key_MediaStop);
  press(Qt::Key_MediaStop);
  press(Qt::Key_MediaStop);
  press(Qt::Key_MediaPlay);
  EXPECT_FALSE(stage.fields().audio(1));
  EXPECT_FALSE(stage.fields().audio(2));
}

}  // namespace
}  // namespace desktop
