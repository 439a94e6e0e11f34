#include "hosts/desktop/SettingsPage.h"

#include <QCoreApplication>
#include <QMetaObject>

namespace desktop {

namespace {

/// While files are still being looked into, how often what is known is asked for.
constexpr int countInterval = 500;  // milliseconds

QString countText(const medialibrary::FolderLibrary::Contents& contents) {
  const QString videos =
      contents.items == 1 ? QStringLiteral("1 video") : QStringLiteral("%1 videos").arg(contents.items);
  return contents.unknownFiles == 0 ? videos : videos + QStringLiteral(", still looking");
}

}  // namespace

SettingsPage::SettingsPage(Layers& layers, LibraryAccess& access, Contents contents)
    : layers_(layers), access_(access), countContents_(std::move(contents)) {
  connect(&access_, &LibraryAccess::answered, this, &SettingsPage::update);
  connect(&access_, &LibraryAccess::foldersChanged, this, &SettingsPage::update);
  countAgain_.setSingleShot(true);
  countAgain_.setInterval(countInterval);
  connect(&countAgain_, &QTimer::timeout, this, &SettingsPage::update);
}

void SettingsPage::open() {
  if (isShown()) return;
  count();
  layer_ = layers_.open(QStringLiteral("SettingsPage"), *this, [this] { emit escapePressed(); });
}

void SettingsPage::close() {
  const auto end = [this] {
    layer_ = nullptr;
    countAgain_.stop();
  };
  QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
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

QString SettingsPage::version() const {
  return QCoreApplication::applicationVersion();
}

void SettingsPage::allow(bool allows) {
  access_.setAnswer(allows ? LibraryAccess::Answer::Authorised : LibraryAccess::Answer::Denied);
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
  count();
  emit changed();
}

void SettingsPage::count() {
  const auto contents = countContents_();
  contents_ = contents ? countText(*contents) : QStringLiteral("Access is off, so nothing is looked for.");
  if (contents && contents->unknownFiles > 0) countAgain_.start();
}

}  // namespace desktop
