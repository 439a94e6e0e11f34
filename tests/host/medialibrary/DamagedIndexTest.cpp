#include "hosts/medialibrary/Database.h"
#include "hosts/medialibrary/Index.h"
#include "tests/host/medialibrary/ChildProcess.h"
#include "tests/host/medialibrary/IndexFixture.h"

#include <sys/stat.h>

#include <random>

namespace {

namespace fs = std::filesystem;

using medialibrary::Database;

std::string randomBytes(std::size_t count) {
  std::mt19937 generator(1);
  std::string bytes(count, '\0');
  for (char& each : bytes) each = static_cast<char>(generator() & 0xFFU);
  return bytes;
}

/// An index with some films in it that was closed.
class DamagedIndex : public IndexTest {
 protected:
  DamagedIndex() {
    const auto index = open();
    index->begin();
    for (int i = 0; i < 500; ++i) {
      addFilm(*index, videoFile("/f/" + std::to_string(i) + ".mp4", static_cast<ino_t>(i)));
    }
    index->commit();
  }

  void overwrite(const std::string& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }
  void run(const std::string& statements) const {
    Database database(path_, Database::Purpose::Writing);
    database.writeLogBackAtTheEnd();
    database.run(statements);
  }

  void expectUntouched() {
    EXPECT_EQ(open()->items(homeVideo)->count(), 500U);
    EXPECT_FALSE(fs::exists(aside_));
  }

  /// Opens it, and expects it to be empty, to be as good as any other, and the file as it was beside it.
  void expectSetAside() {
    const std::string before = contentsOf(path_);
    {
      const auto index = open();
      EXPECT_EQ(index->items(homeVideo)->count(), 0U);
      EXPECT_TRUE(index->folders().empty());
      EXPECT_TRUE(contentsOf(aside_) == before);
      addFilm(*index, videoFile("/f/new.mp4", 1), "New");
    }
    EXPECT_EQ(titlesOf(*open()), std::vector<std::string>({"New"}));
    EXPECT_TRUE(contentsOf(aside_) == before);
  }

