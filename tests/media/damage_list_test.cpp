// SPDX-License-Identifier: BSD-2-Clause
//
// The list of damage, which names the first thousand and counts the others.
#include <media/damage.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace nkdraw::media;

namespace {

constexpr std::int64_t kMany = 20000;

DamageList listThatGoesOn() {
  DamageList list("in.ts");
  list.setAction(OnDamage::kContinue);
  return list;
}

std::string reportOf(const DamageList& list) {
  testing::internal::CaptureStderr();
  EXPECT_TRUE(list.report());
  return testing::internal::GetCapturedStderr();
}

}  // namespace

TEST(DamageList, NamesAThousandFramesAndCountsTheOthers) {
  DamageList list = listThatGoesOn();
  for (std::int64_t frame = 0; frame < kMany; ++frame)
    list.note(frame, "broken");
  const std::string told = reportOf(list);
  EXPECT_EQ(std::ranges::count(told, '\n'), 1001);
  EXPECT_NE(told.find("in.ts, frame 999: broken\n"), std::string::npos);
  EXPECT_NE(told.find("in.ts, and 19000 more\n"), std::string::npos);
  EXPECT_EQ(list.summary(), "in.ts (20000 frames)");
}

TEST(DamageList, KnowsTheLastFrames) {
  DamageList list = listThatGoesOn();
  for (std::int64_t frame = 0; frame < kMany; frame += 2)
    list.note(frame, "broken");
  EXPECT_TRUE(list.contains(kMany - 2));
  EXPECT_FALSE(list.contains(kMany - 1));
  EXPECT_TRUE(list.contains(kMany - 2000));
}

TEST(DamageList, CountsAPacketOnceThatSeveralOutputsTell) {
  const auto file = owned<InputContext>(avformat_alloc_context());
  const AVStream* const stream = avformat_new_stream(file.get(), nullptr);
  DamageList list = listThatGoesOn();
  for (std::int64_t time = 0; time < kMany; ++time) {
    list.noteStream(*stream, time * 1000, "broken");
    list.noteStream(*stream, time * 1000, "broken");
  }
  const std::string told = reportOf(list);
  EXPECT_EQ(std::ranges::count(told, '\n'), 1001);
  EXPECT_NE(told.find("in.ts, and 19000 more\n"), std::string::npos);
  EXPECT_EQ(list.summary(), "in.ts (0 frames, 20000 packets of other streams)");
}
