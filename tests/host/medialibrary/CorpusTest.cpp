#include "hosts/probe/MediaProbe.h"
#include "tests/host/medialibrary/IndexerUse.h"
#include "tests/host/medialibrary/Programs.h"
#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/Clips.h"
#include "tests/support/EnvironmentVariable.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

/// Files as they lie about on real disks, and worse: whatever is in them, the indexer answers, and what is whole is
/// found to be so in spite of its neighbours.
namespace {

using medialibrary::Finding;
using medialibrary::IndexerProcess;

std::string shortFilm() {
  return clips::film("corpus-film.mp4", 160, 120, 2.0, 440, 2);
}

std::string copied(const std::string& name) {
  return clips::clip(name, {"-i", shortFilm(), "-c", "copy"});
}

std::vector<std::string> wholeClips() {
  return {
      shortFilm(), copied("corpus-film.mkv"), copied("corpus-film.avi"), copied("corpus-film.ts"),
      clips::clip("corpus-film.webm", {"-i", shortFilm(), "-c:v", "libvpx", "-b:v", "200k", "-c:a", "libvorbis"})};
}

class Corpus : public testing::Test {
 protected:
  static std::unique_ptr<IndexerProcess> makeIndexer() {
    return IndexerProcess::make({programs::indexer(), std::chrono::seconds(30), 1ULL << 30U, true});
  }

  std::string path(const std::string& name) const { return folder_ / name; }

  TemporaryFolder folder_;
  EnvironmentVariable cache_{"XDG_CACHE_HOME", folder_ / "cache"};
  std::unique_ptr<IndexerProcess> indexer_ = makeIndexer();
};

/// Many damaged copies of one clip, each followed by a whole one now and then.
class DamagedCopies {
 public:
  DamagedCopies(const TemporaryFolder& folder, const std::string& clip)
      : folder_(folder),
        whole_(contentsOf(clip)),
        ending_(clip.substr(clip.rfind('.'))),
        random_(static_cast<unsigned>(whole_.size())) {}

  void truncate() {
    const std::size_t size = whole_.size();
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{1}, std::size_t{7}, std::size_t{8}, std::size_t{15}, std::size_t{16},
          std::size_t{31}, std::size_t{100}, std::size_t{255}, std::size_t{1000}, std::size_t{4095}, size / 10,
          size / 4, size / 2, size / 4 * 3, size - 8, size - 1}) {
      add(whole_.substr(0, length));
    }
  }
  void flip() {
    for (int copy = 0; copy < 20; ++copy) {
      std::string bytes = whole_;
      const std::size_t reach = copy < 12 ? std::min<std::size_t>(4096, bytes.size()) : bytes.size();
      for (int i = 0; i <= copy * 2; ++i) bytes[random_() % reach] ^= static_cast<char>(1U << random_() % 8);
      add(bytes);
    }
  }
  void zero() {
    for (int copy = 0; copy < 8; ++copy) {
      std::string bytes = whole_;
      const std::size_t begin = copy < 4 ? random_() % 2048 : random_() % bytes.size();
      const std::size_t length = std::min<std::size_t>(bytes.size() - begin, 1U << (2 + 2 * copy));
      bytes.replace(begin, length, length, '\0');
      add(bytes);
    }
  }

  const std::vector<std::string>& paths() const { return paths_; }

 private:
  void add(const std::string& bytes) {
    paths_.push_back(folder_.write("damaged" + std::to_string(paths_.size()) + ending_, bytes));
  }

  const TemporaryFolder& folder_;
  std::string whole_;
  std::string ending_;
  std::mt19937 random_;
  std::vector<std::string> paths_;
};

TEST_F(Corpus, DamagedFilesCostOnlyThemselves) {
  std::vector<std::string> paths;
  for (const auto& clip : wholeClips()) {
    DamagedCopies copies(folder_, clip);
    copies.truncate();
    copies.flip();
    copies.zero();
    for (std::size_t i = 0; i < copies.paths().size(); ++i) {
      if (i % 9 == 0) paths.push_back(clip);
      paths.push_back(copies.paths()[i]);
    }
  }
  ASSERT_GE(paths.size(), 225U);
  const auto findings = findingsOf(*indexer_, paths, 256);
  int unreadable = 0;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (findings[i].isReadable) continue;
    ++unreadable;
    EXPECT_NE(findings[i].reason, "") << paths[i];
  }
  EXPECT_GT(unreadable, 20);
  RecordProperty("unreadable", unreadable);
  for (const auto& clip : wholeClips()) {
    const auto facts = probe::look(clip, 60.0);
    for (std::size_t i = 0; i < paths.size(); ++i) {
      if (paths[i] != clip) continue;
      EXPECT_TRUE(findings[i].isReadable) << clip << ": " << findings[i].reason;
      EXPECT_TRUE(findings[i].hasPicture);
      EXPECT_EQ(findings[i].duration, facts.media.duration);
    }
  }
}

TEST_F(Corpus, NamesDoNotCount) {
  std::vector<std::string> paths;
  for (const auto& clip : wholeClips()) {
    for (const char* ending : {".mp4", ".mkv", ".avi", ".txt"}) {
      paths.push_back(folder_.copy(clip, std::filesystem::path(clip).filename().string() + ending));
    }
  }
  for (const auto& finding : findingsOf(*indexer_, paths)) EXPECT_TRUE(finding.isReadable) << finding.reason;
}

