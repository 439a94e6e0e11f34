#pragma once

#include "platform/uikit/UIColor.h"
#include "platform/uikit/UIImage.h"

#include <QColor>
#include <QString>
#include <QUrl>

#include <optional>
#include <string>

namespace qtquick {

/// The name under which `ArtworkProvider` is known to QML.
inline constexpr const char* artworkProviderName = "artwork";

/// Where QML finds the picture: a resource or any other URL as it is, the path of a library item's picture as
/// "image://artwork/" and the path's bytes, percent-encoded. Empty for no picture, and for one of a single colour.
QUrl pictureUrl(const Strong<UIImage>& image);

/// The colour of a picture that has one only ("color:#RRGGBBAA"); none for other pictures and for no picture.
std::optional<QColor> pictureColour(const Strong<UIImage>& image);

QColor colour(UIColor colour);

/// Seconds as a clock shows them: "0:07", "12:05", "1:02:03". Fractions are cut off.
QString clockText(double seconds);

/// Seconds as one says them: "1 hour 2 minutes 3 seconds".
QString spokenTime(double seconds);

}  // namespace qtquick
