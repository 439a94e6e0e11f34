#include "hosts/desktop/MailMessage.h"

#include <gmock/gmock.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace desktop {
namespace {

using testing::HasSubstr;
using testing::Not;

host::MailDraft helpDraft() {
  return {{"support@example.org"}, "", "<p>Help from Quillop ios.</p>", true};
}

/// `message` as another program reads it: the email package of Python.
QJsonObject readByPython(const std::string& message) {
  QProcess python;
  python.start("python3", {"-c", R"(
import email, email.policy, json, sys
message = email.message_from_bytes(sys.stdin.buffer.read(), policy=email.policy.default)
parts = {p.get_content_type(): p.get_content().replace('\r\n', '\n') for p in message.walk() if not p.is_multipart()}
defects = [str(d) for p in message.walk() for d in p.defects]
json.dump({"headers": {k: str(v) for k, v in message.items()}, "type": message.get_content_type(), "parts": parts,
           "order": ",".join(p.get_content_type() for p in message.walk()), "defects": " ".join(defects)}, sys.stdout)
)"});
  python.write(QByteArray::fromStdString(message));
  python.closeWriteChannel();
  EXPECT_TRUE(python.waitForFinished()) << "python3 is needed";
  const auto document = QJsonDocument::fromJson(python.readAllStandardOutput());
  EXPECT_TRUE(document.isObject()) << python.readAllStandardError().toStdString();
  return document.object();
}

std::string textOf(const QJsonObject& object, const char* first, const char* second) {
  return object[QLatin1String(first)].toObject()[QLatin1String(second)].toString().toStdString();
}

TEST(MailMessage, OfTheHelpMailByteForByte) {
  EXPECT_EQ(mailMessage(helpDraft()),
            "To: support@example.org\r\n"
            "X-Unsent: 1\r\n"
            "MIME-Version: 1.0\r\n"
            "Content-Type: multipart/alternative; boundary=\"=_quillop_alternatives\"\r\n"
            "\r\n"
            "--=_quillop_alternatives\r\n"
            "Content-Type: text/plain; charset=UTF-8\r\n"
            "Content-Transfer-Encoding: quoted-printable\r\n"
            "\r\n"
            "Help from Quillop ios.\r\n"
            "--=_quillop_alternatives\r\n"
            "Content-Type: text/html; charset=UTF-8\r\n"
            "Content-Transfer-Encoding: quoted-printable\r\n"
            "\r\n"
            "<p>Help from Quillop ios.</p>\r\n"
            "--=_quillop_alternatives--\r\n");
}

TEST(MailMessage, IsReadByAnotherProgramAsItWasWritten) {
  auto draft = helpDraft();
  draft.recipients.emplace_back("other@example.org");
  draft.subject = "Qualità: due film, uno a sinistra e uno a destra, e molte altre parole ancora — 二つの映画";
  draft.body = "<p>Perché a &lt; b?</p>\n<p>二つの映画 = \"film\" </p>\n.\nFrom here";
  const auto read = readByPython(mailMessage(draft));
  EXPECT_EQ(textOf(read, "headers", "To"), "support@example.org, other@example.org");
  EXPECT_EQ(textOf(read, "headers", "Subject"), draft.subject);
  EXPECT_EQ(textOf(read, "headers", "X-Unsent"), "1");
  EXPECT_EQ(read["order"].toString(), "multipart/alternative,text/plain,text/html");
  EXPECT_EQ(textOf(read, "parts", "text/html"), draft.body);
  EXPECT_THAT(textOf(read, "parts", "text/plain"), HasSubstr("Perché a < b?\n二つの映画 = \"film\""));
  EXPECT_EQ(read["defects"].toString(), "");
}

TEST(MailMessage, WithoutASubjectHasNoSubjectHeader) {
  EXPECT_THAT(mailMessage(helpDraft()), Not(HasSubstr("Subject")));
}

TEST(MailMessage, PlainBodyIsTheOnlyPart) {
  auto draft = helpDraft();
  draft.body = "1 < 2";
  draft.isHTML = false;
  const auto read = readByPython(mailMessage(draft));
  EXPECT_EQ(read["order"].toString(), "text/plain");
  EXPECT_EQ(textOf(read, "parts", "text/plain"), "1 < 2\n");
}

TEST(MailMessage, LineBreaksBeginNoNewHeader) {
  auto draft = helpDraft();
  draft.recipients = {"a@example.org\r\nBcc: b@example.org"};
  draft.subject = "x\r\nCc: c@example.org";
  const auto headers = readByPython(mailMessage(draft))["headers"].toObject();
  EXPECT_FALSE(headers.contains("Bcc"));
  EXPECT_FALSE(headers.contains("Cc"));
}

/// Lines as RFC 5322 and RFC 2045 allow them.
void expectSoundLines(const std::string& message) {
  const auto text = QByteArray::fromStdString(message);
  EXPECT_TRUE(text.endsWith("\r\n"));
  const auto lines = text.split('\n');
  for (qsizetype index = 0; index + 1 < lines.size(); ++index) {
    EXPECT_TRUE(lines[index].endsWith('\r')) << lines[index].toStdString();
    EXPECT_LE(lines[index].size(), 76 + 1) << lines[index].toStdString();
    EXPECT_EQ(lines[index].count('\r'), 1);
    for (const char character : lines[index].chopped(1)) {
      EXPECT_TRUE((character >= ' ' && character <= '~') || character == '\t') << lines[index].toStdString();
    }
  }
}

TEST(MailMessage, AnyBodyComesThrough) {
  const std::vector<std::string> pieces{
      " ",     "  ",  "\t", "=", "=3D", "é", "映", "\n", ".", "--", "<b>", "word", "--=_quillop_alternatives--",
      "From ", "\n\n"};
  std::mt19937 random(11);  // NOLINT: the same each time
  for (int time = 0; time < 4; ++time) {
    auto draft = helpDraft();
    draft.body.clear();
    for (int count = 0; count < 500; ++count) draft.body += pieces[random() % pieces.size()];
    const auto message = mailMessage(draft);
    expectSoundLines(message);
    EXPECT_EQ(textOf(readByPython(message), "parts", "text/html"), draft.body);
  }
}

/// How Thunderbird takes the argument of `-compose` apart: a value that begins with an apostrophe ends at the first
/// one that a comma, or nothing, follows.
std::map<std::string, std::string> takenApart(const std::string& argument) {
  std::map<std::string, std::string> fields;
  std::size_t start = 0;
  while (start < argument.size()) {
    const std::size_t equals = argument.find('=', start);
    const std::string name = argument.substr(start, equals - start);
    std::size_t end = equals + 1;
    const bool isQuoted = argument[end] == '\'';
    const auto isEnd = [&](std::size_t at) {
      if (at == argument.size()) return true;
      if (!isQuoted) return argument[at] == ',';
      return at > equals + 1 && argument[at] == '\'' && (at + 1 == argument.size() || argument[at + 1] == ',');
    };
    while (!isEnd(end)) ++end;
    const std::size_t first = equals + (isQuoted ? 2 : 1);
    fields[name] = argument.substr(first, end - first);
    start = end + (isQuoted ? 2 : 1);
  }
  return fields;
}

TEST(ComposeArgument, OfTheHelpMail) {
  EXPECT_EQ(composeArgument(helpDraft()), "to='support@example.org',format=1,body='<p>Help from Quillop ios.</p>'");
}

TEST(ComposeArgument, NoBodyEndsEarly) {
  auto draft = helpDraft();
  draft.recipients.emplace_back("o'neil@example.org");
  draft.subject = "the films', both, 'here'";
  draft.body = "<p class='a','b'>it's, 'so', to='x',body='y'</p>'";
  const auto fields = takenApart(composeArgument(draft));
  EXPECT_THAT(fields, testing::SizeIs(4));
  EXPECT_EQ(fields.at("to"), "support@example.org,o'neil@example.org");
  EXPECT_EQ(fields.at("subject"), "the films\u2019, both, 'here'");
  EXPECT_EQ(fields.at("format"), "1");
  EXPECT_EQ(fields.at("body"),
            "<p class=&#39;a&#39;,&#39;b&#39;>it&#39;s, &#39;so&#39;, to=&#39;x&#39;,body=&#39;y&#39;</p>&#39;");
}

TEST(ComposeArgument, PlainBodyStaysPlain) {
  auto draft = helpDraft();
  draft.body = "it's";
  draft.isHTML = false;
  EXPECT_EQ(composeArgument(draft), "to='support@example.org',format=2,body='it's'");
}

}  // namespace
}  // namespace desktop
