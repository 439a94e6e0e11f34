#include "hosts/desktop/SettingsPage.h"

#include "tests/host/desktop/FakeLibrary.h"
#include "tests/host/qtquick/ScreenStage.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/PostedWork.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace desktop {
namespace {

using host::LibraryAccess::Authorised;
using host::LibraryAccess::Denied;

const auto switchName = QStringLiteral("Access to the media library");
const auto title = QStringLiteral("Quillop settings");

/// `item` and all that is in it.
QList<QQuickItem*> itemsIn(QQuickItem* item) {
  QList<QQuickItem*> all{item};
  for (auto* const child : item->childItems()) all += itemsIn(child);
  return all;
}

class SettingsPageTest : public testing::Test {
 protected:
  SettingsPageTest() {
    QCoreApplication::setApplicationVersion(QStringLiteral("4.5.6"));
    for (const auto* name : {"Videos", "Films/Old", "Music"}) QDir(home.path()).mkpath(QLatin1String(name));
    stage.window().requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
  }

  void open() {
    page.open();
    stage.settle();
  }
  void key(Qt::Key key) {
    QTest::keyClick(&stage.window(), key);
    stage.settle();
  }
  void press(const QString& name) {
    ASSERT_NE(stage.named(name), nullptr) << qPrintable(name);
    QAccessible::queryAccessibleInterface(stage.named(name))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());
    stage.settle();
  }
  void click(const QString& name) {
    ASSERT_NE(stage.named(name), nullptr) << qPrintable(name);
    QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named(name)));
    stage.settle();
  }
  QAccessible::State switchState() { return QAccessible::queryAccessibleInterface(stage.named(switchName))->state(); }
  QString focusedName() {
    auto* const interface = QAccessible::queryAccessibleInterface(stage.window().activeFocusItem());
    return interface != nullptr ? interface->text(QAccessible::Name) : QString();
  }
  QRectF placeOf(const QString& name) {
    auto* const item = stage.named(name);
    return item != nullptr ? item->mapRectToScene(item->boundingRect()) : QRectF();
  }
  QAccessible::Role roleOf(const QString& name) {
    auto* const item = stage.named(name);
    return item != nullptr ? QAccessible::queryAccessibleInterface(item)->role() : QAccessible::NoRole;
  }
  /// How many rings show where the keyboard is.
  int ringsInSight() {
    int count = 0;
    for (auto* const item : itemsIn(stage.window().contentItem())) {
      if (item->isVisible() && QByteArray(item->metaObject()->className()).startsWith("FocusRing")) ++count;
    }
    return count;
  }
  void walkTo(const QString& name) {
    for (int presses = 0; presses < 30 && focusedName() != name; ++presses) key(Qt::Key_Tab);
    ASSERT_EQ(focusedName(), name);
  }
  void allow() { access.setAnswer(LibraryAccess::Answer::Authorised); }
  void tellChange() {
    facts.changed();
    stage.settle();
  }
  void makeUnreadable(std::size_t count) {
    for (std::size_t number = 0; number < count; ++number) {
      facts.unreadable.push_back({"/media/card/Film " + std::to_string(number) + ".mp4", "The file ends too early."});
    }
    facts.contents.unreadableFiles = count;
  }
  void restrict() const {
    QDir().mkpath(home.filePath(QStringLiteral("xdg/quillop")));
    QFile file(home.filePath(QStringLiteral("xdg/quillop/policy.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"mediaLibrary": "restricted"})");
  }
  void expectNoTextIsCut() {
    for (auto* const item : itemsIn(stage.window().contentItem())) {
      if (!item->isEnabled() || !item->isVisible() || !item->property("truncated").isValid()) continue;
      const QString text = item->property("text").toString();
      EXPECT_FALSE(item->property("truncated").toBool()) << qPrintable(text);
      const QRectF there = item->mapRectToScene({0, 0, item->property("contentWidth").toReal(), 1});
      EXPECT_GE(there.left(), 0) << qPrintable(text);
      EXPECT_LE(there.right(), stage.window().width()) << qPrintable(text);
    }
  }

  QTemporaryDir home;
  const EnvironmentVariable variable{"HOME", home.path().toStdString()};
  ScreenStage stage;
  Layers layers{stage.host()};
  LibraryAccess access{home.filePath(QStringLiteral("library.json")),
                       {home.filePath(QStringLiteral("xdg"))},
                       home.filePath(QStringLiteral("Videos"))};
  LibraryFacts facts;
  PostedWork mainLoop;
  GuardedLibrary library{mainLoop, access, [](auto) { ADD_FAILURE() << "asks"; },
                         [](auto&, auto) { ADD_FAILURE() << "waits"; },
                         [this](auto folders) { return std::make_unique<FakeLibrary>(std::move(folders), facts); }};
  SettingsPage page{layers, access, library};
};

TEST_F(SettingsPageTest, LiesOverTheAppWhichTakesNoInputMeanwhile) {
  open();
  EXPECT_NE(stage.named(title), nullptr);
  EXPECT_EQ(stage.named(QStringLiteral("Choose videos")), nullptr);
  click(QStringLiteral("Close"));
  EXPECT_FALSE(page.isShown());
  EXPECT_NE(stage.named(QStringLiteral("Choose videos")), nullptr);
}

TEST_F(SettingsPageTest, SwitchGivesAndTakesAccessAtOnce) {
  open();
  EXPECT_FALSE(switchState().checked);
  press(switchName);
  EXPECT_EQ(access.status(), Authorised);
  EXPECT_TRUE(switchState().checked);
  click(switchName);
  EXPECT_EQ(access.status(), Denied);
  EXPECT_FALSE(switchState().checked);
  key(Qt::Key_Space);
  EXPECT_EQ(access.status(), Authorised);
}

TEST_F(SettingsPageTest, RestrictedSwitchIsDisabledAndExplained) {
  access.setAnswer(LibraryAccess::Answer::Authorised);
  restrict();
  open();
  EXPECT_TRUE(switchState().readOnly);
  EXPECT_FALSE(switchState().checkable);
  EXPECT_FALSE(switchState().checked);
  EXPECT_TRUE(page.explanation().contains(QStringLiteral("administers")));
  EXPECT_NE(stage.named(page.explanation()), nullptr);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named(switchName)));
  stage.settle();
  QFile::remove(home.filePath(QStringLiteral("xdg/quillop/policy.json")));
  EXPECT_EQ(access.status(), Authorised) << "the answer was left alone";
}