  std::string aside_ = path_ + ".damaged";
};

TEST_F(DamagedIndex, IsNoneWhereNothingIsWrong) {
  expectUntouched();
}

TEST_F(DamagedIndex, OfRandomBytesIsSetAside) {
  overwrite(randomBytes(100'000));
  EXPECT_THROW(openForReading(), medialibrary::IndexError);
  expectSetAside();
}

TEST_F(DamagedIndex, OfAFewBytesIsSetAside) {
  overwrite("x");
  expectSetAside();
}

TEST_F(DamagedIndex, ThatWasCutIsSetAside) {
  fs::resize_file(path_, fs::file_size(path_) / 2);
  expectSetAside();
}

TEST_F(DamagedIndex, ThatWasCutInTheMiddleOfAPageIsSetAside) {
  fs::resize_file(path_, fs::file_size(path_) - 1'000);
  expectSetAside();
}

TEST_F(DamagedIndex, WithFlippedPagesIsSetAside) {
  std::string bytes = contentsOf(path_);
  const std::size_t middle = bytes.size() / 2 / 4'096 * 4'096;
  for (std::size_t i = middle; i < middle + 4 * std::size_t{4'096}; ++i) bytes[i] = static_cast<char>(~bytes[i]);
  overwrite(bytes);
  expectSetAside();
}

TEST_F(DamagedIndex, WithZerosInTheMiddleIsSetAside) {
  std::string bytes = contentsOf(path_);
  bytes.replace(bytes.size() / 2, 20'000, 20'000, '\0');
  overwrite(bytes);
  expectSetAside();
}

TEST_F(DamagedIndex, WithoutATableIsSetAside) {
  run("DROP TABLE file");
  EXPECT_THROW(openForReading()->items(homeVideo), medialibrary::IndexError);
  expectSetAside();
}

TEST_F(DamagedIndex, FromANewerVersionIsSetAside) {
  run("PRAGMA user_version = 1000; CREATE TABLE novelty (x)");
  EXPECT_EQ(openForReading(), nullptr);
  expectSetAside();
}

TEST_F(DamagedIndex, OfAnotherProgramIsSetAside) {
  run("PRAGMA application_id = 1");
  EXPECT_EQ(openForReading(), nullptr);
  expectSetAside();
}

TEST_F(DamagedIndex, WithoutAVersionIsSetAside) {
  run("PRAGMA application_id = 0; PRAGMA user_version = 0");
  expectSetAside();
}

TEST_F(DamagedIndex, ThatIsEmptyIsFilledAnew) {
  overwrite("");
  EXPECT_EQ(open()->items(homeVideo)->count(), 0U);
  EXPECT_FALSE(fs::exists(aside_)) << "there is nothing to keep";
}

TEST_F(DamagedIndex, TakesWhatBelongsToItAlong) {
  fs::create_directories(fs::path(aside_).parent_path());
  std::ofstream(aside_) << "older";
  std::ofstream(aside_ + "-journal") << "older";
  overwrite(randomBytes(10'000));
  const std::string log = randomBytes(5'000);
  std::ofstream(path_ + "-wal", std::ios::binary) << log;
  std::ofstream(path_ + "-shm", std::ios::binary) << log;
  expectSetAside();
  EXPECT_TRUE(contentsOf(aside_ + "-wal") == log);
  EXPECT_TRUE(fs::exists(aside_ + "-shm"));
  EXPECT_FALSE(fs::exists(aside_ + "-journal")) << "belonged to another one";
}

TEST_F(DamagedIndex, DoesNotDisturbWhoStillReadsIt) {
  const auto reader = openForReading();
  EXPECT_EQ(reader->items(homeVideo)->count(), 500U);
  run("PRAGMA user_version = 1000");
  const auto index = open();
  EXPECT_TRUE(fs::exists(aside_));
  addFilm(*index, videoFile("/f/new.mp4", 1), "New");
  EXPECT_EQ(reader->items(homeVideo)->count(), 500U);
  EXPECT_EQ(titlesOf(*openForReading()), std::vector<std::string>({"New"}));
}

/// What is told of an index that can neither be used nor be set aside.
std::string complaintOf(const std::function<void()>& attempt) {
  try {
    attempt();
  } catch (const medialibrary::IndexError& error) {
    return std::string(error.isDamaged() ? "damaged: " : "") + error.what();
  }
  return "none";
}

TEST_F(DamagedIndex, ThatCannotBeSetAsideIsAClearError) {
  overwrite(randomBytes(10'000));
  fs::create_directories(aside_ + "/inside");
  EXPECT_EQ(complaintOf([this] { open(); }), path_ + " cannot be set aside: Is a directory");
}

TEST_F(DamagedIndex, ThatIsAFolderIsAClearError) {
  fs::remove(path_);
  fs::create_directories(path_);
  EXPECT_EQ(complaintOf([this] { open(); }), path_ + ": not a regular file");
  EXPECT_EQ(complaintOf([this] { openForReading(); }), path_ + ": not a regular file");
}

TEST_F(DamagedIndex, ThatIsNoRegularFileIsAClearError) {
  fs::remove(path_);
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  EXPECT_EQ(complaintOf([this] { open(); }), path_ + ": not a regular file");
}

TEST_F(DamagedIndex, InAFolderThatCannotBeMadeIsAClearError) {
  path_ = folder_.write("file", "") + "/inside/library.db";
  EXPECT_EQ(complaintOf([this] { open(); }), path_ + ": unable to open database file");
  EXPECT_EQ(openForReading(), nullptr);
}

TEST_F(DamagedIndex, ThatMustNotBeReadOrWrittenIsAClearError) {
  fs::permissions(path_, fs::perms::none);
  fs::permissions(fs::path(path_).parent_path(), fs::perms(0755));
  fs::permissions(folder_ / "data", fs::perms(0755));
  const auto attempt = [this](const ChildProcess::Say& say) {
    constexpr uid_t nobody = 65'534;
    if (geteuid() == 0 && setuid(nobody) != 0) return;  // whom no permission stops
    const std::string said = complaintOf([this] { open(); }) + "; " + complaintOf([this] { openForReading(); });
    for (const char each : said) say(each);
  };
  const std::string cannotOpen = path_ + ": unable to open database file";
  EXPECT_EQ(ChildProcess(attempt).rest(), cannotOpen + "; " + cannotOpen);
  if (geteuid() == 0) {
    fs::permissions(path_, fs::perms(0444));
    const std::string cannotWrite = path_ + ": attempt to write a readonly database";
    EXPECT_EQ(ChildProcess(attempt).rest(), cannotWrite + "; " + cannotWrite);
  }
  fs::permissions(path_, fs::perms(0600));
  expectUntouched();
}

}  // namespace
