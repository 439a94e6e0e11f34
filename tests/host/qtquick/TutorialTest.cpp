#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>

namespace {

void collectPictures(QAccessibleInterface* from, QStringList& names) {
  if (from->role() == QAccessible::Graphic) names << from->text(QAccessible::Name);
  for (int child = 0; child < from->childCount(); ++child) collectPictures(from->child(child), names);
}

/// The tutorial over the main screen. The strip's pages are 682.67 points wide.
class TutorialTest : public testing::Test {
 protected:
  TutorialTest() : pager(stage.openTutorial()) {
    stage.window().requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.settle();
    stage.takeLines();
  }

  QQuickItem* strip() { return stage.named("Pages"); }
  QQuickItem* content() { return strip()->property("content").value<QQuickItem*>(); }
  double pageWidth() const { return pager->_scrollview->frame().size.width; }
  double offset() const { return pager->_scrollview->contentOffset().x; }
  std::string title() const { return pager->_button->titleForState(UIControlState::Normal); }

  void expectPage(int page) {
    EXPECT_DOUBLE_EQ(offset(), page * pageWidth());
    EXPECT_DOUBLE_EQ(content()->x(), -page * pageWidth());
    EXPECT_EQ(title(), page == 1 ? "start" : "next");
    EXPECT_NE(stage.named(QStringLiteral("Page %1 of 2").arg(page + 1)), nullptr);
    EXPECT_NE(stage.named(page == 1 ? "start" : "next"), nullptr);
  }
  void showSecondPage() {
    stage.event([&] { pager->_scrollview->setContentOffset({pageWidth(), 0}); });
  }
  /// Moves a finger on the strip along the given distances from where it was put down, and lifts it.
  void swipe(const std::vector<int>& distances) {
    const QPoint start = middleOf(*strip());
    QTest::touchEvent(&stage.window(), finger_.get()).press(0, start);
    for (const int distance : distances) {
      QTest::touchEvent(&stage.window(), finger_.get()).move(0, start + QPoint(distance, 0));
      stage.settle();
    }
    const QPoint end = start + QPoint(distances.back(), 0);
    QTest::touchEvent(&stage.window(), finger_.get()).release(0, end);
    stage.settle();
  }
  void turnWheel(QPoint angle) {
    const QPointF place = middleOf(*strip());
    QWheelEvent wheel(place, place, {}, angle, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&stage.window(), &wheel);
    stage.settle();
  }
  void pressKey(Qt::Key key) {
    QTest::keyClick(&stage.window(), key);
    stage.settle();
  }
  void click(const QString& name) {
    QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named(name)));
    stage.settle();
  }

  ScreenStage stage;
  Strong<NFXIntroViewController> pager;

 private:
  std::unique_ptr<QPointingDevice> finger_{QTest::createTouchDevice()};
};

using Lines = std::vector<std::string>;

}  // namespace

TEST_F(TutorialTest, BeginsOnTheFirstPage) {
  expectPage(0);
}

TEST_F(TutorialTest, AFingerTakesTheStripAlong) {
  const QPoint start = middleOf(*strip());
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QTest::touchEvent(&stage.window(), finger.get()).press(0, start);
  for (const int distance : {-30, -100, -200}) {
    QTest::touchEvent(&stage.window(), finger.get()).move(0, start + QPoint(distance, 0));
    stage.settle();
  }
  EXPECT_NEAR(offset(), 200, 0.5);
  EXPECT_DOUBLE_EQ(content()->x(), -offset());
  QTest::touchEvent(&stage.window(), finger.get()).move(0, start + QPoint(-2000, 0));
  stage.settle();
  EXPECT_EQ(offset(), pageWidth());  // not beyond the last page
  QTest::touchEvent(&stage.window(), finger.get()).release(0, start + QPoint(-2000, 0));
}

TEST_F(TutorialTest, ASwipeTurnsThePage) {
  swipe({-30, -90, -150});
  expectPage(1);
  swipe({30, 90, 150});
  expectPage(0);
}

TEST_F(TutorialTest, ASwipeThatIsShortOrTakenBackTurnsNothing) {
  swipe({-30, -60});
  expectPage(0);
  swipe({-60, -300, -10});
  expectPage(0);
}

TEST_F(TutorialTest, ASwipeBeyondTheEndsTurnsNothing) {
  swipe({30, 150, 300});
  expectPage(0);
  showSecondPage();
  swipe({-30, -150, -300});
  expectPage(1);
}

