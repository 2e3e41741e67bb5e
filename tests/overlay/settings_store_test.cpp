// SPDX-License-Identifier: BSD-2-Clause
//
// The calls that the overlay makes to the configuration store, with their order and arguments.
#include "noted_store.h"
#include "setting_rows.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

using namespace nkdraw::test;

class StoredSettings : public testing::Test {
 protected:
  StoredSettings() { notedStore = NotedStore(); }

  Overlay overlay_;
};

/// The calls expected of SaveConfig.
Calls savedCalls(Overlay& o) {
  Calls calls;
  const auto orEmpty = [](const char* text) { return std::string(text == nullptr ? "" : text); };
  for (const SettingRow& row : settingRows()) {
    if (!row.saved)
      continue;
    const std::string text = row.kind == Kind::kNumber ? std::to_string(row.get(o))
                             : row.kind == Kind::kPath ? orEmpty(o.watermarkPath)
                                                       : orEmpty(o.CustomText[row.slot]);
    calls.push_back(writeCall(row.key, text));
  }
  calls.push_back(saveCall());
  return calls;
}

Calls loadedCalls(Overlay& o) {
  Calls calls;
  for (const SettingRow& row : settingRows()) {
    const bool nowhere = row.kind == Kind::kText && o.CustomText[row.slot] == nullptr;
    if (row.loaded)
      calls.push_back(readCall(row.key, nowhere ? "null" : "buffer"));
  }
  return calls;
}

TEST_F(StoredSettings, SavingWritesEveryKeyInOrderAndThenMakesThemDurable) {
  setNumbersApart(overlay_);
  overlay_.SetWatermarkPath("/pictures/logo.png");
  overlay_.setText(0, "zero");
  overlay_.setText(7, "");
  overlay_.setText(9, "nine = 9");
  setNumbersApart(overlay_);
  const Calls wanted = savedCalls(overlay_);
  EXPECT_EQ(wanted.size(), 26U + 40U + 1U);
  EXPECT_EQ(overlay_.SaveConfig(), 0U);
  EXPECT_EQ(notedStore.calls, wanted);
}

TEST_F(StoredSettings, SavingWritesTheDefaultsAndMissingTextsAsEmptyOnes) {
  overlay_.SaveConfig();
  ASSERT_EQ(notedStore.calls.size(), 67U);
  EXPECT_EQ(notedStore.calls[1], "-1|HZW\\Advanced\\Overlay|FillBackground|1|128|1");
  EXPECT_EQ(notedStore.calls[22], "-1|HZW\\Advanced\\Overlay|Watermark||128|1");
  EXPECT_EQ(notedStore.calls[64], "-1|HZW\\Advanced\\Overlay|CustomTextY9|270|128|1");
  EXPECT_EQ(notedStore.calls[65], "-1|HZW\\Advanced\\Overlay|CustomText9||128|1");
  EXPECT_EQ(notedStore.calls[66], "save|-1|0|0");
}

TEST_F(StoredSettings, NumbersAreSignedDecimals) {
  const struct {
    std::uint32_t value;
    const char* text;
  } kRows[] = {
      {0, "0"}, {7, "7"}, {INT_MAX, "2147483647"}, {0x80000000, "-2147483648"}, {0xFFFFFFFF, "-1"}};
  for (const auto& row : kRows) {
    notedStore.calls.clear();
    EXPECT_EQ(overlay_.SaveSetting("Some key", row.value), 0U);
    EXPECT_EQ(notedStore.calls, Calls{writeCall("Some key", row.text)});
    notedStore.values["Some key"] = row.text;
    std::uint32_t value = 99;
    EXPECT_EQ(overlay_.LoadSetting("Some key", value), 0U);
    EXPECT_EQ(value, row.value);
  }
}

TEST_F(StoredSettings, ANumberIsWhatTheTextBeginsWith) {
  const struct {
    const char* text;
    std::uint32_t value;
  } kRows[] = {{"  42 lines", 42}, {"on", 0}, {"", 0}, {"= 5", 0}, {"+3", 3}, {"0x10", 0}};
  for (const auto& row : kRows) {
    notedStore.values["key"] = row.text;
    std::uint32_t value = 99;
    overlay_.LoadSetting("key", value);
    EXPECT_EQ(value, row.value) << row.text;
  }
}

