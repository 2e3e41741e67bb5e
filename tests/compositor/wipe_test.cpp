// SPDX-License-Identifier: BSD-2-Clause
//
// The numbered wipes, on threads and memory of the default host.
#include <nkdraw/nkdraw_c.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

/// A wipe and what it shows.
struct Shown {
  const char* name;
  decltype(&NKDraw_DisplayWipe) entry;
  NKWipe wipe;  ///< without frames
  std::uint8_t outgoing, incoming;
  std::uint8_t (*expected)(std::size_t at);
};

const Shown kShown[] = {
    {"IncomingLeftOfTheEdge",
     NKDraw_DisplayWipe,
     {nullptr, 40, nullptr, 40, nullptr, 40, NKWipeEdgeHorz, ptBGRA32, 10, 3, 3, 10},
     1,
     2,
     [](std::size_t at) -> std::uint8_t { return at / 4 % 10 < 3 ? 2 : 1; }},
    {"IncomingInPairsOfYCbCr",
     NKDraw_DisplayWipeYCbCr,
     {nullptr, 16, nullptr, 16, nullptr, 16, NKWipeEdgeHorz, ptYUYV, 8, 4, 2, 4},
     1,
     2,
     [](std::size_t at) -> std::uint8_t { return at % 16 < 8 ? 2 : 1; }},
    {"IncomingInGroupsOfV210",
     NKDraw_DisplayWipeV210,
     {nullptr, 128, nullptr, 128, nullptr, 128, NKWipeEdgeVert, ptV210, 48, 4, 3, 4},
     0,
     0x3F,
     [](std::size_t at) -> std::uint8_t {
       constexpr std::uint8_t kIncoming[] = {0x3C, 0x33, 0x0F, 0x3F};
       return at < std::size_t{3} * 128 ? kIncoming[at % 4] : 0;
     }},
};

class Wipe : public testing::TestWithParam<Shown> {
 protected:
  Wipe() {
    for (std::size_t i = 0; i < expected.size(); ++i)
      expected[i] = GetParam().expected(i);
    wipe.srcA = a.data();
    wipe.srcB = b.data();
  }

  NKWipe wipe = GetParam().wipe;
  const std::size_t bytes = std::size_t{wipe.pitchB} * wipe.height;
  const Bytes a = Bytes(bytes, GetParam().outgoing), b = Bytes(bytes, GetParam().incoming);
  Bytes expected = Bytes(bytes);
};

TEST_P(Wipe, IsShownComplete) {
  Bytes output(bytes, 0x55);
  wipe.dst = output.data();
  EXPECT_EQ(NKDraw_CompleteWipe(&wipe), NKStatusOk);
  EXPECT_EQ(output, expected);
}

TEST_P(Wipe, IsShownByTheEntryThatWaitsForAWhile) {
  // A busy machine may keep workers longer than the bounded wait, but not again and again. They
  // draw on into the output of their own call.
  std::vector<Bytes> outputs;
  do {
    outputs.emplace_back(bytes, std::uint8_t{0x55});
    EXPECT_EQ(
        GetParam().entry(wipe.srcA, wipe.pitchA, wipe.srcB, wipe.pitchB, outputs.back().data(),
                         wipe.pitchDst, wipe.wipe, wipe.pixelType, wipe.width, wipe.height, 0, 0, 0,
                         0, 0, 0, wipe.range, wipe.position),
        0U);
  } while (outputs.back() != expected && outputs.size() < 20);
  EXPECT_EQ(outputs.back(), expected);
}

TEST(CompleteWipe, RefusesLayoutsThatNoWipeDrawsInAndTouchesNothing) {
  const Bytes a(64, 1), b(64, 2);
  for (const std::int32_t type : {-1, 0, 7, 15, 20, 21, 37, 38, 39, 10000}) {
    Bytes dst(64, 0xEE);
    for (const std::uint32_t number : {NKWipeDissolve, NKWipeEdgeHorz, NKWipeSlideUp}) {
      const NKWipe wipe = {a.data(), 16, b.data(), 16, dst.data(), 16, number, type, 4, 4, 1, 2};
      EXPECT_EQ(NKDraw_CompleteWipe(&wipe), NKStatusRefused) << type;
    }
    EXPECT_EQ(dst, Bytes(64, 0xEE)) << type;
  }
}

INSTANTIATE_TEST_SUITE_P(Entries, Wipe, testing::ValuesIn(kShown),
                         [](const auto& shown) { return std::string(shown.param.name); });

}  // namespace
