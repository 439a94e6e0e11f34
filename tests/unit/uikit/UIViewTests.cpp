#include "platform/uikit/UIView.h"

#include "platform/uikit/UIImageView.h"
#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class UIViewTest : public WindowFixture {
 protected:
  static Strong<UIView> viewAt(double x, double y, double width, double height) {
    return make<UIView>(CGRectMake(x, y, width, height));
  }
};

TEST_F(UIViewTest, LaterSubviewsLieAboveEarlierOnesAndSoDoTheirLayers) {
  const auto view = make<UIView>();
  const auto first = make<UIView>();
  const auto second = make<UIView>();
  view->addSubview(first);
  view->addSubview(second);
  EXPECT_THAT(view->subviews(), ElementsAre(first, second));
  EXPECT_THAT(*view->layer()->sublayers(), ElementsAre(first->layer(), second->layer()));
  EXPECT_EQ(first->superview(), view);
  view->addSubview(first);
  EXPECT_THAT(view->subviews(), ElementsAre(second, first));
}

TEST_F(UIViewTest, IsInOnePlaceOnly) {
  const auto view = make<UIView>();
  const auto other = make<UIView>();
  const auto child = make<UIView>();
  view->addSubview(child);
  other->addSubview(child);
  EXPECT_THAT(view->subviews(), IsEmpty());
  EXPECT_EQ(view->layer()->sublayers(), std::nullopt);
  EXPECT_EQ(child->superview(), other);
}

TEST_F(UIViewTest, RemovedItIsInNoPlace) {
  const auto view = make<UIView>();
  const auto child = make<UIView>();
  view->addSubview(child);
  child->removeFromSuperview();
  child->removeFromSuperview();
  EXPECT_EQ(child->superview(), nullptr);
  EXPECT_EQ(child->layer()->superlayer(), nullptr);
  EXPECT_THAT(view->subviews(), IsEmpty());
}

TEST_F(UIViewTest, KeepsItsSubviewsButNotItsSuperview) {
  auto view = make<UIView>();
  const auto child = make<UIView>();
  const Weak<UIView> weak = view;
  view->addSubview(child);
  view = nullptr;
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(child->superview(), nullptr);
}

TEST_F(UIViewTest, ATagIsLookedUpHereAndThenDepthFirst) {
  const auto view = make<UIView>();
  const auto first = make<UIView>();
  const auto deep = make<UIView>();
  const auto second = make<UIView>();
  view->addSubview(first);
  first->addSubview(deep);
  view->addSubview(second);
  deep->setTag(5);
  second->setTag(5);
  EXPECT_EQ(view->viewWithTag(5), deep);
  view->setTag(5);
  EXPECT_EQ(view->viewWithTag(5), view);
  EXPECT_EQ(view->viewWithTag(6), nullptr);
}

TEST_F(UIViewTest, ContainsItselfAndWhatLiesBelowIt) {
  const auto view = make<UIView>();
  const auto child = make<UIView>();
  const auto grandchild = make<UIView>();
  view->addSubview(child);
  child->addSubview(grandchild);
  EXPECT_TRUE(view->contains(*view));
  EXPECT_TRUE(view->contains(*grandchild));
  EXPECT_FALSE(child->contains(*view));
}

TEST_F(UIViewTest, TheTopmostVisibleViewIsHit) {
  const auto view = viewAt(50, 50, 100, 100);
  const auto lower = viewAt(0, 0, 60, 60);
  const auto upper = viewAt(40, 40, 60, 60);
  const auto inner = viewAt(10, 10, 10, 10);
  view->addSubview(lower);
  view->addSubview(upper);
  upper->addSubview(inner);
  EXPECT_EQ(view->hitTest({50, 40}), upper);
  EXPECT_EQ(view->hitTest({55, 55}), inner);
  EXPECT_EQ(view->hitTest({10, 10}), lower);
  EXPECT_EQ(view->hitTest({99, 10}), view);
  EXPECT_EQ(view->hitTest({100, 10}), nullptr);
  upper->setHidden(true);
  EXPECT_EQ(view->hitTest({55, 55}), lower);
  view->setHidden(true);
  EXPECT_EQ(view->hitTest({55, 55}), nullptr);
}

TEST_F(UIViewTest, ItsBoundsAndCentreFollowItsFrame) {
  const auto view = viewAt(10, 20, 30, 40);
  EXPECT_EQ(view->bounds(), CGRectMake(0, 0, 30, 40));
  EXPECT_EQ(view->center(), (CGPoint{25, 40}));
  view->setCenter({100, 100});
  EXPECT_EQ(view->frame(), CGRectMake(85, 80, 30, 40));
  EXPECT_EQ(view->layer()->frame(), view->frame());
}

