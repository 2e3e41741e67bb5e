// SPDX-License-Identifier: BSD-2-Clause
//
// A surface that records its virtual calls, and the font data as a test needs them.
#pragma once

#include <nkdraw/nkdraw.h>
#include <nkdraw/text/font_data.h>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace nkdraw::test {

struct Call {
  std::string name;
  std::vector<double> values;
  bool operator==(const Call&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const Call& call) {
    out << call.name;
    for (const double value : call.values)
      out << ' ' << value;
    return out;
  }
};

/// Keeps its colours as bytes in the order R, G, B, A, has no canvas, and draws nothing.
class CallLog final : public CDrawRGBA32 {
 public:
  CallLog() : NKDraw(ptRGBA32), CDrawRGBA32(ptRGBA32) {}

  using NKDraw::Line;

  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground) override {
    calls.push_back({"colour", {r, g, b, a, foreground ? 1.0 : 0.0}});
    return CDrawRGBA32::SetColorRGBA(r, g, b, a, foreground);
  }
  std::uint32_t PutPixel(int x, int y, bool foreground) override {
    add("pixel", {x, y, foreground ? 1 : 0});
    return 0;
  }
  std::uint32_t Line(int x1, int y1, int x2, int y2) override {
    add("line", {x1, y1, x2, y2});
    return 0;
  }
  std::uint32_t Bezier(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) override {
    add("curve", {x1, y1, x2, y2, x3, y3, x4, y4});
    return 0;
  }
  /// A picture without a canvas: each position has its own colour.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override {
    add("read", {x, y});
    channelsAt(x, y, r, g, b, a);
    return 0;
  }

  static void channelsAt(int x, int y, double& r, double& g, double& b, double& a) {
    const auto channel = [x, y](unsigned salt) {
      return (static_cast<unsigned>(x) * 7 + static_cast<unsigned>(y) * 13 + salt) & 0xFF;
    };
    // Not from 0 to 1, so that a division by 255 shows in the bytes of a pen.
    r = channel(1), g = channel(50), b = channel(99), a = channel(180);
  }

  [[nodiscard]] long count(const std::string& name) const {
    return std::ranges::count(calls, name, &Call::name);
  }
  [[nodiscard]] std::vector<Call> only(const std::string& name) const {
    std::vector<Call> found;
    std::ranges::copy_if(calls, std::back_inserter(found),
                         [&name](const Call& call) { return call.name == name; });
    return found;
  }

  std::vector<Call> calls;

 private:
  void add(const char* name, std::initializer_list<int> values) {
    calls.push_back({name, {values.begin(), values.end()}});
  }
};

/// The process-wide font data, zero at the start of a test and after it.
class CleanFontData {
 public:
  CleanFontData() { clear(); }
  CleanFontData(const CleanFontData&) = delete;
  CleanFontData& operator=(const CleanFontData&) = delete;
  ~CleanFontData() { clear(); }

  static std::uint8_t* bytes() { return reinterpret_cast<std::uint8_t*>(&fontData); }
  static constexpr std::size_t kBytes = sizeof fontData;
  static constexpr std::size_t kHeader = sizeof fontData.fontSheetPixels;

  static void chooseKind(const char (&kind)[4]) { std::memcpy(fontData.fontKind, kind, 4); }

 private:
  static void clear() { std::memset(bytes(), 0, kBytes); }
};

}  // namespace nkdraw::test
