#include "hosts/desktop/SettingsPage.h"

#include "tests/host/medialibrary/Environment.h"
#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace desktop {
namespace {

using Contents = medialibrary::FolderLibrary::Contents;
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
  std::optional<Contents> contents = Contents{3, 0};
  SettingsPage page{layers, access, [this] { return contents; }};
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

TEST_F(SettingsPageTest, KeyboardAddsAFolder) {
  open();
  while (focusedName() != QStringLiteral("Add a folder")) key(Qt::Key_Tab);
  key(Qt::Key_Return);
  EXPECT_EQ(focusedName(), QStringLiteral("Films"));
  key(Qt::Key_Return);
  key(Qt::Key_Return);
  key(Qt::Key_Backspace);
  key(Qt::Key_Backspace);
  key(Qt::Key_Down);
  key(Qt::Key_Return);
  while (focusedName() != QStringLiteral("Add this folder")) key(Qt::Key_Tab);
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

TEST_F(SettingsPageTest, ChooserCanBeCancelled) {
  open();
  click(QStringLiteral("Add a folder"));
  click(QStringLiteral("Cancel"));
  EXPECT_TRUE(access.addedFolders().isEmpty());
  EXPECT_NE(stage.named(switchName), nullptr);
}

TEST_F(SettingsPageTest, TellsWhatTheLibraryHolds) {
  open();
  EXPECT_NE(stage.named(QStringLiteral("3 videos")), nullptr);
  contents = Contents{1, 0};
  access.addFolder(QStringLiteral("/media/card"));
  stage.settle();
  EXPECT_NE(stage.named(QStringLiteral("1 video")), nullptr);
  contents = std::nullopt;
  access.setAnswer(LibraryAccess::Answer::Denied);
  stage.settle();
  EXPECT_NE(stage.named(page.contents()), nullptr);
  EXPECT_FALSE(page.contents().contains(QStringLiteral("video")));
}

TEST_F(SettingsPageTest, GoesOnCountingWhileFilesAreLookedInto) {
  contents = Contents{0, 2};
  open();
  EXPECT_EQ(page.contents(), QStringLiteral("0 videos, still looking"));
  contents = Contents{2, 0};
  EXPECT_TRUE(QTest::qWaitFor([&] { return page.contents() == QStringLiteral("2 videos"); }));
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
                                QStringLiteral("Remove /media/card")}));
}

}  // namespace
}  // namespace desktop
