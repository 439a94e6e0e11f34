#pragma once

#include <QString>

namespace desktop {

/// Where the app keeps its files, per the XDG Base Directory Specification. The folders exist when these return.

/// The user defaults: `$XDG_CONFIG_HOME/quillop`.
QString configurationFolder();
/// What is kept but means nothing to the user, such as the window's place: `$XDG_STATE_HOME/quillop`.
QString stateFolder();
/// Sockets: `$XDG_RUNTIME_DIR/quillop`, in a Flatpak `$XDG_RUNTIME_DIR/app/$FLATPAK_ID/quillop`, else a folder of the
/// user's own among the temporary files.
QString runtimeFolder();

/// Whether the app runs in a Flatpak, where it gets to other programs through portals only.
bool isSandboxed();

}  // namespace desktop
