// SPDX-License-Identifier: BSD-2-Clause
#include "wipe/wipe_options.h"

#include "cli/option_group.h"
#include "cli/option_values.h"
#include "media/failure.h"
#include "wipe/wipe_names.h"

#include <nkdraw/constants.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::tool {
namespace {

constexpr char kDescription[] = "Join two clips by a wipe.";

constexpr char kMore[] =
    "A plays until --at; for --duration the wipe runs from A's frames to B's first ones; then B\n"
    "plays on. Frame i of a transition of n frames shows progress i / (n + 1), from 1 to n, so\n"
    "that each of them shows both clips. Every bit of both clips is kept, and cross-fades are\n"
    "rounded to the nearest value. Uncompressed frames outside the transition are copied\n"
    "bit for bit; other video is decoded and encoded: without loss where OUTPUT can hold that,\n"
    "else by its usual codec, or by --codec. Streams other than A's and B's video and sound are\n"
    "left out, which a note says.\n"
    "\n"
    "Examples:\n"
    "  nkdraw wipe a.mov b.mov joined.mov --wipe iris --at 4.5 --duration 25f\n"
    "      An iris of 25 frames, from four and a half seconds on.\n"
    "  nkdraw wipe a.mov b.mov out.mp4 --at 00:00:10:00 --duration 1 --codec libx264:crf=18 \\\n"
    "      --audio-codec aac\n"
    "      A cross-fade of one second into a viewing copy.\n"
    "  nkdraw wipe --list\n"
    "\n"
    "Exit status: 0 done, 1 usage, 2 input, 3 output, 4 processing, 5 done, but frames of the\n"
    "input are damaged; 129, 130 and 143 interrupted; 141 nobody reads the\n"
    "output's pipe. More in nkdraw(1).";

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
  describe(command, kDescription, kMore);
  OptionGroup plain(command);
  plain.add("A", plain_.a, "", "The clip that plays first");
  plain.add("B", plain_.b, "", "The clip that follows, of the same size and rate");
  plain.add("OUTPUT", plain_.output, "", "The clip to write; its suffix says what kind of file");
  addTransitionTo(command);
  addWritingTo(command);
  damage_.addTo(command);
  pipes_.addTo(command);
  plain.addFlag("--list", plain_.list, "List the wipes");
  plain.addFlag("-v,--verbose", plain_.verbose, "Say more, with FFmpeg's messages");
}

void WipeArguments::addTransitionTo(CLI::App& command) {
  OptionGroup group(command, "The transition");
  group.add("--wipe", wipe_, "NAME|NUMBER", "The wipe, by name or number (dissolve); see --list");
  group.add("--at", plain_.at, "TIME",
            "Where in A it begins: a timecode of A (HH:MM:SS:FF), or\n"
            "from its first frame seconds (1.5), frames (25f) or\n"
            "HH:MM:SS.mmm");
  group.add("--duration", plain_.duration, "TIME", "How long it lasts");
  group.addFlag("--reverse", plain_.backwards,
                "Run the pattern from its end to its beginning, with A\n"
                "where B would be; not for slides");
  group.addFlag("--swap", swap_,
                "Change the places of A and B in the pattern: it goes from\n"
                "B to A (bit 31 of the wipe); not for slides");
  group.addFlag("--classic", plain_.classic,
                "Wipe as the library's older calls do: v210 in 8 bits,\n"
                "edges within pairs of 4:2:2, cross-fades rounded down");
}

void WipeArguments::addWritingTo(CLI::App& command) {
  OptionGroup group(command, "What is written");
  group.add("--audio", audio_, "HOW",
            "The sound: crossfade during the transition (default),\n"
            "cut in its middle, or none");
  group.addFlag("--no-audio", noAudio_, "The same as --audio none");
  group.add("--audio-codec", audioCodec_, "NAME[:KEY=VALUE...]",
            "Encode sound with this encoder of FFmpeg (PCM, or what\nsuits the kind of file)");
  group.add("--codec", codec_, "NAME[:KEY=VALUE...]",
            "Encode video with this encoder of FFmpeg (losslessly,\n"
            "by layout and kind of file; else its usual codec)");
  addProgress(group, plain_);
  group.addFlag("--overwrite", plain_.overwrite, "Replace OUTPUT if it exists");
  addDryRun(group, plain_);
}

WipeOptions WipeArguments::read() const {
  WipeOptions options = plain_;
  options.audio.mode = noAudio_ ? AudioMode::kNone : readAudio(audio_);
  if (noAudio_ && (audio_ != "crossfade" || !audioCodec_.empty()))
    throw Failure(
        ExitCode::kUsage, "options that exclude each other",
        std::string(audioCodec_.empty() ? "--audio" : "--audio-codec") + " and --no-audio",
        "give one of them");
  if (options.list)
    return options;
  checkRun(options);
  if (options.a.empty() || options.b.empty() || options.output.empty())
    throw Failure(ExitCode::kUsage, "a file name is missing", "nkdraw wipe",
                  "give A, B and OUTPUT; see nkdraw wipe --help");
  if (options.at.empty() || options.duration.empty())
    throw Failure(ExitCode::kUsage, "the transition has no time",
                  options.at.empty() ? "--at" : "--duration",
                  "give both, for example --at 4.5 --duration 25f");
  options.inputShape = pipes_.input();
  options.format = pipes_.format();
  options.onDamage = damage_.read();
  options.word = readWord();
  options.codec.asked = given(codec_);
  options.audio.codec.asked = given(audioCodec_);
  return options;
}

std::uint32_t WipeArguments::readWord() const {
  const std::uint32_t number = readWipe(wipe_, "--wipe");
  if (isSlide(number) && (swap_ || plain_.backwards))
    badValue("--wipe", wipe_, "slides run one way only: leave --swap and --reverse out");
  // A pattern that runs backwards shows B as the pattern's outgoing picture, so the clips are
  // exchanged.
  return number | (swap_ != plain_.backwards ? NKWipeSwap : 0);
}

}  // namespace nkdraw::tool
