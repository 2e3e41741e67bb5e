// SPDX-License-Identifier: BSD-2-Clause
//
// Burns the measured pass into the given number of frames and does nothing else, for a tool that
// counts instructions: `count_burn_in v210 100`. The difference of two counts is the passes alone.
#include "burn_in_scene.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int count, char** arguments) {
  for (const bench::Layout& layout : bench::kLayouts) {
    if (count != 3 || std::strcmp(arguments[1], layout.name) != 0)
      continue;
    std::vector<char> pixels(layout.frameBytes, '\x40');
    const HZWVIDEO video = bench::videoOf(layout);
    bench::Overlay overlay(true);
    overlay.Create(&video, &bench::kSystem);
    QFRAME frame = {};
    frame.frameBuffer = pixels.data();
    for (int i = std::atoi(arguments[2]); i > 0; --i, ++frame.ltcCount)
      overlay.BurnIn(&frame, nullptr, nullptr, 0);
    return 0;
  }
  std::fputs("usage: count_burn_in v210|UYVY|BGRA FRAMES\n", stderr);
  return 2;
}
