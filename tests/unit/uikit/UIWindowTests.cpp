#include "platform/uikit/UIWindow.h"

#include "platform/foundation/DispatchQueue.h"
#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

#include <algorithm>

using simulated::Lines;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

Strong<NotedScreen> screen(const std::string& name, UIModalPresentationStyle style) {
  auto made = make<NotedScreen>(name);
  made->setModalPresentationStyle(style);
  return made;
}

Strong<NotedScreen> fullScreen(const std::string& name) {
  return screen(name, UIModalPresentationStyle::FullScreen);
}

Strong<NotedScreen> sheet(const std::string& name) {
  return screen(name, UIModalPresentationStyle::PageSheet);
}

Strong<UIAlertController> alert() {
  return UIAlertController::alertControllerWithTitle_message_preferredStyle("title", "message",
                                                                            UIAlertControllerStyle::Alert);
}

class PresentationTest : public WindowFixture {
 protected:
  PresentationTest() { launch(); }

  /// Presents over `presenter` and waits until it is there; what that printed is forgotten.
  void presented(UIViewController& presenter, const Strong<UIViewController>& controller) {
    event([&] { presenter.presentViewController_animated_completion(controller, false); });
    takeLines();
  }
  void present(const Strong<UIViewController>& controller, bool animated = true) {
    event(
        [&] { root().presentViewController_animated_completion(controller, animated, [] { print("presented"); }); });
  }
  void dismiss(UIViewController& controller, bool animated = true) {
    event([&] { controller.dismissViewControllerAnimated_completion(animated, [] { print("dismissed"); }); });
  }
};

TEST_F(PresentationTest, AFullScreenOneMakesItsPresenterDisappear) {
  present(fullScreen("Full"));
  EXPECT_THAT(takeLines(), ElementsAre("Full did load", "Root will disappear animated", "Full will appear animated"));
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Root did disappear animated", "Full did appear animated", "presented"));
}

TEST_F(PresentationTest, AFullScreenOneMakesItsPresenterAppearAgainBeforeTheCompletion) {
  presented(root(), fullScreen("Full"));
  dismiss(root());
  EXPECT_THAT(takeLines(), ElementsAre("Full will disappear animated", "Root will appear animated"));
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Full did disappear animated", "Root did appear animated", "dismissed"));
}

TEST_F(PresentationTest, AFullScreenOneDoesNotTouchScreensFurtherBelow) {
  const auto middle = sheet("Middle");
  presented(root(), middle);
  event([&] { middle->presentViewController_animated_completion(fullScreen("Full"), false); });
  EXPECT_THAT(takeLines(), ElementsAre("Full did load", "Middle will disappear", "Full will appear",
                                       "Middle did disappear", "Full did appear"));
  dismiss(*middle, false);
  EXPECT_THAT(takeLines(), ElementsAre("Full will disappear", "Middle will appear", "Full did disappear",
                                       "Middle did appear", "dismissed"));
}

TEST_F(PresentationTest, ASheetCausesNothingInTheScreenBeneath) {
  present(sheet("Sheet"));
  finishTransition();
  EXPECT_THAT(takeLines(),
              ElementsAre("Sheet did load", "Sheet will appear animated", "Sheet did appear animated", "presented"));
  dismiss(root());
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Sheet will disappear animated", "Sheet did disappear animated", "dismissed"));
}

TEST_F(PresentationTest, AnAlertCausesNothingInTheScreenBeneath) {
  const auto shown = alert();
  shown->setModalPresentationStyle(UIModalPresentationStyle::FullScreen);
  present(shown);
  finishTransition();
  dismiss(root());
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("presented", "dismissed"));
}

TEST_F(PresentationTest, AnAlertHasNoViewInTheWindow) {
  const auto before = window()->subviews();
  presented(root(), alert());
  EXPECT_EQ(window()->subviews(), before);
  EXPECT_EQ(window()->presentations().size(), 1U);
}

TEST_F(PresentationTest, TheViewOfAScreenIsInTheWindowWhileItIsPresented) {
  const auto shown = sheet("Sheet");
  present(shown);
  EXPECT_THAT(window()->subviews(), ElementsAre(root().view(), shown->view()));
  finishTransition();
  dismiss(root());
  EXPECT_EQ(shown->view()->window(), window());
  finishTransition();
  EXPECT_THAT(window()->subviews(), ElementsAre(root().view()));
}

