// SPDX-License-Identifier: BSD-2-Clause
#include <gtest/gtest.h>
#include <nkdraw/platform/media_names.h>

#include <string>
#include <string_view>
#include <thread>

namespace {

constexpr std::uint32_t fourcc(std::string_view letters) {
  std::uint32_t code = 0;
  for (std::size_t i = 4; i-- > 0;)
    code = code << 8 | static_cast<unsigned char>(letters[i]);
  return code;
}

TEST(CodecName, PlainRgbAndBitFieldsAreRgb) {
  EXPECT_STREQ(hzwutilCodecTypeString(0), "RGB");
  EXPECT_STREQ(hzwutilCodecTypeString(3), "RGB");
}

TEST(CodecName, ACodeShowsItsLettersFromTheLowByteUp) {
  EXPECT_STREQ(hzwutilCodecTypeString(0x32595559), "YUY2");
  for (const char* const code : {"UYVY", "I420", "dvsd", "L10R", "Y8  "})
    EXPECT_STREQ(hzwutilCodecTypeString(fourcc(code)), code);
}

TEST(CodecName, KnownFamiliesReadTheSameInEitherOrder) {
  for (const char* const name :
       {"v210", "v216", "v308", "v410", "2vuy", "2Vuy", "2vua", "r210", "R10g", "R10k", "b48r",
        "b64a", "apcn", "apcs", "apco", "apch", "ap4h", "ai12", "ai13", "ai15", "ai16", "ai1p",
        "ai1q", "ai52", "ai53", "ai55", "ai56", "ai5p", "ai5q", "avc1", "dvc ", "dvcp", "dv1n",
        "dv1p", "dv5n", "dv5p", "dvh2", "dvh3", "dvh5", "dvh6", "dvhp", "dvhq", "dvpn", "dvpp"}) {
    const std::string turned{name[3], name[2], name[1], name[0]};
    EXPECT_STREQ(hzwutilCodecTypeString(fourcc(name)), name);
    EXPECT_STREQ(hzwutilCodecTypeString(fourcc(turned)), name);
  }
}

TEST(CodecName, WhatCantBeShownIsAQuestionMark) {
  EXPECT_STREQ(hzwutilCodecTypeString(1), "????");
  EXPECT_STREQ(hzwutilCodecTypeString(0xFFFFFFFF), "????");
  EXPECT_STREQ(hzwutilCodecTypeString(fourcc("a\x1F\x7F~")), "a??~");
  EXPECT_STREQ(hzwutilCodecTypeString(fourcc("\x80\xC3 z")), "?? z");
}

TEST(CodecName, AThreadKeepsItsTextWhileAnotherCalls) {
  const char* const mine = hzwutilCodecTypeString(fourcc("YUY2"));
  std::string theirs;
  std::thread([&] { theirs = hzwutilCodecTypeString(fourcc("UYVY")); }).join();
  EXPECT_STREQ(mine, "YUY2");
  EXPECT_EQ(theirs, "UYVY");
}

TEST(FileTypeName, EveryCodeHasItsName) {
  constexpr struct {
    hzwFileType type;
    const char* name;
  } kNames[] = {{hzwFileNone, "LIVE"},    {hzwFileMOV, "MOV"},        {hzwFileMP4, "MP4"},
                {hzwFileAVI, "AVI"},      {hzwFileMKV, "MKV"},        {hzwFileNUT, "NUT"},
                {hzwFileMXF, "MXF"},      {hzwFileMPEGTS, "MPEG-TS"}, {hzwFileMPEGPS, "MPEG-PS"},
                {hzwFileY4M, "Y4M"},      {hzwFileRaw, "RAW"},        {hzwFileWebM, "WEBM"},
                {hzwFileOGG, "OGG"},      {hzwFileGXF, "GXF"},        {hzwFileDPX, "DPX"},
                {hzwFileStills, "STILLS"}};
  static_assert(std::size(kNames) == hzwFileStills + 1);
  for (const auto& [type, name] : kNames)
    EXPECT_STREQ(hzwutilFileTypeString(type), name);
}

TEST(FileTypeName, ACodeThatIsNotInTheTableIsFile) {
  EXPECT_STREQ(hzwutilFileTypeString(hzwFileStills + 1), "FILE");
  EXPECT_STREQ(hzwutilFileTypeString(0xFFFFFFFF), "FILE");
}

}  // namespace
