#include "hosts/desktop/DefaultsFile.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace desktop {
namespace {

using Value = host::Defaults::Value;
using testing::Eq;
using testing::Optional;

class DefaultsFileTest : public testing::Test {
 protected:
  void write(const QByteArray& contents) const {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(contents);
  }
  QByteArray contentsOf(const QString& name) const {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
  }

  QTemporaryDir folder;
  QString path = folder.filePath(QStringLiteral("defaults.json"));
};

TEST_F(DefaultsFileTest, ValuesAreOnDiskAtOnceAndReadBackByTheNextRun) {
  DefaultsFile first(path);
  first.setValue("primoAvvio", std::string("2"));
  first.setValue("number", 2.5);
  const DefaultsFile second(path);
  EXPECT_THAT(second.value("primoAvvio"), Optional(Eq(Value(std::string("2")))));
  EXPECT_THAT(second.value("number"), Optional(Eq(Value(2.5))));
  EXPECT_EQ(second.value("other"), std::nullopt);
}

TEST_F(DefaultsFileTest, RemovedValueIsGone) {
  DefaultsFile first(path);
  first.setValue("key", std::string("à \"quoted\"\n"));
  EXPECT_THAT(DefaultsFile(path).value("key"), Optional(Eq(Value(std::string("à \"quoted\"\n")))));
  first.setValue("key", std::nullopt);
  EXPECT_EQ(DefaultsFile(path).value("key"), std::nullopt);
}

TEST_F(DefaultsFileTest, DamagedFileIsSetAsideAndTheDefaultsStartEmpty) {
  for (const QByteArray& damage :
       {QByteArray("{\"a\": "), QByteArray("[1]"), QByteArray("\0\1\2", 3), QByteArray()}) {
    write(damage);
    DefaultsFile defaults(path);
    EXPECT_EQ(defaults.value("a"), std::nullopt);
    EXPECT_EQ(contentsOf(path + QStringLiteral(".damaged")), damage);
    defaults.setValue("a", 1.0);
    EXPECT_THAT(DefaultsFile(path).value("a"), Optional(Eq(Value(1.0))));
  }
}

TEST_F(DefaultsFileTest, ValuesOfOtherTypesAreNotTaken) {
  write("{\"list\": [1], \"text\": \"x\"}");
  const DefaultsFile defaults(path);
  EXPECT_EQ(defaults.value("list"), std::nullopt);
  EXPECT_THAT(defaults.value("text"), Optional(Eq(Value(std::string("x")))));
}

TEST_F(DefaultsFileTest, FileThatCannotBeWrittenKeepsTheValueForThisRun) {
  DefaultsFile defaults(folder.filePath(QStringLiteral("no/such/folder/defaults.json")));
  defaults.setValue("key", std::string("2"));
  EXPECT_THAT(defaults.value("key"), Optional(Eq(Value(std::string("2")))));
}

TEST_F(DefaultsFileTest, NoTemporaryFileIsLeftBehind) {
  DefaultsFile defaults(path);
  for (int i = 0; i < 10; ++i) defaults.setValue("key", static_cast<double>(i));
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("defaults.json")});
}

}  // namespace
}  // namespace desktop
