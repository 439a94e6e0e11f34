#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>

namespace {

class TableTest : public testing::Test {
 protected:
  explicit TableTest(std::size_t videos = 10000) : stage({.videos = videos}), list(stage.openList()) {
    stage.window().requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.settle();
    stage.takeLines();
  }

  QQuickItem* table(int film) { return stage.named(QStringLiteral("Videos for film %1").arg(film)); }
  /// The item of a row in that film's table, or null.
  QQuickItem* row(int film, int number) {
    const QString name = QStringLiteral("Video %1, 00:01:00").arg(number);
    auto* const interface = QAccessible::queryAccessibleInterface(table(film));
    for (int child = 0; child < interface->childCount(); ++child) {
      if (interface->child(child)->text(QAccessible::Name) == name) {
        return qobject_cast<QQuickItem*>(interface->child(child)->object());
      }
    }
    return nullptr;
  }
  int delegates(int film) {
    int count = 0;
    for (auto* const item : table(film)->property("contentItem").value<QQuickItem*>()->childItems()) {
      if (item->isVisible()) ++count;
    }
    return count;
  }
  void scrollTo(int film, double y) {
    table(film)->setProperty("contentY", y);
    stage.settle();
  }
  std::vector<std::string> chosen() {
    auto lines = stage.takeLines();
    std::erase_if(lines,
                  [](const auto& line) { return !line.starts_with("You tapped") && !line.starts_with("tab"); });
    return lines;
  }

  ScreenStage stage;
  Strong<ListaVideo> list;
};

using Lines = std::vector<std::string>;

}  // namespace

TEST_F(TableTest, TenThousandRowsBuildOnlyThoseInSight) {
  EXPECT_EQ(list->tabella1->numberOfRows(), 10000);
  EXPECT_LE(list->tabella1->visibleCells().size(), 8U);
  EXPECT_LE(delegates(1), 8);
  EXPECT_GE(delegates(1), 6);
}

TEST_F(TableTest, ScrollingBuildsTheNextOnesAndShowsThemAtOnce) {
  scrollTo(1, 5000 * 72);
  EXPECT_EQ(list->tabella1->contentOffset().y, 5000 * 72);
  EXPECT_NE(list->tabella1->cellForRow(5000), nullptr);
  EXPECT_EQ(list->tabella1->cellForRow(0), nullptr);
  EXPECT_NE(row(1, 5000), nullptr);
  EXPECT_EQ(row(1, 0), nullptr);
  EXPECT_LE(delegates(1), 9);  // the keyboard's current row stays, wherever it is
  EXPECT_EQ(list->tabella2->contentOffset().y, 0);
}

TEST_F(TableTest, TheWheelScrolls) {
  const QPointF place = middleOf(*table(1));
  QWheelEvent wheel(place, place, {0, -200}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&stage.window(), &wheel);
  QTest::qWait(50);
  stage.settle();
  EXPECT_GT(list->tabella1->contentOffset().y, 0);
}

TEST_F(TableTest, AClickChoosesTheRowInItsTable) {
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*row(2, 1)));
  EXPECT_EQ(chosen(), (Lines{"You tapped cell number 1.", "tabella 2"}));
}

TEST_F(TableTest, ASecondClickWhileTheListGoesChoosesNothing) {
  const QPoint place = middleOf(*row(1, 1));
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, place);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, place);
  EXPECT_EQ(chosen(), (Lines{"You tapped cell number 1.", "tabella 1"}));
}

TEST_F(TableTest, AFingerThatScrollsChoosesNothing) {
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QPoint place = middleOf(*row(1, 4));
  QTest::touchEvent(&stage.window(), finger.get()).press(0, place);
  for (int step = 0; step < 14; ++step) {
    place -= QPoint(0, 20);
    QTest::touchEvent(&stage.window(), finger.get()).move(0, place);
    stage.settle();
  }
  QTest::touchEvent(&stage.window(), finger.get()).release(0, place);
  EXPECT_TRUE(chosen().empty());
  EXPECT_GT(list->tabella1->contentOffset().y, 50);
}

TEST_F(TableTest, KeysWalkAndChoose) {
  for (const auto key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up}) QTest::keyClick(&stage.window(), key);
  QTest::keyClick(&stage.window(), Qt::Key_Return);
  EXPECT_EQ(chosen(), (Lines{"You tapped cell number 1.", "tabella 1"}));
}

TEST_F(TableTest, KeysJumpToTheEndsAndByPages) {
  QTest::keyClick(&stage.window(), Qt::Key_End);
  stage.settle();
  EXPECT_NE(row(1, 9999), nullptr);
  EXPECT_NE(list->tabella1->cellForRow(9999), nullptr);
  QTest::keyClick(&stage.window(), Qt::Key_PageUp);
  stage.settle();
  EXPECT_LT(table(1)->property("currentIndex").toInt(), 9999);
  QTest::keyClick(&stage.window(), Qt::Key_Home);
  stage.settle();
  EXPECT_NE(row(1, 0), nullptr);
}

TEST_F(TableTest, AssistiveTechnologyReadsAndChoosesRows) {
  auto* const interface = QAccessible::queryAccessibleInterface(row(2, 0));
  EXPECT_EQ(interface->role(), QAccessible::ListItem);
  interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(chosen(), (Lines{"You tapped cell number 0.", "tabella 2"}));
}

TEST_F(TableTest, ASmallerWindowKeepsTheRowsInSight) {
  scrollTo(1, 5000 * 72);
  stage.resize({390, 844});
  stage.settle();
  EXPECT_NE(row(1, 5001), nullptr);
  EXPECT_EQ(list->tabella1->contentOffset().y, table(1)->property("contentY").toDouble());
}

TEST(ShortTable, ShowsTitleDurationAndPicture) {
  ScreenStage stage({.videos = 1});
  stage.openList();
  auto* const row = stage.named("Video 0, 00:01:00");
  ASSERT_NE(row, nullptr);
  const QPoint picture = row->mapToScene({8 + 48, 34}).toPoint();
  const auto isPainted = [&] {
    stage.settle();
    return stage.grab().pixelColor(picture).saturation() > 100;
  };
  EXPECT_TRUE(QTest::qWaitFor(isPainted));
}
