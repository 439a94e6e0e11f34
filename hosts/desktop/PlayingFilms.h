#pragma once

namespace desktop {

/// Pauses each film that plays by its own play/pause control, as if it were pressed, whether the control is in sight
/// or not. Films that stand are left alone. Main thread, inside a turn, while the app runs.
void pausePlayingFilms();

}  // namespace desktop
