// The records of a pack file, in memory and as bytes. All numbers in the file are little-endian and signed,
// 32 bits. From the start of the file:
//
//     header          276 bytes
//     data blocks     one zlib stream a file, in the order of adding, no gap between them
//     contents        one zlib stream of `file_count` records of 268 bytes, in the order of adding
//
// What lies beyond `total_size` is left over from a longer table and means nothing.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

inline constexpr std::size_t mopak_header_size = 276;
inline constexpr std::size_t mopak_record_size = 268;
inline constexpr std::size_t mopak_info_room = 255; // both with the NUL
inline constexpr std::size_t mopak_name_room = 256;

// The first bytes of an archive. Zero at construction; construction and end write a trace to the log.
struct mopak_header {
    mopak_header();
    ~mopak_header();
    mopak_header(const mopak_header&) = delete;
    mopak_header& operator=(const mopak_header&) = delete;

    char info[mopak_info_room] = {}; // free text, NUL-terminated
    std::uint8_t padding = 0;
    std::int32_t version_major = 0;
    std::int32_t version_minor = 0;
    std::int32_t total_size = 0; // of the archive: where the table of contents ends
    std::int32_t file_count = 0;
    std::int32_t toc_offset = 0; // where the table of contents begins and the next data block will go
};
static_assert(sizeof(mopak_header) == mopak_header_size);

// A file of the archive: its record in the table of contents and the link of the list. Construction and end
// write a trace to the log.
struct mopak_file {
    mopak_file();
    ~mopak_file();
    mopak_file(const mopak_file&) = delete;
    mopak_file& operator=(const mopak_file&) = delete;

    char name[mopak_name_room] = {}; // NUL-terminated
    std::int32_t raw_size = 0;       // before compression
    std::int32_t packed_size = 0;    // of the data block
    std::int32_t offset = 0;         // of the data block, from the start of the archive
    mopak_file* next = nullptr;
};
static_assert(offsetof(mopak_file, next) >= mopak_record_size);

std::array<std::uint8_t, mopak_header_size> header_to_bytes(const mopak_header& header);
void record_to_bytes(const mopak_file& file, std::span<std::uint8_t, mopak_record_size> bytes);

// The ways back take any bytes. A text without an end loses its last character to the NUL; the result is
// false then.
bool header_from_bytes(std::span<const std::uint8_t, mopak_header_size> bytes, mopak_header& header);
bool record_from_bytes(std::span<const std::uint8_t, mopak_record_size> bytes, mopak_file& file);

// Whether `text` fits a field of `room` bytes: room for its NUL, and none within.
bool mopak_text_fits(std::string_view text, std::size_t room);

// Copies a text that fits, the rest of the field becomes 0.
void mopak_text_copy(std::string_view text, std::span<char> field);
