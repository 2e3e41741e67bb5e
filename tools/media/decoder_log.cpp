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
    "chain broken",
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

void DecoderLog::note(std::int64_t packet, const std::string& message) {
  const std::lock_guard hold(lock_);
  messages_.try_emplace(packet, message);
  newest_ = std::max(newest_, packet);
}

std::optional<std::string> DecoderLog::take(std::int64_t packet) {
  const std::lock_guard hold(lock_);
  const auto found = messages_.find(packet);
  if (found == messages_.end())
    return std::nullopt;
  std::string message = std::move(found->second);
  messages_.erase(found);
  return message;
}

std::int64_t DecoderLog::newest() {
  const std::lock_guard hold(lock_);
  return newest_;
}

void DecoderLog::forgetBefore(std::int64_t packet) {
  const std::lock_guard hold(lock_);
  messages_.erase(messages_.begin(), messages_.lower_bound(packet));
}

void noteDecoderMessage(void* reporter, const std::string& message) {
  if (!isVideoDecoder(reporter))
    return;
  const auto& context = *static_cast<AVCodecContext*>(reporter);
  const bool tells = std::ranges::any_of(kDamageWords, [&](std::string_view words) {
    return message.find(words) != std::string::npos;
  });
  if (tells && context.opaque != nullptr)
    static_cast<DecoderLog*>(context.opaque)->note(context.reordered_opaque, message);
}

}  // namespace nkdraw::media
