// SPDX-License-Identifier: BSD-2-Clause
//
// Reads a media file, packet by packet.
#pragma once

#include "media/damage.h"
#include "media/dpx_header.h"
#include "media/image_sequence.h"
#include "media/input_shape.h"
#include "media/joined_times.h"
#include "media/libav.h"
#include "media/promised_end.h"
#include "media/sparse_file.h"
#include "media/video_start.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nkdraw::media {

/// Where reading begins.
struct StartPoint {
  std::optional<std::int64_t>
      time;                  ///< what to seek, in the video's time base; none: the beginning
  std::int64_t skipped = 0;  ///< packets of the video that are left out from there on
};

/// Whether FFmpeg reads all of a file itself, or by a SparseFile.
enum class Reading { kWhole, kSparse };

class MediaInput {
 public:
  /// Opens the file, pipe or image sequence and finds its video stream; the last two are always
  /// read whole. Throws Failure.
  explicit MediaInput(const std::string& path, const InputShape& shape = {},
                      Reading reading = Reading::kWhole);

  /// The same file, opened once more.
  [[nodiscard]] MediaInput again() const;

  [[nodiscard]] const std::string& path() const { return path_; }
  /// The pictures of an image sequence; none for all else.
  [[nodiscard]] const std::optional<PictureRun>& pictures() const { return pictures_; }
  /// The file by which FFmpeg reads; null if it reads it itself.
  [[nodiscard]] SparseFile* sparse() { return sparse_.get(); }
  /// What is known of damaged frames; whoever reads frames notes them here.
  [[nodiscard]] DamageList& damage() { return damage_; }
  [[nodiscard]] AVFormatContext& file() { return *file_; }
  [[nodiscard]] AVStream& video() { return *file_->streams[videoIndex_]; }
  [[nodiscard]] bool isVideo(const AVPacket& packet) const {
    return packet.stream_index == videoIndex_;
  }

  /// Which frame is number 0. Is found out when it is first asked for, from a pipe by reading
  /// ahead.
  [[nodiscard]] const VideoStart& start();

  /// From now on packets of other streams need not be read.
  void readOnly(const AVStream& stream);

  /// Begins there; before the first packet is read. Throws Failure if the file can't be sought.
  void startAt(const StartPoint& start);

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

  /// Whether times of the video have jumped back so far; what follows is moved, so that they run
  /// on.
  [[nodiscard]] bool timesJumped() const { return joined_->jumped(); }
  /// A packet or frame of the video, of this time, is damaged; in a transport stream others may be
  /// missing beside it.
  void noteBroken(std::int64_t time);
  /// Whether packets of the video may be missing between these times, as far as it was read.
  [[nodiscard]] bool lacksPackets(std::int64_t from, std::int64_t to) const;

  /// How many streams it had when it was opened.
  [[nodiscard]] unsigned knownStreams() const { return known_; }

  /// Says in a line, once, that no video came for too long.
  void noteAbsence();

  /// The next reads return these packets, which were read before.
  void giveBack(std::vector<Packet> packets);

 private:
  bool readNext(AVPacket& packet);
  [[nodiscard]] int readFrame(AVPacket& packet);
  [[nodiscard]] int readJoined(AVPacket& packet);
  void noteVideo(const AVPacket& packet);
  int readPicture(AVPacket& packet);
  [[nodiscard]] std::string breakOf(int error, const AVPacket& packet);

  const AVInputFormat* findPictures(Options& options);
  void open(const AVInputFormat* demuxer, Options& options);
  void describePictures();

  std::string path_;
  DamageList damage_{path_};
  InputShape shape_;
  std::unique_ptr<SparseFile> sparse_;
  InputContext file_;
  int videoIndex_ = -1;
  unsigned known_ = 0;                   // streams when it was opened
  std::optional<int> only_;              // the stream that is read; none: all
  std::optional<PromisedEnd> promised_;  // none when the video isn't read
  std::int64_t toSkip_ = 0;              // packets of the video
  std::optional<PictureRun> pictures_;
  DPXFacts header_;               // of the first picture
  std::int64_t nextPicture_ = 0;  // counted from the first
  std::deque<Packet> returned_;   // to be read again
  bool isAbsent_ = false;         // the video, for too long
  std::optional<VideoStart> start_;
  std::optional<JoinedTimes> joined_;
  std::deque<std::int64_t> broken_;  // the last times in the video beside which packets are missing
};

}  // namespace nkdraw::media
