#include "platform/uikit/UIStoryboard.h"
#include "tests/support/Stage.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Handed {
  std::string url;
  bool video1;
  bool operator==(const Handed&) const = default;
};

class Receiver final : public passoVideoProtocol {
 public:
  void passoVideo(const Strong<NSURL>& url, bool video1) override {
    handed.push_back({url->absoluteString(), video1});
  }
  std::vector<Handed> handed;
};

/// An item that lacks what a test names.
class ItemWithout final : public MPMediaItem {
 public:
  ItemWithout(std::string missing, Strong<NSObject> instead)
      : MPMediaItem(std::make_shared<simulated::LibraryItems>(
                        std::vector<host::LibraryItem>{{Stage::url("x.mp4"), "x", 5, "image://artwork/x"}}),
                    0),
        missing_(std::move(missing)),
        instead_(std::move(instead)) {}
  Strong<NSObject> valueForProperty(const std::string& property) const override {
    return property == missing_ ? instead_ : MPMediaItem::valueForProperty(property);
  }

 private:
  std::string missing_;
  Strong<NSObject> instead_;
};

/// Opens the list over a library of these items.
Strong<ListaVideo> listOf(Stage& stage, std::vector<host::LibraryItem> items) {
  stage.host.mediaLibrary.itemsByType[simulated::homeVideo] = std::move(items);
  stage.openList();
  stage.takeLines();
  return stage.list();
}

Strong<UITableViewCell> cell(const Strong<ListaVideo>& list, long row) {
  return list->tableView_cellForRowAtIndexPath(list->tabella1, {0, row});
}

}  // namespace

TEST(ListaVideo, StartsEmptyInBothWays) {
  const Stage stage;
  for (const auto& list : {make<ListaVideo>(), make<ListaVideo>(NSCoder())}) {
    EXPECT_EQ(list->delegate, nullptr);
    EXPECT_EQ(list->tabella1, nullptr);
    EXPECT_EQ(list->tabella2, nullptr);
    EXPECT_THAT(list->arrayFilm, IsEmpty());
  }
}

TEST(ListaVideo, QueriesWhenItHasAppearedAndListsInTheLibrarysOrder) {
  Stage stage;
  stage.pressChoose();
  EXPECT_EQ(stage.host.mediaLibrary.queries, 0);
  stage.takeLines();
  stage.advance(UIWindow::transitionDuration);
  EXPECT_EQ(stage.host.mediaLibrary.queries, 1);
  EXPECT_THAT(stage.takeLines(), ElementsAre("numero video : 3", "durataVideo : 00:00:12", "durataVideo : 01:02:05",
                                             "durataVideo : 00:01:00", "durataVideo : 00:00:12",
                                             "durataVideo : 01:02:05", "durataVideo : 00:01:00"));
  EXPECT_EQ(stage.list()->tabella1->cellForRow(0)->textLabel()->text(), "alba");
  EXPECT_EQ(stage.list()->tabella1->cellForRow(2)->textLabel()->text(), "mare");
}

TEST(ListaVideo, EmptyLibraryLogsZeroAndShowsTheAlertOverTwoEmptyTables) {
  Stage stage;
  stage.host.mediaLibrary.itemsByType.clear();
  stage.openList();
  const auto lines = stage.takeLines();
  EXPECT_THAT(lines, testing::Contains("numero video : 0"));
  const auto alert = stage.alert();
  ASSERT_TRUE(alert);
  EXPECT_EQ(alert->title(), std::nullopt);
  EXPECT_EQ(alert->message(),
            "You have no Movies in the library. Would you like to learn how to add videos from iTunes?");
  ASSERT_EQ(alert->actions().size(), 2U);
  EXPECT_EQ(alert->actions()[0]->title(), "OK");
  EXPECT_EQ(alert->actions()[1]->title(), "Tutorial for add Movies");
  EXPECT_EQ(alert->actions()[0]->style(), UIAlertActionStyle::Default);
  EXPECT_EQ(alert->actions()[1]->style(), UIAlertActionStyle::Default);
  const auto list = std::dynamic_pointer_cast<ListaVideo>(alert->presentingViewController());
  ASSERT_TRUE(list);
  EXPECT_EQ(list->tabella1->numberOfRows(), 0);
  EXPECT_EQ(list->tabella2->numberOfRows(), 0);
}

