#pragma once

class QQuickItem;

namespace qtquick {

/// What lies over what in the window, as z values of the stage's children. Those of the same level lie in the order
/// in which they came.
constexpr double mainScreenLevel = 0.0;
constexpr double decorationLevel = 0.25;
constexpr double presentedScreenLevel = 0.5;
constexpr double lowestCoverLevel = 1.0;

/// Lays `item` at `level` of the stage, as large as the stage from now on.
void fill(QQuickItem& stage, QQuickItem& item, double level);

}  // namespace qtquick
