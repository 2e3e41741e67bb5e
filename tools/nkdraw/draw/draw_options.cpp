// SPDX-License-Identifier: BSD-2-Clause
#include "draw/draw_options.h"

#include "cli/option_group.h"
#include "cli/option_values.h"
#include "draw/draw_canvas.h"
#include "media/failure.h"
#include "media/pipe_name.h"

#include <algorithm>
#include <string_view>

namespace nkdraw::tool {
namespace {

constexpr char kDescription[] = "Draw a script, one verb a line, into a frame of any layout.";

constexpr char kMore[] =
    "The frame begins as zero bytes, with white on black as its colours.\n"
    "\n"
    "Examples:\n"
    "  nkdraw draw examples/draw/pie.nkd pie.png --layout bgra --size 320x180\n"
    "  nkdraw draw --clip slate.nkd slate.raw --layout v210 --size 1920x1080\n"
    "  printf 'circle 160 90 80' | nkdraw draw - circle.png --layout uyvy --size 320x180\n"
    "  nkdraw draw --list-verbs\n"
    "\n"
    "Exit status: 0 done, 1 usage, 2 input, 3 output, 4 processing; 129, 130 and 143 interrupted;\n"
    "141 nobody reads the output's pipe. More in nkdraw(1).";

struct UnitRule {
  int columns, rows;  // that a size is a multiple of
  std::string_view advice;
};
/// By Unit.
constexpr UnitRule kUnitRules[] = {{1, 1, ""},
                                   {2, 1, "give an even width: two pixels share their chroma"},
                                   {2, 2, "give an even width and height: cells are 2 by 2"}};

}  // namespace

void DrawArguments::addTo(CLI::App& command) {
  describe(command, kDescription, kMore);
  OptionGroup plain(command);
  plain.add("SCRIPT", plain_.script, "", "What to draw; - is the standard input");
  plain.add("OUTPUT", plain_.output, "",
            "A picture, .png, or the frame's bytes, .raw; - is the\nstandard output");
  plain.add("--layout", layout_, "NAME", "The frame's layout; see --list-layouts");
  plain.add("--size", size_, "WxH", "The frame's size, 1x1 to 8192x8192");
  plain.add("--format", format_, "png|rawvideo",
            "What to write (by OUTPUT's suffix; png for a pipe)");
  plain.addFlag("--clip", plain_.clip,
                "Leave out what lies outside the frame, instead of refusing it");
  plain.addFlag("--overwrite", plain_.overwrite, "Replace OUTPUT if it exists");
  plain.addFlag("--list-layouts", plain_.listLayouts, "List the layouts");
  plain.addFlag("--list-verbs", plain_.listVerbs, "List the verbs");
  plain.addFlag("-v,--verbose", plain_.verbose, "Say more, with FFmpeg's messages");
}

DrawOptions DrawArguments::read() const {
  DrawOptions options = plain_;
  if (options.listLayouts || options.listVerbs)
    return options;
  if (options.script.empty() || options.output.empty())
    throw Failure(ExitCode::kUsage, "no files named", "nkdraw draw",
                  "give SCRIPT and OUTPUT; see nkdraw draw --help");
  options.raw = isRaw(options.output);
  if (!layout_)
    throw Failure(ExitCode::kUsage, "no layout", "nkdraw draw",
                  "give --layout NAME; see nkdraw draw --list-layouts");
  options.layout = &drawLayoutNamed(*layout_);
  readSize(options);
  return options;
}

bool DrawArguments::isRaw(const std::string& output) const {
  const bool rawName = output.ends_with(".raw");
  if (format_) {
    if (*format_ != "png" && *format_ != "rawvideo")
      badValue("--format", *format_, "give png or rawvideo");
    return *format_ == "rawvideo";
  }
  if (!rawName && !output.ends_with(".png") && !isPipedOutput(output))
    throw Failure(ExitCode::kUsage, "no such kind of output", output,
                  "name an output that ends in .png or .raw");
  return rawName;
}

void DrawArguments::readSize(DrawOptions& options) const {
  if (!size_)
    throw Failure(ExitCode::kUsage, "no size", "nkdraw draw", "give --size WxH");
  std::string_view left = *size_;
  const auto size = takePair(left, 'x');
  if (!size || !left.empty() || std::min(size->x, size->y) < 1 ||
      std::max(size->x, size->y) > kLargestCanvas)
    badValue("--size", *size_, "write WxH, 1x1 to 8192x8192");
  const UnitRule& rule = kUnitRules[static_cast<std::size_t>(options.layout->unit)];
  if (size->x % rule.columns != 0 || size->y % rule.rows != 0)
    throw Failure(ExitCode::kUsage, "not a size of " + std::string(options.layout->name), *size_,
                  std::string(rule.advice));
  options.width = size->x;
  options.height = size->y;
}

}  // namespace nkdraw::tool
