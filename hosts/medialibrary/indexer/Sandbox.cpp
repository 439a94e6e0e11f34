#include "hosts/medialibrary/indexer/Sandbox.h"

#include "hosts/medialibrary/FileDescriptor.h"

#include <fcntl.h>
#include <linux/ioprio.h>
#include <linux/landlock.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <memory>

namespace medialibrary {

namespace {

// Landlock. Its headers may be older than the kernel that the program runs on, hence numbers of our own
// (kernel documentation, "Landlock: unprivileged access control", kernel versions by ABI).

/// `landlock_ruleset_attr` as of ABI 6; older kernels take the beginning of it.
struct LandlockRules {
  std::uint64_t files = 0;
  std::uint64_t network = 0;
  std::uint64_t scopes = 0;
};

constexpr std::uint64_t execute = LANDLOCK_ACCESS_FS_EXECUTE;
constexpr std::uint64_t truncate = 1U << 14U;       // since ABI 3
constexpr std::uint64_t controlDevice = 1U << 15U;  // since ABI 5
constexpr std::uint64_t bindAndConnect = 3U;        // since ABI 4
constexpr std::uint64_t socketsAndSignals = 3U;     // since ABI 6

constexpr std::uint64_t writingOfAbi1 = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                        LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                                        LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG |
                                        LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO |
                                        LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;

/// What storing a thumbnail takes.
constexpr std::uint64_t storing = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_FILE |
                                  LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG | truncate;

long landlockAbi() {
  return ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

LandlockRules rulesOf(long abi) {
  LandlockRules rules{execute | writingOfAbi1, 0, 0};
  if (abi >= 2) rules.files |= LANDLOCK_ACCESS_FS_REFER;
  if (abi >= 3) rules.files |= truncate;
  if (abi >= 4) rules.network = bindAndConnect;
  if (abi >= 5) rules.files |= controlDevice;
  if (abi >= 6) rules.scopes = socketsAndSignals;
  return rules;
}

std::size_t sizeOfRules(long abi) {
  if (abi >= 6) return sizeof(LandlockRules);
  return abi >= 4 ? 2 * sizeof(std::uint64_t) : sizeof(std::uint64_t);
}

/// Where this fails, nothing can be written at all, which costs the thumbnails only.
void allowStoring(const FileDescriptor& ruleset, const std::string& folder, std::uint64_t known) {
  const FileDescriptor place(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!place) return;
  const landlock_path_beneath_attr rule{storing & known, place.number()};
  ::syscall(SYS_landlock_add_rule, ruleset.number(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
}

bool confineFiles(const std::string& writableFolder) {
  const long abi = landlockAbi();
  if (abi < 1) return false;
  const LandlockRules rules = rulesOf(abi);
  const FileDescriptor ruleset(static_cast<int>(::syscall(SYS_landlock_create_ruleset, &rules, sizeOfRules(abi), 0)));
  if (!ruleset) return false;
  if (!writableFolder.empty()) allowStoring(ruleset, writableFolder, rules.files);
  return ::syscall(SYS_landlock_restrict_self, ruleset.number(), 0) == 0;
}

// System calls.

struct ReleaseFilter {
  void operator()(void* filter) const { seccomp_release(filter); }
};
using Filter = std::unique_ptr<void, ReleaseFilter>;

/// What fails always. Landlock knows neither modes nor owners, times or attributes.
constexpr auto forbiddenCalls = std::to_array<const char*>({
    // the network, and other programs through sockets
    "socket",
    "socketpair",
    "connect",
    "bind",
    "listen",
    "accept",
    "accept4",
    "socketcall",
    // programs and processes
    "execve",
    "execveat",
    "fork",
    "vfork",
    "kill",
    "tkill",
    "rt_sigqueueinfo",
    "rt_tgsigqueueinfo",
    "ptrace",
    "process_vm_readv",
    "process_vm_writev",
    "process_madvise",
    "kcmp",
    "pidfd_open",
    "pidfd_getfd",
    "pidfd_send_signal",
    "setns",
    "unshare",
    "setpgid",
    "setsid",
    // ways round a filter of calls
    "io_uring_setup",
    "io_uring_enter",
    "io_uring_register",
    "userfaultfd",
    "bpf",
    "perf_event_open",
    "personality",
    // the system
    "mount",
    "umount",
    "umount2",
    "pivot_root",
    "chroot",
    "open_tree",
    "move_mount",
    "fsopen",
    "fsconfig",
    "fsmount",
    "fspick",
    "mount_setattr",
    "swapon",
    "swapoff",
    "reboot",
    "kexec_load",
    "kexec_file_load",
    "init_module",
    "finit_module",
    "delete_module",
    "quotactl",
    "acct",
    "add_key",
    "request_key",
    "keyctl",
    "name_to_handle_at",
    "open_by_handle_at",
    "memfd_create",
    "syslog",
    "settimeofday",
    "clock_settime",
    "clock_adjtime",
    "adjtimex",
    "sethostname",
    "setdomainname",
    "iopl",
    "ioperm",
    "vhangup",
    "shmget",
    "shmat",
    "msgget",
    "semget",
    "mq_open",
    // files of others
    "chmod",
    "fchmod",
    "fchmodat",
    "fchmodat2",
    "chown",
    "fchown",
    "lchown",
    "fchownat",
    "utime",
    "utimes",
    "utimensat",
    "futimesat",
    "setxattr",
    "lsetxattr",
    "fsetxattr",
    "removexattr",
    "lremovexattr",
    "fremovexattr",
    "fanotify_init",
    "inotify_init",
    "inotify_init1",
});

using Arguments = std::initializer_list<scmp_arg_cmp>;

/// Names that the library or the architecture does not know are passed over.
bool forbid(const Filter& filter, const char* name, int error, Arguments arguments = {}) {
  const int number = seccomp_syscall_resolve_name(name);
  if (number == __NR_SCMP_ERROR) return true;
  const auto count = static_cast<unsigned>(arguments.size());
  const auto action = SCMP_ACT_ERRNO(static_cast<std::uint16_t>(error));
  return seccomp_rule_add_array(filter.get(), action, number, count, arguments.begin()) == 0;
}

scmp_arg_cmp argument(unsigned index, scmp_compare comparison, std::uint64_t first, std::uint64_t second = 0) {
  return {index, comparison, first, second};
}

bool forbidInPart(const Filter& filter) {
  constexpr std::uint64_t command = 0xFFFF'FFFFU;  // the kernel takes no notice of the upper half
  const auto self = static_cast<std::uint64_t>(::getpid());
  // The flags of clone3 are out of a filter's sight. Where it does not exist, the C library starts threads by clone.
  return forbid(filter, "clone3", ENOSYS) &&
         forbid(filter, "clone", EPERM, {argument(0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0)}) &&
         forbid(filter, "tgkill", EPERM, {argument(0, SCMP_CMP_NE, self)}) &&  // but it may abort
         forbid(filter, "prlimit64", EPERM, {argument(2, SCMP_CMP_NE, 0)}) && forbid(filter, "setrlimit", EPERM) &&
         forbid(filter, "ioctl", EPERM, {argument(1, SCMP_CMP_MASKED_EQ, command, TIOCSTI)}) &&
         forbid(filter, "ioctl", EPERM, {argument(1, SCMP_CMP_MASKED_EQ, command, TIOCLINUX)});
}

bool filterCalls() {
  const Filter filter(seccomp_init(SCMP_ACT_ALLOW));
  if (!filter) return false;
  const bool isComplete = std::all_of(forbiddenCalls.begin(), forbiddenCalls.end(),
                                      [&](const char* name) { return forbid(filter, name, EPERM); });
  if (!isComplete || !forbidInPart(filter)) return false;
  seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_TSYNC, 1);  // also for threads that a library may have started
  return seccomp_load(filter.get()) == 0;
}

// Limits.

void limit(__rlimit_resource_t resource, rlim_t most) {
  const rlimit value{most, most};
  ::setrlimit(resource, &value);
}

/// A sanitizer's own bookkeeping counts as data, and takes terabytes of addresses.
constexpr bool hasSanitizer() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return true;
#else
  return false;
#endif
}

// The starter.

volatile std::sig_atomic_t starterOfThis = 0;

/// The kernel sends the signal when the thread that started this process ends, which may be long before its process.
void endIfStarterIsGone(int) {
  if (::getppid() != starterOfThis) ::_exit(0);
}

}  // namespace

SandboxWalls enterSandbox(const SandboxRules& rules) {
  ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  ::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);  // a collector of core files does not ask for the limit
  limit(RLIMIT_CORE, 0);
  if (!hasSanitizer()) limit(RLIMIT_DATA, rules.mostMemory);
  SandboxWalls walls;
  walls.confinesFiles = confineFiles(rules.writableFolder);
  walls.filtersCalls = filterCalls();
  return walls;
}

void giveWayToOtherProcesses() {
  constexpr int nicest = 19;
  ::setpriority(PRIO_PROCESS, 0, nicest);
  const sched_param parameters{};
  ::sched_setscheduler(0, SCHED_IDLE, &parameters);
  ::syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, 0, IOPRIO_PRIO_VALUE(IOPRIO_CLASS_IDLE, 0));
}

bool endWithStarter(pid_t starter) {
  starterOfThis = starter;
  struct sigaction action {};
  action.sa_handler = endIfStarterIsGone;
  action.sa_flags = SA_RESTART;
  ::sigaction(SIGHUP, &action, nullptr);
  ::prctl(PR_SET_PDEATHSIG, SIGHUP, 0, 0, 0);
  return ::getppid() == starter;
}

}  // namespace medialibrary
