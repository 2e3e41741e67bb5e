// SPDX-License-Identifier: BSD-2-Clause
//
// Settings in a file of lines.
#include "noted_store.h"
#include "setting_rows.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <unistd.h>

namespace {

using namespace nkdraw::test;
namespace fs = std::filesystem;

class IniSettings : public testing::Test {
 protected:
  IniSettings() : path_(testing::TempDir() + "nkdraw-" + std::to_string(getpid()) + ".ini") {
    notedStore = NotedStore();
  }
  ~IniSettings() override { fs::remove_all(path_); }

  void write(const std::string& text) const { std::ofstream(path_, std::ios::binary) << text; }
  [[nodiscard]] std::string written() const {
    std::ostringstream text;
    text << std::ifstream(path_, std::ios::binary).rdbuf();
    return text.str();
  }

  /// Loads the lines below the section into settings that were all set.
  void load(const std::string& lines) { loadFile("[nkoverlay]\n" + lines); }
  void loadFile(const std::string& text) {
    write(text);
    for (int slot = 0; slot < 10; ++slot)
      overlay_.setText(slot, "old");
    setNumbersApart(overlay_);
    EXPECT_EQ(overlay_.LoadConfigINI(path_.c_str()), 0U);
    EXPECT_EQ(overlay_.iniPath, nullptr);
    EXPECT_EQ(overlay_.iniFile, nullptr);
  }

  /// The keys of the numbers that a load has made 0; the others are as they were.
  Calls cleared() {
    Overlay before;
    setNumbersApart(before);
    Calls keys;
    for (const SettingRow& row : settingRows()) {
      if (row.kind != Kind::kNumber)
        continue;
      if (row.get(overlay_) == 0)
        keys.push_back(row.key);
      else
        EXPECT_EQ(row.get(overlay_), row.get(before)) << row.key;
    }
    return keys;
  }

  void expectTexts(const std::map<int, std::string>& texts) {
    for (int slot = 0; slot < 10; ++slot) {
      const char* const text = overlay_.CustomText[slot];
      const auto wanted = texts.find(slot);
      ASSERT_EQ(text != nullptr, wanted != texts.end()) << slot;
      if (text != nullptr) {
        EXPECT_EQ(text, wanted->second) << slot;
      }
    }
  }

