// SPDX-License-Identifier: BSD-2-Clause
//
// The command line of `nkdraw wipe`.
#pragma once

#include "cli/using_media.h"
#include "media/audio_join.h"

#include <cstdint>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

/// What a run was asked for.
struct WipeOptions {
  std::string a, b, output;
  std::uint32_t word = 0;    // the wipe, with bit 31 when the inputs change places
  bool backwards = false;    // the pattern runs from its end to its beginning
  std::string at, duration;  // times, which only a frame rate makes frames of
  AudioMode audio = AudioMode::kCrossfade;
  std::optional<std::string> codec, audioCodec;
  bool overwrite = false, dryRun = false, list = false, verbose = false;
};

/// The options as they stand on the command line.
class WipeArguments {
 public:
  /// Puts them on the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// What they mean. Throws Failure for values that can't be.
  [[nodiscard]] WipeOptions read() const;

 private:
  std::string a_, b_, output_, wipe_ = "dissolve", at_, duration_, audio_ = "crossfade", codec_,
                               audioCodec_;
  bool swap_ = false, reverse_ = false;
  bool overwrite_ = false, dryRun_ = false, list_ = false, verbose_ = false;
};

}  // namespace nkdraw::tool
