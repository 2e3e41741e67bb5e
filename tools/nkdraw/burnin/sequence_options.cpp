// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/sequence_options.h"

#include "cli/option_group.h"
#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/failure.h"
#include "media/image_sequence.h"
#include "media/picture_kind.h"
#include "media/pipe_name.h"

#include <limits>

namespace nkdraw::tool {
namespace {

constexpr char kOption[] = "--start-number";

}  // namespace

void SequenceArguments::addTo(CLI::App& command) {
  OptionGroup group(command, "Image sequences, such as frame%04d.dpx");
  group.add(kOption, startNumber_, "N",
            "Number of INPUT's first picture (the lowest that there\n"
            "is), or OUTPUT's if INPUT is none (the frame's number)");
}

std::optional<std::int64_t> SequenceArguments::startNumber(const std::string& input,
                                                           const std::string& output) const {
  if (!startNumber_)
    return std::nullopt;
  if (!isSequenceName(input) && !isSequenceName(output))
    badValue(kOption, *startNumber_, "leave it out: neither file is an image sequence");
  return readNumber(kOption, *startNumber_, 0, std::numeric_limits<int>::max(),
                    "write the number of a picture");
}

void checkPictureName(const std::string& output, bool still) {
  if (isPipedOutput(output))
    return;
  const PictureKind* const kind = pictureKindOf(output);
  if (still && (kind == nullptr || !kind->still))
    throw Failure(ExitCode::kUsage, "the output's suffix names no kind of still", output,
                  "name an output that ends in .png, .tif, .dpx or .jpg");
  if (still || kind == nullptr || isSequenceName(output))
    return;
  const std::string suffix(kind->sequence ? kind->suffix : "png");
  throw Failure(ExitCode::kUsage, "a picture needs a frame", output,
                "give --still N, or name a sequence such as frame%04d." + suffix);
}

}  // namespace nkdraw::tool
