#include "tutorial/NFXIntroViewController.h"

#include "platform/foundation/Values.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UIStoryboard.h"
#include "tests/support/Stage.h"

#include <gmock/gmock.h>

#include <limits>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Listener final : public delegatoTutorialChiuso {
 public:
  void chiusoTutorial() override { ++closings; }
  int closings = 0;
};

std::vector<Strong<NSObject>> pictures(int count) {
  std::vector<Strong<NSObject>> images;
  for (int i = 1; i <= count; ++i) {
    images.push_back(make<UIImage>("qrc:/x", CGSize{600, 400}, std::to_string(i) + "tutorial.jpg"));
  }
  return images;
}

/// A pager in a window of 900 x 600 points.
class PagerTest : public testing::Test {
 protected:
  PagerTest() : stage(Stage::NotLaunched) {
    stage.host.screen.size = {900, 600};
    stage.launch();
  }

  Strong<NFXIntroViewController> build(int count) {
    auto pager = make<NFXIntroViewController>(std::nullopt, nullptr);
    pager->initWithViews(pictures(count));
    return pager;
  }
  Strong<NFXIntroViewController> present(int count) {
    auto pager = build(count);
    pager->setModalPresentationStyle(UIModalPresentationStyle::FullScreen);
    stage.event([&] { stage.screen().presentViewController_animated_completion(pager, true); });
    stage.advance(1.0);
    stage.takeLines();
    return pager;
  }
  static std::string title(const NFXIntroViewController& pager) {
    return pager._button->titleForState(UIControlState::Normal);
  }
  bool isShown(const NFXIntroViewController& pager) const {
    return stage.window()->topmostViewController().get() == &pager;
  }

  Stage stage;
};

}  // namespace

TEST_F(PagerTest, StartsWithItsViewsAtTheScreensBoundsAndNothingElse) {
  for (const auto& pager : {make<NFXIntroViewController>(), make<NFXIntroViewController>(NSCoder())}) {
    const CGRect screen{{0, 0}, {900, 600}};
    EXPECT_EQ(pager->_scrollview->frame(), screen);
    EXPECT_EQ(pager->_button->frame(), screen);
    EXPECT_EQ(pager->_pgcontrol->frame(), screen);
    EXPECT_THAT(pager->_images, IsEmpty());
    EXPECT_EQ(pager->delegate2, nullptr);
    EXPECT_EQ(pager->nextText, "next");
    EXPECT_EQ(pager->startText, "start");
  }
}

TEST_F(PagerTest, BuildingLogsThePicturesOnOneLineAndTheHeightOfTheDots) {
  build(2);
  EXPECT_THAT(stage.takeLines(), ElementsAre("initWithViews : [<UIImage: 1tutorial.jpg>, <UIImage: 2tutorial.jpg>]",
                                             "_pgcontrol : 26.0"));
}

TEST_F(PagerTest, GeometryIsExactToThePoint) {
  const auto pager = build(2);
  EXPECT_EQ(pager->_scrollview->frame(), CGRectMake(150, 50, 600, 400));
  EXPECT_EQ(pager->_scrollview->contentSize(), (CGSize{1200, 400}));
  EXPECT_EQ(pager->_pgcontrol->frame().origin.y, 450);
  EXPECT_EQ(pager->_pgcontrol->center().x, 450);
  EXPECT_EQ(pager->_pgcontrol->frame().size.height, 26);
  EXPECT_EQ(pager->_button->frame(), CGRectMake(325, 476, 250, 50));
  const auto& pages = pager->_scrollview->subviews();
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_EQ(pages[0]->frame(), CGRectMake(0, 0, 600, 400));
  EXPECT_EQ(pages[1]->frame(), CGRectMake(600, 0, 600, 400));
}

TEST_F(PagerTest, ThirdsAreAddedInDoublePrecision) {
  stage.event([&] { stage.window()->setSize({1000, 700}); });
  const auto pager = build(1);
  EXPECT_EQ(pager->_scrollview->frame().size.width, 1000.0 / 3 + 1000.0 / 3);
  EXPECT_EQ(pager->_scrollview->frame().size.height, 700.0 / 3 + 700.0 / 3);
}

