#include "hosts/medialibrary/Artwork.h"
#include "hosts/medialibrary/ArtworkMaker.h"

#include "hosts/medialibrary/Png.h"
#include "hosts/medialibrary/Thumbnails.h"
#include "platform/foundation/Values.h"
#include "tests/host/medialibrary/Programs.h"
#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/Clips.h"
#include "tests/support/EnvironmentVariable.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>

namespace {

using medialibrary::ThumbnailCache;
using medialibrary::ThumbnailSize;

constexpr long filmTime = 1'700'000'000;

std::string film() {
  return clips::film("medialibrary-film.mp4", 640, 480, 1.0, 440, 2);
}

void setModified(const std::string& path, long seconds) {
  const std::array<timespec, 2> times = {{{seconds, 0}, {seconds, 0}}};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times.data(), 0), 0);
}

probe::Still green(int width, int height) {
  probe::Still still{width, height, {}};
  for (int i = 0; i < width * height; ++i) still.bgrx.insert(still.bgrx.end(), {0, 255, 0, 255});
  return still;
}

bool isGreen(const probe::Still& still) {
  for (std::size_t i = 0; i < still.bgrx.size(); i += 4) {
    if (still.bgrx[i] != 0 || still.bgrx[i + 1] != 255 || still.bgrx[i + 2] != 0) return false;
  }
  return true;
}

mode_t modeOf(const std::string& path) {
  struct stat facts {};
  EXPECT_EQ(stat(path.c_str(), &facts), 0) << path;
  return facts.st_mode & 07777U;
}

/// A film in a folder of its own, and an empty thumbnail cache.
class Artwork : public testing::Test {
 protected:
  static std::optional<probe::Still> artwork(const std::string& path, int largestSide) {
    return medialibrary::ArtworkMaker(programs::indexer()).picture(path, largestSide);
  }

  void SetUp() override { setModified(path_, filmTime); }

  std::string thumbnailPath(ThumbnailSize size) const { return ThumbnailCache::forFile(path_)->pathOf(size); }

  /// Puts a thumbnail into the cache as another program would.
  void plant(ThumbnailSize size, const probe::Still& still, const medialibrary::PngTexts& texts) const {
    const std::string path = thumbnailPath(size);
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << medialibrary::pngOf(still, texts);
  }

  medialibrary::PngTexts validTexts() const {
    return {{"Thumb::URI", medialibrary::thumbnailUri(path_)}, {"Thumb::MTime", std::to_string(filmTime)}};
  }

  TemporaryFolder folder_;
  EnvironmentVariable cache_{"XDG_CACHE_HOME", folder_ / "cache"};
  std::string path_ = folder_.copy(film(), "Film (1) più.mp4");
};

TEST_F(Artwork, IsMadeFromTheFilm) {
  const auto still = artwork(path_, 256);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->width, 256);
  EXPECT_EQ(still->height, 192);
  EXPECT_EQ(still->bgrx.size(), 256U * 192U * 4U);
}

TEST_F(Artwork, FitsTheSizeAskedFor) {
  for (const int side : {1, 40, 128, 200, 600}) {
    const auto still = artwork(path_, side);
    ASSERT_TRUE(still) << side;
    EXPECT_EQ(still->width, side);
    EXPECT_NEAR(still->height, side * 0.75, 0.5);
  }
}

TEST_F(Artwork, IsNotEnlarged) {
  const auto still = artwork(path_, 4000);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->width, 640);
}

TEST_F(Artwork, IsStoredForOthersToUse) {
  ASSERT_TRUE(artwork(path_, 200));
  const auto texts = medialibrary::textsOfPng(contentsOf(thumbnailPath(ThumbnailSize::Large)));
  EXPECT_EQ(texts.at("Thumb::MTime"), std::to_string(filmTime));
  EXPECT_EQ(texts.at("Thumb::Size"), std::to_string(std::filesystem::file_size(path_)));
  const std::string uri = texts.at("Thumb::URI");
  EXPECT_TRUE(uri.starts_with("file:///"));
  EXPECT_TRUE(uri.ends_with("/Film%20(1)%20pi%C3%B9.mp4")) << uri;
  const auto picture = medialibrary::pictureOfPng(contentsOf(thumbnailPath(ThumbnailSize::Large)), 256);
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->width, 256);
}

