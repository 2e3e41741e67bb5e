// SPDX-License-Identifier: BSD-2-Clause
//
// A dry run as JSON says what the text says, and what the run then does.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>
#include <string>

namespace {

using nlohmann::json;

constexpr int kWidth = 320, kHeight = 180;
constexpr std::size_t kFrames = 5;

/// A clip of that many frames, its codec and what else FFmpeg's output needs.
std::string makeClip(const std::string& name, const Arguments& encode) {
  Arguments arguments = {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "5"};
  arguments.insert(arguments.end(), encode.begin(), encode.end());
  arguments.push_back(at(name));
  ffmpeg(arguments);
  return at(name);
}

std::string makeRaw(const std::string& name) {
  return makeClip(name, {"-c:v", "rawvideo", "-pix_fmt", "bgr24", "-timecode", "10:00:00:00"});
}

Outcome dryRun(Arguments arguments, const Arguments& more = {}) {
  arguments.emplace_back("--dry-run");
  arguments.insert(arguments.end(), more.begin(), more.end());
  return nkdrawTool(arguments);
}

/// What the dry run of a command says as JSON: one object in one line.
json told(const Arguments& arguments) {
  const Outcome outcome = dryRun(arguments, {"--json"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 1) << outcome.out;
  return json::parse(outcome.out, nullptr, false);
}

std::string text(const json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

/// "16,150 to 103,160"
std::string corners(const json& box) {
  const int x = box["x"], y = box["y"], width = box["width"], height = box["height"];
  return std::to_string(x) + "," + std::to_string(y) + " to " + std::to_string(x + width - 1) +
         "," + std::to_string(y + height - 1);
}

bool isIn(const json& box, int x, int y) {
  return x >= box["x"] && y >= box["y"] && x < box["x"].get<int>() + box["width"].get<int>() &&
         y < box["y"].get<int>() + box["height"].get<int>();
}

/// The boxes and layers together.
json partsOf(const json& said) {
  json parts = said["boxes"];
  for (const json& layer : said["layers"])
    parts.push_back(layer);
  return parts;
}

/// The parts in which a pixel at (x, y) lies.
std::set<std::size_t> partsAt(const json& parts, int x, int y) {
  std::set<std::size_t> found;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (isIn(parts[i], x, y))
      found.insert(i);
  }
  return found;
}

std::set<std::string> keysOf(const json& object) {
  std::set<std::string> keys;
  for (const auto& [key, value] : object.items())
    keys.insert(key);
  return keys;
}

const Arguments kLook = {"--clock", "--vitc", "--text", "20,20,Reel 7", "--format-line"};

Arguments with(Arguments arguments, const Arguments& more) {
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

}  // namespace

TEST(DryRunJSON, SaysOfABurnInWhatTheTextSays) {
  const Arguments run =
      with({"burnin", makeRaw("in.mov"), at("out.mov"), "--frames", "1-3"}, kLook);
  const std::string lines = dryRun(run).out;
  const json said = told(run);
  const json &input = said["input"], &frames = said["frames"], &timecode = said["timecode"],
             &output = said["outputs"][0];
  EXPECT_EQ(said["method"], "in-place");
  EXPECT_EQ(frames["rate"], json({{"num", 25}, {"den", 1}}));
  EXPECT_EQ(frames["interlaced"], false);
  EXPECT_EQ(input["frames"], kFrames);
  EXPECT_EQ(said["written"], json({{"first", 1}, {"last", 3}}));
  EXPECT_TRUE(output["codec"].is_null());
  for (const std::string& line :
       {"input     " + text(input["path"]) + ": " + text(input["format"]) + ", " +
            text(input["codec"]) + ", " + text(input["frames"]) + " frames",
        "frames    " + text(frames["width"]) + "x" + text(frames["height"]) +
            ", 25 frames/s, progressive",
        "layout    " + text(said["layout"]["name"]) + ": " + text(said["layout"]["description"]),
        "timecode  " + text(timecode["start"]) + ", " + text(timecode["origin"]),
        std::string("written   frames 1 to 3"),
        "output    " + text(output["path"]) + ": " + text(output["format"])})
    EXPECT_NE(lines.find(line + "\n"), std::string::npos) << line << "\n" << lines;
}

TEST(DryRunJSON, ListsTheBoxesOfTheText) {
  const Arguments run = with({"burnin", makeRaw("in.mov"), at("out.mov")}, kLook);
  const std::string lines = dryRun(run).out;
  const json boxes = told(run)["boxes"];
  ASSERT_EQ(boxes.size(), 5U);
  std::size_t before = 0;
  for (const json& box : boxes) {
    const std::size_t found =
        lines.find("burn in   " + text(box["what"]) + " \"" + text(box["text"]) +
                   "\": " + corners(box) + ", magnified " + text(box["magnification"]) + "\n");
    ASSERT_NE(found, std::string::npos) << box << "\n" << lines;
    EXPECT_GE(found, before) << "in another order";
    before = found;
  }
}

TEST(DryRunJSON, HasABoxAroundEveryPixelThatIsDrawn) {
  ffmpeg({"-f", "lavfi", "-i", "color=red:size=40x30", "-frames:v", "1", at("logo.png")});
  const Arguments run = with({"burnin", makeRaw("in.mov"), at("out.mov"), "--watermark",
                              at("logo.png"), "--watermark-at", "250,40"},
                             kLook);
  const json parts = partsOf(told(run));
  ASSERT_EQ(parts.size(), 6U);
  ASSERT_EQ(nkdrawTool(run).exitCode, 0);
  const Clip before = decode(at("in.mov")), after = decode(at("out.mov"));
  ASSERT_EQ(after.frames.size(), kFrames);
  std::set<std::size_t> changed;
  for (std::size_t i = 0; i < before.frames[0].size(); ++i) {
    const int pixel = static_cast<int>(i / 3);
    if (before.frames[0][i] == after.frames[0][i])
      continue;
    const auto at = partsAt(parts, pixel % kWidth, pixel / kWidth);
    ASSERT_FALSE(at.empty()) << pixel % kWidth << "," << pixel / kWidth;
    changed.insert(at.begin(), at.end());
  }
  EXPECT_EQ(before.frames[0].size(), std::size_t{kWidth} * kHeight * 3);
  EXPECT_EQ(changed.size(), parts.size()) << "a box in which nothing was drawn";
}

TEST(DryRunJSON, SaysHowFramesAreEncodedAndWhatBecomesOfStreams) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-f", "lavfi", "-i", "sine", "-t",
          "0.2", "-c:v", "mpeg4", "-c:a", "pcm_s16le", "-timecode", "10:00:00:00", at("in.mov")});
  const Arguments run = {"burnin", at("in.mov"), at("out.mp4"), "--codec", "mpeg2video:g=4:bf=0"};
  const json said = told(run), output = said["outputs"][0];
  EXPECT_EQ(said["method"], "transcode");
  EXPECT_EQ(said["picture"], json({{"decoded", "yuv420p"}, {"drawn", "yuv420p"}}));
  EXPECT_TRUE(said["layout"].is_null());
  EXPECT_EQ(output["codec"]["pixel_format"], "yuv420p");
  EXPECT_EQ(output["codec"]["options"],
            json({{"g", "4"}, {"bf", "0"}, {"gop_timecode", "10:00:00:00"}}));
  const json& streams = output["streams"];
  ASSERT_EQ(streams.size(), 3U);
  EXPECT_EQ(streams[0]["action"], "burn");
  EXPECT_TRUE(streams[0]["why"].is_null());
  EXPECT_EQ(streams[1], json({{"index", 1},
                              {"description", "audio, pcm_s16le"},
                              {"action", "convert"},
                              {"codec", "aac"},
                              {"why", "mp4 files do not keep pcm_s16le"}}));
  EXPECT_EQ(streams[2]["action"], "timecode");
  ASSERT_EQ(nkdrawTool(run).exitCode, 0);
  EXPECT_EQ(codecOf(at("out.mp4")), output["codec"]["name"]);
  EXPECT_EQ(decode(at("out.mp4")).timecode, said["timecode"]["start"]);
}

