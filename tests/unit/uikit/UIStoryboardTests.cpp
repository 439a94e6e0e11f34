#include "platform/uikit/UIStoryboard.h"

#include "platform/foundation/ClassRegistry.h"
#include "platform/uikit/UIImageView.h"
#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::SizeIs;

namespace {

class NoController final : public NSObject {};
const ClassRegistration noController = registerClass<NoController>("UIStoryboardTests.NoController");

/// A screen that can be neither a table's data source nor its delegate.
class NoTables final : public UIViewController {
 public:
  using UIViewController::UIViewController;
};
const ClassRegistration noTables = registerClass<NoTables>("UIStoryboardTests.NoTables");

/// Pictures that need no files.
class PicturesOnly final : public host::Resources {
 public:
  std::optional<std::string> text(const std::string&) const override { return std::nullopt; }
  std::optional<Picture> picture(const std::string& name) const override {
    if (name != "play") return std::nullopt;
    return Picture{"qrc:/images/play.svg", 24, 12, "A triangle."};
  }
};

class UIStoryboardTest : public testing::Test {
 protected:
  /// The screen of a scene with these elements in it, its view loaded.
  Strong<NotedScreen> screenOf(const std::string& elements, const std::string& attributes = "") {
    const auto storyboard = make<UIStoryboard>(
        "Test", R"(<storyboard><scene class="Root" )" + attributes + ">" + elements + "</scene></storyboard>");
    auto screen = std::dynamic_pointer_cast<NotedScreen>(storyboard->instantiateViewController("Root"));
    screen->view()->setFrame(CGRectMake(0, 0, 200, 100));
    screen->view()->layoutIfNeeded();
    return screen;
  }
  /// The only view of such a scene.
  template <class View>
  Strong<View> viewOf(const std::string& element) {
    const auto screen = screenOf(element);
    EXPECT_THAT(screen->view()->subviews(), SizeIs(1));
    auto view = std::dynamic_pointer_cast<View>(screen->view()->subviews().at(0));
    EXPECT_TRUE(view) << element;
    return view;
  }

