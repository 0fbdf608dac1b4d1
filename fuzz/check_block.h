// What a fuzz target does with the result of a picture reader.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "morvane/media/image_block.h"

// A block must hold as many words as the globals say: reads the corners, so that the sanitizer speaks if it
// doesn't, and gives the block back. Not all words: a block may be much larger than its file.
inline void check_block(std::uint32_t* block) {
    if (block == nullptr) return;
    if (!image_size_fits(gtex_load_width, gtex_load_height)) std::abort();
    const auto count = static_cast<std::size_t>(gtex_load_width) * static_cast<std::size_t>(gtex_load_height);
    volatile std::uint32_t corner = block[0];
    corner = block[count - 1];
    static_cast<void>(corner);
    std::free(block);
}
