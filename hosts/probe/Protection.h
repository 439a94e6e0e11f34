#pragma once

#include "hosts/probe/MediaFile.h"
#include "hosts/probe/OpenMedia.h"

namespace probe {

/// Whether the file holds encrypted tracks, by the rules of its container; false for containers without any.
bool isProtected(const OpenMedia& media);

// The rules, read from the file's structure. FFmpeg shows an encrypted track as one of the
// codec that is inside, so that the files are read here a second time, by their own rules. Lengths in the file are
// not believed: nothing outside the enclosing element is read, and the number of elements is limited.

/// ISO base media files (ISO/IEC 14496-12, MP4 and QuickTime): a sample entry of a track is called `encv` or `enca`
/// (ISO/IEC 23001-7, common encryption), `drmi` or `drms`.
bool isProtectedBoxFile(const MediaFile& file, const Deadline& deadline);

/// Matroska and WebM (RFC 9559, 5.1.4.1.31): a track has a ContentEncoding of the type "encryption".
bool isProtectedMatroska(const MediaFile& file, const Deadline& deadline);

}  // namespace probe
