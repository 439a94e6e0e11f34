#include "hosts/medialibrary/Index.h"
#include "tests/host/medialibrary/ChildProcess.h"
#include "tests/host/medialibrary/IndexFixture.h"

#include <sys/resource.h>

#include <string>

namespace {

constexpr int filesAtATime = 20;

std::string pathOf(int number) {
  return "/films/Vacanze " + std::to_string(number) + ".mp4";
}

void addFilms(medialibrary::Index& index, int first, int count) {
  for (int number = first; number < first + count; ++number) {
    const auto file = videoFile(pathOf(number), static_cast<ino_t>(number));
    index.settle(index.add(file), file, filmFinding());
  }
}

/// Where a writer is killed.
struct Kill {
  int transactions = 0;        ///< that it has committed before
  bool isInTheMiddle = false;  ///< of a long transaction; wherever it happens to be otherwise
};

class KilledWriter : public IndexTest, public testing::WithParamInterface<Kill> {
 protected:
  /// Commits transactions and says so, until it is killed.
  void write(const ChildProcess::Say& say) const {
    const auto index = open();
    for (int number = 0;; number += filesAtATime) {
      index->begin();
      if (GetParam().isInTheMiddle && number == GetParam().transactions * filesAtATime) {
        addFilms(*index, number, 5'000);  // more than SQLite keeps in memory until the end
        say('m');
        pause();
      }
      addFilms(*index, number, filesAtATime);
      index->commit();
      say('c');
    }
  }

  /// How many transactions it told of.
  int killAtTheParameter() const {
    ChildProcess writer([this](const auto& say) { write(say); });
    int committed = 0;
    while (committed < GetParam().transactions && writer.next() == 'c') ++committed;
    if (GetParam().isInTheMiddle) {
      EXPECT_EQ(writer.next(), 'm');
    }
    writer.kill();
    EXPECT_EQ(committed, GetParam().transactions);
    for (const char said : writer.rest()) committed += said == 'c' ? 1 : 0;
    return committed;
  }

  static void expectWholeTransactions(const medialibrary::Index& index, int least) {
    const int found = static_cast<int>(index.items(homeVideo)->count());
    EXPECT_GE(found, least * filesAtATime);
    EXPECT_EQ(found % filesAtATime, 0);
    EXPECT_EQ(index.counts(homeVideo).items, static_cast<std::size_t>(found));
    for (int number = 0; number < found; ++number) ASSERT_TRUE(index.fileAt(pathOf(number))) << number;
  }
};

TEST_P(KilledWriter, LosesNothingCommitted) {
  const int committed = killAtTheParameter();
  {
    const auto reader = openForReading();
    ASSERT_NE(reader, nullptr);
    expectWholeTransactions(*reader, committed);
  }
  const auto index = open();
  EXPECT_FALSE(std::filesystem::exists(path_ + ".damaged"));
  expectWholeTransactions(*index, committed);
  addFilms(*index, 1'000'000, 1);
  EXPECT_TRUE(index->fileAt(pathOf(1'000'000)));
}

TEST_P(KilledWriter, DoesNotDisturbWhoReads) {
  open();
  // The other process must not inherit a connection, so that this one reads in between from a third process.
  ChildProcess reader([this](const auto& say) {
    const auto index = openForReading();
    for (char told = 'r'; told != '!';) {
      index->items(homeVideo);
      say(told);
    }
  });
  EXPECT_EQ(reader.next(), 'r');
  const int committed = killAtTheParameter();
  EXPECT_EQ(reader.next(), 'r');
  reader.kill();
  EXPECT_EQ(reader.rest().find('!'), std::string::npos);
  expectWholeTransactions(*open(), committed);
}

INSTANTIATE_TEST_SUITE_P(Points, KilledWriter,
                         testing::Values(Kill{0, true}, Kill{1, true}, Kill{30, true}, Kill{1, false}, Kill{2, false},
                                         Kill{7, false}, Kill{30, false}, Kill{100, false}),
                         [](const auto& kill) {
                           return "After" + std::to_string(kill.param.transactions) +
                                  (kill.param.isInTheMiddle ? "AndAHalf" : "");
                         });

TEST_F(IndexTest, MayBeKilledWhileItIsMade) {
  for (useconds_t delay = 0; delay < 30'000; delay += 600) {
    path_ = folder_ / ("data/" + std::to_string(delay) + "/library.db");
    ChildProcess maker([this](const auto& say) {
      say('b');
      addFilms(*open(), 0, 1);
      pause();
    });
    EXPECT_EQ(maker.next(), 'b');
    usleep(delay);  // some die before it is there, some behind
    maker.kill();
    if (const auto reader = openForReading()) reader->items(homeVideo);
    const auto index = open();
    addFilms(*index, 0, 1);
    EXPECT_EQ(index->items(homeVideo)->count(), 1U) << delay;
    EXPECT_FALSE(std::filesystem::exists(path_ + ".damaged")) << delay;
  }
}

TEST_F(IndexTest, MayBeLookedForWhileItIsMade) {
  for (int i = 0; i < 20; ++i) {
    path_ = folder_ / ("data/" + std::to_string(i) + "/library.db");
    ChildProcess reader([this](const auto& say) {
      say('b');
      auto index = openForReading();
      while (index == nullptr) index = openForReading();
      index->items(homeVideo);
      say('r');
    });
    EXPECT_EQ(reader.next(), 'b');
    const auto index = open();
    EXPECT_EQ(reader.rest(), "r");
  }
}

class FullDisk : public IndexTest {
 protected:
  static void limitFiles(rlim_t bytes) {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }

