#include "platform/uikit/UIApplication.h"

#include "platform/foundation/ClassRegistry.h"
#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class UIApplicationTest : public WindowFixture {
 protected:
  static UIApplication& app() { return *UIApplication::sharedApplication(); }
};

TEST_F(UIApplicationTest, HasNoWindowBeforeItIsLaunched) {
  EXPECT_EQ(app().keyWindow(), nullptr);
  EXPECT_EQ(app().delegate(), nullptr);
}

TEST_F(UIApplicationTest, LaunchesIntoAWindowOfTheScreensSize) {
  host.screen.size = {800, 600};
  launch();
  EXPECT_EQ(app().keyWindow(), window());
  EXPECT_EQ(window()->frame(), CGRectMake(0, 0, 800, 600));
  EXPECT_EQ(root().view()->frame(), CGRectMake(0, 0, 800, 600));
}

TEST_F(UIApplicationTest, TheBackgroundIsEnteredOnceUntilItIsLeft) {
  launch();
  app().enterBackground();
  EXPECT_THAT(takeLines(), ElementsAre("will resign active", "did enter background"));
  app().enterBackground();
  EXPECT_THAT(takeLines(), IsEmpty());
  app().enterForeground();
  EXPECT_THAT(takeLines(), ElementsAre("will enter foreground", "did become active"));
  app().enterForeground();
  EXPECT_THAT(takeLines(), IsEmpty());
  app().enterBackground();
  EXPECT_THAT(takeLines(), ElementsAre("will resign active", "did enter background"));
}

TEST_F(UIApplicationTest, BeforeTheLaunchNothingIsReported) {
  app().enterBackground();
  app().enterForeground();
  app().terminate();
  EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(UIApplicationTest, TheDelegateHearsOfTheEndOnce) {
  launch();
  app().terminate();
  app().terminate();
  EXPECT_THAT(takeLines(), ElementsAre("will terminate"));
}

TEST_F(UIApplicationTest, AnAddressIsOpenedOutsideAndTheAnswerComesInALaterTurn) {
  event([] {
    app().openURL_options_completionHandler(NSURL::URLWithString("app-settings:x"), {},
                                            [](bool opened) { print(opened ? "opened" : "not opened"); });
    print("asked");
  });
  EXPECT_THAT(host.desktop.opened, ElementsAre("app-settings:x"));
  EXPECT_THAT(takeLines(), ElementsAre("asked", "opened"));
}

TEST_F(UIApplicationTest, NobodyNeedsToHearWhetherAnAddressWasOpened) {
  event([] { app().openURL_options_completionHandler(NSURL::URLWithString("quillop-help:x"), {}, nullptr); });
  EXPECT_THAT(host.desktop.opened, ElementsAre("quillop-help:x"));
}

TEST_F(UIApplicationTest, TheAddressOfTheSettingsPageCanBeOpened) {
  const auto url = NSURL::URLWithString(UIApplicationOpenSettingsURLString);
  ASSERT_TRUE(url);
  EXPECT_EQ(url->absoluteString(), UIApplicationOpenSettingsURLString);
}

TEST_F(UIApplicationTest, EverythingIsReleasedWithThePlatform) {
  launch();
  show("toSheet");
  const Weak<UIWindow> weakWindow = window();
  const Weak<UIViewController> weakRoot = window()->rootViewController();
  const Weak<UIViewController> weakSheet = window()->topmostViewController();
  platform = nullptr;
  EXPECT_TRUE(weakWindow.expired());
  EXPECT_TRUE(weakRoot.expired());
  EXPECT_TRUE(weakSheet.expired());
}

class NoDelegate final : public NSObject {};
const ClassRegistration noDelegate = registerClass<NoDelegate>("UIApplicationTests.NoDelegate");

using UIApplicationDeathTest = UIApplicationTest;

TEST_F(UIApplicationDeathTest, NeedsADelegate) {
  EXPECT_DEATH(app().launch("UIApplicationTests.NoDelegate"),
               "UIApplicationTests.NoDelegate is no application delegate");
}

}  // namespace
