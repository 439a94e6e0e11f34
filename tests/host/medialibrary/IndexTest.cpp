#include "hosts/medialibrary/Index.h"

#include "hosts/medialibrary/Artwork.h"
#include "hosts/medialibrary/Database.h"
#include "hosts/medialibrary/IndexSchema.h"
#include "tests/host/medialibrary/IndexFixture.h"

#include <sys/stat.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {

using medialibrary::Finding;
using medialibrary::IndexedFile;
using medialibrary::VideoFile;
using Paths = std::vector<std::string>;

Paths pathsOf(const std::vector<IndexedFile>& files) {
  Paths paths;
  for (const IndexedFile& each : files) paths.push_back(each.file.path);
  return paths;
}

class Index : public IndexTest {
 protected:
  /// Closes the index and opens it again.
  void reopen() {
    index_.reset();
    index_ = open();
  }

  Paths waiting(const std::vector<std::int64_t>& except = {}) const { return pathsOf(index_->waiting(100, except)); }

  std::unique_ptr<medialibrary::Index> index_ = open();
};

TEST_F(Index, IsMadeForItsOwnerAlone) {
  struct stat facts {};
  ASSERT_EQ(stat(path_.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777U, 0600U);
  ASSERT_EQ(stat((folder_ / "data/quillop").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777U, 0700U);
  EXPECT_TRUE(titlesOf(*index_).empty());
}

TEST_F(Index, ListsWhatWasSettled) {
  const VideoFile file = videoFile("/films/Gita al mare.mp4", 1);
  const std::int64_t id = index_->add(file);
  EXPECT_TRUE(titlesOf(*index_).empty());
  EXPECT_EQ(waiting(), Paths({file.path}));
  index_->settle(id, file, filmFinding());
  EXPECT_TRUE(waiting().empty());
  const auto items = index_->items(homeVideo);
  ASSERT_EQ(items->count(), 1U);
  const host::LibraryItem item = items->item(0);
  EXPECT_EQ(item.url, "file:///films/Gita%20al%20mare.mp4");
  EXPECT_EQ(item.title, "Gita al mare");
  EXPECT_EQ(item.duration, 90.5);
  EXPECT_EQ(item.artworkSource, medialibrary::artworkSource(file.path));
  EXPECT_THROW(items->item(1), std::out_of_range);
}

TEST_F(Index, RemembersAllAboutAFile) {
  const VideoFile file{"/f/a.mkv",
                       5'000'000'000'000,
                       -1,
                       999'999'999,
                       std::numeric_limits<dev_t>::max(),
                       std::numeric_limits<ino_t>::max()};
  const std::int64_t id = index_->add(file);
  reopen();
  const auto found = index_->fileAt(file.path);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->id, id);
  EXPECT_EQ(found->file, file);
  EXPECT_TRUE(found->isPresent);
  EXPECT_FALSE(found->isKnown);
  EXPECT_EQ(pathsOf(index_->filesLike(file)), Paths({file.path}));
  EXPECT_FALSE(index_->fileAt("/f/b.mkv"));
}

TEST_F(Index, TellsTheTitleOfWhatWasLookedInto) {
  const auto known = videoFile("/f/a.mp4", 1);
  addFilm(*index_, known, "Alba");
  index_->add(videoFile("/f/b.mp4", 2));
  EXPECT_EQ(index_->titleAt("/f/a.mp4"), "Alba");
  EXPECT_FALSE(index_->titleAt("/f/b.mp4"));
  EXPECT_FALSE(index_->titleAt("/f/c.mp4"));
}

TEST_F(Index, SurvivesBeingClosed) {
  addFilm(*index_, videoFile("/f/a.mp4", 1), "Uno");
  addFilm(*index_, videoFile("/f/b.mp4", 2), "Due");
  const VideoFile broken = videoFile("/f/c.mp4", 3);
  index_->settle(index_->add(broken), broken, unreadableFinding("No such codec"));
  reopen();
  EXPECT_EQ(titlesOf(*index_), std::vector<std::string>({"Due", "Uno"}));
  const auto unreadable = index_->unreadableFiles(10);
  ASSERT_EQ(unreadable.size(), 1U);
  EXPECT_EQ(unreadable[0].path, broken.path);
  EXPECT_EQ(unreadable[0].reason, "No such codec");
}

TEST_F(Index, OrdersByNumbersOfTitlesThenByPath) {
  addFilm(*index_, videoFile("/f/3.mp4", 1), "Film 10");
  addFilm(*index_, videoFile("/f/2.mp4", 2), "Film 2");
  addFilm(*index_, videoFile("/f/b.mp4", 3), "èra");
  addFilm(*index_, videoFile("/f/B.mp4", 4), "èra");
  addFilm(*index_, videoFile("/f/\xFF.mp4", 5), "èra");
  addFilm(*index_, videoFile("/f/z.mp4", 6), "Era");
  addFilm(*index_, videoFile("/f/y.mp4", 7), "zeta");
  const auto items = index_->items(homeVideo);
  Paths urls;
  for (std::size_t i = 0; i < items->count(); ++i) urls.push_back(items->item(i).url);
  EXPECT_EQ(urls, Paths({"file:///f/z.mp4", "file:///f/B.mp4", "file:///f/b.mp4", "file:///f/%FF.mp4",
                         "file:///f/2.mp4", "file:///f/3.mp4", "file:///f/y.mp4"}));
}

TEST_F(Index, ListsOnlyWhatCanBePlayed) {
  auto settle = [&, inode = ino_t{1}](const std::string& title, auto alter) mutable {
    const VideoFile file = videoFile("/f/" + title + ".mp4", inode++);
    Finding finding = filmFinding(title);
    alter(finding);
    index_->settle(index_->add(file), file, finding);
  };
  settle("good", [](Finding&) {});
  settle("protected", [](Finding& finding) { finding.isProtected = true; });
  settle("unreadable", [](Finding& finding) { finding.isReadable = false; });
  settle("endless", [](Finding& finding) { finding.duration = std::numeric_limits<double>::infinity(); });
  settle("unmeasured", [](Finding& finding) { finding.duration = std::nan(""); });
  settle("empty", [](Finding& finding) { finding.duration = 0.0; });
  settle("sound", [](Finding& finding) { finding.hasPicture = false; });
  settle("other", [](Finding& finding) { finding.mediaType = 256; });
  settle("unsigned", [](Finding& finding) { finding.mediaType = std::numeric_limits<std::uint64_t>::max(); });
  EXPECT_EQ(titlesOf(*index_), Paths({"good", "protected"}));
  EXPECT_EQ(titlesOf(*index_, 256), Paths({"other"}));
  EXPECT_EQ(titlesOf(*index_, std::numeric_limits<std::uint64_t>::max()), Paths({"unsigned"}));
  EXPECT_TRUE(titlesOf(*index_, 1).empty());
}

TEST_F(Index, Counts) {
  addFilm(*index_, videoFile("/f/1.mp4", 1));
  const std::int64_t gone = addFilm(*index_, videoFile("/f/2.mp4", 2));
  const VideoFile broken = videoFile("/f/3.mp4", 3);
  index_->settle(index_->add(broken), broken, unreadableFinding("Broken"));
  const VideoFile sound = videoFile("/f/4.mp4", 4);
  Finding withoutPicture = filmFinding();
  withoutPicture.hasPicture = false;
  index_->settle(index_->add(sound), sound, withoutPicture);
  index_->add(videoFile("/f/5.mp4", 5));
  index_->add(videoFile("/f/6.mp4", 6));
  index_->setPresent(index_->add(videoFile("/f/7.mp4", 7)), false);

  auto counts = index_->counts(homeVideo);
  EXPECT_EQ(counts.items, 2U);
  EXPECT_EQ(counts.waiting, 2U);
  EXPECT_EQ(counts.unreadable, 1U);
  index_->setPresent(gone, false);
  counts = index_->counts(homeVideo);
  EXPECT_EQ(counts.items, 1U);
  EXPECT_EQ(index_->counts(256).items, 0U);
}

TEST_F(Index, TakesOnePathOnce) {
  const std::int64_t id = addFilm(*index_, videoFile("/f/a.mp4", 1));
  const VideoFile other = videoFile("/f/a.mp4", 2);
  EXPECT_EQ(index_->add(other), id);
  EXPECT_TRUE(titlesOf(*index_).empty());
  const auto found = index_->fileAt("/f/a.mp4");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->file, other);
  EXPECT_FALSE(found->isKnown);
}

