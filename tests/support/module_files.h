// Whole modules in memory, made by hand: one pattern, in its first row one note of one square-wave sample.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace module_files {

// Appends little-endian numbers, big-endian 16-bit words where `be` says so, and padded texts.
struct writer {
    std::vector<std::uint8_t> bytes;

    void u8(std::size_t value) { bytes.push_back(static_cast<std::uint8_t>(value)); }
    void u16(std::size_t value) { u8(value), u8(value >> 8); }
    void u32(std::size_t value) { u16(value), u16(value >> 16); }
    void u16_be(std::size_t value) { u8(value >> 8), u8(value); }
    void zeros(std::size_t count, std::uint8_t value = 0) { bytes.insert(bytes.end(), count, value); }
    void text(std::string_view name, std::size_t size) {
        for (std::size_t i = 0; i < size; i++)
            u8(i < name.size() ? static_cast<std::uint8_t>(name[i]) : 0U);
    }
    void pad_to(std::size_t multiple) {
        while (bytes.size() % multiple != 0)
            u8(0);
    }
    // 32 signed bytes, up and down; `delta`: as differences.
    void square_wave(bool delta = false) {
        int before = 0;
        for (int i = 0; i < 32; i++) {
            const int value = i < 16 ? 96 : -96;
            u8(static_cast<std::size_t>(delta ? value - before : value));
            before = value;
        }
    }
};

// `samples` 31 with a signature, or 15 without one.
inline std::vector<std::uint8_t> mod(int samples = 31) {
    writer out;
    out.text("square", 20);
    for (int i = 0; i < samples; i++) {
        const bool used = i == 0;
        out.text("", 22);
        out.u16_be(used ? 16 : 0);                // length in words
        out.u8(0), out.u8(used ? 64 : 0);         // tuning, volume
        out.u16_be(0), out.u16_be(used ? 16 : 1); // loop: start, length
    }
    out.u8(1), out.u8(127), out.zeros(128); // one order, pattern 0
    if (samples == 31) out.text("M.K.", 4);
    out.u8(428 >> 8), out.u8(428 & 255), out.u8(1 << 4), out.u8(0); // period of C-2, sample 1
    out.zeros(64 * 4 * 4 - 4);
    out.square_wave();
    return out.bytes;
}

inline std::vector<std::uint8_t> s3m() {
    constexpr std::size_t instrument = 0x80, pattern = 0xe0, sample = 0x180;
    writer out;
    out.text("square", 28), out.u8(0x1a), out.u8(16), out.u16(0);
    out.u16(2), out.u16(1), out.u16(1);      // orders, instruments, patterns
    out.u16(0), out.u16(0x1320), out.u16(1); // flags, tracker, signed samples
    out.text("SCRM", 4);
    out.u8(64), out.u8(6), out.u8(125), out.u8(0xb0); // volume, speed, tempo, stereo
    out.u8(0), out.u8(0), out.zeros(10);
    out.u8(0), out.zeros(31, 255); // one channel
    out.u8(0), out.u8(255);        // orders
    out.u16(instrument / 16), out.u16(pattern / 16);
    out.zeros(instrument - out.bytes.size());

    out.u8(1), out.text("", 12);
    out.u8(0), out.u16(sample / 16);
    out.u32(32), out.u32(0), out.u32(32); // length, loop
    out.u8(64), out.u8(0), out.u8(0), out.u8(1);
    out.u32(8363), out.zeros(12), out.text("square", 28), out.text("SCRS", 4);
    out.zeros(pattern - out.bytes.size());

    out.u16(2 + 3 + 64);
    out.u8(0x20), out.u8(0x40), out.u8(1); // channel 0: note C-4, instrument 1
    out.zeros(64);
    out.zeros(sample - out.bytes.size());
    out.square_wave();
    return out.bytes;
}

// `rows` of the pattern, each 0.12 s; without `looped` the note is over after 4 ms.
inline std::vector<std::uint8_t> xm(std::size_t rows = 64, bool looped = true) {
    writer out;
    out.text("Extended Module: ", 17), out.text("square", 20), out.u8(0x1a), out.text("", 20);
    out.u16(0x0104), out.u32(276);
    out.u16(1), out.u16(0), out.u16(2), out.u16(1),
        out.u16(1);                                       // orders, restart, channels, patterns, instruments
    out.u16(1), out.u16(6), out.u16(125), out.zeros(256); // linear, speed, tempo, order table

    out.u32(9), out.u8(0), out.u16(rows), out.u16(3 + rows * 2 - 1);
    out.u8(0x83), out.u8(49), out.u8(1); // note C-4, instrument 1
    out.zeros(rows * 2 - 1, 0x80);

    out.u32(263), out.text("square", 22), out.u8(0), out.u16(1);
    out.u32(40), out.zeros(263 - 33);
    out.u32(32), out.u32(0), out.u32(looped ? 32 : 0);
    out.u8(64), out.u8(0), out.u8(looped ? 1 : 0), out.u8(128), out.u8(0), out.u8(0), out.text("", 22);
    out.square_wave(true);
    return out.bytes;
}

inline std::vector<std::uint8_t> it() {
    constexpr std::size_t sample = 0xd0, pattern = 0x120, data = 0x180;
    writer out;
    out.text("IMPM", 4), out.text("square", 26), out.u16(0x1004);
    out.u16(2), out.u16(0), out.u16(1), out.u16(1); // orders, instruments, samples, patterns
    out.u16(0x200), out.u16(0x200), out.u16(9), out.u16(0);
    out.u8(128), out.u8(48), out.u8(6), out.u8(125), out.u8(128), out.u8(0);
    out.u16(0), out.u32(0), out.u32(0);
    out.zeros(64, 32), out.zeros(64, 64); // middle, full volume
    out.u8(0), out.u8(255);
    out.u32(sample), out.u32(pattern);
    out.zeros(sample - out.bytes.size());

    out.text("IMPS", 4), out.text("", 13);
    out.u8(64), out.u8(0x11), out.u8(64), out.text("square", 26), out.u8(1), out.u8(32);
    out.u32(32), out.u32(0), out.u32(32), out.u32(8363); // length, loop, rate
    out.u32(0), out.u32(0), out.u32(data), out.u32(0);
    out.zeros(pattern - out.bytes.size());

    out.u16(4 + 64), out.u16(64), out.u32(0);
    out.u8(0x81), out.u8(3), out.u8(60), out.u8(1); // channel 0: note C-5, sample 1
    out.zeros(64);
    out.zeros(data - out.bytes.size());
    out.square_wave();
    return out.bytes;
}

} // namespace module_files
