#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace gstreamer {

/// How a track header turns a picture: what is stored at (across, down) is shown at
/// (a * across + c * down, b * across + d * down).
struct Turn {
  int a = 1;
  int b = 0;
  int c = 0;
  int d = 1;

  bool lies() const { return a == 0; }
};

/// One film of the matrix: a test picture with four corners of different colours, whose centre turns from black to
/// white half way through, and one tone in all channels.
struct FormatClip {
  /// Unique; letters and digits only.
  std::string name;
  /// As the README names them. No `sound`: the film is silent.
  std::string container, picture, sound;
  /// What is special about the film, as the README names it. Empty where only the formats matter.
  std::string feature = {};
  int width = 160, height = 120;
  std::string rate = "30";
  double pictureSeconds = 2.0, soundSeconds = 2.0;
  /// Seconds before the first picture and the first sound.
  double lead = 0.0;
  std::string layout = "stereo";
  /// More of ffmpeg's filters, after the test picture was drawn; more of its inputs, numbered from 2; and more of its
  /// arguments before the file's name.
  std::string filters = "null";
  std::vector<std::string> inputs = {};
  std::vector<std::string> more = {};
  Turn turn = {};
  /// Width of a pixel as against its height.
  double pixelShape = 1.0;

  double length() const;
};

/// For the messages of GoogleTest, which looks for a function of this name.
void PrintTo(const FormatClip& clip, std::ostream* where);

/// All films of the matrix.
const std::vector<FormatClip>& formatClips();

/// The path of `clip`, made when it is not there yet.
std::string pathOf(const FormatClip& clip);

/// The table of the README: for each container what was tested in it, and what else is in the matrix.
std::string readmeTable();

}  // namespace gstreamer
