#pragma once

#include <functional>
#include <string>
#include <vector>

/// Real media files for tests, made once with the `ffmpeg` program and kept in the build folder.
namespace clips {

/// The path of a file `name` below the clip folder, made by `ffmpeg ARGUMENTS FILE` when there is none of these
/// arguments yet. Stops the test program when ffmpeg fails. Several test programs may ask at once.
std::string clip(const std::string& name, const std::vector<std::string>& arguments);

/// An MP4 of H.264 at 30 frames/s, a moving test picture, and AAC sound: one sine tone in all `channels`.
std::string film(const std::string& name, int width, int height, double seconds, int toneHertz, int channels);

/// A copy of `path` cut after `bytes` bytes.
std::string truncated(const std::string& path, const std::string& name, long bytes);

/// A copy of `path` with its bytes changed by `edit`.
std::string edited(const std::string& path, const std::string& name, const std::function<void(std::string&)>& edit);

/// The `file:` URL of `path`.
std::string urlOf(const std::string& path);

}  // namespace clips
