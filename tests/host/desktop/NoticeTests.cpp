#include "hosts/desktop/Notice.h"

#include "tests/host/desktop/LibraryStage.h"

namespace desktop {
namespace {

const auto words = QStringLiteral("The sound output is mono: both films are heard in both ears");

class NoticeTest : public testing::Test {
 protected:
  QAccessibleInterface* told() { return there.accessible(words); }
  /// Before it would hide by itself.
  static bool comesSoon(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 5000); }

  LibraryStage there;
  Notice notice{there.layers, words};
};

TEST_F(NoticeTest, IsTold) {
  EXPECT_EQ(told(), nullptr);
  notice.show();
  ASSERT_NE(told(), nullptr);
  EXPECT_EQ(told()->role(), QAccessible::Notification);
}

TEST_F(NoticeTest, IsOneHoweverOftenItIsShown) {
  notice.show();
  notice.show();
  EXPECT_TRUE(notice.isShown());
  notice.hide();
  EXPECT_TRUE(comesSoon([this] { return !notice.isShown(); }));
}

TEST_F(NoticeTest, CanBeHidden) {
  notice.show();
  auto* const hide = there.accessible(QStringLiteral("Hide notice"));
  ASSERT_NE(hide, nullptr);
  hide->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(comesSoon([this] { return told() == nullptr; }));
}

}  // namespace
}  // namespace desktop
