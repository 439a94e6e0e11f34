#pragma once

#include "hosts/medialibrary/Library.h"
#include "tests/support/SimulatedHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace desktop {

/// What a fake library tells, and what it was asked to do.
struct LibraryFacts {
  medialibrary::FolderLibrary::Contents contents{1, 0, 0, false};
  medialibrary::FolderLibrary::Progress progress;
  std::vector<medialibrary::FolderLibrary::UnreadableFile> unreadable;
  std::optional<std::vector<std::string>> folders;  ///< none while no library is open
  std::function<void()> refreshed;                  ///< runs within each refresh
  std::function<void()> changed;                    ///< the library's listener; none while no library is open
  int refreshes = 0;
  int rescans = 0;
  bool isGentle = false;
};

/// A library in which every video is the same one, and of which the test tells what it holds.
class FakeLibrary final : public medialibrary::FolderLibrary {
 public:
  FakeLibrary(std::vector<std::string> folders, LibraryFacts& facts) : facts_(facts) {
    facts_.folders = std::move(folders);
  }
  ~FakeLibrary() override {
    facts_.folders = std::nullopt;
    facts_.changed = nullptr;
  }

  host::LibraryAccess access() const override { return host::LibraryAccess::Authorised; }
  void requestAccess(std::function<void(host::LibraryAccess)>) override { ADD_FAILURE() << "asks the wrong one"; }
  void prepare(std::function<void(bool)>) override { ADD_FAILURE() << "prepares the wrong one"; }
  std::shared_ptr<const host::LibraryItems> items(std::uint64_t) override {
    return std::make_shared<const SameItems>(facts_.contents.items);
  }
  void setFolders(std::vector<std::string> folders) override { facts_.folders = std::move(folders); }
  Contents contents(std::uint64_t mediaType) override {
    Contents contents = facts_.contents;
    if (mediaType != simulated::homeVideo) contents.items = 0;
    return contents;
  }
  Progress progress() override { return facts_.progress; }
  std::string title(const std::string&) override { return "Film"; }
  std::vector<UnreadableFile> unreadableFiles(std::size_t most) override {
    const auto count = std::min(most, facts_.unreadable.size());
    return {facts_.unreadable.begin(), facts_.unreadable.begin() + static_cast<std::ptrdiff_t>(count)};
  }
  void rescan() override { ++facts_.rescans; }
  void setGentle(bool isGentle) override { facts_.isGentle = isGentle; }
  void refresh() override {
    ++facts_.refreshes;
    if (facts_.refreshed) facts_.refreshed();
  }
  void setChanged(std::function<void()> changed) override { facts_.changed = std::move(changed); }

 private:
  class SameItems final : public host::LibraryItems {
   public:
    explicit SameItems(std::size_t count) : count_(count) {}
    std::size_t count() const override { return count_; }
    host::LibraryItem item(std::size_t) const override { return {"file:///film.mp4", "Film", 60, "/film.mp4"}; }

   private:
    std::size_t count_;
  };

  LibraryFacts& facts_;
};

}  // namespace desktop