TEST_F(PagerTest, ViewsLieInTheirOrderAndHaveTheirColours) {
  const auto pager = build(2);
  const UIColor light = UIColor::colorWithWhite_alpha(0.8, 1);
  EXPECT_THAT(pager->view()->subviews(), ElementsAre(pager->_scrollview, pager->_pgcontrol, pager->_button));
  EXPECT_EQ(pager->view()->backgroundColor(), UIColor::blackColor());
  EXPECT_EQ(pager->_scrollview->backgroundColor(), UIColor::blackColor());
  EXPECT_EQ(pager->_scrollview->layer()->borderColor(), light);
  EXPECT_EQ(pager->_scrollview->layer()->borderWidth(), 0);
  EXPECT_EQ(pager->_scrollview->layer()->cornerRadius(), 2);
  EXPECT_TRUE(pager->_scrollview->isPagingEnabled());
  EXPECT_FALSE(pager->_scrollview->bounces());
  EXPECT_FALSE(pager->_scrollview->showsHorizontalScrollIndicator());
  EXPECT_EQ(pager->_pgcontrol->pageIndicatorTintColor(), light);
  EXPECT_EQ(pager->_pgcontrol->currentPageIndicatorTintColor(), UIColor::colorWithWhite_alpha(0.6, 1));
  EXPECT_EQ(pager->_button->titleColorForState(UIControlState::Normal), UIColor::colorWithWhite_alpha(0.4, 1));
  EXPECT_EQ(pager->_button->layer()->borderColor(), light);
  EXPECT_EQ(pager->_button->layer()->borderWidth(), 0.5);
  EXPECT_EQ(pager->_button->layer()->cornerRadius(), 4);
  EXPECT_TRUE(pager->_button->clipsToBounds());
  EXPECT_EQ(pager->_button->backgroundImageForState(UIControlState::Highlighted)->source(), "color:#000000FF");
  EXPECT_EQ(pager->_button->backgroundImageForState(UIControlState::Normal), nullptr);
  EXPECT_EQ(pager->modalTransitionStyle(), UIModalTransitionStyle::CrossDissolve);
  const auto page = std::dynamic_pointer_cast<UIImageView>(pager->_scrollview->subviews()[1]);
  ASSERT_TRUE(page);
  EXPECT_EQ(page->image()->name(), "2tutorial.jpg");
  EXPECT_EQ(page->contentMode(), UIViewContentMode::ScaleAspectFit);
  EXPECT_TRUE(page->clipsToBounds());
}

TEST_F(PagerTest, TwoPicturesNextScrollsAndStartCloses) {
  const auto pager = present(2);
  EXPECT_EQ(title(*pager), "next");
  EXPECT_EQ(pager->_pgcontrol->numberOfPages(), 2);
  EXPECT_EQ(pager->_pgcontrol->currentPage(), 0);
  stage.press(pager->_button);
  EXPECT_THAT(stage.takeLines(), ElementsAre("ButtonPushed", "numero : 1   page : 0", "if page_ != numero"));
  EXPECT_EQ(title(*pager), "next");
  stage.advance(1.0);
  EXPECT_EQ(pager->_scrollview->contentOffset(), (CGPoint{600, 0}));
  EXPECT_EQ(title(*pager), "start");
  EXPECT_EQ(pager->_pgcontrol->currentPage(), 1);
  EXPECT_THAT(stage.takeLines(), IsEmpty());
  stage.press(pager->_button);
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("ButtonPushed", "numero : 1   page : 1", "self.dismissViewControllerAnimated"));
  stage.advance(1.0);
  EXPECT_FALSE(isShown(*pager));
}

TEST_F(PagerTest, AnimatedScrollReportsEachOfItsSteps) {
  const auto pager = present(2);
  std::vector<double> offsets;
  class Steps final : public UIScrollViewDelegate {
   public:
    explicit Steps(std::vector<double>& seen) : seen_(seen) {}
    void scrollViewDidScroll(const Strong<UIScrollView>& view) override { seen_.push_back(view->contentOffset().x); }

   private:
    std::vector<double>& seen_;
  };
  const auto steps = std::make_shared<Steps>(offsets);
  pager->_scrollview->setDelegate(steps);
  stage.press(pager->_button);
  stage.advance(1.0);
  EXPECT_GT(offsets.size(), 5U);
  EXPECT_TRUE(std::is_sorted(offsets.begin(), offsets.end()));
  EXPECT_EQ(offsets.back(), 600);
}

TEST_F(PagerTest, OnePictureClosesAtTheFirstPressWhileStillReadingNext) {
  const auto pager = present(1);
  EXPECT_EQ(title(*pager), "next");
  stage.press(pager->_button);
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("ButtonPushed", "numero : 0   page : 0", "self.dismissViewControllerAnimated"));
  stage.advance(1.0);
  EXPECT_FALSE(isShown(*pager));
}