TEST_F(PresentationTest, BothScreensKnowEachOtherUntilTheDismissalHasEnded) {
  const auto shown = sheet("Sheet");
  present(shown);
  EXPECT_EQ(root().presentedViewController(), shown);
  EXPECT_EQ(shown->presentingViewController().get(), &root());
  finishTransition();
  dismiss(*shown);
  EXPECT_EQ(root().presentedViewController(), shown);
  finishTransition();
  EXPECT_EQ(root().presentedViewController(), nullptr);
  EXPECT_EQ(shown->presentingViewController(), nullptr);
}

TEST_F(PresentationTest, PassesThroughItsPhases) {
  present(sheet("Sheet"));
  EXPECT_EQ(window()->presentations().at(0).phase, PresentationPhase::Presenting);
  EXPECT_TRUE(window()->presentations().at(0).animated);
  finishTransition();
  EXPECT_EQ(window()->presentations().at(0).phase, PresentationPhase::Shown);
  dismiss(root(), false);
  EXPECT_THAT(window()->presentations(), IsEmpty());
  present(sheet("Sheet"));
  finishTransition();
  dismiss(root(), true);
  EXPECT_EQ(window()->presentations().at(0).phase, PresentationPhase::Dismissing);
}

TEST_F(PresentationTest, WithoutAnimationItEndsInTheNextTurn) {
  event([this] {
    root().presentViewController_animated_completion(sheet("Sheet"), false, [] { print("presented"); });
    print("asked for");
  });
  EXPECT_THAT(takeLines(),
              ElementsAre("Sheet did load", "Sheet will appear", "asked for", "Sheet did appear", "presented"));
}

TEST_F(PresentationTest, WhereMotionIsNotWantedItTakesNoTime) {
  host.screen.still = true;
  present(sheet("Sheet"));
  EXPECT_THAT(takeLines(), Contains("presented"));
}

TEST_F(PresentationTest, WithAnimationItTakesItsTime) {
  present(sheet("Sheet"));
  advance(UIWindow::transitionDuration - 0.01);
  EXPECT_THAT(takeLines(), Not(Contains("presented")));
  advance(0.01);
  EXPECT_THAT(takeLines(), Contains("presented"));
}

TEST_F(PresentationTest, AnAlertOverAScreenThatPresentsAlreadyWaitsItsTurn) {
  const auto second = alert();
  presented(root(), alert());
  present(second);
  finishTransition();
  EXPECT_EQ(root().presentedViewController(), window()->topmostViewController());
  EXPECT_THAT(takeLines(), IsEmpty());
  dismiss(root());
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("dismissed"));
  EXPECT_EQ(window()->topmostViewController(), second);
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("presented"));
}

TEST_F(PresentationTest, OneDuringATransitionWaitsItsTurn) {
  const auto second = alert();
  present(fullScreen("Full"), true);
  const auto full = strongReference(&top());
  event([&] { full->presentViewController_animated_completion(second, true); });
  EXPECT_EQ(window()->topmostViewController(), full);
  finishTransition();
  EXPECT_EQ(window()->topmostViewController(), second);
}

TEST_F(PresentationTest, SeveralAppearInTheOrderInWhichTheyWereAskedFor) {
  presented(root(), alert());
  const auto second = alert();
  const auto third = alert();
  present(second, false);
  present(third, false);
  dismiss(root(), false);
  EXPECT_EQ(window()->topmostViewController(), second);
  dismiss(root(), false);
  EXPECT_EQ(window()->topmostViewController(), third);
}

TEST_F(PresentationTest, AfterADismissalCallbacksComeFirstThenTheCompletionThenWhatWaited) {
  presented(root(), fullScreen("First"));
  present(fullScreen("Second"), false);
  takeLines();
  dismiss(root(), false);
  EXPECT_THAT(takeLines(), ElementsAre("First will disappear", "Root will appear", "First did disappear",
                                       "Root did appear", "dismissed", "Second did load", "Root will disappear",
                                       "Second will appear", "Root did disappear", "Second did appear", "presented"));
}