TEST_F(Index, WaitsAnewForWhatChanged) {
  const VideoFile before = videoFile("/f/a.mp4", 1);
  const std::int64_t id = addFilm(*index_, before, "Before");
  VideoFile after = before;
  after.modifiedNanoseconds += 1;
  index_->change(id, after);
  EXPECT_TRUE(titlesOf(*index_).empty());
  EXPECT_EQ(waiting(), Paths({"/f/a.mp4"}));
  index_->settle(id, after, filmFinding("After"));
  EXPECT_EQ(titlesOf(*index_), Paths({"After"}));
}

TEST_F(Index, DropsWhatWasFoundInAnotherState) {
  const VideoFile file = videoFile("/f/a.mp4", 1);
  const auto states = [&] {
    std::vector<VideoFile> others(6, file);
    others[0].path = "/f/b.mp4";
    others[1].size += 1;
    others[2].modifiedSeconds += 1;
    others[3].modifiedNanoseconds += 1;
    others[4].device += 1;
    others[5].inode += 1;
    return others;
  };
  const std::int64_t id = index_->add(file);
  for (const VideoFile& other : states()) {
    index_->settle(id, other, filmFinding());
    EXPECT_EQ(index_->counts(homeVideo).waiting, 1U);
  }
  index_->settle(id + 1, file, filmFinding());
  EXPECT_EQ(index_->counts(homeVideo).waiting, 1U);
  index_->settle(id, file, filmFinding());
  EXPECT_EQ(index_->counts(homeVideo).waiting, 0U);
}

