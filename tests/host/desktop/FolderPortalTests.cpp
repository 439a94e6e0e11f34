#include "hosts/desktop/FolderPortal.h"

#include "tests/host/desktop/PrivateBus.h"
#include "tests/host/desktop/StandInServices.h"

#include <gmock/gmock.h>

namespace desktop {
namespace {

class FolderPortalTest : public testing::Test {
 protected:
  FolderPortalTest() {
    QObject::connect(&folders, &FolderPortal::chosen, [this](const auto& folder) { chosen.append(folder); });
  }
  void ask() {
    const auto before = portal.questions.size();
    folders.ask();
    runUntil([&] { return portal.questions.size() > before; });
  }

  PrivateBus bus;
  QDBusConnection app = bus.connection("app");
  QDBusConnection services = bus.connection("services");
  StandInFolderPortal portal{services};
  FolderPortal folders{app};
  QStringList chosen;
};

TEST_F(FolderPortalTest, AsksForAFolderAndTellsItsPath) {
  ask();
  EXPECT_TRUE(portal.questions[0].options.value("directory").toBool());
  portal.answer(0, 0, {"file:///run/user/1000/doc/ab12/Old%20films"});
  runUntil([&] { return !chosen.isEmpty(); });
  EXPECT_EQ(chosen, QStringList("/run/user/1000/doc/ab12/Old films"));
}

TEST_F(FolderPortalTest, TellsNothingWhereTheUserChoseNothing) {
  ask();
  portal.answer(0, 1, {});
  PrivateBus::settle(app);
  ask();
  portal.answer(1, 0, {});
  PrivateBus::settle(app);
  EXPECT_TRUE(chosen.isEmpty());
}

TEST_F(FolderPortalTest, OnlyTheLastQuestionCounts) {
  ask();
  ask();
  portal.answer(0, 0, {"file:///first"});
  portal.answer(1, 0, {"file:///second"});
  runUntil([&] { return !chosen.isEmpty(); });
  PrivateBus::settle(app);
  EXPECT_EQ(chosen, QStringList("/second"));
}

}  // namespace
}  // namespace desktop
