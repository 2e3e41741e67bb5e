// SPDX-License-Identifier: BSD-2-Clause
#include <nkdraw/version.h>

#include <gtest/gtest.h>

#include <string>

TEST(Version, OfTheLibraryIsThatOfItsHeaders) {
  EXPECT_STREQ(nkdraw_version(), NKDRAW_VERSION);
}

TEST(Version, TextIsMadeOfTheNumbers) {
  EXPECT_EQ(NKDRAW_VERSION, std::to_string(NKDRAW_VERSION_MAJOR) + "." +
                                std::to_string(NKDRAW_VERSION_MINOR) + "." +
                                std::to_string(NKDRAW_VERSION_PATCH));
}
