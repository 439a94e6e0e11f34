#pragma once

#include "hosts/probe/Handles.h"
#include "hosts/probe/MediaFile.h"

#include <memory>
#include <string>

namespace probe {

/// The reason of whatever had to stop at its deadline.
inline constexpr const char* tooLate = "looking into the file took too long";

/// A media file whose structure has been read. Stays where it was made, because FFmpeg holds its address.
class OpenMedia {
 public:
  /// None when it is not a media file, or when that took longer than `deadline`, with the cause in `reason`.
  static std::unique_ptr<OpenMedia> open(const std::string& path, Deadline deadline, std::string& reason);

  OpenMedia(const OpenMedia&) = delete;
  OpenMedia& operator=(const OpenMedia&) = delete;

  const MediaFile& file() const { return file_; }
  AVFormatContext& format() { return *format_; }
  const Deadline& deadline() const { return deadline_; }

  /// Whether the file is of the container that FFmpeg calls `name`.
  bool isContainer(const char* name) const;
  /// Leaves out the packets of all tracks but one.
  void selectOnly(const AVStream& track);
  /// The next packet of the selected track; false at the end, after an error, or past the deadline.
  bool read(AVPacket& packet);

 private:
  OpenMedia(MediaFile file, Deadline deadline) : file_(std::move(file)), deadline_(deadline) {}
  bool openFormat(std::string& reason);
  bool completeStructure(std::string& reason);

  static int readBytes(void* self, std::uint8_t* bytes, int count);
  static std::int64_t moveTo(void* self, std::int64_t offset, int whence);

  MediaFile file_;
  Deadline deadline_;
  std::int64_t position_ = 0;
  InputOutput inputOutput_;
  Format format_;  // after what it reads from
};

/// A cover image, which FFmpeg presents as a video track of one frame.
bool isAttachedPicture(const AVStream& track);
/// A decoder for `track`, running on the calling thread alone, or none.
Decoder openDecoder(const AVStream& track);

}  // namespace probe
