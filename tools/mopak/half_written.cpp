#include "tools/mopak/half_written.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <vector>

#include "tools/mopak/doomed_files.h"

namespace {

std::string start_of(const std::string& stem) {
    std::string start = ".";
    return start.append(stem, 0, 200).append(".");
}

// Whether `name` is one of those that are given here.
bool is_given(std::string_view name, std::string_view start) {
    constexpr std::string_view digits = "0123456789";
    if (!name.starts_with(start)) return false;
    name.remove_prefix(start.size());
    const std::size_t dash = name.find_first_not_of(digits);
    return dash != 0 && dash != name.npos && name[dash] == '-' && dash + 1 < name.size() &&
           name.find_first_not_of(digits, dash + 1) == name.npos;
}

// Marks a new file as one that is being written. False if it was removed as a left-over before that. Where
// the file system knows no locks, nobody takes it for one.
bool mark(int file, int folder, const std::string& name) {
    if (flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
    return is_file_of_name(file, folder, name);
}

void remove_if_left(int folder, const std::string& name) {
    const int file = openat(folder, name.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0) return;
    if (flock(file, LOCK_EX | LOCK_NB) == 0 && is_file_of_name(file, folder, name))
        unlinkat(folder, name.c_str(), 0);
    close(file);
}

} // namespace

half_written::half_written(int where, const std::string& stem, mode_t mode) : folder(where), file(-1) {
    static unsigned number = 0;
    const std::string start = start_of(stem) + std::to_string(getpid()) + "-";
    do {
        own_name = start + std::to_string(number++);
        file = openat(folder, own_name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
        if (file >= 0 && !mark(file, folder, own_name)) {
            close(file);
            file = -1;
            errno = EEXIST;
        }
    } while (file < 0 && errno == EEXIST);
    if (file >= 0) doomed = doom_file(folder, own_name);
}

half_written::~half_written() {
    if (file < 0) return;
    forget_doomed(doomed);
    if (!finished) unlinkat(folder, own_name.c_str(), 0);
    close(file);
}

bool half_written::finish(const std::string& to) {
    finished = renameat(folder, own_name.c_str(), folder, to.c_str()) == 0;
    return finished;
}

void remove_half_written(int folder, const std::string& stem) {
    const int again = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* entries = again < 0 ? nullptr : fdopendir(again);
    if (entries == nullptr) {
        if (again >= 0) close(again);
        return;
    }
    const std::string start = start_of(stem);
    std::vector<std::string> names;
    while (const dirent* entry = readdir(entries))
        if (is_given(entry->d_name, start)) names.emplace_back(entry->d_name);
    closedir(entries);
    for (const std::string& name : names)
        remove_if_left(folder, name);
}

bool is_file_of_name(int file, int folder, const std::string& name) {
    struct stat own = {}, named = {};
    return fstat(file, &own) == 0 && fstatat(folder, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           own.st_dev == named.st_dev && own.st_ino == named.st_ino;
}
