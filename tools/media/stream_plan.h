// SPDX-License-Identifier: BSD-2-Clause
//
// What becomes of each stream of a clip in a file of another kind: it is copied, converted, or left
// out because the user says so. Nothing is lost otherwise.
#pragma once

#include "media/encoder.h"
#include "media/libav.h"
#include "media/media_input.h"

#include <optional>
#include <string>
#include <vector>

namespace nkdraw::media {

/// What happens to a stream of the input.
enum class StreamAction {
  kBurn,      ///< it is the video that is drawn on
  kCopy,      ///< its packets are copied
  kConvert,   ///< it is decoded and encoded
  kChapters,  ///< it holds the names of the chapters, which are written or left out
  kTimecode,  ///< its timecode is written as the video's, which makes a new track where there are
              ///< any
  kLeaveOut,  ///< it is not written
};

/// What a user asks of the streams beside the video, for one output.
struct StreamRequest {
  CodecRequest audio = {"--audio-codec", {}};  ///< "copy" is a name, too
  bool keepAAC = false;                        ///< AAC stays, whatever `audio` says
  bool noAudio = false;
  bool noSubtitles = false;
  bool noData = false;           ///< data, attachments and cover pictures
  bool timecodeInVideo = false;  ///< the encoded video tells it, whatever the kind of file
};

/// One stream's action.
struct StreamPlan {
  StreamAction action = StreamAction::kLeaveOut;
  std::string reason;      ///< of kConvert and kLeaveOut, and of chapters that are left out
  CodecChoice codec = {};  ///< of kConvert
};

/// One plan for each stream. Throws Failure if a stream would be lost that the request doesn't
/// leave out; the failure names the option that does.
[[nodiscard]] std::vector<StreamPlan> planStreams(MediaInput& input, const AVOutputFormat& format,
                                                  const StreamRequest& request);

/// "converted to aac: mp4 files do not keep pcm_s16le"
[[nodiscard]] std::string planText(const StreamPlan& plan);

}  // namespace nkdraw::media
