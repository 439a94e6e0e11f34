#include "tests/host/medialibrary/LibraryFixture.h"
#include "tests/support/OwnMounts.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace {

namespace fs = std::filesystem;

/// A library that nobody tells to search again.
class WatchedLibrary : public LibraryFixture {
 protected:
  /// Nothing that has to be looked into can be from now on: what is listed nevertheless was known before.
  void reopenWithoutIndexer() {
    auto without = options({folder_.path().string()});
    without.indexer = "/nonexistent";
    library_.reset();
    library_ = medialibrary::makeLibrary(mainLoop_, without);
  }

  bool comesToList(const Texts& expected) {
    return comesToPass([&] { return titlesOf(*library_->items(homeVideo)) == expected; });
  }
};

TEST_F(WatchedLibrary, ListsAFileThatWasAdded) {
  EXPECT_EQ(titles(), Texts());
  folder_.copy(film(), "a.mp4");
  EXPECT_TRUE(comesToList({"a"}));
}

TEST_F(WatchedLibrary, ListsAFileInAFolderThatWasAdded) {
  EXPECT_EQ(titles(), Texts());
  folder_.copy(film(), "deep/deeper/a.mp4");
  EXPECT_TRUE(comesToList({"a"}));
  folder_.copy(film(), "deep/deeper/b.mp4");
  EXPECT_TRUE(comesToList({"a", "b"}));
}

TEST_F(WatchedLibrary, ForgetsAFileThatWasRemoved) {
  folder_.copy(film(), "a.mp4");
  folder_.copy(film(), "b.mp4");
  EXPECT_EQ(titles(), Texts({"a", "b"}));
  fs::remove(folder_ / "a.mp4");
  EXPECT_TRUE(comesToList({"b"}));
}

TEST_F(WatchedLibrary, ForgetsAFolderThatWasRemoved) {
  folder_.copy(film(), "in/deep/a.mp4");
  folder_.copy(film(), "b.mp4");
  EXPECT_EQ(titles(), Texts({"a", "b"}));
  fs::remove_all(folder_ / "in");
  EXPECT_TRUE(comesToList({"b"}));
}

TEST_F(WatchedLibrary, LooksAgainIntoAFileThatBecameAnotherOne) {
  folder_.copy(film(), "a.mp4");
  EXPECT_EQ(titles(), Texts({"a"}));
  folder_.copy(filmTitled("Cambiato"), "a.mp4");
  EXPECT_TRUE(comesToList({"Cambiato"}));
}

TEST_F(WatchedLibrary, LooksAgainIntoAFileThatCouldNotBeReadOnceItChanges) {
  folder_.write("a.mp4", "This is a letter.");
  EXPECT_EQ(titles(), Texts());
  EXPECT_EQ(library_->contents(homeVideo).unreadableFiles, 1U);
  folder_.copy(film(), "a.mp4");
  EXPECT_TRUE(comesToList({"a"}));
  EXPECT_EQ(library_->contents(homeVideo).unreadableFiles, 0U);
}

TEST_F(WatchedLibrary, KeepsWhatItKnowsOfAFileThatWasRenamedOrMoved) {
  folder_.copy(film(), "a.mp4");
  folder_.copy(film(), "in/c.mp4");
  EXPECT_EQ(titles(), Texts({"a", "c"}));
  reopenWithoutIndexer();
  EXPECT_EQ(titles(), Texts({"a", "c"}));
  fs::rename(folder_ / "a.mp4", folder_ / "b.mp4");
  EXPECT_TRUE(comesToList({"b", "c"}));
  fs::rename(folder_ / "b.mp4", folder_ / "in/d.mp4");
  EXPECT_TRUE(comesToList({"c", "d"}));
  fs::rename(folder_ / "in", folder_ / "out");
  EXPECT_TRUE(comesToPass([this] { return paths() == Texts({folder_ / "out/c.mp4", folder_ / "out/d.mp4"}); }));
}

TEST_F(WatchedLibrary, DoesNotListAFileBeforeItIsWhole) {
  EXPECT_EQ(titles(), Texts());
  const std::string whole = contentsOf(film());
  std::ofstream copy(folder_ / "a.mp4", std::ios::binary);
  copy << whole.substr(0, whole.size() / 2) << std::flush;
  folder_.copy(film(), "b.mp4");
  EXPECT_TRUE(comesToList({"b"}));
  copy << whole.substr(whole.size() / 2);
  copy.close();
  EXPECT_TRUE(comesToList({"a", "b"}));
  EXPECT_EQ(library_->contents(homeVideo).unreadableFiles, 0U) << "it was not looked into while it was half there";
}

