#include "info/Info.h"

#include "platform/uikit/UIStoryboard.h"
#include "tests/support/Stage.h"
#include "tutorial/NFXIntroViewController.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// The info screen, open over the main screen.
class InfoTest : public testing::Test {
 protected:
  InfoTest() {
    stage.event([&] { stage.screen().info(nullptr); });
    stage.advance(1.0);
    info = std::dynamic_pointer_cast<Info>(stage.window()->topmostViewController());
    if (!info) std::abort();
    opening = stage.takeLines();
  }

  void send(void (Info::*action)(const Strong<UIControl>&)) {
    stage.event([&] { (info.get()->*action)(nullptr); });
    stage.advance(1.0);
  }
  template <class Screen>
  Strong<Screen> topmost() const {
    return std::dynamic_pointer_cast<Screen>(stage.window()->topmostViewController());
  }

  Stage stage;
  Strong<Info> info;
  Lines opening;
};

}  // namespace

TEST_F(InfoTest, InfoButtonLogsAndPreparesWithoutMore) {
  EXPECT_THAT(opening, ElementsAre("info", "prepare"));
}

TEST_F(InfoTest, ContactWithoutMailLogsAndShowsNothing) {
  stage.host.mail.available = false;
  send(&Info::contattaci);
  EXPECT_THAT(stage.takeLines(), ElementsAre("contattaci"));
  EXPECT_EQ(topmost<Info>(), info);
  EXPECT_THAT(stage.host.mail.drafts, IsEmpty());
}

TEST_F(InfoTest, ComposerHasOneRecipientNoSubjectAndTheHtmlBody) {
  send(&Info::contattaci);
  EXPECT_THAT(stage.takeLines(), ElementsAre("contattaci"));
  ASSERT_TRUE(topmost<MFMailComposeViewController>());
  ASSERT_EQ(stage.host.mail.drafts.size(), 1U);
  const auto& draft = stage.host.mail.drafts[0];
  EXPECT_THAT(draft.recipients, ElementsAre(testing::HasSubstr("@")));
  EXPECT_EQ(draft.subject, "");
  EXPECT_EQ(draft.body, "<p>Help from Quillop ios.</p>");
  EXPECT_TRUE(draft.isHTML);
}

TEST_F(InfoTest, ComposerReturnsToTheInfoScreenWhateverTheOutcome) {
  for (const bool handedOver : {true, false}) {
    send(&Info::contattaci);
    const Weak<MFMailComposeViewController> composer = topmost<MFMailComposeViewController>();
    stage.takeLines();
    stage.host.mail.finish(handedOver);
    stage.advance(1.0);
    EXPECT_EQ(topmost<Info>(), info);
    EXPECT_THAT(stage.takeLines(), IsEmpty());
    EXPECT_TRUE(composer.expired());
  }
}

TEST_F(InfoTest, TutorialTwiceInARowStartsAtTheFirstPageInFullScreenEachTime) {
  for (int time = 0; time < 2; ++time) {
    send(&Info::tutorial);
    auto pager = topmost<NFXIntroViewController>();
    ASSERT_TRUE(pager);
    EXPECT_EQ(pager->modalPresentationStyle(), UIModalPresentationStyle::FullScreen);
    EXPECT_EQ(pager->_pgcontrol->currentPage(), 0);
    EXPECT_EQ(pager->_images.size(), 2U);
    EXPECT_THAT(stage.takeLines(),
                ElementsAre("tutorial", "initWithViews : [<UIImage: 1tutorial.jpg>, <UIImage: 2tutorial.jpg>]",
                            "_pgcontrol : 26.0"));
    stage.press(pager->_button);
    stage.advance(1.0);
    stage.press(pager->_button);
    stage.advance(1.0);
    EXPECT_THAT(stage.takeLines(),
                ElementsAre("ButtonPushed", "numero : 1   page : 0", "if page_ != numero", "ButtonPushed",
                            "numero : 1   page : 1", "self.dismissViewControllerAnimated", "chiusoTutorial"));
    EXPECT_EQ(topmost<Info>(), info);
    const Weak<NFXIntroViewController> weak = pager;
    pager = nullptr;
    EXPECT_TRUE(weak.expired());
  }
}

TEST_F(InfoTest, TutorialOverInfoLeavesTheFilmsPlaying) {
  stage.load(1, "a.mp4");
  send(&Info::tutorial);
  EXPECT_TRUE(stage.fields().audio(1)->isPlaying());
}

TEST_F(InfoTest, ClosingLogsNothingTouchesNoFilmAndReleasesTheScreen) {
  stage.load(1, "a.mp4");
  stage.takeLines();
  stage.takeCalls();
  send(&Info::chiudi);
  EXPECT_THAT(stage.takeLines(), IsEmpty());
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
  EXPECT_EQ(stage.window()->topmostViewController().get(), &stage.screen());
  const Weak<Info> weak = info;
  info = nullptr;
  EXPECT_TRUE(weak.expired());
}
