// SPDX-License-Identifier: BSD-2-Clause
//
// Access to the overlay's settings for the tables.
#pragma once

#include <nkdraw/overlay/overlay.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

struct CNkOverlay::Access {
  /// A number among the settings, or none.
  class Field {
   public:
    constexpr Field() = default;
    constexpr Field(std::uint32_t CNkOverlay::*field) : unsigned_(field) {}
    constexpr Field(std::int32_t CNkOverlay::*field) : signed_(field) {}

    constexpr explicit operator bool() const { return unsigned_ != nullptr || signed_ != nullptr; }
    [[nodiscard]] std::uint32_t get(const CNkOverlay& overlay) const {
      return unsigned_ != nullptr ? overlay.*unsigned_
                                  : static_cast<std::uint32_t>(overlay.*signed_);
    }
    void set(CNkOverlay& overlay, std::uint32_t value) const {
      if (unsigned_ != nullptr)
        overlay.*unsigned_ = value;
      else
        overlay.*signed_ = static_cast<std::int32_t>(value);
    }

   private:
    std::uint32_t CNkOverlay::*unsigned_ = nullptr;
    std::int32_t CNkOverlay::*signed_ = nullptr;
  };

  /// Bytes that the configuration store may write into a custom text.
  static constexpr std::size_t kStoredText = 128;

  /// A slot gets a text of its own; null when there is no memory.
  static void setText(CNkOverlay& overlay, int slot, const char* text, std::size_t length);
};