TEST_F(UIViewTest, KnowsItsWindow) {
  launch();
  const auto view = make<UIView>();
  EXPECT_EQ(view->window(), nullptr);
  root().box->addSubview(view);
  EXPECT_EQ(view->window(), window());
  EXPECT_EQ(window()->window(), window());
  root().box->removeFromSuperview();
  EXPECT_EQ(view->window(), nullptr);
}

TEST_F(UIViewTest, OnlyTheRootViewOfAScreenKnowsItsController) {
  launch();
  EXPECT_EQ(root().view()->viewController(), window()->rootViewController());
  EXPECT_EQ(root().box->viewController(), nullptr);
}

TEST_F(UIViewTest, AViewWithoutARuleKeepsItsFrame) {
  launch();
  const auto view = viewAt(1, 2, 3, 4);
  event([&] { root().box->addSubview(view); });
  event([&] { window()->setSize({400, 800}); });
  EXPECT_EQ(view->frame(), CGRectMake(1, 2, 3, 4));
}

TEST_F(UIViewTest, AViewWithARuleIsPlacedAtTheEndOfTheTurn) {
  launch();
  const auto view = make<UIView>();
  LayoutRule rule;
  rule.portrait.horizontal.start = LayoutLength{0.5, 0};
  rule.portrait.horizontal.extent = LayoutLength{0, 10};
  rule.landscape = rule.portrait;
  event([&] {
    root().box->addSubview(view);
    view->setLayoutRule(rule);
    EXPECT_EQ(view->frame(), CGRectZero);
  });
  EXPECT_EQ(view->frame(), CGRectMake(256, 0, 10, 100));
  rule.landscape.horizontal.start = LayoutLength{0, 4};
  event([&] { view->setLayoutRule(rule); });
  EXPECT_EQ(view->frame(), CGRectMake(4, 0, 10, 100));
}

TEST_F(UIViewTest, TheShapeOfTheScreenAndNotOfTheParentDecidesTheOrientation) {
  launch();  // 1024 x 640: landscape
  const auto tall = viewAt(0, 0, 10, 500);
  const auto child = make<UIView>();
  LayoutRule rule;
  rule.portrait.horizontal.start = LayoutLength{0, 1};
  rule.landscape.horizontal.start = LayoutLength{0, 2};
  child->setLayoutRule(rule);
  tall->addSubview(child);
  event([&] { root().view()->addSubview(tall); });
  EXPECT_EQ(child->frame().origin.x, 2);
  event([&] {
    window()->setSize({640, 1024});
    tall->setNeedsLayout();
  });
  EXPECT_EQ(child->frame().origin.x, 1);
}

TEST_F(UIViewTest, AnchoredFramesFollowTheWindow) {
  launch();
  EXPECT_EQ(root().box->frame(), CGRectMake(10, 20, 512, 100));
  event([&] { window()->setSize({800, 600}); });
  EXPECT_EQ(root().view()->frame(), CGRectMake(0, 0, 800, 600));
  EXPECT_EQ(root().box->frame(), CGRectMake(10, 20, 400, 100));
}

class ChangesTest : public UIViewTest {
 protected:
  ChangesTest() {
    launch();
    window()->takeChanges();
    host.screen.framesAskedFor = 0;
  }
  std::vector<Strong<UIView>> changesAfter(const std::function<void()>& block) {
    window()->takeChanges();
    block();
    return window()->takeChanges();
  }
};

TEST_F(ChangesTest, AViewThatChangedTwiceIsNotedOnceInTheOrderOfFirstChanges) {
  root().slider->setHidden(true);
  root().box->setHidden(true);
  root().slider->setValue(50);
  EXPECT_THAT(window()->takeChanges(), ElementsAre(root().slider, root().box));
  EXPECT_EQ(host.screen.framesAskedFor, 2);
}

TEST_F(ChangesTest, TakenOnceTheyAreGone) {
  root().box->setHidden(true);
  window()->takeChanges();
  EXPECT_THAT(window()->takeChanges(), IsEmpty());
  root().box->setHidden(false);
  EXPECT_THAT(window()->takeChanges(), ElementsAre(root().box));
}

