// Sounds for the tests, as plain files.
#pragma once

#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

#include "tests/support/temp_file.h"

// Writes a WAV of 16 bits, stereo, both channels alike, with value(i) from -1 to 1 for sample i, and gives
// its path.
inline std::string write_wave(const temp_folder& folder, const std::string& name, int rate, int samples,
                              const std::function<double(int)>& value) {
    std::vector<std::uint8_t> bytes;
    const auto text = [&](const char* letters) { bytes.insert(bytes.end(), letters, letters + 4); };
    const auto number = [&](std::int64_t n, int size) {
        for (int i = 0; i < size; ++i)
            bytes.push_back(static_cast<std::uint8_t>((n >> (8 * i)) & 255));
    };
    text("RIFF");
    number(36 + samples * 4, 4);
    text("WAVE");
    text("fmt ");
    number(16, 4);
    number(1, 2);
    number(2, 2);
    number(rate, 4);
    number(rate * 4, 4);
    number(4, 2);
    number(16, 2);
    text("data");
    number(samples * 4, 4);
    for (int i = 0; i < samples; ++i)
        for (int channel = 0; channel < 2; ++channel)
            number(std::lround(value(i) * 32767), 2);
    return folder.write(name, bytes);
}

inline constexpr double tone_hertz = 100;
inline constexpr double tone_level = 0.3535; // root mean square

// A tone of half the full height.
inline std::string write_tone(const temp_folder& folder, const std::string& name, int rate, double seconds) {
    return write_wave(folder, name, rate, static_cast<int>(std::lround(seconds * rate)),
                      [rate](int i) { return 0.5 * std::sin(2 * std::numbers::pi * tone_hertz * i / rate); });
}

// By how many seconds, at most half a wave, the tone in `sound` is off one that begins at `start`.
inline double tone_offset(const std::vector<float>& sound, int rate, double start) {
    double sine = 0, cosine = 0;
    for (auto i = static_cast<std::size_t>((start + 0.2) * rate);
         i < static_cast<std::size_t>((start + 0.8) * rate); ++i) {
        const double phase = 2 * std::numbers::pi * tone_hertz * (static_cast<double>(i) / rate - start);
        sine += static_cast<double>(sound[i]) * std::sin(phase);
        cosine += static_cast<double>(sound[i]) * std::cos(phase);
    }
    return std::abs(std::atan2(cosine, sine)) / (2 * std::numbers::pi * tone_hertz);
}
