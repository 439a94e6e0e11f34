#include "hosts/qtquick/ScreenHost.h"

#include <gtest/gtest.h>

#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

TEST(Covers, TheOneThatCameLastLiesUppermost) {
  qtquick::ScreenHost host(nullptr, {});
  const auto cover = [&host] {
    auto item = std::make_unique<QQuickItem>();
    host.cover(*item, [] {});
    return item;
  };
  auto first = cover();
  auto second = cover();
  const auto third = cover();
  EXPECT_GT(third->z(), second->z());
  first.reset();
  second.reset();
  const auto fourth = cover();
  EXPECT_GT(fourth->z(), third->z());
  EXPECT_TRUE(fourth->isEnabled());
  EXPECT_FALSE(third->isEnabled());
}
