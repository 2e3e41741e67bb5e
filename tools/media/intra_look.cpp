// SPDX-License-Identifier: BSD-2-Clause
#include "media/intra_look.h"

#include "media/failure.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <span>

namespace nkdraw::media {
namespace {

constexpr int kFrames = 30;  // more than the group of pictures of any codec that isn't intra

// The picture coding extension: start code, identifier 8 and four f_codes, then these bits.
constexpr std::array<std::uint8_t, 4> kExtension = {0, 0, 1, 0xB5};
constexpr std::size_t kExtensionBytes = 8;
constexpr int kIdentifier = 8;

void readExtension(std::span<const std::uint8_t> data, IntraLook& look) {
  auto rest = data;
  while (rest.size() >= kExtensionBytes) {
    const auto found =
        std::search(rest.begin(), rest.end(), std::begin(kExtension), std::end(kExtension));
    rest = rest.subspan(static_cast<std::size_t>(found - rest.begin()));
    if (rest.size() < kExtensionBytes)
      return;
    if (rest[4] >> 4 == kIdentifier) {
      look.precision = rest[6] >> 2 & 3;
      look.nonLinear = (rest[7] & 0x10) != 0;
      look.intraTable = (rest[7] & 0x08) != 0;
      look.alternateScan = (rest[7] & 0x04) != 0;
      return;
    }
    rest = rest.subspan(kExtension.size());
  }
}

/// Adds what one packet tells. False if that is enough.
bool note(const AVPacket& packet, int& size, IntraLook& look) {
  if (size < 0) {
    look.isIntra = look.sameSize = true;
    readExtension({packet.data, static_cast<std::size_t>(packet.size)}, look);
    size = packet.size;
  }
  look.isIntra = look.isIntra && (packet.flags & AV_PKT_FLAG_KEY) != 0;
  look.sameSize = look.sameSize && packet.size == size;
  return look.isIntra;
}

}  // namespace

IntraLook lookForIntra(const MediaInput& input) {
  IntraLook look;
  std::error_code error;
  if (!std::filesystem::is_regular_file(input.path(), error))
    return look;
  try {
    MediaInput again = input.again();
    again.readOnly(again.video());
    const Packet packet = makePacket();
    int size = -1;
    bool more = true;
    for (int i = 0; more && i < kFrames && again.read(*packet); ++i) {
      more = !again.isVideo(*packet) || note(*packet, size, look);
      av_packet_unref(packet.get());
    }
  } catch (const Failure&) {
    return look;  // the run itself will say what is wrong
  }
  return look;
}

}  // namespace nkdraw::media
