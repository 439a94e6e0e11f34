#include "hosts/desktop/LaunchRequests.h"

#include "tests/host/desktop/PrivateBus.h"

#include <gmock/gmock.h>

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <memory>
#include <vector>

namespace desktop {
namespace {

using Wish = LaunchRequest::Wish;

class LaunchRequestsTest : public testing::Test {
 protected:
  LaunchRequestsTest() {
    QObject::connect(requests.get(), &LaunchRequests::asked,
                     [this](const auto& request) { asked.push_back(request); });
  }

  /// What the launcher is answered, once it is.
  QDBusMessage answerTo(const QString& method, const QVariantList& arguments) {
    auto call = QDBusMessage::createMethodCall("example.quillop.Some-App", "/example/quillop/Some_App",
                                               "org.freedesktop.Application", method);
    call.setArguments(arguments);
    QDBusPendingCallWatcher watcher(launcher.asyncCall(call));
    runUntil([&] { return watcher.isFinished(); });
    return watcher.reply();
  }

  PrivateBus bus;
  QDBusConnection app = bus.connection("app");
  QDBusConnection launcher = bus.connection("launcher");
  std::vector<LaunchRequest> asked;
  std::unique_ptr<LaunchRequests> requests = std::make_unique<LaunchRequests>(app, "example.quillop.Some-App");
};

TEST_F(LaunchRequestsTest, AStartBringsTheAppForward) {
  const auto answer = answerTo("Activate", {QVariantMap()});
  EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(asked[0].wish, Wish::ComeForward);
  EXPECT_EQ(asked[0].activationToken, "");
}

TEST_F(LaunchRequestsTest, TheActionOpensTheSettingsWithTheLaunchersToken) {
  const QVariantMap platformData{{"desktop-startup-id", "other"}, {"activation-token", "token 7"}};
  const auto answer = answerTo("ActivateAction", {"settings", QVariantList(), platformData});
  EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(asked[0].wish, Wish::OpenSettings);
  EXPECT_EQ(asked[0].activationToken, "token 7");
}

TEST_F(LaunchRequestsTest, AnUnknownActionIsRefused) {
  const auto answer = answerTo("ActivateAction", {"no-such-action", QVariantList(), QVariantMap()});
  EXPECT_EQ(answer.type(), QDBusMessage::ErrorMessage);
  EXPECT_TRUE(asked.empty());
}

TEST_F(LaunchRequestsTest, TheNameIsFreeAgainAfterwards) {
  const auto* const names = launcher.interface();
  EXPECT_TRUE(names->isServiceRegistered("example.quillop.Some-App"));
  requests.reset();
  EXPECT_FALSE(names->isServiceRegistered("example.quillop.Some-App"));
}

}  // namespace
}  // namespace desktop
