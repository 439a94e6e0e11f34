#pragma once

#include <QStringList>

namespace desktop {

/// The folders of the system's configuration, the most important first: $XDG_CONFIG_DIRS, or else /etc/xdg (XDG Base
/// Directory Specification).
QStringList systemConfigurationFolders();

/// Whether an administrator keeps the app from the media library: the first of `folders` whose `quillop/policy.json`
/// has a value "mediaLibrary" decides, and "restricted" restricts. A policy that cannot be read or understood
/// restricts too, since whoever wrote one wanted a limit; that is told on standard error, once. Read
/// anew at each call.
bool policyRestrictsLibrary(const QStringList& folders);

}  // namespace desktop
