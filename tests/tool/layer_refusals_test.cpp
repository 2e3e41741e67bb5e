// SPDX-License-Identifier: BSD-2-Clause
//
// Watermarks, captions and meters that can't be burnt in.
#include "clip.h"
#include "layers.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace {

using namespace layers;

/// Options with blanks between them; '@' stands for the work folder.
struct Refusal {
  const char* options;
  int exitCode;
  const char* words;
};

constexpr Refusal kRefusals[] = {
    {"--watermark @none.png", 2, "cannot read the watermark"},
    {"--watermark @text.png", 2, "no picture that can be read"},
    {"--watermark @", 2, "no picture that can be read"},
    {"--watermark @logo.png --watermark-at 582,0", 1, "leaves the frame at the right edge"},
    {"--watermark @logo.png --watermark-at 0,331", 1, "leaves the frame at the lower edge"},
    {"--watermark @logo.png --watermark-at -2,0", 1, "leaves the frame at the left edge"},
    {"--watermark @logo.png --watermark-at 3", 1, "not a value of --watermark-at"},
    {"--watermark-at 3,3", 1, "give --watermark"},
    {"--captions-file @none.scc", 2, "cannot read the captions"},
    {"--captions-file @logo.png", 2, "not a file of captions"},
    {"--captions-file @empty.scc", 2, "captions"},
    {"--captions-file @captions.scc --captions", 1, "exclude each other"},
    {"--captions-file @captions.scc --caption-channel CC3", 1, "first field"},
    {"--captions --caption-channel CC5", 1, "not a value of --caption-channel"},
    {"--caption-channel CC1", 1, "give --captions"},
    {"--meters", 2, "no sound in the clip"},
    {"--meters --meters-at 360,0", 1, "meter panel leaves the frame"},
    {"--meters --meters-at 0,148", 1, "meter panel leaves the frame"},
    {"--meters-at 0,0", 1, "give --meters"},
};

Arguments argumentsOf(const std::string& options) {
  Arguments arguments = {"burnin", at("in-uyvy.nut"), at("out.nut")};
  std::istringstream words(options);
  for (std::string word; words >> word;)
    arguments.push_back(word[0] == '@' ? at(word.substr(1)) : word);
  return arguments;
}

TEST(LayerRefusals, AreOneLineAndLeaveNothing) {
  makeClip("uyvy", "black", 2);
  makeLogo();
  makeCaptions("Hello");
  std::ofstream(at("text.png")) << "no picture";
  std::ofstream(at("empty.scc")) << "Scenarist_SCC V1.0\n\n";
  for (const Refusal& refusal : kRefusals)
    expectRefusal(argumentsOf(refusal.options), refusal.exitCode, refusal.words);
  const Outcome edge = nkdrawTool(argumentsOf("--watermark @logo.png --watermark-at 581,330"));
  EXPECT_EQ(edge.exitCode, 0) << edge.err;
}

TEST(LayerRefusals, NameWhatATestPatternLacks) {
  for (const char* option : {"--meters", "--captions"})
    expectRefusal({"burnin", "--layout", "uyvy", at("out.nut"), option}, 1,
                  "the test pattern has no");
}

TEST(LayerRefusals, KeepWatermarksOutOfPairsThatAreNotWhole) {
  ffmpeg({"-f", "lavfi", "-i", "color=black:size=641x360:rate=25,format=gbrp", "-frames:v", "1",
          "-c:v", "rawvideo", "-pix_fmt", "uyvy422", at("odd.nut")});
  expectRefusal(
      {"burnin", at("odd.nut"), at("out.nut"), "--watermark", makeLogo(), "--watermark-at", "0,0"},
      1, "odd width");
}

}  // namespace
