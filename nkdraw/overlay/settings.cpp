// SPDX-License-Identifier: BSD-2-Clause
//
// The overlay's settings in the configuration store and in INI files.
#include "access.h"

#include <nkdraw/platform/config.h>

#include <strings.h>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr const char* kRoot = "HZW\\Advanced\\Overlay";
constexpr char kSection[] = "[nkoverlay]";
constexpr std::size_t kLine = 260;

/// The number in a text, as atoi reads it, in 32 bits.
std::uint32_t numberOf(const char* text) {
  return static_cast<std::uint32_t>(std::strtol(text, nullptr, 10));
}

using Key = std::array<char, 32>;

Key slotKey(const char* format, int slot) {
  Key key{};
  std::snprintf(key.data(), key.size(), "%s%d", format, slot);
  return key;
}

/// The text from a line's '=' on; null if there is none. Deliberate: callers rely on the '=' being
/// part of every value. Blanks are skipped from the '=' itself, so none ever is.
const char* valueOf(const char* line) {
  const char* value = std::strchr(line, '=');
  while (value != nullptr && *value == ' ')
    ++value;
  return value;
}

}  // namespace

void CNkOverlay::Access::setText(CNkOverlay& overlay, int slot, const char* text,
                                 std::size_t length) {
  auto* const owned = new (std::nothrow) char[std::max(length + 2, kStoredText)]();
  if (owned != nullptr)
    std::memcpy(owned, text, length);
  overlay.CustomText[slot] = owned;
}

struct CNkOverlay::Settings {
  /// Deliberate: existing stores lack one of these, which is loaded and never saved.
  struct Number {
    const char* key;
    Access::Field field;
    bool saved;
  };
  // Deliberate: callers rely on it. The watermark's path is saved, after its opacity, and never
  // loaded.
  static constexpr Number kNumbersBeforePath[] = {
      {"Enabled", &CNkOverlay::Enabled, true},
      {"FillBackground", &CNkOverlay::FillBackground, true},
      {"AudioEnable", &CNkOverlay::AudioEnable, true},
      {"AudioX", &CNkOverlay::AudioX, true},
      {"AudioY", &CNkOverlay::AudioY, true},
      {"AudioChannels", &CNkOverlay::AudioChannels, true},
      {"VChipEnable", &CNkOverlay::VChipEnable, true},
      {"CaptionsEnable", &CNkOverlay::CaptionsEnable, true},
      {"CaptionSource", &CNkOverlay::CaptionSource, true},
      {"TimeCodeLTCEnable", &CNkOverlay::TimeCodeLTCEnable, true},
      {"TimeCodeLUBEnable", &CNkOverlay::TimeCodeLUBEnable, true},
      {"TimeCodeVITCEnable", &CNkOverlay::TimeCodeVITCEnable, true},
      {"TimeCodeVUBEnable", &CNkOverlay::TimeCodeVUBEnable, true},
      {"TimeCodeVsyncEnable", &CNkOverlay::TimeCodeVsyncEnable, false},
      {"TimeCodeLTCFrameEnable", &CNkOverlay::TimeCodeLTCFrameEnable, true},
      {"TimeCodeVITCFrameEnable", &CNkOverlay::TimeCodeVITCFrameEnable, true},
      {"TimeCodeX", &CNkOverlay::TimeCodeX, true},
      {"TimeCodeY", &CNkOverlay::TimeCodeY, true},
      {"TimeCodeSize", &CNkOverlay::TimeCodeSize, true},
      {"WatermarkEnable", &CNkOverlay::WatermarkEnable, true},
      {"WatermarkX", &CNkOverlay::WatermarkX, true},
      {"WatermarkY", &CNkOverlay::WatermarkY, true},
      {"WatermarkOpacity", &CNkOverlay::WatermarkOpacity, true},
  };
  static constexpr Number kNumbersBehindPath[] = {
      {"SourceFormatEnable", &CNkOverlay::SourceFormatEnable, true},
      {"SourceFormatX", &CNkOverlay::SourceFormatX, true},
      {"SourceFormatY", &CNkOverlay::SourceFormatY, true},
  };

