#include "hosts/medialibrary/Database.h"
#include "tests/host/medialibrary/LibraryFixture.h"
#include "tests/support/OwnMounts.h"

#include <sys/mount.h>

#include <fstream>

namespace {

namespace fs = std::filesystem;

class DamagedLibrary : public LibraryFixture {
 protected:
  void TearDown() override { unmount(); }

  std::string index() const { return system_ / "data/library.db"; }

  void run(const std::string& statements) const {
    medialibrary::Database(index(), medialibrary::Database::Purpose::Writing).run(statements);
  }

  /// Does damage that no check finds when the index is opened, but whoever removes a file from it.
  void emptyAnIndexOfTheDatabase() const {
    run("PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = sql || ' WHERE 0' WHERE name = 'file_state'");
    run("REINDEX file_state");
    run("PRAGMA writable_schema = ON; "
        "UPDATE sqlite_schema SET sql = replace(sql, ' WHERE 0', '') WHERE name = 'file_state'");
  }

  bool comesToList(const Texts& expected) {
    return comesToPass([&] { return titlesOf(*library_->items(homeVideo)) == expected; });
  }

  /// Has the index on a disk of its own, where this process may mount one.
  bool mountSmallDisk() {
    fs::create_directories(disk());
    isMounted_ = keepMountsToOneself() && ::mount("quillop-test", disk().c_str(), "tmpfs", 0, "size=1m") == 0;
    return isMounted_;
  }
  void fillDisk() const {
    std::ofstream file(disk() + "/filler", std::ios::binary);
    while (file << 'x' << std::flush) {
    }
  }

 private:
  std::string disk() const { return system_ / "data"; }
  void unmount() {
    library_.reset();
    if (std::exchange(isMounted_, false)) ::umount2(disk().c_str(), MNT_DETACH);
  }

  bool isMounted_ = false;
};

TEST_F(DamagedLibrary, IsSetAsideAndMadeAnew) {
  folder_.copy(film(), "a.mp4");
  EXPECT_EQ(titles(), Texts({"a"}));
  library_.reset();
  std::ofstream(index(), std::ios::binary) << std::string(100'000, 'x');
  EXPECT_EQ(titles(), Texts({"a"}));
  EXPECT_TRUE(fs::exists(index() + ".damaged"));
}

TEST_F(DamagedLibrary, IsFoundWhileTheLibraryIsInUse) {
  for (int i = 0; i < 50; ++i) folder_.copy(film(), "film " + std::to_string(i) + ".mp4");
  EXPECT_EQ(titles().size(), 50U);
  library_.reset();  // what is still in the log goes into the file
  open();
  settle();
  const auto size = fs::file_size(index());
  std::fstream file(index(), std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(4096);
  file << std::string(size - 4096, '\x55');
  file.close();
  EXPECT_TRUE(comesToPass([this] {
    const auto found = library_->items(homeVideo);
    return fs::exists(index() + ".damaged") && found->count() == 50;
  }));
}

TEST_F(DamagedLibrary, ThatCannotBeWrittenIsKeptElsewhere) {
  folder_.copy(film(), "a.mp4");
  system_.write("data", "a file where the folder should be");
  auto elsewhere = options({folder_.path().string()});
  elsewhere.spare = system_ / "spare/library.db";
  library_ = medialibrary::makeLibrary(mainLoop_, elsewhere);
  EXPECT_EQ(titles(), Texts({"a"}));
}

TEST_F(DamagedLibrary, IsSetAsideAlsoWhereOnlyAChangeMeetsTheDamage) {
  folder_.copy(film(), "a.mp4");
  folder_.copy(film(), "b.mp4");
  EXPECT_EQ(titles(), Texts({"a", "b"}));
  library_.reset();
  emptyAnIndexOfTheDatabase();
  fs::remove(folder_ / "a.mp4");
  open();
  EXPECT_TRUE(comesToPass([this] { return fs::exists(index() + ".damaged"); }));
}

TEST_F(DamagedLibrary, IsNotReadAnyMoreOnceItIsSetAside) {
  folder_.copy(film(), "a.mp4");
  folder_.copy(film(), "b.mp4");
  EXPECT_EQ(titles(), Texts({"a", "b"}));
  emptyAnIndexOfTheDatabase();
  fs::remove(folder_ / "a.mp4");
  EXPECT_TRUE(comesToList({"b"}));
}

TEST_F(DamagedLibrary, ThatCannotBeWrittenAnyMoreGoesOnElsewhere) {
  if (!mountSmallDisk()) GTEST_SKIP() << "disks cannot be mounted";
  auto elsewhere = options({folder_.path().string()});
  elsewhere.spare = system_ / "spare/library.db";
  library_ = medialibrary::makeLibrary(mainLoop_, elsewhere);
  EXPECT_EQ(titles(), Texts());
  fillDisk();
  Texts expected;
  for (char name = 'a'; name <= 'z'; ++name) {
    expected.emplace_back(100, name);
    folder_.copy(film(), expected.back() + ".mp4");
  }
  EXPECT_TRUE(comesToList(expected));
}

}  // namespace
