// SPDX-License-Identifier: BSD-2-Clause
#include "media/media_input.h"

#include "media/failure.h"
#include "media/interrupt.h"
#include "media/libav_log.h"
#include "media/pipe_name.h"

#include <nkdraw/platform/media_names.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <span>
#include <string_view>

#include <sys/stat.h>

namespace nkdraw::media {
namespace {

int stopWhenInterrupted(void* /*context*/) {
  return pendingInterrupt() != 0 ? 1 : 0;
}

struct FileTypeName {
  std::string_view format;  // prefix of the names of FFmpeg's demuxer
  hzwFileType type;
};

constexpr FileTypeName kFileTypes[] = {
    {"mov", hzwFileMOV},       {"avi", hzwFileAVI},      {"matroska", hzwFileMKV},
    {"nut", hzwFileNUT},       {"mxf", hzwFileMXF},      {"mpegts", hzwFileMPEGTS},
    {"mpeg", hzwFileMPEGPS},   {"yuv4mpeg", hzwFileY4M}, {"rawvideo", hzwFileRaw},
    {"ogg", hzwFileOGG},       {"gxf", hzwFileGXF},      {"dpx", hzwFileDPX},
    {"image2", hzwFileStills}, {"png", hzwFileStills},
};

struct Extension {
  const char* suffix;  // ignoring case
  hzwFileType type;
};
/// The file's name distinguishes formats that share a demuxer.
constexpr Extension kExtensions[] = {
    {"mp4", hzwFileMP4}, {"webm", hzwFileWebM}, {"dpx", hzwFileDPX}};

void checkIsFile(const std::string& path) {
  if (path == "-" || isPipedInput(path))
    return;
  struct stat facts = {};
  if (stat(path.c_str(), &facts) != 0)
    throw Failure(ExitCode::kInput, "cannot read the input", path,
                  std::string(std::strerror(errno)) + "; check the name");
  if (S_ISDIR(facts.st_mode))
    throw Failure(ExitCode::kInput, "the input is a folder", path, "name a media file");
}

bool isRegularFile(const std::string& path) {
  struct stat facts = {};
  return path != "-" && stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode);
}

bool isCover(const AVStream& stream) {
  return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

/// For FFmpeg a cover picture is also a video stream.
bool isVideo(const AVStream& stream) {
  return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isCover(stream);
}

int findVideo(AVFormatContext& file) {
  const int best = av_find_best_stream(&file, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
  if (best < 0 || isVideo(*file.streams[best]))
    return best;
  const std::span streams(file.streams, file.nb_streams);
  const auto found = std::ranges::find_if(streams, [](AVStream* each) { return isVideo(*each); });
  return found != streams.end() ? (*found)->index : -1;
}

/// A packet truncated by the end of the file. In transport streams the flag may also mean lost
/// packets, which are normal in recordings.
bool isCut(const AVPacket& packet, const AVInputFormat& format) {
  return (packet.flags & AV_PKT_FLAG_CORRUPT) != 0 && std::string_view(format.name) != "mpegts";
}

/// More than lie between what is read and what is decoded.
constexpr std::size_t kMostBroken = 4096;

/// FFmpeg's demuxer of GXF ends a file with an unnamed error.
bool isEnd(int error, AVFormatContext& file) {
  return error == AVERROR_EOF ||
         (error == -1 && std::string_view(file.iformat->name) == "gxf" && avio_feof(file.pb) != 0);
}

/// Matroska stores the time of a frame in nanoseconds, so that 60000/1001 reads as 19001/317.
AVRational exactRate(AVRational rate) {
  constexpr double kRounding = 1e-6;
  for (const int thousands : {24, 30, 48, 60, 120}) {
    const AVRational exact = {thousands * 1000, 1001};
    if (std::abs(av_q2d(rate) / av_q2d(exact) - 1) < kRounding)
      return exact;
  }
  return rate;
}

/// FFmpeg writes this count into AVI files first, and pipes keep it.
void forgetPlaceholder(const AVFormatContext& file, AVStream& video) {
  constexpr std::int64_t kPlaceholder = 1 << 30;
  if (std::string_view(file.iformat->name) != "avi" || video.nb_frames < kPlaceholder)
    return;
  video.nb_frames = 0;
  video.duration = AV_NOPTS_VALUE;
}

}  // namespace

void MediaInput::open(const AVInputFormat* demuxer, Options& options) {
  AVFormatContext* context = avformat_alloc_context();
  if (context == nullptr)
    throw std::bad_alloc();
  context->interrupt_callback.callback = stopWhenInterrupted;
  if (sparse_)
    context->pb = sparse_->context();
  const std::string url = pictures_ ? sequenceUrl(path_) : inputUrl(path_);
  if (const int error = avformat_open_input(&context, url.c_str(), demuxer, options.get());
      error < 0) {
    throwIfInterrupted();
    throw Failure(ExitCode::kInput, "not a media file that can be read", path_,
                  explained(error) + "; check it with ffprobe");
  }
  file_.reset(context);
  if (const char* const unknown = options.unused())
    throw Failure(ExitCode::kUsage, "this kind of input tells that itself", path_,
                  std::string("leave out the option for its ") + unknown);
}

const AVInputFormat* MediaInput::findPictures(Options& options) {
  pictures_ = media::findPictures(path_, shape_.startNumber);
  if (pictures_->count == 0)
    throw Failure(ExitCode::kInput, "there is no such picture",
                  shape_.startNumber ? pictureName(path_, *shape_.startNumber) : path_,
                  "check the name and --start-number");
  header_ = readDPX(pictureName(path_, pictures_->first));
  pictures_->rate = shape_.rate.num > 0 ? shape_.rate : header_.rate;
  return sequenceDemuxer(*pictures_, pictures_->rate, options);
}

void MediaInput::describePictures() {
  // FFmpeg's count leaps over gaps.
  video().nb_frames = video().duration = pictures_->count;
  file_->duration = AV_NOPTS_VALUE;
  if (header_.timecode)
    av_dict_set(&video().metadata, "timecode", header_.timecode->c_str(), 0);
}

MediaInput::MediaInput(const std::string& path, const InputShape& shape, Reading reading)
    : path_(path), shape_(shape) {
  const bool isSequence = shape.format.empty() && shape.layout.empty() && isSequenceName(path);
  if (!isSequence)
    checkIsFile(path);
  if (reading == Reading::kSparse && !isSequence && isRegularFile(path))
    sparse_ = std::make_unique<SparseFile>(path);
  Options options;
  const AVInputFormat* const demuxer =
      isSequence ? findPictures(options) : demuxerFor(shape, path, options);
  open(demuxer, options);
  if (const int error = avformat_find_stream_info(file_.get(), nullptr); error < 0) {
    throwIfInterrupted();
    throw Failure(ExitCode::kInput, "the file's streams can't be read", path,
                  explained(error) + "; check it with ffprobe");
  }
  videoIndex_ = findVideo(*file_);
  if (videoIndex_ < 0)
    throw Failure(ExitCode::kInput, "no video in the file", path, "give a file with video");
  const AVCodecParameters& codec = *video().codecpar;
  if (codec.width <= 0 || codec.height <= 0)
    throw Failure(ExitCode::kInput, "the video has no frame size", path, "check it with ffprobe");
  if (isSequence)
    describePictures();
  forgetPlaceholder(*file_, video());
  promised_.emplace(*file_, video(), frameRate());
  joined_.emplace(*file_, videoIndex_);
  known_ = file_->nb_streams;
}

MediaInput MediaInput::again() const {
  MediaInput other(path_, shape_);
  other.damage_.setAction(damage_.action());
  other.start_ = start_;
  return other;
}

const VideoStart& MediaInput::start() {
  if (!start_)
    start_ = findVideoStart(*this);
  return *start_;
}

void MediaInput::readOnly(const AVStream& stream) {
  only_ = stream.index;
  // Whether the clock jumps shows in all streams.
  for (unsigned i = 0; i < file_->nb_streams && !joined_->watches(); ++i)
    file_->streams[i]->discard = file_->streams[i] == &stream ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
  if (&stream != &video())
    promised_.reset();
}

void MediaInput::startAt(const StartPoint& start) {
  toSkip_ = start.skipped;
  if (!start.time)
    return;
  returned_.clear();
  const int error = av_seek_frame(file_.get(), videoIndex_, *start.time, AVSEEK_FLAG_BACKWARD);
  throwIfInterrupted();
  if (error < 0)
    throw Failure(ExitCode::kInput, "the file can't be read from there", path_,
                  explained(error) + "; check it with ffprobe");
  nextPicture_ = *start.time;
}

AVRational MediaInput::frameRate() {
  const AVRational rate = av_guess_frame_rate(file_.get(), &video(), nullptr);
  return rate.num > 0 && rate.den > 0 ? exactRate(rate) : AVRational{25, 1};
}

bool MediaInput::interlaced() {
  const AVFieldOrder order = video().codecpar->field_order;
  return order != AV_FIELD_UNKNOWN && order != AV_FIELD_PROGRESSIVE;
}

std::int64_t MediaInput::frameCount() {
  if (video().nb_frames > 0)
    return video().nb_frames;
  const AVRational frameTime = av_inv_q(frameRate());
  if (video().duration > 0)
    return av_rescale_q(video().duration, video().time_base, frameTime);
  if (file_->duration > 0)
    return av_rescale_q(file_->duration, AVRational{1, AV_TIME_BASE}, frameTime);
  return 0;
}

std::uint32_t MediaInput::fileType() const {
  for (const Extension& extension : kExtensions) {
    if (av_match_ext(path_.c_str(), extension.suffix) != 0)
      return extension.type;
  }
  const std::string_view format = file_->iformat->name;
  const auto* const found = std::ranges::find_if(
      kFileTypes, [&](const FileTypeName& entry) { return format.starts_with(entry.format); });
  return found != std::end(kFileTypes) ? found->type : 0xFFU;
}

void MediaInput::noteAbsence() {
  if (!isAbsent_)
    std::fprintf(stderr, "nkdraw: note: %s: no video comes for long, it is not looked ahead\n",
                 path_.c_str());
  isAbsent_ = true;
}

void MediaInput::giveBack(std::vector<Packet> packets) {
  std::ranges::move(packets, std::inserter(returned_, returned_.begin()));
}

bool MediaInput::read(AVPacket& packet) {
  while (readNext(packet)) {
    if (toSkip_ == 0 || !isVideo(packet))
      return true;
    --toSkip_;
    av_packet_unref(&packet);
  }
  return false;
}

/// Why the file breaks off with this packet or error; empty if it does not. A packet of another
/// stream that is damaged before the end is no break.
std::string MediaInput::breakOf(int error, const AVPacket& packet) {
  if (isEnd(error, *file_) && !demuxerSawCut(*file_))
    return promised_ ? promised_->missing() : std::string();
  if (error < 0)
    return explained(error);
  const bool matters = isVideo(packet) || file_->pb == nullptr || avio_feof(file_->pb) != 0;
  return matters && isCut(packet, *file_->iformat) ? explained(AVERROR_EOF) : std::string();
}

void MediaInput::noteVideo(const AVPacket& packet) {
  if (promised_)
    promised_->note(packet);
  if ((packet.flags & AV_PKT_FLAG_CORRUPT) != 0)
    noteBroken(packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts);
}

void MediaInput::noteBroken(std::int64_t time) {
  if (time != AV_NOPTS_VALUE && std::string_view(file_->iformat->name) == "mpegts")
    broken_.push_back(time);
  if (broken_.size() > kMostBroken)
    broken_.pop_front();
}

bool MediaInput::lacksPackets(std::int64_t from, std::int64_t to) const {
  return std::ranges::any_of(broken_,
                             [&](std::int64_t time) { return time >= from && time <= to; });
}

/// FFmpeg's error, or what it returns otherwise.
int MediaInput::readFrame(AVPacket& packet) {
  if (sparse_)
    sparse_->beginPacket();
  return av_read_frame(file_.get(), &packet);
}

/// The same.
int MediaInput::readJoined(AVPacket& packet) {
  int error = readFrame(packet);
  const auto isWanted = [&] { return !only_ || packet.stream_index == *only_; };
  while (error >= 0 && (!joined_->join(packet) || !isWanted())) {
    av_packet_unref(&packet);
    error = readFrame(packet);
  }
  return error;
}

/// FFmpeg ends at an empty picture, as a renderer leaves when it fails. Here it is one that can't
/// be decoded, and the next ones follow.
int MediaInput::readPicture(AVPacket& packet) {
  constexpr int kBytes = 16;
  const int error = av_read_frame(file_.get(), &packet);
  if (error != AVERROR_EOF)
    return error;
  if (av_new_packet(&packet, kBytes) < 0)
    throw std::bad_alloc();
  std::fill_n(packet.data, kBytes, std::uint8_t{0});
  packet.stream_index = videoIndex_;
  packet.pts = packet.dts = nextPicture_ - 1;
  packet.duration = 1;
  // Behind the last one there is nowhere to go.
  static_cast<void>(av_seek_frame(file_.get(), videoIndex_, nextPicture_, AVSEEK_FLAG_BACKWARD));
  return 0;
}

bool MediaInput::readNext(AVPacket& packet) {
  throwIfInterrupted();
  if (!returned_.empty()) {
    av_packet_move_ref(&packet, returned_.front().get());
    returned_.pop_front();
    return true;
  }
  if (pictures_ && nextPicture_++ >= pictures_->count)
    return false;
  const int error = pictures_ ? readPicture(packet) : readJoined(packet);
  throwIfInterrupted();
  if (error >= 0 && isVideo(packet))
    noteVideo(packet);
  if (const std::string why = breakOf(error, packet); !why.empty()) {
    if (!damage_.goesOn())
      throw Failure(ExitCode::kInput, "the file breaks off", path_,
                    why + "; the input may be incomplete");
    damage_.noteEnd("the file breaks off, " + why);
  }
  // After a seek FFmpeg gives a cover picture the time of the place.
  if (error >= 0 && isCover(*file_->streams[packet.stream_index]))
    packet.pts = packet.dts = AV_NOPTS_VALUE;
  return error >= 0;
}

}  // namespace nkdraw::media