TEST_F(StoredSettings, TextsAreCutAt128Characters) {
  for (const std::size_t length : {0U, 1U, 127U, 128U, 129U, 5000U}) {
    const std::string text(length, 'x');
    notedStore.calls.clear();
    EXPECT_EQ(overlay_.SaveSetting("key", text.c_str()), 0U);
    EXPECT_EQ(notedStore.calls, Calls{writeCall("key", text.substr(0, 128))}) << length;
  }
}

TEST_F(StoredSettings, ANullTextIsSavedAsTheEmptyOneAndANullBufferReachesTheStore) {
  EXPECT_EQ(overlay_.SaveSetting("key", nullptr), 0U);
  EXPECT_EQ(overlay_.LoadSetting("key", static_cast<char*>(nullptr)), 0U);
  EXPECT_EQ(notedStore.calls, (Calls{writeCall("key", ""), readCall("key", "null")}));
}

TEST_F(StoredSettings, AStoreThatFailsIsNotReported) {
  notedStore.fails = true;
  std::uint32_t value = 1;
  EXPECT_EQ(overlay_.SaveSetting("key", 5U), 0U);
  EXPECT_EQ(overlay_.LoadSetting("key", value), 0U);
  EXPECT_EQ(overlay_.SaveConfig(), 0U);
  EXPECT_EQ(overlay_.LoadConfig(), 0U);
}

TEST_F(StoredSettings, LoadingReadsEveryKeyInOrderIntoItsSetting) {
  std::int32_t next = -33;
  for (const SettingRow& row : settingRows())
    notedStore.values[row.key] = std::to_string(next++);
  notedStore.values["Enabled"] = "";
  overlay_.setText(2, "an old text");
  overlay_.setText(5, "another");
  const char* const memory[] = {overlay_.CustomText[2], overlay_.CustomText[5]};
  notedStore.values["CustomText2"] = "new";
  notedStore.values["CustomText5"] = std::string(500, 'y');
  Calls wanted = loadedCalls(overlay_);
  wanted.insert(wanted.begin(), existsCall());
  EXPECT_EQ(wanted.size(), 1U + 26U + 40U);

  EXPECT_EQ(overlay_.LoadConfig(), 0U);
  EXPECT_EQ(notedStore.calls, wanted);
  next = -33;
  for (const SettingRow& row : settingRows()) {
    const std::int32_t value = row.key == "Enabled" ? 0 : next;
    if (row.kind == Kind::kNumber) {
      EXPECT_EQ(row.get(overlay_), value) << row.key;
    }
    ++next;
  }
  EXPECT_EQ(overlay_.watermarkPath, nullptr);
  for (int slot = 0; slot < 10; ++slot)
    EXPECT_EQ(overlay_.CustomText[slot] != nullptr, slot == 2 || slot == 5);
  EXPECT_EQ(static_cast<const char*>(overlay_.CustomText[2]), memory[0]);
  EXPECT_STREQ(memory[0], "new");
  EXPECT_EQ(static_cast<const char*>(overlay_.CustomText[5]), memory[1]);
  EXPECT_EQ(memory[1], std::string(127, 'y'));
}

TEST_F(StoredSettings, TheFirstLoadSavesWhatThereIsAndReadsItBack) {
  notedStore.rootExists = false;
  notedStore.keepsWrites = true;
  setNumbersApart(overlay_);
  overlay_.setText(3, "three");
  setNumbersApart(overlay_);
  Calls wanted = {existsCall()};
  for (const Calls& more : {savedCalls(overlay_), loadedCalls(overlay_)})
    wanted.insert(wanted.end(), more.begin(), more.end());
  Overlay before(overlay_);
  EXPECT_EQ(overlay_.LoadConfig(), 0U);
  EXPECT_EQ(notedStore.calls, wanted);
  before.TimeCodeVsyncEnable = 0;  // never saved
  EXPECT_EQ(numbersOf(overlay_), numbersOf(before));
  EXPECT_STREQ(overlay_.CustomText[3], "three");
}

