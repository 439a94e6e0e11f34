#include "hosts/medialibrary/Artwork.h"

#include "hosts/medialibrary/PercentEncoding.h"
#include "hosts/medialibrary/Thumbnails.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>

namespace medialibrary {

namespace {

constexpr std::string_view prefix = "image://artwork/";

/// The average of the pixels of `still` that the pixel (column, row) of a picture of the size of `small` covers.
void average(const probe::Still& still, probe::Still& small, int column, int row) {
  const auto edge = [](int index, int from, int to) {
    return static_cast<int>(static_cast<std::int64_t>(index) * from / to);
  };
  const int left = edge(column, still.width, small.width);
  const int top = edge(row, still.height, small.height);
  const int right = std::max(left + 1, edge(column + 1, still.width, small.width));
  const int bottom = std::max(top + 1, edge(row + 1, still.height, small.height));
  const auto at = [](const probe::Still& picture, int x, int y) {
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) + static_cast<std::size_t>(x)) * 4;
  };
  std::array<std::uint64_t, 4> sums{};
  for (int y = top; y < bottom; ++y) {
    for (int x = left; x < right; ++x) {
      for (std::size_t i = 0; i < 4; ++i) sums[i] += still.bgrx[at(still, x, y) + i];
    }
  }
  const auto count = static_cast<std::uint64_t>(right - left) * static_cast<std::uint64_t>(bottom - top);
  for (std::size_t i = 0; i < 4; ++i) {
    small.bgrx[at(small, column, row) + i] = static_cast<std::uint8_t>((sums[i] + count / 2) / count);
  }
}

probe::Still fitted(probe::Still still, int largestSide) {
  const int largest = std::max(still.width, still.height);
  if (largest <= largestSide) return still;
  const auto shrunk = [&](int side) {
    return std::max(1, static_cast<int>(std::lround(static_cast<double>(side) * largestSide / largest)));
  };
  probe::Still small{shrunk(still.width), shrunk(still.height), {}};
  small.bgrx.resize(static_cast<std::size_t>(small.width) * static_cast<std::size_t>(small.height) * 4);
  for (int row = 0; row < small.height; ++row) {
    for (int column = 0; column < small.width; ++column) average(still, small, column, row);
  }
  return small;
}

}  // namespace

std::string artworkSource(std::string_view path) {
  constexpr std::string_view unreservedMarks = "-._~";  // RFC 3986, 2.3
  return std::string(prefix) + percentEncoded(path, unreservedMarks);
}

std::optional<probe::Still> keptArtwork(const std::string& path, int largestSide) try {
  const auto cache = ThumbnailCache::forFile(path);
  if (!cache || largestSide < 1) return std::nullopt;
  auto still = cache->find(largestSide);
  if (!still) return std::nullopt;
  return fitted(std::move(*still), largestSide);
} catch (const std::exception&) {
  return std::nullopt;  // out of memory
}

std::optional<std::string> keptArtworkFile(const std::string& path, int wantedSide) try {
  const auto cache = ThumbnailCache::forFile(path);
  return cache ? cache->file(wantedSide) : std::nullopt;
} catch (const std::exception&) {
  return std::nullopt;  // out of memory
}

}  // namespace medialibrary
