#include "platform/bass_formats.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace bass {

namespace {

using byte_span = std::span<const std::uint8_t>;

bool has(byte_span bytes, std::size_t offset, std::string_view text) {
    return bytes.size() >= offset + text.size() &&
           std::memcmp(bytes.data() + offset, text.data(), text.size()) == 0;
}

bool is_digit(std::uint8_t c) {
    return c >= '0' && c <= '9';
}

// A MOD of 31 samples names its channels at 1080: "M.K.", "8CHN", "16CH".
bool is_named_mod(byte_span bytes) {
    constexpr std::size_t at = 1080;
    constexpr std::array<std::string_view, 9> names{"M.K.", "M!K!", "M&K!", "N.T.", "FLT4",
                                                    "FLT8", "CD81", "OKTA", "OCTA"};
    if (std::ranges::any_of(names, [&](std::string_view name) { return has(bytes, at, name); })) return true;
    if (bytes.size() < at + 4) return false;
    const byte_span name = bytes.subspan(at, 4);
    return (is_digit(name[0]) && has(name, 1, "CHN")) ||
           (is_digit(name[0]) && is_digit(name[1]) && (has(name, 2, "CH") || has(name, 2, "CN"))) ||
           (has(name, 0, "TDZ") && is_digit(name[3]));
}

// The first MODs had 15 samples and no name. Their header leaves little room: volumes to 64, 128 orders of
// patterns 0 to 63, then at least one pattern.
bool is_old_mod(byte_span bytes) {
    constexpr std::size_t samples = 15, title = 20, sample_size = 30;
    constexpr std::size_t order_count = title + samples * sample_size, orders = order_count + 2;
    constexpr std::size_t header = orders + 128, pattern = 1024;
    if (bytes.size() < header + pattern) return false;
    for (std::size_t i = 0; i < samples; i++) {
        const std::size_t tuning = title + i * sample_size + 24, volume = tuning + 1;
        if (bytes[tuning] > 15 || bytes[volume] > 64) return false;
    }
    if (bytes[order_count] < 1 || bytes[order_count] > 128) return false;
    return std::ranges::all_of(bytes.subspan(orders, 128), [](std::uint8_t order) { return order < 64; });
}

bool is_module(byte_span bytes) {
    return has(bytes, 0, "Extended Module: ") || has(bytes, 44, "SCRM") || has(bytes, 0, "IMPM") ||
           is_named_mod(bytes) || is_old_mod(bytes);
}

// The length in bytes of the MPEG audio layer 3 frame whose header stands at `offset`; 0 if none does.
std::size_t mp3_frame_length(byte_span bytes, std::size_t offset) {
    constexpr std::array<std::array<std::uint16_t, 16>, 2> kilobits{
        {{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0}, // MPEG 1
         {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0}}};   // MPEG 2, 2.5
    constexpr std::array<std::uint32_t, 4> rates{44100, 48000, 32000, 0};

    if (bytes.size() < 4 || offset > bytes.size() - 4) return 0;
    const byte_span header = bytes.subspan(offset, 4);
    const unsigned version = header[1] >> 3 & 3; // 0: 2.5, 2: 2, 3: 1
    const unsigned layer = header[1] >> 1 & 3;   // 1: layer 3
    if (header[0] != 0xff || (header[1] & 0xe0) != 0xe0 || version == 1 || layer != 1) return 0;
    const std::uint32_t rate = rates[header[2] >> 2 & 3] >> (version == 3 ? 0 : version == 2 ? 1 : 2);
    const std::uint32_t bit_rate = kilobits[version == 3 ? 0 : 1][header[2] >> 4] * 1000U;
    if (rate == 0 || bit_rate == 0) return 0;
    const std::uint32_t padding = header[2] >> 1 & 1;
    return (version == 3 ? 144U : 72U) * bit_rate / rate + padding;
}

// The bytes of the tag in front of the frames: its size is four groups of 7 bits, without its own header.
std::size_t id3_length(byte_span bytes) {
    if (bytes.size() < 10 || !has(bytes, 0, "ID3")) return 0;
    std::size_t size = 0;
    for (const std::uint8_t group : bytes.subspan(6, 4))
        size = size << 7 | (group & 0x7fU);
    const std::size_t footer = (bytes[5] & 0x10) != 0 ? 10 : 0;
    return std::min(10 + size + footer, bytes.size());
}

bool is_mp3(byte_span bytes) {
    constexpr std::size_t patience = 1024; // bytes between the tag and the first frame
    const std::size_t start = id3_length(bytes);
    const std::size_t end = std::min(bytes.size(), start + patience);
    for (std::size_t offset = start; offset < end; offset++) {
        const std::size_t length = mp3_frame_length(bytes, offset);
        if (length == 0 || length > bytes.size() - offset) continue;
        const std::size_t next = offset + length;
        if (next == bytes.size() || mp3_frame_length(bytes, next) != 0 || has(bytes, next, "TAG"))
            return true;
    }
    return false;
}

} // namespace

sound_format format_of(byte_span bytes) {
    if (has(bytes, 0, "OggS")) return sound_format::ogg;
    if (is_module(bytes)) return sound_format::module;
    if (is_mp3(bytes)) return sound_format::mp3;
    return sound_format::none;
}

} // namespace bass
