#include "morvane/gtex/noise.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <span>

#include "morvane/base/kernel.h"
#include "morvane/base/random.h"

namespace {

constexpr std::size_t run_length =
    2048; // random numbers in hand at a time; they stay in the first-level cache

MORVANE_KERNEL void grey_words(std::uint32_t* __restrict dst, const std::uint16_t* __restrict numbers,
                               std::size_t count, noise_divisor divisor) {
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = (divisor.remainder(numbers[i]) & 255U) * 0x010101;
}

} // namespace

noise_divisor noise_divisor_of(std::int32_t range) {
    const auto d =
        static_cast<std::uint32_t>(std::clamp<std::int64_t>(std::abs(std::int64_t{range}), 1, 32768));
    const auto shift = static_cast<std::uint32_t>(std::bit_width(d - 1));
    const std::uint32_t multiplier = ((1U << (15 + shift)) + d - 1) / d;
    return {.range = static_cast<std::uint16_t>(d),
            .multiplier = static_cast<std::uint16_t>(multiplier),
            .shift = static_cast<std::uint16_t>(shift)};
}

void gtex_noise(gtex dst, std::int32_t range) {
    const noise_divisor divisor = noise_divisor_of(range);
    const auto count = static_cast<std::size_t>(std::max(0, dst.count));
    std::array<std::uint16_t, run_length> numbers;
    for (std::size_t i = 0; i < count; i += run_length) {
        const std::size_t length = std::min(run_length, count - i);
        random_fill(std::span(numbers).first(length));
        grey_words(dst.pixels + i, numbers.data(), length, divisor);
    }
}
