// SPDX-License-Identifier: BSD-2-Clause
//
// Burning a frame allocates nothing once the first frame is through. This program counts what its
// thread allocates.
#include "exposed_overlay.h"

#include <tests/support/allocations.h>
#include <tests/support/caption_stream.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace nkdraw::test;

TEST(Allocation, BurnInMakesNoneAfterTheFirstFrame) {
  for (const Stream& stream : kStreams) {
    SCOPED_TRACE(stream.name);
    Overlay o;
    o.Enabled = 1;
    o.TimeCodeLTCEnable = o.TimeCodeVITCEnable = o.TimeCodeVsyncEnable = 1;
    o.SourceFormatEnable = o.AudioEnable = o.WatermarkEnable = o.CaptionsEnable = 1;
    for (int slot = 0; slot < 10; ++slot)
      o.setText(slot, "A text of the operator");
    HZWVIDEO video = videoOf(stream);
    video.scanFlags = 0x100;
    const HZWSYSTEM system{};
    o.Create(&video, &system);
    BurnFrame frame;
    CaptionStream captions;
    captions.rollUp(3).carriageReturn().row(15).text("A caption ");
    std::vector<std::uint8_t> triplets;
    for (const CaptionPair& pair : captions.pairs())
      triplets.insert(triplets.end(), {0xFC, pair[0], pair[1]});
    frame.record.captionData = triplets.data();
    frame.record.captionBytes = static_cast<std::uint32_t>(triplets.size());
    const int first = allocationsOf([&] { o.BurnIn(&frame.record, nullptr, nullptr, 0); });
    EXPECT_GT(first, 0);  // the surface: what the library allocates is seen
    const int others = allocationsOf([&] {
      for (int i = 0; i < 20; ++i) {
        ++frame.record.ltcCount;
        o.BurnIn(&frame.record, nullptr, nullptr, 0);
      }
    });
    EXPECT_EQ(others, 0);
  }
}

}  // namespace
