#include "morvane/gtex/inner/gather.h"

#include "morvane/gtex/gtex.h"

void gather_words(std::uint32_t* __restrict dst, const std::uint32_t* __restrict src,
                  const std::uint32_t* __restrict places, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = src[places[i]];
}

void gather_words(std::uint32_t* __restrict dst, const std::uint32_t* __restrict src,
                  const std::uint16_t* __restrict places, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = src[places[i]];
}

void gather_band(std::uint32_t* __restrict dst, const band_sources& sources, const gather_places& places,
                 std::size_t count) {
    constexpr std::size_t row_length = frame_columns; // a constant, so that no row needs a pointer of its own
    const band_sources source = sources;
    const std::uint32_t* __restrict const place = places.data();
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t from = place[i];
        for (std::size_t r = 0; r < band_rows; ++r)
            dst[r * row_length + i] = source[r][from];
    }
}
