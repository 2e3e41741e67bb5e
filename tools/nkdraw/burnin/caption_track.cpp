// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/caption_track.h"

#include "media/failure.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <string_view>

#include <sys/stat.h>

namespace nkdraw::tool {
namespace {

constexpr char kAdvice[] = "name a Scenarist file (.scc)";

InputContext openTrack(const std::string& path) {
  struct stat facts = {};
  if (stat(path.c_str(), &facts) != 0)
    throw Failure(ExitCode::kInput, "cannot read the captions", path,
                  std::string(std::strerror(errno)) + "; check the name");
  AVFormatContext* file = nullptr;
  const int error = avformat_open_input(&file, ("file:" + path).c_str(), nullptr, nullptr);
  InputContext opened(file);
  if (error < 0 || std::string_view(opened->iformat->name) != "scc")
    throw Failure(ExitCode::kInput, "not a file of captions", path, kAdvice);
  return opened;
}

}  // namespace

CaptionTrack::CaptionTrack(const std::string& path, AVRational rate) {
  const InputContext file = openTrack(path);
  const Packet line = makePacket();
  while (av_read_frame(file.get(), line.get()) >= 0) {
    add(*line, file->streams[0]->time_base, rate);
    av_packet_unref(line.get());
  }
  if (triplets_.empty())
    throw Failure(ExitCode::kInput, "no captions in the file", path, kAdvice);
}

void CaptionTrack::add(const AVPacket& line, AVRational timeBase, AVRational rate) {
  const std::int64_t due = av_rescale_q(line.pts, timeBase, av_inv_q(rate));
  std::int64_t frame =
      triplets_.empty() ? due : std::max(due, std::prev(triplets_.end())->first + 1);
  Triplet triplet{};
  for (int i = 0; i + 3 <= line.size; i += 3) {
    std::copy_n(line.data + i, triplet.size(), triplet.begin());
    triplets_.emplace(frame++, triplet);
  }
}

Captions CaptionTrack::at(std::int64_t index) const {
  const auto found = triplets_.find(index);
  return found != triplets_.end() ? Captions(found->second) : Captions();
}

}  // namespace nkdraw::tool
