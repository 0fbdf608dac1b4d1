// MP3 files.
#pragma once

#include "assets/forms/buffers.h"
#include "assets/forms/file_forms.h"

namespace assets::sound {

// An MP3 of variable bit rate (joint stereo, 44100 Hz, about 200 kbit/s), with the tag frame at its head that
// tells players the frames that the encoder added at both ends. Empty if the encoder refuses, which it does
// for want of memory only.
file_bytes mp3_file(const stereo& sound);

} // namespace assets::sound
