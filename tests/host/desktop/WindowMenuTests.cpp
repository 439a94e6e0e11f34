#include "hosts/desktop/WindowMenu.h"

#include "tests/host/desktop/LibraryStage.h"

namespace desktop {
namespace {

class WindowMenuTest : public testing::Test {
 protected:
  WindowMenuTest() { menu.offer(); }

  void open() {
    menu.open();
    there.stage.settle();
  }
  QString focusedName() {
    auto* const interface = QAccessible::queryAccessibleInterface(there.stage.window().activeFocusItem());
    return interface != nullptr ? interface->text(QAccessible::Name) : QString();
  }
  bool isGone() {
    return LibraryStage::waitFor([this] {
      there.stage.settle();
      return !menu.isShown();
    });
  }

  LibraryStage there;
  QStringList chosen;
  bool isFull = false;
  bool reopens = false;
  WindowMenu menu{there.layers, [this] {
                    return std::vector<WindowMenu::Entry>{
                        {"Settings",
                         [this] {
                           chosen << "settings";
                           if (reopens) menu.open();
                         }},
                        {isFull ? "Leave full screen" : "Full screen", [this] { chosen << "full"; }},
                        {"Quit", [this] { chosen << "quit"; }}};
                  }};
};

TEST_F(WindowMenuTest, BringsWhatIsTapped) {
  open();
  there.click("Full screen");
  EXPECT_TRUE(isGone());
  EXPECT_EQ(chosen, QStringList{"full"});
}

TEST_F(WindowMenuTest, OnlyTheFirstOfTwoPressesCounts) {
  open();
  menu.choose(1);
  menu.choose(2);
  EXPECT_TRUE(isGone());
  there.stage.settle();
  EXPECT_EQ(chosen, QStringList{"full"});
}

TEST_F(WindowMenuTest, APressOnAMenuThatHasGoneDoesNotCloseTheNextOne) {
  open();
  menu.choose(0);
  menu.close();
  reopens = true;
  EXPECT_TRUE(LibraryStage::waitFor([this] { return !chosen.isEmpty(); }));
  there.stage.settle();
  EXPECT_TRUE(menu.isShown());
}

TEST_F(WindowMenuTest, HasWhatThereIsWhenItIsOpened) {
  isFull = true;
  open();
  EXPECT_NE(there.accessible("Leave full screen"), nullptr);
  EXPECT_EQ(there.accessible("Full screen"), nullptr);
}

TEST_F(WindowMenuTest, IsWalkedThroughByKeys) {
  open();
  EXPECT_EQ(focusedName(), "Settings");
  there.key(Qt::Key_Down);
  there.key(Qt::Key_Down);
  EXPECT_EQ(focusedName(), "Quit");
  there.key(Qt::Key_Up);
  EXPECT_EQ(focusedName(), "Full screen");
  there.key(Qt::Key_Tab);
  EXPECT_EQ(focusedName(), "Quit");
  there.key(Qt::Key_Return);
  EXPECT_TRUE(isGone());
  EXPECT_EQ(chosen, QStringList{"quit"});
}

TEST_F(WindowMenuTest, ClosesWithEscapeAndByATapBesideIt) {
  open();
  there.key(Qt::Key_Escape);
  EXPECT_TRUE(isGone());
  open();
  QTest::mouseClick(&there.stage.window(), Qt::LeftButton, {}, {20, 500});
  EXPECT_TRUE(isGone());
  EXPECT_EQ(chosen, QStringList());
}

TEST_F(WindowMenuTest, AssistiveTechnologyOpensItAndChooses) {
  auto* const offer = there.accessible("Quillop menu");
  ASSERT_NE(offer, nullptr);
  EXPECT_EQ(offer->role(), QAccessible::ButtonMenu);
  offer->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  there.stage.settle();
  ASSERT_TRUE(menu.isShown());
  EXPECT_EQ(there.accessible("Quillop menu")->role(), QAccessible::PopupMenu);
  EXPECT_EQ(there.accessible("Choose videos"), nullptr);
  auto* const entry = there.accessible("Settings");
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->role(), QAccessible::MenuItem);
  entry->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(isGone());
  EXPECT_EQ(chosen, QStringList{"settings"});
}

TEST_F(WindowMenuTest, IsNotOfferedUnderASheet) {
  there.stage.openInfo();
  EXPECT_EQ(there.accessible("Quillop menu"), nullptr);
}

TEST_F(WindowMenuTest, ItsEntriesAreLargeEnoughForAFinger) {
  there.stage.resize({390, 844});
  open();
  for (const auto* const name : {"Settings", "Full screen", "Quit"}) {
    const QRectF place = there.placeOf(name);
    EXPECT_GE(place.height(), 44);
    EXPECT_TRUE(QRectF(0, 0, 390, 844).contains(place));
  }
}

}  // namespace
}  // namespace desktop
