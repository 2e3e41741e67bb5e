// SPDX-License-Identifier: BSD-2-Clause
#include "media/video_start.h"

#include "media/failure.h"
#include "media/lookahead.h"
#include "media/media_input.h"
#include "media/pipe_name.h"
#include "media/watched_decoder.h"

#include <algorithm>
#include <deque>
#include <vector>

namespace nkdraw::media {
namespace {

/// A recording that begins in the middle may have its first key frame so many packets later.
constexpr int kMostPackets = 512;
/// What is read from a pipe must be kept.
constexpr int kMostFromPipe = 64;

bool isFrame(const AVPacket& packet) {
  return packet.size > 0 && (packet.flags & AV_PKT_FLAG_DISCARD) == 0 &&
         packet.pts != AV_NOPTS_VALUE;
}

VideoStart toldStart(MediaInput& input) {
  return {input.video().start_time, input.video().start_time};
}

VideoStart startWith(const WatchedFrame& frame, const std::vector<std::int64_t>& times,
                     std::int64_t told) {
  // A packet whose frame is lost has its own time.
  const std::int64_t shown = frame.frame != nullptr ? frame.frame->pts : frame.time;
  if (shown == AV_NOPTS_VALUE)
    return {frame.time, told};
  const auto isBefore = [&](std::int64_t time) { return time < shown; };
  return {frame.time, shown, std::ranges::count_if(times, isBefore)};
}

/// Decodes packets, at most so many, up to the first frame.
VideoStart decodedStart(MediaInput& input, int most) {
  AVStream& video = input.video();
  WatchedDecoder decoder(*video.codecpar, video.time_base, input.path());
  Lookahead packets(input);
  std::deque<WatchedFrame> ready;
  std::vector<std::int64_t> times;
  for (int i = 0; i < most && ready.empty(); ++i) {
    const AVPacket* const packet = packets.next();
    if (packet != nullptr && isFrame(*packet))
      times.push_back(packet->pts);
    decoder.decode(packet, ready);
    if (packet == nullptr)
      break;
  }
  return ready.empty() ? toldStart(input) : startWith(ready.front(), times, video.start_time);
}

}  // namespace

bool isIntraOnly(AVCodecID codec) {
  const AVCodecDescriptor* const facts = avcodec_descriptor_get(codec);
  return facts != nullptr && (facts->props & AV_CODEC_PROP_INTRA_ONLY) != 0;
}

VideoStart findVideoStart(MediaInput& input) {
  if (isIntraOnly(input.video().codecpar->codec_id))
    return toldStart(input);
  try {
    if (isPipedInput(input.path()))
      return decodedStart(input, kMostFromPipe);
    MediaInput again = input.again();
    again.readOnly(again.video());
    return decodedStart(again, kMostPackets);
  } catch (const Failure&) {
    return toldStart(input);  // the run itself will say what is wrong
  }
}

}  // namespace nkdraw::media