TEST_F(Index, KeepsWhatIsKnownOfTheAbsent) {
  const std::int64_t id = addFilm(*index_, videoFile("/f/a.mp4", 1), "Film");
  index_->setPresent(id, false);
  EXPECT_TRUE(titlesOf(*index_).empty());
  EXPECT_FALSE(index_->fileAt("/f/a.mp4")->isPresent);
  reopen();
  index_->setPresent(id, true);
  EXPECT_TRUE(waiting().empty());
  EXPECT_EQ(titlesOf(*index_), Paths({"Film"}));
}

TEST_F(Index, DoesNotWaitForTheAbsent) {
  const std::int64_t id = index_->add(videoFile("/f/a.mp4", 1));
  index_->setPresent(id, false);
  EXPECT_TRUE(waiting().empty());
  index_->setPresent(id, true);
  EXPECT_EQ(waiting(), Paths({"/f/a.mp4"}));
}

TEST_F(Index, KeepsWhatIsKnownOfTheMoved) {
  const std::int64_t tagged = addFilm(*index_, videoFile("/f/a.mp4", 1), "With a tag");
  const std::int64_t named = addFilm(*index_, videoFile("/f/b.mp4", 2));
  index_->setPresent(named, false);
  VideoFile moved = videoFile("/g/deep/z.mp4", 1);
  moved.device = 7;
  index_->move(tagged, moved);
  index_->move(named, videoFile("/g/renamed.mp4", 2));
  EXPECT_EQ(titlesOf(*index_), Paths({"renamed", "With a tag"}));
  EXPECT_EQ(index_->items(homeVideo)->item(1).url, "file:///g/deep/z.mp4");
  EXPECT_EQ(index_->fileAt("/g/deep/z.mp4")->file, moved);
  EXPECT_TRUE(waiting().empty());
  EXPECT_EQ(index_->folders(), Paths({"/g", "/g/deep"}));
  EXPECT_FALSE(index_->fileAt("/f/a.mp4"));
}

