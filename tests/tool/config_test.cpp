// SPDX-License-Identifier: BSD-2-Clause
//
// The overlay's settings from the command line, and burnt in.
#include "program.h"

#include <nkdraw/nkdraw.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <utility>

namespace {

/// Each test has a store of its own.
class Config : public testing::Test {
 protected:
  Config() { setenv("NKDRAW_CONFIG", store().c_str(), 1); }
  ~Config() override { setenv("NKDRAW_CONFIG", before_.c_str(), 1); }

  static std::string store() { return at("store/config.db"); }
  static Outcome config(Arguments arguments) {
    arguments.insert(arguments.begin(), "config");
    return nkdrawTool(arguments);
  }
  static std::string get(const std::string& key) { return config({"get", key}).out; }
  static void set(const std::string& key, const std::string& value) {
    const Outcome outcome = config({"set", key, value});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out + outcome.err, "");
  }
  static std::string clip() {
    std::string path = at("in.nut");
    if (!exists(path))
      ffmpeg({"-f", "lavfi", "-i", "color=black:size=720x480:rate=25", "-frames:v", "1", "-c:v",
              "v210", path});
    return path;
  }
  static std::string planWith(Arguments options) {
    options.insert(options.begin(), {clip(), at("out.nut"), "--dry-run"});
    const Outcome outcome = burnin(options);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    return outcome.out;
  }

 private:
  std::string before_ = std::getenv("NKDRAW_CONFIG");
};

void expectSays(const std::string& plan, const std::string& words) {
  EXPECT_NE(plan.find(words), std::string::npos) << plan;
}

TEST_F(Config, ValuesComeBackAsTheyWereSet) {
  set("TimeCodeX", "33");
  set("WatermarkX", "-12");
  set("CustomText4", "Reel 7, = \"A\"");
  set("Watermark", "/a/logo.png");
  EXPECT_EQ(get("TimeCodeX"), "33\n");
  EXPECT_EQ(get("WatermarkX"), "-12\n");
  EXPECT_EQ(get("CustomText4"), "Reel 7, = \"A\"\n");
  EXPECT_EQ(get("Watermark"), "/a/logo.png\n");
  set("CustomText4", "");
  EXPECT_EQ(get("CustomText4"), "\n");
}

TEST_F(Config, ANewStoreBeginsWithAllDefaults) {
  EXPECT_EQ(get("TimeCodeSize"), "2\n");
  EXPECT_FALSE(exists(store()));
  set("TimeCodeX", "33");
  EXPECT_EQ(get("TimeCodeSize"), "2\n");
  EXPECT_EQ(get("FillBackground"), "1\n");
  EXPECT_EQ(get("CustomTextY9"), "270\n");
}

TEST_F(Config, UnsetBringsTheDefaultBack) {
  set("TimeCodeY", "5");
  EXPECT_EQ(config({"unset", "TimeCodeY"}).exitCode, 0);
  EXPECT_EQ(get("TimeCodeY"), "300\n");
}

TEST_F(Config, ResetBringsEveryDefaultBack) {
  EXPECT_EQ(config({"reset"}).exitCode, 0);
  EXPECT_FALSE(exists(store())) << "there was nothing to write";
  const std::string defaults = config({"list"}).out;
  set("TimeCodeY", "5");
  set("CustomText3", "Reel 7");
  EXPECT_EQ(config({"reset"}).exitCode, 0);
  EXPECT_EQ(config({"list"}).out, defaults);
  EXPECT_EQ(config({"reset", "TimeCodeY"}).exitCode, 1);
}

TEST_F(Config, ListsEverySettingOnce) {
  const std::string list = config({"list"}).out;
  EXPECT_EQ(std::ranges::count(list, '\n'), 1 + 27 + 40);
  expectSays(list, "WatermarkY               400          400      -16384 to 16384");
}

TEST_F(Config, EndsOfRangesAreTaken) {
  for (const auto& [key, value] :
       {std::pair{"TimeCodeSize", "1"}, std::pair{"TimeCodeSize", "20"},
        std::pair{"CaptionSource", "8"}, std::pair{"WatermarkX", "-16384"}})
    set(key, value);
  set("CustomText0", std::string(127, 'x'));
  EXPECT_EQ(get("CustomText0"), std::string(127, 'x') + "\n");
}

TEST_F(Config, NamesItsFile) {
  EXPECT_EQ(config({"path"}).out, store() + "\n");
}

TEST_F(Config, IsWhatAProgramLoads) {
  set("TimeCodeX", "77");
  class Overlay : public CNkOverlay {
   public:
    using CNkOverlay::TimeCodeX;
  } overlay;
  overlay.LoadConfig();
  EXPECT_EQ(overlay.TimeCodeX, 77);
}

TEST_F(Config, TwoProcessesBeginOneStoreWithoutLosingAValue) {
  for (int round = 0; round < 5; ++round) {
    setenv("NKDRAW_CONFIG", at("two" + std::to_string(round) + ".db").c_str(), 1);
    const auto setTo = [](const char* key) {
      const std::string command = std::string(NKDRAW_TOOL) + " config set " + key + " 9";
      EXPECT_EQ(std::system(command.c_str()), 0);
    };
    std::thread other(setTo, "TimeCodeX");
    setTo("TimeCodeY");
    other.join();
    EXPECT_EQ(get("TimeCodeX") + get("TimeCodeY"), "9\n9\n");
  }
}

