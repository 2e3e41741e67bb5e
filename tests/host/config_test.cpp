// SPDX-License-Identifier: BSD-2-Clause
//
// The configuration store as one process sees it, and what the next one finds.
#include "child.h"

#include <tests/overlay/exposed_overlay.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using namespace nkdraw::test;
namespace fs = std::filesystem;

class Config : public testing::Test {
 protected:
  StoreFolder folder_;
};

TEST_F(Config, LiesWhereTheEnvironmentSays) {
  const fs::path xdg = folder_.path() / "xdg" / "deep", home = folder_.path() / "home";
  const struct {
    const char *named, *xdg, *home;
    fs::path file;
  } kRows[] = {
      {"named/one.db", xdg.c_str(), home.c_str(), folder_.path() / "named/one.db"},
      {nullptr, xdg.c_str(), home.c_str(), xdg / "nkdraw/config.db"},
      {"", xdg.c_str(), home.c_str(), xdg / "nkdraw/config.db"},
      {nullptr, nullptr, home.c_str(), home / ".config/nkdraw/config.db"},
      {nullptr, "", home.c_str(), home / ".config/nkdraw/config.db"},
  };
  for (const auto& row : kRows) {
    ASSERT_FALSE(fs::exists(row.file));
    const auto inPlace = [&](const std::function<std::string()>& work) {
      return inChild([&] {
        const auto set = [](const char* name, const char* value) {
          value == nullptr ? unsetenv(name) : setenv(name, value, 1);
        };
        fs::current_path(folder_.path());
        set("NKDRAW_CONFIG", row.named);
        set("XDG_CONFIG_HOME", row.xdg);
        set("HOME", row.home);
        return work();
      });
    };
    EXPECT_EQ(inPlace([] {
                put("key", "value");
                return std::to_string(save());
              }),
              "0");
    EXPECT_TRUE(fs::exists(row.file));
    EXPECT_EQ(inPlace([] { return get("key"); }), "value");
    fs::remove_all(row.file.parent_path());
  }
}

TEST_F(Config, KeepsValuesOfEveryKindForTheNextProcess) {
  const std::string texts[] = {"",
                               "0",
                               "-2147483648",
                               "it's \"quoted\"",
                               "a\nb\tc",
                               "\\back",
                               "Gr\xC3\xBC\xC3\x9F"
                               "e",
                               std::string(5000, 'x'),
                               "%s ?1 --",
                               " blank ",
                               "'; DROP TABLE setting"};
  EXPECT_EQ(inChild([&] {
              for (std::size_t i = 0; i < std::size(texts); ++i)
                put("key " + std::to_string(i) + texts[i], texts[i]);
              return std::to_string(save());
            }),
            "0");
  for (std::size_t i = 0; i < std::size(texts); ++i)
    EXPECT_EQ(getInChild("key " + std::to_string(i) + texts[i]), texts[i]);
}

TEST_F(Config, ReplacesAValueByTheNewest) {
  putInChild("key", "one");
  putInChild("key", "two");
  EXPECT_EQ(getInChild("key"), "two");
  EXPECT_EQ(inChild([] {
              put("key", "three");
              put("key", "four");
              save();
              put("key", "five");
              return get("key");
            }),
            "five");
  EXPECT_EQ(getInChild("key"), "four");
}

TEST_F(Config, KeepsRootsAndKeysApart) {
  EXPECT_EQ(inChild([] {
              put("key", "a", "HZW\\One");
              put("key", "b", "HZW\\Two");
              put("KEY", "c", "HZW\\One");
              put("y", "d", "HZW\\One\\ke");
              return std::to_string(save());
            }),
            "0");
  EXPECT_EQ(inChild([] {
              return get("key", "HZW\\One") + get("key", "HZW\\Two") + get("KEY", "HZW\\One") +
                     get("y", "HZW\\One\\ke") + get("key", "HZW") + get("Key", "HZW\\One");
            }),
            "abcd");
}

TEST_F(Config, TellsOnlyOfRootsThatHaveValues) {
  const auto known = [] {
    std::string answer;
    for (const char* const root : {"HZW", "HZW\\Test", "HZW\\Test\\", "HZW\\Tes", "HZW\\Test2", ""})
      answer += nkCFGKeyExists(kDefaultStore, root) ? '1' : '0';
    return answer;
  };
  EXPECT_EQ(inChild(known), "000000");
  EXPECT_EQ(inChild([&] {
              put("key", "");
              return known();
            }),
            "010000");
  EXPECT_EQ(inChild(known), "000000");
  putInChild("key", "");
  EXPECT_EQ(inChild(known), "010000");
}

TEST_F(Config, MakesNoFileBeforeThereIsSomethingToSave) {
  EXPECT_EQ(inChild([] {
              const bool exists = nkCFGKeyExists(kDefaultStore, kRoot);
              return get("key") + (exists ? "1" : "0") + std::to_string(save());
            }),
            "00");
  EXPECT_EQ(folder_.names(), std::vector<std::string>());
}

