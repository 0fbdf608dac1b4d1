// The end of a sound: a gain that goes from 1 to 0 in a few milliseconds, so that nothing is cut in the
// middle of a wave.
#pragma once

#include <atomic>
#include <cstdint>
#include <span>

namespace bass {

// The main thread begins the fade and looks whether it is over; the sound thread does it.
class fade_out {
  public:
    // Gain 1 again. Only while no sound thread calls `scale`.
    void reset(std::uint32_t frequency);

    void begin() { begun_.store(true, std::memory_order_release); }
    bool over() const { return over_.load(std::memory_order_acquire); }

    // Scales `samples`, interleaved stereo, in place: as they are before the fade, 0 after it.
    void apply(std::span<std::int16_t> samples);

  private:
    std::atomic<bool> begun_ = false;
    std::atomic<bool> over_ = false;
    std::uint32_t frames_ = 1; // of the whole fade
    std::uint32_t done_ = 0;   // of them so far
};

} // namespace bass
