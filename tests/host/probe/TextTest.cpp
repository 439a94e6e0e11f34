#include "hosts/probe/Text.h"

#include <gtest/gtest.h>

namespace {

using probe::lineOfText;

TEST(LineOfText, KeepsValidTextAsItIs) {
  EXPECT_EQ(lineOfText("Perché 日本 🎬"), "Perché 日本 🎬");
}

TEST(LineOfText, TakesBlanksFromBothEnds) {
  EXPECT_EQ(lineOfText(" \t a  b \n"), "a  b");
  EXPECT_EQ(lineOfText(" \r\n "), "");
  EXPECT_EQ(lineOfText(""), "");
}

TEST(LineOfText, MakesControlCharactersBlanks) {
  EXPECT_EQ(lineOfText("a\nb\tc\x7F"
                       "d\xC2\x85"
                       "e\xE2\x80\xA8"
                       "f"),
            "a b c d e f");
}

TEST(LineOfText, ReplacesEachByteThatIsNoText) {
  const std::string none = "\xEF\xBF\xBD";
  EXPECT_EQ(lineOfText("a\xFF"
                       "b"),
            "a" + none + "b");
  EXPECT_EQ(lineOfText("\xC3"), none);
  EXPECT_EQ(lineOfText("\xE2\x82"), none + none);
  EXPECT_EQ(lineOfText("\xC0\xAF"), none + none);
  EXPECT_EQ(lineOfText("\xED\xA0\x80"), none + none + none);
  EXPECT_EQ(lineOfText("\xF4\x90\x80\x80"), none + none + none + none);
}

}  // namespace
