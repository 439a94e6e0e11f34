#include "hosts/desktop/GuardedLibrary.h"

#include "platform/mediaplayer/MPMediaQuery.h"

#include <utility>

namespace desktop {

GuardedLibrary::GuardedLibrary(host::MainLoop& mainLoop, LibraryAccess& access, Ask ask, Wait wait, Open open)
    : mainLoop_(mainLoop), access_(access), ask_(std::move(ask)), wait_(std::move(wait)), open_(std::move(open)) {
  connect(&access_, &LibraryAccess::answered, this, [this] { openOrClose(); });
  connect(&access_, &LibraryAccess::foldersChanged, this, [this] {
    if (library_) library_->setFolders(access_.folders());
  });
  openOrClose();
}

void GuardedLibrary::requestAccess(std::function<void(host::LibraryAccess)> answer) {
  if (access_.status() != host::LibraryAccess::NotDetermined) {
    tell(std::move(answer));
    return;
  }
  waiting_.push_back(std::move(answer));
  if (waiting_.size() == 1) ask_([this](std::optional<Answer> given) { settle(given); });
}

void GuardedLibrary::tell(std::function<void(host::LibraryAccess)> answer) const {
  mainLoop_.post([answer = std::move(answer), access = access_.status()] { answer(access); });
}

void GuardedLibrary::settle(std::optional<Answer> answer) {
  if (answer) access_.setAnswer(*answer);
  for (auto& each : std::exchange(waiting_, {})) tell(std::move(each));
}

void GuardedLibrary::prepare(std::function<void(bool isReady)> ready) {
  auto* const library = readable();
  if (library != nullptr) {
    library->refresh();
    const auto contents = library->contents(MPMediaTypeHomeVideo);
    if (contents.isSearching || contents.unknownFiles > 0) {
      wait_(*this,
            [this, ready = std::move(ready)](bool isReady) { mainLoop_.post([ready, isReady] { ready(isReady); }); });
      return;
    }
  }
  ready(true);
}

std::shared_ptr<const host::LibraryItems> GuardedLibrary::items(std::uint64_t mediaType) {
  auto* const library = readable();
  auto items = library != nullptr ? library->items(mediaType) : std::make_shared<const host::NoItems>();
  listed_ = items;
  return items;
}

std::optional<medialibrary::FolderLibrary::Contents> GuardedLibrary::contents(std::uint64_t mediaType) {
  auto* const library = readable();
  return library != nullptr ? std::optional(library->contents(mediaType)) : std::nullopt;
}

medialibrary::FolderLibrary::Progress GuardedLibrary::progress() {
  auto* const library = readable();
  return library != nullptr ? library->progress() : medialibrary::FolderLibrary::Progress{};
}

std::vector<medialibrary::FolderLibrary::UnreadableFile> GuardedLibrary::unreadableFiles(std::size_t most) {
  auto* const library = readable();
  return library != nullptr ? library->unreadableFiles(most)
                            : std::vector<medialibrary::FolderLibrary::UnreadableFile>{};
}

std::string GuardedLibrary::title(const std::string& path) {
  auto* const library = readable();
  return library != nullptr ? library->title(path) : std::string();
}

void GuardedLibrary::rescan() {
  if (auto* const library = readable()) library->rescan();
}

void GuardedLibrary::setGentle(bool isGentle) {
  isGentle_ = isGentle;
  if (library_) library_->setGentle(isGentle);
}

medialibrary::FolderLibrary* GuardedLibrary::readable() {
  openOrClose();  // a restriction may have come or gone since
  return library_.get();
}

void GuardedLibrary::openOrClose() {
  const bool isAllowed = access_.status() == host::LibraryAccess::Authorised;
  if (isAllowed == (library_ != nullptr)) return;
  library_ = isAllowed ? open_(access_.folders()) : nullptr;
  if (library_) {
    library_->setGentle(isGentle_);
    library_->setChanged([this] { noteChangeLater(); });
  }
  noteChangeLater();
}

/// Whoever hears of a change asks what there is now, which may close the library: not while it is telling.
void GuardedLibrary::noteChangeLater() {
  QMetaObject::invokeMethod(this, &GuardedLibrary::changed, Qt::QueuedConnection);
}

}  // namespace desktop
