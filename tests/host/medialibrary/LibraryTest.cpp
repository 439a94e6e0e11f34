#include "hosts/medialibrary/Artwork.h"
#include "tests/host/medialibrary/LibraryFixture.h"

#include <sys/stat.h>

#include <set>

namespace {

namespace fs = std::filesystem;

using Library = LibraryFixture;

TEST_F(Library, IsOpenToTheApp) {
  open({folder_.path().string()});
  EXPECT_EQ(library_->access(), host::LibraryAccess::Authorised);
}

TEST_F(Library, AnswersARequestForAccessInALaterTurn) {
  open({folder_.path().string()});
  std::vector<host::LibraryAccess> answers;
  library_->requestAccess([&](host::LibraryAccess access) { answers.push_back(access); });
  EXPECT_TRUE(answers.empty());
  mainLoop_.turn();
  EXPECT_EQ(answers, std::vector{host::LibraryAccess::Authorised});
}

TEST_F(Library, AnswersARequestForAccessAlsoOnceItIsGone) {
  open({folder_.path().string()});
  bool isAnswered = false;
  library_->requestAccess([&](host::LibraryAccess) { isAnswered = true; });
  library_.reset();
  mainLoop_.turn();
  EXPECT_TRUE(isAnswered);
}

TEST_F(Library, ItemHasTitleDurationAddressAndPicture) {
  const std::string path = folder_.copy(filmTitled("Vacanze"), "a b.mp4");
  const auto found = items();
  ASSERT_EQ(found->count(), 1U);
  const auto item = found->item(0);
  EXPECT_EQ(item.title, "Vacanze");
  EXPECT_NEAR(item.duration, 1.0, 0.05);
  EXPECT_EQ(item.url, clips::urlOf(path));
  EXPECT_EQ(item.artworkSource, medialibrary::artworkSource(path));
  EXPECT_TRUE(medialibrary::keptArtwork(path, 64)) << "whoever shows the list finds the picture ready";
}

TEST_F(Library, TitleIsTheFileNameWhereThereIsNoTag) {
  folder_.copy(film(), "Natale.2023 a casa.mp4");
  folder_.copy(film(), "  .mp4");
  EXPECT_EQ(titles(), Texts({".mp4", "Natale.2023 a casa"}));
}

TEST_F(Library, TellsTheTitleOfAVideoThatItListsAndTheNameOfAnother) {
  const std::string path = folder_.copy(filmTitled("Vacanze"), "a b.mp4");
  ASSERT_EQ(titles(), Texts({"Vacanze"}));
  EXPECT_EQ(library_->title(path), "Vacanze");
  EXPECT_EQ(library_->title("/elsewhere/Natale.2023 a casa.mp4"), "Natale.2023 a casa");
}

TEST_F(Library, OfAnEmptyFolderIsEmpty) {
  ASSERT_NE(items(), nullptr);
  EXPECT_EQ(items()->count(), 0U);
}

TEST_F(Library, OfAMissingFolderIsEmpty) {
  open({folder_ / "missing"});
  ASSERT_NE(items(), nullptr);
  EXPECT_EQ(items()->count(), 0U);
}

TEST_F(Library, OfAFileInsteadOfAFolderIsEmpty) {
  open({folder_.copy(film(), "film.mp4")});
  EXPECT_EQ(items()->count(), 0U);
}

TEST_F(Library, IsTheVideosFolderWhereNoneIsNamed) {
  const EnvironmentVariable home("HOME", folder_.path().string());
  const EnvironmentVariable configuration("XDG_CONFIG_HOME", std::nullopt);
  folder_.write(".config/user-dirs.dirs", "XDG_VIDEOS_DIR=\"$HOME/Video\"\n");
  folder_.copy(film(), "Video/mio.mp4");
  folder_.copy(film(), "Altro/altro.mp4");
  open({});
  EXPECT_EQ(titles(), Texts({"mio"}));
}

TEST_F(Library, IncludesSubFolders) {
  folder_.copy(film(), "a/b/c/deep.mp4");
  folder_.copy(film(), "top.mp4");
  EXPECT_EQ(titles(), Texts({"deep", "top"}));
}

TEST_F(Library, MayHaveSeveralFoldersEvenOneInAnother) {
  folder_.copy(film(), "one/a.mp4");
  folder_.copy(film(), "two/b.mp4");
  open({folder_ / "one", folder_ / "two", folder_.path().string()});
  EXPECT_EQ(titles(), Texts({"a", "b"}));
}

TEST_F(Library, LeavesHiddenFilesAndFoldersOut) {
  folder_.copy(film(), ".hidden.mp4");
  folder_.copy(film(), ".folder/film.mp4");
  folder_.copy(film(), "shown.mp4");
  EXPECT_EQ(titles(), Texts({"shown"}));
}

TEST_F(Library, KnowsVideosByTheEndingInAnyCase) {
  folder_.copy(film(), "one.MP4");
  folder_.copy(film(), "two.mOv");
  folder_.copy(film(), "three.txt");
  folder_.copy(film(), "four");
  folder_.copy(film(), "mp4");
  EXPECT_EQ(titles(), Texts({"one", "two"}));
}

TEST_F(Library, ListsAFileWithTwoNamesOnce) {
  const std::string path = folder_.copy(film(), "b.mp4");
  fs::create_hard_link(path, folder_ / "a.mp4");
  EXPECT_EQ(titles(), Texts({"a"}));
}

TEST_F(Library, ListsAFileAndALinkToItOnce) {
  const std::string path = folder_.copy(film(), "b.mp4");
  fs::create_symlink(path, folder_ / "a.mp4");
  EXPECT_EQ(titles(), Texts({"a"}));
}

TEST_F(Library, FollowsLinksToElsewhere) {
  const TemporaryFolder elsewhere;
  elsewhere.copy(film(), "far.mp4");
  fs::create_symlink(elsewhere.path(), folder_ / "link");
  EXPECT_EQ(paths(), Texts({folder_ / "link/far.mp4"}));
}

TEST_F(Library, SurvivesLinksThatLeadInCircles) {
  folder_.copy(film(), "a/film.mp4");
  fs::create_symlink(folder_.path(), folder_ / "a/up");
  fs::create_symlink(folder_.path(), folder_ / "a/up again");
  fs::create_symlink(folder_ / "a", folder_ / "b");
  fs::create_symlink(folder_ / "self", folder_ / "self");
  fs::create_symlink(folder_ / "loop.mp4", folder_ / "loop.mp4");
  EXPECT_EQ(paths(), Texts({folder_ / "a/film.mp4"}));
}

TEST_F(Library, LeavesOutWhatCannotBePlayed) {
  folder_.write("text.mp4", "no film");
  folder_.write("empty.mp4", "");
  folder_.copy(clips::truncated(film(), "medialibrary-cut.mp4", 300), "cut.mp4");
  ASSERT_EQ(mkfifo((folder_ / "pipe.mp4").c_str(), 0600), 0);
  fs::create_directory(folder_ / "folder.mp4");
  fs::create_symlink(folder_ / "nowhere", folder_ / "dangling.mp4");
  folder_.copy(film(), "good.mp4");
  EXPECT_EQ(titles(), Texts({"good"}));
}

TEST_F(Library, LeavesOutWhatHasNoPicture) {
  folder_.copy(filmWith("sound.mp4", {"-vn"}), "sound.mp4");
  EXPECT_EQ(titles(), Texts());
}

TEST_F(Library, LeavesOutWhatHasNoDuration) {
  folder_.copy(filmWith("stream.m2v", {"-an", "-c:v", "copy", "-f", "h264"}), "stream.mpv");
  EXPECT_EQ(titles(), Texts());
}

TEST_F(Library, IncludesProtectedFilms) {
  folder_.copy(filmWith("protected.mp4",
                        {"-encryption_scheme", "cenc-aes-ctr", "-encryption_key", "76a6c65c5ea762046bd749a2e632ccbb",
                         "-encryption_kid", "a7e61c373e219033c21091fa607bf3b8"}),
               "protected.mp4");
  EXPECT_EQ(titles(), Texts({"protected"}));
}

TEST_F(Library, TellsTheKindsApart) {
  folder_.copy(filmWith("programme.mp4", {"-metadata", "media_type=10"}), "programme.mp4");
  folder_.copy(filmWith("feature.mp4", {"-metadata", "media_type=9"}), "feature.mp4");
  folder_.copy(filmWith("music.mp4", {"-metadata", "media_type=6"}), "music.mp4");
  folder_.copy(film(), "mine.mp4");
  EXPECT_EQ(titles(), Texts({"mine"}));
  EXPECT_EQ(titles(512), Texts({"programme"}));
  EXPECT_EQ(titles(256), Texts({"feature"}));
  EXPECT_EQ(titles(2048), Texts({"music"}));
  EXPECT_EQ(titles(1), Texts());
}

TEST_F(Library, IsSortedByTitleWithNumbersByValue) {
  folder_.copy(filmTitled("Film 10"), "1.mp4");
  folder_.copy(filmTitled("Film 2"), "2.mp4");
  folder_.copy(film(), "àncora.mp4");
  folder_.copy(film(), "ancora.mp4");
  folder_.copy(film(), "Banana.mp4");
  folder_.copy(film(), "zebra.mp4");
  const Texts order = {"ancora", "àncora", "Banana", "Film 2", "Film 10", "zebra"};
  EXPECT_EQ(titles(), order);
  open({folder_.path().string()}, "C");
  EXPECT_EQ(titles(), order);
}

TEST_F(Library, IsSortedByPathWhereTitlesAreTheSame) {
  folder_.copy(film(), "c/film.mp4");
  folder_.copy(film(), "a/film.mp4");
  folder_.copy(film(), "b/film.mp4");
  EXPECT_EQ(paths(), Texts({folder_ / "a/film.mp4", folder_ / "b/film.mp4", folder_ / "c/film.mp4"}));
}

struct OddName {
  const char* what;
  std::string name;
  std::string title;
};

class LibraryWithOddName : public Library, public testing::WithParamInterface<OddName> {};

TEST_P(LibraryWithOddName, ShowsItAsTextAndKeepsItsBytes) {
  const std::string path = folder_.copy(film(), GetParam().name);
  const auto found = items();
  ASSERT_EQ(found->count(), 1U);
  EXPECT_EQ(found->item(0).title, GetParam().title);
  EXPECT_EQ(NSURL::URLWithString(found->item(0).url)->path(), path);
}

INSTANTIATE_TEST_SUITE_P(
    Names, LibraryWithOddName,
    testing::Values(OddName{"LineFeed", "two\nlines\t.mp4", "two lines"},
                    OddName{"Quotes", "\"it's\".mp4", "\"it's\""}, OddName{"LeadingDash", "-i.mp4", "-i"},
                    OddName{"InvalidUtf8", "caff\xE8.mp4", "caff\xEF\xBF\xBD"},
                    OddName{"UrlCharacters", "100%25 #1?.mp4", "100%25 #1?"},
                    OddName{"ShellCharacters", "a\\b;c&d.mp4", "a\\b;c&d"},
                    OddName{"LongestName", std::string(251, 'n') + ".mp4", std::string(251, 'n')}),
    [](const auto& name) { return name.param.what; });

TEST_F(Library, ShowsATagOfSeveralLinesAsOne) {
  folder_.copy(filmWith("lines.mp4", {"-metadata", "title=one\ntwo"}), "film.mp4");
  EXPECT_EQ(titles(), Texts({"one two"}));
}

TEST_F(Library, SeesAfterARescanWhatWasAddedChangedOrRemoved) {
  folder_.copy(film(), "b.mp4");
  EXPECT_EQ(titles(), Texts({"b"}));
  folder_.copy(film(), "a.mp4");
  EXPECT_EQ(titlesNow(), Texts({"a", "b"}));
  folder_.copy(filmTitled("Cambiato"), "b.mp4");
  EXPECT_EQ(titlesNow(), Texts({"a", "Cambiato"}));
  fs::remove(folder_ / "a.mp4");
  EXPECT_EQ(titlesNow(), Texts({"Cambiato"}));
}

TEST_F(Library, DoesNotChangeAnAnswerThatItHasGiven) {
  folder_.copy(film(), "a.mp4");
  const auto before = items();
  fs::remove(folder_ / "a.mp4");
  EXPECT_EQ(itemsNow()->count(), 0U);
  library_.reset();
  ASSERT_EQ(before->count(), 1U);
  EXPECT_EQ(before->item(0).title, "a");
}

TEST_F(Library, FindsEveryOneOfManyFiles) {
  std::set<std::string> expected;
  for (int i = 0; i < 200; ++i) {
    const std::string name = "film " + std::to_string(i);
    folder_.copy(film(), name + ".mp4");
    expected.insert(name);
  }
  const Texts found = titles();
  EXPECT_EQ(std::set<std::string>(found.begin(), found.end()), expected);
  EXPECT_EQ(found.size(), 200U);
}

TEST_F(Library, CanBeClosedWhileItIsStillLooking) {
  for (int i = 0; i < 100; ++i) folder_.copy(film(), std::to_string(i) + ".mp4");
  for (int i = 0; i < 20; ++i) open({folder_.path().string()});
  EXPECT_EQ(items()->count(), 100U);
}

}  // namespace
