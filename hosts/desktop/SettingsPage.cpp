#include "hosts/desktop/SettingsPage.h"

#include "hosts/desktop/ProgressText.h"
#include "platform/mediaplayer/MPMediaQuery.h"

#include <QCoreApplication>

namespace desktop {

namespace {

/// More than anybody reads, and few enough to be fetched at every change.
constexpr std::size_t mostUnreadableFiles = 5000;

}  // namespace

SettingsPage::SettingsPage(Layers& layers, LibraryAccess& access, GuardedLibrary& library)
    : access_(access), library_(library), layer_(layers) {
  connect(&access_, &LibraryAccess::answered, this, &SettingsPage::update);
  connect(&access_, &LibraryAccess::foldersChanged, this, &SettingsPage::update);
  connect(&library_, &GuardedLibrary::changed, this, &SettingsPage::updateContents);
}

void SettingsPage::open() {
  if (isShown()) return;
  readContents();
  layer_.cover(QStringLiteral("SettingsPage"), *this, [this] { emit escapePressed(); });
}

bool SettingsPage::isAllowed() const {
  return access_.status() == host::LibraryAccess::Authorised;
}

bool SettingsPage::isRestricted() const {
  return access_.restriction() != LibraryAccess::Restriction::None;
}

QString SettingsPage::explanation() const {
  switch (access_.restriction()) {
    case LibraryAccess::Restriction::Policy:
      return QStringLiteral("Whoever administers this device does not allow Quillop to read the media library.");
    case LibraryAccess::Restriction::UnreadableFolder:
      return QStringLiteral(
          "Your videos folder may not be read by you. Ask whoever administers this device to change that.");
    default:
      return QStringLiteral("Quillop plays videos from your media library. Without access it cannot list them.");
  }
}

QString SettingsPage::videosFolder() const {
  return shownFolder(access_.videosFolder());
}

QStringList SettingsPage::addedFolders() const {
  QStringList shown;
  for (const auto& folder : access_.addedFolders()) shown << shownFolder(folder);
  return shown;
}

QString SettingsPage::contents() const {
  return contents_ ? videosText(contents_->items) : QStringLiteral("Access is off, so nothing is looked for.");
}

bool SettingsPage::isWorking() const {
  return contents_ && (contents_->isSearching || progress_.total > 0);
}

double SettingsPage::fraction() const {
  return fractionOf(progress_);
}

QString SettingsPage::progress() const {
  return progressText(progress_);
}

QString SettingsPage::unreadable() const {
  if (!contents_ || contents_->unreadableFiles == 0) return {};
  if (contents_->unreadableFiles == 1) return QStringLiteral("1 file could not be read");
  return QStringLiteral("%1 files could not be read").arg(numberText(contents_->unreadableFiles));
}

QString SettingsPage::unlisted() const {
  const auto listed = static_cast<std::size_t>(unreadableFiles_.rowCount());
  if (!contents_ || contents_->unreadableFiles <= listed) return {};
  return QStringLiteral("And %1 more").arg(numberText(contents_->unreadableFiles - listed));
}

QString SettingsPage::version() const {
  return QCoreApplication::applicationVersion();
}

void SettingsPage::allow(bool allows) {
  access_.setAnswer(allows ? LibraryAccess::Answer::Authorised : LibraryAccess::Answer::Denied);
}

bool SettingsPage::askElsewhere() const {
  if (askForFolder_) askForFolder_();
  return askForFolder_ != nullptr;
}

void SettingsPage::addChosenFolder() {
  if (chooser_.canBeChosen()) access_.addFolder(chooser_.path());
}

void SettingsPage::removeFolder(int place) {
  const auto& folders = access_.addedFolders();
  if (place >= 0 && place < folders.size()) access_.removeFolder(QString(folders[place]));
}

void SettingsPage::update() {
  if (!isShown()) return;
  emit changed();
  updateContents();
}

void SettingsPage::updateContents() {
  if (!isShown()) return;
  readContents();
  emit contentsChanged();
}

void SettingsPage::readContents() {
  contents_ = library_.contents(MPMediaTypeHomeVideo);
  progress_ = library_.progress();
  unreadableFiles_.setFiles(library_.unreadableFiles(mostUnreadableFiles));
}

}  // namespace desktop