TEST_F(Index, LetsTheMovedTakeThePlaceOfAnother) {
  const std::int64_t first = addFilm(*index_, videoFile("/f/a.mp4", 1), "First");
  const std::int64_t second = addFilm(*index_, videoFile("/f/b.mp4", 2), "Second");
  index_->move(first, videoFile("/f/b.mp4", 1));
  EXPECT_EQ(titlesOf(*index_), Paths({"First"}));
  EXPECT_EQ(index_->fileAt("/f/b.mp4")->id, first);
  index_->move(second, videoFile("/f/c.mp4", 2));
  EXPECT_FALSE(index_->fileAt("/f/c.mp4")) << "the other one is gone";
}

TEST_F(Index, Forgets) {
  const std::int64_t id = addFilm(*index_, videoFile("/f/a.mp4", 1));
  index_->remove(id);
  EXPECT_FALSE(index_->fileAt("/f/a.mp4"));
  EXPECT_TRUE(titlesOf(*index_).empty());
  index_->remove(id);
}

TEST_F(Index, TriesAgainWhatIsNotListed) {
  addFilm(*index_, videoFile("/f/good.mp4", 1), "Good");
  const VideoFile broken = videoFile("/f/broken.mp4", 2);
  index_->settle(index_->add(broken), broken, unreadableFinding("Broken"));
  const VideoFile undecodable = videoFile("/f/undecodable.mp4", 3);
  Finding finding = filmFinding();
  finding.hasPicture = false;
  index_->settle(index_->add(undecodable), undecodable, finding);
  const VideoFile absent = videoFile("/f/absent.mp4", 4);
  const std::int64_t absentId = index_->add(absent);
  index_->settle(absentId, absent, unreadableFinding("Broken"));
  index_->setPresent(absentId, false);

  index_->forgetUnreadable();
  EXPECT_EQ(waiting(), Paths({broken.path, undecodable.path}));
  EXPECT_EQ(titlesOf(*index_), Paths({"Good"}));
  EXPECT_TRUE(index_->unreadableFiles(10).empty());
}

TEST_F(Index, AnswersRequestsInTheirOrder) {
  const std::int64_t c = index_->add(videoFile("/f/c.mp4", 1));
  const std::int64_t a = index_->add(videoFile("/f/a.mp4", 2));
  index_->add(videoFile("/f/b.mp4", 3));
  reopen();
  index_->add(videoFile("/f/0.mp4", 4));
  EXPECT_EQ(waiting(), Paths({"/f/c.mp4", "/f/a.mp4", "/f/b.mp4", "/f/0.mp4"}));
  index_->change(c, videoFile("/f/c.mp4", 9));
  EXPECT_EQ(waiting(), Paths({"/f/a.mp4", "/f/b.mp4", "/f/0.mp4", "/f/c.mp4"}));
  EXPECT_EQ(waiting({a, c}), Paths({"/f/b.mp4", "/f/0.mp4"}));
  EXPECT_EQ(pathsOf(index_->waiting(2, {a})), Paths({"/f/b.mp4", "/f/0.mp4"}));
  EXPECT_TRUE(index_->waiting(0, {}).empty());
}

