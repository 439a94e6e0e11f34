#include "hosts/desktop/ProgramStart.h"

#include "tests/support/EnvironmentVariable.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstdlib>

namespace desktop {
namespace {

using testing::Contains;
using testing::Not;
using testing::StartsWith;

/// The environment that a program is started in, one variable a line.
std::vector<std::string> environmentOfAProgram() {
  const QTemporaryDir folder;
  const std::string path = folder.filePath("environment").toStdString();
  if (!startProgram({"sh", "-c", "env > \"$0.unfinished\"; mv \"$0.unfinished\" \"$0\"", path})) return {};
  QFile file(QString::fromStdString(path));
  if (!QTest::qWaitFor([&] { return file.exists(); }, 10000) || !file.open(QIODevice::ReadOnly)) return {};
  std::vector<std::string> lines;
  while (!file.atEnd()) lines.push_back(file.readLine().trimmed().toStdString());
  return lines;
}

TEST(ProgramStart, GivesTheUsersEnvironment) {
  const EnvironmentVariable theirs("QUILLOP_TEST_OF_THE_USER", "theirs");
  EXPECT_THAT(environmentOfAProgram(), Contains("QUILLOP_TEST_OF_THE_USER=theirs"));
}

TEST(ProgramStart, KeepsTheProcessesOwnVariablesToItself) {
  setForThisProcess("QUILLOP_TEST_OWN", "ours");
  EXPECT_STREQ(std::getenv("QUILLOP_TEST_OWN"), "ours");
  const auto environment = environmentOfAProgram();
  EXPECT_THAT(environment, Contains(StartsWith("PATH=")));
  EXPECT_THAT(environment, Not(Contains(StartsWith("QUILLOP_TEST_OWN="))));
}

TEST(ProgramStart, LeavesAVariableOfTheUsersAsItIs) {
  const EnvironmentVariable theirs("QUILLOP_TEST_BOTH", "theirs");
  setForThisProcess("QUILLOP_TEST_BOTH", "ours");
  EXPECT_STREQ(std::getenv("QUILLOP_TEST_BOTH"), "theirs");
  EXPECT_THAT(environmentOfAProgram(), Contains("QUILLOP_TEST_BOTH=theirs"));
}

TEST(ProgramStart, KeepsWhatWasForItsOwnStartToItself) {
  const EnvironmentVariable wayland("XDG_ACTIVATION_TOKEN", "used");
  const EnvironmentVariable x11("DESKTOP_STARTUP_ID", "used");
  const auto environment = environmentOfAProgram();
  EXPECT_THAT(environment, Contains(StartsWith("PATH=")));
  EXPECT_THAT(environment, Not(Contains(StartsWith("XDG_ACTIVATION_TOKEN="))));
  EXPECT_THAT(environment, Not(Contains(StartsWith("DESKTOP_STARTUP_ID="))));
}

TEST(ProgramStart, TellsOfAProgramThatIsNotThere) {
  EXPECT_FALSE(startProgram({"/nowhere/quillop-no-such-program"}));
  EXPECT_FALSE(startProgram({}));
}

}  // namespace
}  // namespace desktop
