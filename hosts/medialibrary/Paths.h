#pragma once

#include <string>
#include <string_view>

namespace medialibrary {

// Absolute paths, as bytes. Any thread.

/// The folder in which it lies, without a slash at its end, so that the root is empty.
std::string_view folderOf(std::string_view path);

/// Whether it is the folder or something in it, however deep.
bool isInOrBelow(std::string_view path, std::string_view folder);

/// The same path; the root keeps its slash.
std::string withoutSlashAtEnd(std::string path);

/// Makes the folder and those above it, for the user alone: what somebody watches is nobody else's business. Its
/// failure shows when something is written there.
void makeFolder(std::string_view path);

}  // namespace medialibrary
