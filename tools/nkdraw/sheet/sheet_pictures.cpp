// SPDX-License-Identifier: BSD-2-Clause
//
// The two pictures of a contact sheet.
#include "media/clip_facts.h"
#include "media/failure.h"
#include "media/frame_converter.h"
#include "media/video_feed.h"
#include "sheet/contact_sheet.h"

#include <algorithm>

namespace nkdraw::tool {
namespace {

constexpr int kGreySteps = 8;

/// The differences between the two built-in pictures.
struct Look {
  const char* letter;
  Colour ground, pattern;
  bool stripes;  // the pattern: stripes, or squares
};
constexpr Look kFirstLook = {"A", {0.85, 0.42, 0.10}, {0.72, 0.30, 0.06}, false};
constexpr Look kSecondLook = {"B", {0.12, 0.36, 0.70}, {0.08, 0.25, 0.55}, true};

/// A background that shows movement, a letter that shows orientation, and steps of grey that both
/// pictures share.
BgraCanvas drawOwn(const Look& look, int width, int height) {
  BgraCanvas picture(width, height);
  const int cell = std::max(height / 9, 1), band = height * 5 / 6;
  picture.fill(0, 0, width, height, look.ground);
  for (int y = 0; y < band; y += cell) {
    for (int x = 0; x < width; x += cell) {
      const bool marked = look.stripes ? x / cell % 2 == 0 : (x / cell + y / cell) % 2 == 0;
      if (marked)
        picture.fill(x, y, std::min(x + cell, width), std::min(y + cell, band), look.pattern);
    }
  }
  for (int step = 0; step < kGreySteps; ++step) {
    const double level = static_cast<double>(step) / (kGreySteps - 1);
    picture.fill(width * step / kGreySteps, band, width * (step + 1) / kGreySteps, height,
                 {level, level, level});
  }
  const int magnification = std::max(band * 7 / 100, 1);
  picture.write(look.letter, (width - 8 * magnification) / 2, (band - 10 * magnification) / 2,
                magnification, {1.0, 1.0, 1.0});
  return picture;
}

/// The first frame of a clip in BGRA.
Frame firstFrame(const std::string& path) {
  MediaInput input(path);
  DecodedFeed feed(input, framesOf(input, ownLayout(input)));
  Frame decoded;
  std::int64_t index = 0;
  if (!feed.next(decoded, index))
    throw Failure(ExitCode::kInput, "no frames in the video", path, "check it with ffprobe");
  FrameConverter toBGRA(AV_PIX_FMT_BGRA, input.interlaced());
  return owned<Frame>(av_frame_clone(&toBGRA.convert(*decoded)));
}

BgraCanvas scaled(const AVFrame& frame, int width, int height) {
  BgraCanvas picture(width, height);
  const Scaler scaler = owned<Scaler>(
      sws_getContext(frame.width, frame.height, AV_PIX_FMT_BGRA, width, height, AV_PIX_FMT_BGRA,
                     SWS_AREA | SWS_ACCURATE_RND | SWS_BITEXACT, nullptr, nullptr, nullptr));
  const Picture to = picture.picture();
  const auto pitch = static_cast<int>(to.pitches[0]);
  sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, &to.planes[0], &pitch);
  return picture;
}

}  // namespace

SheetPictures sheetPictures(const std::optional<std::string>& first,
                            const std::optional<std::string>& second, int tileWidth) {
  const Frame a = first ? firstFrame(*first) : nullptr;
  const Frame b = second ? firstFrame(*second) : nullptr;
  // The first clip that is named sets the shape.
  const AVFrame* const shape = a != nullptr ? a.get() : b.get();
  constexpr int kUsualWidth = 16, kUsualHeight = 9;
  const std::int64_t height = shape != nullptr
                                  ? av_rescale(tileWidth, shape->height, shape->width)
                                  : std::int64_t{tileWidth} * kUsualHeight / kUsualWidth;
  // Even, because some modes halve it.
  const int tileHeight = static_cast<int>(std::max<std::int64_t>(height + height % 2, 2));
  return {
      a != nullptr ? scaled(*a, tileWidth, tileHeight) : drawOwn(kFirstLook, tileWidth, tileHeight),
      b != nullptr ? scaled(*b, tileWidth, tileHeight)
                   : drawOwn(kSecondLook, tileWidth, tileHeight)};
}

}  // namespace nkdraw::tool
