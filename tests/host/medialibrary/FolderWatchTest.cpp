#include "hosts/medialibrary/FolderWatch.h"

#include "hosts/medialibrary/FileDescriptor.h"
#include "hosts/medialibrary/FolderScan.h"
#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/OwnMounts.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/magic.h>
#include <poll.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <functional>
#include <vector>

namespace {

using medialibrary::FileDescriptor;
using medialibrary::FileSystem;
using medialibrary::FolderChanges;
using medialibrary::FolderWatch;
using Names = std::set<std::string>;

bool isReady(int descriptor, short events) {
  pollfd asked{descriptor, events, 0};
  return poll(&asked, 1, 0) == 1;
}

std::size_t filesBelow(const std::vector<std::string>& folders) {
  std::size_t count = 0;
  medialibrary::FolderScan scan(folders);
  for (medialibrary::ScannedFolder folder; scan.next(folder);) count += folder.files.size();
  return count;
}

class Watch : public testing::Test {
 protected:
  std::string root() const { return folder_.path().string(); }
  std::string make(const std::string& name) const {
    std::filesystem::create_directories(folder_.path() / name);
    return folder_ / name;
  }
  std::string makeWatched(const std::string& name) const {
    EXPECT_TRUE(watch_->add(make(name))) << name;
    return folder_ / name;
  }
  void rename(const std::string& from, const std::string& to) const {
    ASSERT_EQ(::rename((folder_ / from).c_str(), (folder_ / to).c_str()), 0);
  }
  /// The folders that have changed, where that is not all of them.
  Names changes() const {
    const FolderChanges changes = watch_->changes();
    EXPECT_FALSE(changes.isEverything);
    return changes.folders;
  }

  TemporaryFolder folder_;
  std::unique_ptr<FolderWatch> watch_ = FolderWatch::make();
};

TEST_F(Watch, TellsNothingWhereNothingHappens) {
  folder_.write("one.mp4", "film");
  EXPECT_TRUE(watch_->add(root()));
  EXPECT_FALSE(isReady(watch_->descriptor(), POLLIN));
  EXPECT_EQ(changes(), Names{});
}

TEST_F(Watch, TellsWhichFolderChanged) {
  const std::string a = makeWatched("a");
  const std::string b = makeWatched("b");
  makeWatched("c");
  folder_.write("a/one.mp4", "film");
  folder_.write("b/two.mp4", "film");
  EXPECT_TRUE(isReady(watch_->descriptor(), POLLIN));
  EXPECT_EQ(changes(), (Names{a, b}));
  EXPECT_FALSE(isReady(watch_->descriptor(), POLLIN));
  EXPECT_EQ(changes(), Names{}) << "told once";
}

TEST_F(Watch, TellsNothingWhileAFileIsBeingWritten) {
  EXPECT_TRUE(watch_->add(root()));
  const std::string path = folder_ / "one.mp4";
  FileDescriptor writer(open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
  EXPECT_EQ(changes(), Names{root()}) << "it came";
  EXPECT_FALSE(medialibrary::isComplete({path}, 0.0));
  for (int step = 0; step < 10; ++step) {
    ASSERT_EQ(write(writer.number(), "film", 4), 4);
    EXPECT_EQ(changes(), Names{});
  }
  writer = FileDescriptor();
  EXPECT_EQ(changes(), Names{root()});
  EXPECT_TRUE(medialibrary::isComplete({path}, 0.0));
}

TEST_F(Watch, TellsNothingOfReading) {
  const std::string path = folder_.write("one.mp4", "film");
  EXPECT_TRUE(watch_->add(root()));
  EXPECT_EQ(contentsOf(path), "film");
  EXPECT_TRUE(medialibrary::isComplete({path}, 0.0));
  EXPECT_EQ(filesBelow({root()}), 1U);
  EXPECT_EQ(changes(), Names{});
}

TEST_F(Watch, TellsWhenAFileIsWrittenOnceMore) {
  folder_.write("one.mp4", "film");
  EXPECT_TRUE(watch_->add(root()));
  folder_.write("one.mp4", "another");
  EXPECT_EQ(changes(), Names{root()});
}

TEST_F(Watch, TellsOfEachWayToComeAndToGo) {
  const TemporaryFolder elsewhere;
  const std::string film = elsewhere.write("film.mp4", "film");
  EXPECT_TRUE(watch_->add(root()));
  std::filesystem::create_hard_link(film, folder_ / "hard.mp4");
  EXPECT_EQ(changes(), Names{root()}) << "a further name of a file";
  std::filesystem::create_symlink(film, folder_ / "link.mp4");
  EXPECT_EQ(changes(), Names{root()}) << "a symbolic link";
  std::filesystem::rename(film, folder_ / "moved.mp4");
  EXPECT_EQ(changes(), Names{root()}) << "moved here";
  std::filesystem::rename(folder_ / "moved.mp4", elsewhere / "film.mp4");
  EXPECT_EQ(changes(), Names{root()}) << "moved away";
  std::filesystem::remove(folder_ / "hard.mp4");
  EXPECT_EQ(changes(), Names{root()}) << "removed";
  make("folder");
  EXPECT_EQ(changes(), Names{root()}) << "a folder";
  std::filesystem::remove(folder_ / "folder");
  EXPECT_EQ(changes(), Names{root()}) << "a folder removed";
}

TEST_F(Watch, TellsOfOtherPermissionsAndTimes) {
  const std::string path = folder_.write("one.mp4", "film");
  EXPECT_TRUE(watch_->add(root()));
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  EXPECT_EQ(changes(), Names{root()});
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), nullptr, 0), 0);
  EXPECT_EQ(changes(), Names{root()});
}

