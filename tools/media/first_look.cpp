// SPDX-License-Identifier: BSD-2-Clause
#include "media/first_look.h"

#include "media/failure.h"
#include "media/light_levels.h"
#include "media/video_decoder.h"

#include <filesystem>

namespace nkdraw::media {
namespace {

/// Far more packets than any decoder holds back.
constexpr int kMostPackets = 256;

bool isSilent(const AVStream& video) {
  return video.codecpar->field_order == AV_FIELD_UNKNOWN;
}

template <class Fact>
void complete(Fact& fact, Fact found, Fact unknown) {
  if (fact == unknown)
    fact = found;
}

}  // namespace

Frame firstLook(MediaInput& input) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(input.path(), error))
    return nullptr;
  Frame first;
  try {
    MediaInput again = input.again();
    again.readOnly(again.video());
    VideoDecoder decoder(*again.video().codecpar, again.video().time_base, again.path());
    const auto keep = [&](AVFrame& frame) {
      if (first != nullptr)
        return;
      first = makeFrame();
      av_frame_move_ref(first.get(), &frame);
    };
    const Packet packet = makePacket();
    for (int i = 0; i < kMostPackets && first == nullptr && again.read(*packet); ++i) {
      if (again.isVideo(*packet))
        decoder.decode(packet.get(), keep);
      av_packet_unref(packet.get());
    }
    if (first == nullptr)
      decoder.decode(nullptr, keep);
  } catch (const Failure&) {
    return first;  // the run itself will say what is wrong
  }
  return first;
}

bool isInterlaced(const AVStream& video, const AVFrame* first) {
  if (isSilent(video))
    return first != nullptr && first->interlaced_frame != 0;
  return video.codecpar->field_order != AV_FIELD_PROGRESSIVE;
}

void completeFrom(const AVFrame& first, const AVStream& video, AVFrame& example) {
  complete(example.color_range, first.color_range, AVCOL_RANGE_UNSPECIFIED);
  complete(example.color_primaries, first.color_primaries, AVCOL_PRI_UNSPECIFIED);
  complete(example.color_trc, first.color_trc, AVCOL_TRC_UNSPECIFIED);
  complete(example.colorspace, first.colorspace, AVCOL_SPC_UNSPECIFIED);
  complete(example.chroma_location, first.chroma_location, AVCHROMA_LOC_UNSPECIFIED);
  if (isSilent(video))
    example.top_field_first = first.top_field_first;
  copyLightLevels(first, example);
}

AVFieldOrder fieldOrderFor(const AVStream& video, const AVFrame* first, AVCodecID codec) {
  if (!isSilent(video) || first == nullptr)
    return video.codecpar->field_order;
  if (first->interlaced_frame == 0)
    return AV_FIELD_PROGRESSIVE;
  const bool top = first->top_field_first != 0;
  if (codec == AV_CODEC_ID_MJPEG)
    return top ? AV_FIELD_TT : AV_FIELD_BB;
  return top ? AV_FIELD_TB : AV_FIELD_BT;
}

}  // namespace nkdraw::media
