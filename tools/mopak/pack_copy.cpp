#include "tools/mopak/pack_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

// Whether `size` bytes went from one file to the other.
bool copy_bytes(int from, int to, std::int64_t size) {
    std::array<char, 65536> block;
    while (size > 0) {
        const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(size, block.size()));
        const ssize_t got = read(from, block.data(), wanted);
        if (got == 0) errno = EIO; // it has shrunk since it was read
        if (got <= 0) return false;
        for (ssize_t done = 0; done < got;) {
            const ssize_t written = write(to, block.data() + done, static_cast<std::size_t>(got - done));
            if (written < 0) return false;
            done += written;
        }
        size -= got;
    }
    return true;
}

// Where an archive lies that may be reached by a link, and need not be there.
std::string real_path(const std::string& archive) {
    std::error_code problem;
    const fs::path real = fs::weakly_canonical(archive, problem);
    return problem ? archive : real.string();
}

fs::path folder_of(const fs::path& target) {
    return target.has_parent_path() ? target.parent_path() : fs::path(".");
}

std::string name_of(const fs::path& target) {
    return target.filename().string();
}

int open_folder_of(const fs::path& target) {
    return open(folder_of(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

std::string lock_name(const std::string& name) {
    std::string lock = ".";
    return lock.append(name, 0, 200).append(".lock");
}

} // namespace

pack_copy::pack_copy(const std::string& archive) : target(real_path(archive)) {}

pack_copy::~pack_copy() {
    copy.reset();
    locked.reset();
    if (folder >= 0) close(folder);
}

std::string pack_copy::lock() {
    const std::string name = name_of(target);
    if (name.empty()) return std::strerror(EISDIR);
    folder = open_folder_of(target);
    if (folder < 0) return std::strerror(errno);
    std::string problem = locked.emplace(folder, lock_name(name)).take(pack_patience);
    if (problem.empty()) remove_half_written(folder, name);
    return problem;
}

std::string pack_copy::lock_path() const {
    return (folder_of(target) / lock_name(name_of(target))).string();
}

std::string pack_copy::make(std::int64_t size) {
    copy.emplace(folder, name_of(target), 0666);
    if (copy->descriptor() < 0) return std::strerror(errno);
    copy_path = (folder_of(target) / copy->name()).string();

    const int old = open(target.c_str(), O_RDONLY | O_CLOEXEC);
    if (old < 0) return size == 0 && errno == ENOENT ? "" : std::strerror(errno);
    struct stat status = {};
    const bool copied = fstat(old, &status) == 0 && fchmod(copy->descriptor(), status.st_mode & 07777) == 0 &&
                        copy_bytes(old, copy->descriptor(), size);
    const int reason = errno;
    close(old);
    return copied ? "" : std::strerror(reason);
}

std::string pack_copy::put_in_place(std::int64_t size) {
    const bool done = ftruncate(copy->descriptor(), size) == 0 && fsync(copy->descriptor()) == 0 &&
                      copy->finish(name_of(target));
    return done ? "" : std::strerror(errno);
}

void remove_left_behind(const std::string& archive) {
    const std::string target = real_path(archive);
    const int folder = open_folder_of(target);
    if (folder < 0) return;
    {
        lock_file lock(folder, lock_name(name_of(target)));
        if (lock.take_left_behind()) remove_half_written(folder, name_of(target));
    }
    close(folder);
}
