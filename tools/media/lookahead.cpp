// SPDX-License-Identifier: BSD-2-Clause
#include "media/lookahead.h"

namespace nkdraw::media {

const AVPacket* Lookahead::next() {
  for (;;) {
    Packet packet = makePacket();
    if (!input_.read(*packet))
      return nullptr;
    packets_.push_back(std::move(packet));
    if (input_.isVideo(*packets_.back()))
      return packets_.back().get();
  }
}

}  // namespace nkdraw::media
