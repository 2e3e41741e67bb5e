// SPDX-License-Identifier: BSD-2-Clause
#include "media/sound_converter.h"

#include "media/time_window.h"

#include <algorithm>

namespace nkdraw::media {
namespace {

/// Without an end or an origin, all of it.
std::size_t momentsUntil(std::int64_t end, std::int64_t origin, int rate) {
  if (end == std::numeric_limits<std::int64_t>::max() || origin == AV_NOPTS_VALUE)
    return std::numeric_limits<std::size_t>::max();
  const AVRational moment = {1, rate};
  return static_cast<std::size_t>(std::max<std::int64_t>(
      av_rescale_q(end, kMicroseconds, moment) - av_rescale_q(origin, kMicroseconds, moment), 0));
}

}  // namespace

SoundConverter::SoundConverter(const AVStream& from, const CodecChoice& choice,
                               const AVOutputFormat& format, const SoundSource& source,
                               std::int64_t end)
    : shape_(shapeFor(*from.codecpar, *choice.codec, format)),
      decoder_(from, shape_, source),
      encoder_(choice, shape_, format),
      left_(momentsUntil(end, source.origin, shape_.rate)) {}

void SoundConverter::convert(const AVPacket* packet, const TakePacket& take) {
  decoder_.decode(packet);
  for (auto ready = decoder_.ready(); !ready.empty(); ready = decoder_.ready()) {
    const std::size_t count = std::min(ready.size() / shape_.channels(), left_);
    if (count > 0)
      encoder_.encode(ready.data(), count, take);
    left_ -= count;
    decoder_.take(ready.size());
  }
  if (packet == nullptr)
    encoder_.finish(take);
}

}  // namespace nkdraw::media
