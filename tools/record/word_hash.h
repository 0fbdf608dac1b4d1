// Numbers by which pictures and sounds are compared without keeping them.
#pragma once

#include <cstdint>
#include <span>

// XXH3 with 64 bits and seed 0 (Y. Collet, xxHash, stable since its version 0.8.0) of the words as bytes, the
// lowest first, whatever the order of the machine.
std::uint64_t word_hash(std::span<const std::uint32_t> words);
