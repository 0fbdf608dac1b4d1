// The sound layer's own functions, on SDL2_mixer.
#pragma once

#include "morvane/platform/sound/bass.h"

namespace bass {

extern const sound_layer mixer_layer;

} // namespace bass
