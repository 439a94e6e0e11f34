#include "hosts/medialibrary/Library.h"

#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/Clips.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr std::uint64_t homeVideo = 8192;
constexpr std::uint64_t film = 256;

class NoMainLoop final : public host::MainLoop {
 public:
  double now() const override { return 0.0; }
  void wakeAt(double) override {}
  void post(std::function<void()>) override {}
};

class ChangingFolders : public testing::Test {
 protected:
  ChangingFolders() {
    const std::string clip = clips::film("medialibrary-small.mp4", 64, 48, 1.0, 440, 1);
    first_.copy(clip, "one.mp4");
    second_.copy(clip, "two.mp4");
    second_.copy(clip, "three.mp4");
  }

  std::size_t count() { return library_->items(homeVideo)->count(); }
  /// What is known once nothing is left to be looked into.
  medialibrary::FolderLibrary::Contents settled() {
    auto contents = library_->contents(homeVideo);
    while (contents.unknownFiles > 0) {
      std::this_thread::yield();
      contents = library_->contents(homeVideo);
    }
    return contents;
  }

  TemporaryFolder first_;
  TemporaryFolder second_;
  NoMainLoop mainLoop_;
  std::unique_ptr<medialibrary::FolderLibrary> library_ =
      medialibrary::makeLibrary(mainLoop_, {{first_.path().string()}, "C"});
};

TEST_F(ChangingFolders, TakeEffectAtTheNextQuery) {
  EXPECT_EQ(count(), 1U);
  const auto before = library_->items(homeVideo);
  library_->setFolders({first_.path().string(), second_.path().string()});
  EXPECT_EQ(count(), 3U);
  library_->setFolders({second_.path().string()});
  EXPECT_EQ(count(), 2U);
  EXPECT_EQ(before->count(), 1U) << "an answer does not change any more";
}

TEST_F(ChangingFolders, MayBeNone) {
  library_->setFolders({});
  EXPECT_EQ(count(), 0U);
}

TEST_F(ChangingFolders, ContentsAreKnownInTheEndWithoutAQuery) {
  EXPECT_EQ(settled().items, 1U);
  library_->setFolders({first_.path().string(), second_.path().string()});
  const auto atOnce = library_->contents(homeVideo);
  EXPECT_EQ(atOnce.items + atOnce.unknownFiles, 3U);
  EXPECT_GE(atOnce.items, 1U) << "what was found in a folder that stays is known";
  EXPECT_EQ(settled().items, 3U);
  EXPECT_EQ(library_->contents(film).items, 0U);
}

TEST_F(ChangingFolders, ContentsLeaveOutWhatIsNoVideo) {
  first_.write("letter.mp4", "This is a letter.");
  const auto contents = settled();
  EXPECT_EQ(contents.items, 1U);
  EXPECT_EQ(contents.unknownFiles, 0U);
}

}  // namespace