TEST_F(SettingsPageTest, ShowsTheFoldersAndRemovesOne) {
  access.addFolder(home.filePath(QStringLiteral("Films")));
  access.addFolder(QStringLiteral("/media/card"));
  open();
  EXPECT_NE(stage.named(QStringLiteral("~/Videos, Your videos folder")), nullptr);
  EXPECT_NE(stage.named(QStringLiteral("/media/card")), nullptr);
  EXPECT_EQ(stage.named(QStringLiteral("Remove ~/Videos")), nullptr);
  press(QStringLiteral("Remove ~/Films"));
  EXPECT_EQ(access.addedFolders(), QStringList{QStringLiteral("/media/card")});
  EXPECT_EQ(stage.named(QStringLiteral("Remove ~/Films")), nullptr);
  EXPECT_NE(stage.named(QStringLiteral("Remove /media/card")), nullptr);
}

TEST_F(SettingsPageTest, AddsAFolderThatWasWalkedTo) {
  open();
  click(QStringLiteral("Add a folder"));
  EXPECT_EQ(stage.named(switchName), nullptr);
  click(QStringLiteral("Films"));
  press(QStringLiteral("Old"));
  press(QStringLiteral("Up"));
  click(QStringLiteral("Add this folder"));
  EXPECT_EQ(access.addedFolders(), QStringList{home.filePath(QStringLiteral("Films"))});
  EXPECT_NE(stage.named(QStringLiteral("Remove ~/Films")), nullptr);
}

TEST_F(SettingsPageTest, StaysAsItIsWhileAnInnerPageIsOpen) {
  stage.resize({1280, 800});
  allow();
  open();
  const double top = placeOf(QStringLiteral("Close")).top();
  click(QStringLiteral("Add a folder"));
  EXPECT_EQ(placeOf(QStringLiteral("Back")).top(), top) << "the card is as high as before";
}

TEST_F(SettingsPageTest, IsADialogOfTexts) {
  allow();
  facts.contents.items = 37;
  open();
  auto* const dialog = QAccessible::queryAccessibleInterface(stage.named(title));
  EXPECT_EQ(dialog->role(), QAccessible::Dialog);
  EXPECT_EQ(roleOf(QStringLiteral("37 videos")), QAccessible::StaticText);
  EXPECT_EQ(roleOf(QStringLiteral("Quillop 4.5.6")), QAccessible::StaticText);
}

TEST_F(SettingsPageTest, ShowsNobodyWhoTouchesWhereTheKeyboardIs) {
  allow();
  makeUnreadable(3);
  open();
  EXPECT_EQ(ringsInSight(), 0);
  click(QStringLiteral("Add a folder"));
  EXPECT_EQ(ringsInSight(), 0);
  click(QStringLiteral("Back"));
  EXPECT_EQ(ringsInSight(), 0);
  click(QStringLiteral("3 files could not be read"));
  EXPECT_EQ(ringsInSight(), 0);
  click(QStringLiteral("Back"));
  EXPECT_EQ(ringsInSight(), 0);
}

