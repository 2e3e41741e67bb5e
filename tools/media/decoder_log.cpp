// SPDX-License-Identifier: BSD-2-Clause
#include "media/decoder_log.h"

#include "media/libav.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace nkdraw::media {
namespace {

/// Parts of the messages about damage; other errors are logged of streams without any.
constexpr std::string_view kDamageWords[] = {
    "error while decoding",
    "error decoding",
    "concealing",
    "error dc",
    "error y=",
    "error count",
    "damaged",
    "CRC mismatch",
    "ac tex",
    "ac-tex",
    "overread",
    "lines with errors",
    "slice_header error",
    "Invalid NAL",
    "Error splitting",
    "invalid frame header",
    "inflate returned",
    "cabac decode of",
    "corrupt",
    "end mismatch",
    "Error at MB",
    "mb_type",
    "Invalid PNG",
    "unknown header",
};

bool isVideoDecoder(void* reporter) {
  const AVClass* const kind = reporter != nullptr ? *static_cast<AVClass**>(reporter) : nullptr;
  if (kind == nullptr || std::string_view(kind->class_name) != "AVCodecContext")
    return false;
  const auto& context = *static_cast<AVCodecContext*>(reporter);
  return context.codec_type == AVMEDIA_TYPE_VIDEO && context.codec != nullptr &&
         av_codec_is_decoder(context.codec) != 0;
}

}  // namespace

void DecoderLog::note(std::int64_t packet) {
  const std::lock_guard hold(lock_);
  packets_.insert(packet);
  any_ = true;
}

bool DecoderLog::takes(std::int64_t packet) {
  const std::lock_guard hold(lock_);
  return packets_.erase(packet) != 0;
}

bool DecoderLog::takeAny() {
  const std::lock_guard hold(lock_);
  return std::exchange(any_, false);
}

void noteDecoderMessage(void* reporter, const char* message) {
  if (!isVideoDecoder(reporter))
    return;
  auto& context = *static_cast<AVCodecContext*>(reporter);
  const std::string_view text = message;
  const bool tells = std::ranges::any_of(
      kDamageWords, [&](std::string_view words) { return text.find(words) != text.npos; });
  if (tells && context.opaque != nullptr)
    static_cast<DecoderLog*>(context.opaque)->note(context.reordered_opaque);
}

}  // namespace nkdraw::media
