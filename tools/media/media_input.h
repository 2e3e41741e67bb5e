// SPDX-License-Identifier: BSD-2-Clause
//
// A media file that is read, packet by packet.
#pragma once

#include "media/libav.h"

#include <cstdint>
#include <string>

namespace nkdraw::media {

class MediaInput {
 public:
  /// Opens the file and finds its video stream. Throws Failure.
  explicit MediaInput(const std::string& path);

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] AVFormatContext& file() { return *file_; }
  [[nodiscard]] AVStream& video() { return *file_->streams[videoIndex_]; }
  [[nodiscard]] bool isVideo(const AVPacket& packet) const {
    return packet.stream_index == videoIndex_;
  }

  /// From here on packets of other streams need not be read.
  void readOnly(const AVStream& stream);

  /// Frames a second; 25 for a file that doesn't say.
  [[nodiscard]] AVRational frameRate();
  [[nodiscard]] bool interlaced();
  /// Frames of the video, as far as the file tells; 0 when it doesn't.
  [[nodiscard]] std::int64_t frameCount();
  /// The file's kind for the format line, a code of hzwFileType.
  [[nodiscard]] std::uint32_t fileType() const;

  /// Reads the next packet of any stream; false at the end of the file. Throws Failure when the
  /// file breaks off, Interrupted when a signal arrived.
  [[nodiscard]] bool read(AVPacket& packet);

 private:
  std::string path_;
  InputContext file_;
  int videoIndex_ = -1;
};

}  // namespace nkdraw::media
