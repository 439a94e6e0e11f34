#include "platform/mediaplayer/MPMediaLibrary.h"

#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

using host::LibraryAccess;
using testing::ElementsAre;
using Status = MPMediaLibraryAuthorizationStatus;

namespace {

class MPMediaLibraryTest : public BarePlatform {};

TEST_F(MPMediaLibraryTest, TellsTheStatusAsItIsNow) {
  const std::vector<std::pair<LibraryAccess, Status>> pairs = {
      {LibraryAccess::NotDetermined, Status::NotDetermined},
      {LibraryAccess::Denied, Status::Denied},
      {LibraryAccess::Restricted, Status::Restricted},
      {LibraryAccess::Authorised, Status::Authorized},
  };
  for (const auto& [access, status] : pairs) {
    host.mediaLibrary.currentAccess = access;
    EXPECT_EQ(MPMediaLibrary::authorizationStatus(), status);
  }
}

TEST_F(MPMediaLibraryTest, StatusesHaveTheirFrameworksNumbers) {
  EXPECT_EQ(static_cast<int>(Status::NotDetermined), 0);
  EXPECT_EQ(static_cast<int>(Status::Denied), 1);
  EXPECT_EQ(static_cast<int>(Status::Restricted), 2);
  EXPECT_EQ(static_cast<int>(Status::Authorized), 3);
}

TEST_F(MPMediaLibraryTest, ARequestIsAnsweredLaterAndNeverFromWithinIt) {
  std::vector<Status> answers;
  event([&] {
    MPMediaLibrary::requestAuthorization([&](Status status) { answers.push_back(status); });
    EXPECT_THAT(answers, ElementsAre());
  });
  EXPECT_THAT(answers, ElementsAre());
  host.mediaLibrary.answerRequests(LibraryAccess::Denied);
  EXPECT_THAT(answers, ElementsAre(Status::Denied));
}

TEST_F(MPMediaLibraryTest, EachRequestIsAnsweredOnceWithTheStatusThatHoldsThen) {
  std::vector<Status> answers;
  for (int i = 0; i < 2; ++i) {
    MPMediaLibrary::requestAuthorization([&](Status status) { answers.push_back(status); });
  }
  host.mediaLibrary.answerRequests(LibraryAccess::Authorised);
  host.mediaLibrary.answerRequests(LibraryAccess::Denied);
  EXPECT_THAT(answers, ElementsAre(Status::Authorized, Status::Authorized));
}

}  // namespace