TEST(ListaVideo, LibraryOfFilmsAndMusicVideosOnlyCountsAsEmpty) {
  Stage stage;
  auto& items = stage.host.mediaLibrary.itemsByType;
  items = {{256, items[simulated::homeVideo]}, {2048, items[simulated::homeVideo]}};
  stage.openList();
  EXPECT_THAT(stage.takeLines(), testing::Contains("numero video : 0"));
  EXPECT_TRUE(stage.alert());
}

TEST(ListaVideo, OkOfTheEmptyAlertLeavesTheEmptyListAndItComesBackEachTime) {
  Stage stage;
  stage.host.mediaLibrary.itemsByType.clear();
  for (int showing = 0; showing < 2; ++showing) {
    stage.openList();
    stage.advance(1.0);
    ASSERT_TRUE(stage.alert());
    stage.event([&] { stage.alert()->pressAction(0); });
    stage.advance(1.0);
    const auto list = stage.list();
    ASSERT_TRUE(list);
    EXPECT_THAT(stage.host.desktop.opened, IsEmpty());
    stage.event([&] { list->chiudi(nullptr); });
    stage.advance(1.0);
  }
}

TEST(ListaVideo, TutorialOfTheEmptyAlertOpensTheHelpPageOutsideTheApp) {
  Stage stage;
  stage.host.mediaLibrary.itemsByType.clear();
  stage.openList();
  stage.advance(1.0);
  stage.event([&] { stage.alert()->pressAction(1); });
  stage.advance(1.0);
  EXPECT_THAT(stage.host.desktop.opened, ElementsAre("quillop-help:add-videos"));
  EXPECT_TRUE(stage.list());
}

TEST(ListaVideo, DurationsAreHoursMinutesAndSeconds) {
  Stage stage;
  const std::vector<std::pair<double, std::string>> examples{
      {0, "00:00:00"},      {59.9, "00:00:59"},  {3599.99, "00:59:59"}, {3600, "01:00:00"},
      {3725.9, "01:02:05"}, {86400, "24:00:00"}, {360000, "100:00:00"}};
  std::vector<host::LibraryItem> items;
  for (const auto& [seconds, text] : examples) items.push_back({Stage::url("a.mp4"), "a", seconds, "artwork"});
  const auto list = listOf(stage, items);
  for (std::size_t row = 0; row < examples.size(); ++row) {
    EXPECT_EQ(cell(list, static_cast<long>(row))->detailTextLabel()->text(), examples[row].second);
    EXPECT_THAT(stage.takeLines(), ElementsAre("durataVideo : " + examples[row].second));
  }
}

TEST(ListaVideo, ItemWithoutTitleShowsOnlyItsDurationAndArtwork) {
  Stage stage;
  const auto list = listOf(stage, {{Stage::url("a.mp4"), std::nullopt, 5, "image://artwork/a"}});
  const auto row = cell(list, 0);
  EXPECT_EQ(row->textLabel()->text(), std::nullopt);
  EXPECT_EQ(row->detailTextLabel()->text(), "00:00:05");
  EXPECT_EQ(row->imageView()->image()->source(), "image://artwork/a");
}

TEST(ListaVideo, TitleThatIsNoTextLeavesTheMainTextEmptyInAReusedCellToo) {
  Stage stage;
  const auto list = listOf(stage, {{Stage::url("a.mp4"), "a", 5, "artwork"}});
  list->arrayFilm = {make<ItemWithout>(MPMediaItemPropertyTitle, NSNumber::numberWithInteger(3))};
  EXPECT_EQ(cell(list, 0)->textLabel()->text(), std::nullopt);
}

TEST(ListaVideo, CellIsASubtitleCellInTheScreensColours) {
  Stage stage;
  stage.openList();
  const auto row = stage.list()->tabella1->cellForRow(0);
  EXPECT_EQ(row->reuseIdentifier(), "cell");
  EXPECT_EQ(row->contentView()->backgroundColor(), (UIColor{0.106, 0.129, 0.141, 1.0}));
  EXPECT_EQ(row->textLabel()->textColor(), UIColor::whiteColor());
  ASSERT_TRUE(row->detailTextLabel());
  EXPECT_EQ(row->detailTextLabel()->textColor(), UIColor::grayColor());
}

