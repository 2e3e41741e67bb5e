// SPDX-License-Identifier: BSD-2-Clause
#include "media/late_streams.h"

#include "media/pipe_name.h"
#include "media/stream_facts.h"

namespace nkdraw::media {

std::string lateStreams(MediaInput& input) {
  std::string late;
  for (unsigned i = input.knownStreams(); i < input.file().nb_streams; ++i)
    late += (late.empty() ? "stream " : ", stream ") + std::to_string(i) + " (" +
            describeStream(*input.file().streams[i]) + ")";
  if (late.empty())
    return late;
  return "left out, since it comes too late in the input: " + late +
         (isPipedInput(input.path()) ? "; give the file itself instead of a pipe" : "");
}

}  // namespace nkdraw::media
