#pragma once

#include <string>
#include <vector>

namespace desktop {

/// Starts `command`, a program (found as a shell does) and its arguments, as nobody's child and in a session of its
/// own, so that it outlives the app. Waits until the program runs or could not be run; false for the latter and for
/// an empty command. Any thread.
bool startProgram(const std::vector<std::string>& command);

}  // namespace desktop
