// OGG files.
#pragma once

#include <cstdint>
#include <string_view>

#include "assets/forms/buffers.h"
#include "assets/forms/file_forms.h"

namespace assets::sound {

// An OGG with one Vorbis stream of variable bit rate (stereo, 44100 Hz, about 190 kbit/s), exactly as long as
// `sound`, with its title in the comment. The same sound gives the same bytes: the stream's serial number is
// given, not drawn. Empty if the encoder refuses, which it does for want of memory only.
file_bytes ogg_file(const stereo& sound, std::string_view title, std::int32_t serial);

} // namespace assets::sound
