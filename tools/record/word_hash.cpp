#include "tools/record/word_hash.h"

#include <xxhash.h>

#include <bit>
#include <vector>

namespace {

constexpr std::uint32_t swapped(std::uint32_t word) {
    return word << 24 | (word & 0xff00U) << 8 | (word >> 8 & 0xff00U) | word >> 24;
}

} // namespace

std::uint64_t word_hash(std::span<const std::uint32_t> words) {
    if constexpr (std::endian::native == std::endian::little)
        return XXH3_64bits(words.data(), words.size_bytes());
    std::vector<std::uint32_t> lowest_first(words.begin(), words.end());
    for (std::uint32_t& word : lowest_first)
        word = swapped(word);
    return XXH3_64bits(lowest_first.data(), lowest_first.size() * sizeof(std::uint32_t));
}
