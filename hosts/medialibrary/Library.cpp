#include "hosts/medialibrary/Library.h"

#include "hosts/medialibrary/Artwork.h"
#include "hosts/medialibrary/Folders.h"
#include "hosts/medialibrary/Looks.h"
#include "hosts/medialibrary/Order.h"
#include "hosts/medialibrary/VideoFiles.h"
#include "hosts/probe/Text.h"
#include "platform/foundation/Values.h"

#include <algorithm>
#include <utility>

namespace medialibrary {

namespace {

/// Somebody looks at a list that does not appear.
constexpr double longestWait = 5.0;

class Items final : public host::LibraryItems {
 public:
  explicit Items(std::vector<host::LibraryItem> items) : items_(std::move(items)) {}
  std::size_t count() const override { return items_.size(); }
  host::LibraryItem item(std::size_t index) const override { return items_.at(index); }

 private:
  std::vector<host::LibraryItem> items_;
};

std::string titleOf(const VideoFile& file, const probe::FileFacts& facts) {
  if (facts.title) return *facts.title;
  const std::string name = file.path.substr(file.path.rfind('/') + 1);
  const std::string withoutEnding = probe::lineOfText(name.substr(0, name.rfind('.')));
  return withoutEnding.empty() ? probe::lineOfText(name) : withoutEnding;
}

bool isItem(const Looks::Facts& facts, std::uint64_t mediaType) {
  return facts != nullptr && facts->media.duration > 0 && facts->hasPicture && facts->mediaType == mediaType;
}

struct Row {
  const VideoFile* file = nullptr;
  std::string title;
  double duration = 0.0;
};

host::LibraryItem itemOf(Row row) {
  return {NSURL::fileURLWithPath(row.file->path)->absoluteString(), std::move(row.title), row.duration,
          artworkSource(row.file->path)};
}

class VideosInFolders final : public FolderLibrary {
 public:
  VideosInFolders(host::MainLoop& mainLoop, LibraryOptions options)
      : mainLoop_(mainLoop),
        folders_(std::move(options.folders)),
        order_(options.locale),
        looks_([folders = folders_] { return videoFiles(folders); }) {}

  host::LibraryAccess access() const override { return host::LibraryAccess::Authorised; }

  void requestAccess(std::function<void(host::LibraryAccess)> answer) override {
    mainLoop_.post([answer = std::move(answer)] { answer(host::LibraryAccess::Authorised); });
  }

  std::shared_ptr<const host::LibraryItems> items(std::uint64_t mediaType) override {
    const std::vector<VideoFile> files = videoFiles(folders_);
    std::vector<Row> rows = rowsOf(files, looks_.facts(files, longestWait), mediaType);
    std::sort(rows.begin(), rows.end(),
              [this](const Row& left, const Row& right) { return standsBefore(left, right); });
    std::vector<host::LibraryItem> items;
    for (Row& row : rows) items.push_back(itemOf(std::move(row)));
    return std::make_shared<const Items>(std::move(items));
  }

  void setFolders(std::vector<std::string> folders) override { folders_ = std::move(folders); }

  Contents contents(std::uint64_t mediaType) override {
    const std::vector<Looks::Facts> facts = looks_.facts(videoFiles(folders_), 0.0);
    Contents contents;
    for (const Looks::Facts& each : facts) {
      if (isItem(each, mediaType)) ++contents.items;
      if (each == nullptr) ++contents.unknownFiles;
    }
    return contents;
  }

 private:
  static std::vector<Row> rowsOf(const std::vector<VideoFile>& files, const std::vector<Looks::Facts>& facts,
                                 std::uint64_t mediaType) {
    std::vector<Row> rows;
    for (std::size_t i = 0; i < files.size(); ++i) {
      if (!isItem(facts[i], mediaType)) continue;
      rows.push_back({&files[i], titleOf(files[i], *facts[i]), facts[i]->media.duration});
    }
    return rows;
  }

  bool standsBefore(const Row& left, const Row& right) const {
    const int order = order_.compare(left.title, right.title);
    return order != 0 ? order < 0 : left.file->path < right.file->path;
  }

  host::MainLoop& mainLoop_;
  std::vector<std::string> folders_;
  Order order_;
  Looks looks_;
};

}  // namespace

std::unique_ptr<FolderLibrary> makeLibrary(host::MainLoop& mainLoop, LibraryOptions options) {
  if (options.folders.empty()) options.folders.push_back(videosFolder());
  return std::make_unique<VideosInFolders>(mainLoop, std::move(options));
}

}  // namespace medialibrary
