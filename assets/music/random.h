// The noise generator of the music: the same sequence for the same seed, everywhere.
#pragma once

#include <cstdint>

namespace assets::sound {

// Xorshift with 32 bits of state (Marsaglia, "Xorshift RNGs", 2003).
struct random_source {
    std::uint32_t state = 0x9E3779B9U;

    std::uint32_t next() {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return state;
    }
    // Uniform over [-1, 1).
    float bipolar() { return static_cast<float>(next() >> 8) * (2.0F / 16777216.0F) - 1.0F; }
    // Uniform over [0, 1).
    float unipolar() { return static_cast<float>(next() >> 8) * (1.0F / 16777216.0F); }
};

// A source whose first values differ for neighbouring seeds.
inline random_source seeded(std::uint32_t seed) {
    random_source source{seed * 2654435769U ^ 0x85EBCA6BU};
    if (source.state == 0) source.state = 1; // the one state that it can't leave
    for (int i = 0; i < 4; ++i)
        source.next();
    return source;
}

} // namespace assets::sound
