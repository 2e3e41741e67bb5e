// SPDX-License-Identifier: BSD-2-Clause
#include "media/orientation.h"

#include "media/component.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <string_view>

namespace nkdraw::media {

Frame upright(const AVFrame& frame, const Orientation& orientation) {
  const bool turned = orientation.turned;
  const auto format = static_cast<AVPixelFormat>(frame.format);
  Frame shown =
      makeFrame(format, turned ? frame.height : frame.width, turned ? frame.width : frame.height);
  for (int i = 0; i < av_pix_fmt_desc_get(format)->nb_components; ++i) {
    const Component component(format, i);
    for (int y = 0; y < shown->height; ++y) {
      for (int x = 0; x < shown->width; ++x) {
        const Pixel from = orientation.inFrame({x, y}, frame.width, frame.height);
        component.put(*shown, x, y, component.get(frame, from.x, from.y));
      }
    }
  }
  return shown;
}

bool tellsOrientation(const AVOutputFormat& format) {
  constexpr std::string_view kQuickTimeFamily[] = {"mov", "mp4", "ipod", "3gp",
                                                   "3g2", "f4v", "ismv", "psp"};
  return std::ranges::find(kQuickTimeFamily, format.name) != std::end(kQuickTimeFamily);
}

Orientation orientationOf(const AVStream& video) {
  std::size_t size = 0;
  const std::uint8_t* const data =
      av_stream_get_side_data(&video, AV_PKT_DATA_DISPLAYMATRIX, &size);
  std::array<std::int32_t, 9> matrix{};
  if (data == nullptr || size < sizeof matrix)
    return {};
  std::memcpy(matrix.data(), data, sizeof matrix);
  // Shown x = xByX * x + xByY * y, and y alike.
  const std::int32_t xByX = matrix[0], yByX = matrix[1], xByY = matrix[3], yByY = matrix[4];
  if (yByX == 0 && xByY == 0)
    return {.turned = false, .mirrorX = xByX < 0, .mirrorY = yByY < 0};
  if (xByX == 0 && yByY == 0)
    return {.turned = true, .mirrorX = yByX < 0, .mirrorY = xByY < 0};
  return {};
}

}  // namespace nkdraw::media
