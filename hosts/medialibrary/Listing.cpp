#include "hosts/medialibrary/Listing.h"

#include "hosts/medialibrary/Artwork.h"
#include "platform/foundation/Values.h"

#include <algorithm>

namespace medialibrary {

namespace {

/// Blocks that grow would leave holes behind in memory that are as large as they are.
constexpr std::size_t blockSize = std::size_t{256} << 10U;

}  // namespace

void Listing::add(std::string_view path, std::string_view title, double duration) {
  const std::size_t nameBegin = path.rfind('/') + 1;
  const std::string_view name = path.substr(nameBegin);
  Row row;
  row.duration = duration;
  row.folder = folderNumber(path.substr(0, nameBegin));
  row.nameLength = static_cast<std::uint32_t>(name.size());
  row.titleLength = static_cast<std::uint32_t>(title.size());
  row.isTitleInName = name.starts_with(title);
  row.name = keep(name, row.isTitleInName ? std::string_view() : title);
  rows_.push_back(row);
}

void Listing::finish() {
  folders_.shrink_to_fit();
  folderNumbers_ = {};
}

host::LibraryItem Listing::item(std::size_t index) const {
  const Row& row = rows_.at(index);
  std::string path(folders_[row.folder]);
  path.append(row.name, row.nameLength);
  const char* title = row.isTitleInName ? row.name : row.name + row.nameLength;
  return {NSURL::fileURLWithPath(path)->absoluteString(), std::string(title, row.titleLength), row.duration,
          artworkSource(path)};
}

std::uint32_t Listing::folderNumber(std::string_view folder) {
  // The films of a series stand together in the order of titles as well as in their folder.
  if (!rows_.empty() && folders_[rows_.back().folder] == folder) return rows_.back().folder;
  const auto known = folderNumbers_.find(folder);
  if (known != folderNumbers_.end()) return known->second;
  const auto number = static_cast<std::uint32_t>(folders_.size());
  folders_.emplace_back(keep(folder), folder.size());
  folderNumbers_.emplace(folders_.back(), number);
  return number;
}

const char* Listing::keep(std::string_view first, std::string_view second) {
  const std::size_t length = first.size() + second.size();
  if (blocks_.empty() || blocks_.back().capacity() - blocks_.back().size() < length) {
    blocks_.emplace_back().reserve(std::max(length, blockSize));
  }
  std::vector<char>& block = blocks_.back();
  const std::size_t offset = block.size();
  block.insert(block.end(), first.begin(), first.end());
  block.insert(block.end(), second.begin(), second.end());
  return block.data() + offset;
}

}  // namespace medialibrary
