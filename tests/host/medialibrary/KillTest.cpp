#include "hosts/medialibrary/Index.h"
#include "tests/host/medialibrary/LibraryFixture.h"
#include "tests/host/medialibrary/Programs.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <set>

namespace {

namespace fs = std::filesystem;

/// How often something is killed; more of it is asked for by QUILLOP_ROUNDS.
int rounds() {
  constexpr int few = 12;
  const char* asked = std::getenv("QUILLOP_ROUNDS");
  return asked != nullptr ? std::max(1, std::atoi(asked)) : few;
}

/// The process whose parent is `parent` and whose program is the indexer; none where there is none at the moment.
std::optional<pid_t> indexerOf(pid_t parent) {
  for (const auto& entry : fs::directory_iterator("/proc")) {
    std::ifstream file(entry.path() / "stat");
    std::string id;
    std::string name;
    std::string state;
    pid_t itsParent = 0;
    if (file >> id >> name >> state >> itsParent && itsParent == parent && name.starts_with("(quillop-indexe")) {
      return std::atoi(id.c_str());
    }
  }
  return std::nullopt;
}

/// A program that keeps the library, with the index in a place of its own.
class KilledLibrary : public LibraryFixture {
 protected:
  void TearDown() override { end(); }

  std::string index() const { return system_ / "library.db"; }

  void start() {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    std::string program = programs::library();
    std::string file = index();
    std::string indexer = programs::indexer();
    std::string folder = folder_.path().string();
    const std::array<char*, 5> arguments = {program.data(), file.data(), indexer.data(), folder.data(), nullptr};
    ASSERT_EQ(::posix_spawn(&process_, program.c_str(), &actions, nullptr, arguments.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    output_ = ends[0];
  }

  void end() {
    if (process_ == 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(std::exchange(process_, 0), nullptr, 0);
    ::close(output_);
  }

  /// Until everything was looked into.
  void waitUntilSettled() {
    char byte = 0;
    ASSERT_EQ(::read(output_, &byte, 1), 1);
  }

  /// What has been committed as known.
  std::set<std::string> known() const {
    const auto reader = medialibrary::Index::openForReading(index());
    std::set<std::string> titles;
    if (!reader) return titles;
    for (const auto& title : titlesOf(*reader->items(homeVideo))) titles.insert(title);
    return titles;
  }

  static bool includes(const std::set<std::string>& larger, const std::set<std::string>& smaller) {
    return std::includes(larger.begin(), larger.end(), smaller.begin(), smaller.end());
  }

  pid_t process_ = 0;
  int output_ = -1;
};

TEST_F(KilledLibrary, LosesNothingThatItHadWrittenAndGoesOn) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const int files = rounds() * 15;
  for (int i = 0; i < files; ++i) folder_.copy(film(), "film " + std::to_string(i) + ".mp4");
  std::set<std::string> before;
  for (int i = 0; i < rounds(); ++i) {
    start();
    ::usleep(std::uniform_int_distribution<useconds_t>(1'000, 150'000)(random));
    const auto indexer = i % 2 == 0 ? indexerOf(process_) : std::nullopt;
    if (indexer && ::kill(*indexer, SIGKILL) == 0) {
      ::usleep(std::uniform_int_distribution<useconds_t>(1'000, 50'000)(random));
    }
    const auto committed = known();
    EXPECT_TRUE(includes(committed, before));
    end();
    before = known();
    EXPECT_TRUE(includes(before, committed));
    EXPECT_FALSE(fs::exists(index() + ".damaged"));
  }
  start();
  waitUntilSettled();
  end();
  EXPECT_EQ(known().size(), static_cast<std::size_t>(files));
  EXPECT_FALSE(fs::exists(index() + ".damaged"));
}

}  // namespace
