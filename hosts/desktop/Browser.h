#pragma once

#include <string>

namespace desktop {

/// Shows the page in `file`, an absolute path, in the user's browser: the program that the desktop entries name for
/// web addresses, else the one for HTML files. False when there is none, it wants a terminal, or it could not be
/// started. Main thread.
bool openInBrowser(const std::string& file);

}  // namespace desktop
