// SPDX-License-Identifier: BSD-2-Clause
//
// CEA-608 captions of one channel, decoded by libzvbi.
#pragma once

#include <libzvbi.h>

#include <cstdint>
#include <memory>
#include <span>

namespace nkdraw {

/// The screen of one caption channel. Text is in columns 1 to 32; the columns on either side are
/// for the box around it.
class CaptionDecoder {
 public:
  static constexpr int kColumns = 34;
  static constexpr int kRows = 15;

  /// Throws std::bad_alloc.
  CaptionDecoder();

  /// 1 to 4: CC1 to CC4; 5 to 8: T1 to T4; others: CC1, the default. Switching to the other field
  /// empties the screen.
  void setChannel(std::uint32_t type);

  /// Takes the cc_data triplets of one frame; an incomplete triplet at the end is ignored.
  void addFrame(std::span<const std::uint8_t> triplets);

  /// The cells to show now, kColumns by kRows; none if there is nothing to show. Valid until the
  /// next call.
  [[nodiscard]] std::span<const vbi_char> cells();

 private:
  struct Delete {
    void operator()(vbi_decoder* decoder) const { vbi_decoder_delete(decoder); }
  };

  [[nodiscard]] bool isCaption(std::uint8_t first);
  void addPair(std::uint8_t first, std::uint8_t second);
  void decode(std::uint8_t first, std::uint8_t second);

  std::unique_ptr<vbi_decoder, Delete> decoder_;
  vbi_page page_{};
  double time_ = 0.0;        // seconds
  std::uint8_t field_ = 0;   // 0 first, 1 second: the cc_type of its triplets
  vbi_pgno pageNumber_ = 1;  // as if the field were the first
  bool inDataService_ = false;
};

}  // namespace nkdraw
