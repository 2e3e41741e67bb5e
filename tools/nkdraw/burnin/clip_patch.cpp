// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/clip_patch.h"

#include "burnin/clip_frames.h"
#include "burnin/patched_frames.h"
#include "burnin/range_check.h"
#include "cli/progress.h"
#include "cli/run_options.h"
#include "media/failure.h"
#include "media/libav_log.h"
#include "media/output_file.h"
#include "media/packet_watch.h"
#include "media/pipe_name.h"
#include "media/stream_facts.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <strings.h>
#include <unistd.h>

namespace nkdraw::tool {
namespace {

/// The temporary file of an output, open for reading and writing.
class OpenFile {
 public:
  explicit OpenFile(const OutputFile& file)
      : descriptor_(open(file.temporary().c_str(), O_RDWR | O_CLOEXEC)) {
    if (descriptor_ < 0)
      throw Failure(ExitCode::kOutput, "cannot write the output", file.path(),
                    std::string(std::strerror(errno)) + "; check its folder");
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { close(descriptor_); }

  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

bool isSameSuffix(const std::string& a, const std::string& b) {
  const auto suffixOf = [](const std::string& name) {
    return std::filesystem::path(name).extension().string();
  };
  return strcasecmp(suffixOf(a).c_str(), suffixOf(b).c_str()) == 0;
}

bool staysAsItIs(const StreamPlan& stream) {
  return stream.action != StreamAction::kConvert && stream.action != StreamAction::kLeaveOut &&
         stream.reason.empty();
}

/// Finds damage in the streams that are not drawn on.
class Watches {
 public:
  explicit Watches(MediaInput& input) : input_(input) {
    for (unsigned i = 0; i < input.file().nb_streams; ++i)
      watches_.push_back(std::make_unique<PacketWatch>(input, *input.file().streams[i], true));
  }
  void check(const AVPacket& packet) {
    if (!input_.sparse()->complete(packet))
      throw CanNotPatch();
    if (const auto i = static_cast<std::size_t>(packet.stream_index); i < watches_.size())
      watches_[i]->check(packet);
  }

 private:
  MediaInput& input_;
  std::vector<std::unique_ptr<PacketWatch>> watches_;
};

void patch(MediaInput& input, const Job& job, const OpenFile& to, const BurninOptions& options) {
  Watches watches(input);
  PatchedFrames frames(input, job, to.descriptor(), options.output().path);
  Progress progress(expectedFrames(input, job.range), options.progressForm());
  RangeRead read;
  const OtherPackets others = {[&](AVPacket& packet) { watches.check(packet); },
                               [] { return true; }};
  read.continues = burnRange(input, job, frames, others, [&](AVPacket&, std::int64_t index) {
    read.note(index);
    progress.advance();
  });
  checkRead(read, input, job.range);
  // Frames that are not shown would stay as they are.
  const std::int64_t held = input.video().nb_frames;
  if (read.written < held || !input.damage().isEmpty())
    throw CanNotPatch();
  frames.finish();
}

}  // namespace

Reading readingFor(const BurninOptions& options) {
  const OutputRequest& request = options.output();
  const AVOutputFormat* const format = av_guess_format(nullptr, request.path.c_str(), nullptr);
  const bool isFile = format != nullptr && (format->flags & AVFMT_NOFILE) == 0;
  const bool sameFile = options.outputs.size() == 1 && !options.still && isFile &&
                        !request.format && !isPipedOutput(request.path) &&
                        isSameSuffix(*options.input, request.path);
  return sameFile ? Reading::kSparse : Reading::kWhole;
}

bool canPatch(MediaInput& input, const ClipPlan& plan, const BurninOptions& options) {
  if (input.sparse() == nullptr)
    return false;
  const OutputPlan& output = plan.output();
  const bool sameFile = output.inPlace && isSameKind(*input.file().iformat, *output.format) &&
                        muxerOptions(output.request, *output.format).empty();
  const bool sameContents = plan.job.range.isWhole() && input.start().undecodable == 0 &&
                            !input.timesJumped() && !options.startTimecode &&
                            (!plan.timecodeTag || !plan.timecodeTag->empty()) &&
                            std::ranges::all_of(output.streams, staysAsItIs);
  // Captions may lie anywhere in the frame.
  return sameFile && sameContents && !plan.job.plan.request.captions;
}

bool writePatched(MediaInput& input, const ClipPlan& plan, const BurninOptions& options) {
  OutputFile file(options.output().path, options.overwrite);
  const OpenFile opened(file);
  // Reading all of the file tells what the damage is, and what to do about it.
  input.damage().setAction(OnDamage::kContinue);
  forgetLibavErrors();
  try {
    patch(input, plan.job, opened, options);
  } catch (const CanNotPatch&) {
    return false;
  } catch (const Failure& failure) {
    if (failure.code() == ExitCode::kOutput)
      throw;
    return false;
  }
  file.commit();
  return true;
}

}  // namespace nkdraw::tool