TEST_F(Artwork, IsStoredInTheFolderOfItsSize) {
  ASSERT_TRUE(artwork(path_, 128));
  ASSERT_TRUE(artwork(path_, 129));
  ASSERT_TRUE(artwork(path_, 257));
  ASSERT_TRUE(artwork(path_, 513));
  ASSERT_TRUE(artwork(path_, 1025));
  for (const char* name : {"normal", "large", "x-large", "xx-large"}) {
    const std::filesystem::path folder = folder_ / ("cache/thumbnails/" + std::string(name));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << name;
  }
}

TEST_F(Artwork, IsStoredForTheUserAlone) {
  ASSERT_TRUE(artwork(path_, 200));
  EXPECT_EQ(modeOf(thumbnailPath(ThumbnailSize::Large)), 0600U);
  EXPECT_EQ(modeOf(folder_ / "cache/thumbnails/large"), 0700U);
  EXPECT_EQ(modeOf(folder_ / "cache/thumbnails"), 0700U);
}

TEST_F(Artwork, IsTakenFromTheCacheTheSecondTime) {
  const auto first = artwork(path_, 200);
  ASSERT_TRUE(first);
  const std::string noFilm(std::filesystem::file_size(path_), 'x');
  std::ofstream(path_, std::ios::binary) << noFilm;
  setModified(path_, filmTime);
  const auto second = artwork(path_, 200);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->bgrx, first->bgrx);
}

TEST_F(Artwork, OfAFileManagerIsUsed) {
  plant(ThumbnailSize::Large, green(256, 192), validTexts());
  const auto still = artwork(path_, 200);
  ASSERT_TRUE(still);
  EXPECT_TRUE(isGreen(*still));
  EXPECT_EQ(still->width, 200);
  EXPECT_EQ(still->height, 150);
}

TEST_F(Artwork, MayComeFromALargerThumbnail) {
  plant(ThumbnailSize::ExtraExtraLarge, green(1024, 768), validTexts());
  const auto still = artwork(path_, 100);
  ASSERT_TRUE(still);
  EXPECT_TRUE(isGreen(*still));
  EXPECT_EQ(still->width, 100);
}

TEST_F(Artwork, DoesNotComeFromASmallerThumbnail) {
  plant(ThumbnailSize::Normal, green(128, 96), validTexts());
  const auto still = artwork(path_, 200);
  ASSERT_TRUE(still);
  EXPECT_FALSE(isGreen(*still));
}

TEST_F(Artwork, IsInAFileForOthersToShow) {
  EXPECT_FALSE(medialibrary::keptArtworkFile(path_, 256));
  plant(ThumbnailSize::Normal, green(128, 72), validTexts());
  EXPECT_EQ(medialibrary::keptArtworkFile(path_, 256), thumbnailPath(ThumbnailSize::Normal))
      << "the largest there is";
  plant(ThumbnailSize::Large, green(256, 144), validTexts());
  plant(ThumbnailSize::ExtraLarge, green(512, 288), validTexts());
  EXPECT_EQ(medialibrary::keptArtworkFile(path_, 256), thumbnailPath(ThumbnailSize::Large));
  EXPECT_EQ(medialibrary::keptArtworkFile(path_, 257), thumbnailPath(ThumbnailSize::ExtraLarge));
  setModified(path_, filmTime + 1);
  EXPECT_FALSE(medialibrary::keptArtworkFile(path_, 256)) << "all of them are out of date";
}

TEST_F(Artwork, IsMadeAgainOnceTheFilmHasChanged) {
  plant(ThumbnailSize::Large, green(256, 192), validTexts());
  setModified(path_, filmTime + 1);
  const auto still = artwork(path_, 200);
  ASSERT_TRUE(still);
  EXPECT_FALSE(isGreen(*still));
  EXPECT_EQ(medialibrary::textsOfPng(contentsOf(thumbnailPath(ThumbnailSize::Large))).at("Thumb::MTime"),
            std::to_string(filmTime + 1));
}