TEST_F(PresentationTest, OneOverAScreenThatIsNotInTheWindowYetWaitsItsTurn) {
  const auto shown = fullScreen("Full");
  const auto waiting = alert();
  event([&] { shown->presentViewController_animated_completion(waiting, false, [] { print("presented"); }); });
  EXPECT_EQ(window()->topmostViewController().get(), &root());
  takeLines();
  present(shown, false);
  EXPECT_EQ(window()->topmostViewController(), waiting);
}

TEST_F(PresentationTest, OneAskedForBeforeTheWindowIsVisibleWaitsItsTurn) {
  platform = nullptr;
  platform = std::make_unique<Platform>(host.ports());
  UIApplication::sharedApplication()->launch("NotedDelegate");
  const auto waiting = fullScreen("Full");
  event([&] { root().presentViewController_animated_completion(waiting, false); });
  EXPECT_EQ(window()->topmostViewController(), waiting);
  const auto lines = takeLines();
  EXPECT_LT(std::ranges::find(lines, "Root will appear"), std::ranges::find(lines, "Full will appear"));
}

TEST_F(PresentationTest, WhatAScreenThatHasGoneWantedToPresentIsForgotten) {
  auto owner = sheet("Owner");
  const auto waiting = alert();
  event([&] { owner->presentViewController_animated_completion(waiting, false); });
  owner = nullptr;
  present(sheet("Sheet"), false);
  dismiss(root(), false);
  EXPECT_EQ(waiting->presentingViewController(), nullptr);
  EXPECT_TRUE(window()->canPresentOver(root()));
}

TEST_F(PresentationTest, ADismissalDuringThePresentationWaitsForIt) {
  const auto shown = sheet("Sheet");
  present(shown);
  dismiss(*shown);
  EXPECT_THAT(takeLines(), ElementsAre("Sheet did load", "Sheet will appear animated"));
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Sheet did appear animated", "presented", "Sheet will disappear animated"));
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Sheet did disappear animated", "dismissed"));
}

TEST_F(PresentationTest, ASecondDismissalOfTheSameScreenDoesNothing) {
  presented(root(), sheet("Sheet"));
  const auto shown = strongReference(&top());
  dismiss(*shown);
  dismiss(*shown);
  finishTransition();
  dismiss(*shown);
  EXPECT_THAT(takeLines(), ElementsAre("Sheet will disappear animated", "Sheet did disappear animated", "dismissed"));
}

TEST_F(PresentationTest, AScreenThatNeitherPresentsNorWasPresentedCannotBeDismissed) {
  dismiss(root());
  dismiss(*make<NotedScreen>("Stranger"));
  finishTransition();
  EXPECT_THAT(takeLines(), IsEmpty());
  EXPECT_EQ(window()->topmostViewController().get(), &root());
}

class StackTest : public PresentationTest {
 protected:
  /// Root, First over it, and the screen of that style over First.
  void stack() {
    presented(root(), first);
    presented(*first, second);
  }
  const Strong<NotedScreen> first = sheet("First");
  const Strong<NotedScreen> second = sheet("Second");
};

TEST_F(StackTest, DismissedFromBelowAllOfItGoesFromTheTop) {
  stack();
  dismiss(root());
  EXPECT_THAT(takeLines(), ElementsAre("Second will disappear animated", "First will disappear animated"));
  for (const auto& each : window()->presentations()) EXPECT_EQ(each.phase, PresentationPhase::Dismissing);
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Second did disappear animated", "First did disappear animated", "dismissed"));
  EXPECT_THAT(window()->presentations(), IsEmpty());
  EXPECT_THAT(window()->subviews(), ElementsAre(root().view()));
  EXPECT_EQ(first->presentedViewController(), nullptr);
  EXPECT_EQ(second->presentingViewController(), nullptr);
}

TEST_F(StackTest, AScreenThatWasCoveredDoesNotDisappearAgain) {
  second->setModalPresentationStyle(UIModalPresentationStyle::FullScreen);
  presented(root(), first);
  event([this] { first->presentViewController_animated_completion(second, false); });
  EXPECT_THAT(takeLines(), Contains("First did disappear"));
  dismiss(root());
  finishTransition();
  EXPECT_THAT(takeLines(),
              ElementsAre("Second will disappear animated", "Second did disappear animated", "dismissed"));
}

