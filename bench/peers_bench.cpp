// SPDX-License-Identifier: BSD-2-Clause
//
// The same work by other software: FFmpeg's filters on one thread, and OpenCV.
#include "frame.h"

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/frame.h>
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
}

#include <opencv2/core.hpp>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

constexpr int kWidth = 1920, kHeight = 1080;

struct FreeFrame {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
using Frame = std::unique_ptr<AVFrame, FreeFrame>;

struct FreeGraph {
  void operator()(AVFilterGraph* graph) const { avfilter_graph_free(&graph); }
};

int check(int result) {
  if (result < 0)
    throw std::runtime_error("libavfilter refuses the graph");
  return result;
}

Frame noise(AVPixelFormat format, std::uint32_t seed) {
  Frame frame(av_frame_alloc());
  frame->format = format;
  frame->width = kWidth;
  frame->height = kHeight;
  check(av_frame_get_buffer(frame.get(), 64));
  for (int plane = 0; plane < 4 && frame->data[plane] != nullptr; ++plane) {
    std::uint8_t* const bytes = frame->data[plane];
    for (std::size_t i = 0; i < static_cast<std::size_t>(frame->linesize[plane]) * kHeight / 2; ++i)
      bytes[i] = static_cast<std::uint8_t>((seed = seed * 1664525 + 1013904223) >> 24);
  }
  return frame;
}

/// Sends one or two frames repeatedly through a filter with that number of inputs.
class Graph {
 public:
  Graph(AVPixelFormat format, const std::string& filter, int inputs)
      : a_(noise(format, 1)),
        b_(noise(format, 2)),
        out_(av_frame_alloc()),
        graph_(avfilter_graph_alloc()) {
    graph_->nb_threads = 1;
    const std::string source = "buffer=video_size=1920x1080:time_base=1/25:frame_rate=25:pix_fmt=" +
                               std::string(av_get_pix_fmt_name(format));
    const std::string sources =
        inputs == 1 ? source + "," : source + "[a];" + source + "[b];[a][b]";
    const std::string text =
        sources + filter + ",format=" + av_get_pix_fmt_name(format) + ",buffersink";
    AVFilterInOut *openInputs = nullptr, *openOutputs = nullptr;
    check(avfilter_graph_parse2(graph_.get(), text.c_str(), &openInputs, &openOutputs));
    check(avfilter_graph_config(graph_.get(), nullptr));
    for (unsigned i = 0; i < graph_->nb_filters; ++i) {
      AVFilterContext* const filterContext = graph_->filters[i];
      const std::string name = filterContext->filter->name;
      if (name == "buffer")
        (sources_[0] == nullptr ? sources_[0] : sources_[1]) = filterContext;
      if (name == "buffersink")
        sink_ = filterContext;
    }
  }

  /// One frame into each input, one frame out.
  void run() {
    do {
      a_->pts = b_->pts = time_++;
      check(av_buffersrc_add_frame_flags(sources_[0], a_.get(), AV_BUFFERSRC_FLAG_KEEP_REF));
      if (sources_[1] != nullptr)
        check(av_buffersrc_add_frame_flags(sources_[1], b_.get(), AV_BUFFERSRC_FLAG_KEEP_REF));
    } while (av_buffersink_get_frame(sink_, out_.get()) == AVERROR(EAGAIN));
    av_frame_unref(out_.get());
  }

 private:
  Frame a_, b_, out_;
  std::unique_ptr<AVFilterGraph, FreeGraph> graph_;
  AVFilterContext* sources_[2] = {};
  AVFilterContext* sink_ = nullptr;
  std::int64_t time_ = 0;
};

void throughFilter(benchmark::State& state, AVPixelFormat format, const std::string& filter,
                   int inputs) {
  Graph graph(format, filter, inputs);
  graph.run();
  const int bytes = av_image_get_buffer_size(format, kWidth, kHeight, 1);
  bench::measure(state, static_cast<std::uint32_t>(bytes), [&] { graph.run(); });
}

struct Mats {
  cv::Mat a = cv::Mat(kHeight, kWidth, CV_8UC4);
  cv::Mat b = cv::Mat(kHeight, kWidth, CV_8UC4);
  cv::Mat out = cv::Mat(kHeight, kWidth, CV_8UC4);
  Mats() {
    cv::setNumThreads(1);
    cv::randu(a, 0, 256);
    cv::randu(b, 0, 256);
  }
};

template <class Work>
void throughOpenCv(benchmark::State& state, Work work) {
  Mats mats;
  bench::measure(state, kWidth * kHeight * 4, [&] { work(mats); });
}

void addFilter(AVPixelFormat format, const char* name, const std::string& filter, int inputs = 2) {
  const std::string title =
      std::string("ffmpeg/") + av_get_pix_fmt_name(format) + "/1920x1080/" + name;
  benchmark::RegisterBenchmark(title.c_str(), [=](benchmark::State& state) {
    throughFilter(state, format, filter, inputs);
  })->Unit(benchmark::kMicrosecond);
}

template <class Work>
void addOpenCv(const char* name, Work work) {
  const std::string title = std::string("opencv/BGRA/1920x1080/") + name;
  benchmark::RegisterBenchmark(title.c_str(), [=](benchmark::State& state) {
    throughOpenCv(state, work);
  })->Unit(benchmark::kMicrosecond);
}

const bool added = [] {
  // A transition that lasts longer than any run.
  const auto xfade = [](const char* transition) {
    return std::string("xfade=duration=60:offset=0:transition=") + transition;
  };
  for (const AVPixelFormat format : {AV_PIX_FMT_BGRA, AV_PIX_FMT_GBRP}) {
    for (const char* const transition : {"wipeleft", "fade", "slideleft"})
      addFilter(format, transition, xfade(transition));
    addFilter(format, "blend_average", "blend=all_mode=average");
    addFilter(format, "blend_difference", "blend=all_mode=difference");
    addFilter(format, "hstack", "hstack");
  }
  for (const char* const transition : {"wipeleft", "fade"})
    addFilter(AV_PIX_FMT_UYVY422, transition, xfade(transition));
  // A running timecode of eleven characters. The filter draws on a copy of the frame, because its
  // caller keeps the original.
  const std::string drawtext =
      "drawtext=fontsize=30:fontcolor=white:x=24:y=600:timecode='01\\:23\\:45\\:12':rate=25";
  for (const AVPixelFormat format : {AV_PIX_FMT_BGRA, AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUV422P10})
    addFilter(format, "drawtext", drawtext, 1);
  addOpenCv("two_half_copies", [](Mats& m) {
    m.a.colRange(0, kWidth / 2).copyTo(m.out.colRange(0, kWidth / 2));
    m.b.colRange(kWidth / 2, kWidth).copyTo(m.out.colRange(kWidth / 2, kWidth));
  });
  addOpenCv("addWeighted", [](Mats& m) { cv::addWeighted(m.a, 0.54, m.b, 0.46, 0.0, m.out); });
  addOpenCv("absdiff", [](Mats& m) { cv::absdiff(m.a, m.b, m.out); });
  return true;
}();

}  // namespace
