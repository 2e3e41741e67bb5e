// SPDX-License-Identifier: BSD-2-Clause
//
// Fonts: Fontconfig finds the file of a typeface, and FreeType supplies its outlines. Each font has
// its own FreeType library, so threads do not share one.
#include <algorithm>
#include <span>

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include "graphics_objects.h"

namespace {

using nkdraw::ObjectKind;
using nkdraw::Path;

constexpr int kDefaultEm = 16;
constexpr FT_Pos kPixel = 64;  // FreeType's unit is a 64th

template <auto release>
struct Release {
  template <class Handle>
  void operator()(Handle* handle) const {
    release(handle);
  }
};
using Configuration = std::unique_ptr<FcConfig, Release<FcConfigDestroy>>;
using Pattern = std::unique_ptr<FcPattern, Release<FcPatternDestroy>>;
using Library = std::unique_ptr<FT_LibraryRec_, Release<FT_Done_FreeType>>;
using Face = std::unique_ptr<FT_FaceRec_, Release<FT_Done_Face>>;

/// The installed fonts, looked up once and kept until the process ends. The program's own use of
/// Fontconfig is not affected.
FcConfig* installedFonts() {
  static const Configuration fonts(FcInitLoadConfigAndFonts());
  return fonts.get();
}

/// The pattern of the installed font that is nearest; null if there is none.
Pattern nearest(const char* family, int weight, bool italic) {
  FcConfig* const fonts = installedFonts();
  const Pattern wanted(FcPatternCreate());
  if (fonts == nullptr || !wanted)
    return nullptr;
  FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  FcPatternAddInteger(wanted.get(), FC_WEIGHT, FcWeightFromOpenType(weight));
  FcPatternAddInteger(wanted.get(), FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
  FcConfigSubstitute(fonts, wanted.get(), FcMatchPattern);
  FcDefaultSubstitute(wanted.get());
  FcResult result = FcResultNoMatch;
  return Pattern(FcFontMatch(fonts, wanted.get(), &result));
}

Face openFace(FT_Library library, FcPattern* found) {
  FcChar8* file = nullptr;
  if (found == nullptr || FcPatternGetString(found, FC_FILE, 0, &file) != FcResultMatch)
    return nullptr;
  int index = 0;
  FcPatternGetInteger(found, FC_INDEX, 0, &index);
  FT_Face face = nullptr;
  if (FT_New_Face(library, reinterpret_cast<const char*>(file), index, &face) != 0)
    return nullptr;
  Face owned(face);
  const bool served = FT_IS_SCALABLE(face) && FT_Select_Charmap(face, FT_ENCODING_UNICODE) == 0;
  return served ? std::move(owned) : nullptr;
}

/// Sets the size: an em square of -`height` pixels, or a line of `height`.
bool setHeight(FT_Face face, int height) {
  FT_Size_RequestRec request{};
  const bool ofLine = height > 0;
  const std::int64_t pixels = ofLine ? height : height == 0 ? kDefaultEm : -std::int64_t{height};
  constexpr std::int64_t kTallest = 0xFFFF;
  if (pixels > kTallest)
    return false;
  request.type = ofLine ? FT_SIZE_REQUEST_TYPE_REAL_DIM : FT_SIZE_REQUEST_TYPE_NOMINAL;
  request.height = pixels * kPixel;
  return FT_Request_Size(face, &request) == 0;
}

/// Code page 1252 is Latin-1 except for these.
constexpr char16_t kFrom128[] =
    u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D"
    u"\u008F"
    u"\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E"
    u"\u0178";

FT_ULong unicodeOf(char character) {
  const auto code = static_cast<std::uint8_t>(character);
  return code >= 0x80 && code < 0xA0 ? kFrom128[code - 0x80] : code;
}

/// Appends an outline's segments to a path, with the glyph's origin at (x, y) and y downwards.
class PathTaker {
 public:
  PathTaker(Path& path, double x, double y) : path_(path), x_(x), y_(y) {}

  void take(FT_Outline& outline) {
    static constexpr FT_Outline_Funcs kSegments = {
        [](const FT_Vector* to, void* self) { return of(self).move(*to); },
        [](const FT_Vector* to, void* self) { return of(self).line(*to); },
        [](const FT_Vector* control, const FT_Vector* to, void* self) {
          return of(self).conic(*control, *to);
        },
        [](const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* self) {
          return of(self).cubic(*first, *second, *to);
        },
        0,
        0};
    makeRoom(outline);
    FT_Outline_Decompose(&outline, &kSegments, this);
    endFigure();
  }

 private:
  /// Room for a curve to each point, and a move and a closing line for each contour: nothing may
  /// throw inside FreeType.
  void makeRoom(const FT_Outline& outline) {
    const std::size_t needed = path_.size() + 3 * static_cast<std::size_t>(outline.n_points) +
                               5 * static_cast<std::size_t>(outline.n_contours);
    if (needed > path_.capacity())
      path_.reserve(std::max(needed, 2 * path_.capacity()));
  }

  struct Place {
    double x, y;
  };

  static PathTaker& of(void* self) { return *static_cast<PathTaker*>(self); }

  [[nodiscard]] Place place(const FT_Vector& at) const {
    return {x_ + static_cast<double>(at.x) / kPixel, y_ - static_cast<double>(at.y) / kPixel};
  }

  void add(Place at, std::uint8_t type) { path_.push_back({at.x, at.y, type}); }

  void endFigure() {
    if (open_)
      path_.back().type |= PT_CLOSEFIGURE;
    open_ = false;
  }

  int move(const FT_Vector& to) {
    endFigure();
    add(place(to), PT_MOVETO);
    return 0;
  }

  int line(const FT_Vector& to) {
    add(place(to), PT_LINETO);
    open_ = true;
    return 0;
  }

  /// A conic curve equals a cubic one whose control points lie two thirds of the way to its own.
  int conic(const FT_Vector& control, const FT_Vector& to) {
    const Place from = {path_.back().x, path_.back().y}, end = place(to), middle = place(control);
    const auto towards = [&middle](const Place& at) {
      return Place{at.x + (middle.x - at.x) * 2.0 / 3.0, at.y + (middle.y - at.y) * 2.0 / 3.0};
    };
    return curve(towards(from), towards(end), end);
  }

  int cubic(const FT_Vector& first, const FT_Vector& second, const FT_Vector& to) {
    return curve(place(first), place(second), place(to));
  }

  int curve(const Place& first, const Place& second, const Place& end) {
    for (const Place& at : {first, second, end})
      add(at, PT_BEZIERTO);
    open_ = true;
    return 0;
  }

  Path& path_;
  double x_, y_;
  bool open_ = false;
};

/// A face at a size. Characters advance by whole pixels, without hinting or kerning.
class Font final : public nkGraphicsObject {
 public:
  Font(Library library, Face face)
      : nkGraphicsObject(ObjectKind::kFont), library_(std::move(library)), face_(std::move(face)) {}

  [[nodiscard]] tagSIZE extent(std::span<const char> text) const {
    FT_Pos width = 0;
    for (const char character : text)
      width += load(character) ? advance() : 0;
    return {static_cast<std::int32_t>(width), static_cast<std::int32_t>(ascent() + descent())};
  }

  void outline(std::span<const char> text, double x, double y, Path& path) const {
    for (const char character : text) {
      if (!load(character))
        continue;
      PathTaker(path, x, y + static_cast<double>(ascent())).take(face_->glyph->outline);
      x += static_cast<double>(advance());
    }
  }

 private:
  /// Loads a character's glyph into the slot of the face.
  [[nodiscard]] bool load(char character) const {
    return FT_Load_Char(face_.get(), unicodeOf(character),
                        FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) == 0 &&
           face_->glyph->format == FT_GLYPH_FORMAT_OUTLINE;
  }

  // In pixels.
  [[nodiscard]] FT_Pos advance() const { return (face_->glyph->advance.x + kPixel / 2) / kPixel; }
  [[nodiscard]] FT_Pos ascent() const {
    return (face_->size->metrics.ascender + kPixel - 1) / kPixel;
  }
  [[nodiscard]] FT_Pos descent() const {
    return (-face_->size->metrics.descender + kPixel - 1) / kPixel;
  }

  Library library_;
  Face face_;
};

std::unique_ptr<Font> makeFont(const char* family, int height, int weight, bool italic) {
  FT_Library library = nullptr;
  if (FT_Init_FreeType(&library) != 0)
    return nullptr;
  Library owned(library);
  Face face = openFace(library, nearest(family, weight, italic).get());
  if (!face || !setHeight(face.get(), height))
    return nullptr;
  return std::make_unique<Font>(std::move(owned), std::move(face));
}

/// The selected font and the characters to set in it, if there are both.
const Font* fontFor(const nkDeviceContext* context, const char* text, int count) {
  return text != nullptr && count >= 0 ? nkdraw::selectedAs<const Font>(context, ObjectKind::kFont)
                                       : nullptr;
}

}  // namespace

nkGraphicsObject* CreateFontA(int height, int /*width*/, int /*escapement*/, int /*orientation*/,
                              int weight, std::uint32_t italic, std::uint32_t /*underline*/,
                              std::uint32_t /*strikeOut*/, std::uint32_t /*characterSet*/,
                              std::uint32_t /*outputPrecision*/, std::uint32_t /*clipPrecision*/,
                              std::uint32_t /*quality*/, std::uint32_t /*pitchAndFamily*/,
                              const char* face) {
  if (face == nullptr)
    return nullptr;
  return nkdraw::unlessOutOfMemory(static_cast<nkGraphicsObject*>(nullptr), [=] {
    return makeFont(face, height, weight, italic != 0).release();
  });
}

int GetTextExtentPoint32A(nkDeviceContext* context, const char* text, int count, tagSIZE* size) {
  const Font* const font = fontFor(context, text, count);
  if (font == nullptr || size == nullptr)
    return 0;
  *size = font->extent({text, static_cast<std::size_t>(count)});
  return 1;
}

int TextOutA(nkDeviceContext* context, int x, int y, const char* text, int count) {
  const Font* const font = fontFor(context, text, count);
  if (font == nullptr || !context->recording)
    return 0;
  return nkdraw::unlessOutOfMemory(0, [=] {
    font->outline({text, static_cast<std::size_t>(count)}, x, y, context->path);
    return 1;
  });
}
