#include <gtest/gtest.h>

#include <clocale>

int main(int argc, char* argv[]) {
  // A decimal comma is what most easily breaks numbers in text; where the locale is installed the tests run in it.
  std::setlocale(LC_ALL, "it_IT.UTF-8");
  testing::InitGoogleTest(&argc, argv);
  testing::GTEST_FLAG(death_test_style) = "fast";
  return RUN_ALL_TESTS();
}
