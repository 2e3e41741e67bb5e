// SPDX-License-Identifier: BSD-2-Clause
#include "media/light_levels.h"

extern "C" {
#include <libavutil/mastering_display_metadata.h>
}

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string>
#include <string_view>

namespace nkdraw::media {
namespace {

struct LightLevel {
  AVFrameSideDataType inFrame;
  AVPacketSideDataType inStream;
};
constexpr LightLevel kLightLevels[] = {
    {AV_FRAME_DATA_MASTERING_DISPLAY_METADATA, AV_PKT_DATA_MASTERING_DISPLAY_METADATA},
    {AV_FRAME_DATA_CONTENT_LIGHT_LEVEL, AV_PKT_DATA_CONTENT_LIGHT_LEVEL},
};

/// How an encoder's options write them.
struct Notation {
  std::string_view encoder;
  const char* key;      // of its parameters
  const char* display;  // the names of the two
  const char* light;
  int chromaticity, luminance;  // what 1 counts as
  int decimals;
};
constexpr Notation kNotations[] = {
    {"libx265", "x265-params", "master-display", "max-cll", 50000, 10000, 0},
    {"libsvtav1", "svtav1-params", "mastering-display", "content-light", 1, 1, 5},
};

std::string pairText(const char* name, const AVRational (&pair)[2], int unit, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%s(%.*f,%.*f)", name, decimals, av_q2d(pair[0]) * unit,
                decimals, av_q2d(pair[1]) * unit);
  return text;
}

std::string displayText(const AVMasteringDisplayMetadata& display, const Notation& notation) {
  const auto& [red, green, blue] = display.display_primaries;
  const AVRational luminance[2] = {display.max_luminance, display.min_luminance};
  const auto text = [&](const char* name, const AVRational(&pair)[2], int unit) {
    return pairText(name, pair, unit, notation.decimals);
  };
  return text("G", green, notation.chromaticity) + text("B", blue, notation.chromaticity) +
         text("R", red, notation.chromaticity) +
         text("WP", display.white_point, notation.chromaticity) +
         text("L", luminance, notation.luminance);
}

template <class Data>
const Data* dataOf(const AVFrame& frame, AVFrameSideDataType type) {
  const AVFrameSideData* const side = av_frame_get_side_data(&frame, type);
  return side != nullptr ? reinterpret_cast<const Data*>(side->data) : nullptr;
}

/// "master-display=...:max-cll=..."; empty without any.
std::string parameters(const AVFrame& frame, const Notation& notation) {
  std::string text;
  const auto* const display =
      dataOf<AVMasteringDisplayMetadata>(frame, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA);
  if (display != nullptr && display->has_primaries != 0 && display->has_luminance != 0)
    text.append(notation.display).append("=").append(displayText(*display, notation));
  const auto* const light =
      dataOf<AVContentLightMetadata>(frame, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL);
  if (light == nullptr)
    return text;
  if (!text.empty())
    text.append(":");
  text.append(notation.light).append("=").append(std::to_string(light->MaxCLL));
  text.append(",").append(std::to_string(light->MaxFALL));
  return text;
}

}  // namespace

void copyLightLevels(const AVFrame& frame, AVStream& to) {
  for (const auto& [inFrame, inStream] : kLightLevels) {
    const AVFrameSideData* const data = av_frame_get_side_data(&frame, inFrame);
    if (data == nullptr || av_stream_get_side_data(&to, inStream, nullptr) != nullptr)
      continue;
    std::uint8_t* const copy = av_stream_new_side_data(&to, inStream, data->size);
    if (copy == nullptr)
      throw std::bad_alloc();
    std::copy_n(data->data, data->size, copy);
  }
}

void copyLightLevels(const AVFrame& frame, AVFrame& to) {
  for (const LightLevel& each : kLightLevels) {
    const AVFrameSideData* const data = av_frame_get_side_data(&frame, each.inFrame);
    if (data == nullptr)
      continue;
    AVFrameSideData* const copy = av_frame_new_side_data(&to, each.inFrame, data->size);
    if (copy == nullptr)
      throw std::bad_alloc();
    std::copy_n(data->data, data->size, copy->data);
  }
}

void addLightLevels(const AVFrame& frame, const AVCodec& codec, Options& options) {
  const auto* const notation = std::ranges::find(kNotations, codec.name, &Notation::encoder);
  const std::string added =
      notation != std::end(kNotations) ? parameters(frame, *notation) : std::string();
  if (added.empty())
    return;
  const AVDictionaryEntry* const asked = av_dict_get(*options.get(), notation->key, nullptr, 0);
  options.set(notation->key,
              asked != nullptr ? (added + ":" + asked->value).c_str() : added.c_str());
}

}  // namespace nkdraw::media
