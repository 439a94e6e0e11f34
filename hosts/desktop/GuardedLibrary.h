#pragma once

#include "hosts/desktop/LibraryAccess.h"
#include "hosts/medialibrary/Library.h"
#include "platform/host/MainLoop.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace desktop {

/// The media library behind the user's permission: the folders of a `LibraryAccess`, which nobody looks into before
/// it allows that. Main thread.
class GuardedLibrary final : public QObject, public host::MediaLibrary {
  Q_OBJECT

 public:
  using Answer = LibraryAccess::Answer;
  /// Asks the user and calls `answered` once, later: with no answer where the question was closed without one.
  using Ask = std::function<void(std::function<void(std::optional<Answer>)> answered)>;
  /// Lets the person wait while `library` does not know all of its files yet, and calls `answered` once: with false
  /// where they did not want to.
  using Wait = std::function<void(GuardedLibrary& library, std::function<void(bool isReady)> answered)>;
  /// Makes the library of these folders.
  using Open = std::function<std::unique_ptr<medialibrary::FolderLibrary>(std::vector<std::string> folders)>;

  /// `mainLoop` and `access` outlive the library.
  GuardedLibrary(host::MainLoop& mainLoop, LibraryAccess& access, Ask ask, Wait wait, Open open);

  host::LibraryAccess access() const override { return access_.status(); }
  /// Requests made while the question stands share its answer.
  void requestAccess(std::function<void(host::LibraryAccess)> answer) override;
  void prepare(std::function<void(bool isReady)> ready) override;
  /// Empty without access.
  std::shared_ptr<const host::LibraryItems> items(std::uint64_t mediaType) override;
  /// The last answer of `items`, as long as somebody keeps it.
  std::shared_ptr<const host::LibraryItems> listed() const { return listed_.lock(); }
  /// As `medialibrary::FolderLibrary` has it; none without access.
  std::optional<medialibrary::FolderLibrary::Contents> contents(std::uint64_t mediaType);
  /// As `medialibrary::FolderLibrary` has them; nothing to do, no files and no effect without access.
  medialibrary::FolderLibrary::Progress progress();
  std::vector<medialibrary::FolderLibrary::UnreadableFile> unreadableFiles(std::size_t most);
  void rescan();
  /// As `medialibrary::FolderLibrary` has it; holds for every library that is opened later as well.
  void setGentle(bool isGentle);

 signals:
  /// What one of the above tells is another now. Never from within any of them.
  void changed();

 private:
  void tell(std::function<void(host::LibraryAccess)> answer) const;
  void settle(std::optional<Answer> answer);
  /// The library where it may be read, else null.
  medialibrary::FolderLibrary* readable();
  void openOrClose();
  void noteChangeLater();

  host::MainLoop& mainLoop_;
  LibraryAccess& access_;
  Ask ask_;
  Wait wait_;
  Open open_;
  std::vector<std::function<void(host::LibraryAccess)>> waiting_;
  std::weak_ptr<const host::LibraryItems> listed_;
  bool isGentle_ = false;
  std::unique_ptr<medialibrary::FolderLibrary> library_;
};

}  // namespace desktop
