#pragma once

#include <string>
#include <vector>

namespace desktop {

/// Sets an environment variable for the libraries of this process alone: the programs that it starts do not get it.
/// Does nothing where the user has set it; then they get the user's. Before any other thread runs.
void setForThisProcess(const std::string& variable, const std::string& value);

/// Starts `command`, a program (found as a shell does) and its arguments, as nobody's child and in a session of its
/// own, so that it outlives the app, and in the environment that the app itself was started in. Waits until the
/// program runs or could not be run; false for the latter and for an empty command. Any thread.
bool startProgram(const std::vector<std::string>& command);

}  // namespace desktop
