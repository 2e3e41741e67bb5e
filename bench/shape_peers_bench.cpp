// SPDX-License-Identifier: BSD-2-Clause
//
// The same shapes drawn by OpenCV and by Cairo without antialiasing, on 32-bit frames.
#include "scene.h"

#include <cairo.h>

#include <opencv2/imgproc.hpp>

#include <numbers>

namespace {

constexpr std::uint32_t kFrameBytes = bench::kWidth * 4 * bench::kHeight;
const cv::Scalar kInk(230, 230, 230, 255);

class CvFrame {
 public:
  CvFrame() { cv::setNumThreads(1); }

  void lines() {
    for (const bench::Stroke& line : bench::lines())
      cv::line(mat_, {line.from.x, line.from.y}, {line.to.x, line.to.y}, kInk);
  }
  void circles() {
    for (const bench::Disc& disc : bench::circles())
      cv::circle(mat_, {disc.centre.x, disc.centre.y}, disc.radius, kInk);
  }
  void frame() { mat_.setTo(kInk); }
  void rectangles() {
    for (const tagPOINT& corner : bench::corners())
      cv::rectangle(mat_, cv::Rect(corner.x, corner.y, bench::kRectWidth, bench::kRectHeight), kInk,
                    cv::FILLED);
  }
  /// Letters about ten lines high.
  void text() {
    cv::putText(mat_, bench::nextText(), {100, 110}, cv::FONT_HERSHEY_PLAIN, 0.8, kInk);
  }
  void largeText() {
    cv::putText(mat_, bench::nextText(), {24, 630}, cv::FONT_HERSHEY_PLAIN, 2.4, kInk);
  }

 private:
  cv::Mat mat_ = cv::Mat(bench::kHeight, bench::kWidth, CV_8UC4);
};

class CairoFrame {
 public:
  CairoFrame()
      : surface_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, bench::kWidth, bench::kHeight)),
        context_(cairo_create(surface_)) {
    cairo_set_antialias(context_, CAIRO_ANTIALIAS_NONE);
    cairo_set_line_width(context_, 1.0);
    cairo_set_source_rgb(context_, 0.9, 0.9, 0.9);
    cairo_select_font_face(context_, "monospace", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_NORMAL);
  }
  CairoFrame(const CairoFrame&) = delete;
  CairoFrame& operator=(const CairoFrame&) = delete;
  ~CairoFrame() {
    cairo_destroy(context_);
    cairo_surface_destroy(surface_);
  }

  void lines() {
    for (const bench::Stroke& line : bench::lines()) {
      cairo_move_to(context_, line.from.x + 0.5, line.from.y + 0.5);
      cairo_line_to(context_, line.to.x + 0.5, line.to.y + 0.5);
      cairo_stroke(context_);
    }
  }
  void circles() {
    for (const bench::Disc& disc : bench::circles()) {
      cairo_arc(context_, disc.centre.x + 0.5, disc.centre.y + 0.5, disc.radius, 0.0,
                2.0 * std::numbers::pi);
      cairo_stroke(context_);
    }
  }
  void frame() { cairo_paint(context_); }
  void rectangles() {
    for (const tagPOINT& corner : bench::corners()) {
      cairo_rectangle(context_, corner.x, corner.y, bench::kRectWidth, bench::kRectHeight);
      cairo_fill(context_);
    }
  }
  void text() { show(100, 110, 10); }
  void largeText() { show(24, 630, 30); }

 private:
  void show(double x, double y, double size) {
    cairo_set_font_size(context_, size);
    cairo_move_to(context_, x, y);
    cairo_show_text(context_, bench::nextText());
  }

  cairo_surface_t* surface_;
  cairo_t* context_;
};

template <class Peer>
void add(const char* peer, const char* work, void (Peer::*draw)()) {
  benchmark::RegisterBenchmark((std::string(work) + "/" + peer).c_str(),
                               [draw](benchmark::State& state) {
                                 Peer frame;
                                 bench::measure(state, kFrameBytes, [&] { (frame.*draw)(); });
                               });
}

template <class Peer>
void addAll(const char* peer) {
  add(peer, "Timecode30", &Peer::largeText);
  add(peer, "Text10", &Peer::text);
  add(peer, "Lines1000", &Peer::lines);
  add(peer, "Circles100", &Peer::circles);
  add(peer, "Frame", &Peer::frame);
  add(peer, "Rectangles100", &Peer::rectangles);
}

const bool added = [] {
  addAll<CvFrame>("opencv");
  addAll<CairoFrame>("cairo");
  return true;
}();

}  // namespace
