// Surfaces for tests: noise inside, guard words around, freed at the end of the test.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "morvane/gtex/gtex.h"

// A surface in the middle of a larger block. `intact` tells whether anything wrote past its ends.
class guarded_surface {
  public:
    guarded_surface(std::int32_t width, std::int32_t height)
        : block_(static_cast<std::size_t>(width * height) + 2 * margin, guard),
          surface_(gtex_wrap(block_.data() + margin, width, height)) {}
    guarded_surface(std::int32_t width, std::int32_t height, std::uint32_t seed)
        : guarded_surface(width, height) {
        std::mt19937 random(seed);
        for (std::int32_t i = 0; i < surface_.count; ++i)
            surface_.pixels[i] =
                random() % 8 == 0 ? 0 : static_cast<std::uint32_t>(random()); // keys among them
    }
    guarded_surface(const guarded_surface&) = delete;
    guarded_surface& operator=(const guarded_surface&) = delete;

    operator gtex() const { return surface_; }
    std::uint32_t& operator[](std::int32_t i) { return surface_.pixels[i]; }
    std::uint32_t& at(std::int32_t x, std::int32_t y) { return surface_.pixels[y * surface_.width + x]; }
    std::int32_t count() const { return surface_.count; }
    void fill(std::uint32_t colour) { std::fill_n(surface_.pixels, surface_.count, colour); }

    std::vector<std::uint32_t> copy() const { return {surface_.pixels, surface_.pixels + surface_.count}; }

    bool intact() const {
        for (std::size_t i = 0; i < margin; ++i)
            if (block_[i] != guard || block_[block_.size() - 1 - i] != guard) return false;
        return true;
    }

  private:
    static constexpr std::size_t margin = 64;
    static constexpr std::uint32_t guard = 0xdeadbeef;
    std::vector<std::uint32_t> block_;
    gtex surface_;
};

// Byte `k` of a pixel word.
inline std::int32_t byte_of(std::uint32_t word, int k) {
    return static_cast<std::int32_t>((word >> (8 * k)) & 255);
}

inline std::uint32_t word_of(std::int32_t top, std::int32_t red, std::int32_t green, std::int32_t blue) {
    return static_cast<std::uint32_t>(top) << 24 | static_cast<std::uint32_t>(red) << 16 |
           static_cast<std::uint32_t>(green) << 8 | static_cast<std::uint32_t>(blue);
}

// Compares a surface with the expected words and names the first pixel that differs.
inline void expect_pixels(const guarded_surface& surface, const std::vector<std::uint32_t>& expected) {
    const std::vector<std::uint32_t> seen = surface.copy();
    ASSERT_EQ(seen.size(), expected.size());
    for (std::size_t i = 0; i < seen.size(); ++i)
        ASSERT_EQ(seen[i], expected[i])
            << "pixel " << i << " is 0x" << std::hex << seen[i] << ", not 0x" << expected[i];
    EXPECT_TRUE(surface.intact());
}