TEST_F(TutorialTest, ThePointerTurnsThePageAsAFingerDoes) {
  const QPoint start = middleOf(*strip());
  QTest::mousePress(&stage.window(), Qt::LeftButton, {}, start);
  for (const int distance : {-30, -90, -200}) QTest::mouseMove(&stage.window(), start + QPoint(distance, 0));
  QTest::mouseRelease(&stage.window(), Qt::LeftButton, {}, start + QPoint(-200, 0));
  stage.settle();
  expectPage(1);
}

TEST_F(TutorialTest, ANotchOfTheWheelTurnsThePage) {
  turnWheel({0, -120});
  expectPage(1);
  turnWheel({0, -120});
  expectPage(1);
  turnWheel({0, 120});
  expectPage(0);
  turnWheel({-120, 0});
  expectPage(1);
  turnWheel({120, 0});
  expectPage(0);
}

TEST_F(TutorialTest, PartsOfANotchAddUp) {
  turnWheel({0, -50});
  turnWheel({0, -50});
  expectPage(0);
  turnWheel({0, -50});
  expectPage(1);
}

TEST_F(TutorialTest, KeysTurnThePageWhereTheStripHasTheFocus) {
  strip()->forceActiveFocus(Qt::TabFocusReason);
  const std::vector<std::pair<Qt::Key, int>> keys{
      {Qt::Key_Left, 0}, {Qt::Key_Right, 1},    {Qt::Key_Right, 1},  {Qt::Key_Left, 0}, {Qt::Key_Down, 1},
      {Qt::Key_Up, 0},   {Qt::Key_PageDown, 1}, {Qt::Key_PageUp, 0}, {Qt::Key_End, 1},  {Qt::Key_Home, 0}};
  for (const auto& [key, page] : keys) {
    pressKey(key);
    expectPage(page);
  }
}

TEST_F(TutorialTest, TheButtonTurnsThePageAndThenCloses) {
  click("next");
  expectPage(1);
  EXPECT_EQ(stage.takeLines(), (Lines{"ButtonPushed", "numero : 1   page : 0", "if page_ != numero"}));
  click("start");
  stage.advance(UIWindow::transitionDuration);
  EXPECT_TRUE(stage.platformWindow()->presentations().empty());
  EXPECT_NE(stage.named("Choose videos"), nullptr);
}

TEST_F(TutorialTest, TheKeyboardBeginsOnTheButton) {
  EXPECT_EQ(stage.window().activeFocusItem(), stage.named("next"));
  pressKey(Qt::Key_Return);
  expectPage(1);
  pressKey(Qt::Key_Space);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_TRUE(stage.platformWindow()->presentations().empty());
}

TEST_F(TutorialTest, TabLeadsToTheStripAndTheButtonOnly) {
  auto* const button = stage.named("next");
  pressKey(Qt::Key_Tab);
  EXPECT_EQ(stage.window().activeFocusItem(), strip());
  pressKey(Qt::Key_Tab);
  EXPECT_EQ(stage.window().activeFocusItem(), button);
}

TEST_F(TutorialTest, EscapeDoesNothing) {
  pressKey(Qt::Key_Escape);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_EQ(stage.platformWindow()->topmostViewController(), pager);
  expectPage(0);
  EXPECT_TRUE(stage.takeLines().empty());
}

TEST_F(TutorialTest, TheStripShowsWhatThePlatformScrollsTo) {
  stage.event([&] { pager->_scrollview->setContentOffset({123, 0}); });
  EXPECT_DOUBLE_EQ(content()->x(), -123);
  showSecondPage();
  expectPage(1);
}

TEST_F(TutorialTest, DotsTellThePageInTheirColoursAndTakeNoTaps) {
  auto* const dots = stage.named("Page 1 of 2");
  const auto colourOf = [&](int dot) {
    return stage.grab().pixelColor(dots->mapToScene({16.0 * dot + 8, 13}).toPoint());
  };
  const QColor current(153, 153, 153);
  const QColor other(204, 204, 204);
  EXPECT_EQ(colourOf(0), current);
  EXPECT_EQ(colourOf(1), other);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, dots->mapToScene({24, 13}).toPoint());
  stage.settle();
  expectPage(0);
  showSecondPage();
  EXPECT_EQ(colourOf(0), other);
  EXPECT_EQ(colourOf(1), current);
}

TEST_F(TutorialTest, AssistiveTechnologyTurnsThePage) {
  auto* const actions = QAccessible::queryAccessibleInterface(strip())->actionInterface();
  ASSERT_NE(actions, nullptr);
  actions->doAction(QAccessibleActionInterface::nextPageAction());
  stage.settle();
  expectPage(1);
  actions->doAction(QAccessibleActionInterface::previousPageAction());
  stage.settle();
  expectPage(0);
}

