// SPDX-License-Identifier: BSD-2-Clause
//
// The surface of raw mosaics.
#include <nkdraw/formats/bayer.h>

#include <nkdraw/formats/bayer_plotter.h>
#include <nkdraw/formats/rgb_reads.h>
#include <nkdraw/surface/layout_facts.h>
#include <nkdraw/surface/truncate.h>

#include <algorithm>
#include <iterator>

namespace {

using nkdraw::Channel;
using nkdraw::kFactsOf;
using nkdraw::LayoutFacts;
using nkdraw::bayer::orderIndex;

/// A position in a cell.
struct Place {
  std::uint8_t row, column;
};

/// The positions that a read takes R, G and B from; of the two greens, the one in the first row.
struct ReadPlaces {
  Place r, g, b;
};

constexpr ReadPlaces readPlacesOf(const LayoutFacts& facts) {
  const auto place = [&facts](Channel channel) {
    const auto i = static_cast<std::uint8_t>(sampleOf(facts, channel));
    return Place{static_cast<std::uint8_t>(i / 2), static_cast<std::uint8_t>(i % 2)};
  };
  return {place(Channel::kR), place(Channel::kG), place(Channel::kB)};
}

/// By mosaic order.
constexpr ReadPlaces kReads[] = {
    readPlacesOf(kFactsOf<ptBayerBGGR>), readPlacesOf(kFactsOf<ptBayerRGGB>),
    readPlacesOf(kFactsOf<ptBayerGBRG>), readPlacesOf(kFactsOf<ptBayerGRBG>)};

/// The upper eight bits of a sample of the cell that begins at `cell`.
int sampleAt(const std::uint8_t* cell, std::uint32_t pitch, Place place) {
  const std::uint8_t* const triple = cell + (place.row == 0 ? 0 : pitch);
  return place.column == 0 ? triple[0] : (triple[1] & 0x0F) << 4 | triple[2] >> 4;
}

/// The byte of the triple for a position; of the second sample only its upper bits.
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
  return static_cast<int>(nkdraw::packedPitch(nkdraw::bayer::kFacts, width));
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

// Here y is not rounded to the cell's first row.
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
