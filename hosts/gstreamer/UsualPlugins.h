#pragma once

namespace gstreamer {

/// Makes GStreamer usable; more than once does no harm. The first time after plugins were installed, GStreamer starts
/// a process that loads each of them, and writes what it found into a registry in the user's cache folder. Any
/// thread.
void startGStreamer();

/// Starts GStreamer, and has the plugins loaded that most films need, and with them FFmpeg's libraries, so that the
/// first film does not wait for that. Takes some tenths of a second. Any thread.
void loadUsualPlugins();

}  // namespace gstreamer
