// SPDX-License-Identifier: BSD-2-Clause
//
// The command line of `nkdraw wipe`.
#pragma once

#include "cli/damage_options.h"
#include "cli/pipe_options.h"
#include "cli/run_options.h"
#include "cli/using_media.h"
#include "media/audio_join.h"
#include "media/encoder.h"

#include <cstdint>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

/// The request for one run.
struct WipeOptions : RunOptions {
  OnDamage onDamage = OnDamage::kStop;
  InputShape inputShape;              // what a piped input does not tell itself
  std::optional<std::string> format;  // of the output; none: by its name
  std::string a, b, output;
  std::uint32_t word = 0;    // the wipe; bit 31 exchanges the inputs
  bool backwards = false;    // the pattern runs from its end to its beginning
  bool classic = false;      // 8 bits of v210, edges within pairs, mixes rounded down
  std::string at, duration;  // times, which become frames once the frame rate is known
  AudioRequest audio = {AudioMode::kCrossfade, {"--audio-codec", {}}, "--audio none"};
  CodecRequest codec = {"--codec", {}};
  bool list = false;
};

/// The options on the command line.
class WipeArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// The request that they make. Throws Failure for impossible values.
  [[nodiscard]] WipeOptions read() const;

 private:
  void addTransitionTo(CLI::App& command);
  void addWritingTo(CLI::App& command);
  [[nodiscard]] std::uint32_t readWord() const;

  WipeOptions plain_;  // values that need no interpretation
  std::string wipe_ = "dissolve", audio_ = "crossfade", codec_, audioCodec_;
  PipeArguments pipes_;
  DamageArguments damage_;
  bool swap_ = false, noAudio_ = false;
};

}  // namespace nkdraw::tool
