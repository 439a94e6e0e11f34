#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIStoryboard.h"
#include "platform/uikit/UIStoryboardSegue.h"
#include "tests/support/Stage.h"

#include <gmock/gmock.h>

using host::LibraryAccess;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

void expectAlert(const Stage& stage, const std::string& message) {
  const auto alert = stage.alert();
  ASSERT_TRUE(alert);
  EXPECT_EQ(alert->title(), "Error");
  EXPECT_EQ(alert->message(), message);
  EXPECT_EQ(alert->preferredStyle(), UIAlertControllerStyle::Alert);
  ASSERT_EQ(alert->actions().size(), 2U);
  EXPECT_EQ(alert->actions()[0]->title(), "OK");
  EXPECT_EQ(alert->actions()[0]->style(), UIAlertActionStyle::Cancel);
  EXPECT_EQ(alert->actions()[1]->title(), "Open Settings");
  EXPECT_EQ(alert->actions()[1]->style(), UIAlertActionStyle::Default);
}

}  // namespace

TEST(Navigation, ChooseButtonWithAccessOpensTheListOnTheNextTurn) {
  Stage stage;
  {
    const RunLoop::Turn turn(RunLoop::main());
    std::dynamic_pointer_cast<UIButton>(stage.screen().view()->viewWithTag(5))->press();
    EXPECT_THAT(stage.takeLines(), ElementsAre("listaVideo", "posso caricare la lista :"));
    EXPECT_EQ(stage.list(), nullptr);
  }
  stage.advance(0);
  EXPECT_THAT(stage.takeLines(), ElementsAre("prepare", "segue"));
  ASSERT_TRUE(stage.list());
  EXPECT_EQ(stage.list()->delegate.get(), static_cast<passoVideoProtocol*>(&stage.screen()));
}

TEST(Navigation, ListOpensOnceTheLibraryIsPrepared) {
  Stage stage;
  stage.host.mediaLibrary.holdsPreparations = true;
  stage.pressChoose();
  stage.pressChoose();
  EXPECT_THAT(stage.takeLines(), ElementsAre("listaVideo", "posso caricare la lista :"));
  EXPECT_EQ(stage.list(), nullptr);
  stage.host.mediaLibrary.answerPreparations(true);
  EXPECT_THAT(stage.takeLines(), ElementsAre("prepare", "segue"));
  EXPECT_TRUE(stage.list());
}

TEST(Navigation, InfoDoesNotWaitForTheLibrary) {
  Stage stage;
  stage.host.mediaLibrary.holdsPreparations = true;
  {
    const RunLoop::Turn turn(RunLoop::main());
    stage.screen().info(nullptr);
  }
  EXPECT_THAT(stage.takeLines(), ElementsAre("info", "prepare"));
}

TEST(Navigation, ChooseButtonWhileNotDeterminedShowsUnknownError) {
  Stage stage;
  stage.host.mediaLibrary.currentAccess = LibraryAccess::NotDetermined;
  stage.pressChoose();
  EXPECT_THAT(stage.takeLines(), ElementsAre("listaVideo", "errore"));
  expectAlert(stage, "Unknown error");
}

TEST(Navigation, ChooseButtonWhileDeniedSaysSo) {
  Stage stage;
  stage.host.mediaLibrary.currentAccess = LibraryAccess::Denied;
  stage.pressChoose();
  expectAlert(stage, "Media library access denied by user");
}

TEST(Navigation, ChooseButtonWhileRestrictedSaysSo) {
  Stage stage;
  stage.host.mediaLibrary.currentAccess = LibraryAccess::Restricted;
  stage.pressChoose();
  expectAlert(stage, "Media library access restricted by corporate or parental settings");
}

TEST(Navigation, HandlerGivenAuthorisedLogsAndShowsNothing) {
  Stage stage;
  stage.host.mediaLibrary.answerRequests(LibraryAccess::Authorised);
  stage.advance(1.0);
  EXPECT_THAT(stage.takeLines(), ElementsAre("posso accedere alla libreria"));
  EXPECT_EQ(stage.alert(), nullptr);
}

TEST(Navigation, HandlerGivenAnotherStatusWhileAccessHoldsShowsUnknownError) {
  for (const auto status : {LibraryAccess::NotDetermined, LibraryAccess::Denied, LibraryAccess::Restricted}) {
    Stage stage;
    stage.host.mediaLibrary.answerRequests(status);
    EXPECT_THAT(stage.takeLines(), IsEmpty());
    expectAlert(stage, "Unknown error");
  }
}

TEST(Navigation, HandlerGivenDeniedWhileDeniedShowsTheReason) {
  Stage stage;
  stage.host.mediaLibrary.currentAccess = LibraryAccess::Denied;
  stage.host.mediaLibrary.answerRequests(LibraryAccess::Denied);
  expectAlert(stage, "Media library access denied by user");
}

TEST(Navigation, ChooseButtonHidesTheHintEvenWithoutAccess) {
  Stage stage(Stage::FirstRun);
  stage.host.mediaLibrary.currentAccess = LibraryAccess::Denied;
  ASSERT_TRUE(stage.fields().popTip()->isVisible());
  stage.pressChoose();
  EXPECT_FALSE(stage.fields().popTip()->isVisible());
}

TEST(Navigation, OpenSettingsOpensTheAppsSettingsPage) {
  Stage stage;
  stage.host.mediaLibrary.currentAccess = LibraryAccess::Denied;
  stage.pressChoose();
  stage.advance(1.0);
  stage.event([&] { stage.alert()->pressAction(1); });
  stage.advance(1.0);
  EXPECT_THAT(stage.host.desktop.opened, ElementsAre(UIApplicationOpenSettingsURLString));
}

TEST(Navigation, OkOfTheAccessAlertOpensNothing) {
  Stage stage;
  stage.host.mediaLibrary.currentAccess = LibraryAccess::Denied;
  stage.pressChoose();
  stage.advance(1.0);
  stage.event([&] { stage.alert()->pressAction(0); });
  stage.advance(1.0);
  EXPECT_THAT(stage.host.desktop.opened, IsEmpty());
  EXPECT_EQ(stage.alert(), nullptr);
}

TEST(Navigation, SecondPressOfTheChooseButtonNeverOpensASecondList) {
  Stage stage;
  const auto button = std::dynamic_pointer_cast<UIButton>(stage.screen().view()->viewWithTag(5));
  {
    const RunLoop::Turn turn(RunLoop::main());
    button->press();
    button->press();
  }
  stage.advance(1.0);
  stage.press(button);
  stage.advance(1.0);
  EXPECT_EQ(stage.window()->presentations().size(), 1U);
  EXPECT_EQ(stage.host.mediaLibrary.queries, 1);
}

TEST(Navigation, OtherSeguesArePreparedWithOneLine) {
  Stage stage;
  const auto other = make<UIViewController>();
  stage.screen().prepareForSegue_sender(make<UIStoryboardSegue>("Info", nullptr, other), nullptr);
  stage.screen().prepareForSegue_sender(make<UIStoryboardSegue>(std::nullopt, nullptr, other), nullptr);
  EXPECT_THAT(stage.takeLines(), ElementsAre("prepare", "prepare"));
}

TEST(NavigationDeathTest, ListSegueToAnotherScreenStopsTheApp) {
  Stage stage;
  const auto segue = make<UIStoryboardSegue>("ListaVideo", nullptr, make<UIViewController>());
  EXPECT_DEATH(stage.screen().prepareForSegue_sender(segue, nullptr), "the list screen");
}