TEST(ListaVideo, BothTablesListTheSameRows) {
  Stage stage;
  stage.openList();
  const auto list = stage.list();
  EXPECT_EQ(list->tabella1->numberOfRows(), 3);
  EXPECT_EQ(list->tabella2->numberOfRows(), 3);
  for (long row = 0; row < 3; ++row) {
    EXPECT_EQ(list->tabella1->cellForRow(row)->textLabel()->text(),
              list->tabella2->cellForRow(row)->textLabel()->text());
  }
}

TEST(ListaVideo, EveryShowingQueriesAgainAndListsWhatWasAdded) {
  Stage stage;
  stage.openList();
  const auto list = stage.list();
  stage.event([&] { list->chiudi(nullptr); });
  stage.advance(1.0);
  auto& items = stage.host.mediaLibrary.itemsByType[simulated::homeVideo];
  items.insert(items.begin() + 1, {Stage::url("bosco.mp4"), "bosco", 9, "artwork"});
  stage.openList();
  EXPECT_NE(stage.list(), list);
  ASSERT_EQ(stage.list()->arrayFilm.size(), 4U);
  EXPECT_EQ(stage.list()->tabella2->cellForRow(1)->textLabel()->text(), "bosco");
}

TEST(ListaVideo, TapInTheTableWithTag1HandsOverTheUrlForFilm1AfterTheDismissal) {
  Stage stage;
  stage.openList();
  const auto list = stage.list();
  const auto receiver = std::make_shared<Receiver>();
  list->delegate = receiver;
  stage.takeLines();
  stage.choose(1, 2);
  EXPECT_THAT(stage.takeLines(), ElementsAre("You tapped cell number 2.", "tabella 1"));
  EXPECT_THAT(receiver->handed, IsEmpty());
  stage.advance(UIWindow::transitionDuration);
  EXPECT_THAT(stage.takeLines(), ElementsAre("finito"));
  EXPECT_THAT(receiver->handed, ElementsAre(Handed{Stage::url("mare.mp4"), true}));
  EXPECT_EQ(stage.window()->topmostViewController().get(), &stage.screen());
}

TEST(ListaVideo, SameRowInTheOtherTableIsForFilm2) {
  Stage stage;
  stage.openList();
  const auto receiver = std::make_shared<Receiver>();
  stage.list()->delegate = receiver;
  stage.takeLines();
  stage.choose(2, 2);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_THAT(stage.takeLines(), ElementsAre("You tapped cell number 2.", "tabella 2", "finito"));
  EXPECT_THAT(receiver->handed, ElementsAre(Handed{Stage::url("mare.mp4"), false}));
}

TEST(ListaVideo, AnyTagButOneIsTheTableOfFilm2EvenOnTheFirstOutlet) {
  for (const long tag : {0L, 2L, 7L, -1L}) {
    Stage stage;
    stage.openList();
    const auto receiver = std::make_shared<Receiver>();
    stage.list()->delegate = receiver;
    stage.list()->tabella1->setTag(tag);
    stage.choose(1, 0);
    stage.advance(UIWindow::transitionDuration);
    EXPECT_THAT(receiver->handed, ElementsAre(Handed{Stage::url("alba.mp4"), false}));
  }
}

TEST(ListaVideo, SecondTapOnARowNeverHandsOverTwice) {
  Stage stage;
  stage.openList();
  const auto receiver = std::make_shared<Receiver>();
  const auto list = stage.list();
  list->delegate = receiver;
  stage.choose(1, 0);
  stage.event([&] { list->tabella1->selectRow(1); });
  stage.advance(1.0);
  EXPECT_THAT(receiver->handed, ElementsAre(Handed{Stage::url("alba.mp4"), true}));
}

TEST(ListaVideo, WithoutDelegateTheListGoesAndTheChoiceIsDropped) {
  Stage stage;
  stage.openList();
  stage.list()->delegate = nullptr;
  stage.takeLines();
  stage.choose(1, 0);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_THAT(stage.takeLines(), ElementsAre("You tapped cell number 0.", "tabella 1", "finito"));
  EXPECT_EQ(stage.fields().audio(1), nullptr);
}

TEST(ListaVideo, CloseButtonLogsAndNeverCallsTheDelegate) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.openList();
  const auto receiver = std::make_shared<Receiver>();
  const auto list = stage.list();
  list->delegate = receiver;
  stage.takeLines();
  stage.event([&] { list->chiudi(nullptr); });
  stage.advance(1.0);
  EXPECT_THAT(stage.takeLines(), ElementsAre("chiudi"));
  EXPECT_THAT(receiver->handed, IsEmpty());
  EXPECT_TRUE(stage.fields().audio(1)->isPlaying());
}

