// Pack files written and read by the book, byte by byte, with zlib alone.
#pragma once

#include <cstdint>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <zlib.h>

using pack_bytes = std::vector<std::uint8_t>;

struct packed_file {
    std::string name;
    pack_bytes data;
    bool operator==(const packed_file&) const = default;
};

// The fields of a record as numbers, to be bent by tests.
struct pack_record {
    std::string name; // cut to 256 bytes
    std::int32_t raw_size, packed_size, offset;
};

// The line that a failing method prints.
inline std::string critical(const std::string& message) {
    return "A critical error occured: " + message + "\n";
}

inline pack_bytes text_bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

// The same for the same seed. `values` different ones: 1 packs well, 256 not at all.
inline pack_bytes random_bytes(std::size_t size, unsigned values, unsigned seed) {
    std::mt19937 random(seed);
    pack_bytes bytes(size);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random() % values);
    return bytes;
}

inline pack_bytes zlib_packed(const pack_bytes& data, int level = Z_DEFAULT_COMPRESSION) {
    uLongf size = compressBound(data.size());
    pack_bytes packed(size);
    if (compress2(packed.data(), &size, data.data(), data.size(), level) != Z_OK)
        throw std::runtime_error("zlib can't pack");
    packed.resize(size);
    return packed;
}

inline pack_bytes zlib_unpacked(const pack_bytes& packed, std::size_t size) {
    pack_bytes data(size + 1);
    uLongf got = data.size();
    if (uncompress(data.data(), &got, packed.data(), packed.size()) != Z_OK || got != size)
        throw std::runtime_error("zlib can't unpack");
    data.resize(size);
    return data;
}

inline std::int32_t number_at(const pack_bytes& bytes, std::size_t at) {
    return static_cast<std::int32_t>(std::uint32_t{bytes.at(at)} | std::uint32_t{bytes.at(at + 1)} << 8 |
                                     std::uint32_t{bytes.at(at + 2)} << 16 |
                                     std::uint32_t{bytes.at(at + 3)} << 24);
}

inline void put_number(pack_bytes& bytes, std::size_t at, std::int32_t value) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes.at(at + i) = static_cast<std::uint8_t>(static_cast<std::uint32_t>(value) >> (8 * i));
}

inline pack_bytes part_of(const pack_bytes& bytes, std::int32_t offset, std::int32_t size) {
    const auto begin = bytes.begin() + offset;
    return {begin, begin + size};
}

inline std::string text_at(const pack_bytes& bytes, std::size_t at) {
    return reinterpret_cast<const char*>(bytes.data() + at);
}

// An archive of any records behind any blocks.
inline pack_bytes archive_of(const pack_bytes& blocks, const std::vector<pack_record>& records,
                             const std::string& info = "", int toc_level = Z_DEFAULT_COMPRESSION) {
    pack_bytes toc;
    for (const pack_record& record : records) {
        pack_bytes bytes(268);
        std::memcpy(bytes.data(), record.name.data(), std::min<std::size_t>(record.name.size(), 256));
        put_number(bytes, 256, record.raw_size);
        put_number(bytes, 260, record.packed_size);
        put_number(bytes, 264, record.offset);
        toc.insert(toc.end(), bytes.begin(), bytes.end());
    }
    const pack_bytes packed_toc = zlib_packed(toc, toc_level);
    pack_bytes all;
    all.reserve(276 + blocks.size() + packed_toc.size());
    all.resize(276);
    std::memcpy(all.data(), info.data(), std::min<std::size_t>(info.size(), 255));
    all.insert(all.end(), blocks.begin(), blocks.end());
    put_number(all, 272, static_cast<std::int32_t>(all.size()));
    all.insert(all.end(), packed_toc.begin(), packed_toc.end());
    put_number(all, 264, static_cast<std::int32_t>(all.size()));
    put_number(all, 268, static_cast<std::int32_t>(records.size()));
    return all;
}

// Blocks and records of whole files, as a writer lays them.
struct laid_files {
    pack_bytes blocks;
    std::vector<pack_record> records;
};
inline laid_files lay_out(const std::vector<packed_file>& files) {
    laid_files laid;
    for (const packed_file& file : files) {
        const pack_bytes block = zlib_packed(file.data);
        laid.records.push_back({file.name, static_cast<std::int32_t>(file.data.size()),
                                static_cast<std::int32_t>(block.size()),
                                static_cast<std::int32_t>(276 + laid.blocks.size())});
        laid.blocks.insert(laid.blocks.end(), block.begin(), block.end());
    }
    return laid;
}
inline pack_bytes archive_of(const std::vector<packed_file>& files, const std::string& info = "",
                             int toc_level = Z_DEFAULT_COMPRESSION) {
    const laid_files laid = lay_out(files);
    return archive_of(laid.blocks, laid.records, info, toc_level);
}

// All files of an archive. Throws where anything isn't as it should be.
inline std::vector<packed_file> files_in(const pack_bytes& archive) {
    const std::int32_t end = number_at(archive, 264), count = number_at(archive, 268);
    const std::int32_t toc_offset = number_at(archive, 272);
    const pack_bytes toc =
        zlib_unpacked(part_of(archive, toc_offset, end - toc_offset), static_cast<std::size_t>(count) * 268);
    std::vector<packed_file> files;
    std::int32_t next = 276;
    for (std::size_t at = 0; at < toc.size(); at += 268) {
        if (number_at(toc, at + 264) != next) throw std::runtime_error("a gap between blocks");
        const std::int32_t packed_size = number_at(toc, at + 260);
        files.push_back(
            {text_at(toc, at), zlib_unpacked(part_of(archive, next, packed_size),
                                             static_cast<std::size_t>(number_at(toc, at + 256)))});
        next += packed_size;
    }
    if (next != toc_offset) throw std::runtime_error("a gap before the table");
    return files;
}
