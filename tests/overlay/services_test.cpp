// SPDX-License-Identifier: BSD-2-Clause
//
// The calls that the overlay makes to its host, with their order and arguments. This program has
// its own host services instead of the default ones.
#include "exposed_overlay.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// The calls of the services, and what they answer.
struct Host {
  std::vector<std::string> calls;
  std::vector<double> rates;
  HZWVIDEO opened{};
  bool hasCaptions = true;
};

Host host;

template <class... Parts>
void note(const Parts&... parts) {
  std::ostringstream text;
  (text << ... << parts);
  host.calls.push_back(text.str());
}

int opaque = 0;
nkCaptionBurner* burner() {
  return reinterpret_cast<nkCaptionBurner*>(&opaque);
}

const char* handleName(const nkCaptionBurner* handle) {
  return handle == nullptr ? "null" : handle == burner() ? "burner" : "?";
}

}  // namespace

std::uint32_t hzwGetTCType(double frameRate) {
  host.rates.push_back(frameRate);
  return 0x42;
}

std::uint32_t TcForm(std::uint32_t timecode, std::uint32_t flags, char* text) {
  note("timecode ", timecode, " flags ", flags);
  std::strcpy(text, "TC");
  return 0;
}

const char* hzwutilCodecTypeString(std::uint32_t compression) {
  note("codec ", compression);
  return "codec";
}

const char* hzwutilFileTypeString(std::uint32_t fileType) {
  note("file ", fileType);
  return "file";
}

nkCaptionBurner* ccBurnOpen(const HZWVIDEO* video) {
  note("open");
  host.opened = *video;
  return host.hasCaptions ? burner() : nullptr;
}

std::uint32_t ccBurnSetCCType(nkCaptionBurner* handle, std::uint32_t type) {
  note("type ", handleName(handle), " ", type);
  return 0;
}

std::uint32_t ccBurnSetCCDisplay(nkCaptionBurner* handle, std::uint32_t display) {
  note("display ", handleName(handle), " ", display);
  return 0;
}

std::uint32_t ccBurnAddCCData(nkCaptionBurner* handle, const QFRAME* frame) {
  note("data ", handleName(handle), " ", frame->ltcCount);
  return 0;
}

std::uint32_t ccBurnIn(nkCaptionBurner* handle, QFRAME* frame) {
  note("burn ", handleName(handle), " ", frame->ltcCount);
  return 0;
}

namespace {

using namespace nkdraw::test;
using Calls = std::vector<std::string>;

class Services : public testing::Test {
 protected:
  Services() {
    host = Host();
    system_.fileType = 77;
    frame_.record.ltcCount = 1000;
    frame_.record.vitcCount = 2000;
    overlay_.Enabled = 1;
  }

  void create() { overlay_.Create(&video_, &system_); }
  Calls burn(std::uint32_t offset = 0) {
    host.calls.clear();
    EXPECT_EQ(overlay_.BurnIn(&frame_.record, nullptr, nullptr, offset), 0U);
    return host.calls;
  }

  HZWVIDEO video_ = videoOf(kStreams[2]);
  HZWSYSTEM system_{};
  Overlay overlay_;
  BurnFrame frame_;
};

TEST_F(Services, CreateAsksForTheTypeOfTheRateAsADouble) {
  create();
  video_.frameRate = 4294967295;
  video_.frameScale = 7;
  create();
  video_.frameRate = 30;
  video_.frameScale = 0;
  create();
  video_.frameRate = 0;
  create();
  ASSERT_EQ(host.rates.size(), 4U);
  EXPECT_EQ(host.rates[0], 30000.0 / 1001.0);
  EXPECT_EQ(host.rates[1], 4294967295.0 / 7.0);
  EXPECT_TRUE(std::isinf(host.rates[2]));
  EXPECT_TRUE(std::isnan(host.rates[3]));
  EXPECT_EQ(overlay_.timeCodeType, 0x42U);
}

TEST_F(Services, TheFormatterGetsTheCountLessTheOffsetAndTheTypeWithItsFlags) {
  overlay_.TimeCodeLTCEnable = overlay_.TimeCodeVITCEnable = 1;
  create();
  EXPECT_EQ(burn(10), (Calls{"timecode 990 flags 196930", "timecode 1990 flags 196930"}));
  EXPECT_EQ(196930, 0x30142);
  EXPECT_EQ(burn(1001), (Calls{"timecode 4294967295 flags 196930", "timecode 999 flags 196930"}));
}

TEST_F(Services, AllLayersAskInTheirOrder) {
  overlay_.TimeCodeLTCEnable = overlay_.TimeCodeVITCEnable = 1;
  overlay_.TimeCodeVsyncEnable = overlay_.SourceFormatEnable = overlay_.AudioEnable = 1;
  overlay_.CaptionsEnable = 5;
  overlay_.CaptionSource = 6;
  create();
  Calls calls = burn();
  // The two names of the format line are arguments of one call, in either order.
  ASSERT_EQ(calls.size(), 9U);
  if (calls[2].starts_with("codec"))
    std::swap(calls[2], calls[3]);
  EXPECT_EQ(calls, (Calls{"timecode 1000 flags 196930", "timecode 2000 flags 196930", "file 77",
                          "codec 808530550", "open", "type burner 6", "display burner 5",
                          "data burner 1000", "burn burner 1000"}));
}

TEST_F(Services, CaptionsAreSetUpOnceAndLaterSettingsDoNotReachThem) {
  overlay_.CaptionsEnable = 1;
  create();
  EXPECT_EQ(burn(), (Calls{"open", "type burner 0", "display burner 1", "data burner 1000",
                           "burn burner 1000"}));
  EXPECT_EQ(std::memcmp(&host.opened, &video_, sizeof video_), 0);
  overlay_.CaptionSource = 9;
  overlay_.CaptionsEnable = 3;
  EXPECT_EQ(burn(), (Calls{"data burner 1000", "burn burner 1000"}));
  create();
  overlay_.Destroy();
  EXPECT_EQ(burn(), (Calls{"data burner 1000", "burn burner 1000"}));
  overlay_.CaptionsEnable = 0;
  EXPECT_EQ(burn(), Calls{});
}

TEST_F(Services, AHostWithoutCaptionsIsAskedAgainAtEveryFrame) {
  host.hasCaptions = false;
  overlay_.CaptionsEnable = 1;
  create();
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(burn(), (Calls{"open", "type null 0", "display null 1"}));
  EXPECT_EQ(overlay_.captionHandle, nullptr);
}

TEST_F(Services, ADisabledOverlayAsksForNothing) {
  overlay_.Enabled = 0;
  overlay_.TimeCodeLTCEnable = overlay_.SourceFormatEnable = overlay_.CaptionsEnable = 1;
  create();
  EXPECT_EQ(burn(), Calls{});
  EXPECT_NE(overlay_.surface, nullptr);
}

TEST_F(Services, ACopySharesTheCaptionHandle) {
  overlay_.CaptionsEnable = 1;
  create();
  burn();
  Overlay copy(overlay_);
  EXPECT_EQ(copy.captionHandle, burner());
  host.calls.clear();
  copy.BurnIn(&frame_.record, nullptr, nullptr, 0);
  EXPECT_EQ(host.calls, (Calls{"data burner 1000", "burn burner 1000"}));
}

}  // namespace
