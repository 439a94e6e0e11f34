// Finding a title in a long list: by typing it, and with the thumb at the list's edge.

#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>

namespace {

constexpr std::uint64_t homeVideo = 8192;

QRectF placeOf(const QQuickItem& item) {
  return item.mapRectToScene({0, 0, item.width(), item.height()});
}

/// The list of videos with these titles; without any, of ten thousand.
class LongListTest : public testing::Test {
 protected:
  void open(const std::vector<std::string>& titles = {}) {
    if (!titles.empty()) {
      std::vector<host::LibraryItem> items;
      for (const auto& title : titles) items.push_back({"file:///videos/same.mp4", title, 60, "/videos/same.mp4"});
      stage.simulatedHost().mediaLibrary.itemsByType[homeVideo] = items;
    }
    list = stage.openList();
    stage.window().requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.settle();
    stage.takeLines();
  }

  QQuickItem* table(int film) { return stage.named(QStringLiteral("Videos for film %1").arg(film)); }
  int current(int film = 1) { return table(film)->property("currentIndex").toInt(); }
  void type(const char* letters) {
    for (; *letters != 0; ++letters) QTest::keyClick(&stage.window(), *letters);
    stage.settle();
  }
  bool comesTo(int row) {
    return QTest::qWaitFor([&] { return current() == row; });
  }
  bool hasChosen() {
    const auto lines = stage.takeLines();
    return std::any_of(lines.begin(), lines.end(), [](const auto& line) { return line.starts_with("You tapped"); });
  }
  /// The middle of the thumb of film 1's table while the list is at its beginning.
  QPoint thumb() {
    const QRectF place = placeOf(*table(1));
    return QPointF(place.right() - 10, place.top() + 28).toPoint();
  }
  void press(QPoint place) { QTest::mousePress(&stage.window(), Qt::LeftButton, {}, place); }
  void moveTo(QPoint place) {
    QTest::mouseMove(&stage.window(), place);
    stage.settle();
  }
  void release(QPoint place) { QTest::mouseRelease(&stage.window(), Qt::LeftButton, {}, place); }
  /// Whether there is as much of the table's colour as the bubble beside the thumb has.
  bool hasBubble() {
    const QImage picture = stage.grab().copy(placeOf(*table(1)).toRect());
    const QRgb tint = table(1)->property("node").value<QObject*>()->property("tint").value<QColor>().rgb();
    int found = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width() - 44; ++x) found += picture.pixel(x, y) == tint ? 1 : 0;
    }
    return found > 1000;
  }

  ScreenStage stage{{.videos = 10000}};
  Strong<ListaVideo> list;
};

}  // namespace

TEST_F(LongListTest, TypingJumpsToATitle) {
  open();
  type("video 77");
  EXPECT_TRUE(comesTo(77));
  stage.settle();
  EXPECT_NE(stage.named("Video 77, 00:01:00"), nullptr);
  EXPECT_NE(list->tabella1->cellForRow(77), nullptr);
  EXPECT_FALSE(hasChosen());
}

TEST_F(LongListTest, TypingAsksTheAppForNoRowOutOfSight) {
  open();
  type("video 9999");
  EXPECT_TRUE(comesTo(9999));
  stage.settle();
  EXPECT_LE(stage.takeLines().size(), 80U);  // those in sight after each of ten letters
}

TEST_F(LongListTest, TheSameLetterGoesFromTitleToTitle) {
  open({"Alba", "Etna", "\u00C9toile", "estate", "Zorro"});
  for (const int row : {1, 2, 3, 1}) {
    type("e");
    EXPECT_EQ(current(), row);
  }
}

TEST_F(LongListTest, AfterAPauseTypingBeginsAnew) {
  open({"Alba", "Etna", "Zorro", "ZE"});
  type("z");
  EXPECT_EQ(current(), 2);
  QTest::qWait(1200);
  type("e");
  EXPECT_EQ(current(), 1);
}

