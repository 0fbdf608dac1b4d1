// The inner loops that zoom, wobble and tunnel share: pixels fetched from places in a table. Internal to the
// folder.
//
// They are loads and stores and nothing else, which the processor does some four of a cycle. So the file is
// compiled with unrolled loops, and for the plain instruction set: gather instructions are slower than this.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

inline constexpr std::size_t gather_run =
    512; // places a table holds; wider rows are done in runs of this length
using gather_places = std::array<std::uint32_t, gather_run>;

// dst[i] = src[places[i]] for i from 0 to count - 1.
void gather_words(std::uint32_t* dst, const std::uint32_t* src, const std::uint32_t* places,
                  std::size_t count);
void gather_words(std::uint32_t* dst, const std::uint32_t* src, const std::uint16_t* places,
                  std::size_t count);

// The same for a band of rows of a surface that is 512 wide: row r goes from sources[r] to dst + r * 512. A
// place is read once for all of them, and rows side by side share what they bring into the cache.
inline constexpr std::size_t band_rows = 8;
using band_sources = std::array<const std::uint32_t*, band_rows>;
void gather_band(std::uint32_t* dst, const band_sources& sources, const gather_places& places,
                 std::size_t count);
