// SPDX-License-Identifier: BSD-2-Clause
//
// The overlay's surface, its texts, and who owns them.
#include "exposed_overlay.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace {

using namespace nkdraw::test;

const HZWSYSTEM kSystem{};

TEST(OverlayLife, BurnInBeforeCreateDoesNothing) {
  Overlay o;
  o.Enabled = 1;
  BurnFrame frame;
  EXPECT_EQ(o.BurnIn(&frame.record, nullptr, nullptr, 0), 0U);
  EXPECT_EQ(o.surface, nullptr);
  EXPECT_TRUE(frame.frame.untouched());
}

TEST(OverlayLife, ASizeOfZeroMeansNoVideo) {
  Overlay o;
  o.Enabled = 1;
  o.TimeCodeLTCEnable = 1;
  HZWVIDEO video = videoOf(kStreams[0]);
  video.biSizeImage = 0;
  o.Create(&video, &kSystem);
  BurnFrame frame;
  EXPECT_EQ(o.BurnIn(&frame.record, nullptr, nullptr, 0), 0U);
  EXPECT_EQ(o.surface, nullptr);
  EXPECT_TRUE(frame.frame.untouched());
}

TEST(OverlayLife, ADisabledOverlayBuildsItsSurfaceAtTheFirstFrame) {
  for (const Stream& stream : kStreams) {
    SCOPED_TRACE(stream.name);
    Overlay o;
    o.TimeCodeLTCEnable = o.SourceFormatEnable = 1;
    o.TimeCodeY = 301;
    HZWVIDEO video = videoOf(stream);
    video.scanFlags = 0x100;
    o.Create(&video, &kSystem);
    BurnFrame frame;
    EXPECT_EQ(o.BurnIn(&frame.record, nullptr, nullptr, 0), 0U);
    ASSERT_NE(o.surface, nullptr);
    EXPECT_EQ(o.surface->Refs(), 1);
    EXPECT_EQ(o.surface->GetCanvas(), frame.record.frameBuffer);
    EXPECT_EQ(o.surface->Width(), 960U);
    EXPECT_TRUE(frame.frame.untouched());
    EXPECT_EQ(o.TimeCodeY, 301);  // settings are made even only by an enabled one
    // Nothing is bound while it is disabled.
    BurnFrame other;
    o.BurnIn(&other.record, nullptr, nullptr, 0);
    EXPECT_EQ(o.surface->GetCanvas(), frame.record.frameBuffer);
  }
}

TEST(OverlayLife, EveryFrameIsBoundToTheOneSurfaceAndPackedRowsAreTaken) {
  Overlay o;
  o.Enabled = 1;
  const HZWVIDEO video = videoOf(kStreams[2]);
  o.Create(&video, &kSystem);
  BurnFrame one, two;
  o.BurnIn(&one.record, nullptr, nullptr, 0);
  NKDraw* const surface = o.surface;
  EXPECT_EQ(surface->GetCanvas(), one.record.frameBuffer);
  surface->SetCanvas(nullptr, 1, 1, 5000);
  o.BurnIn(&two.record, nullptr, nullptr, 0);
  EXPECT_EQ(o.surface, surface);
  EXPECT_EQ(surface->GetCanvas(), two.record.frameBuffer);
  EXPECT_EQ(surface->Width(), 960U);
  EXPECT_EQ(surface->Height(), 680U);
  EXPECT_EQ(surface->Pitch(), 2560U);
}

TEST(OverlayLife, TheSignOfTheHeightIsHandedToTheSurface) {
  Overlay o;
  o.Enabled = 1;
  const HZWVIDEO video = videoOf(kStreams[0], 960, -680);
  o.Create(&video, &kSystem);
  o.videoHeader.bmiHeader.biSizeImage = 960 * 680 * 4;
  BurnFrame frame;
  o.BurnIn(&frame.record, nullptr, nullptr, 0);
  EXPECT_TRUE(PixelFields::flippedOf(*o.surface));
  EXPECT_EQ(o.surface->Height(), 680U);
}

TEST(OverlayLife, AFailedSurfaceEndsThePassAndTheNextFrameTriesAgain) {
  Overlay o;
  o.Enabled = 1;
  o.TimeCodeLTCEnable = 1;
  HZWVIDEO video = videoOf(kStreams[0]);
  std::memcpy(&video.biCompression, "I420", 4);
  o.Create(&video, &kSystem);
  BurnFrame frame;
  EXPECT_EQ(o.BurnIn(&frame.record, nullptr, nullptr, 0), 0U);
  EXPECT_EQ(o.surface, nullptr);
  EXPECT_TRUE(frame.frame.untouched());
  video.biCompression = 0;
  o.Create(&video, &kSystem);
  EXPECT_EQ(o.BurnIn(&frame.record, nullptr, nullptr, 0), 0U);
  EXPECT_NE(o.surface, nullptr);
  EXPECT_FALSE(frame.frame.untouched());
}

