#pragma once

#include "hosts/medialibrary/Library.h"
#include "platform/foundation/Values.h"
#include "tests/host/medialibrary/Programs.h"
#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/Clips.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/PostedWork.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using Texts = std::vector<std::string>;

constexpr std::uint64_t homeVideo = 8192;

/// A library of one folder of its own, with the real index and the real indexer.
class LibraryFixture : public testing::Test {
 protected:
  static std::string film() { return clips::film("medialibrary-small.mp4", 64, 48, 1.0, 440, 1); }

  static std::string filmWith(const std::string& name, const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {"-i", film(), "-c", "copy"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return clips::clip("medialibrary-" + name, arguments);
  }

  static std::string filmTitled(const std::string& title) {
    return filmWith("titled-" + title + ".mp4", {"-metadata", "title=" + title});
  }

  medialibrary::LibraryOptions options(std::vector<std::string> folders, const std::string& locale = "it_IT.UTF-8") {
    medialibrary::LibraryOptions options;
    options.folders = std::move(folders);
    options.locale = locale;
    options.index = system_ / "data/library.db";
    options.indexer = programs::indexer();
    return options;
  }

  void open(std::vector<std::string> folders, const std::string& locale = "it_IT.UTF-8") {
    library_.reset();
    library_ = medialibrary::makeLibrary(mainLoop_, options(std::move(folders), locale));
  }
  void open() { open({folder_.path().string()}); }

  /// Lets time pass until `isSo`; false when it never comes to that.
  static bool comesToPass(const std::function<bool()>& isSo) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!isSo()) {
      if (std::chrono::steady_clock::now() > end) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
  }

  /// Until every folder has been searched and every file has been looked into.
  void settle() {
    ASSERT_TRUE(comesToPass([this] {
      const auto contents = library_->contents(homeVideo);
      return !contents.isSearching && contents.unknownFiles == 0;
    }));
  }

  /// What is listed once all is known.
  std::shared_ptr<const host::LibraryItems> items(std::uint64_t mediaType = homeVideo) {
    if (!library_) open();
    settle();
    return library_->items(mediaType);
  }

  /// The same after everything has been searched again.
  std::shared_ptr<const host::LibraryItems> itemsNow() {
    library_->rescan();
    return items();
  }

  static Texts titlesOf(const host::LibraryItems& items) {
    Texts titles;
    for (std::size_t i = 0; i < items.count(); ++i) titles.push_back(items.item(i).title.value_or("(none)"));
    return titles;
  }
  Texts titles(std::uint64_t mediaType = homeVideo) { return titlesOf(*items(mediaType)); }
  Texts titlesNow() { return titlesOf(*itemsNow()); }

  Texts paths() {
    const auto found = items();
    Texts paths;
    for (std::size_t i = 0; i < found->count(); ++i) {
      paths.push_back(NSURL::URLWithString(found->item(i).url)->path());
    }
    return paths;
  }

  TemporaryFolder folder_;
  TemporaryFolder system_;
  EnvironmentVariable cache_{"XDG_CACHE_HOME", system_ / "cache"};
  PostedWork mainLoop_;
  std::unique_ptr<medialibrary::FolderLibrary> library_;
};
