// SPDX-License-Identifier: BSD-2-Clause
//
// A media file that is written, packet by packet, or a still of one frame.
#pragma once

#include "media/libav.h"

#include <string>

namespace nkdraw::media {

/// The kind of file that a name asks for. Throws Failure for a suffix that names none, or one that
/// isn't a single file with video.
[[nodiscard]] const AVOutputFormat& formatFor(const std::string& path);

/// Whether files of this kind hold this codec.
[[nodiscard]] bool holds(const AVOutputFormat& format, AVCodecID codec);

class MediaOutput {
 public:
  /// Writes to `file`; `name` is what messages call it.
  MediaOutput(const std::string& file, const AVOutputFormat& format, const std::string& name);
  MediaOutput(const MediaOutput&) = delete;
  MediaOutput& operator=(const MediaOutput&) = delete;
  ~MediaOutput();

  [[nodiscard]] AVFormatContext& file() { return *file_; }
  [[nodiscard]] const AVOutputFormat& format() const { return *file_->oformat; }
  [[nodiscard]] AVStream& addStream();

  /// Writes the head of the file; no stream can be added from here on.
  void begin();
  /// Writes a packet of the stream `stream_index`, times in `timeBase`. Takes its data.
  void write(AVPacket& packet, AVRational timeBase);
  /// Writes the rest of the file and closes it.
  void finish();

 private:
  [[noreturn]] void fail(const char* what, int error) const;
  void close();

  std::string name_;
  AVFormatContext* file_ = nullptr;
};

/// Writes the frame as 8-bit RGB into the PNG file `file`; `name` is what messages call it. Throws
/// Failure.
void writeStill(AVFrame& frame, const std::string& file, const std::string& name);

}  // namespace nkdraw::media
