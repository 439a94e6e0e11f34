#pragma once

#include "hosts/medialibrary/IndexerProcess.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

/// What has come in of `wanted` answers, waited for as an event loop would: for the descriptor or the deadline.
inline std::vector<medialibrary::IndexerAnswer> waitForAnswers(
    medialibrary::IndexerProcess& indexer, std::size_t wanted,
    std::chrono::seconds most = std::chrono::seconds(120)) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + most;
  std::vector<medialibrary::IndexerAnswer> all;
  while (all.size() < wanted && Clock::now() < end) {
    const auto until = std::min(end, indexer.deadline().value_or(end));
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
    pollfd descriptor{indexer.descriptor(), POLLIN, 0};
    ::poll(&descriptor, 1, static_cast<int>(std::max<long>(wait, 0)));
    for (auto& answer : indexer.answers()) all.push_back(std::move(answer));
  }
  EXPECT_EQ(all.size(), wanted);
  return all;
}

/// The findings of the files at `paths`, in that order.
inline std::vector<medialibrary::Finding> findingsOf(medialibrary::IndexerProcess& indexer,
                                                     const std::vector<std::string>& paths, int thumbnailSide = 0) {
  std::int64_t id = 100;
  for (const auto& path : paths) indexer.add({id++, path, thumbnailSide});
  std::vector<medialibrary::Finding> findings;
  id = 100;
  for (auto& answer : waitForAnswers(indexer, paths.size())) {
    EXPECT_EQ(answer.id, id++);
    findings.push_back(std::move(answer.finding));
  }
  EXPECT_EQ(indexer.unanswered(), 0U);
  findings.resize(paths.size());
  return findings;
}
