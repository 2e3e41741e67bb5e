// SPDX-License-Identifier: BSD-2-Clause
#include "wipe/wipe_options.h"

#include "cli/option_values.h"
#include "media/failure.h"
#include "wipe/wipe_names.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::tool {
namespace {

constexpr char kDescription[] = "Join two clips by a wipe.";

constexpr char kMore[] =
    "A plays until --at; for --duration the wipe runs from A's frames to B's first ones; then B\n"
    "plays on. Frame i of a transition of n frames shows progress i / (n + 1), from 1 to n, so\n"
    "that each of them shows both clips. Uncompressed frames outside the transition are copied\n"
    "bit for bit; other video is decoded and encoded, losslessly unless --codec says otherwise.\n"
    "\n"
    "Examples:\n"
    "  nkdraw wipe a.mov b.mov joined.mov --wipe iris --at 4.5 --duration 25f\n"
    "      An iris of 25 frames, from four and a half seconds on.\n"
    "  nkdraw wipe a.mov b.mov out.mp4 --at 00:00:10:00 --duration 1 --codec libx264:crf=18 \\\n"
    "      --audio-codec aac\n"
    "      A cross-fade of one second into a viewing copy.\n"
    "  nkdraw wipe --list\n"
    "\n"
    "Exit status: 0 done, 1 usage, 2 input, 3 output, 4 processing; 129, 130 and 143\n"
    "interrupted. More in nkdraw(1).";

struct AudioName {
  std::string_view name;
  AudioMode mode;
};
constexpr AudioName kAudioNames[] = {
    {"crossfade", AudioMode::kCrossfade}, {"cut", AudioMode::kCut}, {"none", AudioMode::kNone}};

AudioMode readAudio(const std::string& text) {
  const auto* const row = std::ranges::find_if(
      kAudioNames, [&](const AudioName& each) { return isSameName(each.name, text); });
  if (row == std::end(kAudioNames))
    badValue("--audio", text, "give crossfade, cut or none");
  return row->mode;
}

}  // namespace

void WipeArguments::addTo(CLI::App& command) {
  command.description(kDescription);
  command.footer(kMore);
  command.add_option("A", a_, "The clip that plays first")->type_name("");
  command.add_option("B", b_, "The clip that follows, of the same size and rate")->type_name("");
  command.add_option("OUTPUT", output_, "The clip to write; its suffix says what kind of file")
      ->type_name("");

  constexpr char kTransition[] = "The transition";
  command.add_option("--wipe", wipe_, "The wipe, by name or number (dissolve); see --list")
      ->type_name("NAME|NUMBER")
      ->group(kTransition);
  command
      .add_option("--at", at_,
                  "Where in A it begins: seconds (1.5), frames (25f),\n"
                  "HH:MM:SS:FF or HH:MM:SS.mmm from A's first frame")
      ->type_name("TIME")
      ->group(kTransition);
  command.add_option("--duration", duration_, "How long it lasts")
      ->type_name("TIME")
      ->group(kTransition);
  command
      .add_flag("--reverse", reverse_,
                "Run the pattern from its end to its beginning, with A\n"
                "where B would be; not for slides")
      ->group(kTransition);
  command
      .add_flag("--swap", swap_,
                "Change the places of A and B in the pattern: it goes from\n"
                "B to A (bit 31 of the wipe); not for slides")
      ->group(kTransition);

  constexpr char kWriting[] = "What is written";
  command
      .add_option("--audio", audio_,
                  "The sound: crossfade during the transition (default),\n"
                  "cut in its middle, or none")
      ->type_name("HOW")
      ->group(kWriting);
  command
      .add_option("--audio-codec", audioCodec_, "Encode sound with this encoder of FFmpeg (PCM)")
      ->type_name("NAME[:KEY=VALUE...]")
      ->group(kWriting);
  command
      .add_option("--codec", codec_,
                  "Encode video with this encoder of FFmpeg (losslessly,\n"
                  "by layout and kind of file)")
      ->type_name("NAME[:KEY=VALUE...]")
      ->group(kWriting);
  command.add_flag("--overwrite", overwrite_, "Replace OUTPUT if it exists")->group(kWriting);
  command.add_flag("--dry-run", dryRun_, "Say what would be done and write nothing")
      ->group(kWriting);
  command.add_flag("--list", list_, "List the wipes");
  command.add_flag("-v,--verbose", verbose_, "Say more, with FFmpeg's messages");
}

WipeOptions WipeArguments::read() const {
  WipeOptions options = {.a = a_,
                         .b = b_,
                         .output = output_,
                         .word = 0,
                         .backwards = reverse_,
                         .at = at_,
                         .duration = duration_,
                         .audio = readAudio(audio_),
                         .codec = {},
                         .audioCodec = {},
                         .overwrite = overwrite_,
                         .dryRun = dryRun_,
                         .list = list_,
                         .verbose = verbose_};
  if (list_)
    return options;
  if (a_.empty() || b_.empty() || output_.empty())
    throw Failure(ExitCode::kUsage, "a file name is missing", "nkdraw wipe",
                  "give A, B and OUTPUT; see nkdraw wipe --help");
  if (at_.empty() || duration_.empty())
    throw Failure(ExitCode::kUsage, "the transition has no time",
                  at_.empty() ? "--at" : "--duration",
                  "give both, for example --at 4.5 --duration 25f");
  const std::uint32_t number = readWipe(wipe_, "--wipe");
  if (isSlide(number) && (swap_ || reverse_))
    badValue("--wipe", wipe_, "slides run one way only: leave --swap and --reverse out");
  // Backwards the pattern's outgoing picture is the one that comes.
  options.word = number | (swap_ != reverse_ ? NKWipeSwap : 0);
  if (!codec_.empty())
    options.codec = codec_;
  if (!audioCodec_.empty())
    options.audioCodec = audioCodec_;
  return options;
}

}  // namespace nkdraw::tool
