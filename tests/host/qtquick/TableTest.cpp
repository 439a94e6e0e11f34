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
  const auto hasMoved = [&] {
    stage.settle();
    return list->tabella1->contentOffset().y > 0;
  };
  EXPECT_TRUE(QTest::qWaitFor(hasMoved));
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

namespace {

const auto emptyText = QStringLiteral("No videos yet. Put some into your Videos folder and open this list again.");

/// All items below `item` whose accessible name is `name`.
std::vector<QQuickItem*> allNamed(QQuickItem* item, const QString& name) {
  std::vector<QQuickItem*> found;
  for (auto* const child : item->childItems()) {
    auto* const interface = QAccessible::queryAccessibleInterface(child);
    if (interface != nullptr && child->isVisible() && interface->text(QAccessible::Name) == name)
      found.push_back(child);
    const auto below = allNamed(child, name);
    found.insert(found.end(), below.begin(), below.end());
  }
  return found;
}

QRectF placeOf(const QQuickItem& item) {
  return item.mapRectToScene({0, 0, item.width(), item.height()});
}

/// The lightest grey in that part of the window.
int lightestIn(ScreenStage& stage, const QRectF& place) {
  const QImage picture = stage.grab().copy(place.toRect());
  int lightest = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) lightest = std::max(lightest, qGray(picture.pixel(x, y)));
  }
  return lightest;
}

/// The list of an empty library, its alert closed.
class EmptyTableTest : public testing::Test {
 protected:
  EmptyTableTest() {
    stage.openList();
    stage.advance(UIWindow::transitionDuration);
    QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named("OK")));
    stage.settle();
    stage.advance(UIWindow::transitionDuration);
  }

  std::vector<QQuickItem*> texts() { return allNamed(stage.window().contentItem(), emptyText); }

  ScreenStage stage{{.videos = 0}};
};

}  // namespace

TEST_F(EmptyTableTest, SaysSoInTheMiddleOfEachTable) {
  for (const QSize size : {QSize(1024, 640), QSize(390, 844), QSize(844, 390), QSize(360, 360)}) {
    stage.resize(size);
    const auto found = texts();
    ASSERT_EQ(found.size(), 2U);
    for (const int film : {1, 2}) {
      const QRectF text = placeOf(*found.at(static_cast<std::size_t>(film) - 1));
      const QRectF table = placeOf(*stage.named(QStringLiteral("Videos for film %1").arg(film)));
      EXPECT_TRUE(table.contains(text)) << size.width() << ' ' << film;
      EXPECT_NEAR(text.center().x(), table.center().x(), 1);
      EXPECT_NEAR(text.center().y(), table.center().y(), 1);
    }
  }
}

TEST_F(EmptyTableTest, ItsWordsCanBeRead) {
  for (const QSize size : {QSize(1024, 640), QSize(390, 844), QSize(360, 360)}) {
    stage.resize(size);
    ASSERT_EQ(texts().size(), 2U);
    for (auto* const text : texts()) {
      EXPECT_FALSE(text->property("truncated").toBool()) << size.width();
      EXPECT_GE(text->property("font").value<QFont>().pixelSize(), 15);
      EXPECT_GE(lightestIn(stage, placeOf(*text)), 0x75);  // on black, 4.5 to 1
    }
  }
}

TEST_F(EmptyTableTest, AssistiveTechnologyIsTold) {
  ASSERT_EQ(texts().size(), 2U);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(texts().front())->role(), QAccessible::StaticText);
  auto* const table = QAccessible::queryAccessibleInterface(stage.named("Videos for film 1"));
  EXPECT_EQ(table->text(QAccessible::Description), emptyText);
}

TEST(TableWithRows, NeverSaysThatItIsEmpty) {
  ScreenStage stage;
  stage.event([&] { std::dynamic_pointer_cast<UIButton>(stage.screen().view()->viewWithTag(5))->press(); });
  const auto texts = [&] { return allNamed(stage.window().contentItem(), emptyText).size(); };
  EXPECT_EQ(texts(), 0U);
  for (int step = 0; step < 6; ++step) {
    stage.advance(UIWindow::transitionDuration / 4);
    EXPECT_EQ(texts(), 0U);
  }
  EXPECT_NE(stage.named("Video 0, 00:01:00"), nullptr);
}

namespace {

/// The list of videos with these titles, in a window of that size.
class NamedVideos {
 public:
  NamedVideos(QSize size, const std::vector<std::string>& titles) : stage({.size = size, .videos = 0}) {
    std::vector<host::LibraryItem> items;
    for (const auto& title : titles) items.push_back({"file:///videos/" + title, title, 60, "/videos/same.mp4"});
    stage.simulatedHost().mediaLibrary.itemsByType[simulated::homeVideo] = items;
    stage.openList();
  }

