// SPDX-License-Identifier: BSD-2-Clause
//
// Copies of files in which one packet is changed.
#pragma once

#include <media/libav.h>

#include <cstdint>
#include <functional>
#include <string>

using Harm = std::function<void(AVPacket&)>;

/// Copies a file, with packet `number` of its first stream of `kind` changed.
void copyWith(const Harm& harm, const std::string& from, const std::string& to, AVMediaType kind,
              std::int64_t number);

/// Overwrites 200 bytes with noise, from that share of the packet on.
Harm noiseAt(double share);
