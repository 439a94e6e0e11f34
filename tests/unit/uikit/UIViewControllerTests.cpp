#include "platform/uikit/UIViewController.h"

#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

class UIViewControllerTest : public WindowFixture {};

TEST_F(UIViewControllerTest, ASceneIsConnectedAndLaidOutBeforeItsViewDidLoad) {
  launch();
  EXPECT_EQ(root().boxWhenLoaded, CGRectMake(10, 20, 512, 100));
}

TEST_F(UIViewControllerTest, NoLayoutIsReportedBeforeItsViewDidLoad) {
  launch();
  EXPECT_EQ(root().layoutsWhenLoaded, 0);
  EXPECT_GE(root().layoutsBegun, 1);
  EXPECT_EQ(root().layoutsBegun, root().layoutsEnded);
}

TEST_F(UIViewControllerTest, EachLayoutOfItsRootViewIsReported) {
  launch();
  const int before = root().layoutsBegun;
  event([this] { root().view()->setNeedsLayout(); });
  EXPECT_EQ(root().layoutsBegun, before + 1);
  EXPECT_EQ(root().layoutsEnded, before + 1);
  event([this] { root().box->setNeedsLayout(); });
  EXPECT_EQ(root().layoutsBegun, before + 1);
}

TEST_F(UIViewControllerTest, ASheetsSceneIsLaidOutAtTheSheetsSize) {
  launch();
  event([this] { root().performSegueWithIdentifier_sender("toSheet", nullptr); });
  EXPECT_EQ(top().view()->frame(), CGRectMake(32, 64, 960, 512));
  EXPECT_EQ(top().boxWhenLoaded, CGRectMake(0, 0, 960, 512));
}

TEST_F(UIViewControllerTest, ItsViewIsLoadedOnce) {
  launch();
  const auto screen = make<NotedScreen>("Code");
  EXPECT_FALSE(screen->isViewLoaded());
  const auto view = screen->view();
  EXPECT_TRUE(screen->isViewLoaded());
  EXPECT_EQ(screen->view(), view);
  EXPECT_THAT(takeLines(), ElementsAre("Code did load"));
}

TEST_F(UIViewControllerTest, TheRootScreenAppears) {
  UIApplication::sharedApplication()->launch("NotedDelegate");
  EXPECT_THAT(takeLines(), ElementsAre("did finish launching", "Root did load", "Root counts section 0",
                                       "Root will appear", "did become active"));
  advance(0);
  EXPECT_THAT(takeLines(), ElementsAre("Root did appear"));
}

class AppearanceTransitionTest : public UIViewControllerTest {
 protected:
  AppearanceTransitionTest() { launch(); }
};

TEST_F(AppearanceTransitionTest, DeliversItsCallbacks) {
  root().beginAppearanceTransition_animated(false, false);
  EXPECT_THAT(takeLines(), ElementsAre("Root will disappear"));
  root().endAppearanceTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Root did disappear"));
  root().beginAppearanceTransition_animated(true, true);
  root().endAppearanceTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Root will appear animated", "Root did appear animated"));
}

TEST_F(AppearanceTransitionTest, DeliversThemAlsoWhenNothingBalancedTheLastPair) {
  for (int entry = 0; entry < 3; ++entry) {
    root().beginAppearanceTransition_animated(false, false);
    root().endAppearanceTransition();
    EXPECT_THAT(takeLines(), ElementsAre("Root will disappear", "Root did disappear")) << entry;
  }
}

class SegueTest : public UIViewControllerTest {
 protected:
  SegueTest() { launch(); }
};

TEST_F(SegueTest, PreparesADestinationWhoseViewIsNotLoaded) {
  Weak<UIViewController> destination;
  root().preparing = [&](const UIStoryboardSegue& segue) {
    destination = segue.destinationViewController();
    EXPECT_EQ(segue.sourceViewController().get(), &root());
    EXPECT_FALSE(segue.destinationViewController()->isViewLoaded());
  };
  event([this] { root().performSegueWithIdentifier_sender("toSheet", nullptr); });
  EXPECT_THAT(takeLines(), ElementsAre("Root prepares toSheet", "Sheet did load", "Sheet will appear animated"));
  EXPECT_EQ(destination.lock(), window()->topmostViewController());
  EXPECT_EQ(window()->topmostViewController()->modalPresentationStyle(), UIModalPresentationStyle::PageSheet);
}

TEST_F(SegueTest, ASecondOneIsRefused) {
  event([this] {
    root().performSegueWithIdentifier_sender("toSheet", nullptr);
    root().performSegueWithIdentifier_sender("toFull", nullptr);
  });
  finishTransition();
  takeLines();
  event([this] { root().performSegueWithIdentifier_sender("toFull", nullptr); });
  finishTransition();
  EXPECT_THAT(takeLines(), IsEmpty());
  EXPECT_EQ(window()->presentations().size(), 1U);
}

TEST_F(SegueTest, IsRefusedWhileADismissalIsRunning) {
  show("toSheet");
  event([this] {
    root().dismissViewControllerAnimated_completion(true);
    root().performSegueWithIdentifier_sender("toFull", nullptr);
  });
  EXPECT_THAT(takeLines(), Not(Contains("Root prepares toFull")));
  finishTransition();
  event([this] { root().performSegueWithIdentifier_sender("toFull", nullptr); });
  EXPECT_THAT(takeLines(), Contains("Root prepares toFull"));
}

TEST_F(SegueTest, IsRefusedWhileAnotherPresentationWaitsItsTurn) {
  show("toSheet");
  const auto waiting = UIAlertController::alertControllerWithTitle_message_preferredStyle(
      "waiting", std::nullopt, UIAlertControllerStyle::Alert);
  event([&] { root().presentViewController_animated_completion(waiting, false); });
  event([this] {
    root().dismissViewControllerAnimated_completion(
        false, [this] { root().performSegueWithIdentifier_sender("toFull", nullptr); });
  });
  EXPECT_THAT(takeLines(), Not(Contains("Root prepares toFull")));
  EXPECT_EQ(window()->topmostViewController(), waiting);
}

TEST_F(SegueTest, GoesOnFromAPresentedScreen) {
  show("toSheet");
  event([this] { top().performSegueWithIdentifier_sender("toFull", nullptr); });
  EXPECT_THAT(takeLines(), ElementsAre("Sheet prepares toFull", "Full did load", "Sheet will disappear animated",
                                       "Full will appear animated"));
}

using SegueDeathTest = SegueTest;

TEST_F(SegueDeathTest, MustBeInTheScene) {
  EXPECT_DEATH(root().performSegueWithIdentifier_sender("toNowhere", nullptr), "there is no segue toNowhere");
}

TEST_F(SegueDeathTest, NeedsAScreenOfTheInterfaceResource) {
  EXPECT_DEATH(make<NotedScreen>("Code")->performSegueWithIdentifier_sender("toSheet", nullptr),
               "a segue of a screen that is not in the interface resource: toSheet");
}

}  // namespace