TEST_F(PagerTest, OnePictureReadsStartOnceItWasScrolled) {
  const auto pager = present(1);
  pager->scrollViewDidScroll(pager->_scrollview);
  EXPECT_EQ(title(*pager), "start");
}

TEST_F(PagerTest, SwipingBackFromTheLastPageReadsNextAgain) {
  const auto pager = present(2);
  stage.event([&] { pager->_scrollview->setContentOffset({600, 0}); });
  EXPECT_EQ(title(*pager), "start");
  stage.event([&] { pager->_scrollview->setContentOffset({0, 0}); });
  EXPECT_EQ(title(*pager), "next");
  EXPECT_EQ(pager->_pgcontrol->currentPage(), 0);
  EXPECT_THAT(stage.takeLines(), IsEmpty());
}

TEST_F(PagerTest, EmptyArrayOffersNoWayToClose) {
  const auto pager = present(0);
  for (int press = 0; press < 3; ++press) {
    stage.press(pager->_button);
    stage.advance(1.0);
    EXPECT_THAT(stage.takeLines(), ElementsAre("ButtonPushed", "numero : -1   page : 0", "if page_ != numero"));
  }
  EXPECT_TRUE(isShown(*pager));
  EXPECT_EQ(pager->_scrollview->contentOffset(), (CGPoint{0, 0}));
}

TEST_F(PagerTest, HalfwayBetweenTwoPagesCountsAsTheFurther) {
  const auto pager = present(3);
  stage.event([&] { pager->_scrollview->setContentOffset({899, 0}); });
  EXPECT_EQ(pager->_pgcontrol->currentPage(), 1);
  EXPECT_EQ(title(*pager), "next");
  stage.event([&] { pager->_scrollview->setContentOffset({900, 0}); });
  EXPECT_EQ(pager->_pgcontrol->currentPage(), 2);
  EXPECT_EQ(title(*pager), "start");
}

TEST_F(PagerTest, ClosingTellsTheDelegateAfterTheDismissal) {
  const auto pager = present(1);
  const auto listener = std::make_shared<Listener>();
  pager->delegate2 = listener;
  stage.press(pager->_button);
  EXPECT_EQ(listener->closings, 0);
  stage.advance(1.0);
  EXPECT_EQ(listener->closings, 1);
}

TEST_F(PagerTest, IsReleasedAfterItsDismissal) {
  auto pager = present(1);
  stage.press(pager->_button);
  const Weak<NFXIntroViewController> weak = pager;
  pager = nullptr;
  stage.advance(1.0);
  EXPECT_TRUE(weak.expired());
}

TEST_F(PagerTest, RotatingTheWindowScalesTheWholeIntoReachAndKeepsItsGeometry) {
  const auto pager = present(2);
  stage.event([&] { stage.window()->setSize({450, 900}); });
  EXPECT_EQ(pager->view()->frame(), CGRectMake(0, 300, 450, 300));
  EXPECT_EQ(pager->view()->bounds(), CGRectMake(0, 0, 900, 600));
  EXPECT_EQ(pager->_button->frame(), CGRectMake(325, 476, 250, 50));
  EXPECT_EQ(stage.window()->hitTest({225, 300 + 250}), pager->_button);
}

using PagerDeathTest = PagerTest;

TEST_F(PagerDeathTest, ElementThatIsNoImageStopsTheApp) {
  const auto pager = make<NFXIntroViewController>();
  EXPECT_DEATH(pager->initWithViews({make<NSString>("1tutorial.jpg")}), "is no image");
}

TEST_F(PagerDeathTest, StripOfNoWidthStopsTheApp) {
  const auto pager = present(2);
  pager->_scrollview->setFrame(CGRectZero);
  EXPECT_DEATH(pager->ButtonPushed(), "a page that cannot be counted");  // 0 / 0
}

TEST_F(PagerDeathTest, InfinitePageAndPageOutsideTheNumbersStopTheApp) {
  const auto pager = present(2);
  const auto strip = make<UIScrollView>(CGRectMake(0, 0, 0, 10));
  strip->setContentSize({100, 10});
  strip->setContentOffset({50, 0});
  EXPECT_DEATH(pager->scrollViewDidScroll(strip), "a page that cannot be counted");  // 50 / 0
  strip->setFrame(CGRectMake(0, 0, std::numeric_limits<double>::min(), 10));
  EXPECT_DEATH(pager->scrollViewDidScroll(strip), "a page that cannot be counted");
}
