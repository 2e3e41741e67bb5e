// SPDX-License-Identifier: BSD-2-Clause
#include "media/packet_rows.h"

#include "media/failure.h"
#include "media/media_input.h"

#include <cstring>
#include <string>

namespace nkdraw::media {
namespace {

constexpr std::uint32_t kSignedYUV2 = MKTAG('y', 'u', 'v', '2');
constexpr std::uint32_t kBlackmagicC210 = MKTAG('C', '2', '1', '0');
constexpr int kInfoBytes = 64;           // possible header before a frame of C210
constexpr std::size_t kOldPadding = 64;  // some AVI writers pad rows to a multiple

CodecContext openRawDecoder(const AVCodecParameters& video) {
  const AVCodec* const codec = avcodec_find_decoder(AV_CODEC_ID_RAWVIDEO);
  auto decoder = owned<CodecContext>(avcodec_alloc_context3(codec));
  if (codec == nullptr || avcodec_parameters_to_context(decoder.get(), &video) < 0 ||
      avcodec_open2(decoder.get(), codec, nullptr) < 0)
    return nullptr;
  return decoder;
}

}  // namespace

PacketRows::PacketRows(const AVCodecParameters& video, const Layout& layout)
    : layout_(layout),
      width_(video.width),
      height_(video.height),
      codecTag_(video.codec_tag),
      storage_(layout.type == ptYUYV && video.codec_tag == kSignedYUV2 ? Storage::kSignedChroma
                                                                       : Storage::kPacked) {
  if (video.codec_id == AV_CODEC_ID_RAWVIDEO && storage_ == Storage::kPacked)
    decoder_ = openRawDecoder(video);
}

bool PacketRows::findV210(const AVPacket& packet) {
  const auto rows = static_cast<std::size_t>(height_);
  const auto bytes = static_cast<std::size_t>(packet.size);
  const std::size_t pitch = packedPitch(ptV210, width_);
  const std::size_t oldPitch =
      (rowBytes(ptV210, width_) + kOldPadding - 1) / kOldPadding * kOldPadding;
  if (bytes < pitch * rows) {
    if (bytes != oldPitch * rows)
      return false;
    place_ = {0, static_cast<std::ptrdiff_t>(oldPitch)};
    return true;
  }
  const bool hasInfo = codecTag_ == kBlackmagicC210 && bytes >= pitch * rows + kInfoBytes &&
                       std::memcmp(packet.data, "INFO", 4) == 0;
  place_ = {hasInfo ? kInfoBytes : 0, static_cast<std::ptrdiff_t>(pitch)};
  return true;
}

/// FFmpeg's decoder of raw frames returns a frame that refers to the packet itself.
bool PacketRows::findRaw(AVPacket& packet) {
  const auto pitch = static_cast<std::ptrdiff_t>(rowBytes(layout_.type, width_));
  if (packet.size < pitch * height_)
    return false;
  place_ = {0, pitch};
  if (decoder_ == nullptr)
    return true;
  const Frame frame = makeFrame();
  const Packet shown = owned<Packet>(av_packet_clone(&packet));
  shown->flags &= ~AV_PKT_FLAG_DISCARD;  // else no frame comes back
  if (avcodec_send_packet(decoder_.get(), shown.get()) < 0 ||
      avcodec_receive_frame(decoder_.get(), frame.get()) < 0)
    return false;
  const std::uint8_t* const first = frame->data[0];
  if (first >= packet.data && first < packet.data + packet.size)
    place_ = {first - packet.data, frame->linesize[0]};
  return true;
}

Picture PacketRows::rowsOf(AVPacket& packet) {
  if (packet.size != size_) {
    if (!(layout_.codec == AV_CODEC_ID_V210 ? findV210(packet) : findRaw(packet)))
      return {};
    size_ = packet.size;
  }
  Picture picture;
  picture.planes[0] = packet.data + place_.offset;
  picture.pitches[0] = place_.pitch;
  return picture;
}

Picture PacketRows::rowsOf(AVPacket& packet, std::int64_t index, MediaInput& input) {
  const Picture rows = rowsOf(packet);
  if (rows.planes[0] == nullptr)
    throw Failure(ExitCode::kInput, "a frame is cut short", input.path(),
                  input.damage().describe(index) + " has " + std::to_string(packet.size) +
                      " bytes; the input may be incomplete");
  return rows;
}

void PacketRows::makePlain(AVPacket& packet, const Picture& picture) const {
  const std::size_t pitch = packedPitch(layout_.type, width_);
  const std::size_t bytes = rowBytes(layout_.type, width_);
  const auto size = static_cast<int>(pitch * static_cast<std::size_t>(height_));
  if (storage_ == Storage::kPacked && picture.planes[0] == packet.data &&
      picture.pitches[0] == static_cast<std::ptrdiff_t>(pitch) && packet.size == size)
    return;
  const Packet plain = makePacket();
  if (av_new_packet(plain.get(), size) < 0 || av_packet_copy_props(plain.get(), &packet) < 0)
    throw std::bad_alloc();
  std::memset(plain->data, 0, static_cast<std::size_t>(size));
  for (int y = 0; y < height_; ++y) {
    std::uint8_t* const row = plain->data + pitch * static_cast<std::size_t>(y);
    std::memcpy(row, picture.planes[0] + picture.pitches[0] * y, bytes);
    if (storage_ == Storage::kSignedChroma) {
      for (std::size_t i = 1; i < bytes; i += 2)
        row[i] ^= 0x80;
    }
  }
  plain->stream_index = packet.stream_index;
  av_packet_unref(&packet);
  av_packet_move_ref(&packet, plain.get());
}

}  // namespace nkdraw::media
