#include "hosts/medialibrary/indexer/Sandbox.h"

#include "hosts/probe/MediaProbe.h"
#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/Clips.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/landlock.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <thread>
#include <vector>

namespace {

bool kernelHasLandlock() {
  return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) > 0;
}

/// A process in a sandbox, that may write in one folder.
class Sandbox : public testing::Test {
 protected:
  /// Whether `claim` holds inside.
  bool holdsInside(const std::function<bool()>& claim) const {
    const pid_t child = fork();
    if (child == 0) {
      medialibrary::enterSandbox({thumbnails_, 1ULL << 30U});
      _exit(claim() ? 42 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 42;
  }

  bool isRefusedInside(const std::function<long()>& call) const {
    return holdsInside([&] { return call() < 0 && (errno == EPERM || errno == EACCES); });
  }

  static int make(const std::string& path) { return open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600); }

  TemporaryFolder folder_;
  std::string thumbnails_ = folder_ / "thumbnails";
  std::string elsewhere_ = folder_ / "elsewhere";
  std::string file_;

  void SetUp() override {
    std::filesystem::create_directory(thumbnails_);
    std::filesystem::create_directory(elsewhere_);
    file_ = folder_.write("file", "contents");
  }
};

/// The walls against files, where the kernel can build them.
class SandboxForFiles : public Sandbox {
 protected:
  void SetUp() override {
    if (!kernelHasLandlock()) GTEST_SKIP() << "this kernel has no Landlock";
    Sandbox::SetUp();
  }
};

TEST_F(Sandbox, HasBothWallsWhereTheKernelHas) {
  EXPECT_TRUE(holdsInside([this] {
    const auto walls = medialibrary::enterSandbox({thumbnails_, 1ULL << 30U});
    return walls.filtersCalls && walls.confinesFiles == kernelHasLandlock();
  }));
}

TEST_F(SandboxForFiles, MakesNoFilesElsewhere) {
  EXPECT_TRUE(isRefusedInside([this] { return make(elsewhere_ + "/new"); }));
  EXPECT_TRUE(isRefusedInside([this] { return mkdir((elsewhere_ + "/new").c_str(), 0700); }));
  EXPECT_TRUE(isRefusedInside([this] { return symlink("x", (elsewhere_ + "/new").c_str()); }));
  EXPECT_TRUE(isRefusedInside([this] { return mkfifo((elsewhere_ + "/new").c_str(), 0600); }));
  EXPECT_TRUE(std::filesystem::is_empty(elsewhere_));
}

TEST_F(SandboxForFiles, ChangesNoFilesElsewhere) {
  EXPECT_TRUE(isRefusedInside([this] { return open(file_.c_str(), O_WRONLY); }));
  EXPECT_TRUE(isRefusedInside([this] { return open(file_.c_str(), O_RDWR | O_APPEND); }));
  EXPECT_TRUE(isRefusedInside([this] { return unlink(file_.c_str()); }));
  EXPECT_TRUE(isRefusedInside([this] { return rename(file_.c_str(), (elsewhere_ + "/x").c_str()); }));
  EXPECT_TRUE(isRefusedInside([this] { return rmdir(elsewhere_.c_str()); }));
  EXPECT_TRUE(isRefusedInside([this] { return truncate(file_.c_str(), 0); }));
  EXPECT_EQ(contentsOf(file_), "contents");
}

TEST_F(SandboxForFiles, CoversThreads) {
  EXPECT_TRUE(holdsInside([this] {
    bool isRefused = false;
    std::thread([&] { isRefused = make(elsewhere_ + "/new") < 0; }).join();
    return isRefused;
  }));
}

TEST_F(SandboxForFiles, DoesNotMoveThumbnailsOut) {
  EXPECT_TRUE(holdsInside([this] {
    return make(thumbnails_ + "/new") >= 0 &&
           rename((thumbnails_ + "/new").c_str(), (elsewhere_ + "/new").c_str()) < 0;
  }));
}

TEST_F(SandboxForFiles, WritesNowhereWithoutAFolder) {
  std::filesystem::remove(thumbnails_);
  EXPECT_TRUE(isRefusedInside([this] { return mkdir(thumbnails_.c_str(), 0700); }));
  EXPECT_TRUE(isRefusedInside([this] { return make(elsewhere_ + "/new"); }));
}

TEST_F(Sandbox, WritesInItsFolder) {
  EXPECT_TRUE(holdsInside([this] {
    const std::string large = thumbnails_ + "/large";
    if (mkdir(large.c_str(), 0700) != 0) return false;
    std::string part = large + "/x.XXXXXX";
    const int descriptor = mkostemp(part.data(), O_CLOEXEC);
    return descriptor >= 0 && write(descriptor, "x", 1) == 1 && close(descriptor) == 0 &&
           rename(part.c_str(), (large + "/x").c_str()) == 0;
  }));
  EXPECT_EQ(contentsOf(thumbnails_ + "/large/x"), "x");
}

TEST_F(Sandbox, ReadsFilms) {
  const std::string film = clips::film("medialibrary-film.mp4", 640, 480, 1.0, 440, 2);
  EXPECT_TRUE(holdsInside([&] {
    const auto found = probe::lookWithStill(film, 256, 60.0);
    return found.facts.media.readable && found.still.has_value();
  }));
}

TEST_F(Sandbox, StartsThreads) {
  EXPECT_TRUE(holdsInside([] {
    bool ran = false;
    std::thread([&] { ran = true; }).join();
    return ran;
  }));
}

TEST_F(Sandbox, HasNoNetwork) {
  for (const int family : {AF_INET, AF_INET6, AF_UNIX, AF_NETLINK}) {
    EXPECT_TRUE(isRefusedInside([family] { return socket(family, SOCK_STREAM, 0); })) << family;
  }
  EXPECT_TRUE(isRefusedInside([] {
    int ends[2];
    return socketpair(AF_UNIX, SOCK_STREAM, 0, ends);
  }));
  EXPECT_TRUE(isRefusedInside([] { return connect(0, nullptr, 0); }));
}

TEST_F(Sandbox, StartsNoProgramsOrProcesses) {
  EXPECT_TRUE(isRefusedInside([] { return execl("/bin/true", "true", nullptr); }));
  EXPECT_TRUE(isRefusedInside([] { return fork(); }));
  EXPECT_TRUE(holdsInside([] { return std::system("true") != 0; }));
}

TEST_F(Sandbox, LeavesOtherProcessesAlone) {
  const pid_t parent = getpid();
  EXPECT_TRUE(isRefusedInside([=] { return kill(parent, 0); }));
  EXPECT_TRUE(isRefusedInside([=] { return tgkill(parent, parent, 0); }));
  EXPECT_TRUE(isRefusedInside([=] { return ptrace(PTRACE_SEIZE, parent, nullptr, nullptr); }));
  EXPECT_TRUE(isRefusedInside([=] { return syscall(SYS_pidfd_open, parent, 0); }));
  EXPECT_TRUE(isRefusedInside([=] { return syscall(SYS_process_vm_readv, parent, nullptr, 0, nullptr, 0, 0); }));
}

TEST_F(Sandbox, ChangesNothingAboutFiles) {
  EXPECT_TRUE(isRefusedInside([this] { return chmod(file_.c_str(), 0777); }));
  EXPECT_TRUE(isRefusedInside([this] { return chown(file_.c_str(), 1, 1); }));
  EXPECT_TRUE(isRefusedInside([this] { return utimensat(AT_FDCWD, file_.c_str(), nullptr, 0); }));
}

TEST_F(Sandbox, KeepsAwayFromTheSystem) {
  EXPECT_TRUE(isRefusedInside([this] { return mount("none", elsewhere_.c_str(), "tmpfs", 0, nullptr); }));
  EXPECT_TRUE(isRefusedInside([] { return unshare(CLONE_NEWUSER); }));
  EXPECT_TRUE(isRefusedInside([] { return syscall(SYS_io_uring_setup, 1, nullptr); }));
  EXPECT_TRUE(isRefusedInside([] { return syscall(SYS_bpf, 0, nullptr, 0); }));
  EXPECT_TRUE(isRefusedInside([] { return ioctl(0, TIOCSTI, "x"); }));
}

TEST_F(Sandbox, LosesNothingByWhatItsCallsLookLike) {
  constexpr unsigned long decoration = 1UL << 32U;
  EXPECT_TRUE(isRefusedInside([] { return syscall(SYS_ioctl, 0, TIOCSTI | decoration, "x"); }));
}

TEST_F(Sandbox, GainsNoRightsAndLeavesNoCore) {
  EXPECT_TRUE(holdsInside([] {
    rlimit core{};
    return prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1 && prctl(PR_GET_DUMPABLE, 0, 0, 0, 0) == 0 &&
           getrlimit(RLIMIT_CORE, &core) == 0 && core.rlim_max == 0;
  }));
}

TEST_F(Sandbox, HoldsNoMoreThanItsMemory) {
  EXPECT_TRUE(holdsInside([] {
    const auto hold = [](std::size_t bytes) {
      void* memory = std::malloc(bytes);
      const bool isHeld = memory != nullptr;
      std::free(memory);
      return isHeld;
    };
    return hold(512ULL << 20U) && !hold(2ULL << 30U);
  }));
  EXPECT_TRUE(isRefusedInside([] {
    const rlimit more{RLIM_INFINITY, RLIM_INFINITY};
    return setrlimit(RLIMIT_DATA, &more);
  }));
}

TEST(Priority, IsTheLowest) {
  const pid_t child = fork();
  if (child == 0) {
    medialibrary::giveWayToOtherProcesses();
    constexpr long idleClass = 3L << 13U;
    const bool isLowest = getpriority(PRIO_PROCESS, 0) == 19 && sched_getscheduler(0) == SCHED_IDLE &&
                          syscall(SYS_ioprio_get, 1, 0) == idleClass;
    _exit(isLowest ? 42 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 42);
}

TEST(Starter, ThatIsGoneAlreadyIsNoticed) {
  const pid_t child = fork();
  if (child == 0) _exit(!medialibrary::endWithStarter(1) && medialibrary::endWithStarter(getppid()) ? 42 : 1);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 42);
}

}  // namespace
