#pragma once

#include "platform/host/MediaLibrary.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace medialibrary {

/// The answer to a query, in little memory: folders are kept once, titles that the name of the file begins with not
/// at all, and addresses are only made for the item that is asked for. Any thread once nothing is added any more.
class Listing final : public host::LibraryItems {
 public:
  Listing() = default;
  Listing(const Listing&) = delete;
  Listing& operator=(const Listing&) = delete;

  /// The next item. `path` is absolute.
  void add(std::string_view path, std::string_view title, double duration);
  /// Gives the memory back that only adding needs. Nothing is added after it.
  void finish();

  std::size_t count() const override { return rows_.size(); }
  /// Throws `std::out_of_range` where there is none.
  host::LibraryItem item(std::size_t index) const override;

 private:
  struct Row {
    double duration = 0.0;
    const char* name = nullptr;
    std::uint32_t nameLength = 0;
    std::uint32_t titleLength = 0;
    std::uint32_t folder = 0;
    bool isTitleInName = false;  ///< otherwise the title stands behind the name
  };

  std::uint32_t folderNumber(std::string_view folder);
  /// Keeps `first` and `second` behind it; where they begin, which does not change any more.
  const char* keep(std::string_view first, std::string_view second = {});

  std::deque<std::vector<char>> blocks_;  // each filled only as far as it was reserved
  std::vector<std::string_view> folders_;
  std::deque<Row> rows_;
  std::unordered_map<std::string_view, std::uint32_t> folderNumbers_;  // only while items are added
};

}  // namespace medialibrary
