#include "hosts/medialibrary/Png.h"

#include <png.h>
#include <zlib.h>

#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace medialibrary {

namespace {

constexpr std::string_view signature = "\x89PNG\r\n\x1A\n";
constexpr std::size_t chunkOverhead = 12;  // length, type, check sum
constexpr std::size_t headerChunk = 13 + chunkOverhead;

std::uint32_t numberAt(std::string_view bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8U | static_cast<unsigned char>(bytes[offset + i]);
  return value;
}

std::string bigEndian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes += static_cast<char>(value >> static_cast<unsigned>(shift) & 0xFFU);
  return bytes;
}

std::optional<std::string> inflated(std::string_view compressed) {
  constexpr std::size_t longest = 64 * 1024;
  std::string text(longest, '\0');
  uLongf length = text.size();
  const int result = uncompress(reinterpret_cast<Bytef*>(text.data()), &length,
                                reinterpret_cast<const Bytef*>(compressed.data()), compressed.size());
  if (result != Z_OK) return std::nullopt;
  text.resize(length);
  return text;
}

/// What precedes the next zero byte, which both are taken from `bytes`.
std::optional<std::string_view> takeField(std::string_view& bytes) {
  const auto end = bytes.find('\0');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view field = bytes.substr(0, end);
  bytes.remove_prefix(end + 1);
  return field;
}

std::optional<std::string> textOfChunk(std::string_view type, std::string_view rest) {
  if (type == "tEXt") return std::string(rest);
  if (type == "zTXt") return rest.starts_with('\0') ? inflated(rest.substr(1)) : std::nullopt;
  // iTXt: whether and how it is compressed, language, keyword in that language, text
  if (rest.size() < 2) return std::nullopt;
  const bool isCompressed = rest[0] != 0;
  rest.remove_prefix(2);
  if (!takeField(rest) || !takeField(rest)) return std::nullopt;
  return isCompressed ? inflated(rest) : std::string(rest);
}

std::string chunk(std::string_view type, std::string_view contents) {
  std::string body(type);
  body += contents;
  const auto sum = crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
  return bigEndian(static_cast<std::uint32_t>(contents.size())) + body + bigEndian(static_cast<std::uint32_t>(sum));
}

/// libpng's own handle for a whole picture, freed on every way out.
class Image {
 public:
  Image() { image_.version = PNG_IMAGE_VERSION; }
  ~Image() { png_image_free(&image_); }
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;
  png_image* operator->() { return &image_; }
  png_image* get() { return &image_; }

 private:
  png_image image_{};
};

std::string withoutFourthBytes(const std::vector<std::uint8_t>& bgrx) {
  std::string bytes(bgrx.size() / 4 * 3, '\0');
  for (std::size_t from = 0, to = 0; from + 3 < bgrx.size(); from += 4, to += 3) {
    std::memcpy(&bytes[to], &bgrx[from], 3);
  }
  return bytes;
}

}  // namespace

PngTexts textsOfPng(const std::string& png) {
  PngTexts texts;
  const std::string_view bytes = png;
  if (!bytes.starts_with(signature)) return texts;
  std::size_t offset = signature.size();
  while (bytes.size() - offset >= chunkOverhead) {
    const std::size_t length = numberAt(bytes, offset);
    if (length > bytes.size() - offset - chunkOverhead) break;
    const std::string_view type = bytes.substr(offset + 4, 4);
    std::string_view contents = bytes.substr(offset + 8, length);
    offset += length + chunkOverhead;
    if (type != "tEXt" && type != "zTXt" && type != "iTXt") continue;
    const auto keyword = takeField(contents);
    if (!keyword) continue;
    if (auto text = textOfChunk(type, contents)) texts[std::string(*keyword)] = std::move(*text);
  }
  return texts;
}

std::optional<probe::Still> pictureOfPng(const std::string& png, int largestSide) {
  Image image;
  if (png_image_begin_read_from_memory(image.get(), png.data(), png.size()) == 0) return std::nullopt;
  const auto largest = static_cast<png_uint_32>(largestSide);
  if (image->width > largest || image->height > largest) return std::nullopt;
  image->format = PNG_FORMAT_BGR;  // without transparency, so that it is laid over the background
  probe::Still still{static_cast<int>(image->width), static_cast<int>(image->height), {}};
  std::string rows(PNG_IMAGE_SIZE(*image.get()), '\0');
  const png_color background{0, 0, 0};
  if (png_image_finish_read(image.get(), &background, rows.data(), 0, nullptr) == 0) return std::nullopt;
  still.bgrx.reserve(rows.size() / 3 * 4);
  for (std::size_t i = 0; i + 2 < rows.size(); i += 3) {
    for (std::size_t j = 0; j < 3; ++j) still.bgrx.push_back(static_cast<std::uint8_t>(rows[i + j]));
    still.bgrx.push_back(255);
  }
  return still;
}

std::string pngOf(const probe::Still& still, const PngTexts& texts) {
  Image image;
  image->width = static_cast<png_uint_32>(still.width);
  image->height = static_cast<png_uint_32>(still.height);
  image->format = PNG_FORMAT_BGR;
  image->flags = PNG_IMAGE_FLAG_FAST;  // four times as fast, and the file is hardly longer
  png_alloc_size_t length = PNG_IMAGE_PNG_SIZE_MAX(*image.get());
  std::string png(length, '\0');
  const std::string rows = withoutFourthBytes(still.bgrx);
  if (png_image_write_to_memory(image.get(), png.data(), &length, 0, rows.data(), 0, nullptr) == 0) return {};
  png.resize(length);
  std::string chunks;
  for (const auto& [keyword, value] : texts) chunks += chunk("tEXt", keyword + '\0' + value);
  return png.insert(signature.size() + headerChunk, chunks);
}

}  // namespace medialibrary