TEST_F(Config, TakesAnEmptyFileForNone) {
  fs::create_directories(folder_.path());
  std::fclose(std::fopen(folder_.file().c_str(), "w"));
  EXPECT_EQ(getInChild("key"), "");
  putInChild("key", "value");
  EXPECT_EQ(getInChild("key"), "value");
}

/// A read into a buffer of `length` bytes inside a longer one of '?', and the length afterwards.
std::string readInto(const char* key, std::uint32_t length) {
  std::string buffer(12, '?');
  const std::uint32_t status =
      nkCFGValueString(kDefaultStore, kRoot, key, buffer.data(), &length, kConfigRead);
  for (char& byte : buffer)
    byte = byte == '\0' ? '0' : byte;
  return buffer + " " + std::to_string(length) + " " + std::to_string(status);
}

TEST_F(Config, AReadIsCutAtTheBufferAndTellsTheLength) {
  putInChild("key", "abcdef");
  const struct {
    const char* key;
    std::uint32_t length;
    const char* result;
  } kRows[] = {{"key", 0, "???????????? 0 0"},      {"key", 1, "0??????????? 0 0"},
               {"key", 2, "a0?????????? 1 0"},      {"key", 6, "abcde0?????? 5 0"},
               {"key", 7, "abcdef0????? 6 0"},      {"key", 12, "abcdef0????? 6 0"},
               {"missing", 12, "0??????????? 0 0"}, {"missing", 0, "???????????? 0 0"}};
  for (const auto& row : kRows)
    EXPECT_EQ(inChild([&] { return readInto(row.key, row.length); }), row.result) << row.length;
}

TEST_F(Config, AWriteEndsAtTheZeroOrTheLength) {
  EXPECT_EQ(inChild([] {
              char text[] = "abcdef\0gh";
              std::string read;
              for (std::uint32_t length : {0U, 3U, 6U, 9U}) {
                nkCFGValueString(kDefaultStore, kRoot, "key", text, &length, kConfigWrite);
                read += get("key") + "|" + std::to_string(length) + "|";
              }
              return read;
            }),
            "|0|abc|3|abcdef|6|abcdef|9|");
}

TEST_F(Config, ANullBufferIsLeftAloneOrWrittenAsTheEmptyText) {
  putInChild("key", "value");
  EXPECT_EQ(inChild([] {
              std::uint32_t length = 128;
              std::string answer = std::to_string(
                  nkCFGValueString(kDefaultStore, kRoot, "key", nullptr, &length, kConfigRead));
              answer += std::to_string(
                  nkCFGValueString(kDefaultStore, kRoot, "key", nullptr, &length, kConfigWrite));
              return answer + get("key") + std::to_string(length);
            }),
            "00128");
}

TEST_F(Config, BringsAnOverlaysSettingsToTheNextProcess) {
  const auto numbers = [](const Overlay& o) {
    return std::to_string(o.Enabled) + " " + std::to_string(o.AudioX) + " " +
           std::to_string(o.CustomTextY[9]) + " " + std::to_string(o.WatermarkOpacity) + " " +
           std::to_string(o.TimeCodeVsyncEnable);
  };
  EXPECT_EQ(inChild([&] {
              Overlay o;
              o.Enabled = 1;
              o.AudioX = -17;
              o.CustomTextY[9] = 333;
              o.WatermarkOpacity = 0xFFFFFFFF;
              o.TimeCodeVsyncEnable = 1;
              o.setText(4, "on air");
              o.CustomText[5] = new char[200]();
              std::memset(static_cast<char*>(o.CustomText[5]), 'x', 128);
              o.SaveConfig();
              return numbers(o);
            }),
            "1 -17 333 4294967295 1");
  EXPECT_EQ(inChild([&] {
              Overlay o;
              o.setText(4, "");
              o.setText(5, "");
              o.LoadConfig();
              return numbers(o) + " " + static_cast<const char*>(o.CustomText[4]) + " " +
                     static_cast<const char*>(o.CustomText[5]) +
                     (o.CustomText[6] == nullptr ? " null" : "");
            }),
            "1 -17 333 4294967295 0 on air " + std::string(127, 'x') + " null");
}

TEST_F(Config, KeepsTheDefaultsOfAFirstRun) {
  EXPECT_EQ(inChild([] {
              Overlay o;
              o.TimeCodeX = 77;
              o.LoadConfig();
              return std::to_string(o.TimeCodeX) + " " + std::to_string(o.SourceFormatY);
            }),
            "77 600");
  EXPECT_EQ(getInChild("key"), "");
  EXPECT_EQ(inChild([] {
              Overlay o;
              o.LoadConfig();
              return std::to_string(o.TimeCodeX);
            }),
            "77");
}

}  // namespace
