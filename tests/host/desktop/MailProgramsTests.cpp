#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <array>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr int patience = 10000;  // milliseconds

/// A user with a home of their own, in which a test installs mail programs the way packages and users do.
class MailProgramsTest : public testing::Test {
 protected:
  MailProgramsTest() {
    for (const auto* name : {"data/applications", "config", "cache", "runtime", "bin"})
      QDir(home.path()).mkpath(name);
    mkfifo(records.toUtf8().constData(), S_IRUSR | S_IWUSR);
    // Open for writing too, so that reading does not end when a mail program has written its share.
    recordsFile = open(records.toUtf8().constData(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
  }
  ~MailProgramsTest() override { close(recordsFile); }

  void write(const QString& name, const QString& text, bool executable = false) const {
    QFile file(home.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
    if (executable) file.setPermissions(file.permissions() | QFile::ExeOwner | QFile::ExeUser);
  }

  /// A mail program that only tells what it was given: each argument, and the session it runs in.
  QString installBinary(const QString& name) const {
    write("bin/" + name, "#!/bin/sh\n{ printf '%s\\n' \"$@\"; echo END; } > '" + records + "'\n", true);
    return home.filePath("bin/" + name);
  }
  void installEntry(const QString& id, const QString& exec, const QString& types, const QString& more = {}) const {
    write("data/applications/" + id, "[Desktop Entry]\nType=Application\nName=" + id + "\nExec=" + exec +
                                         "\nMimeType=" + types + "\n" + more + "\n");
  }
  void makeDefault(const QString& lines) const { write("config/mimeapps.list", "[Default Applications]\n" + lines); }
  void installDefault(const QString& id, const QString& exec, const QString& types, const QString& more = {}) const {
    installEntry(id, exec, types, more);
    makeDefault("x-scheme-handler/mailto=" + id + "\n");
  }

  /// What the app finds and does.
  QStringList compose() const {
    QProcess tool;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home.path());
    environment.insert("XDG_DATA_HOME", home.filePath("data"));
    environment.insert("XDG_DATA_DIRS", home.filePath("nothing"));
    environment.insert("XDG_CONFIG_HOME", home.filePath("config"));
    environment.insert("XDG_CONFIG_DIRS", home.filePath("nothing"));
    environment.insert("XDG_CACHE_HOME", home.filePath("cache"));
    environment.insert("XDG_RUNTIME_DIR", home.filePath("runtime"));
    environment.remove("XDG_CURRENT_DESKTOP");
    tool.setProcessEnvironment(environment);
    tool.start(QUILLOP_MAIL_TOOL, {drafts});
    EXPECT_TRUE(tool.waitForFinished(patience));
    return QString::fromUtf8(tool.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
  }

  /// What the mail program was given.
  QStringList given() const {
    QByteArray record;
    while (!record.endsWith("END\n")) {
      pollfd waiting{recordsFile, POLLIN, 0};
      if (poll(&waiting, 1, patience) != 1) break;
      std::array<char, 4096> buffer{};
      const ssize_t count = read(recordsFile, buffer.data(), buffer.size());
      if (count > 0) record.append(buffer.data(), count);
    }
    EXPECT_TRUE(record.endsWith("END\n")) << "the mail program was not started";
    return QString::fromUtf8(record).split('\n', Qt::SkipEmptyParts).mid(0, record.count('\n') - 1);
  }

  const QTemporaryDir home;
  QString drafts = home.filePath("runtime/drafts");
  const QString records = home.filePath("records");
  int recordsFile = -1;
};

const QStringList handedOver{"can compose", "handed over"};
const QStringList refused{"cannot compose", "not handed over"};
constexpr auto mailOnly = "x-scheme-handler/mailto;";
constexpr auto mailAndMessages = "x-scheme-handler/mailto;message/rfc822;";

TEST_F(MailProgramsTest, DraftIsOpenedByTheDefaultMailProgram) {
  installDefault("mailer.desktop", installBinary("mailer") + " --open %f", mailAndMessages);
  EXPECT_EQ(compose(), handedOver);
  const auto arguments = given();
  ASSERT_EQ(arguments.size(), 2);
  EXPECT_EQ(arguments[0], "--open");
  EXPECT_THAT(arguments[1].toStdString(), StartsWith(drafts.toStdString() + "/draft-"));
  EXPECT_THAT(arguments[1].toStdString(), EndsWith(".eml"));
  QFile draft(arguments[1]);
  ASSERT_TRUE(draft.open(QIODevice::ReadOnly));
  EXPECT_THAT(draft.readAll().toStdString(), HasSubstr("X-Unsent: 1\r\n"));
}

TEST_F(MailProgramsTest, DraftIsForNobodyElseAndGoneAtTheNextStart) {
  installDefault("mailer.desktop", installBinary("mailer") + " %f", mailAndMessages);
  compose();
  const QString first = given().value(0);
  struct stat status {};
  ASSERT_EQ(stat(first.toUtf8().constData(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  ASSERT_EQ(stat(drafts.toUtf8().constData(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
  compose();
  EXPECT_NE(given().value(0), QString());
  EXPECT_FALSE(QFile::exists(first));
  EXPECT_EQ(QDir(drafts).entryList(QDir::Files).size(), 1);
}

TEST_F(MailProgramsTest, WithoutAMailProgramThereIsNoComposing) {
  EXPECT_EQ(compose(), refused);
}

TEST_F(MailProgramsTest, AProgramThatTakesNoHtmlIsNone) {
  installDefault("plain.desktop", installBinary("plain") + " %u", mailOnly);
  EXPECT_EQ(compose(), refused);
}

TEST_F(MailProgramsTest, AProgramThatOnlyShowsMessagesIsNone) {
  installEntry("viewer.desktop", installBinary("viewer") + " %f", "message/rfc822;");
  installEntry("browser.desktop", installBinary("browser") + " %u", mailOnly);
  makeDefault("x-scheme-handler/mailto=browser.desktop\nmessage/rfc822=viewer.desktop\n");
  EXPECT_EQ(compose(), refused);
}

TEST_F(MailProgramsTest, BesideAWebMailerTheMailProgramForMessagesWillDo) {
  installEntry("mailer.desktop", installBinary("mailer") + " %f", mailAndMessages);
  installEntry("browser.desktop", installBinary("browser") + " %u", mailOnly);
  makeDefault("x-scheme-handler/mailto=browser.desktop\nmessage/rfc822=mailer.desktop\n");
  EXPECT_EQ(compose(), handedOver);
  EXPECT_THAT(given().value(0).toStdString(), EndsWith(".eml"));
}

TEST_F(MailProgramsTest, TheUsersChoiceCountsAndNotTheOrderOfInstallation) {
  installEntry("a.desktop", installBinary("a") + " first %f", mailAndMessages);
  installEntry("b.desktop", installBinary("b") + " second %f", mailAndMessages);
  for (const auto* chosen : {"a", "b"}) {
    makeDefault(QStringLiteral("x-scheme-handler/mailto=%1.desktop\n").arg(chosen));
    EXPECT_EQ(compose(), handedOver);
    EXPECT_EQ(given().value(0), QLatin1String(chosen) == QLatin1String("a") ? "first" : "second");
  }
}

TEST_F(MailProgramsTest, ThunderbirdIsAskedThroughItsOwnOption) {
  installDefault("thunderbird.desktop", installBinary("thunderbird") + " %u", mailAndMessages);
  EXPECT_EQ(compose(), handedOver);
  EXPECT_EQ(given(),
            (QStringList{"-compose", "to='support@example.org',format=1,body='<p>Help from Quillop ios.</p>'"}));
  EXPECT_FALSE(QDir(drafts).exists() && !QDir(drafts).isEmpty());
}

TEST_F(MailProgramsTest, ThunderbirdIsKnownByItsEntryOrItsBinary) {
  installDefault("org.mozilla.Thunderbird.desktop", installBinary("sandbox") + " run --file-forwarding x @@u %u @@",
                 mailOnly);
  EXPECT_EQ(compose(), handedOver);
  EXPECT_EQ(given().mid(0, 3), (QStringList{"run", "x", "-compose"}));
  installDefault("userapp-Mail-1.desktop", installBinary("thunderbird-esr") + " -compose %u", mailOnly);
  EXPECT_EQ(compose(), handedOver);
  const auto arguments = given();
  EXPECT_EQ(arguments.size(), 2);
  EXPECT_EQ(arguments.value(0), "-compose");
}

TEST_F(MailProgramsTest, AProgramForTheTerminalIsNotUsed) {
  installDefault("terminal.desktop", installBinary("terminal") + " %f", mailAndMessages, "Terminal=true");
  EXPECT_EQ(compose(), refused);
}

TEST_F(MailProgramsTest, AProgramThatIsNotInstalledAnyMoreIsNone) {
  installDefault("gone.desktop", home.filePath("bin/gone") + " %f", mailAndMessages);
  EXPECT_EQ(compose(), refused);
}

TEST_F(MailProgramsTest, AProgramThatCannotBeStartedTakesNothingAndLeavesNothing) {
  write("bin/broken", "#!/no/such/interpreter\n", true);
  installDefault("broken.desktop", home.filePath("bin/broken") + " %f", mailAndMessages);
  EXPECT_EQ(compose(), (QStringList{"can compose", "not handed over"}));
  EXPECT_TRUE(QDir(drafts).isEmpty());
}

TEST_F(MailProgramsTest, WhereNoDraftCanBeWrittenNothingIsStarted) {
  installDefault("mailer.desktop", installBinary("mailer") + " %f", mailAndMessages);
  drafts = "/proc/no/drafts";
  EXPECT_EQ(compose(), (QStringList{"can compose", "not handed over"}));
}

TEST_F(MailProgramsTest, TheMailProgramOutlivesTheApp) {
  // It tells only once the app has ended: `compose` returns when it has, and only then is this file there.
  write("bin/slow",
        "#!/bin/sh\nread line < '" + home.filePath("go") +
            "'\n{ echo $line; ps -o sid= $$; echo $$; echo END; } > '" + records + "'\n",
        true);
  mkfifo(home.filePath("go").toUtf8().constData(), S_IRUSR | S_IWUSR);
  installDefault("slow.desktop", home.filePath("bin/slow") + " %f", mailAndMessages);
  EXPECT_EQ(compose(), handedOver);
  QFile go(home.filePath("go"));
  ASSERT_TRUE(go.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
  go.write("still here\n");
  const auto said = given();
  EXPECT_EQ(said.value(0), "still here");
  EXPECT_EQ(said.value(1).trimmed(), said.value(2)) << "it is in a session of its own";
}

}  // namespace
}  // namespace desktop
