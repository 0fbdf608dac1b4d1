#include "morvane/platform/sound/inner/bass_formats.h"

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
    const bool tagged = has(bytes, 0, "ID3") || has(bytes, 0, "APETAGEX"); // and so no title of an old MOD
    return has(bytes, 0, "Extended Module: ") || has(bytes, 44, "SCRM") || has(bytes, 0, "IMPM") ||
           is_named_mod(bytes) || (!tagged && is_old_mod(bytes));
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

// Whether two frame headers can stand in one stream: the same version, layer, sampling rate, and number of
// channels.
bool agree(byte_span bytes, std::size_t one, std::size_t other) {
    const auto is_mono = [&](std::size_t header) { return bytes[header + 3] >> 6 == 3; };
    return ((bytes[one + 1] ^ bytes[other + 1]) & 0x1e) == 0 &&
           ((bytes[one + 2] ^ bytes[other + 2]) & 0x0c) == 0 && is_mono(one) == is_mono(other);
}

// How many headers that agree stand in a row from `offset` on, three at most; 0 for one without another. A
// row of two or more that is ended by the file counts as three, a lone frame right before the end or a tag as
// one.
int frames_in_row(byte_span bytes, std::size_t offset) {
    std::size_t header = offset;
    for (int count = 0; count < 3; count++) {
        const std::size_t length = mp3_frame_length(bytes, header);
        if (length == 0 || !agree(bytes, offset, header)) return count < 2 ? 0 : count;
        if (length > bytes.size() - header) return count == 0 ? 0 : 3;
        header += length;
        const bool ends =
            header == bytes.size() || has(bytes, header, "TAG") || has(bytes, header, "APETAGEX");
        if (ends) return count == 0 ? 1 : 3;
    }
    return 3;
}

// The length in bytes of an ID3v2 tag at the start of `bytes`; 0 if there is none. Its size is four groups of
// 7 bits, without its own header.
std::size_t id3_length(byte_span bytes) {
    if (bytes.size() < 10 || !has(bytes, 0, "ID3")) return 0;
    std::size_t size = 0;
    for (const std::uint8_t group : bytes.subspan(6, 4))
        size = size << 7 | (group & 0x7fU);
    const std::size_t footer = (bytes[5] & 0x10) != 0 ? 10 : 0;
    return 10 + size + footer;
}

// The same for an APE tag. Its size is a little-endian word, without the header.
std::size_t ape_length(byte_span bytes) {
    if (bytes.size() < 32 || !has(bytes, 0, "APETAGEX")) return 0;
    std::size_t size = 0;
    for (std::size_t i = 4; i-- > 0;)
        size = size << 8 | bytes[12 + i];
    return 32 + size;
}

// The bytes in front of what may be frames: tags of either kind, as many as there are, and zeros between and
// behind them. A tag that claims more than the file holds counts as no tag.
std::size_t skipped_bytes(byte_span bytes) {
    std::size_t start = 0;
    for (;;) {
        while (start < bytes.size() && bytes[start] == 0)
            start++;
        const byte_span rest = bytes.subspan(start);
        const std::size_t length = std::max(id3_length(rest), ape_length(rest));
        if (length == 0 || length > rest.size()) return start;
        start += length;
    }
}

} // namespace

std::size_t mp3_start(byte_span bytes) {
    constexpr std::size_t patience = 65536, near = 1024;
    const byte_span rest = bytes.subspan(skipped_bytes(bytes));
    for (std::size_t offset = 0; offset < std::min(rest.size(), patience); offset++) {
        const int enough = offset == 0 ? 1 : offset < near ? 2 : 3; // chance has more tries further off
        if (frames_in_row(rest, offset) >= enough) return bytes.size() - rest.size() + offset;
    }
    return bytes.size();
}

sound_format format_of(byte_span bytes) {
    if (has(bytes, 0, "OggS")) return sound_format::ogg;
    if (is_module(bytes)) return sound_format::module;
    if (mp3_start(bytes) < bytes.size()) return sound_format::mp3;
    return sound_format::none;
}

} // namespace bass
