// Every screen as it looks, on a phone and on a desktop.

#include "tests/host/pictures/Golden.h"
#include "tests/host/pictures/Scene.h"

namespace {

constexpr QSize phone(390, 844);
constexpr QSize smallPhone(360, 640);
constexpr QSize tablet(768, 1024);
constexpr QSize wide(1280, 800);

const std::vector<std::string> titles{
    "Summer at the lake",
    "A long evening with the whole family in the garden behind the old house, part 2",
    "\u05D9\u05D5\u05DD \u05D4\u05D5\u05DC\u05D3\u05EA \u05E9\u05DC \u05E1\u05D1\u05EA\u05D0",
    "\u0631\u062D\u0644\u0629 \u0625\u0644\u0649 \u0627\u0644\u0628\u062D\u0631 \u0645\u0639 "
    "\u0627\u0644\u0623\u0635\u062F\u0642\u0627\u0621 \u0641\u064A \u0627\u0644\u0635\u064A\u0641 "
    "\u0627\u0644\u0645\u0627\u0636\u064A 2019",
    "IMG_20190704_181512_a_name_without_any_space_as_cameras_give_them.mp4",
    "Concert",
    "Holiday film 10",
};

}  // namespace

TEST(Pictures, EmptyMainScreenOnAPhone) {
  EXPECT_TRUE(looksAs("main-phone", Scene(phone).picture()));
}

TEST(Pictures, EmptyMainScreenWithTheHintOnADesktop) {
  EXPECT_TRUE(looksAs("hint-desktop", Scene({wide, {}, true}).picture()));
}

TEST(Pictures, OneFilmOnADesktop) {
  Scene scene(wide);
  scene.stage().load(1);
  EXPECT_TRUE(looksAs("one-film-desktop", scene.picture()));
}

TEST(Pictures, TwoFilmsOnAPhone) {
  Scene scene(phone);
  scene.playBoth();
  EXPECT_TRUE(looksAs("films-phone", scene.picture()));
}

TEST(Pictures, TwoFilmsOnASmallPhone) {
  Scene scene(smallPhone);
  scene.playBoth();
  EXPECT_TRUE(looksAs("films-small-phone", scene.picture()));
}

TEST(Pictures, TwoFilmsUnderPointerAndKeyboardOnADesktop) {
  Scene scene(wide);
  scene.playBoth();
  scene.tab(2);
  scene.hover("Position in film 2");
  EXPECT_TRUE(looksAs("films-desktop", scene.picture()));
}

TEST(Pictures, ListOnAPhone) {
  Scene scene({phone, titles});
  scene.stage().openList();
  EXPECT_TRUE(looksAs("list-phone", scene.picture()));
}

TEST(Pictures, TwoFilmsOnATablet) {
  Scene scene(tablet);
  scene.playBoth();
  EXPECT_TRUE(looksAs("films-tablet", scene.picture()));
}

TEST(Pictures, ListOnATablet) {
  Scene scene({tablet, titles});
  scene.stage().openList();
  EXPECT_TRUE(looksAs("list-tablet", scene.picture()));
}

TEST(Pictures, ListUnderTheKeyboardOnADesktop) {
  Scene scene({wide, titles});
  scene.stage().openList();
  scene.tab(1);
  EXPECT_TRUE(looksAs("list-desktop", scene.picture()));
}

TEST(Pictures, AlertOverTheEmptyListOnAPhone) {
  Scene scene(phone);
  scene.stage().openList();
  EXPECT_TRUE(looksAs("alert-phone", scene.picture()));
}

TEST(Pictures, EmptyListOnADesktop) {
  Scene scene(wide);
  scene.stage().openList();
  scene.stage().event([&] {
    scene.stage().platformWindow()->topmostViewController()->dismissViewControllerAnimated_completion(false, nullptr);
  });
  scene.stage().advance(1);
  EXPECT_TRUE(looksAs("list-empty-desktop", scene.picture()));
}

TEST(Pictures, PermissionPromptOnAPhone) {
  Scene scene(phone);
  scene.prompt().ask([](auto) {});
  scene.stage().settle();
  EXPECT_TRUE(looksAs("prompt-phone", scene.picture()));
}

