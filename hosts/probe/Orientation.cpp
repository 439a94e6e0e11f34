#include "hosts/probe/Orientation.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace probe {

namespace {

using Matrix = std::array<std::int32_t, 9>;

Orientation orientationOf(const Matrix& matrix) {
  // (across, down) becomes (a * across + c * down, b * across + d * down).
  const std::int64_t a = matrix[0];
  const std::int64_t b = matrix[1];
  const std::int64_t c = matrix[3];
  const std::int64_t d = matrix[4];
  if (std::abs(b) + std::abs(c) > std::abs(a) + std::abs(d)) return {true, c < 0, b < 0};
  return {false, a < 0, d < 0};
}

Orientation orientationOf(const void* bytes, std::size_t count) {
  Matrix matrix{};
  if (bytes == nullptr || count < sizeof matrix) return {};
  std::memcpy(matrix.data(), bytes, sizeof matrix);
  return orientationOf(matrix);
}

std::size_t pixelAt(const Still& still, int column, int row) {
  return (static_cast<std::size_t>(row) * static_cast<std::size_t>(still.width) + static_cast<std::size_t>(column)) *
         4;
}

}  // namespace

Orientation orientationOf(const AVStream& track, const AVFrame& frame) {
  const AVFrameSideData* own = av_frame_get_side_data(&frame, AV_FRAME_DATA_DISPLAYMATRIX);
  return own != nullptr ? orientationOf(own->data, own->size) : orientationOf(track);
}

Orientation orientationOf(const AVStream& track) {
  std::size_t count = 0;
  const void* bytes = av_stream_get_side_data(&track, AV_PKT_DATA_DISPLAYMATRIX, &count);
  return orientationOf(bytes, count);
}

int degreesClockwise(Orientation orientation) {
  if (orientation.swapsSides) return orientation.mirrorsHorizontally ? 90 : 270;
  return orientation.mirrorsVertically ? 180 : 0;
}

Still upright(const Still& stored, Orientation orientation) {
  if (!orientation.swapsSides && !orientation.mirrorsHorizontally && !orientation.mirrorsVertically) return stored;
  Still turned = stored;
  if (orientation.swapsSides) std::swap(turned.width, turned.height);
  for (int row = 0; row < turned.height; ++row) {
    for (int column = 0; column < turned.width; ++column) {
      const int x = orientation.mirrorsHorizontally ? turned.width - 1 - column : column;
      const int y = orientation.mirrorsVertically ? turned.height - 1 - row : row;
      const std::size_t from = orientation.swapsSides ? pixelAt(stored, y, x) : pixelAt(stored, x, y);
      std::memcpy(&turned.bgrx[pixelAt(turned, column, row)], &stored.bgrx[from], 4);
    }
  }
  return turned;
}

}  // namespace probe
