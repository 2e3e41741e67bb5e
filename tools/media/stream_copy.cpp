// SPDX-License-Identifier: BSD-2-Clause
#include "media/stream_copy.h"

#include "media/failure.h"
#include "media/layouts.h"

#include <algorithm>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr std::uint32_t kTimecodeTag = MKTAG('t', 'm', 'c', 'd');
constexpr AVRational kMicroseconds = {1, AV_TIME_BASE};

/// If a format can't tell in advance, writing will show.
bool mayHold(const AVOutputFormat& format, AVCodecID codec) {
  return avformat_query_codec(&format, codec, FF_COMPLIANCE_NORMAL) != 0;
}

/// MP4 and related formats; FFmpeg's QuickTime muxer accepts cover pictures and drops them.
bool keepsCovers(const AVOutputFormat& format) {
  const std::string_view name = format.name;
  return name == "mp4" || name == "ipod";
}

StreamAction dataAction(const AVStream& stream, MediaInput& input, const AVOutputFormat& format) {
  const AVCodecParameters& codec = *stream.codecpar;
  if (codec.codec_tag == kTimecodeTag)
    return StreamAction::kTimecode;
  return isSameKind(*input.file().iformat, format) && codec.codec_id != AV_CODEC_ID_NONE &&
                 mayHold(format, codec.codec_id)
             ? StreamAction::kCopy
             : StreamAction::kLeaveOut;
}

/// Advice: the file formats that hold the codec.
std::string keepingKinds(AVCodecID codec) {
  unsigned kinds = 0;
  for (const char* const name : {"mov", "avi", "matroska", "nut"}) {
    const AVOutputFormat* const format = av_guess_format(name, nullptr, nullptr);
    if (format != nullptr && mayHold(*format, codec))
      kinds |= containerOf(name);
  }
  return kinds != 0 ? "write " + containerNames(kinds) : "take the stream out of the input first";
}

StreamAction actionFor(const AVStream& stream, MediaInput& input, const AVOutputFormat& format) {
  const AVCodecParameters& codec = *stream.codecpar;
  switch (codec.codec_type) {
    case AVMEDIA_TYPE_AUDIO:
      if (codec.sample_rate <= 0)
        throw Failure(ExitCode::kInput, "no sound was found in a stream", input.path(),
                      "stream " + std::to_string(stream.index) + " (" + describeStream(stream) +
                          "); the input may be incomplete");
      [[fallthrough]];
    case AVMEDIA_TYPE_SUBTITLE:
    case AVMEDIA_TYPE_VIDEO:
      if ((stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0)
        return keepsCovers(format) ? StreamAction::kCopy : StreamAction::kLeaveOut;
      if (mayHold(format, codec.codec_id))
        return StreamAction::kCopy;
      throw Failure(ExitCode::kUsage, "the output's kind of file does not hold a stream",
                    "stream " + std::to_string(stream.index) + " (" + describeStream(stream) + ")",
                    keepingKinds(codec.codec_id));
    case AVMEDIA_TYPE_ATTACHMENT:
      return isSameKind(*input.file().iformat, format) ? StreamAction::kCopy
                                                       : StreamAction::kLeaveOut;
    default:
      return dataAction(stream, input, format);
  }
}

void copyTag(const AVDictionary* from, AVDictionary*& to, const char* key) {
  if (const AVDictionaryEntry* const tag = av_dict_get(from, key, nullptr, 0))
    av_dict_set(&to, key, tag->value, 0);
}

/// Moves the packet's times by this many microseconds.
void moveBy(std::int64_t microseconds, AVPacket& packet, AVRational timeBase) {
  const std::int64_t ticks = av_rescale_q(microseconds, kMicroseconds, timeBase);
  if (packet.pts != AV_NOPTS_VALUE)
    packet.pts += ticks;
  if (packet.dts != AV_NOPTS_VALUE)
    packet.dts += ticks;
}

}  // namespace

