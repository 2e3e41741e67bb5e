// SPDX-License-Identifier: BSD-2-Clause
//
// Timecode that only the video itself holds is burnt in and written to the output.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <span>
#include <utility>

namespace {

constexpr char kSource[] = "testsrc2=size=320x240:rate=25";

/// Writes numbers of any width, most significant bit first.
class BitWriter {
 public:
  BitWriter& put(unsigned value, unsigned bits) {
    for (; bits > 0; --bits, ++count_) {
      if (count_ % 8 == 0)
        bytes_.push_back(0);
      bytes_.back() |= static_cast<std::uint8_t>((value >> (bits - 1) & 1) << (7 - count_ % 8));
    }
    return *this;
  }
  /// With the stop bit, which fills the last byte, if it isn't full.
  Bytes finished() {
    if (count_ % 8 != 0) {
      put(1, 1);
      while (count_ % 8 != 0)
        put(0, 1);
    }
    return bytes_;
  }

 private:
  Bytes bytes_;
  unsigned count_ = 0;
};

/// 10:20:30:05 as H.264 and HEVC write a clock timestamp: counting, flags, frames, full time.
void putClock(BitWriter& bits, unsigned framesBits) {
  bits.put(0, 5).put(1, 1).put(0, 1).put(0, 1).put(5, framesBits);
  bits.put(30, 6).put(20, 6).put(10, 5);
}

Bytes readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}
void writeFile(const std::string& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

/// Puts a unit of supplemental information in front of the first unit for which `isPicture` is true
/// of the byte behind its start code.
template <class IsPicture>
void insertUnit(Bytes& stream, Bytes unit, IsPicture isPicture) {
  for (std::size_t i = 0; i + 3 < stream.size(); ++i) {
    if (stream[i] == 0 && stream[i + 1] == 0 && stream[i + 2] == 1 && isPicture(stream[i + 3])) {
      const Bytes startCode = {0, 0, 0, 1};
      unit.insert(unit.begin(), startCode.begin(), startCode.end());
      stream.insert(stream.begin() + static_cast<std::ptrdiff_t>(i), unit.begin(), unit.end());
      return;
    }
  }
  FAIL() << "no picture in the stream";
}

void expectTimecode(const std::string& in, const std::string& first, const std::string& second,
                    const std::string& origin) {
  const std::string out = at("stream_timecode.mkv");
  const Arguments arguments = {
      in, out, "--overwrite", "--position", "8,20", "--timecode-size", "2", "--codec", "ffv1"};
  Arguments dry = arguments;
  dry.push_back("--dry-run");
  EXPECT_NE(burnin(dry).out.find(first + ", " + origin), std::string::npos) << burnin(dry).out;
  const Outcome outcome = burnin(arguments);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Clip grey = decodeAs(out, AV_PIX_FMT_GRAY8);
  ASSERT_EQ(grey.frames.size(), 4U);
  EXPECT_EQ(readText(grey, 0, 8, 20, 2, 11), first);
  EXPECT_EQ(readText(grey, 1, 8, 20, 2, 11), second);
  EXPECT_EQ(grey.timecode, first);
}

}  // namespace

TEST(StreamTimecode, IsFoundInTheGOPHeadersOfMPEG2) {
  ffmpeg({"-f", "lavfi", "-i", kSource, "-frames:v", "4", "-c:v", "mpeg2video", "-gop_timecode",
          "10:20:30:05", at("in.m2v")});
  expectTimecode(at("in.m2v"), "10:20:30:05", "10:20:30:06", "the MPEG-2 GOP header");
}

TEST(StreamTimecode, IsFoundInThePictureTimingOfH264) {
  ffmpeg({"-f", "lavfi", "-i", kSource, "-frames:v", "4", "-c:v", "libx264", "-x264-params",
          "pic-struct=1:bframes=0:sliced-threads=0", at("in.h264")});
  Bytes stream = readFile(at("in.h264"));
  BitWriter timing;  // a frame, with one timestamp
  timing.put(0, 4).put(1, 1).put(0, 2).put(0, 1);
  putClock(timing, 8);
  timing.put(0, 24);  // the time offset, whose length is the usual one
  const Bytes payload = timing.finished();
  Bytes unit = {6, 1, static_cast<std::uint8_t>(payload.size())};
  unit.insert(unit.end(), payload.begin(), payload.end());
  unit.push_back(0x80);
  insertUnit(stream, unit, [](std::uint8_t head) { return (head & 0x1F) == 5; });
  writeFile(at("timed.h264"), stream);
  expectTimecode(at("timed.h264"), "10:20:30:05", "10:20:30:06", "the H.264 picture timing");
}

TEST(StreamTimecode, IsFoundInTheTimeCodesOfHEVC) {
  ffmpeg({"-f", "lavfi", "-i", kSource, "-frames:v", "4", "-c:v", "libx265", "-x265-params",
          "log-level=none:bframes=0", at("in.hevc")});
  Bytes stream = readFile(at("in.hevc"));
  BitWriter timing;  // one timestamp of a frame
  timing.put(1, 2).put(1, 1).put(0, 1);
  putClock(timing, 9);
  timing.put(0, 5);  // no time offset
  const Bytes payload = timing.finished();
  Bytes unit = {39 << 1, 1, 136, static_cast<std::uint8_t>(payload.size())};
  unit.insert(unit.end(), payload.begin(), payload.end());
  unit.push_back(0x80);
  insertUnit(stream, unit, [](std::uint8_t head) {
    const int type = head >> 1 & 0x3F;
    return type >= 16 && type <= 21;
  });
  writeFile(at("timed.hevc"), stream);
  expectTimecode(at("timed.hevc"), "10:20:30:05", "10:20:30:06", "the HEVC picture timing");
}

TEST(StreamTimecode, IsFoundInTheSubcodeOfDV) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=720x576:rate=25", "-frames:v", "4", "-c:v", "dvvideo",
          "-pix_fmt", "yuv420p", at("in.avi")});
  // The pack of the first frame, in the file as FFmpeg wrote it.
  Bytes file = readFile(at("in.avi"));
  const std::vector<RawPacket> packets = packetsOf(at("in.avi"), AVMEDIA_TYPE_VIDEO);
  ASSERT_EQ(packets.size(), 4U);
  const Bytes& frame = packets.front().bytes;
  const auto place = std::search(file.begin(), file.end(), frame.begin(), frame.end());
  ASSERT_NE(place, file.end());
  const Bytes pack = {0x13, 0x05, 0x30, 0x20, 0x10};
  std::ranges::copy(pack, place + 86);
  writeFile(at("timed.avi"), file);
  expectTimecode(at("timed.avi"), "10:20:30:05", "10:20:30:06", "the DV subcode");
}

TEST(StreamTimecode, IsNotMadeUp) {
  ffmpeg({"-f", "lavfi", "-i", kSource, "-frames:v", "4", "-c:v", "libx264", at("plain.mkv")});
  const Outcome dry = burnin({at("plain.mkv"), at("none.mkv"), "--codec", "ffv1", "--dry-run"});
  EXPECT_NE(dry.out.find("none in the file"), std::string::npos) << dry.out;
}
