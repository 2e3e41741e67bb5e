// SPDX-License-Identifier: BSD-2-Clause
//
// Writes a media file packet by packet.
#pragma once

#include "media/libav.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace nkdraw::media {

/// The file format with the name `asked`, or else the one that the output's suffix names; for a
/// pipe NUT. Throws Failure if there is none such, or one that isn't a single file with video.
[[nodiscard]] const AVOutputFormat& formatFor(const std::string& path,
                                              const std::optional<std::string>& asked = {});

/// Whether this file format can hold this codec.
[[nodiscard]] bool holds(const AVOutputFormat& format, AVCodecID codec);

class MediaOutput {
 public:
  /// Writes to `file`, which may be a pipe; messages use `name`. When nobody reads the pipe any
  /// more, writing throws ReaderGone.
  MediaOutput(const std::string& file, const AVOutputFormat& format, std::string name);
  MediaOutput(const MediaOutput&) = delete;
  MediaOutput& operator=(const MediaOutput&) = delete;
  ~MediaOutput();

  [[nodiscard]] AVFormatContext& file() { return *file_; }
  [[nodiscard]] const AVOutputFormat& format() const { return *file_->oformat; }
  [[nodiscard]] AVStream& addStream();

  /// Sets an option of FFmpeg's muxer, before begin().
  void setOption(const char* key, const char* value) { options_.set(key, value); }

  /// Writes the header of the file; after that no stream can be added. `options` are FFmpeg's for
  /// this kind of file, "KEY=VALUE"; a value that begins with '+' is added to others of its key.
  /// Throws Failure for unknown ones.
  void begin(const std::vector<std::string>& options = {});
  /// Writes a packet of the stream `stream_index`, with times in `timeBase`. Takes over its data.
  void write(AVPacket& packet, AVRational timeBase);
  /// The same, but returns FFmpeg's error if the packet itself can't be in such a file, else 0.
  [[nodiscard]] int tryWrite(AVPacket& packet, AVRational timeBase);
  /// Whether a packet of this stream has been written.
  [[nodiscard]] bool hasPackets(const AVStream& stream) const {
    return written_.contains(stream.index);
  }
  /// Writes the rest of the file and closes it.
  void finish();

 private:
  void checkTaken(const std::string& option);
  [[noreturn]] void fail(const char* what, int error) const;
  void close();

  std::string name_;
  bool piped_;
  AVFormatContext* file_ = nullptr;
  Options options_;
  std::set<int> written_;  // streams
};

}  // namespace nkdraw::media
