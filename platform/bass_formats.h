// What kind of sound a file holds, told by its bytes.
//
// The decoders behind the mixer try many formats and say a good deal on standard error about what they don't
// know. They only get to see what passes here.
#pragma once

#include <cstdint>
#include <span>

namespace bass {

enum class sound_format { none, module, mp3, ogg };

// The format of a whole file: a module is known by its signature, or as an old MOD of 15 samples by a sound
// header; an OGG stream by its first page; an MP3 stream by two frames in a row (one, if the file ends
// there) behind its tag and less than a kilobyte of other bytes. Reads inside `bytes` only.
sound_format format_of(std::span<const std::uint8_t> bytes);

} // namespace bass
