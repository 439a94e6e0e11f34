#include "hosts/desktop/GuardedLibrary.h"

#include <utility>

namespace desktop {

namespace {

class NoItems final : public host::LibraryItems {
 public:
  std::size_t count() const override { return 0; }
  host::LibraryItem item(std::size_t /*index*/) const override { return {}; }
};

}  // namespace

GuardedLibrary::GuardedLibrary(host::MainLoop& mainLoop, LibraryAccess& access, Ask ask, Open open)
    : mainLoop_(mainLoop), access_(access), ask_(std::move(ask)), open_(std::move(open)) {
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

std::shared_ptr<const host::LibraryItems> GuardedLibrary::items(std::uint64_t mediaType) {
  auto* const library = readable();
  return library != nullptr ? library->items(mediaType) : std::make_shared<const NoItems>();
}

std::optional<medialibrary::FolderLibrary::Contents> GuardedLibrary::contents(std::uint64_t mediaType) {
  auto* const library = readable();
  return library != nullptr ? std::optional(library->contents(mediaType)) : std::nullopt;
}

medialibrary::FolderLibrary* GuardedLibrary::readable() {
  openOrClose();  // a restriction may have come or gone since
  return library_.get();
}

void GuardedLibrary::openOrClose() {
  if (access_.status() != host::LibraryAccess::Authorised) {
    library_ = nullptr;
  } else if (!library_) {
    library_ = open_(access_.folders());
  }
}

}  // namespace desktop
