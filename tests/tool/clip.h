// SPDX-License-Identifier: BSD-2-Clause
//
// Clips as FFmpeg reads them.
#pragma once

#include <media/libav.h>

#include <cstdint>
#include <string>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

/// Frames of one pixel format, each packed without padding, plane after plane.
struct Clip {
  AVPixelFormat format = AV_PIX_FMT_NONE;
  int width = 0, height = 0;
  std::vector<Bytes> frames;
  std::string timecode;  // the tag of the video, a timecode track or the file

  [[nodiscard]] std::size_t rowBytes() const;
};

/// Decodes the video of a file; the test fails if that does not work.
Clip decode(const std::string& path);
/// The same, converted.
Clip decodeAs(const std::string& path, AVPixelFormat format);

/// The packets of one kind, their bytes and times in seconds.
struct RawPacket {
  Bytes bytes;
  double time = 0.0;
};
std::vector<RawPacket> packetsOf(const std::string& path, AVMediaType kind);

/// The name of the video's codec.
std::string codecOf(const std::string& path);

/// The shape of the pixels of each video stream, as the file tells it.
std::vector<AVRational> pixelShapesOf(const std::string& path);

/// How the video's fields lie, as the file tells it.
AVFieldOrder fieldOrderOf(const std::string& path);

/// How many cover pictures the file has.
int coversIn(const std::string& path);

/// Reads the text at (x, y), drawn with this magnification, by the glyph table: white on black.
std::string readText(const Clip& grey, std::size_t frame, int x, int y, int magnification,
                     std::size_t length);