  CNkOverlay& overlay;

  template <class Visit>
  static void forNumbers(Visit visit) {
    for (const Number& number : kNumbersBeforePath)
      visit(number);
    for (const Number& number : kNumbersBehindPath)
      visit(number);
  }

  void save(const Number& number) const {
    if (number.saved)
      overlay.SaveSetting(number.key, number.field.get(overlay));
  }
  void saveSlot(int slot) const {
    const auto saveNumber = [&](const char* key, std::uint32_t value) {
      overlay.SaveSetting(slotKey(key, slot).data(), value);
    };
    saveNumber("CustomTextEnabled", overlay.CustomTextEnabled[slot]);
    saveNumber("CustomTextX", static_cast<std::uint32_t>(overlay.CustomTextX[slot]));
    saveNumber("CustomTextY", static_cast<std::uint32_t>(overlay.CustomTextY[slot]));
    const char* const text = overlay.CustomText[slot];
    overlay.SaveSetting(slotKey("CustomText", slot).data(), text);
  }

  // Loading ends when the store can't be read: the remaining settings stay as they are.
  static bool storeReads() { return nkCFGWasRead(kDefaultStore); }

  template <class Set>
  void loadNumber(const char* key, std::uint32_t value, Set set) const {
    if (!storeReads())
      return;
    overlay.LoadSetting(key, value);
    if (storeReads())
      set(value);
  }
  void load(const Number& number) const {
    loadNumber(number.key, number.field.get(overlay),
               [&](std::uint32_t value) { number.field.set(overlay, value); });
  }
  void loadSlot(int slot) const {
    const auto load = [&](const char* key, auto& field) {
      loadNumber(slotKey(key, slot).data(), static_cast<std::uint32_t>(field),
                 [&](std::uint32_t value) {
                   field = static_cast<std::remove_reference_t<decltype(field)>>(value);
                 });
    };
    load("CustomTextEnabled", overlay.CustomTextEnabled[slot]);
    load("CustomTextX", overlay.CustomTextX[slot]);
    load("CustomTextY", overlay.CustomTextY[slot]);
    loadText(slotKey("CustomText", slot).data(), overlay.CustomText[slot]);
  }
  /// The store writes into the slot's own memory, also when it fails.
  void loadText(const char* key, char* text) const {
    if (!storeReads())
      return;
    std::array<char, Access::kStoredText> before{};
    if (text != nullptr)
      std::memcpy(before.data(), text, before.size());
    overlay.LoadSetting(key, text);
    if (text != nullptr && !storeReads())
      std::memcpy(text, before.data(), before.size());
  }

  /// Sets every key that occurs anywhere in the line.
  void takeLine(const char* line) const {
    const char* const value = valueOf(line);
    if (value == nullptr)
      return;
    const auto names = [line](const char* key) { return std::strstr(line, key) != nullptr; };
    forNumbers([&](const Number& number) {
      if (names(number.key))
        number.field.set(overlay, numberOf(value));
    });
    for (int slot = 0; slot < kCustomTexts; ++slot) {
      if (names(slotKey("CustomTextEnabled", slot).data()))
        overlay.CustomTextEnabled[slot] = numberOf(value);
      if (names(slotKey("CustomTextX", slot).data()))
        overlay.CustomTextX[slot] = static_cast<std::int32_t>(numberOf(value));
      if (names(slotKey("CustomTextY", slot).data()))
        overlay.CustomTextY[slot] = static_cast<std::int32_t>(numberOf(value));
      if (names(slotKey("CustomText", slot).data()))
        Access::setText(overlay, slot, value, std::strlen(value));
    }
  }

