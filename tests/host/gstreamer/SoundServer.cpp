#include "tests/host/gstreamer/SoundServer.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <utility>

namespace gstreamer {

namespace fs = std::filesystem;

Process::Process(const std::vector<std::string>& command, int output) {
  std::vector<std::string> words = command;
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  id_ = fork();
  if (id_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nowhere, STDIN_FILENO);
    dup2(output >= 0 ? output : nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  if (output >= 0) close(output);
}

Process& Process::operator=(Process&& other) noexcept {
  kill();
  id_ = std::exchange(other.id_, -1);
  return *this;
}

void Process::signal(int number) const {
  if (id_ > 0) ::kill(id_, number);
}

void Process::kill() {
  signal(SIGKILL);
  wait();
}

void Process::wait() {
  if (id_ > 0) waitpid(id_, nullptr, 0);
  id_ = -1;
}

namespace {

fs::path newFolder() {
  std::string name = (fs::temp_directory_path() / "quillop-sound-XXXXXX").string();
  return mkdtemp(name.data());
}

}  // namespace

SoundServer::SoundServer()
    : folder_(newFolder()),
      configuration_("PULSE_CLIENTCONFIG", (folder_ / "client.conf").string()),
      server_("PULSE_SERVER", address()) {
  // Clients are not to start a server of their own when this one is not there.
  std::ofstream(folder_ / "client.conf") << "autospawn = no\n";
}

SoundServer::~SoundServer() {
  process_.kill();
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

bool SoundServer::start(const std::vector<std::string>& sinks) {
  std::error_code ignored;
  fs::remove(folder_ / "socket", ignored);
  const std::string home = folder_.string();
  std::vector<std::string> command = {"env",
                                      "HOME=" + home,
                                      "PULSE_RUNTIME_PATH=" + home,
                                      "PULSE_STATE_PATH=" + home,
                                      "pulseaudio",
                                      "--system=false",
                                      "-n",
                                      "--daemonize=no",
                                      "--exit-idle-time=-1",
                                      "--realtime=no",
                                      "--high-priority=no",
                                      "--use-pid-file=no",
                                      "-L",
                                      "module-native-protocol-unix auth-anonymous=1 socket=" + home + "/socket"};
  for (const auto& sink : sinks) {
    command.insert(command.end(), {"-L", "module-null-sink sink_name=" + sink + " format=float32le rate=48000"});
  }
  process_ = Process(command);
  for (int i = 0; i < 1000 && !listens(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return listens();
}

/// The socket is there before anybody listens at it.
bool SoundServer::listens() const {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = folder_ / "socket";
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int end = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const void* generic = &address;
  const bool isThere = connect(end, static_cast<const sockaddr*>(generic), sizeof address) == 0;
  close(end);
  return isThere;
}

void SoundServer::command(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), {"pactl", "--server=" + address()});
  Process(arguments).wait();
}

void SoundServer::addSink(const std::string& name, int channels) const {
  command({"load-module", "module-null-sink", "sink_name=" + name, "format=float32le", "rate=48000",
           "channels=" + std::to_string(channels)});
}

void SoundServer::removeSink(const std::string& name) const {
  const std::string pactl = "pactl --server=" + address();
  const std::string module = pactl + " list short modules | grep -w 'sink_name=" + name + "' | cut -f1";
  Process({"sh", "-c", pactl + " unload-module $(" + module + ")"}).wait();
}

Listener::Listener(const SoundServer& server, const std::string& sink) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
  pipe_ = ends[0];
  process_ = Process({"parec", "--server=" + server.address(), "--device=" + sink + ".monitor", "--format=float32le",
                      "--rate=48000", "--channels=2", "--raw", "--latency-msec=20"},
                     ends[1]);
  thread_ = std::thread([this] { read(); });
}

Listener::~Listener() {
  process_.kill();
  thread_.join();
  close(pipe_);
}

void Listener::read() {
  std::vector<char> bytes;
  std::array<char, 8192> piece{};
  for (;;) {
    const ssize_t got = ::read(pipe_, piece.data(), piece.size());
    if (got <= 0) return;
    bytes.insert(bytes.end(), piece.data(), piece.data() + got);
    const std::size_t frames = bytes.size() / sizeof(Sample);
    std::vector<Sample> samples(frames);
    std::memcpy(samples.data(), bytes.data(), frames * sizeof(Sample));
    bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(frames * sizeof(Sample)));
    const std::lock_guard lock(mutex_);
    heard_.insert(heard_.end(), samples.begin(), samples.end());
  }
}

Listener::Sample Listener::newest() const {
  const std::lock_guard lock(mutex_);
  return heard_.empty() ? Sample{} : heard_.back();
}

std::vector<Listener::Sample> Listener::everything() const {
  const std::lock_guard lock(mutex_);
  return heard_;
}

}  // namespace gstreamer
