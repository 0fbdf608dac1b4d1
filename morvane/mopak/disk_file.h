// A file on disk without a buffer of its own, so that a write that fails fails where it is asked for.
#pragma once

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>

#include "morvane/mopak/mopak.h"

class disk_file {
  public:
    // Opens with a mode of the C library. What isn't a file to read from start to end (a folder, a pipe whose
    // other end may never come) doesn't open. Ask `is_open`.
    disk_file(const std::string& path, const char* mode);
    ~disk_file();
    disk_file(const disk_file&) = delete;
    disk_file& operator=(const disk_file&) = delete;

    bool is_open() const { return file != nullptr; }

    // By seeking to the end; the position is the start afterwards. 0 where nothing can be told.
    std::int64_t size();

    bool seek(std::int64_t offset);

    // All of `bytes` in one call. Nothing to read, or less than all, is a failure.
    bool read(std::span<std::uint8_t> bytes);
    bool write(std::span<const std::uint8_t> bytes);

    // False if the system says at last that something wasn't written.
    bool close();

  private:
    std::FILE* file = nullptr;
};

enum class read_result { done, not_opened, too_large, no_memory, not_read };

// Reads a whole file of less than 2 GiB; an empty one is `not_read`.
read_result read_whole_file(const std::string& path, mopak_bytes& bytes, std::size_t& size);
