// SPDX-License-Identifier: BSD-2-Clause
//
// Reads a media file, packet by packet.
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

  /// From now on packets of other streams need not be read.
  void readOnly(const AVStream& stream);

  /// Frames a second; 25 if the file doesn't tell.
  [[nodiscard]] AVRational frameRate();
  [[nodiscard]] bool interlaced();
  /// The number of video frames, if the file tells; otherwise 0.
  [[nodiscard]] std::int64_t frameCount();
  /// The kind of file for the format line, a code of hzwFileType.
  [[nodiscard]] std::uint32_t fileType() const;

  /// Reads the next packet of any stream; false at the end of the file. Throws Failure if the file
  /// is truncated, and Interrupted after a signal.
  [[nodiscard]] bool read(AVPacket& packet);

 private:
  std::string path_;
  InputContext file_;
  int videoIndex_ = -1;
};

}  // namespace nkdraw::media
