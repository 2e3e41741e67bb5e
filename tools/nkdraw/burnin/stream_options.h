// SPDX-License-Identifier: BSD-2-Clause
//
// The options for the streams beside the video.
#pragma once

#include "cli/using_media.h"
#include "media/stream_plan.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

class StreamArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// The request that they make. Throws Failure for options that exclude each other, and for any
  /// if nothing that they could apply to is written.
  [[nodiscard]] StreamRequest read(bool hasStreams) const;

 private:
  std::optional<std::string> audioCodec_;
  bool noAudio_ = false, noSubtitles_ = false, noData_ = false;
};

}  // namespace nkdraw::tool