TEST_F(StackTest, AskedToDismissAScreenThatPresentsDismissesWhatItPresents) {
  stack();
  dismiss(*first);
  finishTransition();
  EXPECT_THAT(takeLines(),
              ElementsAre("Second will disappear animated", "Second did disappear animated", "dismissed"));
  EXPECT_EQ(window()->topmostViewController(), first);
}

TEST_F(PresentationTest, ADismissedScreenIsReleasedWhenNothingElseHoldsIt) {
  Weak<UIViewController> weak;
  Weak<UIView> view;
  event([&] {
    const auto shown = fullScreen("Full");
    weak = shown;
    root().presentViewController_animated_completion(shown, true);
    view = shown->view();
  });
  finishTransition();
  EXPECT_FALSE(weak.expired());
  dismiss(root());
  finishTransition();
  EXPECT_TRUE(weak.expired());
  EXPECT_TRUE(view.expired());
}

TEST_F(PresentationTest, AllScreensOfADismissedStackAreReleased) {
  Weak<UIViewController> first;
  Weak<UIViewController> second;
  event([&] {
    const auto shown = sheet("First");
    first = shown;
    root().presentViewController_animated_completion(shown, false);
  });
  event([&] {
    const auto shown = fullScreen("Second");
    second = shown;
    first.lock()->presentViewController_animated_completion(shown, false);
  });
  dismiss(root(), false);
  EXPECT_TRUE(first.expired());
  EXPECT_TRUE(second.expired());
}

TEST_F(PresentationTest, AScreenThatIsHeldElsewhereIsNot) {
  const auto shown = sheet("Sheet");
  presented(root(), shown);
  dismiss(root(), false);
  EXPECT_EQ(shown.use_count(), 1);
}

using PresentationDeathTest = WindowFixture;

TEST_F(PresentationDeathTest, NeedsAWindow) {
  EXPECT_DEATH(make<NotedScreen>("Code")->presentViewController_animated_completion(alert(), false),
               "a presentation without a window");
}

class SheetTest : public PresentationTest {
 protected:
  CGRect sheetIn(CGSize size) {
    event([&] { window()->setSize(size); });
    return window()->frameForScreen(*sheet("Sheet"));
  }
};

TEST_F(SheetTest, LeavesAMarginWhereThereIsRoom) {
  EXPECT_EQ(sheetIn({800, 620}), CGRectMake(32, 32, 736, 556));
}

TEST_F(SheetTest, LeavesABarAboveItFreeInAHighWindow) {
  EXPECT_EQ(sheetIn({800, 640}), CGRectMake(32, 64, 736, 512));
  EXPECT_EQ(sheetIn({360, 640}), CGRectMake(0, 64, 360, 576));
  EXPECT_EQ(sheetIn({360, 600}), CGRectMake(0, 24, 360, 576));
}

TEST_F(SheetTest, IsAsSmallAsItsScreenPrefersWhereThereIsRoomAround) {
  const auto small = sheet("Sheet");
  small->setPreferredContentSize({440, 464});
  EXPECT_EQ(window()->frameForScreen(*small), CGRectMake(292, 88, 440, 464));
  event([&] { window()->setSize({720, 500}); });
  EXPECT_EQ(window()->frameForScreen(*small), CGRectMake(140, 32, 440, 436));
  event([&] { window()->setSize({360, 740}); });
  EXPECT_EQ(window()->frameForScreen(*small), CGRectMake(0, 64, 360, 676));
}

TEST_F(SheetTest, DoesNotGrowBeyondWhatIsEasyToRead) {
  EXPECT_EQ(sheetIn({2000, 1500}), CGRectMake(520, 300, 960, 900));
}

TEST_F(SheetTest, TakesTheWholeWidthOfANarrowWindow) {
  EXPECT_EQ(sheetIn({360, 740}), CGRectMake(0, 64, 360, 676));
}

TEST_F(SheetTest, TakesTheWholeOfALowWindow) {
  EXPECT_EQ(sheetIn({740, 360}), CGRectMake(0, 0, 740, 360));
}

TEST_F(SheetTest, FullScreensAndTheRootScreenTakeTheWholeWindow) {
  EXPECT_EQ(window()->frameForScreen(*fullScreen("Full")), CGRectMake(0, 0, 1024, 640));
  EXPECT_EQ(window()->frameForScreen(root()), CGRectMake(0, 0, 1024, 640));
}

