#include "app/AppDelegate.h"

#include "platform/foundation/ClassRegistry.h"
#include "tests/support/Stage.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

TEST(AppDelegate, StartShowsTheMainScreenInItsWindow) {
  Stage stage(Stage::NotLaunched);
  UIApplication::sharedApplication()->launch(NSStringFromClass<AppDelegate>());
  stage.advance(0);
  ASSERT_TRUE(stage.window());
  EXPECT_TRUE(std::dynamic_pointer_cast<ViewController>(stage.window()->rootViewController()));
  EXPECT_THAT(stage.takeLines(), testing::Contains("viewDidAppear"));
}

TEST(AppDelegate, HasNoWindowAtFirstAndAcceptsTheLaunch) {
  const Stage stage;
  const auto delegate = make<AppDelegate>();
  EXPECT_EQ(delegate->window(), nullptr);
  EXPECT_TRUE(delegate->application_didFinishLaunchingWithOptions(UIApplication::sharedApplication(), {}));
}

TEST(AppDelegate, GoingToTheBackgroundPausesBothFilmsAndTheyStayPaused) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.load(2, "b.mp4");
  stage.takeLines();
  stage.event([] { UIApplication::sharedApplication()->enterBackground(); });
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("applicationDidEnterBackground", "viewWillDisappear metto in pausa i due player"));
  stage.event([] { UIApplication::sharedApplication()->enterForeground(); });
  stage.advance(2.0);
  EXPECT_FALSE(stage.fields().audio(1)->isPlaying());
  EXPECT_FALSE(stage.fields().audio(2)->isPlaying());
}

TEST(AppDelegate, EveryEntryIntoTheBackgroundIsReported) {
  Stage stage;
  for (int entry = 0; entry < 2; ++entry) {
    stage.event([] { UIApplication::sharedApplication()->enterBackground(); });
    EXPECT_THAT(stage.takeLines(),
                ElementsAre("applicationDidEnterBackground", "viewWillDisappear metto in pausa i due player"));
    stage.event([] { UIApplication::sharedApplication()->enterForeground(); });
  }
}

TEST(AppDelegate, BackgroundGoesToTheRootScreenWhateverLiesOverIt) {
  Stage stage;
  stage.load(2, "b.mp4");
  stage.openList();
  stage.takeLines();
  stage.event([] { UIApplication::sharedApplication()->enterBackground(); });
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("applicationDidEnterBackground", "viewWillDisappear metto in pausa i due player"));
  EXPECT_FALSE(stage.fields().audio(2)->isPlaying());
}

TEST(AppDelegate, BackgroundWithoutAWindowOnlyLogs) {
  Stage stage(Stage::NotLaunched);
  const auto delegate = make<AppDelegate>();
  delegate->applicationDidEnterBackground(UIApplication::sharedApplication());
  delegate->setWindow(make<UIWindow>());
  delegate->applicationDidEnterBackground(UIApplication::sharedApplication());
  EXPECT_THAT(stage.takeLines(), ElementsAre("applicationDidEnterBackground", "applicationDidEnterBackground"));
}