TEST_F(TutorialTest, AssistiveTechnologyIsToldWhatThePictureInSightShows) {
  const auto told = [&] {
    QStringList names;
    collectPictures(QAccessible::queryAccessibleInterface(strip()), names);
    return names;
  };
  const QStringList first = told();
  ASSERT_EQ(first.size(), 1);
  EXPECT_TRUE(first[0].contains("left ear") && first[0].contains("right ear")) << first[0].toStdString();
  stage.event([&] { pager->_scrollview->setContentOffset({pageWidth() / 2, 0}); });
  EXPECT_EQ(told().size(), 2);
  showSecondPage();
  const QStringList second = told();
  ASSERT_EQ(second.size(), 1);
  EXPECT_TRUE(second[0].contains("share") && second[0].contains("controls")) << second[0].toStdString();
}

TEST_F(TutorialTest, ShowsAnotherPictureOnEachPage) {
  const QPoint place = strip()->mapToScene({0, 0}).toPoint();
  const QRect area(place, QSizeF(strip()->size()).toSize());
  const QImage first = stage.grab().copy(area);
  showSecondPage();
  const QImage second = stage.grab().copy(area);
  QImage empty(first.size(), first.format());
  empty.fill(Qt::black);
  EXPECT_NE(first, empty);
  EXPECT_NE(second, empty);
  EXPECT_NE(first, second);
}

TEST_F(TutorialTest, LeavesNothingOfTheScreenBeneathInSight) {
  stage.resize({390, 844});  // the view, built for another size, is scaled and leaves room above and below
  const QImage window = stage.grab();
  for (const QPoint place : {QPoint(5, 5), QPoint(380, 20), QPoint(195, 250), QPoint(195, 838)}) {
    EXPECT_EQ(window.pixelColor(place), QColor(Qt::black)) << place.x() << ' ' << place.y();
  }
}

TEST_F(TutorialTest, InAnotherWindowSizeTheButtonStaysInReachAndWorks) {
  for (const QSize size : {QSize(390, 844), QSize(844, 390), QSize(1920, 1080), QSize(360, 360)}) {
    stage.event([&] { pager->_scrollview->setContentOffset({0, 0}); });
    stage.resize(size);
    auto* const button = stage.named("next");
    ASSERT_NE(button, nullptr);
    const QRectF place = button->mapRectToScene({0, 0, button->width(), button->height()});
    EXPECT_TRUE(QRectF({0, 0}, QSizeF(size)).contains(place)) << size.width();
    EXPECT_NEAR(place.center().x(), size.width() / 2.0, 0.5);
    click("next");
    expectPage(1);
  }
}

TEST_F(TutorialTest, ASmallButtonIsALargeTarget) {
  stage.resize({390, 844});
  auto* const button = stage.named("next");
  ASSERT_LT(button->mapRectToScene({0, 0, button->width(), button->height()}).height(), 24);
  const QPoint middle = middleOf(*button);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middle + QPoint(0, 23));
  stage.settle();
  expectPage(0);
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QTest::touchEvent(&stage.window(), finger.get()).press(0, middle + QPoint(0, 20));
  QTest::touchEvent(&stage.window(), finger.get()).release(0, middle + QPoint(0, 20));
  stage.settle();
  expectPage(1);
}

TEST_F(TutorialTest, TheButtonsBorderIsWholeInEveryWindowSize) {
  for (const QSize size : {QSize(1024, 640), QSize(390, 844), QSize(844, 390), QSize(1920, 1080)}) {
    stage.resize(size);
    auto* const button = stage.named("next");
    const QRectF place = button->mapRectToScene({0, 0, button->width(), button->height()});
    const QImage window = stage.grab();
    const auto isLineAt = [&](QPointF point) {
      int lightest = 0;
      for (const QPoint beside : {QPoint(-1, -1), QPoint(0, 0), QPoint(1, 1)}) {
        lightest = std::max(lightest, window.pixelColor(point.toPoint() + beside).lightness());
      }
      return lightest > 60;
    };
    const QPointF middle = place.center();
    EXPECT_TRUE(isLineAt({place.left(), middle.y()})) << size.width();
    EXPECT_TRUE(isLineAt({place.right(), middle.y()})) << size.width();
    EXPECT_TRUE(isLineAt({middle.x() / 1.1, place.top()})) << size.width();
    EXPECT_TRUE(isLineAt({middle.x() / 1.1, place.bottom()})) << size.width();
  }
}

