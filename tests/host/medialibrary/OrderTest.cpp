#include "hosts/medialibrary/Order.h"

#include "tests/support/EnvironmentVariable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using Titles = std::vector<std::string>;

Titles sorted(Titles titles, const std::string& locale) {
  const medialibrary::Order order(locale);
  std::sort(titles.begin(), titles.end(),
            [&](const auto& left, const auto& right) { return order.compare(left, right) < 0; });
  return titles;
}

class OrderIn : public testing::TestWithParam<const char*> {};

TEST_P(OrderIn, CountsNumbersByValue) {
  EXPECT_EQ(sorted({"Film 10", "Film 2", "Film 1", "Film 002b"}, GetParam()),
            Titles({"Film 1", "Film 2", "Film 002b", "Film 10"}));
}

TEST_P(OrderIn, PutsAccentsBesideTheirLetter) {
  EXPECT_EQ(sorted({"zebra", "àncora", "banana", "ancora", "Ancora", "àncora due", "Èra", "dado"}, GetParam()),
            Titles({"ancora", "Ancora", "àncora", "àncora due", "banana", "dado", "Èra", "zebra"}));
}

INSTANTIATE_TEST_SUITE_P(Locales, OrderIn, testing::Values("it_IT", "it_IT.UTF-8", "C", "C.UTF-8", "POSIX", "xx_XX"),
                         [](const auto& locale) {
                           std::string name = locale.param;
                           std::replace_if(
                               name.begin(), name.end(), [](char c) { return c == '.' || c == '-'; }, '_');
                           return name;
                         });

TEST(Order, IsThatOfTheLanguage) {
  EXPECT_EQ(sorted({"Öra", "Zon", "Ost"}, "sv_SE"), Titles({"Ost", "Zon", "Öra"}));
  EXPECT_EQ(sorted({"Öra", "Zon", "Ost"}, "it_IT"), Titles({"Öra", "Ost", "Zon"}));
}

TEST(Order, IsThatOfTheEnvironmentWhereNoneIsGiven) {
  const EnvironmentVariable all("LC_ALL", std::nullopt);
  const EnvironmentVariable language("LANG", "it_IT.UTF-8");
  const EnvironmentVariable collation("LC_COLLATE", "sv_SE.UTF-8");
  EXPECT_EQ(sorted({"Öra", "Zon", "Ost"}, ""), Titles({"Ost", "Zon", "Öra"}));
  const EnvironmentVariable stronger("LC_ALL", "it_IT.UTF-8");
  EXPECT_EQ(sorted({"Öra", "Zon", "Ost"}, ""), Titles({"Öra", "Ost", "Zon"}));
}

TEST(Order, FindsOnlyTheSameTextEqual) {
  const medialibrary::Order order("it_IT");
  EXPECT_EQ(order.compare("Film", "Film"), 0);
  EXPECT_NE(order.compare("Film", "film"), 0);
  EXPECT_NE(order.compare("e", "è"), 0);
}

/// Titles that differ in all that an order may look at.
Titles manyTitles() {
  Titles titles = {"",
                   " ",
                   "a",
                   "A",
                   "à",
                   "À",
                   "á",
                   "a\u0300",
                   "ab",
                   "a b",
                   "a-b",
                   "a_b",
                   "a.b",
                   "Film",
                   "film",
                   "FILM",
                   "Film 1",
                   "Film 01",
                   "Film 001",
                   "Film 2",
                   "Film 10",
                   "Film 9a",
                   "Film 9 a",
                   "Film 1.5",
                   "Film 1,5",
                   "1",
                   "2",
                   "10",
                   "00",
                   "0",
                   "20000000000000000000",
                   "3000000000000000000000",
                   "è",
                   "E",
                   "é",
                   "Ère",
                   "Öra",
                   "Zon",
                   "Ost",
                   "Ångström",
                   "æ",
                   "ae",
                   "ß",
                   "ss",
                   "ẞ",
                   "ø",
                   "o",
                   "ñ",
                   "n",
                   "ł",
                   "l",
                   "İ",
                   "ı",
                   "i",
                   "č",
                   "c",
                   "ch",
                   "ci",
                   "日本",
                   "にほん",
                   "ニホン",
                   "한국",
                   "中文",
                   "Привет",
                   "привет",
                   "ёлка",
                   "елка",
                   "שלום",
                   "مرحبا",
                   "ไทย",
                   "เก",
                   "🎬",
                   "🎬 2",
                   "\uFFFD",
                   "\uFFFD\uFFFD",
                   "…",
                   "“x”",
                   "'x'",
                   "(x)",
                   "[x]",
                   "x",
                   "½",
                   "²",
                   "2²",
                   "ﬁlm",
                   "ｆｉｌｍ",
                   "\U0010FFFF",
                   "\u200B",
                   "a\u200Bb",
                   "…a",
                   "#1",
                   "@",
                   "~",
                   "€"};
  titles.insert(titles.end(), {"\xFF", "a\xC3", "a\xC3(", "\xF0\x9F\x8E"});
  titles.push_back(std::string(300, '9'));
  titles.push_back(std::string(300, '9') + "0");
  titles.push_back(std::string(3'000, 'x') + "a");
  titles.push_back(std::string(3'000, 'x') + "b");
  return titles;
}

int sign(int number) {
  return (number > 0) - (number < 0);
}

class KeysIn : public testing::TestWithParam<const char*> {};

TEST_P(KeysIn, StandInTheSameOrderAsTheirTitles) {
  const medialibrary::Order order(GetParam());
  const Titles titles = manyTitles();
  for (const std::string& left : titles) {
    for (const std::string& right : titles) {
      EXPECT_EQ(sign(order.key(left).compare(order.key(right))), sign(order.compare(left, right)))
          << '"' << left << "\" and \"" << right << '"';
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Locales, KeysIn,
                         testing::Values("it_IT", "C", "sv_SE", "de_DE", "da_DK", "fr_CA", "ja_JP", "zh_CN", "cs_CZ",
                                         "th_TH"),
                         [](const auto& locale) { return std::string(locale.param); });

TEST(Order, HasTheNameOfItsRules) {
  const auto name = [](const std::string& locale) { return medialibrary::Order(locale).name(); };
  EXPECT_EQ(name("sv_SE"), name("sv_SE.UTF-8"));
  EXPECT_EQ(name("it_IT"), name("it_CH")) << "one language, one set of rules";
  EXPECT_NE(name("it_IT"), name("sv_SE"));
  EXPECT_NE(name("ja_JP"), name("sv_SE"));
  EXPECT_FALSE(name("C").empty());
}

}  // namespace