TEST_F(WatchedLibrary, ListsOneOfSeveralNamesAndTheNextOneWhenThatGoes) {
  const std::string path = folder_.copy(film(), "a.mp4");
  EXPECT_EQ(titles(), Texts({"a"}));
  fs::create_hard_link(path, folder_ / "b.mp4");
  folder_.copy(film(), "c.mp4");
  EXPECT_TRUE(comesToList({"a", "c"}));
  fs::remove(path);
  EXPECT_TRUE(comesToList({"b", "c"}));
}

TEST_F(WatchedLibrary, ListsTheNextNameInAnotherFolderWhenTheListedOneGoes) {
  const std::string path = folder_.copy(film(), "one/a.mp4");
  fs::create_directory(folder_ / "two");
  fs::create_hard_link(path, folder_ / "two/b.mp4");
  EXPECT_EQ(titles(), Texts({"a"}));
  fs::remove(path);
  EXPECT_TRUE(comesToList({"b"}));
}

TEST_F(WatchedLibrary, ListsTheNextLinkToAFolderWhenTheListedOneGoes) {
  const TemporaryFolder elsewhere;
  elsewhere.copy(film(), "a.mp4");
  for (const char* folder : {"one", "two"}) fs::create_directory(folder_ / folder);
  fs::create_directory_symlink(elsewhere.path(), folder_ / "one/trips");
  fs::create_directory_symlink(elsewhere.path(), folder_ / "two/best");
  EXPECT_EQ(paths(), Texts({folder_ / "one/trips/a.mp4"}));
  fs::remove(folder_ / "one/trips");
  EXPECT_TRUE(comesToPass([this] { return paths() == Texts({folder_ / "two/best/a.mp4"}); }));
}

TEST_F(WatchedLibrary, ListsAFileThatGotAnEarlierNameWhileItWasClosed) {
  const std::string path = folder_.copy(film(), "b.mp4");
  EXPECT_EQ(titles(), Texts({"b"}));
  library_.reset();
  fs::create_hard_link(path, folder_ / "a.mp4");
  EXPECT_EQ(titles(), Texts({"a"}));
}

TEST_F(WatchedLibrary, ListsAFolderThatGotAnEarlierNameWhileItWasClosed) {
  folder_.copy(film(), "trips/a.mp4");
  EXPECT_EQ(titles(), Texts({"a"}));
  library_.reset();
  fs::create_directory_symlink(folder_ / "trips", folder_ / "best");
  EXPECT_EQ(paths(), Texts({folder_ / "best/a.mp4"}));
}

TEST_F(WatchedLibrary, SearchesWhatItCannotWatchWhenSomebodyIsAboutToAsk) {
  open({folder_ / "not there yet"});
  EXPECT_EQ(titles(), Texts());
  folder_.copy(film(), "not there yet/a.mp4");
  library_->refresh();
  EXPECT_TRUE(library_->contents(homeVideo).isSearching);
  EXPECT_EQ(titles(), Texts({"a"}));
  library_->refresh();
  EXPECT_FALSE(library_->contents(homeVideo).isSearching) << "by now it can be watched";
}

TEST_F(WatchedLibrary, DoesNotSearchForAFolderThatWasRemoved) {
  folder_.copy(film(), "in/a.mp4");
  EXPECT_EQ(titles(), Texts({"a"}));
  fs::remove_all(folder_ / "in");
  EXPECT_TRUE(comesToList({}));
  settle();
  library_->refresh();
  EXPECT_FALSE(library_->contents(homeVideo).isSearching);
}

TEST_F(WatchedLibrary, TellsThatSomethingHasChanged) {
  EXPECT_EQ(titles(), Texts());
  bool isTold = false;
  library_->setChanged([&] { isTold = true; });
  folder_.copy(film(), "a.mp4");
  EXPECT_TRUE(comesToPass([&] {
    mainLoop_.turn();
    return isTold;
  }));
}

