#include "hosts/desktop/DesktopEntry.h"

#include <gmock/gmock.h>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto file = "/run/a b/draft.eml";

TEST(DesktopEntry, EachFieldCodeForFilesBecomesTheFile) {
  EXPECT_THAT(commandToOpen("mailer --open %f", file), ElementsAre("mailer", "--open", file));
  EXPECT_THAT(commandToOpen("mailer %F", file), ElementsAre("mailer", file));
  EXPECT_THAT(commandToOpen("mailer %u", file), ElementsAre("mailer", "file:///run/a%20b/draft.eml"));
  EXPECT_THAT(commandToOpen("mailer --url=%U", file), ElementsAre("mailer", "--url=file:///run/a%20b/draft.eml"));
}

TEST(DesktopEntry, OtherFieldCodesAreLeftOut) {
  EXPECT_THAT(commandToOpen("mailer %i %c %k -x %d%f", file), ElementsAre("mailer", "-x", file));
}

TEST(DesktopEntry, QuotesAndPercentSignsAreTakenOff) {
  EXPECT_THAT(commandToOpen(R"("/opt/my mailer/run" --rate "100%%" --say "a \"b\" \\ \$c" "" %f)", file),
              ElementsAre("/opt/my mailer/run", "--rate", "100%", "--say", R"(a "b" \ $c)", "", file));
}

TEST(DesktopEntry, SandboxIsToldWhichFileToLetIn) {
  const auto* const line = "flatpak run --file-forwarding org.example.Mailer @@u %u @@";
  EXPECT_THAT(commandToOpen(line, file), ElementsAre("flatpak", "run", "--file-forwarding", "org.example.Mailer",
                                                     "@@u", "file:///run/a%20b/draft.eml", "@@"));
  EXPECT_THAT(commandToStart(line), ElementsAre("flatpak", "run", "org.example.Mailer"));
}

TEST(DesktopEntry, WithoutAFileTheFieldCodesGo) {
  EXPECT_THAT(commandToStart("mailer --name x %u"), ElementsAre("mailer", "--name", "x"));
}

TEST(DesktopEntry, ALineThatCannotBeUnderstoodIsNoCommand) {
  EXPECT_THAT(commandToOpen("mailer \"%f", file), IsEmpty());
  EXPECT_THAT(commandToOpen("", file), IsEmpty());
}

}  // namespace
}  // namespace desktop
