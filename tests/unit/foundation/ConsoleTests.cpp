#include "platform/foundation/Console.h"

#include "platform/foundation/Required.h"
#include "platform/foundation/Values.h"
#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class ConsoleTest : public BarePlatform {};

TEST_F(ConsoleTest, PrintsEachLineAtOnceAndAsItIs) {
  print("1     la vista non è stata rimossa");
  EXPECT_THAT(takeLines(), ElementsAre("1     la vista non è stata rimossa"));
  print("");
  EXPECT_THAT(takeLines(), ElementsAre(""));
}

TEST(ConsoleDeathTest, AFatalErrorSaysWhyAndAborts) {
  EXPECT_EXIT(fatalError("nothing left"), testing::KilledBySignal(SIGABRT), "^Fatal error: nothing left\n$");
}

TEST(Required, GivesTheObject) {
  const auto text = make<NSString>("here");
  EXPECT_EQ(&required(text, "text"), text.get());
}

TEST(RequiredDeathTest, NamesWhatIsMissing) {
  EXPECT_DEATH(required(Strong<NSString>(), "timerVideo1"), "missing: timerVideo1");
}

}  // namespace