TEST_F(SettingsPageTest, ShowsWhoeverTypesWhereTheKeyboardIs) {
  allow();
  makeUnreadable(3);
  QTest::keyClick(&stage.window(), Qt::Key_Tab);
  open();
  EXPECT_EQ(ringsInSight(), 1);
  for (const auto& way : {QStringLiteral("Add a folder"), QStringLiteral("3 files could not be read")}) {
    walkTo(way);
    key(Qt::Key_Return);
    EXPECT_EQ(stage.named(switchName), nullptr);
    EXPECT_EQ(ringsInSight(), 1) << qPrintable(way);
    key(Qt::Key_Escape);
    EXPECT_EQ(focusedName(), way);
    EXPECT_EQ(ringsInSight(), 1) << qPrintable(way);
  }
}

TEST_F(SettingsPageTest, SomebodyElseMayAskForTheFolder) {
  int asked = 0;
  page.setFolderQuestion([&] { ++asked; });
  open();
  click(QStringLiteral("Add a folder"));
  EXPECT_EQ(asked, 1);
  EXPECT_NE(stage.named(switchName), nullptr) << "the page is still there";
}

TEST_F(SettingsPageTest, KeyboardAddsAFolder) {
  open();
  walkTo(QStringLiteral("Add a folder"));
  key(Qt::Key_Return);
  EXPECT_EQ(focusedName(), QStringLiteral("Films"));
  key(Qt::Key_Return);
  key(Qt::Key_Return);
  key(Qt::Key_Backspace);
  key(Qt::Key_Backspace);
  key(Qt::Key_Down);
  key(Qt::Key_Return);
  walkTo(QStringLiteral("Add this folder"));
  key(Qt::Key_Space);
  EXPECT_EQ(access.addedFolders(), QStringList{home.filePath(QStringLiteral("Music"))});
}

TEST_F(SettingsPageTest, EscapeLeavesTheChooserThenThePage) {
  open();
  click(QStringLiteral("Add a folder"));
  key(Qt::Key_Escape);
  EXPECT_NE(stage.named(switchName), nullptr);
  EXPECT_TRUE(access.addedFolders().isEmpty());
  key(Qt::Key_Back);
  EXPECT_FALSE(page.isShown());
}

TEST_F(SettingsPageTest, ChooserDoesNotCrawlToTheRowThatTheKeyboardIsOn) {
  for (int number = 0; number < 300; ++number) {
    QDir(home.path()).mkpath(QStringLiteral("Folder %1").arg(number, 3, 10, QLatin1Char('0')));
  }
  open();
  press(QStringLiteral("Add a folder"));
  auto* const list = stage.named(QStringLiteral("Folders"));
  ASSERT_NE(list, nullptr);
  for (int step = 0; step < 290; ++step) QTest::keyClick(&stage.window(), Qt::Key_Down);
  ASSERT_EQ(list->property("currentIndex").toInt(), 290);
  // At the speed at which lists move by themselves it would be on its way for most of a minute.
  const auto isInSight = [&] {
    stage.settle();
    auto* const row = list->property("currentItem").value<QQuickItem*>();
    return row != nullptr && list->contains(list->mapFromItem(row, {10, 2})) &&
           list->contains(list->mapFromItem(row, {10, row->height() - 2}));
  };
  EXPECT_TRUE(QTest::qWaitFor(isInSight));
}

TEST_F(SettingsPageTest, ChooserCanBeLeft) {
  open();
  click(QStringLiteral("Add a folder"));
  click(QStringLiteral("Back"));
  EXPECT_TRUE(access.addedFolders().isEmpty());
  EXPECT_NE(stage.named(switchName), nullptr);
}

TEST_F(SettingsPageTest, TellsWhatTheLibraryHolds) {
  allow();
  facts.contents.items = 4321;
  open();
  EXPECT_NE(stage.named(QStringLiteral("4,321 videos")), nullptr);
  facts.contents.items = 1;
  tellChange();
  EXPECT_NE(stage.named(QStringLiteral("1 video")), nullptr);
  access.setAnswer(LibraryAccess::Answer::Denied);
  stage.settle();
  EXPECT_NE(stage.named(page.contents()), nullptr);
  EXPECT_FALSE(page.contents().contains(QStringLiteral("video")));
}

TEST_F(SettingsPageTest, TellsHowFarTheLibraryIsWhileItWorks) {
  allow();
  open();
  EXPECT_FALSE(page.isWorking());
  EXPECT_EQ(stage.named(QStringLiteral("Looking through your videos")), nullptr);
  facts.contents.isSearching = true;
  tellChange();
  EXPECT_NE(stage.named(QStringLiteral("Searching your folders")), nullptr);
  facts.progress = {120, 4000, 118.0};
  tellChange();
  EXPECT_NE(stage.named(QStringLiteral("120 of 4,000, about 2 minutes left")), nullptr);
  auto* const bar = stage.named(QStringLiteral("Looking through your videos"));
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(bar)->role(), QAccessible::ProgressBar);
  EXPECT_EQ(bar->property("value").toDouble(), 0.03);
  facts.contents.isSearching = false;
  facts.progress = {};
  tellChange();
  EXPECT_EQ(stage.named(QStringLiteral("Looking through your videos")), nullptr);
}

