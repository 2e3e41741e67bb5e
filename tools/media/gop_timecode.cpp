// SPDX-License-Identifier: BSD-2-Clause
#include "media/gop_timecode.h"

#include <algorithm>
#include <cmath>

namespace nkdraw::media {
namespace {

/// The rates that MPEG-2 has a number for. At others, FFmpeg's encoder counts at the nearest one.
constexpr AVRational kRates[] = {{24000, 1001}, {24, 1}, {25, 1},       {30000, 1001},
                                 {30, 1},       {50, 1}, {60000, 1001}, {60, 1}};

bool countsAt(AVRational rate) {
  constexpr double kRounding = 0.005;
  return std::ranges::any_of(
      kRates, [&](AVRational each) { return std::abs(av_q2d(each) - av_q2d(rate)) < kRounding; });
}

bool hasOption(const AVCodec& encoder) {
  const AVClass* options = encoder.priv_class;
  return options != nullptr &&
         av_opt_find(&options, "gop_timecode", nullptr, 0, AV_OPT_SEARCH_FAKE_OBJ) != nullptr;
}

/// Colons separate options.
std::string escaped(const std::string& timecode) {
  std::string text;
  for (const char each : timecode)
    text.append(each == ':' ? "\\" : "").push_back(each);
  return text;
}

}  // namespace

bool writeGOPTimecode(CodecChoice& choice, const std::string& timecode, AVRational rate) {
  if (!hasOption(*choice.codec))
    return false;
  Options asked;
  readOptions(choice, asked);
  if (av_dict_get(*asked.get(), "gop_timecode", nullptr, 0) != nullptr)
    return true;
  if (timecode.empty() || !countsAt(rate))
    return false;
  choice.options.append(choice.options.empty() ? "" : ":")
      .append("gop_timecode=")
      .append(escaped(timecode));
  return true;
}

}  // namespace nkdraw::media