TEST_F(LongListTest, ASpaceIsPartOfATitleThatIsBeingTypedAndElseChooses) {
  open({"La", "Labirinto", "La luna"});
  type("la l");
  EXPECT_EQ(current(), 2);
  EXPECT_FALSE(hasChosen());
  QTest::qWait(1200);
  type(" ");
  EXPECT_TRUE(hasChosen());
}

TEST_F(LongListTest, ReturnChoosesWhatWasTyped) {
  open({"Alba", "Etna", "Zorro"});
  type("z");
  QTest::keyClick(&stage.window(), Qt::Key_Return);
  const auto lines = stage.takeLines();
  EXPECT_NE(std::find(lines.begin(), lines.end(), "You tapped cell number 2."), lines.end());
}

TEST_F(LongListTest, WhatNoTitleBeginsWithIsToldAndMovesNothing) {
  open({"Alba", "Etna", "Zorro"});
  type("et");
  EXPECT_EQ(current(), 1);
  type("x");
  EXPECT_EQ(current(), 1);
  auto* const notice = stage.named("No title begins with \"etx\"");
  ASSERT_NE(notice, nullptr);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(notice)->role(), QAccessible::Notification);
}

TEST_F(LongListTest, OfWhichTheTitlesAreNotKnownTypingDoesNothing) {
  stage.host().setListedItems({});
  open({"Alba", "Etna", "Zorro"});
  type("z");
  EXPECT_EQ(current(), 0);
}

TEST_F(LongListTest, CommandsAreNoTitles) {
  open({"Alba", "Etna", "Zorro"});
  QTest::keyClick(&stage.window(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(current(), 0);
}

TEST_F(LongListTest, TheThumbLeadsToTheEndAndBackAndChoosesNothing) {
  open();
  const QPoint from = thumb();
  const QPoint to(from.x(), static_cast<int>(placeOf(*table(1)).bottom()) - 10);
  press(from);
  moveTo(to);
  EXPECT_NE(list->tabella1->cellForRow(9999), nullptr);
  EXPECT_NE(stage.named("Video 9999, 00:01:00"), nullptr);
  moveTo(from);
  release(from);
  EXPECT_EQ(list->tabella1->contentOffset().y, 0);
  EXPECT_EQ(list->tabella2->contentOffset().y, 0);
  EXPECT_FALSE(hasChosen());
}

TEST_F(LongListTest, TheThumbIsAsLargeAsAFinger) {
  open();
  const QPoint edge = thumb() - QPoint(32, 0);
  press(edge);
  moveTo(edge + QPoint(0, 100));
  release(edge + QPoint(0, 100));
  EXPECT_GT(list->tabella1->contentOffset().y, 1000);
  EXPECT_FALSE(hasChosen());
}

TEST_F(LongListTest, AFingerDragsTheThumb) {
  open();
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QPoint place = thumb();
  QTest::touchEvent(&stage.window(), finger.get()).press(0, place);
  for (int step = 0; step < 10; ++step) {
    place += QPoint(0, 20);
    QTest::touchEvent(&stage.window(), finger.get()).move(0, place);
    stage.settle();
  }
  EXPECT_TRUE(hasBubble());
  QTest::touchEvent(&stage.window(), finger.get()).release(0, place);
  stage.settle();
  EXPECT_GT(list->tabella1->contentOffset().y, 100000);
  EXPECT_FALSE(hasBubble());
  EXPECT_FALSE(hasChosen());
}

TEST_F(LongListTest, RowsBesideTheThumbsWayCanBeChosen) {
  open();
  const QPoint place = thumb() + QPoint(-28, 150);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, place);
  EXPECT_TRUE(hasChosen());
}

TEST_F(LongListTest, ShortListsHaveNoThumb) {
  open({"Alba", "Etna", "Zorro"});
  press(thumb());
  moveTo(thumb() + QPoint(0, 100));
  EXPECT_FALSE(hasBubble());
  release(thumb() + QPoint(0, 100));
}