TEST_F(SettingsPageTest, RescansWhereAccessIsGiven) {
  open();
  EXPECT_EQ(stage.named(QStringLiteral("Rescan")), nullptr);
  allow();
  stage.settle();
  press(QStringLiteral("Rescan"));
  EXPECT_EQ(facts.rescans, 1);
}

TEST_F(SettingsPageTest, ListsTheFilesThatCouldNotBeRead) {
  allow();
  open();
  makeUnreadable(1);
  tellChange();
  EXPECT_NE(stage.named(QStringLiteral("1 file could not be read")), nullptr);
  facts.unreadable.clear();
  makeUnreadable(3);
  tellChange();
  click(QStringLiteral("3 files could not be read"));
  EXPECT_EQ(stage.named(switchName), nullptr);
  EXPECT_NE(stage.named(QStringLiteral("Film 2.mp4, /media/card, The file ends too early.")), nullptr);
  click(QStringLiteral("Back"));
  EXPECT_NE(stage.named(switchName), nullptr);
  EXPECT_EQ(focusedName(), QStringLiteral("3 files could not be read"));
}

TEST_F(SettingsPageTest, EscapeLeavesTheListThenThePage) {
  allow();
  makeUnreadable(3);
  open();
  press(QStringLiteral("3 files could not be read"));
  key(Qt::Key_Escape);
  EXPECT_NE(stage.named(switchName), nullptr);
  key(Qt::Key_Escape);
  EXPECT_FALSE(page.isShown());
}

TEST_F(SettingsPageTest, ThousandsOfUnreadableFilesAreScrolledThrough) {
  allow();
  makeUnreadable(6000);
  open();
  press(QStringLiteral("6,000 files could not be read"));
  EXPECT_EQ(page.unlisted(), QStringLiteral("And 1,000 more"));
  const auto first = QStringLiteral("Film 0.mp4, /media/card, The file ends too early.");
  EXPECT_NE(stage.named(first), nullptr);
  key(Qt::Key_End);
  EXPECT_EQ(stage.named(first), nullptr);
  EXPECT_NE(stage.named(QStringLiteral("Film 4999.mp4, /media/card, The file ends too early.")), nullptr);
  facts.contents.unreadableFiles = 0;
  facts.unreadable.clear();
  tellChange();
  EXPECT_EQ(stage.named(QStringLiteral("Film 4999.mp4, /media/card, The file ends too early.")), nullptr);
}

TEST_F(SettingsPageTest, ShowsTheVersion) {
  open();
  EXPECT_NE(stage.named(QStringLiteral("Quillop 4.5.6")), nullptr);
}

TEST_F(SettingsPageTest, OpensOnce) {
  open();
  open();
  key(Qt::Key_Escape);
  EXPECT_FALSE(page.isShown());
  EXPECT_EQ(stage.named(title), nullptr);
  open();
  EXPECT_NE(stage.named(title), nullptr) << "and again";
}

TEST_F(SettingsPageTest, NoTextIsCutAtAnySize) {
  access.addFolder(QStringLiteral("/run/media/somebody/A memory card with a long name/DCIM/100MEDIA/Holidays"));
  allow();
  makeUnreadable(4000);
  facts.progress = {1234, 4000, 118.0};
  for (const QSize size : {QSize(360, 640), QSize(390, 844), QSize(844, 390), QSize(1024, 640), QSize(1920, 1080)}) {
    SCOPED_TRACE(testing::Message() << size.width() << "x" << size.height());
    stage.resize(size);
    open();
    expectNoTextIsCut();
    click(QStringLiteral("Close"));
  }
}

TEST_F(SettingsPageTest, KeyboardReachesEveryControlInSight) {
  access.addFolder(QStringLiteral("/media/card"));
  allow();
  makeUnreadable(4);
  stage.resize({844, 390});
  open();
  QSet<QString> met;
  for (int step = 0; step < 10; ++step) {
    const auto* const item = stage.window().activeFocusItem();
    const QRectF there = item->mapRectToScene(item->boundingRect());
    EXPECT_TRUE(QRectF(0, 0, 844, 390).contains(there)) << qPrintable(focusedName());
    met << focusedName();
    key(Qt::Key_Tab);
  }
  EXPECT_EQ(met, (QSet<QString>{switchName, QStringLiteral("Close"), QStringLiteral("Add a folder"),
                                QStringLiteral("Remove /media/card"), QStringLiteral("Rescan"),
                                QStringLiteral("4 files could not be read")}));
}

}  // namespace
}  // namespace desktop