TEST_F(Index, KnowsWhatLiesInAFolderItself) {
  index_->add(videoFile("/f/a.mp4", 1));
  const std::int64_t gone = index_->add(videoFile("/f/b.mp4", 2));
  index_->setPresent(gone, false);
  index_->add(videoFile("/f/inside/c.mp4", 3));
  index_->add(videoFile("/fun/d.mp4", 4));
  index_->add(videoFile("/root.mp4", 5));
  EXPECT_EQ(pathsOf(index_->filesIn("/f")), Paths({"/f/a.mp4", "/f/b.mp4"}));
  EXPECT_EQ(pathsOf(index_->filesIn("/f/")), Paths({"/f/a.mp4", "/f/b.mp4"}));
  EXPECT_EQ(pathsOf(index_->filesIn("/")), Paths({"/root.mp4"}));
  EXPECT_TRUE(index_->filesIn("/nowhere").empty());
  EXPECT_EQ(index_->folders(), Paths({"/", "/f", "/f/inside", "/fun"}));
}

TEST_F(Index, FindsFilesAlikeWhereverTheyAre) {
  const VideoFile file = videoFile("/f/a.mp4", 1);
  index_->add(file);
  index_->add(videoFile("/f/b.mp4", 1));
  index_->add(videoFile("/f/c.mp4", 2));
  VideoFile longer = videoFile("/f/d.mp4", 1);
  longer.size += 1;
  index_->add(longer);
  EXPECT_EQ(pathsOf(index_->filesLike(videoFile("/elsewhere.mp4", 1))), Paths({"/f/a.mp4", "/f/b.mp4"}));
}

TEST_F(Index, TakesAnyBytesInNames) {
  const Paths names = {"a\nb.mp4",
                       "it's \"quoted\"; DROP TABLE file; --.mp4",
                       "\xFF\xFE\x80.mp4",
                       std::string(251, 'x') + ".mp4",
                       "%25 ?#&.mp4",
                       "\xF0\x9F\x8E\xAC.mp4",
                       " .mp4",
                       "no ending"};
  ino_t inode = 1;
  for (const std::string& name : names) addFilm(*index_, videoFile("/f\n'\xFF/" + name, inode++));
  reopen();
  for (const std::string& name : names) {
    const auto found = index_->fileAt("/f\n'\xFF/" + name);
    ASSERT_TRUE(found) << name;
    EXPECT_TRUE(found->isKnown);
  }
  EXPECT_EQ(index_->filesIn("/f\n'\xFF").size(), names.size());
  EXPECT_EQ(index_->folders(), Paths({"/f\n'\xFF"}));
  EXPECT_EQ(titlesOf(*index_).size(), names.size());
  const auto items = index_->items(homeVideo);
  for (std::size_t i = 0; i < items->count(); ++i) {
    EXPECT_TRUE(items->item(i).url.starts_with("file:///f%0A%27%FF/")) << items->item(i).url;
  }
}

TEST_F(Index, AnswersWithWhatDoesNotChangeAnyMore) {
  const std::int64_t id = addFilm(*index_, videoFile("/f/a.mp4", 1), "Film");
  const auto items = index_->items(homeVideo);
  index_->remove(id);
  index_.reset();
  ASSERT_EQ(items->count(), 1U);
  EXPECT_EQ(items->item(0).title, "Film");
}

