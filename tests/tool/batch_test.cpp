// SPDX-License-Identifier: BSD-2-Clause
//
// Lists of runs: --batch LIST.csv.
#include "clip.h"
#include "program.h"

#include <cli/batch.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

std::string list(const std::string& text) {
  const std::string path = at("list.csv");
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

std::string clip(const std::string& name) {
  ffmpeg({"-f", "lavfi", "-i", "color=black:size=320x180:rate=25", "-frames:v", "2", "-c:v", "v210",
          at(name)});
  return at(name);
}

}  // namespace

TEST(BatchList, IsReadAsRFC4180Says) {
  const auto rows = nkdraw::tool::readBatch(
      list("\xEF\xBB\xBFinput,output,text,clock,options\r\n"
           "a b.mov,b.mov,\"1,2,say \"\"hi\"\", all\",yes,--frames 0-1 --size 2\r\n"
           "\n"
           "\"c\nd.mov\",d.mov\n"));
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].number, 2);
  EXPECT_EQ(rows[0].arguments, (Arguments{"--text", "1,2,say \"hi\", all", "--clock", "--frames",
                                          "0-1", "--size", "2", "a b.mov", "b.mov"}));
  EXPECT_EQ(rows[1].number, 4);
  EXPECT_EQ(rows[1].arguments, (Arguments{"c\nd.mov", "d.mov"}));
}

TEST(Batch, RunsEveryRowAndGoesOnAfterAFailure) {
  const std::string in = clip("in.mov");
  const std::string path =
      list("input,output,start-timecode,options\n" + in + "," + at("one.mov") + ",10:00:00:00,\n" +
           at("missing.mov") + "," + at("two.mov") + ",,\n" + in + "," + at("three.mov") +
           ",,--no-such\n" + in + "," + at("four.mov") + ",,--frame-number --no-ltc\n");
  const Outcome outcome = burnin({"--batch", path, "--position", "8,20", "--timecode-size", "2"});
  EXPECT_EQ(outcome.exitCode, 2) << "the first failure's";
  EXPECT_NE(outcome.err.find(path + " row 3: cannot read the input"), std::string::npos)
      << outcome.err;
  EXPECT_NE(outcome.err.find(path + " row 4: no such option: --no-such"), std::string::npos)
      << outcome.err;
  EXPECT_NE(outcome.err.find("2 of 4 done"), std::string::npos) << outcome.err;
  EXPECT_EQ(readText(decodeAs(at("one.mov"), AV_PIX_FMT_GRAY8), 1, 8, 20, 2, 11), "10:00:00:01");
  EXPECT_EQ(readText(decodeAs(at("four.mov"), AV_PIX_FMT_GRAY8), 1, 8, 20, 2, 12), "FRAME 000001");
  EXPECT_FALSE(fs::exists(at("two.mov")));
  EXPECT_FALSE(fs::exists(at("three.mov")));
}

TEST(Batch, TellsWhatIsWrongWithTheList) {
  struct Case {
    const char* text;
    const char* words;
  };
  for (const Case& each : {Case{"", "names no columns"},
                           {"in.mov,out.mov\n", "names no columns"},
                           {"input,output\na,b,c\n", "row 2"},
                           {"input,output\n\n", "no rows"},
                           {"input,output\na,b\nc,./b\n", "rows 2 and 3"},
                           {"input,output\n\"a,b\n", "doesn't end"}}) {
    const Outcome outcome = burnin({"--batch", list(each.text)});
    EXPECT_EQ(outcome.exitCode, 2) << each.text;
    EXPECT_NE(outcome.err.find(each.words), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(burnin({"--batch", at("none.csv")}).exitCode, 2);
  const Outcome folder = burnin({"--batch", at("")});
  EXPECT_EQ(folder.exitCode, 2);
  EXPECT_NE(folder.err.find("directory"), std::string::npos) << folder.err;
}

TEST(Batch, ACutFileDoesNotSpoilTheNext) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "20", "-c:v", "mjpeg",
          "-movflags", "+faststart", at("whole.mov")});
  fs::copy_file(at("whole.mov"), at("cut.mov"));
  fs::resize_file(at("cut.mov"), fs::file_size(at("cut.mov")) * 7 / 10);
  const std::string path = list("input,output\n" + at("cut.mov") + "," + at("a.mov") + "\n" +
                                at("whole.mov") + "," + at("b.mov") + "\n");
  const Outcome outcome = burnin({"--batch", path, "--on-damage", "continue"});
  EXPECT_EQ(outcome.exitCode, 5) << outcome.err;
  EXPECT_NE(outcome.err.find("1 of 2 done"), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.err.find("whole.mov"), std::string::npos) << outcome.err;
}

TEST(ProgressJson, IsAlsoToldOfASequence) {
  const Outcome outcome = burnin({clip("in.mov"), at("p%02d.png"), "--progress", "json"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_NE(outcome.err.find("{\"frame\":2,\"frames\":2"), std::string::npos) << outcome.err;
}

TEST(ProgressJson, IsOneObjectALineOnStandardError) {
  const Outcome outcome =
      burnin({clip("in.mov"), at("progress.mov"), "--overwrite", "--progress", "json"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err.find("{\"frame\":2,\"frames\":2,\"rate\":"), 0U) << outcome.err;
  EXPECT_TRUE(outcome.err.ends_with("}\n")) << outcome.err;
  EXPECT_EQ(burnin({at("in.mov"), at("x.mov"), "--progress", "often"}).exitCode, 1);
}