TEST_F(SheetTest, FollowsTheWindow) {
  show("toSheet");
  advance(1.0);
  const auto shown = window()->topmostViewController();
  EXPECT_EQ(shown->view()->frame(), CGRectMake(32, 64, 960, 512));
  event([this] { window()->setSize({360, 740}); });
  EXPECT_EQ(shown->view()->frame(), CGRectMake(0, 64, 360, 676));
}

TEST_F(SheetTest, BuiltByCodeKeepsItsGeometryAndIsScaledToFitAndCentred) {
  const auto shown = sheet("Sheet");
  presented(root(), shown);
  EXPECT_EQ(shown->view()->frame(), CGRectMake(32, 64, 960, 512));
  event([this] { window()->setSize({480, 740}); });
  EXPECT_EQ(shown->view()->bounds(), CGRectMake(0, 0, 960, 512));
  EXPECT_EQ(shown->view()->scale(), 0.5);
  EXPECT_EQ(shown->view()->frame(), CGRectMake(0, 64 + (676 - 256) / 2.0, 480, 256));
}

class TraitsTest : public WindowFixture {
 protected:
  void resize(double width, double height) {
    event([&] { window()->setSize({width, height}); });
  }
};

TEST_F(TraitsTest, HoldTheSizeClassesAndTheSizeOfAWindowThatCanHaveAny) {
  using enum UIUserInterfaceSizeClass;
  const auto large = UITraitCollection::forWindow({600, 480}, true);
  EXPECT_EQ(large.horizontalSizeClass, Regular);
  EXPECT_EQ(large.verticalSizeClass, Regular);
  EXPECT_EQ(large.windowSize, (CGSize{600, 480}));
  const auto small = UITraitCollection::forWindow({599, 479}, false);
  EXPECT_EQ(small.horizontalSizeClass, Compact);
  EXPECT_EQ(small.verticalSizeClass, Compact);
  EXPECT_EQ(small.windowSize, std::nullopt);
}

TEST_F(TraitsTest, AreNotReportedForTheFirstSize) {
  launch();
  EXPECT_EQ(root().traits, std::nullopt);
  resize(1024, 640);
  EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(TraitsTest, AreNotReportedBeforeTheWindowIsVisible) {
  const auto shown = make<NotedScreen>("Code");
  const auto early = make<UIWindow>(CGRectMake(0, 0, 100, 100));
  early->setRootViewController(shown);
  shown->view();
  takeLines();
  event([&] { early->setSize({400, 800}); });
  EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(TraitsTest, AreReportedOnceForEachRealChange) {
  launch();
  resize(1000, 640);
  EXPECT_THAT(takeLines(), ElementsAre("Root new traits"));
  EXPECT_EQ(root().traits->windowSize, (CGSize{1000, 640}));
  EXPECT_EQ(window()->traitCollection(), *root().traits);
  resize(1000, 640);
  EXPECT_THAT(takeLines(), IsEmpty());
  resize(1024, 640);
  EXPECT_THAT(takeLines(), ElementsAre("Root new traits"));
}

TEST_F(TraitsTest, OfAWindowThatCannotBeResizedOnlyTheSizeClassesCount) {
  host.screen.resizable = false;
  launch();
  resize(1000, 600);
  EXPECT_THAT(takeLines(), IsEmpty());
  EXPECT_EQ(root().view()->frame(), CGRectMake(0, 0, 1000, 600));
  resize(400, 600);
  EXPECT_THAT(takeLines(), ElementsAre("Root new traits"));
  EXPECT_EQ(root().traits->horizontalSizeClass, UIUserInterfaceSizeClass::Compact);
}

TEST_F(TraitsTest, ReachEveryScreenThatIsLoadedFromTheBottom) {
  launch();
  show("toSheet");
  resize(500, 800);
  EXPECT_THAT(takeLines(), ElementsAre("Root new traits", "Sheet new traits"));
}

TEST_F(TraitsTest, LayoutHasBeenDoneBeforeDeferredWorkRuns) {
  launch();
  CGRect during;
  CGRect later;
  event([&] {
    window()->setSize({800, 600});
    during = root().box->frame();
    DispatchQueue::main().async([&] { later = root().box->frame(); });
  });
  EXPECT_EQ(during.size.width, 512);
  EXPECT_EQ(later.size.width, 400);
}

}  // namespace
