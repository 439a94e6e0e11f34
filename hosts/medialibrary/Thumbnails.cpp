#include "hosts/medialibrary/Thumbnails.h"

#include "hosts/medialibrary/FileDescriptor.h"
#include "hosts/medialibrary/Folders.h"
#include "hosts/medialibrary/Paths.h"
#include "hosts/medialibrary/PercentEncoding.h"
#include "hosts/medialibrary/Png.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>

namespace medialibrary {

namespace {

constexpr std::array<ThumbnailSize, 4> sizes = {ThumbnailSize::Normal, ThumbnailSize::Large,
                                                ThumbnailSize::ExtraLarge, ThumbnailSize::ExtraExtraLarge};

const char* folderNameOf(ThumbnailSize size) {
  switch (size) {
    case ThumbnailSize::Normal:
      return "normal";
    case ThumbnailSize::Large:
      return "large";
    case ThumbnailSize::ExtraLarge:
      return "x-large";
    case ThumbnailSize::ExtraExtraLarge:
      break;
  }
  return "xx-large";
}

std::string md5(const std::string& text) {
  const std::unique_ptr<gchar, decltype(&g_free)> sum(
      g_compute_checksum_for_string(G_CHECKSUM_MD5, text.data(), static_cast<gssize>(text.size())), g_free);
  return sum.get();
}

/// Thumbnails are small: what is longer than this is none.
std::string contentsOf(const std::string& path) {
  constexpr std::size_t longest = 16U << 20U;
  struct stat facts {};
  if (::stat(path.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) return {};
  if (static_cast<std::size_t>(facts.st_size) > longest) return {};
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Puts a file with these contents in the place of `path` in one step, readable by the user alone.
void replaceFile(const std::string& path, const std::string& contents) {
  std::string part = path + ".XXXXXX";
  FileDescriptor file(::mkostemp(part.data(), O_CLOEXEC));  // of mode 0600
  if (!file) return;
  const bool isWritten = writeAll(file.number(), contents);
  const bool isClosed = ::close(file.release()) == 0;
  if (!isWritten || !isClosed || std::rename(part.c_str(), path.c_str()) != 0) ::unlink(part.c_str());
}

}  // namespace

int sideOf(ThumbnailSize size) {
  return 128 << static_cast<int>(size);
}

std::string makeThumbnailFolder() {
  std::string folder = cacheFolder() + "/thumbnails";
  makeFolder(folder);
  return folder;
}

std::optional<ThumbnailSize> ThumbnailCache::sizeFor(int largestSide) {
  const auto* found =
      std::find_if(sizes.begin(), sizes.end(), [&](auto size) { return sideOf(size) >= largestSide; });
  if (found == sizes.end()) return std::nullopt;
  return *found;
}

std::optional<ThumbnailCache> ThumbnailCache::forFile(const std::string& path) {
  struct stat facts {};
  if (!path.starts_with('/') || ::stat(path.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
  ThumbnailCache cache;
  cache.root_ = cacheFolder() + "/thumbnails";
  if (path.starts_with(cache.root_ + "/")) return std::nullopt;
  cache.uri_ = thumbnailUri(path);
  cache.modified_ = facts.st_mtim.tv_sec;
  cache.bytes_ = facts.st_size;
  return cache;
}

std::string ThumbnailCache::pathOf(ThumbnailSize size) const {
  return root_ + "/" + folderNameOf(size) + "/" + md5(uri_) + ".png";
}

bool ThumbnailCache::isValid(const std::string& png) const {
  const PngTexts texts = textsOfPng(png);
  const auto is = [&](const char* key, const std::string& value) {
    const auto text = texts.find(key);
    return text != texts.end() && text->second == value;
  };
  if (!is("Thumb::URI", uri_) || !is("Thumb::MTime", std::to_string(modified_))) return false;
  return texts.count("Thumb::Size") == 0 || is("Thumb::Size", std::to_string(bytes_));
}

std::optional<probe::Still> ThumbnailCache::find(int largestSide) const {
  for (const ThumbnailSize size : sizes) {
    if (sideOf(size) < largestSide) continue;
    const std::string png = contentsOf(pathOf(size));
    if (png.empty() || !isValid(png)) continue;
    if (auto still = pictureOfPng(png, sideOf(size))) return still;
  }
  return std::nullopt;
}

bool ThumbnailCache::holds(ThumbnailSize size) const {
  const std::string png = contentsOf(pathOf(size));
  return !png.empty() && isValid(png);
}

std::optional<std::string> ThumbnailCache::file(int wantedSide) const {
  std::optional<std::string> largest;
  for (const ThumbnailSize size : sizes) {
    if (!holds(size)) continue;
    largest = pathOf(size);
    if (sideOf(size) >= wantedSide) break;
  }
  return largest;
}

void ThumbnailCache::store(ThumbnailSize size, const probe::Still& still) const {
  const std::string png = pngOf(still, {{"Thumb::URI", uri_},
                                        {"Thumb::MTime", std::to_string(modified_)},
                                        {"Thumb::Size", std::to_string(bytes_)},
                                        {"Software", "Quillop"}});
  if (png.empty()) return;
  const std::string path = pathOf(size);
  makeFolder(folderOf(path));
  replaceFile(path, png);
}

std::string thumbnailUri(const std::string& path) {
  return "file://" + percentEncoded(path, "-_.!~*'()$&+,/:=@");
}

}  // namespace medialibrary