  /// Deliberate: callers rely on what a file sets. The end of the file is noticed only after the
  /// last line, so a last line that ends in a newline is taken twice.
  void takeLines(std::FILE* file) const {
    std::array<char, kLine> line{};
    bool inSection = false;
    while (std::feof(file) == 0 && std::ferror(file) == 0) {
      const bool read = std::fgets(line.data(), static_cast<int>(line.size()), file) != nullptr;
      static_cast<void>(read);  // at the end the last line stays
      if (inSection)
        takeLine(line.data());
      else
        inSection = strncasecmp(line.data(), kSection, std::strlen(kSection)) == 0;
    }
  }
};

std::uint32_t CNkOverlay::SaveSetting(const char* key, std::uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "%d", static_cast<std::int32_t>(value));
  return SaveSetting(key, text);
}

std::uint32_t CNkOverlay::SaveSetting(const char* key, const char* value) {
  char text[Access::kStoredText + 1] = {};
  std::uint32_t length = Access::kStoredText;
  if (iniPath != nullptr) {
    if (iniFile != nullptr)
      std::fprintf(iniFile, "%s = %s\n", key, value == nullptr ? "" : value);
    return 0;
  }
  if (value != nullptr)
    std::memcpy(text, value, strnlen(value, Access::kStoredText));
  nkCFGValueString(kDefaultStore, kRoot, key, text, &length, kConfigWrite);
  return 0;
}

std::uint32_t CNkOverlay::LoadSetting(const char* key, std::uint32_t& value) {
  char text[Access::kStoredText] = {};
  const std::uint32_t result = LoadSetting(key, text);
  value = numberOf(text);
  return result;
}

std::uint32_t CNkOverlay::LoadSetting(const char* key, char* value) {
  std::uint32_t length = Access::kStoredText;
  nkCFGValueString(kDefaultStore, kRoot, key, value, &length, kConfigRead);
  return 0;
}

std::uint32_t CNkOverlay::SaveConfig() {
  iniPath = nullptr;
  const Settings settings{*this};
  for (const Settings::Number& number : Settings::kNumbersBeforePath)
    settings.save(number);
  SaveSetting("Watermark", watermarkPath);
  for (const Settings::Number& number : Settings::kNumbersBehindPath)
    settings.save(number);
  for (int slot = 0; slot < kCustomTexts; ++slot)
    settings.saveSlot(slot);
  if (iniPath == nullptr)
    nkCFGSave(kDefaultStore, 0, 0);
  return 0;
}

std::uint32_t CNkOverlay::LoadConfig() {
  iniPath = nullptr;
  const bool stored = nkCFGKeyExists(kDefaultStore, kRoot);
  if (!stored && Settings::storeReads())
    SaveConfig();
  const Settings settings{*this};
  Settings::forNumbers([&](const Settings::Number& number) { settings.load(number); });
  for (int slot = 0; slot < kCustomTexts; ++slot)
    settings.loadSlot(slot);
  return 0;
}

/// Deliberate: callers rely on it. SaveConfig clears the path first, so the settings go to the
/// store, and the file has only the section's line.
std::uint32_t CNkOverlay::SaveConfigINI(const char* path) {
  iniPath = path;
  iniFile = std::fopen(path, "w");
  if (iniFile != nullptr)
    std::fprintf(iniFile, "%s\n", kSection);
  SaveConfig();
  iniPath = nullptr;
  if (iniFile != nullptr)
    std::fclose(iniFile);
  iniFile = nullptr;
  return 0;
}

std::uint32_t CNkOverlay::LoadConfigINI(const char* path) {
  iniPath = path;
  iniFile = std::fopen(path, "r");
  for (auto& text : CustomText)
    text = nullptr;
  if (iniFile != nullptr) {
    Settings{*this}.takeLines(iniFile);
    std::fclose(iniFile);
  }
  iniPath = nullptr;
  iniFile = nullptr;
  return 0;
}