/// Overrides every virtual operation, and records it.
class Derived : public Overlay {
 public:
  Calls calls;

  std::uint32_t SaveSetting(const char* key, std::uint32_t value) override {
    calls.push_back("save number " + std::string(key) + " " + std::to_string(value));
    return 3;
  }
  std::uint32_t SaveSetting(const char* key, const char* value) override {
    calls.push_back("save text " + std::string(key) + " " + (value == nullptr ? "null" : value));
    return 4;
  }
  std::uint32_t LoadSetting(const char* key, std::uint32_t& value) override {
    calls.push_back("load number " + std::string(key));
    value = static_cast<std::uint32_t>(calls.size());
    return 5;
  }
  std::uint32_t LoadSetting(const char* key, char* value) override {
    calls.push_back("load text " + std::string(key) + (value == nullptr ? " null" : " buffer"));
    return 6;
  }
  std::uint32_t SaveConfig() override {
    calls.emplace_back("save config");
    return 9;
  }
};

TEST(DerivedSettings, SeeEverySettingThatIsSaved) {
  Derived o;
  o.setText(1, "one");
  o.CustomTextEnabled[1] = 0;
  Calls wanted;
  for (const SettingRow& row : settingRows()) {
    if (!row.saved)
      continue;
    wanted.push_back(row.kind == Kind::kNumber
                         ? "save number " + row.key + " " + std::to_string(row.get(o))
                     : row.slot == 1 ? "save text CustomText1 one"
                                     : "save text " + row.key + " null");
  }
  EXPECT_EQ(o.CNkOverlay::SaveConfig(), 0U);
  EXPECT_EQ(o.calls, wanted);
}

TEST(DerivedSettings, SeeEverySettingThatIsLoadedAndTheFirstSave) {
  notedStore = NotedStore();
  notedStore.rootExists = false;
  Derived o;
  o.setText(1, "one");
  Calls wanted = {"save config"};
  for (const SettingRow& row : settingRows()) {
    if (row.loaded && row.kind == Kind::kNumber)
      wanted.push_back("load number " + row.key);
    if (row.kind == Kind::kText)
      wanted.push_back("load text " + row.key + (row.slot == 1 ? " buffer" : " null"));
  }
  EXPECT_EQ(o.LoadConfig(), 0U);
  EXPECT_EQ(o.calls, wanted);
  EXPECT_EQ(o.Enabled, 2U);
  EXPECT_EQ(o.FillBackground, 3U);
}

TEST(DerivedSettings, SeeTheTextOfEveryNumberAndTheirAnswerIsPassedOn) {
  Derived o;
  EXPECT_EQ(o.CNkOverlay::SaveSetting("key", 0xFFFFFFFE), 4U);
  std::uint32_t value = 55;
  EXPECT_EQ(o.CNkOverlay::LoadSetting("key", value), 6U);
  EXPECT_EQ(o.calls, (Calls{"save text key -2", "load text key buffer"}));
}

TEST_F(StoredSettings, SavingAndLoadingLeaveTheFileOfLinesFirst) {
  overlay_.iniPath = "settings.ini";
  overlay_.SaveConfig();
  EXPECT_EQ(overlay_.iniPath, nullptr);
  EXPECT_EQ(notedStore.calls.size(), 67U);
  overlay_.iniPath = "settings.ini";
  overlay_.LoadConfig();
  EXPECT_EQ(overlay_.iniPath, nullptr);
}

class SwitchingToAFile : public Overlay {
 public:
  using Overlay::SaveSetting;
  std::uint32_t SaveSetting(const char* /*key*/, std::uint32_t /*value*/) override {
    iniPath = "settings.ini";
    return 0;
  }
};

TEST_F(StoredSettings, NothingIsMadeDurableWhileAFileIsWritten) {
  SwitchingToAFile o;
  EXPECT_EQ(o.SaveConfig(), 0U);
  EXPECT_EQ(notedStore.calls, Calls{});
}

}  // namespace
