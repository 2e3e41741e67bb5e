// SPDX-License-Identifier: BSD-2-Clause
//
// Reads a font sheet: a 24-bit BMP file, whose rows go into the process-wide font data in file
// order.
#include <nkdraw/draw/draw.h>

#include <nkdraw/draw/open_file.h>
#include <nkdraw/text/sheet_data.h>

#include <algorithm>
#include <array>
#include <cstring>

#include <fcntl.h>

namespace {

constexpr std::int32_t kRefused = -1;

// Offsets in the file. Of multi-byte fields only the low byte is tested.
constexpr std::size_t kMark = 0;
constexpr std::size_t kPixelOffset = 10;
constexpr std::size_t kHeaderSize = 14;
constexpr std::size_t kHeader = 18;
constexpr std::size_t kBytesRead = 50;

using nkdraw::SheetHeader;

/// The header of a file: the bytes read from it, followed by zeros, because more is copied than is
/// read.
class FileHead {
 public:
  explicit FileHead(int file) { nkdraw::readAt(file, 0, std::span(bytes_).first(kBytesRead)); }

  [[nodiscard]] bool isBitmap() const {
    return bytes_[kMark] == 'B' && bytes_[kMark + 1] == 'M' && bytes_[kHeaderSize] == 40;
  }
  /// Deliberate: callers rely on it. An offset above 255 is cut to its low byte.
  [[nodiscard]] std::uint8_t pixelOffset() const { return bytes_[kPixelOffset]; }

  void copyHeader() const {
    std::memcpy(nkdraw::fontData.fontSheetHeader, bytes_.data() + kHeader, SheetHeader::kBytes);
  }

 private:
  std::array<std::uint8_t, kHeader + SheetHeader::kBytes> bytes_{};
};

/// Whether the copied header is a sheet's. Deliberate: callers rely on what is accepted. Of the
/// bits per pixel only the low byte is compared.
bool isPlain24Bit() {
  return SheetHeader::word(SheetHeader::kCompression) == 0 &&
         nkdraw::fontData.fontSheetHeader[SheetHeader::kBitCount] == 24;
}

/// The bytes of pixels that the header asks for. Deliberate: callers rely on it. If the header
/// gives no size, the computed one leaves out row padding.
std::uint32_t sizeOfPixels() {
  if (SheetHeader::word(SheetHeader::kSizeImage) == 0)
    SheetHeader::setWord(SheetHeader::kSizeImage, SheetHeader::word(SheetHeader::kWidth) *
                                                      SheetHeader::word(SheetHeader::kHeight) * 3);
  return SheetHeader::word(SheetHeader::kSizeImage);
}

}  // namespace

std::int32_t NKDraw::ExtractBMPData(const char* path) {
  const auto file = nkdraw::takeOver(open(path, O_RDWR | O_CLOEXEC));
  if (file == nullptr)
    return kRefused;
  refusedFile = file;
  const FileHead head(file->descriptor);
  if (!head.isBitmap())
    return kRefused;
  head.copyHeader();
  if (!isPlain24Bit())
    return kRefused;
  refusedFile.reset();
  const std::size_t size = std::min<std::size_t>(sizeOfPixels(), nkdraw::fontBlock().size());
  const bool read =
      nkdraw::readAt(file->descriptor, head.pixelOffset(), nkdraw::fontBlock().first(size))
          .has_value();
  const bool closed = file->close();
  return read && closed ? 0 : kRefused;
}