TEST_F(Corpus, WhatIsNoFilmIsUnreadable) {
  std::vector<std::string> paths = {folder_.write("text.mp4", std::string(100'000, 'a') + "\n"),
                                    folder_.write("list.m3u8", "#EXTM3U\n#EXTINF:10,\nfile:///etc/passwd\n"),
                                    folder_.write("concat.mp4", "ffconcat version 1.0\nfile '" + shortFilm() + "'\n"),
                                    folder_.write("page.mkv", "<html><body>404</body></html>"),
                                    path("folder.mp4"),
                                    path("pipe.mp4"),
                                    path("socket.mp4"),
                                    path("device.mp4"),
                                    path("endless.mp4"),
                                    path("loop.mp4"),
                                    path("nowhere.mp4")};
  std::filesystem::create_directory(path("folder.mp4"));
  ASSERT_EQ(mkfifo(path("pipe.mp4").c_str(), 0600), 0);
  const int connection = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{AF_UNIX, {}};
  path("socket.mp4").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  std::filesystem::create_symlink("/dev/null", path("device.mp4"));
  std::filesystem::create_symlink("/dev/zero", path("endless.mp4"));
  std::filesystem::create_symlink("loop.mp4", path("loop.mp4"));
  std::filesystem::create_symlink("missing", path("nowhere.mp4"));
  paths.push_back(shortFilm());
  const auto findings = findingsOf(*indexer_, paths, 256);
  for (std::size_t i = 0; i + 1 < paths.size(); ++i) {
    EXPECT_FALSE(findings[i].isReadable) << paths[i];
    EXPECT_NE(findings[i].reason, "") << paths[i];
    EXPECT_NE(findings[i].reason, "looking into it failed") << paths[i];
  }
  EXPECT_TRUE(findings.back().isReadable);
  close(connection);
}

/// Done in a process of its own, as an ordinary user where this one is root, who may read everything.
TEST_F(Corpus, FilesOfOthersAreUnreadable) {
  const std::string secret = folder_.copy(shortFilm(), "secret.mp4");
  const std::string film = folder_.copy(shortFilm(), "film.mp4");
  ASSERT_EQ(chmod(secret.c_str(), 0), 0);
  const pid_t child = fork();
  if (child == 0) {
    constexpr uid_t nobody = 65534;
    if (geteuid() == 0 && setresuid(nobody, nobody, nobody) != 0) _exit(2);
    const auto indexer = makeIndexer();
    const auto findings = findingsOf(*indexer, {film, secret});
    const bool isRight = findings[0].isReadable && findings[1].reason == "Permission denied";
    _exit(!indexer->canRun() ? 2 : isRight ? 42 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 2) GTEST_SKIP() << "an ordinary user cannot start the program here";
  EXPECT_EQ(WEXITSTATUS(status), 42);
}

std::string bigEndian(std::uint32_t number) {
  std::string bytes;
  for (unsigned shift = 32; shift > 0; shift -= 8) bytes += static_cast<char>(number >> (shift - 8) & 0xFFU);
  return bytes;
}

/// ISO/IEC 14496-12, 4.2
std::string box(const std::string& type, const std::string& contents) {
  return bigEndian(static_cast<std::uint32_t>(contents.size() + 8)) + type + contents;
}

std::string zeros(std::size_t count) {
  return std::string(count, '\0');
}

std::string track(std::uint32_t number) {
  const std::string noVersion = zeros(4);
  const std::string header =
      box("tkhd", noVersion + zeros(8) + bigEndian(number) + zeros(4) + bigEndian(1000) + zeros(60));
  const std::string mediaHeader = box("mdhd", noVersion + zeros(8) + bigEndian(1000) + bigEndian(1000) + zeros(4));
  const std::string handler = box("hdlr", noVersion + zeros(4) + "vide" + zeros(13));
  const std::string entry = box("avc1", zeros(24) + std::string("\x00\xA0\x00\x78", 4) + zeros(50));
  const std::string table = box("stbl", box("stsd", noVersion + bigEndian(1) + entry) + box("stts", zeros(8)) +
                                            box("stsc", zeros(8)) + box("stsz", zeros(12)) + box("stco", zeros(8)));
  return box("trak", header + box("mdia", mediaHeader + handler + box("minf", table)));
}

std::string filmOfTracks(std::uint32_t count) {
  std::string tracks;
  for (std::uint32_t number = 1; number <= count; ++number) tracks += track(number);
  const std::string header = box("mvhd", zeros(12) + bigEndian(1000) + bigEndian(1000) + zeros(80));
  return box("ftyp", "isom" + zeros(4) + "isom") + box("moov", header + tracks) + box("mdat", zeros(1000));
}

TEST_F(Corpus, AFileOfTooManyTracksIsAnswered) {
  const auto findings = findingsOf(
      *indexer_,
      {folder_.write("some.mp4", filmOfTracks(5)), folder_.write("many.mp4", filmOfTracks(50'000)), shortFilm()},
      256);
  EXPECT_TRUE(findings[0].isReadable) << findings[0].reason;
  EXPECT_EQ(findings[0].pictureTracks, 5);
  EXPECT_FALSE(findings[1].isReadable);
  EXPECT_NE(findings[1].reason, "");
  EXPECT_TRUE(findings[2].isReadable);
}

TEST_F(Corpus, HugeFilesAreAnswered) {
  constexpr std::uintmax_t huge = 4ULL << 30U;
  const std::string empty = folder_.write("empty.mp4", "x");
  const std::string mostlyEmpty = folder_.copy(shortFilm(), "film.mp4");
  const std::string broadcast = folder_.copy(copied("corpus-film.ts"), "film.ts");
  for (const auto& each : {empty, mostlyEmpty, broadcast}) std::filesystem::resize_file(each, huge);
  const auto findings = findingsOf(*indexer_, {empty, mostlyEmpty, broadcast, shortFilm()}, 256);
  EXPECT_FALSE(findings[0].isReadable);
  EXPECT_TRUE(findings[1].isReadable) << findings[1].reason;
  EXPECT_TRUE(findings[3].isReadable);
}

}  // namespace
