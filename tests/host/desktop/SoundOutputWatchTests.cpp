#include "hosts/desktop/SoundOutputWatch.h"
#include "tests/host/gstreamer/SoundServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace desktop {

namespace {

/// What a watch told, in order.
class Told {
 public:
  using Fact = std::pair<std::optional<SoundOutput>, Passing>;

  SoundOutputWatch::Tell tell() {
    return [this](std::optional<SoundOutput> output, Passing passing) {
      const std::lock_guard lock(mutex_);
      facts_.emplace_back(std::move(output), passing);
      changed_.notify_all();
    };
  }
  /// The next one; none when nobody would wait any longer.
  std::optional<Fact> next() {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, std::chrono::seconds(20), [this] { return !facts_.empty(); })) return std::nullopt;
    Fact fact = facts_.front();
    facts_.pop_front();
    return fact;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Fact> facts_;
};

class SoundOutputWatchTest : public testing::Test {
 protected:
  void expectNext(const std::string& device, Passing passing, int channels = 2) {
    const auto fact = told_.next();
    ASSERT_TRUE(fact);
    ASSERT_TRUE(fact->first);
    EXPECT_EQ(fact->first->device, device);
    EXPECT_EQ(fact->first->channels, channels);
    EXPECT_EQ(fact->second, passing);
  }
  void expectNothing(Passing passing) {
    const auto fact = told_.next();
    ASSERT_TRUE(fact);
    EXPECT_FALSE(fact->first);
    EXPECT_EQ(fact->second, passing);
  }

  gstreamer::SoundServer server_;
  Told told_;
};

}  // namespace

TEST_F(SoundOutputWatchTest, TellsTheDefaultDeviceAndItsSuccessor) {
  ASSERT_TRUE(server_.start({"first", "second"}));
  server_.command({"set-default-sink", "first"});
  const SoundOutputWatch watch(told_.tell(), server_.address());
  expectNext("first", Passing::Changed);
  server_.command({"set-default-sink", "second"});
  expectNext("second", Passing::Changed);
}

TEST_F(SoundOutputWatchTest, TellsThatTheDeviceWasTakenAway) {
  ASSERT_TRUE(server_.start({"first", "second"}));
  server_.command({"set-default-sink", "first"});
  const SoundOutputWatch watch(told_.tell(), server_.address());
  expectNext("first", Passing::Changed);
  server_.removeSink("first");
  expectNext("second", Passing::Vanished);
  server_.removeSink("second");
  expectNothing(Passing::Vanished);
  server_.addSink("third");
  expectNext("third", Passing::Changed);
}

TEST_F(SoundOutputWatchTest, TellsHowManyChannelsThereAre) {
  ASSERT_TRUE(server_.start({"first"}));
  const SoundOutputWatch watch(told_.tell(), server_.address());
  expectNext("first", Passing::Changed);
  server_.addSink("narrow", 1);
  server_.command({"set-default-sink", "narrow"});
  expectNext("narrow", Passing::Changed, 1);
}

TEST_F(SoundOutputWatchTest, TellsWhatADeviceLooksLike) {
  ASSERT_TRUE(server_.start({"first"}));
  const SoundOutputWatch watch(told_.tell(), server_.address());
  expectNext("first", Passing::Changed);
  server_.command(
      {"load-module", "module-null-sink", "sink_name=worn", "sink_properties=device.form_factor=headphone"});
  server_.command({"set-default-sink", "worn"});
  const auto fact = told_.next();
  ASSERT_TRUE(fact && fact->first);
  EXPECT_EQ(fact->first->device, "worn");
  EXPECT_EQ(fact->first->audience, Audience::Wearer);
}

TEST_F(SoundOutputWatchTest, FindsTheServerAgain) {
  ASSERT_TRUE(server_.start());
  const SoundOutputWatch watch(told_.tell(), server_.address());
  expectNext("first", Passing::Changed);
  server_.kill();
  expectNothing(Passing::Lost);
  ASSERT_TRUE(server_.start({"second"}));
  expectNext("second", Passing::Changed);
}

TEST_F(SoundOutputWatchTest, EndsWithoutAnyServer) {
  { const SoundOutputWatch watch(told_.tell(), server_.address()); }
  SUCCEED();
}

}  // namespace desktop
