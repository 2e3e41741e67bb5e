// SPDX-License-Identifier: BSD-2-Clause
//
// One output of a run while it is written: its file, the streams beside the video, and the two ways
// that burnt frames get into it.
#pragma once

#include "burnin/clip_frames.h"
#include "burnin/clip_plan.h"
#include "cli/using_media.h"
#include "media/frame_kind.h"
#include "media/media_output.h"
#include "media/output_file.h"
#include "media/stream_copy.h"
#include "media/video_encoder.h"
#include "media/worker.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace nkdraw::tool {

/// Nothing appears under the output's name before commit().
class ClipOutput {
 public:
  /// Throws Failure if the file can't be written.
  ClipOutput(MediaInput& input, const ClipPlan& plan, const OutputPlan& output, bool overwrite);
  ClipOutput(const ClipOutput&) = delete;
  ClipOutput& operator=(const ClipOutput&) = delete;

  [[nodiscard]] const OutputPlan& plan() const { return plan_; }
  [[nodiscard]] StreamCopier& copier() { return copier_; }

  /// Writes the header, once the video's stream is described.
  void begin();
  /// Writes a packet of another stream, which stays as it is.
  void writeOther(const AVPacket& packet);
  /// Writes the rest, and reads the file back. Throws Failure if it can't be read.
  void finish();
  /// Gives the file its name. One line says if it does not tell the timecode that it should.
  void commit();
  void withdraw() { file_.withdraw(); }

 private:
  void noteSilence();

  const OutputPlan& plan_;
  OutputFile file_;
  MediaOutput output_;
  StreamCopier copier_;
  Packet own_ = makePacket();
  std::string lost_;    // of the timecode
  std::string prefix_;  // of the notes about sound
  std::vector<std::string> silent_;
};

/// Writes the file's own frames, burnt.
class PacketSink {
 public:
  PacketSink(ClipOutput& output, MediaInput& input, const Job& job);

  /// Writes the frame `index`, which stays as it is; its rows are those that `frames` burnt.
  void write(const AVPacket& burnt, std::int64_t index, const InPlaceFrames& frames);

 private:
  [[nodiscard]] bool isOnTheGrid(std::int64_t index) const;
  void writeByNumber(std::int64_t index);

  ClipOutput& output_;
  const AVStream& video_;  // the input's
  const Job& job_;
  bool sameKind_;  // of file as the input
  Packet own_ = makePacket();
  std::int64_t next_ = 0;  // the lowest number that is still free
};

/// Encodes burnt frames, on a thread of its own.
class FrameSink {
 public:
  FrameSink(ClipOutput& output, MediaInput& input, const ClipPlan& plan);

  /// Shares the frame's pixels, which must not be changed afterwards.
  void encode(const AVFrame& frame, std::int64_t index);
  /// Encodes what is left, at the end.
  void finish();

 private:
  struct PlacedFrame {
    Frame frame;  // null at the end
    std::int64_t place;
  };

  void encodeNext(PlacedFrame& next);
  void writeEncoded();

  ClipOutput& output_;
  std::int64_t first_;
  VideoEncoder encoder_;
  FramePlaces places_;
  std::mutex lock_;
  std::vector<Packet> encoded_;  // and not yet written
  Worker<PlacedFrame> worker_;
};

}  // namespace nkdraw::tool
