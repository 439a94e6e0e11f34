#include "platform/foundation/Values.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr auto greatest = std::numeric_limits<std::int64_t>::max();
constexpr auto least = std::numeric_limits<std::int64_t>::min();

std::int64_t integerOf(double value) {
  return NSNumber::numberWithDouble(value)->integerValue();
}

TEST(NSNumber, CutsTheFractionOffTowardsZero) {
  EXPECT_EQ(integerOf(12.7), 12);
  EXPECT_EQ(integerOf(-12.7), -12);
  EXPECT_EQ(integerOf(0.999), 0);
  EXPECT_EQ(integerOf(-0.999), 0);
  EXPECT_EQ(integerOf(3725.9), 3725);
}

TEST(NSNumber, HoldsWholeNumbersInsideTheRange) {
  EXPECT_EQ(integerOf(1e300), greatest);
  EXPECT_EQ(integerOf(-1e300), least);
  EXPECT_EQ(integerOf(infinity), greatest);
  EXPECT_EQ(integerOf(-infinity), least);
  EXPECT_EQ(integerOf(9223372036854775808.0), greatest);
  EXPECT_EQ(integerOf(-9223372036854775808.0), least);
  EXPECT_EQ(integerOf(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(NSNumber, RemembersWhatItWasMadeFrom) {
  EXPECT_TRUE(NSNumber::numberWithInteger(7)->isInteger());
  EXPECT_FALSE(NSNumber::numberWithDouble(7)->isInteger());
  EXPECT_EQ(NSNumber::numberWithInteger(greatest)->integerValue(), greatest);
  EXPECT_EQ(NSNumber::numberWithInteger(-3)->doubleValue(), -3.0);
  EXPECT_EQ(NSNumber::numberWithDouble(12.5)->doubleValue(), 12.5);
}

TEST(NSNumber, IsTrueUnlessItIsZero) {
  EXPECT_TRUE(NSNumber::numberWithBool(true)->boolValue());
  EXPECT_FALSE(NSNumber::numberWithBool(false)->boolValue());
  EXPECT_EQ(NSNumber::numberWithBool(true)->integerValue(), 1);
  EXPECT_TRUE(NSNumber::numberWithDouble(0.25)->boolValue());
  EXPECT_FALSE(NSNumber::numberWithInteger(0)->boolValue());
}

TEST(TextOf, KeepsTheFractionOfAWholeNumber) {
  EXPECT_EQ(textOf(26), "26.0");
  EXPECT_EQ(textOf(0), "0.0");
  EXPECT_EQ(textOf(-3), "-3.0");
  EXPECT_EQ(textOf(-0.0), "-0.0");
}

/// Writes a comma where others write a point.
class Comma final : public std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

/// For as long as it lives, numbers are written with a comma: in C++, and in C where such a locale is installed.
class LocaleWithAComma {
 public:
  LocaleWithAComma() : cxx_(std::locale::global(std::locale(std::locale::classic(), new Comma))) {
    setlocale(LC_NUMERIC, "de_DE.UTF-8");
  }
  ~LocaleWithAComma() {
    std::locale::global(cxx_);
    setlocale(LC_NUMERIC, c_.c_str());
  }
  LocaleWithAComma(const LocaleWithAComma&) = delete;
  LocaleWithAComma& operator=(const LocaleWithAComma&) = delete;

 private:
  const std::string c_ = setlocale(LC_NUMERIC, nullptr);
  const std::locale cxx_;
};

TEST(TextOf, WritesAPointInEveryLocale) {
  const LocaleWithAComma comma;
  ASSERT_EQ((std::ostringstream() << 12.5).str(), "12,5");
  EXPECT_EQ(textOf(12.5), "12.5");
  EXPECT_EQ(textOf(-0.25), "-0.25");
  EXPECT_EQ(textOf(1234567.25), "1234567.25");
}

TEST(TextOf, IsTheShortestTextThatReadsBackTheSame) {
  EXPECT_EQ(textOf(0.1), "0.1");
  EXPECT_EQ(textOf(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(textOf(1.0 / 3), "0.3333333333333333");
}

TEST(TextOf, LeavesWhatIsNoPlainNumberAsItIs) {
  EXPECT_EQ(textOf(1e300), "1e+300");
  EXPECT_EQ(textOf(infinity), "inf");
  EXPECT_EQ(textOf(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(NSURL, GivesBackEveryByteOfAPath) {
  std::string path = "/";
  for (int byte = 1; byte <= 255; ++byte) path += static_cast<char>(byte);
  const auto url = NSURL::fileURLWithPath(path);
  EXPECT_EQ(url->path(), path);
  for (const char c : url->absoluteString()) {
    EXPECT_GT(static_cast<unsigned char>(c), 0x20);
    EXPECT_LT(static_cast<unsigned char>(c), 0x7F);
  }
}

TEST(NSURL, GivesBackEachByteOnItsOwn) {
  for (int byte = 1; byte <= 255; ++byte) {
    const std::string path = std::string("/a") + static_cast<char>(byte) + "b";
    const auto url = NSURL::fileURLWithPath(path);
    EXPECT_EQ(url->path(), path) << byte;
    const auto again = NSURL::URLWithString(url->absoluteString());
    ASSERT_TRUE(again) << byte;
    EXPECT_EQ(again->path(), path) << byte;
  }
}

TEST(NSURL, EncodesOnlyWhatIsNotUnreserved) {
  EXPECT_EQ(NSURL::fileURLWithPath("/Video/mare-1_2.b~c.MP4")->absoluteString(), "file:///Video/mare-1_2.b~c.MP4");
  EXPECT_EQ(NSURL::fileURLWithPath("/a b%2?#\xC3\xA0")->absoluteString(), "file:///a%20b%252%3F%23%C3%A0");
}

TEST(NSURL, ReadsSmallHexDigitsToo) {
  EXPECT_EQ(NSURL::URLWithString("file:///%c3%a0")->path(), "/\xC3\xA0");
}

TEST(NSURL, LeavesAPercentSignThatEncodesNothing) {
  EXPECT_EQ(NSURL::URLWithString("file:///100%")->path(), "/100%");
  EXPECT_EQ(NSURL::URLWithString("file:///%4")->path(), "/%4");
  EXPECT_EQ(NSURL::URLWithString("file:///%zz%41")->path(), "/%zzA");
}

TEST(NSURL, OnlyFileAddressesHaveAPath) {
  const auto page = NSURL::URLWithString("https://example.org/film");
  ASSERT_TRUE(page);
  EXPECT_FALSE(page->isFileURL());
  EXPECT_EQ(page->path(), "");
  EXPECT_TRUE(NSURL::URLWithString("file:///a")->isFileURL());
}

TEST(NSURL, IsReadOnlyFromATextWithAScheme) {
  for (const char* text : {"", "film", "/videos/a.mp4", ":", ":a", "1a:b", "-a:b", "a b:c", "a_b:c"}) {
    EXPECT_FALSE(NSURL::URLWithString(text)) << text;
  }
  for (const char* text : {"a:b", "app-settings:x", "a+b.c-1:d", "quillop-help:add-videos", "A:b"}) {
    const auto url = NSURL::URLWithString(text);
    ASSERT_TRUE(url) << text;
    EXPECT_EQ(url->absoluteString(), text);
  }
}

TEST(NSURL, IsNotReadFromATextWithBlanksOrControlCharacters) {
  for (const char c : {' ', '\t', '\n', '\x01', '\x7F', '<', '>', '"'}) {
    EXPECT_FALSE(NSURL::URLWithString(std::string("file:///a") + c + "b")) << static_cast<int>(c);
  }
}

TEST(NSDictionary, FindsAnObjectByItsKey) {
  const auto one = NSNumber::numberWithInteger(1);
  const NSDictionary dictionary({{"one", one}});
  EXPECT_EQ(dictionary.objectForKey("one"), one);
  EXPECT_EQ(dictionary.objectForKey("two"), nullptr);
  EXPECT_EQ(dictionary.entries().size(), 1U);
}

TEST(NSError, SaysWhy) {
  EXPECT_EQ(make<NSError>("no readable media")->localizedDescription(), "no readable media");
}

}  // namespace