  static bool commits(medialibrary::Index& index) {
    try {
      index.commit();
      return true;
    } catch (const medialibrary::IndexError&) {
      return false;
    }
  }

  /// Adds until nothing fits any more, and makes room again: 'c' for each commit, 'f' for the failure, 'd' if that
  /// was taken for damage, and 'h' if what failed can be committed by then.
  static int fill(medialibrary::Index& index, const ChildProcess::Say& say) {
    int committed = 0;
    try {
      while (true) {
        index.begin();
        addFilms(index, committed * filesAtATime, filesAtATime);
        index.commit();
        ++committed;
        say('c');
      }
    } catch (const medialibrary::IndexError& error) {
      say(error.isDamaged() ? 'd' : 'f');
    }
    limitFiles(RLIM_INFINITY);
    if (commits(index)) say('h');
    return committed;
  }
};

TEST_F(FullDisk, IsNoDamageAndLosesNothing) {
  ChildProcess writer([this](const auto& say) {
    std::signal(SIGXFSZ, SIG_IGN);
    const auto index = open();
    limitFiles(1U << 20U);
    const int committed = fill(*index, say);
    if (index->items(homeVideo)->count() == static_cast<std::size_t>(committed * filesAtATime)) say('r');
    index->begin();
    addFilms(*index, committed * filesAtATime, filesAtATime);
    index->commit();
    say('w');
  });
  const std::string said = writer.rest();
  const auto committed = said.find_first_not_of('c');
  ASSERT_NE(committed, std::string::npos);
  EXPECT_GT(committed, 0U);
  EXPECT_EQ(said.substr(committed), "frw") << "fails, is read, and is written again when there is room";
  const auto index = open();
  EXPECT_FALSE(std::filesystem::exists(path_ + ".damaged"));
  EXPECT_EQ(index->items(homeVideo)->count(), (committed + 1) * filesAtATime);
}

TEST_F(FullDisk, IsNoDamageWhereTheIndexIsMade) {
  ChildProcess writer([this](const auto& say) {
    std::signal(SIGXFSZ, SIG_IGN);
    limitFiles(4'096);
    try {
      open();
      say('o');
    } catch (const medialibrary::IndexError& error) {
      say(error.isDamaged() ? 'd' : 'f');
    }
  });
  EXPECT_EQ(writer.rest(), "f");
  addFilms(*open(), 0, 1);
  EXPECT_EQ(open()->items(homeVideo)->count(), 1U);
  EXPECT_FALSE(std::filesystem::exists(path_ + ".damaged"));
}

TEST_F(IndexTest, MayBeReadAndWrittenByTwoProcessesAtOnce) {
  open();
  ChildProcess writer([this](const auto& say) {
    const auto index = open();
    for (int number = 0; number < 100 * filesAtATime; number += filesAtATime) {
      index->begin();
      addFilms(*index, number, filesAtATime);
      index->commit();
      say('c');
    }
  });
  const auto reader = openForReading();
  ASSERT_NE(reader, nullptr);
  for (std::size_t committed = 1; writer.next() == 'c'; ++committed) {
    const std::size_t found = reader->items(homeVideo)->count();
    EXPECT_GE(found, committed * filesAtATime);
    EXPECT_EQ(found % filesAtATime, 0U);
  }
  EXPECT_EQ(reader->items(homeVideo)->count(), 100U * filesAtATime);
}

}  // namespace
