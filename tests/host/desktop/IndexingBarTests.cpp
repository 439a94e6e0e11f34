#include "hosts/desktop/IndexingBar.h"

#include "platform/uikit/UIView.h"
#include "tests/host/desktop/LibraryStage.h"

namespace desktop {
namespace {

const auto title = QStringLiteral("Looking through your videos");
const auto hide = QStringLiteral("Hide progress");

class IndexingBarTest : public testing::Test {
 protected:
  void work(std::size_t done, std::size_t total, std::optional<double> secondsLeft) {
    there.facts.progress = {done, total, secondsLeft};
    there.tellChange();
  }
  ScreenStage& stage() { return there.stage; }
  QAccessibleInterface* indicator() { return there.accessible(title); }
  QRectF place() { return there.placeOf(title); }

  LibraryStage there;
  IndexingBar bar{there.layers, there.library};
};

TEST_F(IndexingBarTest, TellsOfLongWork) {
  EXPECT_FALSE(bar.isShown());
  work(120, 4000, 118.0);
  EXPECT_TRUE(bar.isShown());
  EXPECT_EQ(bar.text(), QStringLiteral("120 of 4,000, about 2 minutes left"));
  ASSERT_NE(indicator(), nullptr);
  EXPECT_EQ(indicator()->role(), QAccessible::ProgressBar);
  EXPECT_EQ(indicator()->text(QAccessible::Description), bar.text());
}

TEST_F(IndexingBarTest, NotOfWorkThatIsSmallOrAboutToEnd) {
  work(1, 49, 300.0);
  EXPECT_FALSE(bar.isShown());
  work(1, 4000, 3.0);
  EXPECT_FALSE(bar.isShown());
}

TEST_F(IndexingBarTest, WorkWhoseTimeStaysUnknownIsLong) {
  work(1, 4000, std::nullopt);
  EXPECT_FALSE(bar.isShown());
  EXPECT_TRUE(LibraryStage::waitFor([this] { return bar.isShown(); }));
  EXPECT_EQ(bar.text(), QStringLiteral("1 of 4,000"));
}

TEST_F(IndexingBarTest, StaysUntilTheWorkIsDone) {
  work(120, 4000, 118.0);
  work(3999, 4000, 0.1);
  EXPECT_TRUE(bar.isShown());
  work(0, 0, std::nullopt);
  EXPECT_FALSE(bar.isShown());
  EXPECT_EQ(indicator(), nullptr);
  work(1, 60, 10.0);
  EXPECT_TRUE(bar.isShown()) << "and again";
}

TEST_F(IndexingBarTest, HiddenItStaysAway) {
  work(120, 4000, 118.0);
  there.click(hide);
  EXPECT_FALSE(bar.isShown());
  work(121, 4000, 118.0);
  work(0, 0, std::nullopt);
  work(1, 4000, 118.0);
  EXPECT_FALSE(bar.isShown());
}

TEST_F(IndexingBarTest, KeyboardHidesIt) {
  work(120, 4000, 118.0);
  for (int step = 0; step < 10 && stage().window().activeFocusItem() != stage().named(hide); ++step) {
    there.key(Qt::Key_Tab);
  }
  ASSERT_EQ(stage().window().activeFocusItem(), stage().named(hide));
  there.key(Qt::Key_Return);
  EXPECT_FALSE(bar.isShown());
}

TEST_F(IndexingBarTest, IsHeldBackWhileSomethingElseTellsTheSame) {
  bar.setHeldBack(true);
  work(120, 4000, 118.0);
  EXPECT_FALSE(bar.isShown());
  bar.setHeldBack(false);
  EXPECT_TRUE(bar.isShown());
}

TEST_F(IndexingBarTest, LetsTouchesThrough) {
  stage().load(1);
  stage().load(2);
  work(120, 4000, 118.0);
  const QPointF left(place().left() + 20, place().center().y());
  stage().takeLines();
  const auto& overlay = stage().screen().vistaControlliFilm1;
  const bool wasHidden = overlay->isHidden();
  QTest::mouseClick(&stage().window(), Qt::LeftButton, {}, left.toPoint());
  stage().advance(1);
  EXPECT_NE(overlay->isHidden(), wasHidden) << "the tap reached the film";
}

TEST_F(IndexingBarTest, LiesUnderTheScreensThatTheAppPresents) {
  work(120, 4000, 118.0);
  stage().openInfo();
  EXPECT_TRUE(bar.isShown());
  EXPECT_EQ(indicator(), nullptr);
  EXPECT_EQ(stage().named(hide), nullptr);
  there.key(Qt::Key_Escape);
  stage().advance(1);
  EXPECT_NE(stage().named(hide), nullptr);
}

TEST_F(IndexingBarTest, IsOutOfReachUnderACover) {
  work(120, 4000, 118.0);
  QQuickItem cover;
  stage().host().cover(cover, [] {});
  stage().settle();
  EXPECT_EQ(stage().named(hide), nullptr);
}

TEST_F(IndexingBarTest, IsWholeAndInNobodysWayAtEverySize) {
  stage().load(1);
  stage().load(2);
  work(1234, 4000, 118.0);
  for (const QSize size :
       {QSize(360, 640), QSize(390, 844), QSize(844, 390), QSize(768, 1024), QSize(1024, 640), QSize(1920, 1080)}) {
    SCOPED_TRACE(testing::Message() << size.width() << "x" << size.height());
    stage().resize(size);
    stage().settle();
    ASSERT_TRUE(QRectF(QPointF(), size).contains(place()));
    EXPECT_GE(there.placeOf(hide).width(), 44);
    EXPECT_GE(there.placeOf(hide).height(), 44);
    for (const auto* const name : {"Choose videos", "Info", "Pause film 1", "Close film 1", "Volume of film 1",
                                   "Pause film 2", "Close film 2", "Volume of film 2"}) {
      const QRectF control = there.placeOf(QLatin1String(name));
      ASSERT_FALSE(control.isEmpty()) << name;
      EXPECT_FALSE(control.intersects(place())) << name;
    }
    for (auto* const item : stage().named(hide)->parentItem()->childItems().first()->childItems()) {
      EXPECT_FALSE(item->property("truncated").toBool()) << qPrintable(item->property("text").toString());
    }
  }
}

}  // namespace
}  // namespace desktop
