#include "hosts/medialibrary/IndexerWire.h"
#include "hosts/medialibrary/indexer/IndexerMain.h"

#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <thread>
#include <vector>

/// An indexer that opens no file, but does what the beginning of its name says. Whatever it answers names its process
/// in the title and its nice value as the duration.
namespace {

using medialibrary::Finding;
using medialibrary::IndexerTask;

std::string_view nameOf(std::string_view path) {
  return path.substr(path.rfind('/') + 1);
}

[[noreturn]] void hang() {
  for (;;) ::pause();
}

[[noreturn]] void spin() {
  for (volatile unsigned round = 0;;) round = round + 1;
}

/// A file of ordinary size.
void work() {
  while (std::clock() < CLOCKS_PER_SEC / 50) {
  }
}

void crash() {
  ::raise(SIGSEGV);
}

void say(std::string_view bytes) {
  if (::write(STDOUT_FILENO, bytes.data(), bytes.size()) < 0) std::abort();
}

void talkNonsense() {
  constexpr std::string_view nonsense = "\xFF\xFF\xFF\x7Fnonsense";
  say(nonsense);
  hang();
}

/// The answer to another task.
void lie(std::int64_t id) {
  say(medialibrary::frameOf(medialibrary::IndexerAnswer{id + 1, {}}));
  hang();
}

/// A frame that never ends.
void breakOff() {
  constexpr std::string_view halfOfFrame{"\x40\x00\x00\x00\x03", 5};
  say(halfOfFrame);
  ::_exit(0);
}

void eat(std::size_t bytes) {
  const std::vector<char> memory(bytes, 'x');
  volatile char last = memory.back();
  static_cast<void>(last);
}

void misbehave(std::string_view name) {
  if (name.starts_with("crash")) crash();
  if (name.starts_with("abort")) std::abort();
  if (name.starts_with("hang")) hang();
  if (name.starts_with("spin")) spin();
  if (name.starts_with("hungry")) eat(2ULL << 30U);
  if (name.starts_with("big")) eat(256ULL << 20U);
  if (name.starts_with("nonsense")) talkNonsense();
  if (name.starts_with("half")) breakOff();
  if (name.starts_with("exit")) ::_exit(0);
  if (name.starts_with("throw")) throw 1;
  if (name.starts_with("killed")) ::raise(SIGKILL);
  if (name.starts_with("work")) work();
  if (name.starts_with("slow")) std::this_thread::sleep_for(std::chrono::milliseconds(200));
}

/// What it keeps is missing to the files after it.
void leak(std::string_view name) {
  static std::vector<std::vector<char>> kept;
  if (name.starts_with("leak")) kept.emplace_back(900ULL << 20U, 'x');
}

Finding look(const IndexerTask& task) {
  misbehave(nameOf(task.path));
  if (nameOf(task.path).starts_with("liar")) lie(task.id);
  leak(nameOf(task.path));
  Finding finding;
  finding.isReadable = true;
  finding.title = std::to_string(::getpid());
  finding.duration = ::getpriority(PRIO_PROCESS, 0);
  return finding;
}

}  // namespace

int main(int argc, char** argv) {
  return medialibrary::indexerMain({argv, static_cast<std::size_t>(argc)}, look);
}