  QRectF placeOfRow(const std::string& title) {
    auto* const row = stage.named(QString::fromStdString(title) + ", 00:01:00");
    return row != nullptr ? placeOf(*row) : QRectF();
  }
  /// The items of the first and the second line of a row's title.
  QList<QQuickItem*> titleLines(const std::string& title) {
    return linesBelow(stage.named(QString::fromStdString(title) + ", 00:01:00"));
  }
  /// The part of a row in which its texts are: to its right there is a margin, and the one for the scroll bar.
  QImage texts(const std::string& title) {
    const QRectF row = placeOfRow(title);
    return stage.grab().copy(row.adjusted(112, 0, -24, -4).toRect());
  }

  ScreenStage stage;

 private:
  static QList<QQuickItem*> linesBelow(const QQuickItem* item) {
    if (item == nullptr || item->property("isOneLine").isValid())
      return item ? item->childItems() : QList<QQuickItem*>();
    for (const auto* const child : item->childItems()) {
      const auto lines = linesBelow(child);
      if (!lines.isEmpty()) return lines;
    }
    return {};
  }
};

}  // namespace

TEST(TitlesOfRows, ThatDifferOnlyAtTheirEndsLookDifferent) {
  const std::vector<std::string> titles{"A walk along the beach before the sun rose, part 1",
                                        "A walk along the beach before the sun rose, part 2",
                                        "Everything that happened on the long way home in summer, 2019-07-14",
                                        "Everything that happened on the long way home in summer, 2019-07-15"};
  for (const QSize size : {QSize(390, 844), QSize(1024, 640), QSize(844, 390)}) {
    NamedVideos videos(size, titles);
    EXPECT_NE(videos.texts(titles[0]), videos.texts(titles[1])) << size.width();
    EXPECT_NE(videos.texts(titles[2]), videos.texts(titles[3])) << size.width();
  }
}

TEST(TitlesOfRows, ThatAreOneLongWordTakeTwoLinesToo) {
  const std::vector<std::string> titles{"VID_20190714_101112_holiday_film_001",
                                        "VID_20190714_101112_holiday_film_002"};
  NamedVideos videos({390, 844}, titles);
  EXPECT_NE(videos.texts(titles[0]), videos.texts(titles[1]));
}

TEST(TitlesOfRows, LoseNothingBetweenTheTwoLines) {
  const std::vector<std::string> titles{
      "Un viaggio tra le montagne e il mare con gli amici di sempre - seconda parte",
      "A Donaudampfschifffahrtsgesellschaftskapitaen_und_seine_Freunde_2018", "a b c d e f g h i j k l m n o p q r",
      "Donaudampfschifffahrtsgesellschaftskapitaen_und_seine_Freunde_2018"};
  NamedVideos videos({390, 844}, titles);
  for (int width = 360; width < 1024; width += 7) {
    videos.stage.resize({width, 844});
    for (const auto& title : titles) {
      const auto lines = videos.titleLines(title);
      ASSERT_EQ(lines.size(), 2U);
      EXPECT_FALSE(lines[0]->property("truncated").toBool()) << width << ' ' << title;
      EXPECT_LE(lines[0]->implicitWidth(), lines[0]->width() + 2) << width << ' ' << title;
      if (!lines[1]->property("truncated").toBool()) continue;
      EXPECT_GE(lines[0]->implicitWidth(), lines[0]->width() / 2) << width << ' ' << title;
      const QString whole = lines[0]->property("text").toString() + ' ' + lines[1]->property("text").toString();
      EXPECT_EQ(QString(whole).remove(' '), QString::fromStdString(title).remove(' ')) << width;
    }
  }
}

TEST(TitlesOfRows, WithLineBreaksTakeTwoLinesAtMost) {
  NamedVideos videos({390, 844}, {"One\nTwo\nThree\nFour"});
  const auto lines = videos.titleLines("One\nTwo\nThree\nFour");
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0]->property("text").toString(), "One Two Three Four");
  EXPECT_EQ(lines[1]->property("text").toString(), "");
}

TEST(TitlesOfRows, LeaveTheEdgesOfTheRowFree) {
  const std::vector<std::string> titles{"Short", "Gqy gqy gqy gqy gqy gqy gqy gqy gqy gqy gqy gqy gqy gqy gqy gqy"};
  NamedVideos videos({390, 844}, titles);
  for (const auto& title : titles) {
    const QRectF row = videos.placeOfRow(title);
    ASSERT_EQ(row.height(), 72);
    const QImage texts = videos.texts(title);
    const QRgb ground = texts.pixel(2, 2);
    for (int x = 0; x < texts.width(); ++x) {
      for (const int y : {1, 2, texts.height() - 3, texts.height() - 2})
        EXPECT_EQ(texts.pixel(x, y), ground) << title;
    }
  }
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