TEST_F(Index, SortsAnewForAnotherLanguage) {
  const Paths titles = {"Öra", "Zon", "Ost"};
  ino_t inode = 1;
  for (const std::string& title : titles) addFilm(*index_, videoFile("/f/" + title + ".mp4", inode++), title);
  for (int i = 0; i < 2'500; ++i) index_->add(videoFile("/w/" + std::to_string(i) + ".mp4", inode++));
  addFilm(*index_, videoFile("/f/last.mp4", inode++), "Öl");
  EXPECT_EQ(titlesOf(*index_), Paths({"Öl", "Öra", "Ost", "Zon"}));
  index_.reset();
  const medialibrary::Order swedish("sv_SE");
  EXPECT_EQ(titlesOf(*medialibrary::Index::open(path_, swedish)), Paths({"Ost", "Zon", "Öl", "Öra"}));
  EXPECT_EQ(titlesOf(*open()), Paths({"Öl", "Öra", "Ost", "Zon"}));
}

TEST_F(Index, UndoesWhatIsNotCommitted) {
  addFilm(*index_, videoFile("/f/a.mp4", 1), "Kept");
  index_->begin();
  addFilm(*index_, videoFile("/f/b.mp4", 2), "Lost");
  EXPECT_EQ(titlesOf(*index_), Paths({"Kept", "Lost"}));
  reopen();
  EXPECT_EQ(titlesOf(*index_), Paths({"Kept"}));
  index_->begin();
  addFilm(*index_, videoFile("/f/c.mp4", 3), "Too");
  index_->commit();
  reopen();
  EXPECT_EQ(titlesOf(*index_), Paths({"Kept", "Too"}));
  EXPECT_THROW(index_->commit(), medialibrary::IndexError);
  index_->begin();
  addFilm(*index_, videoFile("/f/d.mp4", 4), "Left");
  index_->begin();
  index_->commit();
  EXPECT_EQ(titlesOf(*index_), Paths({"Kept", "Too"}));
}

/// SQLite undoes the whole transaction, the statement alone, or not even what the statement has done so far.
class IndexWithAnError : public Index, public testing::WithParamInterface<const char*> {
 protected:
  /// What writes a file with the inode 99 fails from now on.
  void refuse() const {
    medialibrary::Database database(path_, medialibrary::Database::Purpose::Writing);
    for (const std::string change : {"INSERT", "UPDATE"}) {
      database.run("CREATE TRIGGER refuse_" + change + " AFTER " + change +
                   " ON file WHEN NEW.inode = 99 BEGIN SELECT RAISE(" + GetParam() + ", 'refused'); END");
    }
  }

  const VideoFile refused_ = videoFile("/f/refused.mp4", 99);
};

TEST_P(IndexWithAnError, UndoesEverythingSinceItsBegin) {
  const std::int64_t kept = addFilm(*index_, videoFile("/f/a.mp4", 1), "Kept");
  refuse();
  const std::vector<std::function<void()>> failing = {
      [&] { index_->add(refused_); }, [&] { index_->change(kept, refused_); }, [&] { index_->move(kept, refused_); }};
  for (const auto& fail : failing) {
    index_->begin();
    addFilm(*index_, videoFile("/f/b.mp4", 2), "Lost");
    EXPECT_THROW(fail(), medialibrary::IndexError);
    EXPECT_EQ(titlesOf(*index_), Paths({"Kept"}));
    EXPECT_THROW(index_->commit(), medialibrary::IndexError);
  }
  EXPECT_EQ(titlesOf(*openForReading()), Paths({"Kept"}));
}

TEST_P(IndexWithAnError, GoesOnAfterwards) {
  refuse();
  index_->begin();
  EXPECT_THROW(index_->add(refused_), medialibrary::IndexError);
  addFilm(*index_, videoFile("/f/a.mp4", 1), "Alone");
  EXPECT_EQ(titlesOf(*openForReading()), Paths({"Alone"}));
  index_->begin();
  addFilm(*index_, videoFile("/f/b.mp4", 2), "Together");
  EXPECT_EQ(titlesOf(*openForReading()), Paths({"Alone"}));
  index_->commit();
  EXPECT_EQ(titlesOf(*openForReading()), Paths({"Alone", "Together"}));
}

INSTANTIATE_TEST_SUITE_P(Undone, IndexWithAnError, testing::Values("ROLLBACK", "ABORT", "FAIL"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_F(Index, IsReadInOneScanWithoutSorting) {
  const medialibrary::Database database(path_, medialibrary::Database::Purpose::Reading);
  medialibrary::Query plan(database,
                           "EXPLAIN QUERY PLAN SELECT path, title, duration FROM file WHERE media_type = 8192 "
                           "AND " +
                               std::string(medialibrary::listedFilesOnly) + " ORDER BY sort_key, path");
  ASSERT_TRUE(plan.next());
  EXPECT_EQ(plan.text(3), "SEARCH file USING COVERING INDEX listing (media_type=?)");
  EXPECT_FALSE(plan.next());
}

TEST_F(IndexTest, HasNothingToReadBeforeItIsMade) {
  EXPECT_EQ(openForReading(), nullptr);
  folder_.write("data/quillop/library.db", "");
  EXPECT_EQ(openForReading(), nullptr);
  addFilm(*open(), videoFile("/f/a.mp4", 1), "Film");
  const auto reader = openForReading();
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(titlesOf(*reader), Paths({"Film"}));
}

TEST_F(IndexTest, IsNotChangedByWhoOnlyReads) {
  const VideoFile file = videoFile("/f/a.mp4", 1);
  const std::int64_t id = addFilm(*open(), file, "Film");
  const auto reader = openForReading();
  ASSERT_NE(reader, nullptr);
  EXPECT_THROW(reader->begin(), medialibrary::IndexError);
  EXPECT_THROW(reader->commit(), medialibrary::IndexError);
  EXPECT_THROW(reader->add(file), medialibrary::IndexError);
  EXPECT_THROW(reader->change(id, file), medialibrary::IndexError);
  EXPECT_THROW(reader->move(id, file), medialibrary::IndexError);
  EXPECT_THROW(reader->setPresent(id, false), medialibrary::IndexError);
  EXPECT_THROW(reader->remove(id), medialibrary::IndexError);
  EXPECT_THROW(reader->settle(id, file, {}), medialibrary::IndexError);
  EXPECT_THROW(reader->forgetUnreadable(), medialibrary::IndexError);
  medialibrary::Database database(path_, medialibrary::Database::Purpose::Reading);
  EXPECT_THROW(database.run("DELETE FROM file"), medialibrary::IndexError);
  EXPECT_EQ(titlesOf(*reader), Paths({"Film"}));
}

TEST_F(IndexTest, ShowsAReaderWhatWasCommittedLast) {
  const auto writer = open();
  addFilm(*writer, videoFile("/f/a.mp4", 1), "Before");
  const auto reader = openForReading();
  writer->begin();
  for (int i = 0; i < 5'000; ++i) addFilm(*writer, videoFile("/g/" + std::to_string(i) + ".mp4", 100));
  EXPECT_EQ(titlesOf(*reader), Paths({"Before"}));
  EXPECT_EQ(titlesOf(*openForReading()), Paths({"Before"})) << "also when it comes in the middle";
  EXPECT_EQ(reader->counts(homeVideo).items, 1U);
  writer->commit();
  EXPECT_EQ(reader->items(homeVideo)->count(), 5'001U);
}

TEST_F(IndexTest, IsNotHeldUpByAReaderInTheMiddle) {
  const auto writer = open();
  addFilm(*writer, videoFile("/f/a.mp4", 1));
  addFilm(*writer, videoFile("/f/b.mp4", 2));
  const medialibrary::Database database(path_, medialibrary::Database::Purpose::Reading);
  medialibrary::Query query(database, "SELECT path FROM file ORDER BY path");
  ASSERT_TRUE(query.next());
  writer->begin();
  addFilm(*writer, videoFile("/f/c.mp4", 3));
  writer->commit();
  EXPECT_EQ(titlesOf(*writer), Paths({"a", "b", "c"}));
  ASSERT_TRUE(query.next());
  EXPECT_EQ(query.bytes(0), "/f/b.mp4");
  EXPECT_FALSE(query.next()) << "what came later is not part of this answer";
}

TEST_F(IndexTest, CanBeReadWhileItIsResorted) {
  addFilm(*open(), videoFile("/f/a.mp4", 1), "Film");
  const auto reader = openForReading();
  const medialibrary::Order swedish("sv_SE");
  const auto writer = medialibrary::Index::open(path_, swedish);
  EXPECT_EQ(titlesOf(*reader), Paths({"Film"}));
}

}  // namespace
