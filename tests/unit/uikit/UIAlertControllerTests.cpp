#include "platform/uikit/UIAlertController.h"

#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class UIAlertControllerTest : public WindowFixture {
 protected:
  UIAlertControllerTest() { launch(); }

  void add(const std::string& title, UIAlertActionStyle style) {
    alert->addAction(UIAlertAction::actionWithTitle_style_handler(
        title, style, [](const Strong<UIAlertAction>& action) { print(action->title() + " chosen"); }));
  }
  void show() {
    event([this] { root().presentViewController_animated_completion(alert, false); });
  }
  void press(std::size_t index) {
    event([&] { alert->pressAction(index); });
  }

  Strong<UIAlertController> alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
      "title", "message", UIAlertControllerStyle::Alert);
};

TEST_F(UIAlertControllerTest, HoldsWhatItWasMadeWith) {
  add("OK", UIAlertActionStyle::Default);
  add("Delete", UIAlertActionStyle::Destructive);
  EXPECT_EQ(alert->title(), "title");
  EXPECT_EQ(alert->message(), "message");
  EXPECT_EQ(alert->preferredStyle(), UIAlertControllerStyle::Alert);
  ASSERT_EQ(alert->actions().size(), 2U);
  EXPECT_EQ(alert->actions()[1]->title(), "Delete");
  EXPECT_EQ(alert->actions()[1]->style(), UIAlertActionStyle::Destructive);
}

TEST_F(UIAlertControllerTest, APressDismissesItAndThenRunsTheHandler) {
  add("OK", UIAlertActionStyle::Default);
  add("Help", UIAlertActionStyle::Default);
  show();
  press(1);
  EXPECT_THAT(takeLines(), IsEmpty());
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Help chosen"));
  EXPECT_EQ(window()->topmostViewController().get(), &root());
}

TEST_F(UIAlertControllerTest, TheAlertIsGoneWhenTheHandlerRuns) {
  alert->addAction(UIAlertAction::actionWithTitle_style_handler(
      "OK", UIAlertActionStyle::Default, [this](const Strong<UIAlertAction>&) {
        print(root().presentedViewController() == nullptr ? "gone" : "still there");
      }));
  show();
  press(0);
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("gone"));
}

TEST_F(UIAlertControllerTest, AButtonMayHaveNoHandler) {
  alert->addAction(UIAlertAction::actionWithTitle_style_handler("OK", UIAlertActionStyle::Default, nullptr));
  show();
  press(0);
  finishTransition();
  EXPECT_THAT(window()->presentations(), IsEmpty());
}

TEST_F(UIAlertControllerTest, ASecondPressDoesNothing) {
  add("OK", UIAlertActionStyle::Default);
  show();
  press(0);
  press(0);
  finishTransition();
  press(0);
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("OK chosen"));
}

TEST_F(UIAlertControllerTest, APressWhileItComesDoesNothing) {
  add("OK", UIAlertActionStyle::Default);
  event([this] { root().presentViewController_animated_completion(alert, true); });
  press(0);
  advance(1);
  EXPECT_EQ(window()->topmostViewController(), alert);
  EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(UIAlertControllerTest, APressBeneathAnotherAlertDoesNothing) {
  add("OK", UIAlertActionStyle::Default);
  show();
  const auto above = UIAlertController::alertControllerWithTitle_message_preferredStyle(
      "above", std::nullopt, UIAlertControllerStyle::Alert);
  event([&] { alert->presentViewController_animated_completion(above, false); });
  press(0);
  advance(1);
  EXPECT_EQ(window()->topmostViewController(), above);
  EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(UIAlertControllerTest, AButtonThatIsNotThereCannotBePressed) {
  add("OK", UIAlertActionStyle::Default);
  show();
  press(1);
  EXPECT_EQ(window()->topmostViewController(), alert);
}

TEST_F(UIAlertControllerTest, EscapePressesTheCancelButton) {
  add("OK", UIAlertActionStyle::Default);
  add("Cancel", UIAlertActionStyle::Cancel);
  show();
  event([this] { alert->pressCancel(); });
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Cancel chosen"));
}

TEST_F(UIAlertControllerTest, EscapePressesTheFirstButtonWhereNoneCancels) {
  add("OK", UIAlertActionStyle::Default);
  add("Help", UIAlertActionStyle::Default);
  show();
  event([this] { alert->pressCancel(); });
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("OK chosen"));
}

TEST_F(UIAlertControllerTest, EscapeDoesNothingWithoutAnyButton) {
  show();
  event([this] { alert->pressCancel(); });
  EXPECT_EQ(window()->topmostViewController(), alert);
}

TEST_F(UIAlertControllerTest, IsReleasedOnceItWasDismissed) {
  add("OK", UIAlertActionStyle::Default);
  show();
  press(0);
  const Weak<UIAlertController> weak = alert;
  alert = nullptr;
  finishTransition();
  EXPECT_TRUE(weak.expired());
}

}  // namespace
