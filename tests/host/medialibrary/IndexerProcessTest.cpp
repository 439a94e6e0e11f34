#include "hosts/medialibrary/IndexerProcess.h"

#include "hosts/medialibrary/Thumbnails.h"
#include "hosts/probe/MediaProbe.h"
#include "tests/host/medialibrary/IndexerUse.h"
#include "tests/host/medialibrary/Programs.h"
#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/Clips.h"
#include "tests/support/EnvironmentVariable.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <thread>

namespace {

using medialibrary::Finding;
using medialibrary::IndexerOptions;
using medialibrary::IndexerProcess;

/// The stand-in, whose look does what the file's name says.
IndexerOptions standIn() {
  return {programs::standInIndexer(), std::chrono::seconds(30), 1ULL << 30U, true};
}

IndexerOptions realProgram() {
  return {programs::indexer(), std::chrono::seconds(60), 1ULL << 30U, true};
}

IndexerOptions impatient() {
  auto options = standIn();
  options.patience = std::chrono::milliseconds(1500);
  return options;
}

pid_t processOf(const Finding& finding) {
  return finding.title ? std::stoi(*finding.title) : 0;
}

std::string film() {
  return clips::film("medialibrary-film.mp4", 640, 480, 1.0, 440, 2);
}

/// The state letter of a process, 0 once there is none of that number.
char stateOf(pid_t process) {
  const std::string line = contentsOf("/proc/" + std::to_string(process) + "/stat");
  const auto name = line.rfind(") ");
  return name == std::string::npos ? '\0' : line[name + 2];
}

bool isGone(pid_t process) {
  return stateOf(process) == '\0' || stateOf(process) == 'Z';
}

/// Until the indexer has sent something, which is not taken from it.
void waitForOpening(const IndexerProcess& indexer) {
  pollfd descriptor{indexer.descriptor(), POLLIN, 0};
  ::poll(&descriptor, 1, -1);
}

template <class Condition>
bool comesTrue(Condition condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!condition() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return condition();
}

/// A file that costs itself alone, and for which reason.
struct Killer {
  const char* name;
  const char* reason;
};

class AfterAKiller : public testing::TestWithParam<Killer> {};

TEST_P(AfterAKiller, TheNextFilesAreLookedInto) {
  const auto indexer = IndexerProcess::make(impatient());
  const std::string killer = std::string("/") + GetParam().name;
  const auto findings = findingsOf(*indexer, {"/good", killer, "/next", "/last"});
  EXPECT_TRUE(findings[0].isReadable);
  EXPECT_FALSE(findings[1].isReadable);
  EXPECT_EQ(findings[1].reason, GetParam().reason);
  EXPECT_TRUE(findings[2].isReadable);
  EXPECT_TRUE(findings[3].isReadable);
  EXPECT_NE(processOf(findings[0]), processOf(findings[2]));
  EXPECT_EQ(processOf(findings[2]), processOf(findings[3]));
  EXPECT_TRUE(indexer->canRun());
}

TEST_P(AfterAKiller, AnotherKillerIsNoneTheWorse) {
  const auto indexer = IndexerProcess::make(impatient());
  const std::string killer = std::string("/") + GetParam().name;
  const auto findings = findingsOf(*indexer, {killer, killer, killer, killer, "/good"});
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(findings[i].reason, GetParam().reason);
  EXPECT_TRUE(findings[4].isReadable);
  EXPECT_TRUE(indexer->canRun());
}

INSTANTIATE_TEST_SUITE_P(
    Each, AfterAKiller,
    testing::Values(Killer{"crash", "looking into it failed"}, Killer{"abort", "looking into it failed"},
                    Killer{"throw", "looking into it failed"}, Killer{"exit", "looking into it failed"},
                    Killer{"nonsense", "looking into it failed"}, Killer{"half", "looking into it failed"},
                    Killer{"liar", "looking into it failed"}, Killer{"killed", "looking into it failed"},
                    Killer{"hang", "looking into it took too long"}, Killer{"spin", "looking into it took too long"},
                    Killer{"hungry", "looking into it takes too much memory"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(IndexerProcess, KeepsOneProcessForManyFiles) {
  const auto indexer = IndexerProcess::make(standIn());
  std::vector<std::string> paths;
  for (int i = 0; i < 300; ++i) paths.push_back("/good" + std::to_string(i));
  for (const auto& finding : findingsOf(*indexer, paths)) EXPECT_TRUE(finding.isReadable);
  const auto again = findingsOf(*indexer, {"/a", "/b"});
  EXPECT_EQ(processOf(again[0]), processOf(again[1]));
}

TEST(IndexerProcess, HasNoneBeforeTheFirstTask) {
  const auto indexer = IndexerProcess::make(standIn());
  EXPECT_LT(indexer->descriptor(), 0);
  EXPECT_FALSE(indexer->deadline());
  EXPECT_TRUE(indexer->answers().empty());
  EXPECT_TRUE(indexer->canRun());
}

TEST(IndexerProcess, HasNoDeadlineWhileNothingIsUnderWay) {
  const auto indexer = IndexerProcess::make(standIn());
  findingsOf(*indexer, {"/good"});
  EXPECT_FALSE(indexer->deadline());
  EXPECT_GE(indexer->descriptor(), 0);
  indexer->add({1, "/good", 0});
  EXPECT_TRUE(indexer->deadline());
  waitForAnswers(*indexer, 1);
}

TEST(IndexerProcess, PatienceIsForEachFileAnew) {
  auto options = standIn();
  options.patience = std::chrono::seconds(2);
  const auto indexer = IndexerProcess::make(options);
  const std::vector<std::string> paths(20, "/slow");  // four seconds in all
  for (const auto& finding : findingsOf(*indexer, paths)) EXPECT_TRUE(finding.isReadable);
}

TEST(IndexerProcess, MayHoldWhatItsLimitAllows) {
  const auto indexer = IndexerProcess::make(standIn());
  EXPECT_TRUE(findingsOf(*indexer, {"/big"})[0].isReadable);
}

TEST(IndexerProcess, DoesNotBlameAFileForWhatOthersLeftBehind) {
  const auto indexer = IndexerProcess::make(standIn());
  const auto findings = findingsOf(*indexer, {"/leak", "/big", "/good"});
  EXPECT_TRUE(findings[0].isReadable);
  EXPECT_TRUE(findings[1].isReadable);
  EXPECT_NE(processOf(findings[0]), processOf(findings[1]));
  EXPECT_TRUE(findings[2].isReadable);
}

TEST(IndexerProcess, GoesOnAfterItsProcessWasKilledFromOutside) {
  const auto indexer = IndexerProcess::make(standIn());
  const pid_t first = processOf(findingsOf(*indexer, {"/good"})[0]);
  std::int64_t id = 0;
  for (const char* path : {"/slow1", "/slow2", "/slow3"}) indexer->add({id++, path, 0});
  waitForOpening(*indexer);
  ASSERT_EQ(kill(first, SIGKILL), 0);
  for (const auto& answer : waitForAnswers(*indexer, 3)) {
    EXPECT_TRUE(answer.finding.isReadable) << answer.finding.reason;
    EXPECT_NE(processOf(answer.finding), first);
  }
}

TEST(IndexerProcess, GoesOnAfterItsIdleProcessWasKilled) {
  const auto indexer = IndexerProcess::make(standIn());
  const pid_t first = processOf(findingsOf(*indexer, {"/good"})[0]);
  ASSERT_EQ(kill(first, SIGKILL), 0);
  ASSERT_TRUE(comesTrue([&] { return isGone(first); }));
  const auto finding = findingsOf(*indexer, {"/good"})[0];
  EXPECT_TRUE(finding.isReadable);
  EXPECT_NE(processOf(finding), first);
}

TEST(IndexerProcess, LeavesNoProcessBehind) {
  pid_t process = 0;
  {
    const auto indexer = IndexerProcess::make(impatient());
    process = processOf(findingsOf(*indexer, {"/crash", "/hang", "/good"})[2]);
    indexer->add({1, "/hang", 0});
  }
  EXPECT_EQ(stateOf(process), '\0');
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST(IndexerProcess, LeavesOtherChildrenAlone) {
  const pid_t other = fork();
  if (other == 0) _exit(7);
  ASSERT_TRUE(comesTrue([&] { return stateOf(other) == 'Z'; }));
  findingsOf(*IndexerProcess::make(standIn()), {"/crash", "/good"});
  int status = 0;
  EXPECT_EQ(waitpid(other, &status, 0), other);
  EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST(IndexerProcess, MayBeStartedOnAThreadThatEnds) {
  const auto indexer = IndexerProcess::make(standIn());
  pid_t first = 0;
  std::thread([&] { first = processOf(findingsOf(*indexer, {"/good"})[0]); }).join();
  EXPECT_EQ(processOf(findingsOf(*indexer, {"/slow"})[0]), first);
}

TEST(IndexerProcess, EndsWithItsStarter) {
  std::array<int, 2> pipe{};
  ASSERT_EQ(::pipe(pipe.data()), 0);
  const pid_t starter = fork();
  if (starter == 0) {
    const auto indexer = IndexerProcess::make(standIn());
    const pid_t process = processOf(findingsOf(*indexer, {"/good"})[0]);
    indexer->add({1, "/spin", 0});  // it will not read its input any more
    waitForOpening(*indexer);
    const bool isTold = write(pipe[1], &process, sizeof process) == sizeof process;
    if (isTold) pause();
    _exit(1);
  }
  pid_t process = 0;
  ASSERT_EQ(read(pipe[0], &process, sizeof process), static_cast<ssize_t>(sizeof process));
  ASSERT_GT(process, 0);
  kill(starter, SIGKILL);
  waitpid(starter, nullptr, 0);
  EXPECT_TRUE(comesTrue([&] { return isGone(process); }));
  close(pipe[0]);
  close(pipe[1]);
}

TEST(IndexerProcess, IsInTheBackgroundUnlessUrgent) {
  auto options = standIn();
  EXPECT_EQ(findingsOf(*IndexerProcess::make(options), {"/good"})[0].duration, 0.0);
  options.isUrgent = false;
  EXPECT_EQ(findingsOf(*IndexerProcess::make(options), {"/good"})[0].duration, 19.0);
}

/// Keeps all processors busy.
class BusyMachine {
 public:
  BusyMachine() {
    for (unsigned i = 0; i < std::thread::hardware_concurrency(); ++i) {
      threads_.emplace_back([this] {
        while (!ends_) {
        }
      });
    }
  }
  ~BusyMachine() {
    ends_ = true;
    for (auto& thread : threads_) thread.join();
  }
  BusyMachine(const BusyMachine&) = delete;
  BusyMachine& operator=(const BusyMachine&) = delete;

 private:
  std::atomic<bool> ends_ = false;
  std::vector<std::thread> threads_;
};

TEST(IndexerProcess, DoesNotBlameAFileForABusyMachine) {
  auto options = standIn();
  options.patience = std::chrono::seconds(1);
  options.isUrgent = false;
  const BusyMachine machine;
  const auto finding = findingsOf(*IndexerProcess::make(options), {"/work"})[0];
  EXPECT_TRUE(finding.isReadable) << finding.reason;
}

TEST(IndexerProcess, InheritsNoDescriptors) {
  const TemporaryFolder folder;
  const int open = ::open(folder.write("secret", "x").c_str(), O_RDONLY);
  const auto indexer = IndexerProcess::make(standIn());
  const pid_t process = processOf(findingsOf(*indexer, {"/good"})[0]);
  if (geteuid() != 0) GTEST_SKIP() << "only root sees the descriptors of a process that hides itself";
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/fd")) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"0", "1", "2"}));
  close(open);
}

void expectCannotRun(const std::string& program) {
  auto options = standIn();
  options.program = program;
  const auto indexer = IndexerProcess::make(options);
  for (const auto& finding : findingsOf(*indexer, {"/a", "/b", "/c", "/d", "/e", "/f"})) {
    EXPECT_FALSE(finding.isReadable);
    EXPECT_EQ(finding.reason, "the program that looks into files cannot be started");
  }
  EXPECT_FALSE(indexer->canRun());
  EXPECT_EQ(findingsOf(*indexer, {"/a"})[0].isReadable, false);
}

TEST(IndexerProcess, CannotRunWithoutItsProgram) {
  const TemporaryFolder folder;
  expectCannotRun(folder / "missing");
  expectCannotRun(folder.path());
  expectCannotRun(folder.write("not-executable", "x"));
  expectCannotRun("");
}

TEST(IndexerProcess, CannotRunAProgramThatEndsAtOnce) {
  expectCannotRun("/bin/false");
  expectCannotRun("/bin/true");
}

TEST(IndexerProcess, CannotRunAProgramThatSaysSomethingElse) {
  expectCannotRun("/bin/echo");
}

TEST(IndexerProcess, CannotRunAProgramThatNeverOpensAnything) {
  const TemporaryFolder folder;
  const std::string program = folder.write("sleeper", "#!/bin/sh\nexec sleep 1000\n");
  chmod(program.c_str(), 0755);
  auto options = impatient();
  options.program = program;
  options.patience = std::chrono::milliseconds(200);
  const auto indexer = IndexerProcess::make(options);
  EXPECT_FALSE(findingsOf(*indexer, {"/a"})[0].isReadable);
  EXPECT_FALSE(indexer->canRun());
}

TEST(IndexerProcess, WaitsForAProgramThatCannotBeStartedAtTheMoment) {
  const TemporaryFolder folder;
  auto options = standIn();
  options.program = folder.copy(programs::standInIndexer(), "indexer");
  const int writer = ::open(options.program.c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_GE(writer, 0);
  const auto indexer = IndexerProcess::make(options);
  indexer->add({1, "/good", 0});
  EXPECT_TRUE(indexer->deadline());
  for (int i = 0; i < 10; ++i) EXPECT_TRUE(indexer->answers().empty());
  EXPECT_TRUE(indexer->canRun());
  close(writer);
  const auto answers = waitForAnswers(*indexer, 1);
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_TRUE(answers[0].finding.isReadable) << answers[0].finding.reason;
}

TEST(IndexerProcess, RefusesPathsThatNothingCanOpen) {
  const auto indexer = IndexerProcess::make(standIn());
  const std::string endless = "/" + std::string(100'000, 'x');
  const auto findings = findingsOf(*indexer, {"/good", endless, endless, "/good"});
  EXPECT_TRUE(findings[0].isReadable);
  EXPECT_EQ(findings[1].reason, "its path is too long");
  EXPECT_EQ(findings[2].reason, "its path is too long");
  EXPECT_TRUE(findings[3].isReadable);
}

TEST(IndexerProcess, EndsAtOnceWhereSomebodyElseStartsIt) {
  const pid_t child = fork();
  if (child == 0) {
    execl(programs::indexer(), programs::indexer(), "--help", nullptr);
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 2);
}

/// The real program, with an empty thumbnail cache.
class RealIndexer : public testing::Test {
 protected:
  Finding findingOf(const std::string& path, int side = 0) { return findingsOf(*indexer_, {path}, side)[0]; }

  TemporaryFolder folder_;
  EnvironmentVariable cache_{"XDG_CACHE_HOME", folder_ / "cache"};
  std::unique_ptr<IndexerProcess> indexer_ = IndexerProcess::make(realProgram());
};

void expectSame(const Finding& finding, const probe::FileFacts& facts) {
  const auto count = [&](host::TrackKind kind) {
    return std::count_if(facts.media.tracks.begin(), facts.media.tracks.end(),
                         [kind](const auto& track) { return track.kind == kind; });
  };
  EXPECT_EQ(finding.isReadable, facts.media.readable);
  EXPECT_EQ(finding.reason, facts.media.readable ? "" : facts.reason);
  EXPECT_EQ(finding.mediaType, facts.mediaType);
  EXPECT_EQ(finding.title, facts.title);
  EXPECT_EQ(finding.duration, facts.media.duration);
  EXPECT_EQ(finding.rotation, facts.rotation);
  EXPECT_EQ(finding.soundTracks, count(host::TrackKind::Audio));
  EXPECT_EQ(finding.pictureTracks, count(host::TrackKind::Video));
  EXPECT_EQ(finding.hasPicture, facts.hasPicture);
  EXPECT_EQ(finding.isProtected, facts.media.hasProtectedContent);
}

TEST_F(RealIndexer, FindsWhatALookFinds) {
  const std::vector<std::string> paths = {
      film(),
      clips::clip("medialibrary-titled.mkv", {"-i", film(), "-c", "copy", "-metadata", "title=Più & \xE2\x82\xAC"}),
      clips::clip("medialibrary-sound.m4a", {"-i", film(), "-vn", "-c", "copy"}),
      clips::clip("medialibrary-silent.ts", {"-i", film(), "-an", "-c", "copy"}),
      clips::clip("medialibrary-turned.mp4",
                  {"-i", film(), "-c", "copy", "-metadata:s:v:0", "rotate=90", "-metadata", "title=T"}),
      folder_.write("text.mp4", "no film"),
      folder_.write("empty.mp4", ""),
      folder_ / "missing.mp4",
      folder_.path().string()};
  for (const int side : {0, 256}) {
    const auto findings = findingsOf(*indexer_, paths, side);
    for (std::size_t i = 0; i < paths.size(); ++i) {
      SCOPED_TRACE(paths[i]);
      expectSame(findings[i], probe::look(paths[i], 60.0));
    }
    EXPECT_TRUE(findings[0].isReadable);
    EXPECT_EQ(findings[1].title, "Più & \xE2\x82\xAC");
    EXPECT_NE(findings[4].rotation, 0);
  }
}

TEST_F(RealIndexer, MakesAThumbnailThatTheCacheTakes) {
  const std::string path = folder_.copy(film(), "Film.mp4");
  EXPECT_TRUE(findingOf(path, 256).isReadable);
  const auto cache = medialibrary::ThumbnailCache::forFile(path);
  const auto still = cache->find(256);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->width, 256);
  EXPECT_EQ(still->height, 192);
  EXPECT_TRUE(std::filesystem::exists(cache->pathOf(medialibrary::ThumbnailSize::Large)));
}

TEST_F(RealIndexer, MakesNoThumbnailUnasked) {
  const std::string path = folder_.copy(film(), "Film.mp4");
  EXPECT_TRUE(findingOf(path).isReadable);
  EXPECT_FALSE(medialibrary::ThumbnailCache::forFile(path)->find(1));
}

TEST_F(RealIndexer, LeavesAValidThumbnailAsItIs) {
  const std::string path = folder_.copy(film(), "Film.mp4");
  const auto cache = medialibrary::ThumbnailCache::forFile(path);
  const probe::Still green{1, 1, {0, 255, 0, 255}};
  cache->store(medialibrary::ThumbnailSize::ExtraLarge, green);
  EXPECT_TRUE(findingOf(path, 256).isReadable);
  EXPECT_FALSE(std::filesystem::exists(cache->pathOf(medialibrary::ThumbnailSize::Large)));
  EXPECT_EQ(cache->find(256)->bgrx, green.bgrx);
}

TEST_F(RealIndexer, ReadsFilesOfAnyName) {
  std::vector<std::string> paths;
  for (const std::string& name :
       {std::string("two\nlines.mp4"), std::string("invalid\xFF\xC3.mp4"), std::string(251, 'x') + ".mp4",
        std::string("-rf"), std::string(" "), std::string("%2F.mp4"), std::string("\x01\x7F")}) {
    paths.push_back(folder_.copy(film(), name));
  }
  const auto findings = findingsOf(*indexer_, paths, 256);
  for (std::size_t i = 0; i < paths.size(); ++i) {
    EXPECT_TRUE(findings[i].isReadable) << paths[i] << ": " << findings[i].reason;
    EXPECT_TRUE(medialibrary::ThumbnailCache::forFile(paths[i])->find(256)) << paths[i];
  }
}

TEST_F(RealIndexer, DoesWithoutAThumbnailFolder) {
  const EnvironmentVariable nowhere("XDG_CACHE_HOME", "/dev/null/cache");
  EXPECT_TRUE(findingOf(film(), 256).isReadable);
}

TEST_F(RealIndexer, DoesNotTakeMoreMemoryThanAllowed) {
  auto options = realProgram();
  options.mostMemory = 64ULL << 20U;  // too little for a picture of 8K
  indexer_ = IndexerProcess::make(options);
  const std::string large =
      clips::clip("medialibrary-8k.mp4", {"-f", "lavfi", "-i", "testsrc2=size=7680x4320:rate=1:duration=1",
                                          "-pix_fmt", "yuv420p", "-preset", "ultrafast"});
  const auto findings = findingsOf(*indexer_, {large, film()}, 256);
  const auto hasThumbnail = [](const std::string& path) {
    return medialibrary::ThumbnailCache::forFile(path)->find(256).has_value();
  };
  EXPECT_FALSE(hasThumbnail(large));
  EXPECT_TRUE(findings[1].isReadable) << findings[1].reason;
  EXPECT_TRUE(hasThumbnail(film()));
  EXPECT_TRUE(indexer_->canRun());
}

}  // namespace
