#include "hosts/medialibrary/Library.h"

#include "hosts/medialibrary/Folders.h"
#include "hosts/medialibrary/Index.h"
#include "hosts/medialibrary/Keeper.h"
#include "hosts/medialibrary/Titles.h"
#include "hosts/probe/OwnFile.h"

#include <cstdio>
#include <utility>

namespace medialibrary {

namespace {

/// Somebody looks at a list that does not appear.
constexpr double longestWait = 5.0;

class IndexedLibrary final : public FolderLibrary {
 public:
  IndexedLibrary(host::MainLoop& mainLoop, LibraryOptions options)
      : mainLoop_(mainLoop),
        keeper_({std::move(options.folders), std::move(options.locale), std::move(options.index),
                 std::move(options.spare), std::move(options.indexer)},
                [&loop = mainLoop_, told = told_] {
                  loop.post([told] {
                    if (*told) (*told)();
                  });
                }) {}

  ~IndexedLibrary() override { *told_ = nullptr; }
  IndexedLibrary(const IndexedLibrary&) = delete;
  IndexedLibrary& operator=(const IndexedLibrary&) = delete;

  host::LibraryAccess access() const override { return host::LibraryAccess::Authorised; }

  void requestAccess(std::function<void(host::LibraryAccess)> answer) override {
    mainLoop_.post([answer = std::move(answer)] { answer(host::LibraryAccess::Authorised); });
  }

  /// Whoever stands before this library lets the person wait.
  void prepare(std::function<void(bool isReady)> ready) override { ready(true); }

  std::shared_ptr<const host::LibraryItems> items(std::uint64_t mediaType) override {
    return answer(std::shared_ptr<const host::LibraryItems>(std::make_shared<const host::NoItems>()),
                  [&](const Index& index) { return index.items(mediaType); });
  }

  void setFolders(std::vector<std::string> folders) override { keeper_.setFolders(std::move(folders)); }

  Contents contents(std::uint64_t mediaType) override {
    const Keeper::State state = keeper_.state();
    Contents contents;
    contents.isSearching = state.isSearching;
    contents.unknownFiles = state.unknown;
    if (!state.isOpen) return contents;
    const Index::Counts counts = answer(Index::Counts{}, [&](const Index& index) { return index.counts(mediaType); });
    contents.items = counts.items;
    contents.unreadableFiles = counts.unreadable;
    return contents;
  }

  Progress progress() override {
    const Keeper::State state = keeper_.state();
    if (state.unknown == 0) return {};
    return {state.done, state.done + state.unknown, state.secondsLeft};
  }

  std::string title(const std::string& path) override {
    const auto known = answer(std::optional<std::string>(), [&](const Index& index) { return index.titleAt(path); });
    return known.value_or(titleOf(path, std::nullopt));
  }

  std::vector<UnreadableFile> unreadableFiles(std::size_t most) override {
    const auto files =
        answer(std::vector<Index::UnreadableFile>{}, [&](const Index& index) { return index.unreadableFiles(most); });
    std::vector<UnreadableFile> unreadable;
    for (const auto& file : files) unreadable.push_back({file.path, file.reason});
    return unreadable;
  }

  void rescan() override { keeper_.rescan(); }
  void refresh() override { keeper_.refresh(); }
  void setGentle(bool isGentle) override { keeper_.setPace(isGentle ? Pace::Gentle : Pace::Full); }
  void setChanged(std::function<void()> changed) override { *told_ = std::move(changed); }

 private:
  /// What the index answers; `otherwise` where it cannot, and then it is rebuilt if that is because of damage.
  template <class Value, class Question>
  Value answer(Value otherwise, const Question& question) {
    try {
      if (!openReader()) return otherwise;
      return question(*reader_);
    } catch (const IndexError& error) {
      std::fprintf(stderr, "the index of the media library: %s\n", error.what());
      reader_ = nullptr;
      if (error.isDamaged()) keeper_.rebuild();
      return otherwise;
    }
  }

  bool openReader() {
    const auto opening = keeper_.openIndex(longestWait);
    if (!opening) return false;
    if (!reader_ || *opening != reads_) reader_ = Index::openForReading(opening->file);
    reads_ = *opening;
    return reader_ != nullptr;
  }

  host::MainLoop& mainLoop_;
  std::shared_ptr<std::function<void()>> told_ = std::make_shared<std::function<void()>>();
  Keeper keeper_;
  std::unique_ptr<Index> reader_;  // closed before the keeper's connection, which tidies up after all others
  Keeper::Opening reads_;
};

}  // namespace

std::unique_ptr<FolderLibrary> makeLibrary(host::MainLoop& mainLoop, LibraryOptions options) {
  if (options.folders.empty()) options.folders.push_back(videosFolder());
  if (options.index.empty()) options.index = indexFile();
  if (options.indexer.empty()) options.indexer = indexerProgram();
  return std::make_unique<IndexedLibrary>(mainLoop, std::move(options));
}

std::string indexFile() {
  return dataFolder() + "/quillop/library.db";
}

std::string indexerProgram() {
  return probe::ownFile("quillop-indexer");
}

}  // namespace medialibrary
