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

} // namespace

pack_copy::pack_copy(const std::string& archive) {
    std::error_code problem;
    const fs::path real = fs::weakly_canonical(archive, problem);
    target = problem ? archive : real.string();
}

pack_copy::~pack_copy() {
    copy.reset();
    if (folder >= 0) close(folder);
}

std::string pack_copy::make(std::int64_t size) {
    const fs::path place(target);
    const fs::path parent = place.has_parent_path() ? place.parent_path() : fs::path(".");
    folder = open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) return std::strerror(errno);
    copy.emplace(folder, place.filename().string(), 0666);
    if (copy->descriptor() < 0) return std::strerror(errno);
    copy_path = (parent / copy->name()).string();

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
                      copy->finish(fs::path(target).filename().string());
    return done ? "" : std::strerror(errno);
}