TEST(DryRunJSON, HasTheSameNamesForEveryBurnIn) {
  makeRaw("in.mov");
  const json inPlace = told({"burnin", at("in.mov"), at("out.mov")});
  for (const Arguments& run : {Arguments{"burnin", at("in.mov"), at("out.mkv"), "--codec", "ffv1"},
                               Arguments{"burnin", at("in.mov"), at("out.png"), "--still", "2"},
                               Arguments{"burnin", at("in.mov"), at("out%04d.png")},
                               Arguments{"burnin", "--layout", "v210", at("out.mov")}}) {
    const json said = told(run);
    EXPECT_EQ(keysOf(said), keysOf(inPlace)) << said;
    EXPECT_EQ(keysOf(said["outputs"][0]), keysOf(inPlace["outputs"][0])) << said;
  }
}

TEST(DryRunJSON, TellsTheNotes) {
  makeClip("in.mp4", {"-c:v", "mpeg4"});
  const Arguments run = {"burnin", at("in.mp4"), at("out%04d.png")};
  const json said = told(run);
  ASSERT_FALSE(said["notes"].empty());
  const std::string lines = dryRun(run).out;
  for (const json& note : said["notes"])
    EXPECT_NE(lines.find("note      " + text(note) + "\n"), std::string::npos) << note;
}

