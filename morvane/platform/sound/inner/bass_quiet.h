// Keeps the terminal calm.
#pragma once

namespace bass {

// For its lifetime the system's sound library keeps to itself what it would print on standard error about
// missing cards and late samples; the caller of the layer hears of a failure by its result.
class quiet_sound_library {
  public:
    quiet_sound_library();
    ~quiet_sound_library();
    quiet_sound_library(const quiet_sound_library&) = delete;
    quiet_sound_library& operator=(const quiet_sound_library&) = delete;
};

} // namespace bass
