// SPDX-License-Identifier: BSD-2-Clause
#include "media/own_tags.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr std::string_view kFormats[] = {"mov", "mp4", "ipod"};

/// Those that FFmpeg stores by codes, in QuickTime files.
constexpr std::string_view kCoded[] = {
    "album", "artist", "author",   "comment", "composer",    "copyright", "date",     "genre",
    "make",  "model",  "timecode", "title",   "description", "location",  "synopsis", "encoder"};

/// Those that describe the file itself, which the writer sets.
constexpr const char* kOfTheFile[] = {"major_brand", "minor_version", "compatible_brands",
                                      "encoder"};
constexpr std::string_view kCreation = "creation_time";  // which has a place of its own

template <class Names>
bool isOneOf(const Names& names, std::string_view name) {
  return std::ranges::find(names, name) != std::end(names);
}

bool isOwn(std::string_view name) {
  const std::string_view language = "-eng";
  if (name.ends_with(language))
    name.remove_suffix(language.size());
  return !isOneOf(kCoded, name) && !isOneOf(kOfTheFile, name) && name != kCreation;
}

bool hasCover(const AVFormatContext& file) {
  for (unsigned i = 0; i < file.nb_streams; ++i) {
    if ((file.streams[i]->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0)
      return true;
  }
  return false;
}

}  // namespace

void keepOwnTags(MediaOutput& output) {
  AVDictionary*& tags = output.file().metadata;
  const AVDictionaryEntry* tag = nullptr;
  do
    tag = av_dict_get(tags, "", tag, AV_DICT_IGNORE_SUFFIX);
  while (tag != nullptr && !isOwn(tag->key));
  // A cover picture can only be stored beside coded tags.
  if (tag == nullptr || !isOneOf(kFormats, output.format().name) || hasCover(output.file()))
    return;
  for (const char* const each : kOfTheFile)
    av_dict_set(&tags, each, nullptr, 0);
  output.setOption("movflags", "use_metadata_tags");
}

}  // namespace nkdraw::media
