// A bank of xorshift generators that step together.
//
// Marsaglia, "Xorshift RNGs", Journal of Statistical Software 8 (2003), the 32-bit generator with the shifts
// 13, 17, 5. One step of the whole bank gives a block of numbers, first the low halves of all lanes, then the
// high halves; the loop over the lanes has no dependency, so that the compiler steps many of them at once.
#include "morvane/base/random.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "morvane/base/kernel.h"

namespace {

constexpr std::size_t lanes = 64;
constexpr std::size_t block_size = 2 * lanes;

struct generator {
    std::array<std::uint32_t, lanes> states;       // none is 0: a xorshift would stay there
    std::array<std::uint16_t, block_size> pending; // the block that `random_next` draws from
    std::size_t used = block_size;                 // numbers of `pending` that are gone
};

// Lane states scattered over the cycle for every seed: the finalizer of MurmurHash3 over a Weyl sequence.
constexpr generator seeded(std::uint32_t seed) {
    generator g{.states = {}, .pending = {}};
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        std::uint32_t h = seed * 0x9e3779b9U + static_cast<std::uint32_t>(lane + 1) * 0x7f4a7c15U;
        h = (h ^ (h >> 16)) * 0x85ebca6bU;
        h = (h ^ (h >> 13)) * 0xc2b2ae35U;
        h ^= h >> 16;
        g.states[lane] = h != 0 ? h : 1;
    }
    return g;
}

constinit generator bank = seeded(1);

// Steps all lanes `blocks` times and writes a block a step.
MORVANE_KERNEL void generate(std::uint16_t* __restrict numbers, std::size_t blocks) {
    std::uint32_t* const states = bank.states.data();
    for (; blocks > 0; --blocks, numbers += block_size) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            std::uint32_t x = states[lane];
            x ^= x << 13;
            x ^= x >> 17;
            x ^= x << 5;
            states[lane] = x;
            numbers[lane] = static_cast<std::uint16_t>(x & random_max);
            numbers[lane + lanes] = static_cast<std::uint16_t>((x >> 16) & random_max);
        }
    }
}

std::size_t take_pending(std::span<std::uint16_t> numbers) {
    const std::size_t taken = std::min(numbers.size(), block_size - bank.used);
    std::copy_n(bank.pending.begin() + static_cast<std::ptrdiff_t>(bank.used), taken, numbers.begin());
    bank.used += taken;
    return taken;
}

void refill() {
    generate(bank.pending.data(), 1);
    bank.used = 0;
}

} // namespace

int random_next() {
    if (bank.used == block_size) refill();
    return bank.pending[bank.used++];
}

void random_fill(std::span<std::uint16_t> numbers) {
    numbers = numbers.subspan(take_pending(numbers));
    const std::size_t blocks = numbers.size() / block_size;
    generate(numbers.data(), blocks);
    numbers = numbers.subspan(blocks * block_size);
    if (numbers.empty()) return;
    refill();
    take_pending(numbers);
}

void random_seed(std::uint32_t seed) {
    bank = seeded(seed);
}