TEST_F(WatchedLibrary, TellsThatAFileHasGoneOrHasAnotherName) {
  folder_.copy(film(), "a.mp4");
  folder_.copy(film(), "b.mp4");
  EXPECT_EQ(titles(), Texts({"a", "b"}));
  Texts told;
  library_->setChanged([&] { told = titlesOf(*library_->items(homeVideo)); });
  const auto comesToTell = [&](const Texts& expected) {
    return comesToPass([&] {
      mainLoop_.turn();
      return told == expected;
    });
  };
  fs::rename(folder_ / "b.mp4", folder_ / "c.mp4");
  EXPECT_TRUE(comesToTell({"a", "c"}));
  fs::remove(folder_ / "a.mp4");
  EXPECT_TRUE(comesToTell({"c"}));
}

TEST_F(WatchedLibrary, IsLookedIntoByOneProcessAtATimeWhileItIsToBeGentle) {
  constexpr std::size_t files = 4;  // between two of them it rests
  EXPECT_EQ(titles(), Texts());
  library_->setGentle(true);
  for (std::size_t i = 0; i < files; ++i) folder_.copy(film(), std::to_string(i) + ".mp4");
  const auto indexers = [] {
    std::ptrdiff_t count = 0;
    for (const auto& thread : fs::directory_iterator("/proc/self/task")) {
      std::ifstream children(thread.path() / "children");
      count += std::distance(std::istream_iterator<int>(children), std::istream_iterator<int>());
    }
    return count;
  };
  std::ptrdiff_t most = 0;
  EXPECT_TRUE(comesToPass([&] {
    most = std::max(most, indexers());
    return library_->items(homeVideo)->count() == files;
  }));
  EXPECT_EQ(most, 1);
}

TEST_F(WatchedLibrary, GoesOnAtFullPaceOnceItMay) {
  EXPECT_EQ(titles(), Texts());
  library_->setGentle(true);
  for (int i = 0; i < 20; ++i) folder_.copy(film(), std::to_string(i) + ".mp4");
  library_->setGentle(false);
  EXPECT_TRUE(comesToPass([&] { return library_->items(homeVideo)->count() == 20; }));
}

/// A folder that is a drive, where this process may mount one.
class RemovableDrive : public WatchedLibrary {
 protected:
  void SetUp() override {
    folder_.write("drive/.keep", "");
    if (!keepMountsToOneself() || ::mount("quillop-test", drive().c_str(), "tmpfs", 0, nullptr) != 0)
      GTEST_SKIP() << "drives cannot be mounted";
    isMounted_ = true;
  }
  void TearDown() override { unmount(); }

  std::string drive() const { return folder_ / "drive"; }

  void unmount() {
    if (std::exchange(isMounted_, false)) ::umount2(drive().c_str(), MNT_DETACH);
  }
  /// The drive somewhere else, out of the library's sight.
  void takeAway() {
    fs::create_directories(elsewhere());
    ASSERT_EQ(::mount(drive().c_str(), elsewhere().c_str(), nullptr, MS_BIND, nullptr), 0);
    unmount();
  }
  void bringBack() {
    ASSERT_EQ(::mount(elsewhere().c_str(), drive().c_str(), nullptr, MS_BIND, nullptr), 0);
    isMounted_ = true;
    ::umount2(elsewhere().c_str(), MNT_DETACH);
  }

 private:
  std::string elsewhere() const { return system_ / "elsewhere"; }

  bool isMounted_ = false;
};

TEST_F(RemovableDrive, LeavesTheListAndComesBackWithoutBeingLookedIntoAgain) {
  folder_.copy(film(), "a.mp4");
  folder_.copy(film(), "drive/in/b.mp4");
  EXPECT_EQ(titles(), Texts({"a", "b"}));
  reopenWithoutIndexer();
  EXPECT_EQ(titles(), Texts({"a", "b"}));
  takeAway();
  EXPECT_TRUE(comesToList({"a"}));
  bringBack();
  EXPECT_TRUE(comesToList({"a", "b"}));
}

TEST_F(RemovableDrive, MayComeBackWithOtherFiles) {
  folder_.copy(film(), "drive/b.mp4");
  EXPECT_EQ(titles(), Texts({"b"}));
  takeAway();
  EXPECT_TRUE(comesToList({}));
  fs::copy_file(film(), system_ / "elsewhere/c.mp4");
  fs::remove(system_ / "elsewhere/b.mp4");
  bringBack();
  EXPECT_TRUE(comesToList({"c"}));
}

}  // namespace
