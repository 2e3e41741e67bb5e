// SPDX-License-Identifier: BSD-2-Clause
//
// The command line of `nkdraw wipe`.
#pragma once

#include "cli/run_options.h"
#include "cli/using_media.h"
#include "media/audio_join.h"
#include "media/encoder.h"

#include <cstdint>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

/// What a run was asked for.
struct WipeOptions : RunOptions {
  std::string a, b, output;
  std::uint32_t word = 0;    // the wipe, with bit 31 when the inputs change places
  bool backwards = false;    // the pattern runs from its end to its beginning
  std::string at, duration;  // times, which only a frame rate makes frames of
  AudioRequest audio = {AudioMode::kCrossfade, {"--audio-codec", {}}, "--audio none"};
  CodecRequest codec = {"--codec", {}};
  bool list = false;
};

/// The options as they stand on the command line.
class WipeArguments {
 public:
  /// Puts them on the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// What they mean. Throws Failure for values that can't be.
  [[nodiscard]] WipeOptions read() const;

 private:
  void addTransitionTo(CLI::App& command);
  void addWritingTo(CLI::App& command);
  [[nodiscard]] std::uint32_t readWord() const;

  WipeOptions plain_;  // what the command line says without being read
  std::string wipe_ = "dissolve", audio_ = "crossfade", codec_, audioCodec_;
  bool swap_ = false;
};

}  // namespace nkdraw::tool