std::vector<StreamAction> streamActions(MediaInput& input, const AVOutputFormat& format) {
  std::vector<StreamAction> actions;
  for (unsigned i = 0; i < input.file().nb_streams; ++i) {
    const AVStream& stream = *input.file().streams[i];
    actions.push_back(&stream == &input.video() ? StreamAction::kBurn
                                                : actionFor(stream, input, format));
  }
  return actions;
}

StreamCopier::StreamCopier(MediaInput& input, MediaOutput& output,
                           const std::vector<StreamAction>& actions, const TimeWindow& window,
                           const std::optional<std::string>& timecode)
    : input_(input), output_(output), window_(window) {
  for (unsigned i = 0; i < input.file().nb_streams; ++i) {
    const AVStream& from = *input.file().streams[i];
    through_.push_back(actions[i] != StreamAction::kCopy ||
                       from.codecpar->codec_type != AVMEDIA_TYPE_AUDIO);
    if (actions[i] == StreamAction::kLeaveOut || actions[i] == StreamAction::kTimecode) {
      target_.push_back(-1);
      continue;
    }
    AVStream& to = output.addStream();
    target_.push_back(to.index);
    copyFacts(from, to);
    if (actions[i] == StreamAction::kCopy)
      copyCodec(from, to, output.format());
    else
      videoIndex_ = to.index;
  }
  copyTags(timecode);
  if (window.isWhole())
    copyChapters();
}

void StreamCopier::copyTags(const std::optional<std::string>& timecode) {
  AVDictionary*& fileTags = output_.file().metadata;
  av_dict_copy(&fileTags, input_.file().metadata, 0);
  for (unsigned i = 0; i < input_.file().nb_streams; ++i)
    copyTag(input_.file().streams[i]->metadata, video().metadata, "reel_name");
  if (timecode)
    setTimecodeTag(output_, video(), *timecode);
  keepTimecodeTag(output_, video());
}

void StreamCopier::copyChapters() {
  AVFormatContext& to = output_.file();
  const AVFormatContext& from = input_.file();
  if (from.nb_chapters == 0)
    return;
  to.chapters = static_cast<AVChapter**>(av_calloc(from.nb_chapters, sizeof(AVChapter*)));
  if (to.chapters == nullptr)
    throw std::bad_alloc();
  for (; to.nb_chapters < from.nb_chapters; ++to.nb_chapters) {
    const AVChapter& source = *from.chapters[to.nb_chapters];
    auto* const chapter = static_cast<AVChapter*>(av_mallocz(sizeof(AVChapter)));
    if (chapter == nullptr)
      throw std::bad_alloc();
    const std::int64_t shift = av_rescale_q(window_.shift, kMicroseconds, source.time_base);
    chapter->id = source.id;
    chapter->time_base = source.time_base;
    chapter->start = std::max<std::int64_t>(source.start - shift, 0);
    chapter->end = source.end - shift;
    av_dict_copy(&chapter->metadata, source.metadata, 0);
    to.chapters[to.nb_chapters] = chapter;
  }
}

void StreamCopier::write(AVPacket& packet) {
  const auto from = static_cast<std::size_t>(packet.stream_index);
  // Streams that appear while the file is read are left out.
  if (from >= target_.size() || target_[from] < 0)
    return;
  const AVRational timeBase = input_.file().streams[from]->time_base;
  const std::int64_t time = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
  if (!window_.isWhole() && time != AV_NOPTS_VALUE) {
    if (av_compare_ts(time, timeBase, window_.first, kMicroseconds) < 0)
      return;
    if (av_compare_ts(time, timeBase, window_.end, kMicroseconds) >= 0) {
      through_[from] = true;
      return;
    }
  }
  moveBy(-window_.shift, packet, timeBase);
  packet.stream_index = target_[from];
  output_.write(packet, timeBase);
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
  return std::ranges::find(through_, false) == through_.end();
}

}  // namespace nkdraw::media
