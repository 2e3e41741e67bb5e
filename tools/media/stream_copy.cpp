// SPDX-License-Identifier: BSD-2-Clause
#include "media/stream_copy.h"

#include "media/chapters.h"
#include "media/own_tags.h"

#include <algorithm>
#include <string_view>

namespace nkdraw::media {
namespace {

void copyTag(const AVDictionary* from, AVDictionary*& to, const char* key) {
  if (const AVDictionaryEntry* const tag = av_dict_get(from, key, nullptr, 0))
    av_dict_set(&to, key, tag->value, 0);
}

/// The window for this format: without a time for the first frame, all times count from it.
TimeWindow windowFor(const AVOutputFormat& format, TimeWindow window) {
  if (window.isWhole() && std::string_view(format.name) == "mxf")
    window.shift = window.video;
  return window;
}

}  // namespace

StreamCopier::StreamCopier(MediaInput& input, MediaOutput& output,
                           const std::vector<StreamPlan>& plans, const TimeWindow& window,
                           const std::optional<std::string>& timecode)
    : input_(input), output_(output), window_(windowFor(output.format(), window)) {
  for (unsigned i = 0; i < input.file().nb_streams; ++i)
    addStream(*input.file().streams[i], plans[i]);
  copyTags(timecode);
  copyChapters(input.file(), window_, output.file());
}

void StreamCopier::addStream(const AVStream& from, const StreamPlan& plan) {
  routes_.emplace_back();
  const bool written = plan.action == StreamAction::kBurn || plan.action == StreamAction::kCopy ||
                       plan.action == StreamAction::kConvert;
  if (!written)
    return;
  AVStream& to = output_.addStream();
  copyFacts(from, to);
  if (plan.action == StreamAction::kBurn)
    videoIndex_ = to.index;
  else
    routes_.back() = routeFor({input_, from, output_, to, window_}, plan);
  if (from.codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
    sounds_.push_back({&from, &to});
}

std::vector<const AVStream*> StreamCopier::silentStreams() const {
  std::vector<const AVStream*> silent;
  for (const Pair& sound : sounds_) {
    if (!output_.hasPackets(*sound.to))
      silent.push_back(sound.from);
  }
  return silent;
}

void StreamCopier::copyTags(const std::optional<std::string>& timecode) {
  AVDictionary*& fileTags = output_.file().metadata;
  av_dict_copy(&fileTags, input_.file().metadata, 0);
  for (unsigned i = 0; i < input_.file().nb_streams; ++i)
    copyTag(input_.file().streams[i]->metadata, video().metadata, "reel_name");
  if (timecode)
    setTimecodeTag(output_, video(), *timecode);
  keepTimecodeTag(output_, video());
  keepOwnTags(output_);
}

void StreamCopier::write(AVPacket& packet) {
  const auto from = static_cast<std::size_t>(packet.stream_index);
  // Streams that appear while the file is read are left out; a note names them at the end.
  if (from < routes_.size() && routes_[from] != nullptr)
    routes_[from]->take(packet);
}

void StreamCopier::finish() {
  for (const auto& route : routes_) {
    if (route != nullptr)
      route->finish();
  }
}

void StreamCopier::writeVideo(AVPacket& packet) {
  const AVRational timeBase = input_.video().time_base;
  if (packet.pts == AV_NOPTS_VALUE)
    packet.pts = packet.dts;
  moveBy(-window_.shift, packet, timeBase);
  packet.stream_index = videoIndex_;
  output_.write(packet, timeBase);
}

void StreamCopier::writeEncoded(AVPacket& packet, AVRational timeBase) {
  av_packet_rescale_ts(&packet, timeBase, video().time_base);
  moveBy(window_.video - window_.shift, packet, video().time_base);
  packet.stream_index = videoIndex_;
  output_.write(packet, video().time_base);
}

bool StreamCopier::audioIsThrough() const {
  return std::ranges::all_of(
      routes_, [](const auto& route) { return route == nullptr || route->isThrough(); });
}

}  // namespace nkdraw::media
