#include "morvane/platform/sound/inner/bass_fade.h"

#include <algorithm>
#include <cstddef>

#include "morvane/base/numbers.h"

namespace bass {

void fade_out::reset(std::uint32_t frequency) {
    constexpr std::uint32_t milliseconds = 15;
    begun_ = over_ = false;
    frames_ = std::max(1U, frequency * milliseconds / 1000);
    done_ = 0;
}

void fade_out::apply(std::span<std::int16_t> samples) {
    if (!begun_.load(std::memory_order_acquire)) return;
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        const float left = static_cast<float>(frames_ - done_) / static_cast<float>(frames_);
        const float gain = left * left * (3 - 2 * left); // level at both ends
        for (std::int16_t& sample : samples.subspan(i, 2))
            sample = static_cast<std::int16_t>(trunc_to_int(static_cast<float>(sample) * gain));
        done_ += done_ < frames_;
    }
    if (done_ == frames_) over_.store(true, std::memory_order_release);
}

} // namespace bass
