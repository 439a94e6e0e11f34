#include "platform/uikit/UITableView.h"

#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

#include <limits>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

simulated::Lines rowLines(long first, long last) {
  simulated::Lines lines;
  for (long row = first; row <= last; ++row) lines.push_back("Root row " + std::to_string(row));
  return lines;
}

/// The root screen's table: 200 points high, rows of 50.
class UITableViewTest : public WindowFixture {
 protected:
  UITableViewTest() {
    launch();
    reload(100);
  }

  UITableView& table() const { return *root().table; }
  void reload(long rows) {
    root().rows = rows;
    event([this] { table().reloadData(); });
  }
  void scrollTo(double y) {
    event([&] { table().setContentOffset({0, y}); });
  }
  std::vector<long> visibleRows() const {
    std::vector<long> rows;
    for (const auto& [row, cell] : table().visibleCells()) rows.push_back(row);
    return rows;
  }
};

TEST_F(UITableViewTest, AsksAfterReloadDataHasReturnedAndForTheRowsInSightOnly) {
  takeLines();
  event([this] {
    table().reloadData();
    print("reloaded");
  });
  EXPECT_THAT(takeLines(), ElementsAre("reloaded", "Root counts section 0", "Root row 0", "Root row 1", "Root row 2",
                                       "Root row 3"));
  EXPECT_EQ(table().numberOfRows(), 100);
  EXPECT_EQ(table().contentSize(), (CGSize{200, 5000}));
}

TEST_F(UITableViewTest, ReloadedTwiceInATurnItAsksOnce) {
  takeLines();
  event([this] {
    table().reloadData();
    table().reloadData();
  });
  EXPECT_EQ(takeLines().size(), 5U);
}