TEST(DryRunJSON, SaysOfAWipeWhatTheTextSays) {
  makeRaw("in.mov");
  const Arguments run = {"wipe", at("in.mov"), at("in.mov"), at("out.mov"), "--at",
                         "2f",   "--duration", "3f",         "--wipe",      "edge-horz"};
  const Outcome outcome = dryRun(run);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const json said = told(run);
  EXPECT_EQ(said["inputs"].size(), 2U);
  EXPECT_EQ(said["method"], "in-place");
  EXPECT_EQ(said["transition"], json({{"first", 2}, {"frames", 3}}));
  EXPECT_EQ(said["written"], json({{"first", 0}, {"last", 6}, {"exact", true}}));
  EXPECT_NE(outcome.out.find("wipe      " + text(said["wipe"]["name"]) + "\n"), std::string::npos);
  ASSERT_EQ(nkdrawTool(run).exitCode, 0);
  EXPECT_EQ(decode(at("out.mov")).frames.size(), 7U);
}

TEST(DryRunJSON, SaysOfAComparisonWhatTheTextSays) {
  makeRaw("in.mov");
  const Arguments run = {"compare",     at("in.mov"), at("in.mov"),
                         at("out.mov"), "--report",   at("r.csv")};
  const std::string lines = dryRun(run).out;
  const json said = told(run), output = said["outputs"][0];
  EXPECT_EQ(said["frames"]["width"], kWidth);
  for (const std::string& line :
       {"mode      " + text(said["mode"]["name"]) + ": " + text(said["mode"]["description"]),
        "report    " + text(said["report"]["path"]) + ": compared as " +
            text(said["report"]["pixel_format"]),
        "codec     " + text(output["codec"]["encoder"]) + ", " +
            text(output["codec"]["pixel_format"]),
        "output    " + text(output["path"]) + ": " + text(output["format"])})
    EXPECT_NE(lines.find(line + "\n"), std::string::npos) << line << "\n" << lines;
  const json alone = told({"compare", at("in.mov"), at("in.mov"), "--report", at("r.csv")});
  EXPECT_EQ(keysOf(alone), keysOf(said));
  EXPECT_TRUE(alone["outputs"].empty());
}

TEST(DryRunJSON, IsUTF8WhateverTheNames) {
  makeRaw("in.mov");
  const json said = told({"burnin", at("in.mov"), at("\xFFout.mov")});
  EXPECT_NE(text(said["outputs"][0]["path"]).find("out.mov"), std::string::npos);
}

TEST(DryRunJSON, IsRefusedForARun) {
  makeRaw("in.mov");
  const std::string in = at("in.mov"), out = at("out.mov");
  expectRefusal({"burnin", in, out, "--json"}, 1, "only a dry run is told as JSON");
  expectRefusal({"wipe", in, in, out, "--at", "1f", "--duration", "2f", "--json"}, 1, "--dry-run");
  expectRefusal({"compare", in, in, out, "--json"}, 1, "--dry-run");
}
