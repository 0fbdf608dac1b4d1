#include "tools/mopak/lock_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>
#include <utility>

#include "tools/mopak/doomed_files.h"
#include "tools/mopak/half_written.h"

namespace {

constexpr std::chrono::milliseconds between_tries(20);

struct flock whole_file() {
    struct flock range = {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    return range;
}

// Without O_CREAT first: a shared folder may forbid that for the file of another.
int open_lock(int folder, const std::string& name, bool may_create) {
    constexpr int flags = O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC;
    int file = -1;
    do {
        file = openat(folder, name.c_str(), flags);
        if (file < 0 && errno == ENOENT && may_create)
            file = openat(folder, name.c_str(), flags | O_CREAT | O_EXCL, 0666);
    } while (file < 0 && errno == EEXIST);
    return file;
}

} // namespace

lock_file::lock_file(int where, std::string own_name) : folder(where), name(std::move(own_name)) {}

lock_file::~lock_file() {
    if (file < 0) return;
    forget_doomed(doomed);
    unlinkat(folder, name.c_str(), 0);
    close(file);
}

// Who removes the file holds the lock on it. So a lock counts if its file has the name still; else another
// program may have a new file of that name by now.
lock_file::attempt lock_file::try_once(bool may_create) {
    while (true) {
        const int opened = open_lock(folder, name, may_create);
        if (opened < 0) return attempt::failed;
        struct flock range = whole_file();
        if (fcntl(opened, F_SETLK, &range) != 0) {
            const int reason = errno;
            const bool held = reason == EAGAIN || reason == EACCES;
            range = whole_file();
            if (held && fcntl(opened, F_GETLK, &range) == 0 && range.l_type != F_UNLCK)
                holder = std::max(range.l_pid, 0);
            close(opened);
            errno = reason;
            return held ? attempt::held : attempt::failed;
        }
        if (is_file_of_name(opened, folder, name)) {
            file = opened;
            doomed = doom_file(folder, name);
            return attempt::taken;
        }
        close(opened);
    }
}

std::string lock_file::take(std::chrono::milliseconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    attempt result = try_once(true);
    while (result == attempt::held && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(between_tries);
        result = try_once(true);
    }
    if (result == attempt::failed) return std::strerror(errno);
    if (result == attempt::taken) return {};
    return "is in use by " + (holder == 0 ? "another program" : "process " + std::to_string(holder));
}

bool lock_file::take_left_behind() {
    return try_once(false) == attempt::taken;
}
