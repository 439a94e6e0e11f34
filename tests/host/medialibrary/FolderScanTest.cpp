#include "hosts/medialibrary/FolderScan.h"

#include "hosts/medialibrary/FileDescriptor.h"
#include "tests/host/probe/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <climits>
#include <cmath>
#include <csignal>
#include <functional>

namespace {

using medialibrary::FileDescriptor;
using medialibrary::FolderScan;
using medialibrary::isComplete;
using medialibrary::ScannedFolder;
using medialibrary::VideoFile;
using Names = std::vector<std::string>;

constexpr uid_t somebodyElse = 65'534;
constexpr double forEver = 1e12;

/// What `work` answers in a process of its own, as the user `user` where that can be chosen.
int inAnotherProcess(uid_t user, const std::function<int()>& work) {
  const pid_t process = fork();
  if (process == 0) {
    if (geteuid() == 0 && user != 0 && (setgid(user) != 0 || setuid(user) != 0)) _exit(99);
    _exit(work());
  }
  int status = 0;
  EXPECT_EQ(waitpid(process, &status, 0), process);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

class Scan : public testing::Test {
 protected:
  std::string root() const { return folder_.path().string(); }
  std::string file(const std::string& name) const { return folder_.write(name, "film"); }
  std::string make(const std::string& name) const {
    std::filesystem::create_directories(folder_.path() / name);
    return folder_ / name;
  }
  void link(const std::string& target, const std::string& name) const {
    ASSERT_EQ(symlink(target.c_str(), (folder_ / name).c_str()), 0);
  }
  /// A path without that of the root.
  std::string shortened(const std::string& path) const {
    return path == root() ? "." : path.starts_with(root() + "/") ? path.substr(root().size() + 1) : path;
  }

  std::vector<ScannedFolder> scan(std::vector<std::string> roots) const {
    std::vector<ScannedFolder> all;
    FolderScan scan(std::move(roots));
    for (ScannedFolder folder; scan.next(folder);) all.push_back(folder);
    return all;
  }
  Names foldersOf(const std::vector<ScannedFolder>& scanned) const {
    Names names;
    for (const ScannedFolder& folder : scanned) names.push_back(shortened(folder.path));
    return names;
  }
  Names filesOf(const std::vector<ScannedFolder>& scanned) const {
    Names names;
    for (const ScannedFolder& folder : scanned) {
      for (const VideoFile& found : folder.files) names.push_back(shortened(found.path));
    }
    return names;
  }
  Names files() const { return filesOf(scan({root()})); }
  Names folders() const { return foldersOf(scan({root()})); }

  TemporaryFolder folder_;
};

TEST_F(Scan, GivesTheOuterFolderBeforeThoseInside) {
  make("b/c");
  make("a");
  EXPECT_EQ(folders(), (Names{".", "a", "b", "b/c"}));
  const auto scanned = scan({root()});
  EXPECT_EQ(scanned.at(0).inside, (Names{folder_ / "a", folder_ / "b"}));
  EXPECT_EQ(scanned.at(2).inside, Names{folder_ / "b/c"});
  EXPECT_TRUE(scanned.at(3).inside.empty());
}

TEST_F(Scan, GivesEachFolderWithItsOwnFilesOnly) {
  file("one.mp4");
  file("inside/two.mkv");
  const auto scanned = scan({root()});
  ASSERT_EQ(scanned.size(), 2U);
  EXPECT_EQ(scanned.at(0).files.size(), 1U);
  EXPECT_EQ(scanned.at(1).files.at(0).path, folder_ / "inside/two.mkv");
}

TEST_F(Scan, TellsTheStateOfAFile) {
  const std::string path = file("one.mp4");
  const timespec times[] = {{1, 2}, {1'234'567'890, 123'456'789}};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  struct stat facts {};
  ASSERT_EQ(stat(path.c_str(), &facts), 0);
  const auto scanned = scan({root()});
  const VideoFile expected{path, 4, 1'234'567'890, 123'456'789, facts.st_dev, facts.st_ino};
  EXPECT_EQ(scanned.at(0).files, std::vector{expected});
}

TEST_F(Scan, FindsWhatIsNamedLikeAVideo) {
  for (const char* name :
       {"a.mp4", "B.MKV", "c.3gpp2", "d.avi.mov", "e.txt", "f", "g.mp4.part", "h.", "mp4", "i.mp44"})
    file(name);
  EXPECT_EQ(files(), (Names{"B.MKV", "a.mp4", "c.3gpp2", "d.avi.mov"}));
}

TEST_F(Scan, LeavesOutWhatIsHidden) {
  file(".one.mp4");
  file(".hidden/two.mp4");
  EXPECT_EQ(files(), Names{});
  EXPECT_EQ(folders(), Names{"."});
  EXPECT_EQ(filesOf(scan({folder_ / ".hidden"})), Names{".hidden/two.mp4"}) << "a walk may begin there";
}

TEST_F(Scan, LeavesOutWhatIsNoRegularFile) {
  ASSERT_EQ(mkfifo((folder_ / "fifo.mp4").c_str(), 0600), 0);
  link("/dev/null", "device.mp4");
  link("fifo.mp4", "link.mp4");
  make("folder.mp4");
  EXPECT_EQ(files(), Names{});
  EXPECT_EQ(folders(), (Names{".", "folder.mp4"}));
}

TEST_F(Scan, SortsNamesByTheirBytes) {
  for (const char* name : {"\xff.mp4", "a.mp4", "Z.mp4", "\xc3\xa4.mp4", "10.mp4", "9.mp4"}) file(name);
  EXPECT_EQ(files(), (Names{"10.mp4", "9.mp4", "Z.mp4", "a.mp4", "\xc3\xa4.mp4", "\xff.mp4"}));
}

TEST_F(Scan, TakesNamesAsTheyAre) {
  const Names names{" .mp4",
                    "\"quoted\".mp4",
                    "'.mp4",
                    "-rf.mp4",
                    "\\.mp4",
                    "line\nbreak.mp4",
                    std::string(251, 'x') + ".mp4",
                    "\x80\xfe.mp4"};
  for (const std::string& name : names) file(name);
  EXPECT_EQ(files(), names);
}

TEST_F(Scan, GivesAFileOnceUnderItsFirstName) {
  const std::string path = file("b.mp4");
  std::filesystem::create_hard_link(path, folder_ / "a.mp4");
  link("b.mp4", "0.mp4");
  make("inside");
  std::filesystem::create_hard_link(path, folder_ / "inside/c.mp4");
  EXPECT_EQ(files(), Names{"0.mp4"});
}

TEST_F(Scan, FollowsLinks) {
  TemporaryFolder elsewhere;
  elsewhere.write("film.mp4", "film");
  elsewhere.write("name without ending", "film");
  link(elsewhere.path().string(), "there");
  link(elsewhere / "name without ending", "other.mp4");
  EXPECT_EQ(files(), (Names{"other.mp4", "there/film.mp4"}));
}

TEST_F(Scan, EndsInLoopsOfLinks) {
  file("a/one.mp4");
  link("..", "a/up");
  link("b2", "b1");
  link("b1", "b2");
  link(".", "c.mp4");
  link("nowhere", "d.mp4");
  EXPECT_EQ(files(), Names{"a/one.mp4"});
  EXPECT_EQ(folders(), (Names{".", "a"}));
}

TEST_F(Scan, BeginsAtALinkToAFolder) {
  file("real/one.mp4");
  link("real", "link");
  EXPECT_EQ(filesOf(scan({folder_ / "link"})), Names{"link/one.mp4"});
}

TEST_F(Scan, GivesAFolderOnceThoughItIsGivenTwiceOrLiesInAnother) {
  file("a/b/one.mp4");
  EXPECT_EQ(foldersOf(scan({root(), root() + "/", folder_ / "a/b"})), (Names{".", "a", "a/b"}));
  EXPECT_EQ(foldersOf(scan({folder_ / "a/b", root()})), (Names{"a/b", ".", "a"}));
  EXPECT_EQ(filesOf(scan({folder_ / "a/b//", root()})), Names{"a/b/one.mp4"}) << "no slash at its end";
}

TEST_F(Scan, TellsWhetherSomethingHasSeveralNames) {
  const std::string path = file("a/b/one.mp4");
  const auto hasOtherNames = [](std::vector<std::string> roots) {
    FolderScan scan(std::move(roots));
    ScannedFolder folder;
    while (scan.next(folder)) {
    }
    return scan.hasOtherNames();
  };
  EXPECT_FALSE(hasOtherNames({folder_ / "a/b", root(), root() + "/"}));
  link("a/b", "c");
  EXPECT_TRUE(hasOtherNames({root()}));
  std::filesystem::remove(folder_ / "c");
  std::filesystem::create_hard_link(path, folder_ / "a/two.mp4");
  EXPECT_TRUE(hasOtherNames({root()}));
}

TEST_F(Scan, LeavesOutRootsThatAreNoFolders) {
  file("one.mp4");
  EXPECT_EQ(foldersOf(scan({folder_ / "missing", folder_ / "one.mp4", "", root()})), Names{"."});
  EXPECT_TRUE(scan({}).empty());
}

TEST_F(Scan, LeavesTheFolderAsItIsAtTheEnd) {
  FolderScan scan({folder_ / "missing"});
  ScannedFolder folder{"path", {}, {"inside"}};
  EXPECT_FALSE(scan.next(folder));
  EXPECT_FALSE(scan.next(folder));
  EXPECT_EQ(folder.path, "path");
  EXPECT_EQ(folder.inside, Names{"inside"});
}

TEST_F(Scan, LeavesOutWhatMayNotBeRead) {
  file("a/one.mp4");
  file("closed/two.mp4");
  file("names only/three.mp4");
  file("z/four.mp4");
  ASSERT_EQ(chmod((folder_ / "closed").c_str(), 0), 0);
  ASSERT_EQ(chmod((folder_ / "names only").c_str(), 0444), 0);
  EXPECT_EQ(inAnotherProcess(somebodyElse,
                             [this] {
                               return files() == Names{"a/one.mp4", "z/four.mp4"} ? 0 : 1;
                             }),
            0);
  for (const char* name : {"closed", "names only"}) chmod((folder_ / name).c_str(), 0700);
}

TEST_F(Scan, LeavesOutWhatHasTooLongAPath) {
  file("z.mp4");
  const std::string name(200, 'd');
  FileDescriptor here(open(root().c_str(), O_DIRECTORY | O_RDONLY | O_CLOEXEC));
  std::size_t expected = 1;
  std::size_t length = root().size();
  for (int depth = 0; depth < 30; ++depth) {
    ASSERT_EQ(mkdirat(here.number(), name.c_str(), 0700), 0);
    here = FileDescriptor(openat(here.number(), name.c_str(), O_DIRECTORY | O_RDONLY | O_CLOEXEC));
    length += name.size() + 1;
    const std::string longName = std::string(150, 'f') + ".mp4";
    const FileDescriptor inside(openat(here.number(), longName.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    ASSERT_TRUE(inside);
    if (length + 1 + longName.size() < PATH_MAX) ++expected;
  }
  const auto scanned = scan({root()});
  EXPECT_EQ(filesOf(scanned).size(), expected);
  for (const ScannedFolder& folder : scanned) {
    for (const VideoFile& found : folder.files) EXPECT_EQ(access(found.path.c_str(), R_OK), 0);
  }
}

TEST_F(Scan, KeepsNoFolderOpen) {
  const auto openDescriptors = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
  };
  file("a/b/c/one.mp4");
  const auto before = openDescriptors();
  FolderScan scan({root()});
  for (ScannedFolder folder; scan.next(folder);) EXPECT_EQ(openDescriptors(), before);
}

class Completeness : public Scan {
 protected:
  VideoFile film_{file("film.mp4"), 4, 0, 0, 0, 0};
};

TEST_F(Completeness, IsMissingWhileSomebodyHasTheFileOpenForWriting) {
  {
    const FileDescriptor writer(open(film_.path.c_str(), O_WRONLY | O_CLOEXEC));
    EXPECT_FALSE(isComplete(film_, 0.0));
  }
  EXPECT_TRUE(isComplete(film_, forEver));
}

TEST_F(Completeness, IsToldThoughSomebodyReadsTheFile) {
  const FileDescriptor reader(open(film_.path.c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_TRUE(isComplete(film_, forEver));
}

TEST_F(Completeness, HoldsNoWriterUpAfterwards) {
  EXPECT_TRUE(isComplete(film_, forEver));
  const FileDescriptor writer(open(film_.path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
  EXPECT_TRUE(writer) << "a lease would refuse it";
}

TEST_F(Completeness, IsAQuestionOfTimeWhereTheFileIsSomebodyElses) {
  std::string path = film_.path;
  if (geteuid() != 0) path = "/etc/passwd";
  struct stat facts {};
  ASSERT_EQ(stat(path.c_str(), &facts), 0);
  const double age = std::abs(static_cast<double>(time(nullptr) - facts.st_mtim.tv_sec)) + 1000;
  EXPECT_EQ(inAnotherProcess(somebodyElse, [&] { return isComplete({path}, age) ? 1 : 0; }), 0);
  EXPECT_EQ(inAnotherProcess(somebodyElse, [&] { return isComplete({path}, 0.0) ? 1 : 0; }), 1);
}

TEST_F(Completeness, IsAQuestionOfTimeThoughTheTimeIsInTheFuture) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a file of another user's";
  const timespec times[] = {{0, UTIME_NOW}, {time(nullptr) + 1'000'000, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, film_.path.c_str(), times, 0), 0);
  EXPECT_EQ(inAnotherProcess(somebodyElse, [&] { return isComplete(film_, 100.0) ? 1 : 0; }), 1);
  EXPECT_EQ(inAnotherProcess(somebodyElse, [&] { return isComplete(film_, 2'000'000.0) ? 1 : 0; }), 0);
}

TEST_F(Completeness, IsSaidOfWhatCannotBeRead) {
  ASSERT_EQ(mkfifo((folder_ / "fifo.mp4").c_str(), 0600), 0);
  EXPECT_TRUE(isComplete({folder_ / "fifo.mp4"}, forEver));
  EXPECT_TRUE(isComplete({root()}, forEver));
  EXPECT_TRUE(isComplete({folder_ / "missing.mp4"}, forEver));
  ASSERT_EQ(chmod(film_.path.c_str(), 0), 0);
  EXPECT_EQ(inAnotherProcess(somebodyElse, [&] { return isComplete(film_, forEver) ? 1 : 0; }), 1);
}

TEST_F(Completeness, IsToldOfTheFileThatALinkLeadsTo) {
  link("film.mp4", "link.mp4");
  const FileDescriptor writer(open(film_.path.c_str(), O_WRONLY | O_CLOEXEC));
  EXPECT_FALSE(isComplete({folder_ / "link.mp4"}, 0.0));
}

// The kernel signals the holder of a lease when somebody opens the file for writing. Both do so as fast as they can
// until they have met often enough: a writer that does not wait is refused at each meeting.
TEST_F(Completeness, CanBeAskedWhileSomebodyBeginsToWrite) {
  const pid_t asking = fork();
  if (asking == 0) {
    signal(SIGIO, SIG_DFL);
    for (;;) isComplete(film_, 0.0);
  }
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  int meetings = 0;
  while (meetings < 20 && std::chrono::steady_clock::now() < deadline) {
    const FileDescriptor writer(open(film_.path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
    if (!writer && errno == EWOULDBLOCK) ++meetings;
  }
  int status = 0;
  EXPECT_EQ(waitpid(asking, &status, WNOHANG), 0) << "ended by signal " << WTERMSIG(status);
  kill(asking, SIGKILL);
  waitpid(asking, &status, 0);
  if (meetings == 0) GTEST_SKIP() << "they never met";
}

}  // namespace
