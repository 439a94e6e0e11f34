#include "hosts/desktop/MainWindow.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include <memory>

namespace desktop {
namespace {

const QRect usual(40, 50, 640, 480);

/// One run of the program after the other, as far as its window goes.
class MainWindowTest : public testing::Test {
 protected:
  struct Run {
    explicit Run(const QString& place) : main(screen, place) { QCoreApplication::processEvents(); }

    QWindow& window() { return screen.window(); }
    bool isFull() { return window().windowStates() & Qt::WindowFullScreen; }
    bool isMinimised() { return window().windowStates() & Qt::WindowMinimized; }
    void change(Qt::WindowStates states) {
      window().setWindowStates(states);
      QCoreApplication::processEvents();
    }
    QStringList menuTitles() {
      QStringList titles;
      for (const auto& entry : main.menuEntries({}, {})) titles << entry.title;
      return titles;
    }

    qtquick::ScreenHost screen{nullptr, {}};
    MainWindow main;
  };

  void start() { run = std::make_unique<Run>(path); }
  void startAgain() {
    run->main.remember();
    run.reset();
    start();
  }

  QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("window.ini"));
  std::unique_ptr<Run> run;
};

TEST_F(MainWindowTest, IsShownWhereItWasLast) {
  start();
  EXPECT_EQ(run->window().size(), QSize(1024, 640));
  run->window().setGeometry(usual);
  startAgain();
  EXPECT_TRUE(run->window().isVisible());
  EXPECT_EQ(run->window().geometry(), usual);
}

TEST_F(MainWindowTest, KeepsItsSizeThroughAnEndInFullScreen) {
  start();
  run->window().setGeometry(usual);
  QCoreApplication::processEvents();
  run->change(Qt::WindowFullScreen);
  startAgain();
  ASSERT_TRUE(run->isFull());
  startAgain();
  ASSERT_TRUE(run->isFull());
  run->main.remember();
  EXPECT_EQ(WindowPlace(path).remembered()->geometry, usual) << "to go back to";
}

TEST_F(MainWindowTest, KeepsItsSizeThroughAnEndWhileItFillsTheDesktop) {
  start();
  run->window().setGeometry(usual);
  QCoreApplication::processEvents();
  run->change(Qt::WindowMaximized);
  startAgain();
  EXPECT_FALSE(run->isFull());
  EXPECT_EQ(run->window().geometry(), usual);
}

TEST_F(MainWindowTest, IsInFullScreenAgainAfterAnEndWhileItWasMinimised) {
  start();
  run->change(Qt::WindowFullScreen);
  run->change(Qt::WindowFullScreen | Qt::WindowMinimized);
  startAgain();
  EXPECT_TRUE(run->isFull());
  EXPECT_FALSE(run->isMinimised());
}

TEST_F(MainWindowTest, KeepsOnlyTheSizeOfAPlaceThatNoScreenShows) {
  WindowPlace(path).remember({QRect(5000, 4000, 640, 480), false});
  start();
  EXPECT_EQ(run->window().size(), QSize(640, 480));
  EXPECT_TRUE(run->window().screen()->geometry().intersects(run->window().geometry()));
}

TEST_F(MainWindowTest, ComesForwardAsItWasBeforeItWasMinimised) {
  start();
  for (const Qt::WindowStates before : {Qt::WindowNoState, Qt::WindowMaximized, Qt::WindowFullScreen}) {
    run->change(before);
    run->change(before | Qt::WindowMinimized);
    run->main.comeForward();
    EXPECT_EQ(run->window().windowStates(), before);
  }
}

TEST_F(MainWindowTest, ATokenIsGoodForComingForwardOnce) {
  start();
  run->main.comeForward(QStringLiteral("token"));
  EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

TEST_F(MainWindowTest, ItsMenuSwitchesFullScreen) {
  start();
  EXPECT_EQ(run->menuTitles(), (QStringList{"Settings", "Full screen", "Quit"}));
  run->main.menuEntries({}, {})[1].chosen();
  EXPECT_TRUE(run->isFull());
  EXPECT_EQ(run->menuTitles(), (QStringList{"Settings", "Leave full screen", "Quit"}));
  run->main.menuEntries({}, {})[1].chosen();
  EXPECT_FALSE(run->isFull());
}

}  // namespace
}  // namespace desktop
