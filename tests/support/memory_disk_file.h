// A file that has a path but lies in memory, for tests that write it thousands of times.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

class memory_disk_file {
  public:
    memory_disk_file() : descriptor(memfd_create("test", 0)) {
        if (descriptor < 0) throw std::runtime_error("no file in memory");
    }
    ~memory_disk_file() { close(descriptor); }
    memory_disk_file(const memory_disk_file&) = delete;
    memory_disk_file& operator=(const memory_disk_file&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor); }

    // The file's bytes from now on.
    void write(std::span<const std::uint8_t> bytes) const {
        const auto size = static_cast<off_t>(bytes.size());
        if (pwrite(descriptor, bytes.data(), bytes.size(), 0) != size || ftruncate(descriptor, size) != 0)
            throw std::runtime_error("can't write to memory");
    }

  private:
    int descriptor;
};
