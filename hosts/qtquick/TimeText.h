#pragma once

#include <QString>

namespace qtquick {

/// Seconds as a clock shows them: "0:07", "12:05", "1:02:03". Fractions are cut off.
QString clockText(double seconds);

/// Seconds as one says them: "1 hour 2 minutes 3 seconds".
QString spokenTime(double seconds);

}  // namespace qtquick
