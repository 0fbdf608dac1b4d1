// 15-bit random numbers: one fixed sequence for each seed, the same on every machine.
#pragma once

#include <cstdint>
#include <span>

inline constexpr int random_max = 32767;

// The next number of the sequence, uniform over 0 to `random_max`.
int random_next();

// Fills `numbers` with the next ones of the same sequence that `random_next` draws from.
void random_fill(std::span<std::uint16_t> numbers);

// Restarts the sequence. A program that never seeds draws the sequence of seed 1.
void random_seed(std::uint32_t seed);