TEST(Pictures, TutorialOnASmallPhone) {
  Scene scene(smallPhone);
  scene.stage().openTutorial();
  EXPECT_TRUE(looksAs("tutorial-small-phone", scene.picture()));
}

TEST(Pictures, InfoOnADesktop) {
  Scene scene(wide);
  scene.stage().openInfo();
  EXPECT_TRUE(looksAs("info-desktop", scene.picture()));
}

TEST(Pictures, SettingsOnAPhone) {
  Scene scene(phone);
  scene.facts().contents = {1234, 0, 3, false};
  scene.access().addFolder("/media/card/DCIM");
  scene.openSettings();
  EXPECT_TRUE(looksAs("settings-phone", scene.picture()));
}

TEST(Pictures, SettingsUnderThePointerWhileTheLibraryIsReadOnATablet) {
  Scene scene(tablet);
  scene.access().setAnswer(desktop::LibraryAccess::Answer::Authorised);
  scene.facts().contents = {1234, 2766, 0, false};
  scene.openSettings();
  scene.index(1234, 4000);
  scene.hover("Rescan");
  EXPECT_TRUE(looksAs("settings-tablet", scene.picture()));
}

TEST(Pictures, MenuOnAPhone) {
  Scene scene(phone);
  scene.openMenu();
  EXPECT_TRUE(looksAs("menu-phone", scene.picture()));
}

TEST(Pictures, HighContrastInTheSettingsOnAPhone) {
  Scene scene({phone, {}, false, "1", "1"});
  scene.access().addFolder("/media/card/DCIM");
  scene.openSettings();
  EXPECT_TRUE(looksAs("contrast-settings-phone", scene.picture()));
}

TEST(Pictures, HighContrastOnTheFilmsOfADesktop) {
  Scene scene({wide, {}, false, "1", "1"});
  scene.playBoth();
  EXPECT_TRUE(looksAs("contrast-films-desktop", scene.picture()));
}

TEST(Pictures, FolderChooserOnADesktop) {
  Scene scene(wide);
  scene.openSettings();
  scene.press("Add a folder");
  EXPECT_TRUE(looksAs("chooser-desktop", scene.picture()));
}

TEST(Pictures, UnreadableFilesOnAPhone) {
  Scene scene(phone);
  scene.facts().unreadable = {{"/media/card/Film 1.mp4", "The file ends too early."},
                              {"/media/card/DCIM/Camera/\u05E1\u05E8\u05D8 2.mkv", "No picture was found in it."}};
  scene.facts().contents = {12, 0, 2, false};
  scene.openSettings();
  scene.press("2 files could not be read");
  EXPECT_TRUE(looksAs("unreadable-phone", scene.picture()));
}

TEST(Pictures, WaitForTheLibraryOnADesktop) {
  Scene scene(wide);
  scene.waitForLibrary();
  EXPECT_TRUE(looksAs("wait-desktop", scene.picture()));
}

TEST(Pictures, ProgressOfTheLibraryOnAPhone) {
  Scene scene(phone);
  scene.index(1234, 4000);
  EXPECT_TRUE(looksAs("indexing-phone", scene.picture()));
}

TEST(Pictures, NoticeOnADesktop) {
  Scene scene(wide);
  scene.notice().show();
  scene.stage().settle();
  EXPECT_TRUE(looksAs("notice-desktop", scene.picture()));
}

TEST(Pictures, LargeTextInTheListOfASmallPhone) {
  Scene scene({smallPhone, titles, false, "2"});
  scene.stage().openList();
  EXPECT_TRUE(looksAs("large-list-small-phone", scene.picture()));
}

TEST(Pictures, LargeTextInThePromptOnASmallPhone) {
  Scene scene({smallPhone, {}, false, "2"});
  scene.prompt().ask([](auto) {});
  scene.stage().settle();
  EXPECT_TRUE(looksAs("large-prompt-small-phone", scene.picture()));
}

TEST(Pictures, LargeTextOnTheFilmsOfAPhone) {
  Scene scene({phone, {}, false, "2"});
  scene.playBoth();
  EXPECT_TRUE(looksAs("large-films-phone", scene.picture()));
}
