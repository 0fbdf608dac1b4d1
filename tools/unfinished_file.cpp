#include "tools/unfinished_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

unfinished_file::unfinished_file(const std::string& path)
    : path_(path), name_(path + "." + std::to_string(getpid()) + ".part") {}

unfinished_file::~unfinished_file() {
    if (!finished_) std::remove(name_.c_str());
}

std::string unfinished_file::obstacle() const {
    std::error_code ignored;
    return std::filesystem::is_directory(path_, ignored) ? std::strerror(EISDIR) : "";
}

std::string unfinished_file::finish() {
    finished_ = std::rename(name_.c_str(), path_.c_str()) == 0;
    return finished_ ? "" : std::strerror(errno);
}