TEST_F(ChangesTest, AViewThatLeftTheWindowIsNotAmongThem) {
  root().box->setHidden(true);
  root().box->removeFromSuperview();
  EXPECT_THAT(window()->takeChanges(), ElementsAre(root().view()));
}

TEST_F(ChangesTest, AViewThatIsGoneIsNotAmongThem) {
  auto view = make<UIView>();
  root().box->addSubview(view);
  view->removeFromSuperview();
  view = nullptr;
  EXPECT_THAT(window()->takeChanges(), ElementsAre(root().box));
}

TEST_F(ChangesTest, AViewThatCameIsAmongThem) {
  const auto view = make<UIView>();
  root().box->addSubview(view);
  EXPECT_THAT(window()->takeChanges(), testing::UnorderedElementsAre(root().box, view));
}

TEST_F(ChangesTest, AViewThatLeftAndCameBackIsNotedAgain) {
  const auto box = root().box;
  box->setHidden(true);
  box->removeFromSuperview();
  window()->takeChanges();
  root().view()->addSubview(box);
  EXPECT_THAT(window()->takeChanges(), testing::Contains(box));
}

TEST_F(ChangesTest, WhatIsSetToWhatItIsChangesNothing) {
  root().box->setHidden(false);
  root().box->setFrame(root().box->frame());
  root().box->setBackgroundColor(root().box->backgroundColor());
  root().slider->setValue(0);
  EXPECT_THAT(window()->takeChanges(), IsEmpty());
  EXPECT_EQ(host.screen.framesAskedFor, 0);
}

TEST_F(ChangesTest, EveryPropertyThatIsDrawnIsNoted) {
  const auto& box = root().box;
  const std::vector<std::function<void()>> changes = {
      [&] { box->setFrame(CGRectMake(1, 1, 1, 1)); },
      [&] {
        box->setCenter({70, 70});
      },
      [&] { box->setHidden(true); },
      [&] { box->setBackgroundColor(UIColor::grayColor()); },
      [&] { box->setContentMode(UIViewContentMode::ScaleAspectFill); },
      [&] { box->setClipsToBounds(true); },
      [&] { box->setAccessibilityLabel("box"); },
      [&] { box->layer()->setCornerRadius(8); },
      [&] { box->layer()->setBorderWidth(1); },
      [&] { box->layer()->setBorderColor(UIColor::whiteColor()); },
      [&] { box->layer()->addSublayer(make<CALayer>()); },
      [&] { box->layer()->sublayers()->front()->setBackgroundColor(UIColor::blackColor()); },
      [&] { box->layer()->sublayers()->front()->removeFromSuperlayer(); },
      [&] { box->setNeedsLayout(); },
  };
  for (std::size_t i = 0; i < changes.size(); ++i) {
    EXPECT_THAT(changesAfter(changes[i]), ElementsAre(box)) << i;
  }
}

TEST_F(ChangesTest, EveryPropertyOfLabelsImagesAndButtonsIsNoted) {
  const auto label = make<UILabel>();
  const auto picture = make<UIImageView>();
  const auto button = make<UIButton>();
  for (const Strong<UIView>& view : {Strong<UIView>(label), Strong<UIView>(picture), Strong<UIView>(button)}) {
    root().box->addSubview(view);
  }
  const auto image = make<UIImage>("qrc:/image", CGSize{1, 1});
  constexpr auto normal = UIControlState::Normal;
  EXPECT_THAT(changesAfter([&] { label->setText("text"); }), ElementsAre(label));
  EXPECT_THAT(changesAfter([&] { label->setTextColor(UIColor::grayColor()); }), ElementsAre(label));
  EXPECT_THAT(changesAfter([&] { label->setFontSize(20); }), ElementsAre(label));
  EXPECT_THAT(changesAfter([&] { label->setBold(true); }), ElementsAre(label));
  EXPECT_THAT(changesAfter([&] { label->setTextAlignment(NSTextAlignment::Right); }), ElementsAre(label));
  EXPECT_THAT(changesAfter([&] { picture->setImage(image); }), ElementsAre(picture));
  EXPECT_THAT(changesAfter([&] { button->setTitle_forState("title", normal); }), ElementsAre(button));
  EXPECT_THAT(changesAfter([&] { button->setTitleColor_forState(UIColor::grayColor(), normal); }),
              ElementsAre(button));
  EXPECT_THAT(changesAfter([&] { button->setImage_forState(image, normal); }), ElementsAre(button));
  EXPECT_THAT(changesAfter([&] { button->setBackgroundImage_forState(image, normal); }), ElementsAre(button));
}

}  // namespace
