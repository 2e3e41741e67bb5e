// SPDX-License-Identifier: BSD-2-Clause
#include "media/audio_reader.h"

#include "media/time_window.h"

#include <algorithm>

namespace nkdraw::media {
namespace {

std::int64_t startOfVideo(MediaInput& input) {
  const std::int64_t shown = input.start().shown;
  return shown != AV_NOPTS_VALUE ? av_rescale_q(shown, input.video().time_base, kMicroseconds) : 0;
}

}  // namespace

AudioReader::AudioReader(const std::string& path, int stream, const AudioShape& shape,
                         const std::string& advice)
    : input_(path),
      stream_(*input_.file().streams[stream]),
      decoder_(stream_, shape, {path, advice, startOfVideo(input_)}),
      channels_(shape.channels()) {
  input_.readOnly(stream_);
}

void AudioReader::decodeMore() {
  const Packet packet = makePacket();
  const bool there = input_.read(*packet);
  if (there && packet->stream_index != stream_.index)
    return;
  ended_ = !there;
  decoder_.decode(there ? packet.get() : nullptr);
}

std::size_t AudioReader::read(double* samples, std::size_t count) {
  const std::size_t wanted = count * channels_;
  std::size_t got = 0;
  while (got < wanted && (!ended_ || !decoder_.ready().empty())) {
    const std::span<const double> ready = decoder_.ready();
    const std::size_t part = std::min(wanted - got, ready.size());
    std::copy_n(ready.begin(), part, samples + got);
    decoder_.take(part);
    got += part;
    if (part == 0)
      decodeMore();
  }
  return got / channels_;
}

}  // namespace nkdraw::media
