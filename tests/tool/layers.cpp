// SPDX-License-Identifier: BSD-2-Clause
#include "layers.h"

#include <media/layouts.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iomanip>

namespace layers {

using namespace nkdraw::media;

namespace {

Arguments encoderFor(const std::string& layout) {
  if (layout == "v210")
    return {"-c:v", "v210"};
  return {"-c:v", "rawvideo", "-pix_fmt", av_get_pix_fmt_name(layoutNamed(layout)->pixelFormat)};
}

}  // namespace

std::string makeClip(const std::string& layout, const std::string& colour, int frames,
                     const std::string& sound) {
  std::string path = at("in-" + layout + ".nut");
  // One picture for all layouts of a kind, however FFmpeg converts it.
  const std::string common = isYCbCr(layoutNamed(layout)->type) ? "yuv422p" : "rgb24";
  Arguments arguments = {"-f", "lavfi", "-i",
                         "color=" + colour + ":size=640x360:rate=30000/1001,format=" + common +
                             ",trim=end_frame=" + std::to_string(frames)};
  if (!sound.empty())
    arguments.insert(arguments.end(), {"-f", "lavfi", "-t", "4", "-i", sound});
  const Arguments encoder = encoderFor(layout);
  arguments.insert(arguments.end(), encoder.begin(), encoder.end());
  arguments.insert(arguments.end(), {"-c:a", "pcm_s16le", path});
  ffmpeg(arguments);
  return path;
}

void expectBurnt(const Arguments& arguments) {
  Arguments all = {"--overwrite"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  const Outcome outcome = burnin(all);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
}

std::string makeLogo() {
  std::string path = at("logo.png");
  ffmpeg({"-f", "lavfi", "-i",
          "color=black:size=60x30,format=rgba,geq=r=230:g='X*4':b=30:a='clip(X*6-20,0,255)'",
          "-frames:v", "1", path});
  return path;
}

CaptionStream popOn(const std::string& text, unsigned channel) {
  return CaptionStream(channel).loadPopOn().eraseHidden().row(15).text(text).endOfCaption();
}

static void writeLine(std::ofstream& file, const char* time, const CaptionStream& stream) {
  file << '\n' << time << '\t' << std::hex << std::setfill('0');
  for (const auto& pair : stream.pairs())
    file << std::setw(2) << +pair[0] << std::setw(2) << +pair[1] << ' ';
  file << '\n';
}

std::string makeCaptions(const std::string& text, unsigned channel) {
  std::string path = at("captions.scc");
  std::ofstream file(path);
  file << "Scenarist_SCC V1.0\n";
  writeLine(file, "00:00:00:10", popOn(text, channel));
  writeLine(file, "00:00:01:20", CaptionStream(channel).eraseDisplayed());
  return path;
}

}  // namespace layers
