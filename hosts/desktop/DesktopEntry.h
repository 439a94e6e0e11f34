#pragma once

#include <string>
#include <vector>

namespace desktop {

/// What a program is started with: the `Exec` line of its desktop entry (Desktop Entry Specification, "The Exec
/// key"), with `file`, an absolute path, in the place of %f, %F, %u and %U. Field codes that stand for nothing here
/// are left out. Empty when the line cannot be understood.
std::vector<std::string> commandToOpen(const std::string& execLine, const std::string& file);

/// The same without any file: only the program and what it always gets. The marks with which a sandbox asks for files
/// to be let in go too.
std::vector<std::string> commandToStart(const std::string& execLine);

}  // namespace desktop