  simulated::Host host;
  PicturesOnly pictures;
  Platform platform{{host.mainLoop, host.console, host.defaults, pictures, host.desktop, host.mail, host.display,
                     host.screen, host.mediaEngine, host.mediaLibrary}};
};

TEST_F(UIStoryboardTest, BuildsEachClassOfView) {
  viewOf<UIView>("<UIView/>");
  viewOf<UIImageView>("<UIImageView/>");
  viewOf<UILabel>("<UILabel/>");
  viewOf<UIButton>("<UIButton/>");
  viewOf<UISlider>("<UISlider/>");
  viewOf<UITableView>("<UITableView/>");
}

TEST_F(UIStoryboardTest, BuildsViewsNestedAndInTheirOrder) {
  const auto screen = screenOf("<UIView tag='1'><UIView tag='3'/></UIView><!-- a remark --><UIView tag='2'/>");
  const auto& views = screen->view()->subviews();
  ASSERT_THAT(views, SizeIs(2));
  EXPECT_EQ(views[0]->tag(), 1);
  EXPECT_EQ(views[1]->tag(), 2);
  ASSERT_THAT(views[0]->subviews(), SizeIs(1));
  EXPECT_EQ(views[0]->subviews()[0]->tag(), 3);
}

TEST_F(UIStoryboardTest, ReadsTheAttributesOfEveryView) {
  const auto view = viewOf<UIView>(
      "<UIView tag='7' hidden='true' clips='true' backgroundColor='#336699' cornerRadius='8.5' "
      "contentMode='fillCropped' accessibilityLabel='Film 1'/>");
  EXPECT_EQ(view->tag(), 7);
  EXPECT_TRUE(view->isHidden());
  EXPECT_TRUE(view->clipsToBounds());
  EXPECT_EQ(view->backgroundColor(), UIColor::colorWithRed_green_blue_alpha(0.2, 0.4, 0.6, 1));
  EXPECT_EQ(view->layer()->cornerRadius(), 8.5);
  EXPECT_EQ(view->contentMode(), UIViewContentMode::ScaleAspectFill);
  EXPECT_EQ(view->accessibilityLabel(), "Film 1");
}

TEST_F(UIStoryboardTest, AViewWithoutAttributesIsAPlainOne) {
  const auto view = viewOf<UIView>("<UIView/>");
  EXPECT_EQ(view->tag(), 0);
  EXPECT_FALSE(view->isHidden());
  EXPECT_FALSE(view->clipsToBounds());
  EXPECT_EQ(view->backgroundColor(), UIColor::clearColor());
  EXPECT_EQ(view->contentMode(), UIViewContentMode::ScaleToFill);
}

TEST_F(UIStoryboardTest, ReadsTheAttributesOfTheRootView) {
  const auto view = screenOf("", "backgroundColor='#000000' tag='9' accessibilityLabel='screen'")->view();
  EXPECT_EQ(view->backgroundColor(), UIColor::blackColor());
  EXPECT_EQ(view->tag(), 9);
  EXPECT_EQ(view->accessibilityLabel(), "screen");
}

TEST_F(UIStoryboardTest, ReadsEachContentMode) {
  EXPECT_EQ(viewOf<UIView>("<UIView contentMode='fill'/>")->contentMode(), UIViewContentMode::ScaleToFill);
  EXPECT_EQ(viewOf<UIView>("<UIView contentMode='fit'/>")->contentMode(), UIViewContentMode::ScaleAspectFit);
}

TEST_F(UIStoryboardTest, AColourMayHaveAnAlpha) {
  const auto colour = viewOf<UIView>("<UIView backgroundColor='#FF000033'/>")->backgroundColor();
  EXPECT_EQ(colour, UIColor::colorWithRed_green_blue_alpha(1, 0, 0, 0.2));
  EXPECT_EQ(viewOf<UIView>("<UIView backgroundColor='#ffFFfF'/>")->backgroundColor(), UIColor::whiteColor());
}

TEST_F(UIStoryboardTest, ReadsTheAttributesOfALabel) {
  const auto label = viewOf<UILabel>(
      "<UILabel text='Scegli &amp; guarda' textColor='#808080' fontSize='20.5' bold='true' alignment='center'/>");
  EXPECT_EQ(label->text(), "Scegli & guarda");
  EXPECT_EQ(label->textColor(), UIColor::colorWithWhite_alpha(128 / 255.0, 1));
  EXPECT_EQ(label->fontSize(), 20.5);
  EXPECT_TRUE(label->isBold());
  EXPECT_EQ(label->textAlignment(), NSTextAlignment::Center);
  EXPECT_EQ(viewOf<UILabel>("<UILabel alignment='right'/>")->textAlignment(), NSTextAlignment::Right);
  const auto plain = viewOf<UILabel>("<UILabel alignment='left'/>");
  EXPECT_EQ(plain->textAlignment(), NSTextAlignment::Left);
  EXPECT_EQ(plain->text(), std::nullopt);
  EXPECT_FALSE(plain->isBold());
}

TEST_F(UIStoryboardTest, ReadsTheAttributesOfAButton) {
  const auto button = viewOf<UIButton>("<UIButton title='Scegli' textColor='#000000' image='play'/>");
  EXPECT_EQ(button->titleForState(UIControlState::Normal), "Scegli");
  EXPECT_EQ(button->titleColorForState(UIControlState::Normal), UIColor::blackColor());
  ASSERT_TRUE(button->imageForState(UIControlState::Normal));
  EXPECT_EQ(button->imageForState(UIControlState::Normal)->name(), "play");
}

TEST_F(UIStoryboardTest, ReadsTheImageOfAnImageView) {
  const auto view = viewOf<UIImageView>("<UIImageView image='play'/>");
  ASSERT_TRUE(view->image());
  EXPECT_EQ(view->image()->source(), "qrc:/images/play.svg");
  EXPECT_EQ(view->image()->size(), (CGSize{24, 12}));
}

TEST_F(UIStoryboardTest, ReadsTheAttributesOfASlider) {
  const auto slider =
      viewOf<UISlider>("<UISlider minimum='10' maximum='60.5' value='20' step='1' tintColor='#000000'/>");
  EXPECT_EQ(slider->minimumValue(), 10);
  EXPECT_EQ(slider->maximumValue(), 60.5F);
  EXPECT_EQ(slider->value(), 20);
  EXPECT_EQ(slider->step(), 1);
  EXPECT_EQ(slider->tintColor(), UIColor::blackColor());
}

TEST_F(UIStoryboardTest, ReadsTheAttributesOfATable) {
  const auto table = viewOf<UITableView>("<UITableView rowHeight='60' tintColor='#000000' emptyText='None yet.'/>");
  EXPECT_EQ(table->rowHeight(), 60);
  EXPECT_EQ(table->tintColor(), UIColor::blackColor());
  EXPECT_EQ(table->emptyText(), "None yet.");
  EXPECT_EQ(viewOf<UITableView>("<UITableView/>")->emptyText(), "");
}

TEST_F(UIStoryboardTest, AChildIsPlacedInItsParent) {
  const auto screen = screenOf(
      "<UIView left='10' top='20%' right='50%' bottom='5'/>"
      "<UIView centerX='50%' width='20' centerY='25% + 5' height='10%'/>");
  EXPECT_EQ(screen->view()->subviews()[0]->frame(), CGRectMake(10, 20, 90, 75));
  EXPECT_EQ(screen->view()->subviews()[1]->frame(), CGRectMake(90, 25, 20, 10));
}

TEST_F(UIStoryboardTest, AnOrientationReplacesThePositionsThatItNames) {
  const auto screen = screenOf(
      "<UIView left='10' width='20' height='30'><portrait left='1' height='3'/><landscape width='2'/></UIView>");
  const auto& view = screen->view()->subviews()[0];
  EXPECT_THAT(view->subviews(), SizeIs(0));
  EXPECT_EQ(view->frame().origin.x, 10);
  EXPECT_EQ(view->frame().size.width, 2);
  screen->view()->setFrame(CGRectMake(0, 0, 100, 200));
  screen->view()->layoutIfNeeded();
  EXPECT_EQ(view->frame().origin.x, 1);
  EXPECT_EQ(view->frame().size.width, 20);
}

TEST_F(UIStoryboardTest, ConnectsOutlets) {
  const auto screen = screenOf("<UIView outlet='box'><UIButton outlet='button'/></UIView>");
  EXPECT_EQ(screen->box, screen->view()->subviews()[0]);
  EXPECT_EQ(screen->button, screen->box->subviews()[0]);
}

TEST_F(UIStoryboardTest, ConnectsActionsToTheEventOfTheirControl) {
  const auto screen =
      screenOf("<UIButton outlet='button' action='pressed:' tag='3'/><UISlider outlet='slider' action='moved:'/>");
  host.console.lines.clear();
  screen->button->sendActionsForControlEvents(UIControlEvents::TouchUpInside);
  screen->button->sendActionsForControlEvents(UIControlEvents::ValueChanged);
  screen->slider->sendActionsForControlEvents(UIControlEvents::ValueChanged);
  screen->slider->sendActionsForControlEvents(UIControlEvents::TouchUpInside);
  EXPECT_THAT(host.console.lines, ElementsAre("Root pressed 3", "Root moved to 0.0"));
}

TEST_F(UIStoryboardTest, ViewsDoNotKeepTheirScreen) {
  auto screen = screenOf("<UIButton outlet='button' action='pressed:'/><UITableView dataSource='controller'/>");
  const auto view = screen->view();
  const Weak<NotedScreen> weak = screen;
  screen = nullptr;
  EXPECT_TRUE(weak.expired());
}

constexpr const char* filmParts =
    "<UIView id='v'><UIView id='o'><UIButton id='p'/><UIButton id='c'/><UISlider id='s'/><UISlider id='l'/></UIView>"
    "</UIView>";

TEST_F(UIStoryboardTest, GroupsTheControlsOfAFilm) {
  const auto screen = screenOf(
      std::string("<film number='2' view='v' overlay='o' playPause='p' close='c' position='s' volume='l'/>") +
      filmParts);
  ASSERT_THAT(screen->films(), SizeIs(1));
  const auto& film = screen->films()[0];
  const auto view = screen->view()->subviews().at(0);
  const auto overlay = view->subviews().at(0);
  EXPECT_EQ(film.number, 2);
  EXPECT_EQ(film.view, view);
  EXPECT_EQ(film.overlay, overlay);
  EXPECT_EQ(film.playPause, overlay->subviews()[0]);
  EXPECT_EQ(film.close, overlay->subviews()[1]);
  EXPECT_EQ(film.position, overlay->subviews()[2]);
  EXPECT_EQ(film.volume, overlay->subviews()[3]);
}

TEST_F(UIStoryboardTest, ASceneMayPreferASize) {
  const auto storyboard = make<UIStoryboard>(
      "Test", "<storyboard><scene class='Root' preferredWidth='440' preferredHeight='464'/></storyboard>");
  EXPECT_EQ(storyboard->instantiateViewController("Root")->preferredContentSize(), (CGSize{440, 464}));
}

TEST_F(UIStoryboardTest, HasSceneWithSegues) {
  const auto storyboard = make<UIStoryboard>("Test",
                                             "<storyboard><scene class='Root'>"
                                             "<segue identifier='a' destination='Sheet' presentation='pageSheet'/>"
                                             "<segue identifier='b' destination='Full' presentation='fullScreen'/>"
                                             "</scene></storyboard>");
  EXPECT_EQ(storyboard->segue("Root", "a").destinationClass, "Sheet");
  EXPECT_EQ(storyboard->segue("Root", "a").presentationStyle, UIModalPresentationStyle::PageSheet);
  EXPECT_EQ(storyboard->segue("Root", "b").presentationStyle, UIModalPresentationStyle::FullScreen);
}

TEST_F(UIStoryboardTest, MakesANewControllerOfTheInitialSceneEachTimeAndLoadsNoView) {
  const auto storyboard = make<UIStoryboard>(
      "Test", "<storyboard><scene class='Sheet'/><scene class='Root' initial='true'/></storyboard>");
  const auto first = storyboard->instantiateInitialViewController();
  const auto second = storyboard->instantiateInitialViewController();
  ASSERT_TRUE(std::dynamic_pointer_cast<NotedScreen>(first));
  EXPECT_EQ(std::dynamic_pointer_cast<NotedScreen>(first)->name, "Root");
  EXPECT_FALSE(first->isViewLoaded());
  EXPECT_NE(first, second);
}

TEST_F(UIStoryboardTest, AControllerKeepsItsStoryboard) {
  auto storyboard =
      make<UIStoryboard>("Test", "<storyboard><scene class='Root'><UIView tag='4'/></scene></storyboard>");
  const auto screen = storyboard->instantiateViewController("Root");
  storyboard = nullptr;
  EXPECT_NE(screen->view()->viewWithTag(4), nullptr);
}

TEST_F(UIStoryboardTest, ASegueSaysWhatItWaitsFor) {
  const auto storyboard = make<UIStoryboard>(
      "Test",
      "<storyboard><scene class='Root'>"
      "<segue identifier='a' destination='Sheet' presentation='pageSheet' waitsFor='mediaLibrary'/>"
      "<segue identifier='b' destination='Sheet' presentation='pageSheet'/></scene></storyboard>");
  EXPECT_EQ(storyboard->segue("Root", "a").condition, UIStoryboard::Condition::MediaLibraryPrepared);
  EXPECT_EQ(storyboard->segue("Root", "b").condition, UIStoryboard::Condition::None);
}

class UIStoryboardDeathTest : public UIStoryboardTest {
 protected:
  void expectStop(const std::string& elements, const std::string& reason) {
    EXPECT_DEATH(screenOf(elements), "Fatal error: .*" + reason) << elements;
  }
};

TEST_F(UIStoryboardDeathTest, ThereMustBeOneOfThatName) {
  EXPECT_DEATH(UIStoryboard::storyboardWithName("Another"), "the interface resource: there is none called Another");
}

TEST_F(UIStoryboardDeathTest, MustBeWellFormed) {
  EXPECT_DEATH(UIStoryboard("Test", "<storyboard><scene>"), "the interface resource: Test: .* at byte");
}

TEST_F(UIStoryboardDeathTest, NeedsAnInitialScene) {
  EXPECT_DEATH(
      UIStoryboard("Test", "<storyboard><scene class='Root'/></storyboard>").instantiateInitialViewController(),
      "no scene is the initial one");
}

TEST_F(UIStoryboardDeathTest, NeedsTheScenesThatItIsAskedFor) {
  const auto storyboard = make<UIStoryboard>("Test", "<storyboard><scene class='Root'/></storyboard>");
  EXPECT_DEATH(storyboard->instantiateViewController("Sheet"), "there is no scene Sheet");
  EXPECT_DEATH(storyboard->segue("Root", "toSheet"), "there is no segue toSheet");
}

TEST_F(UIStoryboardDeathTest, ASceneMustBeOfAControllersClass) {
  const auto storyboard = make<UIStoryboard>("Test",
                                             "<storyboard><scene class='Nobody'/>"
                                             "<scene class='UIStoryboardTests.NoController'/></storyboard>");
  EXPECT_DEATH(storyboard->instantiateViewController("Nobody"), "no class is called Nobody");
  EXPECT_DEATH(storyboard->instantiateViewController("UIStoryboardTests.NoController"), "is no view controller");
}

TEST_F(UIStoryboardDeathTest, ASegueMustSayHowItPresents) {
  const auto storyboard = make<UIStoryboard>(
      "Test",
      "<storyboard><scene class='Root'><segue identifier='a' destination='Sheet' presentation='popover'/>"
      "<segue identifier='b' destination='Sheet'/></scene></storyboard>");
  EXPECT_DEATH(storyboard->segue("Root", "a"), "presentation has no value popover");
  EXPECT_DEATH(storyboard->segue("Root", "b"), "has no value");
}

TEST_F(UIStoryboardDeathTest, ASegueWaitsForNothingElse) {
  const auto storyboard = make<UIStoryboard>(
      "Test",
      "<storyboard><scene class='Root'>"
      "<segue identifier='a' destination='Sheet' presentation='pageSheet' waitsFor='rain'/></scene></storyboard>");
  EXPECT_DEATH(storyboard->segue("Root", "a"), "waitsFor has no value rain");
}

TEST_F(UIStoryboardDeathTest, StopsAtAnUnknownViewClass) {
  expectStop("<UISwitch/>", "there is no view class UISwitch");
}

TEST_F(UIStoryboardDeathTest, StopsAtAnUnknownOutlet) {
  expectStop("<UIView outlet='nothing'/>", "names nothing, which its controller does not have");
}

TEST_F(UIStoryboardDeathTest, StopsAtAnOutletOfAnotherClass) {
  expectStop("<UIView outlet='button'/>", "the outlet button is of another class");
}

TEST_F(UIStoryboardDeathTest, StopsAtAnUnknownAction) {
  expectStop("<UIButton action='pressed'/>", "names pressed, which its controller does not have");
}

TEST_F(UIStoryboardDeathTest, StopsAtAnActionOfSomethingThatIsNoControl) {
  expectStop("<UIView action='pressed:'/>", "an action of something that is no control: pressed:");
}

TEST_F(UIStoryboardDeathTest, StopsAtAWrongNumber) {
  for (const char* number : {"", "two", "1,5", "12px", " 1"}) {
    expectStop(std::string("<UIView tag='") + number + "'/>", "tag is no number");
  }
  expectStop("<UISlider maximum='1,5'/>", "maximum is no number: 1,5");
}

TEST_F(UIStoryboardDeathTest, StopsAtAWrongColour) {
  for (const char* colour : {"", "red", "#12345", "#1234567", "#12345G", "#GG3456", "112233#", "0x12345"}) {
    expectStop(std::string("<UIView backgroundColor='") + colour + "'/>", "backgroundColor is no colour");
  }
}

TEST_F(UIStoryboardDeathTest, StopsAtAWrongLength) {
  expectStop("<UIView left='12px'/>", "left is no length: 12px");
  expectStop("<UIView><portrait centerY=''/></UIView>", "centerY is no length");
}

TEST_F(UIStoryboardDeathTest, StopsAtAWrongChoice) {
  expectStop("<UIView contentMode='stretch'/>", "contentMode has no value stretch");
  expectStop("<UILabel alignment='middle'/>", "alignment has no value middle");
}

TEST_F(UIStoryboardDeathTest, StopsAtAnImageThatIsNotThere) {
  expectStop("<UIImageView image='none'/>", "there is no image none");
}

TEST_F(UIStoryboardDeathTest, StopsAtAFilmWithoutAllItsParts) {
  for (const char* part : {"view", "overlay", "playPause", "close", "position", "volume"}) {
    std::string film = "<film number='1' view='v' overlay='o' playPause='p' close='c' position='s' volume='l'/>";
    film.replace(film.find(std::string(part) + "="), std::string(part).size(), "other");
    expectStop(filmParts + film, std::string("a film's ") + part + " is missing");
  }
  expectStop(filmParts + std::string("<film number='1' view='v' overlay='o' playPause='s' close='c' position='s'"
                                     " volume='l'/>"),
             "a film's playPause is missing");
}

TEST_F(UIStoryboardDeathTest, StopsAtAScreenThatCannotServeATable) {
  for (const auto& [role, reason] :
       {std::pair("dataSource", "a table's data source"), std::pair("delegate", "a table's delegate")}) {
    const auto storyboard = make<UIStoryboard>(
        "Test", std::string("<storyboard><scene class='UIStoryboardTests.NoTables'><UITableView ") + role +
                    "='controller'/></scene></storyboard>");
    const auto screen = storyboard->instantiateViewController("UIStoryboardTests.NoTables");
    EXPECT_DEATH(screen->view(), std::string("the controller cannot be ") + reason);
  }
}

class UIImageTest : public UIStoryboardTest {};

TEST_F(UIImageTest, IsFoundByItsName) {
  const auto image = UIImage::imageNamed("play");
  ASSERT_TRUE(image);
  EXPECT_EQ(image->source(), "qrc:/images/play.svg");
  EXPECT_EQ(image->name(), "play");
  EXPECT_EQ(image->size(), (CGSize{24, 12}));
  EXPECT_EQ(image->accessibilityLabel(), "A triangle.");
}

TEST_F(UIImageTest, IsNoneWhereThereIsNoPictureOfThatName) {
  EXPECT_EQ(UIImage::imageNamed("none"), nullptr);
}

}  // namespace
