#include "morvane/mopak/disk_file.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

disk_file::disk_file(const std::string& path, const char* mode) {
    std::error_code ignored;
    const std::filesystem::file_type type = std::filesystem::status(path, ignored).type();
    if (type == std::filesystem::file_type::directory) errno = EISDIR;
    if (type == std::filesystem::file_type::fifo) errno = ESPIPE;
    if (type == std::filesystem::file_type::directory || type == std::filesystem::file_type::fifo) return;
    file = std::fopen(path.c_str(), mode);
    if (file != nullptr) std::setvbuf(file, nullptr, _IONBF, 0);
}

disk_file::~disk_file() {
    close();
}

std::int64_t disk_file::size() {
    const long end = std::fseek(file, 0, SEEK_END) == 0 ? std::ftell(file) : 0;
    std::rewind(file);
    return std::max(end, 0L);
}

bool disk_file::seek(std::int64_t offset) {
    return std::fseek(file, static_cast<long>(offset), SEEK_SET) == 0;
}

bool disk_file::read(std::span<std::uint8_t> bytes) {
    return std::fread(bytes.data(), bytes.size(), 1, file) == 1;
}

bool disk_file::write(std::span<const std::uint8_t> bytes) {
    return std::fwrite(bytes.data(), bytes.size(), 1, file) == 1;
}

bool disk_file::close() {
    std::FILE* open_one = std::exchange(file, nullptr);
    return open_one == nullptr || std::fclose(open_one) == 0;
}

read_result read_whole_file(const std::string& path, mopak_bytes& bytes, std::size_t& size) {
    disk_file file(path, "rb");
    if (!file.is_open()) return read_result::not_opened;
    const std::int64_t length = file.size();
    if (length > INT32_MAX) return read_result::too_large;
    size = static_cast<std::size_t>(length);
    bytes.reset(new (std::nothrow) std::uint8_t[size]);
    if (bytes == nullptr) return read_result::no_memory;
    return file.read({bytes.get(), size}) ? read_result::done : read_result::not_read;
}