TEST(ListaVideo, ListIsReleasedAfterItsDismissal) {
  Stage stage;
  stage.openList();
  const Weak<ListaVideo> list = stage.list();
  stage.choose(1, 0);
  stage.advance(1.0);
  EXPECT_TRUE(list.expired());
}

TEST(ListaVideo, BackgroundTurnsBlackOnEveryLayoutPass) {
  Stage stage;
  stage.openList();
  const auto view = stage.list()->view();
  EXPECT_EQ(view->backgroundColor(), UIColor::blackColor());
  view->setBackgroundColor(UIColor::whiteColor());
  stage.event([&] { view->setNeedsLayout(); });
  EXPECT_EQ(view->backgroundColor(), UIColor::blackColor());
}

TEST(ListaVideo, TenThousandVideosAskOnlyForTheRowsInSight) {
  Stage stage;
  std::vector<host::LibraryItem> items(10000, {Stage::url("a.mp4"), "a", 5, "artwork"});
  stage.host.mediaLibrary.itemsByType[simulated::homeVideo] = std::move(items);
  stage.openList();
  EXPECT_EQ(stage.list()->tabella1->numberOfRows(), 10000);
  EXPECT_LT(stage.list()->tabella1->visibleCells().size(), 20U);
  EXPECT_LT(stage.takeLines().size(), 50U);
}

TEST(ListaVideo, ChoosingARowTellsTheEngineAtOnce) {
  Stage stage;
  stage.openList();
  stage.choose(2, 1);
  EXPECT_THAT(stage.host.mediaEngine.expected, ElementsAre(Stage::url("gatto.mp4")));
}

TEST(ListaVideoDeathTest, LibraryThatGivesNoListStopsTheApp) {
  Stage stage;
  stage.host.mediaLibrary.fails = true;
  EXPECT_DEATH(stage.openList(), "gave no list");
}

TEST(ListaVideoDeathTest, RowWithoutDurationStopsTheApp) {
  Stage stage;
  const auto list = listOf(stage, {{Stage::url("a.mp4"), "a", 5, "artwork"}});
  list->arrayFilm = {make<ItemWithout>(MPMediaItemPropertyPlaybackDuration, nullptr)};
  EXPECT_DEATH(cell(list, 0), "the duration of an item");
  list->arrayFilm = {make<ItemWithout>(MPMediaItemPropertyPlaybackDuration, make<NSString>("5"))};
  EXPECT_DEATH(cell(list, 0), "the duration of an item");
}

TEST(ListaVideoDeathTest, RowWithoutArtworkStopsTheApp) {
  Stage stage;
  const auto list = listOf(stage, {{Stage::url("a.mp4"), "a", 5, "artwork"}});
  list->arrayFilm = {make<ItemWithout>(MPMediaItemPropertyArtwork, nullptr)};
  EXPECT_DEATH(cell(list, 0), "the artwork of an item");
}

TEST(ListaVideoDeathTest, IndexOutsideTheListStopsTheApp) {
  Stage stage;
  const auto list = listOf(stage, {{Stage::url("a.mp4"), "a", 5, "artwork"}});
  EXPECT_DEATH(cell(list, 1), "a row that the list does not have");
  EXPECT_DEATH(list->tableView_didSelectRowAtIndexPath(list->tabella1, {0, -1}), "a row that the list does not have");
}

TEST(ListaVideoDeathTest, ChoosingAnItemWithoutAddressStopsTheApp) {
  Stage stage;
  const auto list = listOf(stage, {{Stage::url("a.mp4"), "a", 5, "artwork"}});
  list->arrayFilm = {make<ItemWithout>(MPMediaItemPropertyAssetURL, nullptr)};
  EXPECT_DEATH(list->tableView_didSelectRowAtIndexPath(list->tabella1, {0, 0}), "the address of an item");
}

TEST(ListaVideoDeathTest, MissingTableOutletStopsTheApp) {
  Stage stage;
  const auto list = listOf(stage, {{Stage::url("a.mp4"), "a", 5, "artwork"}});
  list->tabella2 = nullptr;
  EXPECT_DEATH(list->viewDidAppear(true), "tabella2");
}
