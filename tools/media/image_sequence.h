// SPDX-License-Identifier: BSD-2-Clause
//
// Image sequences: numbered pictures that share a name, such as "shot/frame%04d.dpx".
#pragma once

#include "media/libav.h"

#include <cstdint>
#include <optional>
#include <string>

namespace nkdraw::media {

/// Frames a second, unless told otherwise: pictures don't tell.
inline constexpr AVRational kUsualSequenceRate = {24, 1};

/// Whether this is the name of a sequence: a picture's, with one "%d" or "%04d" behind the last
/// folder.
[[nodiscard]] bool isSequenceName(const std::string& path);

/// The name of one picture. `path` must be the name of a sequence.
[[nodiscard]] std::string pictureName(const std::string& path, std::int64_t number);

/// Pictures that follow each other without a gap.
struct PictureRun {
  std::int64_t first = 0, count = 0;
  bool gap = false;          ///< whether there are pictures with higher numbers
  AVRational rate = {0, 1};  ///< frames a second, if a picture tells

  [[nodiscard]] std::int64_t end() const { return first + count; }
};

/// The pictures on disk from `first` on; without it from the lowest number that there is. None has
/// the count 0.
[[nodiscard]] PictureRun findPictures(const std::string& path, std::optional<std::int64_t> first);

/// The lowest number on disk from `first` on.
[[nodiscard]] std::optional<std::int64_t> lowestPicture(const std::string& path,
                                                        std::int64_t first);

/// FFmpeg's reader of sequences, and the options to open it with for these pictures.
[[nodiscard]] const AVInputFormat* sequenceDemuxer(const PictureRun& pictures, AVRational rate,
                                                   Options& options);
/// The name that it opens.
[[nodiscard]] std::string sequenceUrl(const std::string& path);

/// FFmpeg's kind of output for pictures.
[[nodiscard]] const AVOutputFormat& sequenceFormat();

}  // namespace nkdraw::media