TEST_F(Config, RefusesWhatItDoesNotKnow) {
  struct Refusal {
    Arguments arguments;
    const char* words;
  };
  const Refusal refusals[] = {
      {{}, "no such action: (none)"},
      {{"show"}, "no such action: show"},
      {{"get"}, "no key"},
      {{"set", "TimeCodeX"}, "no value"},
      {{"list", "TimeCodeX"}, "too many arguments"},
      {{"get", "TimeCodeX", "3"}, "too many arguments"},
      {{"get", "timecodx"}, "the nearest is TimeCodeX"},
      {{"get", "timecodex"}, "the nearest is TimeCodeX"},
      {{"set", "CustomTextX10", "3"}, "the nearest is CustomTextX0"},
      {{"set", "TimeCodeSize", "0"}, "give 1 to 20"},
      {{"set", "TimeCodeSize", "21"}, "give 1 to 20"},
      {{"set", "TimeCodeSize", "2x"}, "give 1 to 20"},
      {{"set", "TimeCodeSize", ""}, "(empty)"},
      {{"set", "WatermarkX", "-16385"}, "give -16384 to 16384"},
      {{"set", "CustomText0", "caf\xC3\xA9"}, "127 printable ASCII"},
      {{"set", "CustomText0", std::string(128, 'x')}, "127 printable ASCII"},
  };
  for (const Refusal& refusal : refusals) {
    Arguments arguments = {"config"};
    arguments.insert(arguments.end(), refusal.arguments.begin(), refusal.arguments.end());
    expectRefusal(arguments, 1, refusal.words);
  }
}

TEST_F(Config, RefusesAStoreThatCannotBeUsed) {
  setenv("NKDRAW_CONFIG", workFolder().c_str(), 1);  // a folder
  expectRefusal({"config", "get", "TimeCodeX"}, 2, "the settings can't be read");
  setenv("NKDRAW_CONFIG", "/proc/none/config.db", 1);
  expectRefusal({"config", "set", "TimeCodeX", "3"}, 3, "the settings can't be saved");
}

TEST_F(Config, IsBurntInWithOptionsOnTop) {
  for (const auto& [key, value] :
       {std::pair{"TimeCodeLTCEnable", "1"}, std::pair{"TimeCodeX", "8"},
        std::pair{"TimeCodeY", "40"}, std::pair{"TimeCodeSize", "4"},
        std::pair{"CustomTextEnabled3", "1"}, std::pair{"CustomText3", "Three"},
        std::pair{"CustomTextX3", "100"}, std::pair{"SourceFormatEnable", "1"},
        std::pair{"SourceFormatY", "300"}, std::pair{"CaptionsEnable", "2"},
        std::pair{"CaptionSource", "2"}})
    set(key, value);
  const std::string plan = planWith({"--settings", "store"});
  expectSays(plan, "LTC row \"00:00:00:00\": 8,40 to 359,80, magnified 4");
  expectSays(plan, "text 1 \"Three\": 100,90");
  expectSays(plan, "20,300 to");
  expectSays(plan, "captions CC2");
  const std::string changed =
      planWith({"--settings", "store", "--timecode-size", "2", "--text", "0,0,Other", "--vitc"});
  expectSays(changed, "LTC row \"00:00:00:00\": 8,40 to 183,60, magnified 2");
  expectSays(changed, "VITC row");
  expectSays(changed, "text 1 \"Other\"");
  EXPECT_EQ(changed.find("Three"), std::string::npos);
  EXPECT_EQ(planWith({"--settings", "store", "--no-ltc"}).find("LTC row"), std::string::npos);
}

TEST_F(Config, OfAnINIFileIsReadAsTheLibraryReadsIt) {
  std::ofstream(at("o.ini")) << "[nkoverlay]\nTimeCodeX = 55\n";
  expectSays(planWith({"--settings", at("o.ini"), "--ltc"}),
             "LTC row \"00:00:00:00\": 0,300");  // a number that a line names becomes 0
}

TEST_F(Config, RefusesSettingsThatCannotBeBurntIn) {
  std::ofstream(at("plain.txt")) << "TimeCodeX = 55\n";
  std::ofstream(at("size.ini")) << "[nkoverlay]\nTimeCodeSize = 3\n";
  const auto expect = [&](const Arguments& options, int exitCode, const char* words) {
    Arguments arguments = {"burnin", clip(), at("out.nut")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    expectRefusal(arguments, exitCode, words);
  };
  expect({"--settings", at("none.ini")}, 2, "cannot read the settings");
  expect({"--settings", workFolder()}, 2, "cannot read the settings");
  expect({"--settings", at("plain.txt")}, 2, "[nkoverlay]");
  expect({"--settings", at("size.ini"), "--ltc"}, 1, "TimeCodeSize 0");
  expect({"--settings", ""}, 1, "not a value of --settings");
  set("TimeCodeX", "3");
  expect({"--settings", "store"}, 1, "nothing to burn in");
}

}  // namespace