TEST_F(UITableViewTest, DoesNotAskWhenNothingChanged) {
  takeLines();
  event([this] { table().setNeedsLayout(); });
  EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(UITableViewTest, KeepsItsRowsWhenToldOfAHeightThatNoRowCanHave) {
  const double before = table().rowHeight();
  for (const double height : {0.0, -0.0, -50.0, std::numeric_limits<double>::infinity(),
                              -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    takeLines();
    event([&] { table().setRowHeight(height); });
    EXPECT_EQ(table().rowHeight(), before) << height;
    EXPECT_THAT(visibleRows(), ElementsAre(0, 1, 2, 3)) << height;
    EXPECT_THAT(takeLines(), IsEmpty()) << height;
  }
}

TEST_F(UITableViewTest, AsksForNoMoreRowsThanThereAreHoweverLowTheyAre) {
  reload(3);
  takeLines();
  event([&] { table().setRowHeight(std::numeric_limits<double>::denorm_min()); });
  EXPECT_THAT(visibleRows(), ElementsAre(0, 1, 2));
}

TEST_F(UITableViewTest, IsKnownToBeEmptyOnceItsReloadFoundNoRows) {
  EXPECT_FALSE(table().isKnownToBeEmpty());
  root().rows = 0;
  event([this] {
    table().reloadData();
    EXPECT_FALSE(table().isKnownToBeEmpty());
  });
  EXPECT_TRUE(table().isKnownToBeEmpty());
  reload(1);
  EXPECT_FALSE(table().isKnownToBeEmpty());
}

TEST_F(UITableViewTest, ThatNobodyReloadedIsNotKnownToBeEmpty) {
  const auto fresh = make<UITableView>(CGRectMake(0, 0, 100, 50));
  const auto source = make<NotedScreen>("Source");
  fresh->setDataSource(source);
  event([&] { root().view()->addSubview(fresh); });
  EXPECT_EQ(fresh->numberOfRows(), 0);
  EXPECT_FALSE(fresh->isKnownToBeEmpty());
}

TEST_F(UITableViewTest, TheFirstTableIsAskedFirst) {
  const auto second = make<UITableView>(CGRectMake(0, 0, 100, 50));
  const auto other = make<NotedScreen>("Other");
  second->setDataSource(other);
  other->rows = 1;
  event([&] { root().view()->addSubview(second); });
  takeLines();
  event([&] {
    second->reloadData();
    table().reloadData();
  });
  EXPECT_THAT(takeLines(), ElementsAre("Root counts section 0", "Root row 0", "Root row 1", "Root row 2",
                                       "Root row 3", "Other counts section 0", "Other row 0"));
}

TEST_F(UITableViewTest, IsNotAskedBeforeItsScreenDidLoad) {
  setStoryboard(R"(<storyboard><scene class="Root"><UITableView dataSource="controller"/></scene></storyboard>)");
  const auto screen = UIStoryboard::storyboardWithName("Main")->instantiateViewController("Root");
  takeLines();
  screen->view();
  EXPECT_THAT(takeLines(), ElementsAre("Root did load"));
  event([&] { window()->addSubview(screen->view()); });
  EXPECT_THAT(takeLines(), ElementsAre("Root counts section 0"));
}

TEST_F(UITableViewTest, NoCellIsThereToBeginWith) {
  EXPECT_EQ(make<UITableView>()->dequeueReusableCellWithIdentifier("cell"), nullptr);
}

TEST_F(UITableViewTest, ScrolledItAsksForTheRowsThatCameIntoSight) {
  takeLines();
  scrollTo(60);
  EXPECT_EQ(takeLines(), rowLines(4, 5));
  EXPECT_THAT(visibleRows(), ElementsAre(1, 2, 3, 4, 5));
  scrollTo(50);
  EXPECT_THAT(takeLines(), IsEmpty());
  EXPECT_THAT(visibleRows(), ElementsAre(1, 2, 3, 4));
}

TEST_F(UITableViewTest, CellsThatWentOutOfSightAreUsedAgain) {
  const auto first = table().cellForRow(0);
  ASSERT_TRUE(first);
  for (double y = 50; y <= 1000; y += 50) scrollTo(y);
  EXPECT_EQ(table().cellForRow(0), nullptr);
  EXPECT_LE(root().cellsMade, 5);
  EXPECT_EQ(table().cellForRow(20)->textLabel()->text(), "20");
}

TEST_F(UITableViewTest, OnlyACellMadeWithThatIdentifierIsUsedAgain) {
  scrollTo(1000);
  EXPECT_EQ(table().dequeueReusableCellWithIdentifier("another"), nullptr);
}

TEST_F(UITableViewTest, AReloadForgetsEveryCellAndCounts) {
  const auto generation = table().generation();
  takeLines();
  reload(2);
  EXPECT_EQ(takeLines().size(), 3U);
  EXPECT_THAT(visibleRows(), ElementsAre(0, 1));
  EXPECT_EQ(table().generation(), generation + 1);
  scrollTo(0);
  EXPECT_EQ(table().generation(), generation + 1);
}

TEST_F(UITableViewTest, AReloadUsesTheCellsAgain) {
  const int made = root().cellsMade;
  reload(100);
  EXPECT_EQ(root().cellsMade, made);
}

TEST_F(UITableViewTest, AShorterListIsNotScrolledBeyondItsEnd) {
  scrollTo(4800);
  EXPECT_THAT(visibleRows(), ElementsAre(96, 97, 98, 99));
  reload(6);
  EXPECT_EQ(table().contentOffset().y, 100);
  EXPECT_THAT(visibleRows(), ElementsAre(2, 3, 4, 5));
}

TEST_F(UITableViewTest, AnEmptyListHasNoRowsInSight) {
  scrollTo(1000);
  reload(0);
  EXPECT_THAT(visibleRows(), IsEmpty());
  EXPECT_EQ(table().contentOffset(), (CGPoint{0, 0}));
  reload(-3);
  EXPECT_EQ(table().numberOfRows(), 0);
}

TEST_F(UITableViewTest, CannotBeScrolledBeyondItsContent) {
  scrollTo(1e9);
  EXPECT_EQ(table().contentOffset().y, 4800);
  scrollTo(-5);
  EXPECT_EQ(table().contentOffset().y, 0);
  event([this] { table().setContentOffset({30, 0}); });
  EXPECT_EQ(table().contentOffset().x, 0);
}

TEST_F(UITableViewTest, GrownItAsksForTheRowsThatCameIntoSight) {
  takeLines();
  event([this] { table().setFrame(CGRectMake(0, 0, 200, 300)); });
  EXPECT_EQ(takeLines(), rowLines(4, 5));
}

TEST_F(UITableViewTest, GrownAtItsEndItIsNotScrolledBeyondIt) {
  scrollTo(4800);
  event([this] { table().setFrame(CGRectMake(0, 0, 200, 300)); });
  EXPECT_EQ(table().contentOffset().y, 4700);
  EXPECT_THAT(visibleRows(), ElementsAre(94, 95, 96, 97, 98, 99));
}

TEST_F(UITableViewTest, OfNoHeightItHasNoRowsInSight) {
  event([this] { table().setFrame(CGRectMake(0, 0, 200, 0)); });
  EXPECT_THAT(visibleRows(), IsEmpty());
}

TEST_F(UITableViewTest, AHigherRowShowsFewerOfThem) {
  event([this] { table().setRowHeight(100); });
  EXPECT_THAT(visibleRows(), ElementsAre(0, 1));
  EXPECT_EQ(table().contentSize().height, 10000);
}

TEST_F(UITableViewTest, OfTenThousandRowsOnlyThoseInSightAreAskedFor) {
  takeLines();
  reload(10000);
  EXPECT_EQ(takeLines().size(), 5U);
  scrollTo(500000 - 200);
  EXPECT_THAT(takeLines(), ElementsAre("Root row 9996", "Root row 9997", "Root row 9998", "Root row 9999"));
  EXPECT_EQ(table().visibleCells().size(), 4U);
}

TEST_F(UITableViewTest, TellsItsDelegateWhichRowWasChosen) {
  takeLines();
  event([this] { table().selectRow(99); });
  EXPECT_THAT(takeLines(), ElementsAre("Root selected 99"));
}

TEST_F(UITableViewTest, ARowThatIsNotThereCannotBeChosen) {
  takeLines();
  event([this] {
    table().selectRow(-1);
    table().selectRow(100);
  });
  EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(UITableViewTest, NoRowCanBeChosenBeneathAnAlert) {
  const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
      std::nullopt, "message", UIAlertControllerStyle::Alert);
  event([&] { root().presentViewController_animated_completion(alert, false); });
  takeLines();
  event([this] { table().selectRow(1); });
  EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(UITableViewTest, ASecondTapOnARowNeverChoosesTwice) {
  show("toSheet");
  const auto list = make<UITableView>(CGRectMake(0, 0, 100, 100));
  const auto owner = strongReference(&top());
  list->setDataSource(owner);
  list->setDelegate(owner);
  top().rows = 1;
  event([&] { top().view()->addSubview(list); });
  takeLines();
  event([&] {
    list->selectRow(0);
    owner->dismissViewControllerAnimated_completion(true);
    list->selectRow(0);
  });
  event([&] { list->selectRow(0); });
  EXPECT_THAT(takeLines(), ElementsAre("Sheet selected 0", "Sheet will disappear animated"));
}

TEST_F(UITableViewTest, KeepsNeitherDataSourceNorDelegate) {
  auto owner = make<NotedScreen>("Owner");
  const Weak<NotedScreen> weak = owner;
  table().setDataSource(owner);
  table().setDelegate(owner);
  owner = nullptr;
  EXPECT_TRUE(weak.expired());
  takeLines();
  event([this] {
    table().reloadData();
    table().selectRow(0);
  });
  EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(UITableViewTest, ACellHasADetailLabelInEveryStyleButTheDefaultOne) {
  EXPECT_EQ(make<UITableViewCell>(UITableViewCellStyle::Default, "cell")->detailTextLabel(), nullptr);
  const auto cell = make<UITableViewCell>(UITableViewCellStyle::Subtitle, "cell");
  EXPECT_NE(cell->detailTextLabel(), nullptr);
  EXPECT_NE(cell->textLabel(), nullptr);
  EXPECT_NE(cell->imageView(), nullptr);
  EXPECT_NE(cell->contentView(), nullptr);
  EXPECT_EQ(cell->reuseIdentifier(), "cell");
}

using UITableViewDeathTest = UITableViewTest;

TEST_F(UITableViewDeathTest, NeedsACellForEachRow) {
  root().givesCells = false;
  table().reloadData();
  EXPECT_DEATH(window()->layoutIfNeeded(), "a table's data source gave no cell");
}

}  // namespace
