// SPDX-License-Identifier: BSD-2-Clause
//
// The surface of raw mosaics.
#include <nkdraw/formats/bayer.h>

#include <nkdraw/formats/bayer_plotter.h>
#include <nkdraw/formats/rgb_reads.h>
#include <nkdraw/surface/truncate.h>

#include <algorithm>
#include <iterator>

namespace {

using nkdraw::bayer::orderIndex;

/// A place of a cell.
struct Place {
  std::uint8_t row, column;
};

/// The places that a read takes R, G and B from: of the two green ones that of the first row.
struct ReadPlaces {
  Place r, g, b;
};

constexpr ReadPlaces kReads[] = {
    {{1, 1}, {0, 1}, {0, 0}},  // B G, G R
    {{0, 0}, {0, 1}, {1, 1}},  // R G, G B
    {{1, 0}, {0, 0}, {0, 1}},  // G B, R G
    {{0, 1}, {0, 0}, {1, 0}},  // G R, B G
};

/// The upper eight bits of a sample of the cell that begins at `cell`.
int sampleAt(const std::uint8_t* cell, std::uint32_t pitch, Place place) {
  const std::uint8_t* const triple = cell + (place.row == 0 ? 0 : pitch);
  return place.column == 0 ? triple[0] : (triple[1] & 0x0F) << 4 | triple[2] >> 4;
}

/// The byte of the triple with the place's number: of the second sample only its upper bits.
double luma(const std::uint8_t* cell, std::uint32_t pitch, Place place) {
  return cell[(place.row == 0 ? 0 : pitch) + place.column] / 255.0;
}

const std::uint8_t* bytes(const void* pixel) {
  return static_cast<const std::uint8_t*>(pixel);
}

}  // namespace

CDrawBayer::CDrawBayer(pixelType type) : NKDraw(type) {
  pixelKind = type;
}

CDrawBayer& CDrawBayer::operator=(CDrawBayer& other) {
  NKDraw::operator=(other);
  std::copy(std::begin(other.foregroundRGBA), std::end(other.foregroundRGBA), foregroundRGBA);
  std::copy(std::begin(other.backgroundRGBA), std::end(other.backgroundRGBA), backgroundRGBA);
  return *this;
}

int CDrawBayer::GetPitch() {
  return static_cast<int>(width * 3 / 2);
}

void* CDrawBayer::GetPixel(int x, int y) {
  return nkdraw::bayer::address(canvas, pitch, x, y);
}

std::uint32_t CDrawBayer::PutPixel(int x, int y, bool foreground) {
  nkdraw::Plotter<CDrawBayer>(*this, foreground).write(GetPixel(x, y), x, y);
  return 0;
}

std::uint32_t CDrawBayer::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
  const std::uint8_t* const cell = bytes(GetPixel(x & ~1, y & ~1));
  const ReadPlaces& places = kReads[orderIndex(pixelKind)];
  r = sampleAt(cell, pitch, places.r) / 255.0;
  g = sampleAt(cell, pitch, places.g) / 255.0;
  b = sampleAt(cell, pitch, places.b) / 255.0;
  a = 1.0;
  return 0;
}

std::uint32_t CDrawBayer::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
  return nkdraw::readHsv(*this, x, y, h, s, v, a);
}

// y is not brought to the cell's first row here.
double CDrawBayer::GetLuma(int x, int y) {
  const std::uint8_t* const cell = bytes(GetPixel(x & ~1, y));
  const ReadPlaces& places = kReads[orderIndex(pixelKind)];
  return (luma(cell, pitch, places.r) + luma(cell, pitch, places.g) + luma(cell, pitch, places.b)) /
         3.0;
}

std::uint32_t CDrawBayer::SetColorRGBA(double r, double g, double b, double a, bool foreground) {
  std::uint8_t* const colour = foreground ? foregroundRGBA : backgroundRGBA;
  const double channels[] = {r, g, b, a};
  std::transform(std::begin(channels), std::end(channels), colour,
                 [](double channel) { return nkdraw::truncateToLow8(channel * 255.0); });
  return 0;
}
