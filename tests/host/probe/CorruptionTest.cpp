#include "hosts/probe/MediaProbe.h"
#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/Clips.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

constexpr int rounds = 200;
constexpr double patience = 5.0;

/// Changes up to 16 bytes anywhere, or cuts the end off. The headers are a small part of a file, so that every
/// second round keeps to the first and last 2000 bytes.
void damage(std::string& bytes, std::mt19937& random, bool headersOnly) {
  const auto below = [&](std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
  };
  for (std::size_t count = 1 + below(16); count > 0; --count) {
    const std::size_t span = headersOnly ? std::min<std::size_t>(2000, bytes.size()) : bytes.size();
    const std::size_t offset = below(span);
    const bool fromEnd = headersOnly && below(2) == 0;
    bytes[fromEnd ? bytes.size() - 1 - offset : offset] = static_cast<char>(below(256));
  }
  if (below(10) == 0) bytes.resize(1 + below(bytes.size()));
}

void expectSoundFacts(const probe::FileFacts& facts) {
  EXPECT_TRUE(std::isfinite(facts.media.duration));
  EXPECT_GE(facts.media.duration, 0.0);
  EXPECT_EQ(facts.media.readable, !facts.media.tracks.empty());
  EXPECT_NE(facts.media.soundOpens, !facts.reason.empty());
}

class DamagedFile : public testing::TestWithParam<const char*> {};

TEST_P(DamagedFile, IsLookedIntoWithoutHarm) {
  const std::string film = clips::clip("probe-small." + std::string(GetParam()),
                                       {"-f", "lavfi", "-i", "testsrc2=size=64x48:rate=10:duration=1", "-f", "lavfi",
                                        "-i", "sine=duration=1", "-g", "5", "-metadata", "title=Small"});
  const std::string whole = contentsOf(film);
  const TemporaryFolder folder;
  std::mt19937 random(20240611);
  for (int round = 0; round < rounds; ++round) {
    std::string bytes = whole;
    damage(bytes, random, round % 2 == 0);
    const std::string path = folder.write("damaged", bytes);
    expectSoundFacts(probe::look(path, patience));
    const auto still = probe::representativeStill(path, 32, patience);
    if (!still) continue;
    EXPECT_LE(std::max(still->width, still->height), 32);
    EXPECT_EQ(still->bgrx.size(),
              static_cast<std::size_t>(still->width) * static_cast<std::size_t>(still->height) * 4);
  }
}

INSTANTIATE_TEST_SUITE_P(Containers, DamagedFile, testing::Values("mp4", "mkv", "ts", "avi", "webm"),
                         [](const auto& ending) { return std::string("_") + ending.param; });

}  // namespace
