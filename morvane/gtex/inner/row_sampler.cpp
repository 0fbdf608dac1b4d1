#include "morvane/gtex/inner/row_sampler.h"

#include <algorithm>
#include <cstring>

#include "morvane/base/kernel.h"

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)

namespace {

constexpr std::size_t group = row_sampler::group;

// False if a group of columns lies too far apart.
bool set_picks(row_sampler& sampler, std::size_t src_width) {
    constexpr std::size_t reach = 2 * group;
    if (src_width < reach) return false;
    for (std::size_t i = 0; i + group <= sampler.size; i += group) {
        const auto first = sampler.columns.begin() + i;
        const auto [low, high] = std::minmax_element(first, first + group);
        // The vectors stay inside the row.
        const std::uint32_t start = std::min(*low, static_cast<std::uint32_t>(src_width - reach));
        if (*high - start >= reach) return false;
        sampler.starts[i / group] = start;
        for (std::size_t k = i; k < i + group; ++k)
            sampler.picks[k] = sampler.columns[k] - start;
    }
    return true;
}

[[gnu::target("arch=x86-64-v4")]] void pick_groups(std::uint32_t* dst, const std::uint32_t* src,
                                                   const row_sampler& sampler) {
    typedef std::uint32_t words __attribute__((vector_size(4 * group)));
    for (std::size_t i = 0; i + group <= sampler.size; i += group) {
        const std::uint32_t* const start = src + sampler.starts[i / group];
        words near, far, picks;
        std::memcpy(&near, start, sizeof near);
        std::memcpy(&far, start + group, sizeof far);
        std::memcpy(&picks, &sampler.picks[i], sizeof picks);
        const words picked = __builtin_shuffle(near, far, picks);
        std::memcpy(dst + i, &picked, sizeof picked);
    }
}

} // namespace

void find_picks(row_sampler& sampler, std::size_t src_width) {
    sampler.has_picks = __builtin_cpu_supports("x86-64-v4") && set_picks(sampler, src_width);
}

void sample_row(std::uint32_t* dst, const std::uint32_t* src, const row_sampler& sampler) {
    const std::size_t picked = sampler.has_picks ? sampler.size / group * group : 0;
    if (picked > 0) pick_groups(dst, src, sampler);
    gather_words(dst + picked, src, sampler.columns.data() + picked, sampler.size - picked);
}

#else

void find_picks(row_sampler& sampler, std::size_t) {
    sampler.has_picks = false;
}

void sample_row(std::uint32_t* dst, const std::uint32_t* src, const row_sampler& sampler) {
    gather_words(dst, src, sampler.columns.data(), sampler.size);
}

#endif
