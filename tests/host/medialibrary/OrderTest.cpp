#include "hosts/medialibrary/Order.h"

#include "tests/host/medialibrary/Environment.h"

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

}  // namespace
