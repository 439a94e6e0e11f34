#pragma once

#include "hosts/probe/Handles.h"

#include <cstdint>

namespace probe {

/// The media library's number for the kind of media that the file's own tags name; a home video without one.
///
/// MP4: the `stik` item of the metadata, in the numbering that tagging programs agree on. The same tag, copied, is
/// also found in other containers. Matroska: the tag CONTENT_TYPE (Matroska tag specifications, "Search and
/// Classification"), whose values are free text, or tags that are addressed to a SEASON or EPISODE (target types,
/// same document). The target type MOVIE says nothing: common muxers address their statistics to it in every file.
std::uint64_t mediaKind(const AVFormatContext& format, bool hasPicture);

}  // namespace probe
