// SPDX-License-Identifier: BSD-2-Clause
#include "cli/media_pieces.h"

#include "media/clip_facts.h"

namespace nkdraw::tool {
namespace {

Json optionsOf(const CodecChoice& choice) {
  Options options;
  readOptions(choice, options);
  Json named = Json::object();
  const AVDictionaryEntry* each = nullptr;
  while ((each = av_dict_get(*options.get(), "", each, AV_DICT_IGNORE_SUFFIX)) != nullptr)
    named[each->key] = each->value;
  return named;
}

}  // namespace

Piece ratePiece(AVRational rate) {
  return {"rate", {{"num", rate.num}, {"den", rate.den}}, rateText(rate)};
}

Piece formatPiece(MediaInput& input) {
  return {"format", input.file().iformat->name};
}

Piece codecPiece(MediaInput& input) {
  return {"codec", avcodec_get_name(input.video().codecpar->codec_id)};
}

Piece encoderPiece(const CodecChoice* choice, const std::string& words) {
  if (choice == nullptr)
    return {"codec", nullptr, words};
  return {"codec",
          {{"encoder", choice->codec->name},
           {"name", avcodec_get_name(choice->codec->id)},
           {"pixel_format", av_get_pix_fmt_name(choice->pixelFormat)},
           {"options", optionsOf(*choice)}},
          words};
}

void describeLayout(Description& to, const Layout& layout) {
  to.add(
      "layout", "/layout",
      {{"name", std::string(layout.name)}, ": ", {"description", std::string(layout.description)}});
}

}  // namespace nkdraw::tool
