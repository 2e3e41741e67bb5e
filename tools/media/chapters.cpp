// SPDX-License-Identifier: BSD-2-Clause
#include "media/chapters.h"

#include "media/container_codecs.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <span>
#include <string_view>

namespace nkdraw::media {
namespace {

/// FFmpeg's muxers that write chapters, beside QuickTime and its relatives.
constexpr std::string_view kHolding[] = {"matroska", "webm", "nut", "asf"};

/// The first and the last moment of a chapter.
struct Span {
  std::int64_t start, end;
};

/// What the window holds of a chapter, in the chapter's time base; empty for one outside.
Span heldOf(const AVChapter& chapter, const TimeWindow& window) {
  if (window.isWhole())
    return {chapter.start, chapter.end};
  const auto ticks = [&](std::int64_t time) {
    return av_rescale_q(time, kMicroseconds, chapter.time_base);
  };
  return {std::max(chapter.start, ticks(window.first)), std::min(chapter.end, ticks(window.end))};
}

bool isHeld(const AVChapter& chapter, const TimeWindow& window) {
  const Span span = heldOf(chapter, window);
  return window.isWhole() || span.start < span.end;
}

void copyChapter(const AVChapter& source, const TimeWindow& window, AVFormatContext& to) {
  auto* const chapter = static_cast<AVChapter*>(av_mallocz(sizeof(AVChapter)));
  if (chapter == nullptr)
    throw std::bad_alloc();
  const Span span = heldOf(source, window);
  const std::int64_t shift = av_rescale_q(window.shift, kMicroseconds, source.time_base);
  chapter->id = source.id;
  chapter->time_base = source.time_base;
  chapter->start = std::max<std::int64_t>(span.start - shift, 0);
  chapter->end = span.end - shift;
  av_dict_copy(&chapter->metadata, source.metadata, 0);
  to.chapters[to.nb_chapters++] = chapter;
}

std::span<AVChapter* const> chaptersOf(const AVFormatContext& file) {
  return {file.chapters, file.nb_chapters};
}

}  // namespace

bool holdsChapters(const AVOutputFormat& format) {
  return isQuickTimeFamily(format) ||
         std::ranges::find(kHolding, format.name) != std::end(kHolding);
}

void copyChapters(const AVFormatContext& from, const TimeWindow& window, AVFormatContext& to) {
  if (from.nb_chapters == 0 || !holdsChapters(*to.oformat))
    return;
  to.chapters = static_cast<AVChapter**>(av_calloc(from.nb_chapters, sizeof(AVChapter*)));
  if (to.chapters == nullptr)
    throw std::bad_alloc();
  for (const AVChapter* const chapter : chaptersOf(from)) {
    if (isHeld(*chapter, window))
      copyChapter(*chapter, window, to);
  }
}

std::optional<std::string> lostChapters(const AVFormatContext& from, const TimeWindow& window,
                                        const AVOutputFormat& format) {
  const auto lost = std::ranges::count_if(
      chaptersOf(from), [&](const AVChapter* chapter) { return isHeld(*chapter, window); });
  if (lost == 0 || holdsChapters(format))
    return std::nullopt;
  return std::to_string(lost) + (lost == 1 ? " chapter is" : " chapters are") +
         " left out: " + format.name + " files hold none";
}

}  // namespace nkdraw::media
