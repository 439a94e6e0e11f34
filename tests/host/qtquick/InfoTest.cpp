#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QTest>

namespace {

class InfoTest : public testing::Test {
 protected:
  InfoTest() : info(stage.openInfo()) { stage.takeLines(); }

  void click(const QString& name) {
    QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named(name)));
    stage.advance(UIWindow::transitionDuration);
  }

  ScreenStage stage;
  Strong<Info> info;
};

}  // namespace

TEST(InfoButton, OpensTheInfoScreen) {
  ScreenStage stage;
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named("Info")));
  stage.advance(UIWindow::transitionDuration);
  EXPECT_EQ(stage.takeLines(), (std::vector<std::string>{"info", "prepare"}));
  EXPECT_NE(std::dynamic_pointer_cast<Info>(stage.platformWindow()->topmostViewController()), nullptr);
}

TEST_F(InfoTest, WriteToUsOpensADraft) {
  click("Write to us");
  EXPECT_EQ(stage.takeLines(), std::vector<std::string>{"contattaci"});
  EXPECT_EQ(stage.simulatedHost().mail.drafts.size(), 1U);
}

TEST_F(InfoTest, ShowTheTutorialOpensItOverTheInfoScreen) {
  click("Show the tutorial");
  EXPECT_EQ(stage.named("Write to us"), nullptr);
  click("next");
  click("start");
  EXPECT_EQ(stage.takeLines().back(), "chiusoTutorial");
  EXPECT_NE(stage.named("Write to us"), nullptr);
}

TEST_F(InfoTest, CloseAndEscapeCloseIt) {
  click("Close");
  EXPECT_TRUE(stage.platformWindow()->presentations().empty());
  stage.openInfo();
  QTest::keyClick(&stage.window(), Qt::Key_Escape);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_TRUE(stage.platformWindow()->presentations().empty());
}

TEST_F(InfoTest, TellsTheNameAndWhatTheAppDoes) {
  EXPECT_NE(stage.named("Quillop"), nullptr);
  EXPECT_NE(stage.named("Plays two films at once, one in the left ear and one in the right."), nullptr);
}

namespace {

void collectTexts(const QQuickItem& item, std::vector<const QQuickItem*>& texts) {
  if (!item.isVisible()) return;
  if (item.property("truncated").isValid() && !item.property("text").toString().isEmpty()) texts.push_back(&item);
  for (const auto* const child : item.childItems()) collectTexts(*child, texts);
}

QRectF placeOf(const QQuickItem& item) {
  return item.mapRectToScene({0, 0, item.width(), item.height()});
}

class InfoLooksAt : public testing::TestWithParam<QSize> {};

}  // namespace

TEST_P(InfoLooksAt, EveryTextIsWholeAndNothingOverlaps) {
  ScreenStage stage({.size = GetParam()});
  ASSERT_NE(stage.openInfo(), nullptr);
  std::vector<const QQuickItem*> texts;
  collectTexts(*stage.window().contentItem()->childItems().last(), texts);
  EXPECT_EQ(texts.size(), 5U);
  std::vector<QRectF> places;
  for (const auto* const text : texts) {
    EXPECT_FALSE(text->property("truncated").toBool()) << text->property("text").toString().toStdString();
    EXPECT_LE(text->property("contentHeight").toDouble(), text->height());
    places.push_back(placeOf(*text));
  }
  places.push_back(placeOf(*stage.named("Close")));
  const QRectF window({0, 0}, QSizeF(GetParam()));
  for (std::size_t first = 0; first < places.size(); ++first) {
    EXPECT_TRUE(window.contains(places[first]));
    for (std::size_t second = 0; second < first; ++second) EXPECT_FALSE(places[first].intersects(places[second]));
  }
}

TEST_P(InfoLooksAt, EveryControlIsLargeEnoughForAFingerAndInReach) {
  ScreenStage stage({.size = GetParam()});
  ASSERT_NE(stage.openInfo(), nullptr);
  for (const char* const name : {"Write to us", "Show the tutorial", "Close"}) {
    const QRectF place = placeOf(*stage.named(name));
    EXPECT_GE(place.width(), 44) << name;
    EXPECT_GE(place.height(), 44) << name;
    EXPECT_TRUE(QRectF({0, 0}, QSizeF(GetParam())).contains(place)) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, InfoLooksAt,
                         testing::Values(QSize(390, 844), QSize(844, 390), QSize(1024, 640), QSize(1920, 1080),
                                         QSize(360, 640), QSize(360, 360)));
