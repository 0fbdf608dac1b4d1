// What kind of sound a file holds, told by its bytes.
//
// The decoders behind the mixer try many formats and say a good deal on standard error about what they don't
// know. They only get to see what passes here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace bass {

enum class sound_format { none, module, mp3, ogg };

// The format of a whole file: a module is known by its signature, or as an old MOD of 15 samples by a sound
// header; an OGG stream by its first page; an MP3 stream by `mp3_start`. Reads inside `bytes` only.
sound_format format_of(std::span<const std::uint8_t> bytes);

// Where the frames of an MP3 stream begin: behind any tags (ID3v2, APE) and zeros, at the first of two frames
// in a row that agree, less than a kilobyte of other bytes away; or of three (or two that the file ends
// behind), less than 64 KiB away; or with none at a frame that is the only one. The size of `bytes` if there
// are none. Reads inside `bytes` only.
std::size_t mp3_start(std::span<const std::uint8_t> bytes);

} // namespace bass
