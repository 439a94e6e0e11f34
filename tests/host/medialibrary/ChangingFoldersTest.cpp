#include "tests/host/medialibrary/LibraryFixture.h"

namespace {

constexpr std::uint64_t featureFilm = 256;

class ChangingFolders : public LibraryFixture {
 protected:
  ChangingFolders() {
    first_.copy(film(), "one.mp4");
    second_.copy(film(), "two.mp4");
    second_.copy(film(), "three.mp4");
    open({first_.path().string()});
  }

  void setFolders(std::vector<std::string> folders) { library_->setFolders(std::move(folders)); }

  TemporaryFolder first_;
  TemporaryFolder second_;
};

TEST_F(ChangingFolders, TakeEffectOnceTheyHaveBeenSearched) {
  EXPECT_EQ(items()->count(), 1U);
  const auto before = items();
  setFolders({first_.path().string(), second_.path().string()});
  EXPECT_TRUE(library_->contents(homeVideo).isSearching) << "whoever asks now is told that there may be more";
  EXPECT_EQ(items()->count(), 3U);
  setFolders({second_.path().string()});
  EXPECT_EQ(items()->count(), 2U);
  EXPECT_EQ(before->count(), 1U) << "an answer does not change any more";
}

TEST_F(ChangingFolders, MayBeNone) {
  setFolders({});
  EXPECT_EQ(items()->count(), 0U);
}

TEST_F(ChangingFolders, ThatComeBackAreNotLookedIntoAgain) {
  EXPECT_EQ(items()->count(), 1U);
  setFolders({});
  EXPECT_EQ(items()->count(), 0U);
  auto withoutIndexer = options({first_.path().string()});
  withoutIndexer.indexer = "/nonexistent";
  library_.reset();
  library_ = medialibrary::makeLibrary(mainLoop_, withoutIndexer);
  EXPECT_EQ(items()->count(), 1U);
}

TEST_F(ChangingFolders, ContentsAreKnownInTheEndWithoutAQuery) {
  settle();
  EXPECT_EQ(library_->contents(homeVideo).items, 1U);
  setFolders({first_.path().string(), second_.path().string()});
  EXPECT_GE(library_->contents(homeVideo).items, 1U) << "what was found in a folder that stays is known";
  settle();
  EXPECT_EQ(library_->contents(homeVideo).items, 3U);
  EXPECT_EQ(library_->contents(featureFilm).items, 0U);
}

TEST_F(ChangingFolders, ContentsLeaveOutWhatIsNoVideo) {
  first_.write("letter.mp4", "This is a letter.");
  library_->rescan();
  settle();
  const auto contents = library_->contents(homeVideo);
  EXPECT_EQ(contents.items, 1U);
  EXPECT_EQ(contents.unreadableFiles, 1U);
  const auto unreadable = library_->unreadableFiles(10);
  ASSERT_EQ(unreadable.size(), 1U);
  EXPECT_EQ(unreadable[0].path, first_ / "letter.mp4");
  EXPECT_NE(unreadable[0].reason, "");
}

}  // namespace
