// An open file over bytes in memory.
#pragma once

#include <cstdint>
#include <cstdio>
#include <span>

// Opens `bytes`, which outlive the file, for reading.
inline std::FILE* memory_file(std::span<const std::uint8_t> bytes) {
    static std::uint8_t none; // a null pointer would mean that the C library takes memory of its own
    void* memory = bytes.empty() ? &none : const_cast<std::uint8_t*>(bytes.data()); // "rb" never writes
    return fmemopen(memory, bytes.size(), "rb");
}
