#pragma once

#include "platform/uikit/UIColor.h"
#include "platform/uikit/UIImage.h"

#include <QColor>
#include <QUrl>

#include <optional>

namespace qtquick {

/// The name under which `ArtworkProvider` is known to QML.
inline constexpr const char* artworkProviderName = "artwork";

/// Where QML finds the picture: a resource or any other URL as it is, the path of a library item's picture as
/// "image://artwork/" and the path's bytes, percent-encoded. Empty for no picture, and for one of a single colour.
QUrl pictureUrl(const Strong<UIImage>& image);

/// The colour of a picture that has one only ("color:#RRGGBBAA"); none for other pictures and for no picture.
std::optional<QColor> pictureColour(const Strong<UIImage>& image);

QColor colour(UIColor colour);

}  // namespace qtquick
