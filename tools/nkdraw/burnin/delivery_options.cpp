// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/delivery_options.h"

#include "cli/option_group.h"
#include "cli/option_values.h"
#include "media/failure.h"

namespace nkdraw::tool {
namespace {

constexpr char kCodec[] = "--codec";
constexpr char kLossless[] = "--lossless";
constexpr char kViewingCopy[] = "--viewing-copy";
constexpr char kContainerOption[] = "--container-option";

}  // namespace

void DeliveryArguments::addTo(CLI::App& command) {
  OptionGroup group(command, "How it is encoded");
  group.add(kCodec, codec_, "NAME[:KEY=VALUE...]",
            "Encode with this encoder of FFmpeg (the input's codec,\n"
            "profile and bit rate; else what suits the kind of file)");
  group.addFlag(kLossless, lossless_, "Uncompressed or FFV1, by layout and kind of file");
  group.addFlag(kViewingCopy, viewingCopy_,
                "H.264 4:2:0 that browsers play, with the index in front");
  group.add(kContainerOption, containerOptions_, "KEY=VALUE",
            "An option of FFmpeg's muxer; may be repeated");
}

void DeliveryArguments::checkStill() const {
  constexpr char kAdvice[] = "leave it out: the suffix of a still says what it is";
  if (codec_)
    badValue(kCodec, *codec_, kAdvice);
  for (const auto& [given, option] : {std::pair{lossless_, kLossless},
                                      {viewingCopy_, kViewingCopy},
                                      {!containerOptions_.empty(), kContainerOption}}) {
    if (given)
      throw Failure(ExitCode::kUsage, "an option without what it is for", option, kAdvice);
  }
}

void DeliveryArguments::checkOneWay() const {
  const int ways = (codec_ ? 1 : 0) + (lossless_ ? 1 : 0) + (viewingCopy_ ? 1 : 0);
  if (ways > 1)
    throw Failure(ExitCode::kUsage, "options that exclude each other",
                  std::string(kCodec) + ", " + kLossless + " and " + kViewingCopy,
                  "give one of them");
}

OutputRequest DeliveryArguments::read(const std::string& path, bool isStill) const {
  if (codec_ && codec_->empty())
    badValue(kCodec, "", "see ffmpeg -encoders");
  if (isStill)
    checkStill();
  checkOneWay();
  for (const std::string& option : containerOptions_) {
    if (const auto equals = option.find('='); equals == 0 || equals == std::string::npos)
      badValue(kContainerOption, option, "write KEY=VALUE; see ffmpeg -h muxer=NAME");
  }
  OutputRequest request;
  request.path = path;
  request.codec.asked = codec_;
  request.lossless = lossless_;
  request.viewingCopy = viewingCopy_;
  request.containerOptions = containerOptions_;
  return request;
}

}  // namespace nkdraw::tool