// Some programs write to a file without a name, and give it one when it is whole, or shortly before.
TEST_F(Watch, TellsWhenAFileThatWasMadeWithoutANameIsClosed) {
  EXPECT_TRUE(watch_->add(root()));
  FileDescriptor writer(open(root().c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
  if (!writer) GTEST_SKIP() << "the file system cannot do it";
  const std::string source = "/proc/self/fd/" + std::to_string(writer.number());
  ASSERT_EQ(linkat(AT_FDCWD, source.c_str(), AT_FDCWD, (folder_ / "one.mp4").c_str(), AT_SYMLINK_FOLLOW), 0);
  EXPECT_EQ(changes(), Names{root()});
  ASSERT_EQ(write(writer.number(), "film", 4), 4);
  EXPECT_EQ(changes(), Names{});
  writer = FileDescriptor();
  EXPECT_EQ(changes(), Names{root()});
}

TEST_F(Watch, DoesNotReachBelowAFolder) {
  make("inside");
  EXPECT_TRUE(watch_->add(root()));
  folder_.write("inside/one.mp4", "film");
  EXPECT_EQ(changes(), Names{});
}

TEST_F(Watch, IsOneThoughAddedTwice) {
  EXPECT_TRUE(watch_->add(root()));
  EXPECT_TRUE(watch_->add(root()));
  EXPECT_EQ(watch_->folders(), Names{root()});
  folder_.write("one.mp4", "film");
  EXPECT_EQ(changes(), Names{root()});
}

TEST_F(Watch, TellsAllPathsOfAFolder) {
  const std::string real = makeWatched("real");
  const std::string link = folder_ / "link";
  std::filesystem::create_symlink(real, link);
  EXPECT_TRUE(watch_->add(link));
  EXPECT_EQ(watch_->folders(), (Names{link, real}));
  folder_.write("real/one.mp4", "film");
  EXPECT_EQ(changes(), (Names{link, real}));
  watch_->remove(real);
  folder_.write("real/two.mp4", "film");
  EXPECT_EQ(changes(), Names{link}) << "the other one stays";
}

TEST_F(Watch, TellsNothingOfAFolderThatWasRemovedFromIt) {
  EXPECT_TRUE(watch_->add(root()));
  folder_.write("one.mp4", "film");
  watch_->remove(root());
  folder_.write("two.mp4", "film");
  EXPECT_EQ(watch_->folders(), Names{});
  EXPECT_EQ(changes(), Names{});
  watch_->remove(root());
  EXPECT_TRUE(watch_->add(root())) << "may be added again";
  EXPECT_EQ(changes(), Names{});
  folder_.write("three.mp4", "film");
  EXPECT_EQ(changes(), Names{root()});
}

TEST_F(Watch, RefusesWhatIsNoFolder) {
  EXPECT_FALSE(watch_->add(folder_ / "missing"));
  EXPECT_FALSE(watch_->add(folder_.write("one.mp4", "film")));
  EXPECT_FALSE(watch_->add(""));
  EXPECT_FALSE(watch_->add("/" + std::string(PATH_MAX, 'x')));
  EXPECT_EQ(watch_->folders(), Names{});
}

TEST_F(Watch, EndsForAFolderThatIsDeleted) {
  EXPECT_TRUE(watch_->add(root()));
  const std::string inside = makeWatched("inside");
  changes();
  std::filesystem::remove(inside);
  EXPECT_EQ(changes(), (Names{inside, root()}));
  EXPECT_EQ(watch_->folders(), Names{root()});
  makeWatched("inside");
  changes();
  folder_.write("inside/one.mp4", "film");
  EXPECT_EQ(changes(), Names{inside});
}

TEST_F(Watch, EndsForAFolderThatIsRenamedAndForThoseInside) {
  EXPECT_TRUE(watch_->add(root()));
  const std::string old = makeWatched("old");
  const std::string inside = makeWatched("old/inside");
  const std::string older = makeWatched("older");
  changes();
  rename("old", "new");
  EXPECT_EQ(changes(), (Names{root(), old, inside}));
  EXPECT_EQ(watch_->folders(), (Names{root(), older}));
  folder_.write("new/inside/one.mp4", "film");
  EXPECT_EQ(changes(), Names{}) << "nothing under a path that is wrong";
  EXPECT_TRUE(watch_->add(folder_ / "new"));
  folder_.write("new/one.mp4", "film");
  EXPECT_EQ(changes(), Names{folder_ / "new"});
}

TEST_F(Watch, EndsForAFolderThatIsRenamedThoughNothingElseIsWatched) {
  const std::string old = makeWatched("old");
  rename("old", "new");
  EXPECT_EQ(changes(), Names{old});
  EXPECT_EQ(watch_->folders(), Names{});
}

TEST_F(Watch, FollowsAPathThatLeadsToAnotherFolder) {
  const std::string path = makeWatched("folder");
  rename("folder", "old");
  make("folder");
  EXPECT_TRUE(watch_->add(path));
  changes();
  EXPECT_EQ(watch_->folders(), Names{path}) << "that the old one was moved does not concern the new one";
  folder_.write("old/one.mp4", "film");
  EXPECT_EQ(changes(), Names{});
  folder_.write("folder/one.mp4", "film");
  EXPECT_EQ(changes(), Names{path});
}

TEST_F(Watch, EndsForAFolderThatCannotBeAddedAnyMore) {
  const std::string path = makeWatched("folder");
  rename("folder", "old");
  EXPECT_FALSE(watch_->add(path));
  EXPECT_EQ(watch_->folders(), Names{});
  EXPECT_EQ(changes(), Names{});
}

TEST_F(Watch, TakesNamesAsTheyAre) {
  for (const std::string& name : {std::string("line\nbreak"), std::string("\"quoted\""), std::string("\x80\xfe"),
                                  std::string("-rf"), std::string(255, 'x'), std::string(" ")}) {
    const std::string path = makeWatched(name);
    folder_.write(name + "/" + std::string(255, 'y'), "film");
    EXPECT_EQ(changes(), Names{path});
  }
}

TEST_F(Watch, MissesNothingHoweverManyFilesCome) {
  EXPECT_TRUE(watch_->add(root()));
  for (int i = 0; i < 10'000; ++i) folder_.write("film " + std::to_string(i) + ".mp4", "film");
  const FolderChanges changes = watch_->changes();
  EXPECT_TRUE(changes.isEverything || changes.folders == Names{root()});
  folder_.write("one more.mp4", "film");
  EXPECT_EQ(this->changes(), Names{root()});
}

int mostQueuedEvents() {
  return std::stoi(contentsOf("/proc/sys/fs/inotify/max_queued_events"));
}

TEST_F(Watch, TellsThatEverythingMayHaveChangedWhenTooMuchHappened) {
  if (mostQueuedEvents() > 200'000) GTEST_SKIP() << "this system remembers too much";
  const std::string path = folder_.write("one.mp4", "film");
  const std::string other = folder_.write("two.mp4", "film");
  EXPECT_TRUE(watch_->add(root()));
  // Events that are the same one after the other count as one.
  for (int i = 0; i <= mostQueuedEvents() / 2 + 1; ++i) {
    chmod(path.c_str(), 0600);
    chmod(other.c_str(), 0600);
  }
  EXPECT_TRUE(watch_->changes().isEverything);
  folder_.write("three.mp4", "film");
  EXPECT_EQ(changes(), Names{root()}) << "it goes on";
}

TEST_F(Watch, RefusesMoreFoldersThanThereAreWatches) {
  watch_ = FolderWatch::make({.mostFolders = 2});
  const std::string a = makeWatched("a");
  const std::string b = makeWatched("b");
  EXPECT_FALSE(watch_->add(make("c")));
  EXPECT_TRUE(watch_->add(a)) << "it is watched already";
  EXPECT_EQ(watch_->folders(), (Names{a, b}));
  watch_->remove(a);
  EXPECT_TRUE(watch_->add(make("c")));
}

TEST_F(Watch, RefusesFileSystemsThatDoNotTell) {
  FileSystem fileSystem{EXT4_SUPER_MAGIC, makedev(8, 1)};
  watch_ = FolderWatch::make({.fileSystem = [&](const std::string&) { return fileSystem; }});
  EXPECT_TRUE(watch_->add(root()));
  fileSystem = {NFS_SUPER_MAGIC, makedev(0, 50)};
  EXPECT_FALSE(watch_->add(root())) << "another one was mounted there";
  EXPECT_EQ(watch_->folders(), Names{});
}

TEST(FileSystems, TellTheirChangesWhereOnlyThisMachineWrites) {
  for (const std::uint32_t type :
       std::vector<std::uint32_t>{EXT4_SUPER_MAGIC, BTRFS_SUPER_MAGIC, XFS_SUPER_MAGIC, TMPFS_MAGIC,
                                  OVERLAYFS_SUPER_MAGIC, MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC, ISOFS_SUPER_MAGIC}) {
    EXPECT_TRUE(medialibrary::tellsItsChanges({type, makedev(8, 1)})) << type;
    EXPECT_TRUE(medialibrary::tellsItsChanges({type, makedev(0, 40)})) << type;
  }
  for (const std::uint32_t type :
       std::vector<std::uint32_t>{NFS_SUPER_MAGIC, SMB_SUPER_MAGIC, AFS_FS_MAGIC, CEPH_SUPER_MAGIC, V9FS_MAGIC}) {
    EXPECT_FALSE(medialibrary::tellsItsChanges({type, makedev(0, 40)})) << type;
  }
  EXPECT_FALSE(medialibrary::tellsItsChanges({CIFS_SUPER_MAGIC, makedev(0, 40)}));
  EXPECT_FALSE(medialibrary::tellsItsChanges({0xFE534D42, makedev(0, 40)}));
}

TEST(FileSystems, OfAProcessTellTheirChangesOnABlockDeviceOnly) {
  EXPECT_FALSE(medialibrary::tellsItsChanges({FUSE_SUPER_MAGIC, makedev(0, 40)}));
  EXPECT_TRUE(medialibrary::tellsItsChanges({FUSE_SUPER_MAGIC, makedev(8, 1)}));
}

TEST(FileSystems, AreToldOfFolders) {
  const auto kernel = medialibrary::fileSystemOf("/proc");
  ASSERT_TRUE(kernel.has_value());
  EXPECT_EQ(kernel->type, static_cast<std::uint32_t>(PROC_SUPER_MAGIC));
  EXPECT_EQ(major(kernel->device), 0U);
  EXPECT_FALSE(medialibrary::fileSystemOf("/proc/missing").has_value());
}

/// Mounts in a process that has a table of mounts of its own.
class Mounting : public Watch {
 protected:
  /// `work` says how far it got: 0 at its end, or the number of the first step that failed.
  static void inOwnTable(const std::function<int()>& work) {
    constexpr int notPermitted = 100;
    const pid_t process = fork();
    if (process == 0) {
      if (!keepMountsToOneself()) _exit(notPermitted);
      _exit(work());
    }
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == notPermitted) GTEST_SKIP() << "mounting is not permitted";
    EXPECT_EQ(WEXITSTATUS(status), 0) << "the step that failed";
  }
  static bool mountMemory(const std::string& folder) {
    return mount("none", folder.c_str(), "tmpfs", 0, nullptr) == 0;
  }
};

TEST_F(Mounting, OverAWatchedFolderMayHaveChangedEverything) {
  inOwnTable([this] {
    const auto watch = FolderWatch::make();
    if (!watch->add(root()) || watch->changes().isEverything) return 1;
    isReady(watch->mountsDescriptor(), POLLPRI);  // the kernel tells its first reader without any reason
    if (isReady(watch->mountsDescriptor(), POLLPRI) || watch->changes().isEverything) return 2;
    if (!mountMemory(root())) return 3;
    if (!isReady(watch->mountsDescriptor(), POLLPRI)) return 4;
    if (!watch->changes().isEverything) return 5;
    if (watch->changes().isEverything) return 6;
    folder_.write("one.mp4", "film");
    if (!watch->changes().folders.empty()) return 7;
    if (!watch->add(root())) return 8;
    folder_.write("two.mp4", "film");
    return watch->changes().folders == Names{root()} ? 0 : 9;
  });
}

TEST_F(Mounting, EndsAndSoDoTheWatchesOfTheDrive) {
  inOwnTable([this] {
    if (!mountMemory(root())) return 1;
    const auto watch = FolderWatch::make();
    make("inside");
    if (!watch->add(root()) || !watch->add(folder_ / "inside")) return 2;
    if (umount(root().c_str()) != 0) return 3;
    const FolderChanges changes = watch->changes();
    if (!changes.isEverything || changes.folders != Names{root(), folder_ / "inside"}) return 4;
    if (!watch->folders().empty()) return 5;
    if (!watch->add(root()) || watch->add(folder_ / "inside")) return 6;
    folder_.write("one.mp4", "film");
    return watch->changes().folders == Names{root()} ? 0 : 7;
  });
}

TEST_F(Mounting, IsToldThoughTheDriveIsBackAlready) {
  inOwnTable([this] {
    if (!mountMemory(root())) return 1;
    const auto watch = FolderWatch::make();
    if (!watch->add(root())) return 2;
    if (umount(root().c_str()) != 0 || !mountMemory(root())) return 3;
    return watch->changes().isEverything ? 0 : 4;
  });
}

TEST_F(Mounting, ElsewhereMayHaveChangedEverythingToo) {
  inOwnTable([this] {
    const std::string drive = make("drive");
    const auto watch = FolderWatch::make();
    if (!mountMemory(drive)) return 1;
    return watch->changes().isEverything ? 0 : 2;
  });
}

TEST_F(Mounting, OfAFolderAtASecondPlaceGivesItTwoPaths) {
  inOwnTable([this] {
    const std::string real = make("real");
    const std::string second = make("second");
    if (mount(real.c_str(), second.c_str(), nullptr, MS_BIND, nullptr) != 0) return 1;
    const auto watch = FolderWatch::make();
    if (!watch->add(real) || !watch->add(second)) return 2;
    folder_.write("second/one.mp4", "film");
    if (watch->changes().folders != Names{real, second}) return 3;
    return filesBelow({real, second}) == 1 ? 0 : 4;
  });
}

}  // namespace
