#pragma once

#include "hosts/medialibrary/Library.h"

#include <QString>

#include <cstddef>

namespace desktop {

/// How the progress of long work is put into words.

/// With separators between the thousands: "4,000".
QString numberText(std::size_t number);
/// "1 video", "4,000 videos".
QString videosText(std::size_t count);
/// How long it still takes, no more exactly than such an estimate deserves: "about 15 seconds left", "about 2 minutes
/// left", "about 3 hours left". Less than a second counts as one.
QString remainingText(double seconds);
/// From 0 to 1; 0 while nobody knows how many there are.
double fractionOf(const medialibrary::FolderLibrary::Progress& progress);
/// "120 of 4,000"; while nobody knows how many there are, what is being done instead.
QString countText(const medialibrary::FolderLibrary::Progress& progress);
/// The same with the time that remains where that is known: "120 of 4,000, about 2 minutes left".
QString progressText(const medialibrary::FolderLibrary::Progress& progress);

}  // namespace desktop
