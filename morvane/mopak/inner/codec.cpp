// The wrappers around zlib.
#include <algorithm>
#include <cstring>
#include <new>

#include <zlib.h>

#include "morvane/base/log.h"
#include "morvane/base/numbers.h"
#include "morvane/mopak/mopak.h"

namespace {

// A repeat takes two bits at least and gives 258 bytes, so a byte of a stream gives no more than this.
constexpr std::size_t most_expansion = 1032;

mopak_bytes new_bytes(std::size_t size) {
    return mopak_bytes(new (std::nothrow) std::uint8_t[size]);
}

// `full` cut to `size`. The copy is saved where nothing is to be cut.
mopak_bytes cut_to(mopak_bytes full, std::size_t room, std::size_t size) {
    if (size == room) return full;
    mopak_bytes cut = new_bytes(size);
    if (cut != nullptr) std::memcpy(cut.get(), full.get(), size);
    return cut;
}

// Both wrappers speak of encode.
void report(int zlib_result) {
    if (zlib_result == Z_BUF_ERROR) log_message("zlib returned Z_BUF_ERROR in encode!", log_error, 0);
    if (zlib_result == Z_MEM_ERROR) log_message("zlib returned Z_MEM_ERROR in encode!", log_error, 0);
}

} // namespace

mopak_bytes mopak::encode(const void* data, std::size_t size, std::size_t& out_size) {
    log_message("void *mopak::encode()", log_trace, 0);
    log_message("mopak::encode()", log_trace, 0);

    const std::size_t bound = 12 + static_cast<std::size_t>(trunc_to_int64(static_cast<double>(size) * 1.2));
    out_size = bound;
    mopak_bytes packed = new_bytes(bound);
    if (packed == nullptr) {
        log_message("Unable to create buffer for compression!", log_error, 0);
        return nullptr;
    }
    uLongf packed_size = bound;
    const int result =
        compress(packed.get(), &packed_size, static_cast<const Bytef*>(data), static_cast<uLong>(size));
    if (result != Z_OK) {
        report(result);
        return nullptr;
    }
    out_size = packed_size;
    packed = cut_to(std::move(packed), bound, out_size);
    if (packed == nullptr) log_message("Unable to create buffer for final compression!", log_error, 0);
    return packed;
}

mopak_bytes mopak::decode(const void* data, std::size_t& out_size, std::size_t size) {
    log_message("void *mopak::decode()", log_trace, 0);

    if (out_size == 0) out_size = scratch_size;
    // What a stream of this size can't fill isn't allocated, whatever is expected of it.
    const std::size_t room = size > out_size / most_expansion ? out_size : size * most_expansion;
    mopak_bytes unpacked = new_bytes(room);
    if (unpacked == nullptr) {
        log_message("Unable to create buffer for decompression!", log_error, 0);
        return nullptr;
    }
    uLongf unpacked_size = room;
    const int result =
        uncompress(unpacked.get(), &unpacked_size, static_cast<const Bytef*>(data), static_cast<uLong>(size));
    if (result != Z_OK) {
        report(result);
        return nullptr;
    }
    out_size = unpacked_size;
    unpacked = cut_to(std::move(unpacked), room, out_size);
    if (unpacked == nullptr) log_message("Unable to create buffer for final decompression!", log_error, 0);
    return unpacked;
}