TEST(OverlayLife, DestroyLetsTheSurfaceGoAndTheNextFrameBuildsAnother) {
  Overlay o;
  EXPECT_EQ(o.Destroy(), 0U);
  HZWVIDEO video = videoOf(kStreams[0]);
  o.Create(&video, &kSystem);
  BurnFrame frame;
  o.BurnIn(&frame.record, nullptr, nullptr, 0);
  NKDraw* kept = o.surface;
  AddRefDraw(kept);
  EXPECT_EQ(o.Destroy(), 0U);
  EXPECT_EQ(o.surface, nullptr);
  EXPECT_EQ(kept->Refs(), 1);  // one reference was given back
  o.BurnIn(&frame.record, nullptr, nullptr, 0);
  EXPECT_NE(o.surface, nullptr);
  EXPECT_NE(static_cast<NKDraw*>(o.surface), kept);
  ReleaseDraw(kept);
}

TEST(OverlayLife, ASecondCreateKeepsTheOldSurfaceUntilDestroy) {
  Overlay o;
  o.Enabled = 1;
  HZWVIDEO video = videoOf(kStreams[0]);
  o.Create(&video, &kSystem);
  BurnFrame frame;
  o.BurnIn(&frame.record, nullptr, nullptr, 0);
  NKDraw* const surface = o.surface;
  video = videoOf(kStreams[2]);
  o.Create(&video, &kSystem);
  EXPECT_EQ(o.surface, surface);
  o.BurnIn(&frame.record, nullptr, nullptr, 0);
  EXPECT_EQ(o.surface, surface);
  EXPECT_EQ(o.surface->PixelType(), ptBGRA32);
  o.Destroy();
  o.BurnIn(&frame.record, nullptr, nullptr, 0);
  EXPECT_EQ(o.surface->PixelType(), ptV210);
}

TEST(OverlayLife, CopiesShareTheirHandlesAndGoInAnyOrder) {
  for (const bool sourceFirst : {true, false}) {
    auto source = std::make_unique<Overlay>();
    source->Enabled = 1;
    source->TimeCodeX = 44;
    source->setText(0, "shared");
    source->ownedText = new char[8]();
    HZWVIDEO video = videoOf(kStreams[0]);
    source->Create(&video, &kSystem);
    BurnFrame frame;
    source->BurnIn(&frame.record, nullptr, nullptr, 0);

    auto copy = std::make_unique<Overlay>(*source);
    auto assigned = std::make_unique<Overlay>();
    assigned->setText(3, "replaced");
    *assigned = *source;
    for (const auto* const other : {copy.get(), assigned.get()}) {
      EXPECT_EQ(other->TimeCodeX, 44);
      EXPECT_EQ(static_cast<char*>(other->CustomText[0]),
                static_cast<char*>(source->CustomText[0]));
      EXPECT_EQ(static_cast<char*>(other->CustomText[3]), nullptr);
      EXPECT_EQ(static_cast<char*>(other->ownedText), static_cast<char*>(source->ownedText));
      EXPECT_EQ(static_cast<NKDraw*>(other->surface), static_cast<NKDraw*>(source->surface));
      EXPECT_EQ(other->videoHeader.bmiHeader.biWidth, 960);
      EXPECT_EQ(std::memcmp(&other->video, &source->video, sizeof source->video), 0);
    }
    EXPECT_EQ(source->surface->Refs(), 1);  // nothing adds a reference
    if (sourceFirst) {
      source.reset();
      copy->BurnIn(&frame.record, nullptr, nullptr, 0);
      EXPECT_STREQ(copy->CustomText[0], "shared");
    } else {
      copy.reset();
      assigned.reset();
      source->BurnIn(&frame.record, nullptr, nullptr, 0);
      EXPECT_STREQ(source->CustomText[0], "shared");
    }
  }
}

TEST(OverlayLife, ACopyOutlivesTheDestroyOfItsSource) {
  Overlay source;
  source.Enabled = 1;
  const HZWVIDEO video = videoOf(kStreams[0]);
  source.Create(&video, &kSystem);
  BurnFrame frame;
  source.BurnIn(&frame.record, nullptr, nullptr, 0);
  Overlay copy(source);
  source.Destroy();
  copy.TimeCodeLTCEnable = 1;
  frame.frame.remember();
  copy.BurnIn(&frame.record, nullptr, nullptr, 0);
  EXPECT_FALSE(frame.frame.untouched());
}

TEST(OverlayLife, AnAssignmentToItselfKeepsEverything) {
  Overlay o;
  o.setText(0, "text");
  Overlay& same = o;
  o = same;
  EXPECT_STREQ(o.CustomText[0], "text");
}

}  // namespace
