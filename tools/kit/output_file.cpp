#include "tools/kit/output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <thread>

#include "tools/kit/interrupts.h"
#include "tools/kit/unfinished_names.h"

namespace {

namespace fs = std::filesystem;

constexpr int most_links = 40;         // as many as the system follows
constexpr std::size_t most_stem = 200; // bytes of the own name in that of the unfinished file

std::string reason(int error) {
    return std::generic_category().message(error);
}

// Where a link leads at whose end nothing is. The path itself if it is no link.
fs::path behind_links(fs::path path) {
    std::error_code no_link;
    for (int i = 0; i < most_links; ++i) {
        const fs::path next = fs::read_symlink(path, no_link);
        if (no_link) break;
        path = path.parent_path() / next;
    }
    return path;
}

fs::path folder_of(const std::string& target) {
    const fs::path folder = fs::path(target).parent_path();
    return folder.empty() ? "." : folder;
}

// Standard output or error, if that is what was found; -1 otherwise.
int given_descriptor(const struct stat& found) {
    for (const int each : {STDOUT_FILENO, STDERR_FILENO}) {
        struct stat its {};
        if (fstat(each, &its) == 0 && its.st_dev == found.st_dev && its.st_ino == found.st_ino) return each;
    }
    return -1;
}

// One spelling for each file, whether it is there or not.
fs::path key_of(const std::string& target) {
    std::error_code problem;
    const fs::path folder = fs::canonical(folder_of(target), problem);
    if (problem) return fs::absolute(target, problem).lexically_normal();
    return folder / fs::path(target).filename();
}

} // namespace

output_file::output_file(const std::string& path) : target_(path) {
    struct stat found {};
    if (stat(path.c_str(), &found) != 0) {
        if (errno == ENOENT)
            target_ = behind_links(path).string();
        else
            error_ = errno;
        return;
    }
    there_ = true;
    folder_ = S_ISDIR(found.st_mode);
    given_ = given_descriptor(found);
    direct_ = !folder_ && (given_ >= 0 || !S_ISREG(found.st_mode));
    if (direct_) return;
    mode_ = found.st_mode & 0777;
    std::error_code problem;
    target_ = fs::canonical(path, problem).string();
    error_ = problem.value();
}

output_file::~output_file() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (name_.empty()) return;
    std::remove(name_.c_str());
    forget();
}

std::string output_file::obstacle() const {
    if (error_ != 0) return reason(error_);
    if (target_.empty()) return reason(ENOENT);
    if (folder_ || fs::path(target_).filename().empty()) return reason(EISDIR);
    if (there_ && access(target_.c_str(), W_OK) != 0) return reason(errno);
    if (!direct_ && access(folder_of(target_).c_str(), W_OK | X_OK) != 0) return reason(errno);
    return {};
}

std::string output_file::open() {
    if (std::string problem = obstacle(); !problem.empty()) return problem;
    return direct_ ? open_direct() : open_unfinished();
}

// A pipe opens when it has a reader.
std::string output_file::open_direct() {
    using namespace std::chrono_literals;
    if (given_ >= 0) {
        descriptor_ = fcntl(given_, F_DUPFD_CLOEXEC, 0);
        return descriptor_ >= 0 ? "" : reason(errno);
    }
    constexpr int flags = O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    while ((descriptor_ = ::open(target_.c_str(), flags)) < 0) {
        struct stat found {};
        const int error = errno;
        const bool pipe = stat(target_.c_str(), &found) == 0 && S_ISFIFO(found.st_mode);
        if (error != EINTR && !(error == ENXIO && pipe)) return reason(error);
        if (interrupted() != 0) return "interrupted before anybody read from it";
        std::this_thread::sleep_for(20ms);
    }
    const int now = fcntl(descriptor_, F_GETFL);
    return fcntl(descriptor_, F_SETFL, now & ~O_NONBLOCK) == 0 ? "" : reason(errno);
}

std::string output_file::open_unfinished() {
    static std::atomic<unsigned> next = 0;
    const std::string stem = fs::path(target_).filename().string().substr(0, most_stem);
    std::string made;
    do {
        made = stem + "." + std::to_string(getpid()) + "-" + std::to_string(next++) + ".part";
        made = (fs::path(target_).parent_path() / made).string();
        descriptor_ = ::open(made.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    } while (descriptor_ < 0 && errno == EEXIST);
    if (descriptor_ < 0) return reason(errno);
    name_ = made;
    noted_ = note_unfinished(name_);
    if (there_ && fchmod(descriptor_, mode_) != 0) return reason(errno);
    return {};
}

std::string output_file::write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return reason(errno);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return {};
}

std::string output_file::write(std::string_view text) {
    return write(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

std::string output_file::close() {
    const int closed = ::close(descriptor_);
    descriptor_ = -1;
    return closed == 0 ? "" : reason(errno);
}

void output_file::forget() {
    forget_unfinished(noted_);
    noted_ = -1;
    name_.clear();
}

std::string output_file::finish() {
    if (std::string problem = close(); !problem.empty() || direct_) return problem;
    if (std::rename(name_.c_str(), target_.c_str()) != 0) return reason(errno);
    forget();
    return {};
}

// A hard link never replaces; where the file system has none, a look and a rename must do.
std::string output_file::finish_if_free(bool& taken) {
    taken = false;
    if (std::string problem = close(); !problem.empty() || direct_) return problem;
    if (link(name_.c_str(), target_.c_str()) == 0) return {}; // the other name goes with the object
    struct stat found {};
    taken = errno == EEXIST || lstat(target_.c_str(), &found) == 0;
    if (taken) return {};
    if (std::rename(name_.c_str(), target_.c_str()) != 0) return reason(errno);
    forget();
    return {};
}

bool output_file::same(const std::string& a, const std::string& b) {
    return key_of(output_file(a).target_) == key_of(output_file(b).target_);
}
