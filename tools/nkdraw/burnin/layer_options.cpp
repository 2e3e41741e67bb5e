// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/layer_options.h"

#include "burnin/layer_sources.h"
#include "cli/option_group.h"
#include "cli/option_values.h"
#include "media/failure.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace nkdraw::tool {
namespace {

constexpr std::size_t kOptionChannels = 4;  // the text channels are left to the settings
constexpr unsigned kFirstOfSecondField = 3, kLastOfSecondField = 4;  // T1 and T2 are of the first
constexpr unsigned kThirdText = 7;

unsigned readChannel(const std::string& value) {
  const auto channels = std::span(kCaptionChannels).first<kOptionChannels>();
  const auto found =
      std::ranges::find_if(channels, [&](const char* name) { return isSameName(name, value); });
  if (found == channels.end())
    badValue("--caption-channel", value, "give CC1, CC2, CC3 or CC4");
  return static_cast<unsigned>(found - channels.begin()) + 1;
}

/// An option without effect is an error.
void checkUsed(bool used, const std::string& option, const std::string& needed) {
  if (!used)
    throw Failure(ExitCode::kUsage, "an option without what it is for", option, "give " + needed);
}

bool isOfSecondField(unsigned source) {
  return (source >= kFirstOfSecondField && source <= kLastOfSecondField) || source >= kThirdText;
}

}  // namespace

void LayerArguments::addTo(CLI::App& command) {
  OptionGroup group(command, "More layers");
  group.add("--settings", settings_, "store|FILE.ini",
            "Begin with the overlay's settings in its store (see\n"
            "nkdraw config) or in an INI file; options come on top");
  group.add("--watermark", watermark_, "FILE", "A picture, blended in by its own alpha");
  group.add("--watermark-at", watermarkAt_, "X,Y", "Its upper left corner (400,400 unless set)");
  group.addFlag("--captions", captions_, "The closed captions that the video brings");
  group.add("--captions-file", captionsFile_, "FILE.scc", "Captions from a Scenarist file");
  group.add("--caption-channel", captionChannel_, "CHANNEL", "CC1 to CC4 (CC1 unless set)");
  group.addFlag("--meters", meters_, "Level meters of the clip's first sound, up to 8 channels");
  group.add("--meters-at", metersAt_, "X,Y", "Their upper left corner (20,100 unless set)");
}

OverlaySettings LayerArguments::settings() const {
  if (settings_ && settings_->empty())
    badValue("--settings", "", "give store or the name of an INI file");
  return settings_ ? loadSettings(*settings_) : plainSettings();
}

void LayerArguments::apply(const OverlaySettings& settings, OverlayRequest& overlay) const {
  checkUsed(watermark_ || !watermarkAt_, "--watermark-at", "--watermark");
  if (watermark_) {
    const Point at =
        watermarkAt_ ? readPoint("--watermark-at", *watermarkAt_) : settings.watermarkAt;
    overlay.watermark = {*watermark_, at, watermarkSize(*watermark_)};
  }
  if (meters_)
    overlay.meters = settings.metersAt;
  checkUsed(overlay.meters || !metersAt_, "--meters-at", "--meters");
  if (metersAt_)
    overlay.meters = readPoint("--meters-at", *metersAt_);
  applyCaptions(settings.captionSource, overlay);
}

void LayerArguments::applyCaptions(unsigned source, OverlayRequest& overlay) const {
  if (captions_ && captionsFile_)
    throw Failure(ExitCode::kUsage, "options that exclude each other",
                  "--captions and --captions-file", "give one of them");
  if ((captions_ || captionsFile_) && !overlay.captions)
    overlay.captions = {{}, source, true};
  checkUsed(overlay.captions || !captionChannel_, "--caption-channel",
            "--captions or --captions-file");
  if (!overlay.captions)
    return;
  overlay.captions->file = captionsFile_;
  if (captionChannel_)
    overlay.captions->source = readChannel(*captionChannel_);
  if (captionsFile_ && isOfSecondField(overlay.captions->source))
    throw Failure(ExitCode::kUsage, "a Scenarist file holds the first field's captions alone",
                  captionChannel_.value_or("CaptionSource"), "give --caption-channel CC1 or CC2");
}

}  // namespace nkdraw::tool
