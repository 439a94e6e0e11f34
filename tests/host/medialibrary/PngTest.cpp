#include "hosts/medialibrary/Png.h"

#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/Clips.h"

#include <gtest/gtest.h>

namespace {

using medialibrary::pictureOfPng;
using medialibrary::pngOf;
using medialibrary::textsOfPng;
using namespace std::string_literals;

probe::Still stripes() {
  return {2, 1, {255, 0, 0, 255, 0, 128, 255, 255}};
}

/// A chunk whose check sum nobody looks at.
std::string chunk(const std::string& type, const std::string& contents) {
  return "\0\0\0"s + static_cast<char>(contents.size()) + type + contents + "\0\0\0\0"s;
}

std::string withChunks(const std::string& chunks) {
  std::string png = pngOf(stripes(), {});
  return png.insert(8 + 25, chunks);
}

TEST(Png, KeepsPictureAndTexts) {
  const std::string png = pngOf(stripes(), {{"Thumb::URI", "file:///a"}, {"Thumb::MTime", "17"}});
  const auto still = pictureOfPng(png, 128);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->width, 2);
  EXPECT_EQ(still->height, 1);
  EXPECT_EQ(still->bgrx, stripes().bgrx);
  const auto texts = textsOfPng(png);
  EXPECT_EQ(texts.size(), 2U);
  EXPECT_EQ(texts.at("Thumb::URI"), "file:///a");
  EXPECT_EQ(texts.at("Thumb::MTime"), "17");
}

TEST(Png, IsReadByOtherPrograms) {
  const TemporaryFolder folder;
  const std::string path = folder.write("ours.png", pngOf(stripes(), {{"Software", "Quillop"}}));
  const std::string copy = clips::clip("medialibrary-other-program.png", {"-i", path, "-pix_fmt", "rgb24"});
  const auto still = pictureOfPng(contentsOf(copy), 128);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->bgrx, stripes().bgrx);
}

TEST(Png, HasCompressedTextsReadAsWell) {
  const std::string compressed = "\x78\x9C\x4B\xCB\xCC\x49\xB5\xD2\xD7\xD7\x4F\x04\x00\x0F\x63\x02\xC9"s;
  EXPECT_EQ(textsOfPng(withChunks(chunk("zTXt", "Thumb::URI\0\0"s + compressed)))["Thumb::URI"], "file:///a");
  EXPECT_EQ(textsOfPng(withChunks(chunk("iTXt", "Thumb::URI\0\1\0it\0\0"s + compressed)))["Thumb::URI"], "file:///a");
  EXPECT_EQ(textsOfPng(withChunks(chunk("iTXt", "Thumb::URI\0\0\0\0\0file:///a"s)))["Thumb::URI"], "file:///a");
}

TEST(Png, LeavesDamagedTextsOut) {
  EXPECT_TRUE(textsOfPng("").empty());
  EXPECT_TRUE(textsOfPng("no picture at all").empty());
  EXPECT_TRUE(textsOfPng(withChunks(chunk("tEXt", "no end"))).empty());
  EXPECT_TRUE(textsOfPng(withChunks(chunk("zTXt", "Thumb::URI\0\0garbage"s))).empty());
  EXPECT_TRUE(textsOfPng(withChunks(chunk("iTXt", "Thumb::URI\0"s))).empty());
  EXPECT_TRUE(textsOfPng(withChunks("\xFF\xFF\xFF\xFF"
                                    "tEXtThumb::URI\0x"s))
                  .empty());
}

TEST(Png, OfTooManyPixelsIsNotRead) {
  EXPECT_EQ(pictureOfPng(pngOf(stripes(), {}), 1), std::nullopt);
}

TEST(Png, ThatIsDamagedIsNotRead) {
  const std::string png = pngOf(stripes(), {});
  EXPECT_EQ(pictureOfPng("", 128), std::nullopt);
  for (std::size_t length = 1; length < png.size() - 12; ++length) {
    EXPECT_EQ(pictureOfPng(png.substr(0, length), 128), std::nullopt) << length;
  }
}

}  // namespace