TEST_F(Artwork, DoesNotComeFromAThumbnailOfAnotherFile) {
  for (const auto& [key, value] :
       {std::pair("Thumb::URI", "file:///another"), std::pair("Thumb::MTime", "x"), std::pair("Thumb::Size", "1")}) {
    auto texts = validTexts();
    texts[key] = value;
    plant(ThumbnailSize::Large, green(256, 192), texts);
    const auto still = artwork(path_, 200);
    ASSERT_TRUE(still);
    EXPECT_FALSE(isGreen(*still)) << key;
  }
}

TEST_F(Artwork, DoesNotComeFromAThumbnailWithoutTexts) {
  plant(ThumbnailSize::Large, green(256, 192), {});
  const auto still = artwork(path_, 200);
  ASSERT_TRUE(still);
  EXPECT_FALSE(isGreen(*still));
}

TEST_F(Artwork, DoesNotComeFromAThumbnailThatIsTooLarge) {
  plant(ThumbnailSize::Large, green(300, 300), validTexts());
  const auto still = artwork(path_, 200);
  ASSERT_TRUE(still);
  EXPECT_FALSE(isGreen(*still));
}

TEST_F(Artwork, TakesTheNameThatOtherProgramsTake) {
  const std::string sum = ThumbnailCache::forFile(path_)->pathOf(ThumbnailSize::Normal);
  const std::string uri = folder_.write("uri", medialibrary::thumbnailUri(path_));
  const std::string command = "md5sum '" + uri + "'";
  FILE* pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::array<char, 33> expected{};
  EXPECT_EQ(fread(expected.data(), 1, 32, pipe), 32U);
  pclose(pipe);
  EXPECT_EQ(sum, folder_ / ("cache/thumbnails/normal/" + std::string(expected.data()) + ".png"));
}

TEST_F(Artwork, IsMissingForAsLongAsTheCacheCannotBeWritten) {
  {
    const EnvironmentVariable nowhere("XDG_CACHE_HOME", "/dev/null/cache");
    EXPECT_FALSE(artwork(path_, 200));
  }
  EXPECT_TRUE(artwork(path_, 200));
}

TEST_F(Artwork, IsMissingForWhatIsNoFilm) {
  EXPECT_EQ(artwork(folder_.write("text.mp4", "no film"), 200), std::nullopt);
  EXPECT_EQ(artwork(folder_ / "missing.mp4", 200), std::nullopt);
  EXPECT_EQ(artwork(folder_.path().string(), 200), std::nullopt);
  EXPECT_EQ(artwork("", 200), std::nullopt);
  EXPECT_EQ(artwork(path_, 0), std::nullopt);
}

TEST_F(Artwork, LeavesNothingHalfWrittenBehind) {
  ASSERT_TRUE(artwork(path_, 200));
  ASSERT_TRUE(artwork(path_, 200));
  const std::filesystem::path folder = folder_ / "cache/thumbnails/large";
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
}

TEST(ThumbnailUri, IsWrittenAsDesktopProgramsWriteIt) {
  EXPECT_EQ(
      medialibrary::thumbnailUri("/home/u/Film (1) & pi\xC3\xB9; a'b+c,d=e$f!g~h*i:j@k_l-m.n[o]#p?q%r\"s<t>|\\^`{}"
                                 "\xFF.mp4"),
      "file:///home/u/Film%20(1)%20&%20pi%C3%B9%3B%20a'b+c,d=e$f!g~h*i:j@k_l-m.n%5Bo%5D%23p%3Fq%25r%22s%3Ct%3E%7C"
      "%5C%5E%60%7B%7D%FF.mp4");
}

TEST(ArtworkSource, LeadsBackToThePath) {
  std::string path = "/";
  for (int byte = 1; byte < 256; ++byte) path += static_cast<char>(byte);
  const std::string source = medialibrary::artworkSource(path);
  const std::string prefix = "image://artwork/";
  ASSERT_TRUE(source.starts_with(prefix));
  EXPECT_EQ(
      source.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~%", prefix.size()),
      std::string::npos);
  EXPECT_EQ(NSURL::URLWithString("file:///" + source.substr(prefix.size()))->path(), "/" + path);
}

}  // namespace