  const std::string path_;
  Overlay overlay_;
};

TEST_F(IniSettings, ASaveWritesTheSectionAloneAndTheSettingsToTheStore) {
  write("what was there\nbefore\n");
  setNumbersApart(overlay_);
  EXPECT_EQ(overlay_.SaveConfigINI(path_.c_str()), 0U);
  EXPECT_EQ(written(), "[nkoverlay]\n");
  const Calls viaFile = notedStore.calls;
  notedStore.calls.clear();
  overlay_.SaveConfig();
  EXPECT_EQ(viaFile, notedStore.calls);
  EXPECT_EQ(viaFile.back(), saveCall());
  EXPECT_EQ(overlay_.iniPath, nullptr);
  EXPECT_EQ(overlay_.iniFile, nullptr);
}

TEST_F(IniSettings, ASaveThenALoadLeavesOnlyTheTextsGone) {
  overlay_.SaveConfigINI(path_.c_str());
  loadFile(written());
  EXPECT_EQ(cleared(), Calls{});
  expectTexts({});
}

class Watching : public Overlay {
 public:
  std::uint32_t SaveConfig() override {
    seenPath = iniPath;
    return 5;
  }
  const char* seenPath = nullptr;
};

TEST_F(IniSettings, ASaveGoesThroughTheTableWhileThePathIsKnown) {
  Watching o;
  EXPECT_EQ(o.SaveConfigINI(path_.c_str()), 0U);
  EXPECT_EQ(o.seenPath, path_.c_str());
  EXPECT_EQ(o.iniPath, nullptr);
  EXPECT_EQ(notedStore.calls, Calls{});
}

TEST_F(IniSettings, ASettingThatIsSavedWhileAFileIsWrittenBecomesALine) {
  overlay_.iniPath = path_.c_str();
  overlay_.iniFile = std::fopen(path_.c_str(), "w");
  ASSERT_NE(overlay_.iniFile, nullptr);
  EXPECT_EQ(overlay_.SaveSetting("TimeCodeX", 0xFFFFFFF6), 0U);
  EXPECT_EQ(overlay_.SaveSetting("CustomText0", std::string(200, 'x').c_str()), 0U);
  EXPECT_EQ(overlay_.SaveSetting("CustomText1", "on air"), 0U);
  std::fclose(overlay_.iniFile);
  EXPECT_EQ(written(),
            "TimeCodeX = -10\nCustomText0 = " + std::string(200, 'x') + "\nCustomText1 = on air\n");
  EXPECT_EQ(notedStore.calls, Calls{});
}

TEST_F(IniSettings, ALoadAsksNothingOfTheStore) {
  load("Enabled = 1\nCustomText1 = a\n");
  EXPECT_EQ(notedStore.calls, Calls{});
}

TEST_F(IniSettings, EveryNumberThatALineNamesBecomesZero) {
  for (const SettingRow& row : settingRows()) {
    if (row.kind != Kind::kNumber)
      continue;
    load(row.key + " = 100\n");
    const Calls keys = cleared();
    Calls wanted;
    for (const SettingRow& other : settingRows()) {
      if (other.kind == Kind::kNumber && row.key.find(other.key) != std::string::npos)
        wanted.push_back(other.key);
    }
    EXPECT_EQ(keys, wanted);
    expectTexts({});
  }
}

TEST_F(IniSettings, ANumberIsZeroHoweverItsLineIsWritten) {
  for (const char* const line :
       {"AudioX=5", "AudioX = -5", "AudioX =", "AudioX == 7", "  AudioX\t= 9\r", "xAudioXy = 1"}) {
    load(line + std::string("\n"));
    EXPECT_EQ(cleared(), Calls{"AudioX"}) << line;
  }
}

TEST_F(IniSettings, TheLineOfASlotsSwitchNamesTheMasterSwitchToo) {
  load("CustomTextEnabled3 = 1\n");
  EXPECT_EQ(cleared(), (Calls{"Enabled", "CustomTextEnabled3"}));
}

TEST_F(IniSettings, ANumberOfTwoDigitsNamesTheSlotOfItsFirst) {
  load("CustomText12 = two digits\nCustomTextX34 = 1\n");
  expectTexts({{1, "= two digits\n"}});
  EXPECT_EQ(cleared(), Calls{"CustomTextX3"});
}

TEST_F(IniSettings, AKeyInsideAValueCounts) {
  load("CustomText4 = AudioX and TimeCodeSize, not CustomText5\n");
  const std::string text = "= AudioX and TimeCodeSize, not CustomText5\n";
  expectTexts({{4, text}, {5, text}});
  EXPECT_EQ(cleared(), (Calls{"AudioX", "TimeCodeSize"}));
}

TEST_F(IniSettings, KeysAreTakenAsTheyAreSpelt) {
  load("audiox = 1\nAUDIOX = 1\nAudio X = 1\nWatermark = a path\ntimeCodeType = 1\n");
  EXPECT_EQ(cleared(), Calls{});
  EXPECT_EQ(overlay_.watermarkPath, nullptr);
  EXPECT_EQ(overlay_.timeCodeType, 4U);
}

TEST_F(IniSettings, ATextBeginsWithTheSignAndEndsWithTheLine) {
  load("CustomText3 = on air\nCustomText0=x\nCustomText9   =   a = b  \r\n");
  expectTexts({{0, "=x\n"}, {3, "= on air\n"}, {9, "=   a = b  \r\n"}});
  EXPECT_EQ(cleared(), Calls{});
}

TEST_F(IniSettings, ALaterLineReplacesTheTextOfAnEarlierOne) {
  load("CustomText3 = one\nCustomText3 = two\n");
  expectTexts({{3, "= two\n"}});
}

TEST_F(IniSettings, ATextHasRoomForWhatTheStoreMayWrite) {
  load("CustomText3 = a\n");
  expectRoomForStoredText(overlay_.CustomText[3]);
}

TEST_F(IniSettings, AFileWithoutALineEndAtItsEndIsReadToItsEnd) {
  load("AudioX = 5\nCustomText6 = last");
  expectTexts({{6, "= last"}});
  EXPECT_EQ(cleared(), Calls{"AudioX"});
}

TEST_F(IniSettings, TheSectionsOwnLineIsUsedForNothingElse) {
  loadFile("[nkoverlay] AudioX = 1, CustomText1 = a\nAudioY = 1\n");
  EXPECT_EQ(cleared(), Calls{"AudioY"});
  expectTexts({});
}

TEST_F(IniSettings, TheLastLineIsTakenTwiceWhichShowsOnASectionLineThatIsTheLast) {
  loadFile("[nkoverlay] AudioX = 1\n");
  EXPECT_EQ(cleared(), Calls{"AudioX"});
  loadFile("[nkoverlay] AudioX = 1");
  EXPECT_EQ(cleared(), Calls{});
}

TEST_F(IniSettings, TheSectionIsKnownInAnyCaseAtTheLineStartAlone) {
  for (const char* const section : {"[nkoverlay]", "[NKOVERLAY]", "[NkOverlay] and more"}) {
    loadFile(section + std::string("\nAudioX = 1\n"));
    EXPECT_EQ(cleared(), Calls{"AudioX"}) << section;
  }
  for (const char* const section : {" [nkoverlay]", "[nkoverlay", "[nk overlay]", ";[nkoverlay]",
                                    "[overlay]", "[nkoverlays]", ""}) {
    loadFile(section + std::string("\nAudioX = 1\n"));
    EXPECT_EQ(cleared(), Calls{}) << section;
    expectTexts({});
  }
}

TEST_F(IniSettings, LinesBeforeTheSectionAreIgnored) {
  loadFile("AudioX = 1\nCustomText1 = a\n[other]\nAudioY = 1\n[nkoverlay]\nTimeCodeX = 1\n");
  EXPECT_EQ(cleared(), Calls{"TimeCodeX"});
  expectTexts({});
}

TEST_F(IniSettings, NoLaterSectionEndsTheFirst) {
  load("[other]\nAudioX = 1\n[nkoverlay]\nAudioY = 1\n");
  EXPECT_EQ(cleared(), (Calls{"AudioX", "AudioY"}));
}

TEST_F(IniSettings, ThereAreNoCommentLines) {
  load("; AudioX = 1\n# AudioY = 1\n// CustomText2 = a\n");
  EXPECT_EQ(cleared(), (Calls{"AudioX", "AudioY"}));
  expectTexts({{2, "= a\n"}});
}

TEST_F(IniSettings, LongLinesGoOnAsNewOnesAfter259Characters) {
  const std::string head = "CustomText1 = ";
  const std::string filler(259 - head.size(), 'x');
  load(head + filler + "AudioX = 1\n");
  expectTexts({{1, "= " + filler}});
  EXPECT_EQ(cleared(), Calls{"AudioX"});
  // One character earlier, and the key is cut in two.
  load(head + filler.substr(3) + "AudioX = 1\n");
  expectTexts({{1, "= " + filler.substr(3) + "Aud"}});
  EXPECT_EQ(cleared(), Calls{});
}

TEST_F(IniSettings, ASectionLineInTheRestOfALongLineCounts) {
  loadFile(std::string(259, 'x') + "[nkoverlay]\nAudioX = 1\n");
  EXPECT_EQ(cleared(), Calls{"AudioX"});
}

TEST_F(IniSettings, AnEmptyFileOnlyLosesTheTexts) {
  for (const char* const text : {"", "\n", "[nkoverlay]", "[nkoverlay]\n", "[nkoverlay]\n\n"}) {
    loadFile(text);
    EXPECT_EQ(cleared(), Calls{});
    expectTexts({});
  }
}

TEST_F(IniSettings, LinesWithoutASignAreHarmless) {
  load("AudioX\nCustomText1\n\nAudioY = 1\n");
  EXPECT_EQ(cleared(), Calls{"AudioY"});
  expectTexts({});
}

TEST_F(IniSettings, FilesThatCanNotBeOpenedAreHarmless) {
  const std::string missing = path_ + "/missing";
  overlay_.setText(1, "old");
  EXPECT_EQ(overlay_.LoadConfigINI(missing.c_str()), 0U);
  expectTexts({});
  EXPECT_EQ(overlay_.LoadConfigINI(testing::TempDir().c_str()), 0U);  // a folder
  EXPECT_EQ(overlay_.SaveConfigINI(missing.c_str()), 0U);
  EXPECT_EQ(notedStore.calls.back(), saveCall());
  EXPECT_EQ(overlay_.iniPath, nullptr);
  EXPECT_EQ(overlay_.iniFile, nullptr);
}

}  // namespace