TEST_F(TutorialTest, InAnotherWindowSizeAFingerTakesTheStripAlongAtItsOwnPace) {
  stage.resize({390, 844});
  const double scale = pager->view()->scale();
  const QPoint start = middleOf(*strip());
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QTest::touchEvent(&stage.window(), finger.get()).press(0, start);
  for (const int distance : {-30, -60}) {
    QTest::touchEvent(&stage.window(), finger.get()).move(0, start + QPoint(distance, 0));
    stage.settle();
  }
  EXPECT_NEAR(offset(), 60 / scale, 1);
  QTest::touchEvent(&stage.window(), finger.get()).release(0, start + QPoint(-60, 0));
  stage.settle();
  expectPage(1);
}

TEST_F(TutorialTest, TheButtonIsBlackWhileItIsPressed) {
  const QPoint place = stage.named("next")->mapToScene({20, 25}).toPoint();
  QTest::mouseMove(&stage.window(), place);
  stage.settle();
  EXPECT_NE(stage.grab().pixelColor(place), QColor(Qt::black));  // lit under the pointer
  QTest::mousePress(&stage.window(), Qt::LeftButton, {}, place);
  stage.settle();
  EXPECT_EQ(stage.grab().pixelColor(place), QColor(Qt::black));
  QTest::mouseRelease(&stage.window(), Qt::LeftButton, {}, place);
}

namespace {

class MovingTutorialTest : public testing::Test {
 protected:
  double shown() {
    auto* const strip = stage.named("Pages");
    return -strip->property("content").value<QQuickItem*>()->x();
  }
  double offset() const { return pager->_scrollview->contentOffset().x; }

  ScreenStage stage{{.moves = true}};
  const Strong<NFXIntroViewController> pager = stage.openTutorial();
};

}  // namespace

TEST_F(MovingTutorialTest, ThePageSlidesAndTheStripShowsEachStep) {
  stage.event([&] { pager->_button->press(); });
  const double width = pager->_scrollview->frame().size.width;
  double before = 0;
  for (int step = 0; step < 4; ++step) {
    stage.advance(UIScrollView::animationDuration / 5);
    EXPECT_GT(offset(), before);
    EXPECT_LT(offset(), width);
    EXPECT_DOUBLE_EQ(shown(), offset());
    before = offset();
  }
  stage.advance(UIScrollView::animationDuration);
  EXPECT_DOUBLE_EQ(shown(), width);
}

TEST_F(MovingTutorialTest, AFingerTakesOverWhereThePageIs) {
  stage.event([&] { pager->_button->press(); });
  stage.advance(UIScrollView::animationDuration / 2);
  const double before = offset();
  const QPoint start = middleOf(*stage.named("Pages"));
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QTest::touchEvent(&stage.window(), finger.get()).press(0, start);
  for (const int distance : {20, 60}) {
    QTest::touchEvent(&stage.window(), finger.get()).move(0, start + QPoint(distance, 0));
    stage.settle();
  }
  EXPECT_FALSE(pager->_scrollview->isScrolling());
  EXPECT_NEAR(offset(), before - 60, 1);
  EXPECT_DOUBLE_EQ(shown(), offset());
  QTest::touchEvent(&stage.window(), finger.get()).release(0, start + QPoint(60, 0));
}

TEST_F(MovingTutorialTest, ItDissolvesIntoTheScreenBeneath) {
  stage.event([&] { pager->_scrollview->setContentOffset({10000, 0}); });
  const QPoint place(600, 20);
  const QColor bar(0x1B, 0x21, 0x24);
  auto* const screen = stage.window().contentItem()->childItems().last();
  const auto progress = [&] { return screen->property("progress").toDouble(); };
  ASSERT_EQ(progress(), 1);
  EXPECT_EQ(stage.grab().pixelColor(place), QColor(Qt::black));
  stage.event([&] { pager->_button->press(); });
  stage.advance(UIWindow::transitionDuration / 4);
  const int between = stage.grab().pixelColor(place).lightness();
  EXPECT_GT(between, 0);
  EXPECT_LT(between, bar.lightness());
  stage.advance(UIWindow::transitionDuration);
  EXPECT_EQ(stage.grab().pixelColor(place), bar);
}

TEST_F(MovingTutorialTest, WhileItGoesNothingMovesTheStrip) {
  stage.event([&] { pager->_scrollview->setContentOffset({10000, 0}); });
  const double before = offset();
  const QPointF place = middleOf(*stage.named("Pages"));
  stage.event([&] { pager->_button->press(); });
  ASSERT_FALSE(stage.platformWindow()->presentations().empty());
  QWheelEvent wheel(place, place, {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&stage.window(), &wheel);
  stage.advance(UIWindow::transitionDuration / 2);
  EXPECT_EQ(offset(), before);
}
