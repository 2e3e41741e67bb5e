// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/overlay_settings.h"

#include "cli/library_log.h"
#include "media/failure.h"

#include <nkdraw/overlay/overlay.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <strings.h>

namespace nkdraw::tool {
namespace {

constexpr char kStore[] = "store";
constexpr char kSection[] = "[nkoverlay]";
constexpr std::size_t kTextMemory = 128;  // the memory that the library reads a text into
constexpr unsigned kCaptionSources = 8, kCharactersAlone = 2;

class Loader : private CNkOverlay {
 public:
  using CNkOverlay::LoadConfigINI;

  /// The library reads texts only into existing memory.
  void loadStore() {
    for (auto& text : CustomText)
      text = new char[kTextMemory]();
    LoadConfig();
  }
  [[nodiscard]] OverlaySettings places() const {
    OverlaySettings settings;
    settings.watermarkAt = {WatermarkX, WatermarkY};
    settings.metersAt = {AudioX, AudioY};
    settings.captionSource =
        CaptionSource >= 1 && CaptionSource <= kCaptionSources ? CaptionSource : 1;
    return settings;
  }
  [[nodiscard]] OverlaySettings settings() const {
    OverlaySettings settings = places();
    OverlayRequest& request = settings.request;
    request.ltc = TimeCodeLTCEnable != 0;
    request.vitc = TimeCodeVITCEnable != 0;
    request.clock = TimeCodeVsyncEnable != 0;
    request.position = {TimeCodeX, TimeCodeY};
    request.size = TimeCodeSize;
    request.fill = FillBackground == 1;
    request.formatLine = SourceFormatEnable != 0;
    request.formatAt = {SourceFormatX, SourceFormatY};
    for (std::size_t slot = 0; slot < kMostTexts; ++slot)
      addText(request, slot);
    if (AudioEnable != 0)
      request.meters = settings.metersAt;
    if (CaptionsEnable != 0)
      request.captions = {{}, settings.captionSource, CaptionsEnable != kCharactersAlone};
    return settings;
  }

 private:
  void addText(OverlayRequest& request, std::size_t slot) const {
    const char* const text = CustomText[slot];
    if (CustomTextEnabled[slot] != 0 && text != nullptr && *text != '\0')
      request.texts.push_back({{CustomTextX[slot], CustomTextY[slot]}, text});
  }
};

/// Gives the library only lines that it reads as settings.
void checkIni(const std::string& path) {
  std::error_code ignored;
  std::ifstream file(path);
  if (!std::filesystem::is_regular_file(path, ignored) || !file)
    throw Failure(ExitCode::kInput, "cannot read the settings", path,
                  "name an INI file, or store for nkdraw's own store");
  for (std::string line; std::getline(file, line);) {
    if (strncasecmp(line.c_str(), kSection, std::strlen(kSection)) == 0)
      return;
  }
  throw Failure(ExitCode::kInput, "no settings in the file", path,
                std::string("they stand below a line ") + kSection);
}

}  // namespace

OverlaySettings plainSettings() {
  return Loader().places();
}

OverlaySettings loadSettings(const std::string& source) {
  Loader loader;
  if (source != kStore) {
    checkIni(source);
    loader.LoadConfigINI(source.c_str());
    return loader.settings();
  }
  const LibraryLog log;
  loader.loadStore();
  if (!log.last().empty())
    throw Failure(ExitCode::kInput, "the settings can't be loaded", log.last(),
                  "see nkdraw config list");
  return loader.settings();
}

}  // namespace nkdraw::tool
