#include "hosts/qtquick/Pictures.h"
#include "platform/coregraphics/UIGraphics.h"
#include "platform/uikit/UIImageView.h"
#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QTest>

namespace {

const QColor red(255, 0, 0);
const QColor green(0, 255, 0);

Strong<UIImage> picture(const std::string& colour) {
  return make<UIImage>("color:" + colour, CGSize{1, 1});
}

}  // namespace

TEST(SingleColour, IsReadWithItsOpacityLast) {
  EXPECT_EQ(qtquick::pictureColour(picture("#102030FF")), QColor(0x10, 0x20, 0x30));
  EXPECT_EQ(qtquick::pictureColour(picture("#10203080")), QColor(0x10, 0x20, 0x30, 0x80));
  EXPECT_TRUE(qtquick::pictureUrl(picture("#102030FF")).isEmpty());
}

TEST(SingleColour, OtherPicturesHaveNone) {
  EXPECT_FALSE(qtquick::pictureColour(nullptr));
  for (const char* const colour : {"", "#102030", "#102030FFF", "#10203G40", "red"}) {
    EXPECT_FALSE(qtquick::pictureColour(picture(colour))) << colour;
  }
  EXPECT_FALSE(qtquick::pictureColour(make<UIImage>("qrc:/images/play.svg", CGSize{24, 24})));
}

TEST(SingleColour, OfAPictureDrawnByCodeIsItsFill) {
  UIGraphicsBeginImageContext({1, 1});
  CGContextFillRect(UIGraphicsGetCurrentContext(), {{0, 0}, {1, 1}});
  const auto drawn = UIGraphicsGetImageFromCurrentImageContext();
  UIGraphicsEndImageContext();
  EXPECT_EQ(qtquick::pictureColour(drawn), QColor(Qt::black));
}

TEST(SingleColour, FillsAViewThatShowsIt) {
  ScreenStage stage;
  const auto view = make<UIImageView>(CGRectMake(300, 200, 50, 50));
  view->setImage(picture("#00FF00FF"));
  stage.event([&] { stage.screen().view()->addSubview(view); });
  EXPECT_EQ(stage.grab().pixelColor(325, 225), green);
  stage.event([&] { view->setImage(nullptr); });
  EXPECT_NE(stage.grab().pixelColor(325, 225), green);
}

TEST(SingleColour, FillsAButtonOnlyWhileItIsPressed) {
  ScreenStage stage;
  const auto button = make<UIButton>(CGRectMake(300, 200, 100, 50));
  button->setBackgroundColor({1, 0, 0, 1});
  button->setBackgroundImage_forState(picture("#00FF00FF"), UIControlState::Highlighted);
  button->layer()->setCornerRadius(10);
  stage.event([&] { stage.screen().view()->addSubview(button); });
  EXPECT_EQ(stage.grab().pixelColor(310, 225), red);
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QTest::touchEvent(&stage.window(), finger.get()).press(0, {310, 225});
  stage.settle();
  EXPECT_EQ(stage.grab().pixelColor(310, 225), green);
  EXPECT_NE(stage.grab().pixelColor(300, 200), green);  // the corner stays round
  QTest::touchEvent(&stage.window(), finger.get()).release(0, {310, 225});
  stage.settle();
  EXPECT_EQ(stage.grab().pixelColor(310, 225), red);
}

TEST(Scale, DrawsAViewAboutItsUpperLeftCorner) {
  ScreenStage stage;
  const auto outer = make<UIView>(CGRectMake(300, 200, 100, 60));
  const auto inner = make<UIView>(CGRectMake(20, 10, 10, 10));
  outer->setScale(2);
  outer->setBackgroundColor({1, 0, 0, 1});
  inner->setBackgroundColor({0, 1, 0, 1});
  outer->addSubview(inner);
  stage.event([&] { stage.screen().view()->addSubview(outer); });
  const QImage window = stage.grab();
  EXPECT_EQ(window.pixelColor(301, 201), red);
  EXPECT_EQ(window.pixelColor(398, 258), red);
  EXPECT_NE(window.pixelColor(402, 230), red);
  EXPECT_EQ(window.pixelColor(342, 222), green);
  EXPECT_EQ(window.pixelColor(357, 237), green);
  EXPECT_EQ(window.pixelColor(362, 230), red);
}
