// Samples rows of a picture at the same columns again and again, as a zoom does. Internal to the folder.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "morvane/gtex/inner/gather.h"

// A run of columns to sample. Where sixteen neighbours always come out of a short stretch of the source (up
// to a reduction by two), `has_picks` is set and the places are also kept as picks from two loaded vectors:
// where a processor has the instruction that picks sixteen words at once, a row then takes half the time.
struct row_sampler {
    static constexpr std::size_t group = 16;

    gather_places columns; // in the source row
    std::size_t size;      // columns in use
    bool has_picks;
    gather_places picks;                                  // in the group's two vectors: 0 to 31
    std::array<std::uint32_t, gather_run / group> starts; // the first column of a group's two vectors
};

// Completes a sampler whose `columns` and `size` are set, for rows that are `src_width` long.
void find_picks(row_sampler& sampler, std::size_t src_width);

// dst[i] = src[columns[i]].
void sample_row(std::uint32_t* dst, const std::uint32_t* src, const row_sampler& sampler);
