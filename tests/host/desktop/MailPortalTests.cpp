#include "hosts/desktop/MailPortal.h"

#include "tests/host/desktop/PrivateBus.h"
#include "tests/host/desktop/StandInServices.h"

#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <utility>

namespace desktop {
namespace {

const host::MailDraft helpDraft{{"support@example.org"}, "", "<p>Help &amp; more</p>", true};

/// Posts to Qt's main loop, without an app.
class BareLoop final : public host::MainLoop {
 public:
  double now() const override { return 0.0; }
  void wakeAt(double /*time*/) override {}
  void post(std::function<void()> work) override {
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(work), Qt::QueuedConnection);
  }
};

class MailPortalTest : public testing::Test {
 protected:
  /// Whether the draft was handed over, once that is known.
  bool compose(const host::MailDraft& draft) {
    std::optional<bool> handedOver;
    mail.compose(draft, [&](bool isHandedOver) { handedOver = isHandedOver; });
    EXPECT_EQ(handedOver, std::nullopt) << "not before a later turn";
    runUntil([&] { return handedOver.has_value(); });
    return handedOver.value_or(false);
  }

  PrivateBus bus;
  QDBusConnection services = bus.connection("services");
  BareLoop mainLoop;
  MailPortal mail{mainLoop, bus.address()};
};

TEST_F(MailPortalTest, HandsTheDraftOverAsPlainText) {
  const StandInMailPortal portal(services);
  EXPECT_TRUE(mail.canCompose());
  EXPECT_TRUE(compose(helpDraft));
  ASSERT_EQ(portal.drafts.size(), 1U);
  EXPECT_EQ(portal.drafts[0].value("addresses").toStringList(), QStringList("support@example.org"));
  EXPECT_EQ(portal.drafts[0].value("body").toString(), "Help & more");
}

TEST_F(MailPortalTest, TellsWhereNoPortalTakesIt) {
  EXPECT_FALSE(compose(helpDraft));
}

TEST_F(MailPortalTest, AsksAgainForAnotherDraft) {
  const StandInMailPortal portal(services);
  EXPECT_TRUE(compose(helpDraft));
  EXPECT_TRUE(compose({{"a@example.org", "b@example.org"}, "Ear", "Text & <more>", false}));
  ASSERT_EQ(portal.drafts.size(), 2U);
  EXPECT_EQ(portal.drafts[1].value("subject").toString(), "Ear");
  EXPECT_EQ(portal.drafts[1].value("body").toString(), "Text & <more>");
}

TEST(MailPortal, CannotComposeWithoutABus) {
  BareLoop mainLoop;
  EXPECT_FALSE(MailPortal(mainLoop, {}).canCompose());
}

}  // namespace
}  // namespace desktop
