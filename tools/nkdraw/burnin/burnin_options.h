// SPDX-License-Identifier: BSD-2-Clause
//
// The command line of `nkdraw burnin`.
#pragma once

#include "burnin/job.h"
#include "burnin/layer_options.h"
#include "burnin/output_options.h"
#include "burnin/overlay_plan.h"
#include "burnin/sequence_options.h"
#include "cli/damage_options.h"
#include "cli/pipe_options.h"
#include "cli/run_options.h"
#include "cli/using_media.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace nkdraw::tool {

struct PatternOptions {
  int width = 1920, height = 1080;
  AVRational rate = {25, 1};
  std::int64_t frames = 250;
};

/// The option of BurninOptions::startTimecode.
inline constexpr char kStartOption[] = "--start-timecode";
/// The option of BurninOptions::recordTimecode.
inline constexpr char kRecordOption[] = "--record-timecode";

/// The request for one run.
struct BurninOptions : RunOptions {
  OnDamage onDamage = OnDamage::kStop;
  std::optional<std::string> input;    // none: the test pattern
  InputShape inputShape;               // what the input does not tell itself
  std::vector<OutputRequest> outputs;  // one or more
  OverlayRequest overlay;
  std::optional<std::string> startTimecode, recordTimecode;
  FrameRange range;
  bool libraryAlpha = false;
  bool still = false;              // the range is one frame, the output a picture
  const Layout* layout = nullptr;  // of the test pattern
  PatternOptions pattern;
  bool listLayouts = false;

  /// The only output, of what is written alone.
  [[nodiscard]] const OutputRequest& output() const { return outputs.front(); }
};

/// The options on the command line.
class BurninArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// The request that they make. Throws Failure for impossible values.
  [[nodiscard]] BurninOptions read() const;

 private:
  void addOverlayTo(CLI::App& group);
  void addLookTo(CLI::App& group);
  void addWritingTo(CLI::App& group);
  void addPatternTo(CLI::App& group);
  void readFiles(BurninOptions& options) const;
  void readOutputs(BurninOptions& options) const;
  void readOverlay(OverlayRequest& overlay) const;
  void readLook(OverlayRequest& overlay) const;
  void readTexts(OverlayRequest& overlay) const;
  void readRange(BurninOptions& options) const;
  void readStill(BurninOptions& options) const;
  void readPattern(BurninOptions& options) const;
  void readPatternShape(PatternOptions& pattern) const;

  std::optional<std::string> input_, output_;  // a single one is the output
  std::vector<std::string> texts_;
  std::optional<std::string> position_, size_, textSize_, startTimecode_, recordTimecode_, frames_,
      still_;
  std::optional<std::string> layout_, patternSize_, patternRate_, patternFrames_;
  LayerArguments layers_;
  OutputArguments outputs_;
  PipeArguments pipes_;
  SequenceArguments sequences_;
  DamageArguments damage_;
  bool ltc_ = false, noLtc_ = false, vitc_ = false, clock_ = false, frameNumber_ = false,
       formatLine_ = false;
  bool fill_ = false, noFill_ = false;
  bool keepAlpha_ = false, markDamage_ = false;
  RunOptions run_;
  bool listLayouts_ = false;
};

}  // namespace nkdraw::tool
