// SPDX-License-Identifier: BSD-2-Clause
//
// Which kernel draws which number.
#include <nkdraw/compositor/wipe_kernels.h>

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace {

using nkdraw::WipeKernel;

struct Numbers {
  std::uint32_t first, last;
};

struct Family {
  const char* name;
  const WipeKernel& kernel;
  std::vector<Numbers> numbers;
};

const Family kFamilies[] = {
    {"EdgeHorz",
     nkdraw::WipeEdgeHorz,
     {{1, 1},
      {102, 114},
      {119, 125},
      {127, 131},
      {201, 207},
      {211, 214},
      {221, 228},
      {231, 236},
      {241, 246},
      {251, 254},
      {261, 264},
      {301, 306},
      {310, 317},
      {320, 329},
      {340, 345},
      {350, 353},
      {409, 409}}},
    {"EdgeVert", nkdraw::WipeEdgeVert, {{2, 2}}},
    {"CornerTL", nkdraw::WipeCornerTL, {{3, 3}}},
    {"CornerTR", nkdraw::WipeCornerTR, {{4, 4}}},
    {"CornerBR", nkdraw::WipeCornerBR, {{5, 5}}},
    {"CornerBL", nkdraw::WipeCornerBL, {{6, 6}}},
    {"FourCorners", nkdraw::WipeFourCorners, {{7, 7}}},
    {"BoxIn", nkdraw::WipeBoxIn, {{8, 8}}},
    {"BarnDoorVert", nkdraw::WipeBarnDoorVert, {{21, 21}}},
    {"BarnDoorHorz", nkdraw::WipeBarnDoorHorz, {{22, 22}}},
    {"BoxTop", nkdraw::WipeBoxTop, {{23, 23}}},
    {"BoxRight", nkdraw::WipeBoxRight, {{24, 24}}},
    {"BoxBottom", nkdraw::WipeBoxBottom, {{25, 25}}},
    {"BoxLeft", nkdraw::WipeBoxLeft, {{26, 26}}},
    {"Iris", nkdraw::WipeIris, {{41, 48}, {61, 68}, {71, 74}, {101, 101}}},
    {"Slide", nkdraw::WipeSlide, {{500, 515}}},
    {"Dissolve",
     nkdraw::WipeDissolve,
     {{0, 0},     {9, 20},    {27, 40},   {49, 60},   {69, 70},         {75, 100},
      {115, 118}, {126, 126}, {132, 200}, {208, 210}, {215, 220},       {229, 230},
      {237, 240}, {247, 250}, {255, 260}, {265, 300}, {307, 309},       {318, 319},
      {330, 339}, {346, 349}, {354, 408}, {410, 499}, {516, 0x7FFFFFFF}}},
};

const Family* familyOf(std::uint32_t number) {
  const Family* found = nullptr;
  for (const Family& family : kFamilies) {
    for (const auto [first, last] : family.numbers) {
      if (number >= first && number <= last) {
        EXPECT_EQ(found, nullptr) << number << " stands twice";
        found = &family;
      }
    }
  }
  return found;
}

TEST(WipeNumbers, HaveTheirKernelsWithAndWithoutSwappedInputs) {
  std::vector<std::uint32_t> numbers = {65536, 65537, 0x40000001, 0x7FFFFFFE, 0x7FFFFFFF};
  for (std::uint32_t number = 0; number <= 1100; ++number)
    numbers.push_back(number);
  for (const std::uint32_t number : numbers) {
    const Family* const family = familyOf(number);
    ASSERT_NE(family, nullptr) << number;
    EXPECT_EQ(nkdraw::kernelOfWipe(number), family->kernel) << number << ' ' << family->name;
    EXPECT_EQ(nkdraw::kernelOfWipe(number | 0x80000000), family->kernel) << number;
  }
}

TEST(WipeNumbers, LeadToSeventeenKernels) {
  std::set<decltype(WipeKernel::draw)> kernels;
  for (const Family& family : kFamilies)
    kernels.insert(family.kernel.draw);
  EXPECT_EQ(kernels.size(), 17U);
  EXPECT_FALSE(kernels.contains(nullptr));
}

}  // namespace
